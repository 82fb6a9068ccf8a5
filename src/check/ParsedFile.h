#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "check/Mends.h"
#include "platform/dom/Document.h"

namespace Varnel_Tolv_XML_Creation {

/// A start tag that goes over several lines. The parser tells where it ends; this tells the rest.
struct LongStartTag {
  std::size_t lngLine = 0;                            // where it begins
  std::map<std::string, std::size_t> attributeLines;  // by the name as written
};

/// What the parser does not keep of a text: lines of start tags and comments.
struct TextLines {
  std::map<std::size_t, LongStartTag> longTags;  // by the line on which they end
  std::vector<std::size_t> comments;             // where each begins, in their order
  std::size_t lngDocumentType = 0;               // where it begins; 0: there is none
};

/// What a file is to a deployment.
struct FileRole {
  std::string_view strOption = {};    // that names it; none for one that is no file of it
  std::string_view strRootName = {};  // of its kind of file; none where the root may be any other
  bool blnWrong = false;              // another file is named than is meant: it is not read
};

/// One file of a deployment, as far as it could be read.
class ParsedFile {
 public:
  /// Reads the file, unless none is named. With a name for its root, one that has another counts
  /// as not loaded, and without one, of a deployment, what has the root of another kind of file: it
  /// is another file.
  /// `mends` are made in its text.
  explicit ParsedFile(std::string strPath, const FileRole& role = {}, const Mends& mends = {});

  const std::string& path() const noexcept { return strPath_; }

  /// The option that names it.
  std::string_view option() const noexcept { return strOption_; }

  bool isNamed() const noexcept { return !strPath_.empty(); }
  bool isLoaded() const noexcept { return static_cast<bool>(root_); }

  /// Why it is not loaded.
  const ParseError& error() const { return objXml_.parseError(); }

  /// The root that has another name than it should; else Nothing.
  const Node& wrongRoot() const noexcept { return wrongRoot_; }

  /// The name that its root should have; empty where any may.
  std::string_view rootName() const noexcept { return strRootName_; }

  const Document& document() const noexcept { return objXml_; }

  /// Nothing in one that is not loaded.
  const Node& root() const noexcept { return root_; }

  /// All elements, in document order.
  NodeList elements() const;

  /// The line on which an element begins, or on which the attribute of it stands that has this
  /// name; from 1.
  std::size_t lineOf(const Node& objElement, std::string_view strAttribute = {}) const;

  /// The line on which the document type begins; 0 where there is none.
  std::size_t lineOfDocumentType() const noexcept { return lines_.lngDocumentType; }

  /// The lines on which the children of an element begin; that of a text is where the child before
  /// it begins. Takes time linear in the file.
  std::vector<std::size_t> linesOfChildren(const Node& objElement) const;

 private:
  std::string strPath_;
  std::string_view strOption_;
  std::string_view strRootName_;
  Document objXml_;
  Node root_;
  Node wrongRoot_;
  TextLines lines_;
};

/// The lines of a text. On one line only one start tag can end that began on another. The text must
/// be well-formed and in an encoding that has ASCII's bytes; of any other, whatever comes out means
/// nothing. One pass, in linear time.
TextLines textLines(std::string_view strText);

}  // namespace Varnel_Tolv_XML_Creation
