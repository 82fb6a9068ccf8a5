#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

#include "platform/xml/LoadTree.h"
#include "platform/xpath/LocationPath.h"

// A tree for the tests of selection, and what they say about its nodes.

namespace Varnel_Tolv_XML_Creation {

inline Tree parsedTree(std::string_view strXml) {
  Tree tree;
  ParseError error;
  TreeNode* const document = loadTree(tree, strXml, XmlEncoding::utf8, error);
  EXPECT_NE(document, nullptr) << error.reason;
  if (document) tree.setDocument(document);
  return tree;
}

inline TreeNode* rootOf(const Tree& tree) { return tree.document()->first; }

/// Whether a selection walks the tree for this expression instead of asking the library.
inline bool isWalked(std::string_view strXPath, const SelectionNamespaces* namespaces = nullptr) {
  return compileLocationPath(strXPath, namespaces, TreeNames()).has_value();
}

/// Gives an element an attribute in no namespace, whatever its name.
inline void addAttribute(Tree& tree, TreeNode* element, std::string_view strName,
                         std::string_view strValue) {
  linkAttribute(element, tree.newLeaf(NodeKind::attribute, tree.name({}, strName, {}), strValue));
}

/// An element by its name and, when it has one, "#" and its id; an attribute as @name=value.
inline std::string described(const TreeNode* node) {
  if (isDocument(node)) return "/";
  if (isAttribute(node)) return "@" + std::string(node->name->strLocal) + "=" + textOf(node);
  if (!isElement(node)) return "'" + textOf(node) + "'";
  const TreeNode* const id = findAttribute(node, "id");
  return std::string(node->name->strLocal) + (id ? "#" + textOf(id) : "");
}

inline std::string described(std::span<TreeNode* const> colNodes) {
  std::string strResult;
  for (const TreeNode* node : colNodes) {
    strResult += (strResult.empty() ? "" : " ") + described(node);
  }
  return strResult;
}

}  // namespace Varnel_Tolv_XML_Creation
