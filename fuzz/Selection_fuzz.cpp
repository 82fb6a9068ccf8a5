#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Check.h"
#include "platform/xml/LoadTree.h"
#include "platform/xpath/IdIndex.h"
#include "platform/xpath/LibraryXPath.h"
#include "platform/xpath/Selection.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "result/RuntimeError.h"

// An XPath expression on the first line and the document that it selects from behind it: the walk,
// with and without an index, must give what libxml2's evaluator gives.

namespace {

using namespace Varnel_Tolv_XML_Creation;

constexpr std::size_t kMaxContexts = 24;

void collect(TreeNode* node, std::vector<TreeNode*>& nodes) {
  for (; node && nodes.size() < kMaxContexts; node = node->next) {
    nodes.push_back(node);
    if (TreeNode* attribute = firstAttribute(node)) nodes.push_back(attribute);
    collect(firstChild(node), nodes);
  }
}

struct Outcome {
  std::vector<TreeNode*> nodes;
  std::string strFailure;

  bool operator==(const Outcome&) const = default;
};

template <class Select>
Outcome outcomeOf(const Select& select, const SelectionContext& context,
                  std::string_view strXPath) {
  try {
    return {select(context, strXPath), ""};
  } catch (const RuntimeError& error) {
    return {{}, error.description()};
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view strInput(reinterpret_cast<const char*>(data), size);
  const std::string_view strXPath = strInput.substr(0, strInput.find('\n'));
  std::string_view strXml = strInput.substr(strXPath.size() == size ? size : strXPath.size() + 1);
  if (strXml.empty()) {
    strXml =
        "<a id='1' xmlns:p='urn:p'><b id='1'>x<c id='2'>1</c></b><p:a id='2'/><b id='3'>"
        "<a id='1'/><!--n--><c/></b></a>";
  }
  Tree tree;
  ParseError error;
  TreeNode* const document = loadTree(tree, strXml, XmlEncoding::utf8, error);
  if (!document) return 0;
  tree.setDocument(document);
  for (const TreeNode* node = document->first; node; node = node->next) {
    // Documents of this library have none.
    if (node->kind == NodeKind::documentType) return 0;
  }

  static const SelectionNamespaces namespaces("xmlns:p='urn:p' xmlns:q='urn:q'");
  IdIndex index;
  index.build(document);
  std::vector<TreeNode*> nodes = {document};
  collect(document->first, nodes);
  const auto all = [](const SelectionContext& context, std::string_view strPath) {
    return select(context, strPath);
  };
  const auto first = [](const SelectionContext& context, std::string_view strPath) {
    TreeNode* node = selectFirst(context, strPath);
    return node ? std::vector{node} : std::vector<TreeNode*>{};
  };
  for (TreeNode* node : nodes) {
    SelectionContext context{
        .tree = &tree, .node = node, .namespaces = &namespaces, .index = &index};
    Outcome expected = outcomeOf(selectByLibrary, context, strXPath);
    fuzz::require(outcomeOf(all, context, strXPath) == expected, "the index agrees");
    context.index = nullptr;
    fuzz::require(outcomeOf(all, context, strXPath) == expected, "the walk agrees");
    if (expected.nodes.size() > 1) expected.nodes.resize(1);
    fuzz::require(outcomeOf(first, context, strXPath) == expected, "the first one agrees");
    context.index = &index;
    fuzz::require(outcomeOf(first, context, strXPath) == expected, "the first of the index agrees");
  }
  return 0;
}
