#include "platform/text/RegularExpression.h"

#include <re2/re2.h>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

re2::StringPiece piece(std::string_view strText) { return {strText.data(), strText.size()}; }

RE2::Options options() {
  RE2::Options settings;
  // Bytes, so that text which is not UTF-8 is searched like any other.
  settings.set_encoding(RE2::Options::EncodingLatin1);
  settings.set_log_errors(false);
  return settings;
}

}  // namespace

struct RegularExpression::Impl {
  explicit Impl(std::string_view strPattern) : expression(piece(strPattern), options()) {}

  RE2 expression;
};

RegularExpression::RegularExpression(std::string_view strPattern)
    : impl_(std::make_unique<const Impl>(strPattern)) {
  if (!impl_->expression.ok()) throw RuntimeError(kInvalidArgument);
}

RegularExpression::~RegularExpression() = default;
RegularExpression::RegularExpression(RegularExpression&&) noexcept = default;
RegularExpression& RegularExpression::operator=(RegularExpression&&) noexcept = default;

const std::string& RegularExpression::Pattern() const noexcept {
  return impl_->expression.pattern();
}

bool RegularExpression::Test(std::string_view strText) const {
  return RE2::PartialMatch(piece(strText), impl_->expression);
}

std::optional<RegularExpression::Match> RegularExpression::Execute(std::string_view strText) const {
  // The whole match comes first, then its groups.
  std::vector<re2::StringPiece> colFound(
      static_cast<std::size_t>(impl_->expression.NumberOfCapturingGroups()) + 1);
  if (!impl_->expression.Match(piece(strText), 0, strText.size(), RE2::UNANCHORED, colFound.data(),
                               static_cast<int>(colFound.size()))) {
    return std::nullopt;
  }
  Match match;
  match.value.assign(colFound[0].data(), colFound[0].size());
  for (std::size_t lngGroup = 1; lngGroup < colFound.size(); ++lngGroup) {
    match.subMatches.emplace_back(colFound[lngGroup]);
  }
  return match;
}

}  // namespace Varnel_Tolv_XML_Creation
