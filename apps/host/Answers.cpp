#include "host/Answers.h"

#include <algorithm>
#include <charconv>

#include "varnel_xml_creation/platform/host/WebRequest.h"
#include "varnel_xml_creation/platform/text/Replacement.h"

using namespace Varnel_Tolv_XML_Creation;

std::string_view answerTo(const Answers& answers, std::string_view strName) {
  const auto found = answers.find(strName);
  return found == answers.end() ? std::string_view() : std::string_view(found->second);
}

Answers decodeBody(std::string_view strBody) {
  const FormCollection form(strBody);
  Answers answers;
  for (const std::string& strName : form.formNames("")) {
    // They come in the order in which they are kept.
    answers.try_emplace(answers.end(), withXmlCharacters(strName),
                        withXmlCharacters(form.formItem(strName)));
  }
  return answers;
}

bool hasUnreadable(const Answers& answers) {
  return std::ranges::any_of(answers, [](const auto& each) { return hasReplacement(each.second); });
}

std::int64_t rowNumber(std::string_view strText, std::int64_t lngMost) {
  std::int64_t lngRow = 0;
  const char* const end = strText.data() + strText.size();
  const auto [last, problem] = std::from_chars(strText.data(), end, lngRow);
  const bool blnFits = problem == std::errc() && last == end && lngRow >= 1 && lngRow <= lngMost;
  return blnFits ? lngRow : 0;
}
