#include "platform/xpath/SelectionNamespaces.h"

#include <string>
#include <string_view>

#include "platform/xml/NamespaceUris.h"
#include "platform/xml/XmlCharacters.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// Of fewer each is looked at.
constexpr std::size_t kMany = 16;

[[noreturn]] void refuse(std::string_view strWhy) {
  throw RuntimeError(kXmlFailure,
                     "The selection namespaces are not valid: " + std::string(strWhy) + ".");
}

class DeclarationScanner {
 public:
  explicit DeclarationScanner(std::string_view strText) : strText_(strText) {}

  /// Whether another declaration follows; white space must stand between two of them.
  bool atDeclaration() {
    const bool blnSeparated = skipSpace() || blnFirst_;
    if (position_ == strText_.size()) return false;
    if (!blnSeparated) refuse("a blank is missing between two declarations");
    blnFirst_ = false;
    return true;
  }

  /// The prefix; empty for the plain `xmlns`.
  std::string_view prefix() {
    constexpr std::string_view kKeyword = "xmlns";
    if (!strText_.substr(position_).starts_with(kKeyword))
      refuse("a declaration starts with xmlns");
    position_ += kKeyword.size();
    if (!take(':')) return {};

    const std::size_t start = position_;
    while (position_ < strText_.size() && isNameByte(strText_[position_])) ++position_;
    const std::string_view strPrefix = strText_.substr(start, position_ - start);
    if (!isNCName(strPrefix)) refuse("a prefix is not a name");
    return strPrefix;
  }

  std::string_view uri() {
    skipSpace();
    if (!take('=')) refuse("an equals sign is missing");
    skipSpace();
    const char quote = take('\'') ? '\'' : '"';
    if (quote == '"' && !take('"')) refuse("a quotation mark is missing");

    const std::size_t start = position_;
    const std::size_t end = strText_.find(quote, start);
    if (end == std::string_view::npos) refuse("a quotation mark is missing");
    position_ = end + 1;
    return strText_.substr(start, end - start);
  }

 private:
  bool skipSpace() {
    const std::size_t start = position_;
    while (position_ < strText_.size() && isXmlSpace(strText_[position_])) ++position_;
    return position_ != start;
  }

  bool take(char byte) {
    if (position_ == strText_.size() || strText_[position_] != byte) return false;
    ++position_;
    return true;
  }

  std::string_view strText_;
  std::size_t position_ = 0;
  bool blnFirst_ = true;
};

}  // namespace

SelectionNamespaces::SelectionNamespaces(std::string_view strDeclarations)
    : strText_(strDeclarations) {
  if (!isXmlText(strText_)) refuse("the text holds an invalid character");
  DeclarationScanner scanner(strText_);
  while (scanner.atDeclaration()) {
    const std::string_view strPrefix = scanner.prefix();
    const std::string_view strUri = scanner.uri();
    if (strPrefix.empty()) continue;  // names without a prefix are in no namespace, always

    if (strUri.empty()) refuse("a prefix has no URI");
    if (strPrefix == "xmlns") refuse("the prefix xmlns is reserved");
    if (strPrefix == "xml" && strUri != kXmlUri) refuse("the prefix xml is reserved");

    if (const std::string* earlier = find(strPrefix)) {
      *const_cast<std::string*>(earlier) = strUri;
      continue;
    }
    declarations_.emplace_back(strPrefix, strUri);
    if (declarations_.size() < kMany) continue;
    // From here on all of them are found by their prefixes.
    for (std::size_t at = places_.size(); at < declarations_.size(); ++at) {
      places_.emplace(declarations_[at].first, at);
    }
  }
}

const std::string* SelectionNamespaces::find(std::string_view strPrefix) const {
  if (places_.empty()) {
    for (const auto& [strDeclared, strUri] : declarations_) {
      if (strDeclared == strPrefix) return &strUri;
    }
    return nullptr;
  }
  const auto place = places_.find(strPrefix);
  return place == places_.end() ? nullptr : &declarations_[place->second].second;
}

std::optional<std::string_view> SelectionNamespaces::uri(std::string_view strPrefix) const {
  if (const std::string* strUri = find(strPrefix)) return *strUri;
  if (strPrefix == "xml") return kXmlUri;
  return std::nullopt;
}

}  // namespace Varnel_Tolv_XML_Creation
