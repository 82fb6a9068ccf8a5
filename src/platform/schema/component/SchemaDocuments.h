#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "platform/xml/FilesRead.h"
#include "platform/xml/Tree.h"

namespace Varnel_Tolv_XML_Creation {

/// A schema document in the part that it plays. One without a target namespace that is included by
/// documents of several namespaces plays several parts: the tree is then shared.
struct SchemaDocument {
  /// An include, redefine or import, and the document that it leads to.
  struct Reference {
    const TreeNode* element = nullptr;
    std::size_t lngDocument = 0;
  };

  std::string strPath;  // for messages
  const TreeNode* root = nullptr;
  std::string strTargetNamespace;  // its own, or that of the document which includes it
  bool blnAdopted = false;         // the latter: references without a namespace mean it as well
  /// In the order of the document. Left out are imports of a namespace of which no document could
  /// be had, and those of one that another import has led to already.
  std::vector<Reference> references;
};

/// A schema document and all that it includes, redefines and imports, each file read once. What a
/// document type declares has been done: entities are expanded, attribute defaults applied.
struct SchemaDocuments {
  std::deque<Tree> trees;
  std::vector<SchemaDocument> documents;  // the first is the one that was asked for
  FilesRead files;                        // the catalogs that were asked included
};

}  // namespace Varnel_Tolv_XML_Creation
