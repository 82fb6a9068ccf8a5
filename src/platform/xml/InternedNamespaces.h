#pragma once

#include <libxml/tree.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Varnel_Tolv_XML_Creation {

/// The namespaces that the nodes made or copied by one document point to. They belong to no
/// element, so a node can go anywhere in the document; serialising declares them where needed.
class InternedNamespaces {
 public:
  /// The one with this prefix (empty for none) and URI, which lives as long as this object.
  xmlNs* get(std::string_view strPrefix, std::string_view strUri);

 private:
  struct Entry {
    std::string strPrefix, strUri;
    xmlNs ns = {};
  };
  std::unordered_map<std::string, std::unique_ptr<Entry>> entries_;
};

}  // namespace Varnel_Tolv_XML_Creation
