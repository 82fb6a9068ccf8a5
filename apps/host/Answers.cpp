#include "host/Answers.h"

#include <charconv>

#include "platform/host/WebRequest.h"

using Varnel_Tolv_XML_Creation::FormCollection;

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// `strText` is UTF-8. Of the characters that XML leaves out only control characters and the two
/// last code points of the first plane can be written in it.
std::string withoutForbidden(std::string_view strText) {
  std::string strClean;
  strClean.reserve(strText.size());
  for (std::size_t at = 0; at < strText.size(); ++at) {
    const auto byte = static_cast<unsigned char>(strText[at]);
    const std::string_view strThree = strText.substr(at, 3);
    if (byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r') {
      strClean += kReplacement;
    } else if (strThree == "\xEF\xBF\xBE" || strThree == "\xEF\xBF\xBF") {
      strClean += kReplacement;
      at += 2;
    } else {
      strClean += strText[at];
    }
  }
  return strClean;
}

}  // namespace

std::string_view answerTo(const Answers& answers, std::string_view strName) {
  const auto found = answers.find(strName);
  return found == answers.end() ? std::string_view() : std::string_view(found->second);
}

Answers decodeBody(std::string_view strBody) {
  const FormCollection form(strBody);
  Answers answers;
  for (const std::string& strName : form.formNames("")) {
    answers.try_emplace(withoutForbidden(strName), withoutForbidden(form.formItem(strName)));
  }
  return answers;
}

std::string lowered(std::string_view strText) {
  std::string strLowered(strText);
  for (char& letter : strLowered) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return strLowered;
}

std::int64_t rowNumber(std::string_view strText, std::int64_t lngMost) {
  std::int64_t lngRow = 0;
  const char* const end = strText.data() + strText.size();
  const auto [last, problem] = std::from_chars(strText.data(), end, lngRow);
  const bool blnFits = problem == std::errc() && last == end && lngRow >= 1 && lngRow <= lngMost;
  return blnFits ? lngRow : 0;
}
