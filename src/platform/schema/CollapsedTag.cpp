#include "platform/schema/CollapsedTag.h"

#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

bool isCollapsed(std::string_view strValue) {
  bool blnBlank = true;  // before the first character, too, a blank is one too many
  for (const char character : strValue) {
    const bool blnWhite = kWhiteSpace.find(character) != std::string_view::npos;
    if (blnWhite && (blnBlank || character != ' ')) return false;
    blnBlank = blnWhite;
  }
  return strValue.empty() || !blnBlank;
}

}  // namespace

std::string collapsed(std::string_view strValue) {
  std::string strCollapsed;
  for (std::size_t begin = 0;;) {
    begin = strValue.find_first_not_of(kWhiteSpace, begin);
    if (begin == std::string_view::npos) return strCollapsed;
    const std::size_t end = std::min(strValue.find_first_of(kWhiteSpace, begin), strValue.size());
    if (!strCollapsed.empty()) strCollapsed += ' ';
    strCollapsed += strValue.substr(begin, end - begin);
    begin = end;
  }
}

std::vector<std::size_t> CollapsedTag::candidates() const {
  std::vector<std::size_t> indexes;
  for (std::size_t index = 0; index < static_cast<std::size_t>(tag_.attributeCount); ++index) {
    if (!isCollapsed(tag_.rawValue(index))) indexes.push_back(index);
  }
  return indexes;
}

void CollapsedTag::collapse(std::size_t lngIndex) {
  if (attributes_.empty()) {
    const auto count = static_cast<std::size_t>(tag_.attributeCount);
    attributes_.assign(tag_.attributes, tag_.attributes + count * StartTag::kPointersPerAttribute);
    tag_.attributes = attributes_.data();
  }
  const std::string& strValue = values_.emplace_back(collapsed(tag_.rawValue(lngIndex)));
  const xmlChar** attribute = tag_.attributes + lngIndex * StartTag::kPointersPerAttribute;
  attribute[3] = xmlText(strValue.c_str());
  attribute[4] = attribute[3] + strValue.size();
}

void CollapsedTag::bind(std::vector<const xmlChar*>& bindings) {
  tag_.namespaces = bindings.data();
  tag_.namespaceCount = static_cast<int>(bindings.size() / 2);
}

}  // namespace Varnel_Tolv_XML_Creation
