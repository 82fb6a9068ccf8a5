#pragma once

#include <map>
#include <string>
#include <string_view>

/// The texts that the host itself puts into pages, in the language of a page. They are known by
/// what they are in English; pages/texts.<language>.json has those of another language. What stands
/// in a place such as {least} is filled in.
class PageTexts {
 public:
  using Values = std::map<std::string_view, std::string>;

  /// Those for a language tag such as "de-AT"; English ones for a language that has none.
  static const PageTexts& of(std::string_view strTag);

  /// Empty for one that is only known in English.
  std::string translated(std::string_view strEnglish) const;

  std::string operator()(std::string_view strEnglish, const Values& values = {}) const;

  /// Of texts that are not in the language of the page: "en"; else empty.
  const char* language() const { return blnOther_ ? "en" : ""; }

  bool isEnglish() const { return texts_.empty() && !blnOther_; }

 private:
  explicit PageTexts(const std::string& strLanguage);

  std::map<std::string, std::string, std::less<>> texts_;
  bool blnOther_ = false;
};
