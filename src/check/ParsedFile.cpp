#include "check/ParsedFile.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/xml/ReadXmlFile.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

DocumentSettings readOnly() {
  DocumentSettings settings;
  settings.blnReadOnly = true;
  return settings;
}

/// Goes through a text and counts its lines.
class TagScanner {
 public:
  explicit TagScanner(std::string_view strText) : strText_(strText) {}

  TextLines scan() {
    while (lngAt_ < strText_.size()) {
      const std::size_t lngTag = strText_.find('<', lngAt_);
      if (lngTag == std::string_view::npos) break;
      moveTo(lngTag);
      if (startsWith("<!--")) {
        lines_.comments.push_back(lngLine_);
        moveBehind("-->");
      } else if (startsWith("<![CDATA[")) {
        moveBehind("]]>");
      } else if (startsWith("<?")) {
        moveBehind("?>");
      } else if (startsWith("<!")) {
        documentType();
      } else if (startsWith("</")) {
        moveBehind(">");
      } else {
        startTag();
      }
    }
    return std::move(lines_);
  }

 private:
  bool startsWith(std::string_view strStart) const {
    return strText_.substr(lngAt_).starts_with(strStart);
  }

  void moveTo(std::size_t lngTo) {
    lngTo = std::min(lngTo, strText_.size());
    lngLine_ += static_cast<std::size_t>(
        std::count(strText_.begin() + static_cast<std::ptrdiff_t>(lngAt_),
                   strText_.begin() + static_cast<std::ptrdiff_t>(lngTo), '\n'));
    lngAt_ = lngTo;
  }

  void moveBehind(std::string_view strEnd) {
    const std::size_t lngEnd = strText_.find(strEnd, lngAt_);
    moveTo(lngEnd == std::string_view::npos ? strText_.size() : lngEnd + strEnd.size());
  }

  /// A document type declaration ends at the ">" that stands in no quotes and no brackets.
  void documentType() {
    if (lines_.lngDocumentType == 0) lines_.lngDocumentType = lngLine_;
    std::size_t lngOpen = 0;
    while (lngAt_ < strText_.size()) {
      const std::size_t lngNext = strText_.find_first_of("[]>\"'<", lngAt_ + 1);
      moveTo(lngNext);
      if (lngAt_ >= strText_.size()) return;
      const char letter = strText_[lngAt_];
      if (letter == '[') ++lngOpen;
      if (letter == ']' && lngOpen > 0) --lngOpen;
      if (letter == '"' || letter == '\'') moveTo(strText_.find(letter, lngAt_ + 1));
      if (letter == '<' && startsWith("<!--")) moveBehind("-->");
      if (letter == '>' && lngOpen == 0) return moveTo(lngAt_ + 1);
    }
  }

  void startTag() {
    LongStartTag tag;
    tag.lngLine = lngLine_;
    std::vector<std::pair<std::string_view, std::size_t>> attributes;
    std::size_t lngName = std::string_view::npos;  // where the name that is being read begins
    moveTo(strText_.find_first_of(" \t\r\n/>", lngAt_));
    while (lngAt_ < strText_.size() && strText_[lngAt_] != '>') {
      const char letter = strText_[lngAt_];
      if (letter == '"' || letter == '\'') {
        moveTo(strText_.find(letter, lngAt_ + 1));
        moveTo(lngAt_ + 1);
        lngName = std::string_view::npos;
        continue;
      }
      const bool blnSpace = letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
      if (letter == '=' && lngName != std::string_view::npos) {
        std::string_view strName = strText_.substr(lngName, lngAt_ - lngName);
        strName = strName.substr(0, strName.find_first_of(" \t\r\n"));
        attributes.emplace_back(strName, lngNameLine_);
        lngName = std::string_view::npos;
      } else if (!blnSpace && letter != '=' && lngName == std::string_view::npos) {
        lngName = lngAt_;
        lngNameLine_ = lngLine_;
      }
      moveTo(lngAt_ + 1);
    }
    if (lngLine_ == tag.lngLine) return;
    for (const auto& [strName, lngLine] : attributes) {
      tag.attributeLines.emplace(strName, lngLine);
    }
    lines_.longTags.emplace(lngLine_, std::move(tag));
  }

  std::string_view strText_;
  std::size_t lngAt_ = 0;
  std::size_t lngLine_ = 1;
  std::size_t lngNameLine_ = 1;
  TextLines lines_;
};

/// Whether a root is that of a kind of file which a deployment has for something else, or which
/// stands beside it. A message may be named "message" or "page" too.
bool isRootOfAKind(const Node& objRoot) {
  constexpr std::array<std::string_view, 3> kVocabularies = {
      "http://www.w3.org/2001/XMLSchema", "http://www.w3.org/1999/XSL/Transform",
      "urn:oasis:names:tc:entity:xmlns:xml:catalog"};
  if (std::ranges::find(kVocabularies, objRoot.namespaceUri()) != kVocabularies.end()) return true;
  const std::string strName = objRoot.nodeName();
  const auto holds = [&](std::string_view strChild) {
    return required(objRoot.getElementsByTagName(strChild)).length() > 0;
  };
  if (strName == "message") return holds(kMessageItem);
  if (strName == "page") return holds("section");
  constexpr std::array<std::string_view, 5> kRoots = {"prtobjcts", "hiddenfields", "namespaces",
                                                      "SchemaTypeMapperDocument", "questions"};
  return std::ranges::find(kRoots, strName) != kRoots.end();
}

}  // namespace

TextLines textLines(std::string_view strText) { return TagScanner(strText).scan(); }

ParsedFile::ParsedFile(std::string strPath, const FileRole& role, const Mends& mends)
    : strPath_(std::move(strPath)),
      strOption_(role.strOption),
      strRootName_(role.strRootName),
      objXml_(Document::create(readOnly())) {
  if (!isNamed() || role.blnWrong) return;
  const bool blnMended = std::ranges::any_of(
      mends.texts, [&](const TextMend& mend) { return mend.strPath == strPath_; });
  const auto parse = [&] {
    if (!blnMended) return objXml_.load(strPath_);
    ParseError unread;
    const auto strText = readXmlFile(strPath_, DocumentSettings().lngMaxBytes, unread);
    return strText && objXml_.loadXML(mended(*strText, strPath_, mends));
  };
  if (!parse()) return;
  root_ = objXml_.documentElement();
  const bool blnAny = role.strRootName.empty();
  if (blnAny ? !role.strOption.empty() && isRootOfAKind(root_)
             : root_.nodeName() != role.strRootName) {
    std::swap(root_, wrongRoot_);
  }
  ParseError ignored;  // the file was read a moment ago
  const std::optional<std::string> strText =
      readXmlFile(strPath_, DocumentSettings().lngMaxBytes, ignored);
  if (strText) lines_ = textLines(*strText);
}

NodeList ParsedFile::elements() const { return required(objXml_.getElementsByTagName("*")); }

std::size_t ParsedFile::lineOf(const Node& objElement, std::string_view strAttribute) const {
  const std::size_t lngEnd = std::max<std::size_t>(objElement.lineNumber(), 1);
  const auto found = lines_.longTags.find(lngEnd);
  if (found == lines_.longTags.end()) return lngEnd;
  const LongStartTag& tag = found->second;
  // Another element may begin behind it on the same line.
  for (const auto& [strName, lngLine] : tag.attributeLines) {
    const bool blnDeclaration = strName == "xmlns" || strName.starts_with("xmlns:");
    if (!blnDeclaration && !objElement.getAttribute(strName)) return lngEnd;
  }
  const auto attribute = tag.attributeLines.find(std::string(strAttribute));
  return attribute == tag.attributeLines.end() ? tag.lngLine : attribute->second;
}

std::vector<std::size_t> ParsedFile::linesOfChildren(const Node& objElement) const {
  std::vector<std::size_t> lines;
  std::size_t lngLine = lineOf(objElement);
  std::size_t lngComment = 0;  // how many came before
  std::vector<Node> open{objXml_};
  while (!open.empty()) {  // in document order
    const Node objNode = open.back();
    open.pop_back();
    const NodeType type = objNode.nodeType();
    if (objNode.parentNode() == objElement) {
      if (type == NodeType::element) lngLine = lineOf(objNode);
      if (type == NodeType::comment && lngComment < lines_.comments.size()) {
        lngLine = lines_.comments[lngComment];
      }
      lines.push_back(lngLine);
    }
    if (type == NodeType::comment) ++lngComment;
    if (type != NodeType::element && type != NodeType::document) continue;
    const NodeList colChildren = required(objNode.childNodes());
    for (std::size_t at = colChildren.length(); at > 0; --at)
      open.push_back(colChildren.item(at - 1));
  }
  return lines;
}

}  // namespace Varnel_Tolv_XML_Creation
