#include "platform/schema/value/Pattern.h"

#include <re2/re2.h>

#include <cstdint>
#include <mutex>
#include <optional>

#include "platform/schema/value/LexicalForms.h"
#include "platform/schema/value/PatternTranslation.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// What one pattern may take: its program and, beside it, the states that a search makes of it.
constexpr std::int64_t kMostMemory = std::int64_t{64} << 20;

RE2::Options options() {
  RE2::Options settings;
  settings.set_log_errors(false);
  settings.set_never_capture(true);
  settings.set_max_mem(kMostMemory);
  return settings;
}

}  // namespace

/// Most patterns of a large schema are never asked, so that each is made at the first question.
struct Pattern::Impl {
  explicit Impl(std::string_view strText) : strExpression(strText) {}

  bool make() {
    std::call_once(made, [&] {
      translation = translatePattern(strExpression);
      if (translation) program.emplace(translation->strExpression, options());
    });
    return program && program->ok();
  }

  std::string strExpression;
  std::once_flag made;
  std::optional<Translation> translation;
  std::optional<RE2> program;
};

Pattern::Pattern(std::string_view strExpression) : impl_(std::make_unique<Impl>(strExpression)) {
  requirePattern(strExpression);
}

Pattern::~Pattern() = default;
Pattern::Pattern(Pattern&&) noexcept = default;

const std::string& Pattern::expression() const noexcept { return impl_->strExpression; }

bool Pattern::matches(std::string_view strText) const {
  if (!impl_->make()) {
    throw RuntimeError(kXmlFailure, "The pattern '" + shown(impl_->strExpression) +
                                        "' takes too much memory to be checked.");
  }
  return RE2::FullMatch(impl_->translation->alphabet.spell(strText), *impl_->program);
}

}  // namespace Varnel_Tolv_XML_Creation
