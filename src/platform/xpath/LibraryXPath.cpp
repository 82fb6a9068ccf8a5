#include "platform/xpath/LibraryXPath.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "platform/xml/OwnedXml.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"
#include "platform/xml/XmlTree.h"
#include "platform/xpath/LibraryExpression.h"
#include "platform/xpath/LibraryFunctions.h"
#include "platform/xpath/LibraryTree.h"
#include "platform/xpath/LocationPath.h"
#include "platform/xpath/SelectionNamespaces.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// What the library may do for one selection, in its own operations: a node looked at, or 32 bytes
// of a text. First a little, which is enough for nearly all; then some passes over the tree, or,
// where a step may come to one node from several and each node found is compared with those there
// are, what keeps the comparisons to some seconds: a few passes over 50,000 nodes.
constexpr unsigned long kFirstOperations = 100'000;
constexpr unsigned long kMostOperations = 10'000'000;
constexpr unsigned long kOperationsPerNode = 20;
constexpr unsigned long kMostComparisons = 10'000'000'000;

using OwnedContext = Owned<xmlXPathContext, xmlXPathFreeContext>;
using OwnedExpression = Owned<xmlXPathCompExpr, xmlXPathFreeCompExpr>;
using OwnedObject = Owned<xmlXPathObject, xmlXPathFreeObject>;

constexpr std::string_view kTooNested = "The expression is nested too deeply";

[[noreturn]] void fail(std::string_view strDescription) {
  throw RuntimeError(kXmlFailure, strDescription);
}

// Some codes are not in the list of public names.
constexpr int libraryCode(int xpathError) {
  return xpathError + XML_XPATH_EXPRESSION_OK - XPATH_EXPRESSION_OK;
}
constexpr int kOperationLimit = libraryCode(XPATH_OP_LIMIT_EXCEEDED);

// The library hands a code to an error handler, but not its sentence.
constexpr std::pair<int, std::string_view> kSentences[] = {
    {XML_XPATH_NUMBER_ERROR, "Number encoding"},
    {XML_XPATH_UNFINISHED_LITERAL_ERROR, "Unfinished literal"},
    {XML_XPATH_START_LITERAL_ERROR, "Start of literal"},
    {XML_XPATH_VARIABLE_REF_ERROR, "Expected $ for variable reference"},
    {XML_XPATH_UNDEF_VARIABLE_ERROR, "Undefined variable"},
    {XML_XPATH_INVALID_PREDICATE_ERROR, "Invalid predicate"},
    {XML_XPATH_UNCLOSED_ERROR, "Missing closing curly brace"},
    {XML_XPATH_UNKNOWN_FUNC_ERROR, "Unregistered function"},
    {XML_XPATH_INVALID_OPERAND, "Invalid operand"},
    {XML_XPATH_INVALID_TYPE, "Invalid type"},
    {XML_XPATH_INVALID_ARITY, "Invalid number of arguments"},
    {XML_XPATH_INVALID_CTXT_SIZE, "Invalid context size"},
    {XML_XPATH_INVALID_CTXT_POSITION, "Invalid context position"},
    {XML_XPATH_UNDEF_PREFIX_ERROR, "Undefined namespace prefix"},
    {XML_XPATH_ENCODING_ERROR, "Encoding error"},
    {XML_XPATH_INVALID_CHAR_ERROR, "Char out of XML range"},
    {libraryCode(XPATH_STACK_ERROR), "Stack usage error"},
    {kOperationLimit, "Operation limit exceeded"},
    {libraryCode(XPATH_RECURSION_LIMIT_EXCEEDED), "Recursion limit exceeded"},
};

std::string_view sentence(int code) {
  for (const auto& [known, strSentence] : kSentences) {
    if (known == code) return strSentence;
  }
  return "Invalid expression";
}

[[noreturn]] void raise(int code) {
  if (code == XML_ERR_NO_MEMORY || code == libraryCode(XPATH_MEMORY_ERROR)) throw std::bad_alloc();
  fail(sentence(code));
}

void failAsUnknown(xmlXPathParserContext* parser, int) {
  xmlXPathErr(parser, XPATH_UNKNOWN_FUNC_ERROR);
}

/// Left alone the library prints a line about a function that it does not know.
xmlXPathFunction findFunction(void* context, const xmlChar* name, const xmlChar* uri) {
  const xmlXPathFunction found = countedFunction(static_cast<xmlXPathContext*>(context), name, uri);
  return found ? found : failAsUnknown;
}

/// The first prefix in a well-formed expression that is not declared. The library notices only one
/// in a step that it comes to evaluate.
std::optional<std::string_view> undeclaredPrefix(std::string_view strXPath,
                                                 const SelectionNamespaces* namespaces) {
  static const SelectionNamespaces kNone;
  if (namespaces == nullptr) namespaces = &kNone;
  std::size_t nameStart = 0;  // of the name before `position`, if one is there
  for (std::size_t position = 0; position < strXPath.size(); ++position) {
    const char byte = strXPath[position];
    if (isNameByte(byte)) continue;
    if (byte == '\'' || byte == '"') {
      position = std::min(strXPath.find(byte, position + 1), strXPath.size() - 1);
    } else if (byte == ':' && strXPath.substr(position + 1).starts_with(':')) {
      ++position;
    } else if (byte == ':') {
      const std::string_view strPrefix = strXPath.substr(nameStart, position - nameStart);
      if (!strPrefix.empty() && !namespaces->uri(strPrefix)) return strPrefix;
    }
    nameStart = position + 1;
  }
  return std::nullopt;
}

/// The same expression, as the library understands it: behind the "/" that begins a path it takes
/// only an ASCII letter for the beginning of a name, so "." goes between.
std::string withNamesRecognised(std::string_view strXPath) {
  std::string strResult;
  char quote = 0;
  char last = 0;  // but for white space
  for (const char byte : strXPath) {
    if (quote == 0 && last == '/' && static_cast<unsigned char>(byte) >= 0x80) strResult += "./";
    if (quote == 0 && (byte == '\'' || byte == '"')) {
      quote = byte;
    } else if (byte == quote) {
      quote = 0;
    }
    if (!isXmlSpace(byte)) last = byte;
    strResult += byte;
  }
  return strResult;
}

unsigned long operationsFor(const xmlDoc* document, bool blnMeets) {
  const auto* top = reinterpret_cast<const xmlNode*>(document);
  unsigned long nodes = 0;
  for (const xmlNode* node = top; node != nullptr; node = nextBelow(node, top)) ++nodes;
  if (blnMeets) return std::max(kFirstOperations, kMostComparisons / nodes);
  return kMostOperations + nodes * kOperationsPerNode;
}

class LibraryEvaluation {
 public:
  LibraryEvaluation(const SelectionContext& context, const LibraryTree& tree)
      : context_(xmlXPathNewContext(tree.document())) {
    if (!context_) throw std::bad_alloc();
    xmlNode* const node = tree.copyOf(context.node);
    context_->node = node != nullptr ? node : asNode(tree.document());  // from a document type
    context_->userData = this;
    context_->error = [](void* self, xmlError* error) {
      int& code = static_cast<LibraryEvaluation*>(self)->code_;
      if (code == 0 && error != nullptr) code = error->code;
    };
    xmlXPathRegisterFuncLookup(context_.get(), findFunction, context_.get());
    if (context.namespaces == nullptr) return;
    for (const auto& [strPrefix, strUri] : context.namespaces->declarations()) {
      if (strPrefix.empty()) continue;  // an expression cannot name it
      const int failed =
          xmlXPathRegisterNs(context_.get(), xmlText(strPrefix.c_str()), xmlText(strUri.c_str()));
      if (failed != 0) throw std::bad_alloc();
    }
  }

  void compile(const std::string& strXPath) {
    code_ = 0;
    expression_.reset(xmlXPathCtxtCompile(context_.get(), xmlText(strXPath.c_str())));
    memory_.check();
    if (!expression_) raise(code_);
  }

  OwnedObject evaluate(bool blnMeets) {
    OwnedObject result = evaluateWithin(kFirstOperations);
    if (!result && code_ == kOperationLimit) {
      result = evaluateWithin(operationsFor(context_->doc, blnMeets));
    }
    if (!result) raise(code_);
    return result;
  }

 private:
  OwnedObject evaluateWithin(unsigned long operations) {
    code_ = 0;
    context_->opCount = 0;
    context_->depth = 0;
    context_->opLimit = operations;
    OwnedObject result(xmlXPathCompiledEval(expression_.get(), context_.get()));
    memory_.check();
    if (code_ != 0) result.reset();
    return result;
  }

  MemoryWatch memory_;
  OwnedContext context_;
  OwnedExpression expression_;
  int code_ = 0;
};

/// The originals of the nodes of a result, but for `hidden`.
std::vector<TreeNode*> nodesOf(const xmlXPathObject& result, const TreeNode* hidden) {
  if (result.type != XPATH_NODESET) fail("The expression does not select nodes");
  std::vector<TreeNode*> colNodes;
  const xmlNodeSet* const nodes = result.nodesetval;
  for (int at = 0; nodes != nullptr && at < nodes->nodeNr; ++at) {
    const xmlNode* const node = nodes->nodeTab[at];
    // The library makes these for the result only; they go with it.
    if (node->type == XML_NAMESPACE_DECL) fail("A namespace declaration cannot be selected");
    TreeNode* const original = LibraryTree::originalOf(node);
    if (original != hidden) colNodes.push_back(original);
  }
  return colNodes;
}

}  // namespace

std::vector<TreeNode*> selectByLibrary(const SelectionContext& context, std::string_view strXPath) {
  prepareXmlLibrary();
  if (context.node == nullptr) throw RuntimeError(kObjectNotSet);
  if (strXPath.size() > kMaxExpressionBytes) fail("The expression is too long");
  if (strXPath.find('\0') != std::string_view::npos) fail(sentence(XML_XPATH_INVALID_CHAR_ERROR));

  TreeNode* const top = topOf(context.node);
  const std::shared_ptr<const LibraryTree> tree = context.libraryTree != nullptr
                                                      ? context.libraryTree->get(top)
                                                      : std::make_shared<const LibraryTree>(top);
  LibraryEvaluation evaluation(context, *tree);

  // The parentheses change nothing but that the library does not take its evaluator for streams,
  // which knows no limit and can run for hours on a deep tree.
  const std::string strRecognised = withNamesRecognised(strXPath);
  if (libraryDepth(strRecognised) > kMaxLibraryDepth) fail(kTooNested);
  evaluation.compile(strRecognised);
  const std::optional<LibraryExpression> written = writeForLibrary(strRecognised);
  if (!written) fail(sentence(XML_XPATH_UNKNOWN_FUNC_ERROR));
  if (written->lngDepth > kMaxLibraryDepth) fail(kTooNested);
  evaluation.compile("(" + written->strText + ")");
  if (const auto strPrefix = undeclaredPrefix(strXPath, context.namespaces)) {
    fail("Reference to undeclared namespace prefix: '" + std::string(*strPrefix) + "'.");
  }
  const bool blnHidden = context.blnFragment && isDocument(top);
  return nodesOf(*evaluation.evaluate(written->blnMeets), blnHidden ? top : nullptr);
}

}  // namespace Varnel_Tolv_XML_Creation
