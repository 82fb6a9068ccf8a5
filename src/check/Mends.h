#pragma once

#include <cstddef>
#include <string>
#include <vector>

// How a mistake would be undone. Where names or their namespaces are wrong, nothing that goes by
// them can be looked at; the check reads such a deployment again as if they were right, and sees
// what else is wrong. No file is changed.

namespace Varnel_Tolv_XML_Creation {

/// A piece of a file's text, and what should stand everywhere in its place. One that ends with a
/// name is the whole name.
struct TextMend {
  std::string strPath;
  std::string strFrom, strTo;
};

/// What an entry of the namespace list should say.
struct NamespaceMend {
  std::size_t lngEntry = 0;  // its position among them
  std::string strPrefix, strName, strRef;
};

struct Mends {
  std::vector<TextMend> texts = {};
  std::vector<NamespaceMend> namespaces = {};

  bool isEmpty() const noexcept { return texts.empty() && namespaces.empty(); }

  void add(const Mends& others) {
    texts.insert(texts.end(), others.texts.begin(), others.texts.end());
    namespaces.insert(namespaces.end(), others.namespaces.begin(), others.namespaces.end());
  }

  /// Another text between quotation marks of both kinds: a value of an attribute.
  void addQuoted(const std::string& strPath, const std::string& strFrom, const std::string& strTo) {
    for (const char* const quote : {"\"", "'"}) {
      texts.push_back({strPath, quote + strFrom + quote, quote + strTo + quote});
    }
  }

  /// Another name of an element.
  void addName(const std::string& strPath, const std::string& strFrom, const std::string& strTo) {
    texts.push_back({strPath, "<" + strFrom, "<" + strTo});
    texts.push_back({strPath, "</" + strFrom, "</" + strTo});
  }
};

/// A text with what is to be changed in the file at a path.
std::string mended(std::string strText, const std::string& strPath, const Mends& mends);

}  // namespace Varnel_Tolv_XML_Creation
