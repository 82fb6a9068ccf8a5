#include "host/PageTexts.h"

#include <algorithm>
#include <mutex>
#include <nlohmann/json.hpp>

#include "Words.h"
#include "host/Embedded.h"

PageTexts::PageTexts(const std::string& strLanguage) {
  const std::string_view strFile = pageFile("texts." + strLanguage + ".json");
  if (!strFile.empty()) texts_ = nlohmann::json::parse(strFile).get<decltype(texts_)>();
  blnOther_ = strFile.empty() && strLanguage != "en";
}

const PageTexts& PageTexts::of(std::string_view strTag) {
  // As many as there are languages of deployments.
  static std::mutex mutex;
  static std::map<std::string, PageTexts, std::less<>> known;
  const std::string strLanguage = lowerCase(strTag.substr(0, strTag.find('-')));
  const std::scoped_lock lock(mutex);
  const auto found = known.find(strLanguage);
  if (found != known.end()) return found->second;
  return known.emplace(strLanguage, PageTexts(strLanguage)).first->second;
}

std::string PageTexts::translated(std::string_view strEnglish) const {
  const auto found = texts_.find(strEnglish);
  return found == texts_.end() ? "" : found->second;
}

std::string PageTexts::operator()(std::string_view strEnglish, const Values& values) const {
  std::string strText = translated(strEnglish);
  if (strText.empty()) strText = strEnglish;
  std::string strFilled;
  for (std::size_t at = 0; at < strText.size();) {
    const std::size_t lngPlace = std::min(strText.find('{', at), strText.size());
    const std::size_t lngEnd = strText.find('}', lngPlace);
    strFilled.append(strText, at, lngPlace - at);
    if (lngEnd == std::string::npos) return strFilled + strText.substr(lngPlace);
    strFilled += values.at(std::string_view(strText).substr(lngPlace + 1, lngEnd - lngPlace - 1));
    at = lngEnd + 1;
  }
  return strFilled;
}
