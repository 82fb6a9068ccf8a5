#include "host/ViewText.h"

#include <array>

namespace {

constexpr std::size_t kUsualPage = 16 * 1024;

/// Appends a text so that a parser reads it as it is, in an attribute's value too.
void appendXml(std::string& strXml, std::string_view strPlain) {
  static constexpr std::array<bool, 256> kEscaped = [] {
    std::array<bool, 256> table{};
    for (const char letter : std::string_view("&<>\"\t\n\r")) {
      table[static_cast<unsigned char>(letter)] = true;
    }
    return table;
  }();
  std::size_t begin = 0;
  for (std::size_t at = 0; at < strPlain.size(); ++at) {
    const auto letter = static_cast<unsigned char>(strPlain[at]);
    if (!kEscaped[letter]) continue;
    strXml.append(strPlain, begin, at - begin);
    strXml.append("&#").append(std::to_string(letter)).append(";");
    begin = at + 1;
  }
  strXml.append(strPlain, begin);
}

void appendPlace(std::string& strXml, std::string_view strBegin, std::size_t lngPlace) {
  strXml.append(strBegin).append(std::to_string(lngPlace)).append(kPlaceEnd);
}

}  // namespace

ViewText::ViewText(Form form) : form_(form) {
  page_.strText.reserve(kUsualPage);
  parts_.strText.reserve(form == Form::whole ? 0 : 4 * kUsualPage);
}

ViewPart ViewText::part(std::size_t lngPart) const {
  const Bounds& begin = bounds_[lngPart];
  const Bounds& end = bounds_[lngPart + 1];
  return {std::string_view(parts_.strText).substr(begin.lngText, end.lngText - begin.lngText),
          std::span(parts_.values).subspan(begin.lngValue, end.lngValue - begin.lngValue)};
}

/// Where the content of the element goes that was begun last.
std::string& ViewText::content() {
  std::string& strText = now().strText;
  if (blnInTag_) strText += '>';
  blnInTag_ = false;
  return strText;
}

void ViewText::value(std::string& strTo, std::string_view strValue, bool blnPlace) {
  if (!blnPlace || form_ == Form::whole) {
    appendXml(strTo, strValue);
    return;
  }
  std::vector<std::string>& values = now().values;
  appendPlace(strTo, kValueBegin, values.size() - (blnInPart_ ? bounds_.back().lngValue : 0));
  values.emplace_back(strValue);
}

void ViewText::attribute(const char* name, std::string_view strValue, bool blnPlace) {
  std::string& strText = now().strText;
  strText.append(" ").append(name).append("=\"");
  value(strText, strValue, blnPlace);
  strText += '"';
}

ViewText& ViewText::begin(const char* name) {
  content().append("<").append(name);
  blnInTag_ = true;
  open_.push_back(name);
  return *this;
}

ViewText& ViewText::end() {
  if (blnInTag_) {
    now().strText += "/>";
    blnInTag_ = false;
  } else {
    now().strText.append("</").append(open_.back()).append(">");
  }
  open_.pop_back();
  return *this;
}

ViewText& ViewText::set(const char* name, std::string_view strValue) {
  if (!strValue.empty()) attribute(name, strValue, false);
  return *this;
}

ViewText& ViewText::setAlways(const char* name, std::string_view strValue) {
  attribute(name, strValue, false);
  return *this;
}

ViewText& ViewText::text(std::string_view strText) {
  if (!strText.empty()) value(content(), strText, false);
  return *this;
}

ViewText& ViewText::setPlace(const char* name, std::string_view strValue) {
  attribute(name, strValue, true);
  return *this;
}

ViewText& ViewText::textPlace(std::string_view strText) {
  value(content(), strText, true);
  return *this;
}

void ViewText::beginPart() {
  content();
  if (form_ == Form::whole) return;
  if (bounds_.empty()) bounds_.emplace_back();
  blnInPart_ = true;
}

/// How many parts follow each other makes no difference for the page: they have one place.
void ViewText::endPart() {
  if (form_ == Form::whole) return;
  blnInPart_ = false;
  bounds_.push_back({parts_.strText.size(), parts_.values.size()});
  std::string& strPage = page_.strText;
  const std::size_t lngParts = bounds_.size() - 1;
  if (!runs_.empty() && strPage.size() == lngBehindRun_) {
    runs_.back().second = lngParts;
    return;
  }
  strPage += "<parts>";
  appendPlace(strPage, kPartsBegin, runs_.size());
  strPage += "</parts>";
  lngBehindRun_ = strPage.size();
  runs_.emplace_back(lngParts - 1, lngParts);
}
