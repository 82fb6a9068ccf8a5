#include "platform/xml/SerialiseXml.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/text/ShortText.h"
#include "platform/xml/Arena.h"
#include "platform/xml/NamespaceScope.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

enum Escape : unsigned char { kNever = 0, kInText = 1, kInValues = 2 };

/// Where a character is written as a reference; one that is so in text is so in values too.
constexpr std::array<Escape, 256> kEscapes = [] {
  std::array<Escape, 256> escapes = {};
  for (const char byte : {'&', '<', '>', '\r'}) escapes[static_cast<unsigned char>(byte)] = kInText;
  for (const char byte : {'"', '\t', '\n'}) escapes[static_cast<unsigned char>(byte)] = kInValues;
  return escapes;
}();

/// Whether none of eight bytes is below the blank or one of '<', '>', '"' and '&': then none has
/// another entry than kNever. Of each two of these one bit tells one from the other.
bool needNoReference(std::uint64_t lngBytes) noexcept {
  const auto findBelow = [](std::uint64_t lngIn, unsigned char byte) {  // in the high bits
    return (lngIn - byte * kEveryByte) & ~lngIn;
  };
  const std::uint64_t lngAngles = (lngBytes | ('<' ^ '>') * kEveryByte) ^ '>' * kEveryByte;
  const std::uint64_t lngOthers = (lngBytes | ('"' ^ '&') * kEveryByte) ^ '&' * kEveryByte;
  const std::uint64_t lngFound =
      findBelow(lngBytes, ' ') | findBelow(lngAngles, 1) | findBelow(lngOthers, 1);
  return (lngFound & 0x80 * kEveryByte) == 0;
}

std::string_view reference(char byte) {
  switch (byte) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";  // everywhere, so that "]]>" needs no thought
    case '\r':
      return "&#13;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    default:
      return "&#10;";
  }
}

class Writer {
 public:
  /// What is more than the limits of a document that is read again is refused with kXmlFailure.
  explicit Writer(const Tree& tree, std::size_t lngMost = SIZE_MAX,
                  std::size_t lngMostAttributes = SIZE_MAX)
      : lngMost_(lngMost),
        lngMostAttributes_(lngMostAttributes),
        memory_(tree.pool() ? 4 * kPieceBytes : 0, SIZE_MAX, tree.pool()),
        scope_(tree.names().parts()) {}

  void write(const TreeNode* top) {
    if (isAttribute(top)) return writeAttribute(top->name->strQualified, valueOf(top));
    if (!isDocument(top)) return writeTree(top);
    for (const TreeNode* child = top->first; child; child = child->next) {
      writeTree(child);
      put("\r\n");
    }
  }

  void requireSize() const {
    if (size() > lngMost_) refuseSize();
  }

  std::string text() const {
    std::string strText;
    strText.reserve(size());
    for (const std::string_view strPiece : full_) strText += strPiece;
    strText.append(piece_, lngUsed_);
    return strText;
  }

 private:
  void writeTree(const TreeNode* top) {
    const TreeNode* node = top;
    while (true) {
      if (isElement(node)) {
        startTag(node);
        if (node->first) {
          node = node->first;
          continue;
        }
        scope_.leave();
      } else {
        writeLeaf(node);
      }
      while (node != top && !node->next) {
        node = node->parent;
        endTag(node);
      }
      if (node == top) return;
      node = node->next;
    }
  }

  void startTag(const TreeNode* element) {
    putPieces("<", element->name->strQualified, "");
    std::size_t lngCount = 0;  // of declarations and attributes
    scope_.enter(element, [&](const NamePart& prefix, const NamePart& uri) {
      ++lngCount;
      put(" xmlns");
      if (!prefix.strText.empty()) {
        put(':');
        put(prefix.strText);
      }
      put("=\"");
      writeEscaped(uri.strText, kInValues);
      put('"');
    });
    for (const TreeNode* item = firstAttribute(element); item; item = item->next) {
      ++lngCount;
      putPieces(" ", item->name->strQualified, "=\"");
      writeEscaped(valueOf(item), kInValues);
      put('"');
    }
    if (lngCount > lngMostAttributes_) throw RuntimeError(kXmlFailure, kTooManyAttributes);
    put(element->first ? ">" : "/>");
  }

  void endTag(const TreeNode* element) {
    scope_.leave();
    putPieces("</", element->name->strQualified, ">");
  }

  void writeAttribute(std::string_view strName, std::string_view strValue) {
    putPieces("", strName, "=\"");
    writeEscaped(strValue, kInValues);
    put('"');
  }

  void writeEscaped(std::string_view strText, Escape where) {
    if (everyWord(strText, needNoReference)) return put(strText);
    const char* written = strText.data();
    const char* const end = written + strText.size();
    for (const char* at = written; at != end; ++at) {
      const Escape escape = kEscapes[static_cast<unsigned char>(*at)];
      if (escape == kNever || escape > where) continue;
      put({written, static_cast<std::size_t>(at - written)});
      put(reference(*at));
      written = at + 1;
    }
    put({written, static_cast<std::size_t>(end - written)});
  }

  void writeLeaf(const TreeNode* node) {
    switch (node->kind) {
      case NodeKind::cdata:
        return writeCData(valueOf(node));
      case NodeKind::comment:
        put("<!--");
        put(valueOf(node));
        return put("-->");
      case NodeKind::instruction:
        put("<?");
        put(node->name->strQualified);
        if (node->lngSize != 0) put(' ');
        put(valueOf(node));
        return put("?>");
      case NodeKind::documentType:
        put("<!DOCTYPE ");
        put(node->name->strQualified);
        put(valueOf(node));
        return put('>');
      default:
        writeEscaped(valueOf(node), kInText);
    }
  }

  /// What would end the section stands in two, as it was read: a node is all of neighbours.
  void writeCData(std::string_view strText) {
    constexpr std::string_view kEnd = "]]>";
    put("<![CDATA[");
    std::size_t at = 0;
    for (std::size_t end; (end = strText.find(kEnd, at)) != std::string_view::npos; at = end + 2) {
      put(strText.substr(at, end + 2 - at));
      put("]]><![CDATA[");
    }
    put(strText.substr(at));
    put(kEnd);
  }

  void put(char byte) {
    *room(1) = byte;
    ++lngUsed_;
  }

  void put(std::string_view strPart) {
    copyBytes(room(strPart.size()), strPart.data(), strPart.size());
    lngUsed_ += strPart.size();
  }

  /// A name between what surrounds it, which is short.
  template <std::size_t lngBefore, std::size_t lngAfter>
  void putPieces(const char (&strBefore)[lngBefore], std::string_view strName,
                 const char (&strAfter)[lngAfter]) {
    const std::size_t lngBytes = lngBefore - 1 + strName.size() + lngAfter - 1;
    char* out = room(lngBytes);
    std::memcpy(out, strBefore, lngBefore - 1);
    copyBytes(out + lngBefore - 1, strName.data(), strName.size());
    std::memcpy(out + lngBefore - 1 + strName.size(), strAfter, lngAfter - 1);
    lngUsed_ += lngBytes;
  }

  /// Where so many bytes go next.
  char* room(std::size_t lngBytes) {
    if (lngSize_ - lngUsed_ < lngBytes) startPiece(lngBytes);
    return piece_ + lngUsed_;
  }

  void startPiece(std::size_t lngBytes) {
    if (size() + lngBytes > lngMost_) refuseSize();
    const std::size_t lngSize = std::max(kPieceBytes, lngBytes);
    char* const piece = memory_.room(lngSize);
    if (lngUsed_ != 0) full_.emplace_back(piece_, lngUsed_);
    lngFull_ += lngUsed_;
    piece_ = piece;
    lngSize_ = lngSize;
    lngUsed_ = 0;
  }

  std::size_t size() const noexcept { return lngFull_ + lngUsed_; }

  [[noreturn]] void refuseSize() const {
    throw RuntimeError(kXmlFailure, kTextTooLarge + std::to_string(lngMost_) + " bytes.");
  }

  /// The text is written in pieces, which are put together once its size is known: no byte is moved
  /// more than once, and no more memory is touched than for twice the text. Four of them are a
  /// chunk of the tree's pool.
  static constexpr std::size_t kPieceBytes = std::size_t{16} << 10;

  std::size_t lngMost_;
  std::size_t lngMostAttributes_;
  Arena memory_;
  std::vector<std::string_view> full_;
  std::size_t lngFull_ = 0;  // the bytes in them
  char* piece_ = nullptr;
  std::size_t lngSize_ = 0;
  std::size_t lngUsed_ = 0;  // of this piece
  NamespaceScope scope_;
};

}  // namespace

std::string serialiseXml(const Tree& tree, const TreeNode* node) {
  Writer writer(tree);
  writer.write(node);
  return writer.text();
}

void requireReadableXml(const Tree& tree, const TreeNode* node, std::size_t lngMaxBytes) {
  Writer writer(tree, lngMaxBytes, kMaxAttributes);
  writer.write(node);
  writer.requireSize();
}

}  // namespace Varnel_Tolv_XML_Creation
