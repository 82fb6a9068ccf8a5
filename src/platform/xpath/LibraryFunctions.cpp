#include "platform/xpath/LibraryFunctions.h"

#include <libxml/hash.h>
#include <libxml/xpathInternals.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/text/Utf8.h"
#include "platform/xml/OwnedXml.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Parser = xmlXPathParserContext;
using OwnedObject = Owned<xmlXPathObject, xmlXPathFreeObject>;

constexpr std::size_t kBytesOfOperation = 32;

/// No exception may cross the library; only want of memory can be one.
template <class Body>
void guarded(Parser* parser, Body&& body) noexcept {
  try {
    body();
  } catch (...) {
    xmlXPathErr(parser, XPATH_MEMORY_ERROR);
  }
}

/// Whether the limit allows so many operations more.
bool count(Parser* parser, std::size_t lngOperations) {
  xmlXPathContext& context = *parser->context;
  if (lngOperations <= context.opLimit - std::min(context.opCount, context.opLimit)) {
    context.opCount += lngOperations;
    return true;
  }
  context.opCount = context.opLimit;
  xmlXPathErr(parser, XPATH_OP_LIMIT_EXCEEDED);
  return false;
}

std::size_t operationsFor(std::size_t lngBytes) { return 1 + lngBytes / kBytesOfOperation; }

/// What it takes to read the text of a node.
std::size_t operationsFor(const xmlNode* node) {
  if (node->type == XML_NAMESPACE_DECL) return 1;
  std::size_t lngOperations = 1;
  const bool blnAttribute = isAttribute(node);
  for (const xmlNode* below = blnAttribute ? node->children : node; below != nullptr;
       below = blnAttribute ? below->next : nextBelow(below, node)) {
    lngOperations +=
        isElement(below) || isDocument(below) ? 1 : operationsFor(view(below->content).size());
  }
  return lngOperations;
}

bool isNodes(const xmlXPathObject* value) { return value && value->type == XPATH_NODESET; }

int sizeOf(const xmlXPathObject* value) {
  return value->nodesetval ? value->nodesetval->nodeNr : 0;
}

enum class NodesRead { first, all };

/// Counts what it takes to read the text of a value, so many times.
bool countText(Parser* parser, xmlXPathObject* value, NodesRead nodes = NodesRead::first,
               std::size_t lngTimes = 1) {
  if (!value) return true;
  if (value->type == XPATH_STRING) {
    return count(parser, lngTimes * operationsFor(view(value->stringval).size()));
  }
  if (!isNodes(value) || sizeOf(value) == 0) return count(parser, lngTimes);
  if (nodes == NodesRead::first) xmlXPathNodeSetSort(value->nodesetval);
  const int last = nodes == NodesRead::all ? sizeOf(value) : 1;
  for (int at = 0; at < last; ++at) {
    if (!count(parser, lngTimes * operationsFor(value->nodesetval->nodeTab[at]))) return false;
  }
  return true;
}

/// The argument that is so far from the last one.
xmlXPathObject* argument(const Parser* parser, int lngFromLast) {
  const int at = parser->valueNr - 1 - lngFromLast;
  return at < 0 ? nullptr : parser->valueTab[at];
}

xmlXPathFunction own(const xmlXPathContext* context, std::string_view strName) {
  return reinterpret_cast<xmlXPathFunction>(
      xmlHashLookup2(context->funcHash, xmlText(strName.data()), nullptr));
}

/// Calls a function of the library, which reads each of its arguments once.
void callCounted(Parser* parser, int lngArguments) {
  const std::string_view strName = view(parser->context->function);
  const auto nodes = strName == "sum" || strName == "id" ? NodesRead::all : NodesRead::first;
  // It copies what it has got so far with each argument.
  const auto lngTimes = static_cast<std::size_t>(strName == "concat" ? lngArguments : 1);
  for (int at = 0; at < lngArguments; ++at) {
    if (!countText(parser, argument(parser, at), nodes, lngTimes)) return;
  }
  if (lngArguments == 0 && !count(parser, operationsFor(parser->context->node))) return;
  own(parser->context, strName)(parser, lngArguments);
}

// Those that follow do what the library's functions of these names do, in linear time.

/// The texts of all arguments; false when there is another number of them.
template <std::size_t kCount>
bool takeTexts(Parser* parser, int lngArguments, OwnedXmlText (&texts)[kCount]) {
  if (lngArguments != static_cast<int>(kCount)) {
    xmlXPathErr(parser, XPATH_INVALID_ARITY);
    return false;
  }
  for (std::size_t at = kCount; at-- > 0;) {
    if (!countText(parser, parser->value)) return false;
    texts[at].reset(xmlXPathPopString(parser));
    if (!texts[at]) {
      if (parser->error == XPATH_EXPRESSION_OK) xmlXPathErr(parser, XPATH_MEMORY_ERROR);
      return false;
    }
  }
  return true;
}

void push(Parser* parser, xmlXPathObject* value) {
  if (!value) return xmlXPathErr(parser, XPATH_MEMORY_ERROR);
  valuePush(parser, value);
}

void pushBoolean(Parser* parser, bool blnValue) {
  push(parser, xmlXPathNewBoolean(blnValue ? 1 : 0));
}

void pushText(Parser* parser, std::string_view strText) {
  push(parser,
       xmlXPathWrapString(xmlStrndup(xmlText(strText.data()), static_cast<int>(strText.size()))));
}

/// Where one text stands in another.
std::size_t positionIn(std::string_view strText, std::string_view strWanted) {
  if (strWanted.empty()) return 0;
  const void* const found =
      memmem(strText.data(), strText.size(), strWanted.data(), strWanted.size());
  if (!found) return std::string_view::npos;
  return static_cast<std::size_t>(static_cast<const char*>(found) - strText.data());
}

void contains(Parser* parser, int lngArguments) {
  OwnedXmlText texts[2];
  if (!takeTexts(parser, lngArguments, texts)) return;
  pushBoolean(parser,
              positionIn(view(texts[0].get()), view(texts[1].get())) != std::string_view::npos);
}

/// What stands before or behind the first place of the second text in the first.
template <bool kBefore>
void substringBeside(Parser* parser, int lngArguments) {
  OwnedXmlText texts[2];
  if (!takeTexts(parser, lngArguments, texts)) return;
  const std::string_view strText = view(texts[0].get());
  const std::string_view strWanted = view(texts[1].get());
  const std::size_t found = positionIn(strText, strWanted);
  if (found == std::string_view::npos) return pushText(parser, "");
  pushText(parser, kBefore ? strText.substr(0, found) : strText.substr(found + strWanted.size()));
}

std::string_view takeCharacter(std::string_view& strText) {
  const std::size_t lngBytes = strText.empty() ? 0 : firstCharacter(strText).lngBytes;
  const std::string_view strCharacter = strText.substr(0, lngBytes);
  strText.remove_prefix(lngBytes);
  return strCharacter;
}

void translate(Parser* parser, int lngArguments) {
  OwnedXmlText texts[3];
  if (!takeTexts(parser, lngArguments, texts)) return;
  guarded(parser, [&] {
    std::unordered_map<std::string_view, std::string_view> replacements;
    std::string_view strTo = view(texts[2].get());
    for (std::string_view strFrom = view(texts[1].get()); !strFrom.empty();) {
      const std::string_view strCharacter = takeCharacter(strFrom);
      replacements.emplace(strCharacter, takeCharacter(strTo));  // the first one counts
    }
    std::string strResult;
    for (std::string_view strRest = view(texts[0].get()); !strRest.empty();) {
      const std::string_view strCharacter = takeCharacter(strRest);
      const auto found = replacements.find(strCharacter);
      strResult += found == replacements.end() ? strCharacter : found->second;
    }
    pushText(parser, strResult);
  });
}

// Those that follow stand for operators and have two arguments, but for the union and the negation.

bool hasTwoOperands(Parser* parser) {
  if (argument(parser, 1)) return true;
  xmlXPathErr(parser, XPATH_INVALID_OPERAND);
  return false;
}

/// The different texts of the nodes of a set.
class NodeTexts {
 public:
  explicit NodeTexts(const xmlXPathObject& nodes) {
    for (int at = 0; at < sizeOf(&nodes); ++at) {
      OwnedXmlText text(xmlXPathCastNodeToString(nodes.nodesetval->nodeTab[at]));
      if (!text) throw std::bad_alloc();
      if (colDifferent.insert(view(text.get())).second) kept_.push_back(std::move(text));
    }
  }

  std::unordered_set<std::string_view> colDifferent;

 private:
  std::vector<OwnedXmlText> kept_;
};

/// Compares two sets of nodes, each text with each, without going through all pairs.
bool haveEqual(const NodeTexts& left, const NodeTexts& right) {
  return std::any_of(
      left.colDifferent.begin(), left.colDifferent.end(),
      [&](std::string_view strText) { return right.colDifferent.contains(strText); });
}

bool haveUnequal(const NodeTexts& left, const NodeTexts& right) {
  if (left.colDifferent.empty() || right.colDifferent.empty()) return false;
  return left.colDifferent.size() > 1 || right.colDifferent.size() > 1 || !haveEqual(left, right);
}

template <bool kEqual>
void compareForEquality(Parser* parser, int /*lngArguments*/) {
  if (!hasTwoOperands(parser)) return;
  const bool blnTwoSets = isNodes(argument(parser, 0)) && isNodes(argument(parser, 1));
  const bool blnBoolean =
      argument(parser, 0)->type == XPATH_BOOLEAN || argument(parser, 1)->type == XPATH_BOOLEAN;
  for (int at = 0; at < 2 && !blnBoolean; ++at) {
    if (!countText(parser, argument(parser, at), NodesRead::all)) return;
  }
  if (!blnTwoSets) {
    const int equal = kEqual ? xmlXPathEqualValues(parser) : xmlXPathNotEqualValues(parser);
    return pushBoolean(parser, equal != 0);
  }
  const OwnedObject right(valuePop(parser));
  const OwnedObject left(valuePop(parser));
  guarded(parser, [&] {
    const NodeTexts leftTexts(*left);
    const NodeTexts rightTexts(*right);
    pushBoolean(parser,
                kEqual ? haveEqual(leftTexts, rightTexts) : haveUnequal(leftTexts, rightTexts));
  });
}

struct Extremes {
  explicit Extremes(const xmlXPathObject& nodes) {
    for (int at = 0; at < sizeOf(&nodes); ++at) {
      const double number = xmlXPathCastNodeToNumber(nodes.nodesetval->nodeTab[at]);
      if (std::isnan(number)) continue;
      dblLeast = blnAny ? std::min(dblLeast, number) : number;
      dblMost = blnAny ? std::max(dblMost, number) : number;
      blnAny = true;
    }
  }
  bool blnAny = false;  // is a number
  double dblLeast = 0, dblMost = 0;
};

template <bool kLess, bool kStrict>
void compareByOrder(Parser* parser, int /*lngArguments*/) {
  if (!hasTwoOperands(parser)) return;
  for (int at = 0; at < 2; ++at) {
    if (!countText(parser, argument(parser, at), NodesRead::all)) return;
  }
  if (!isNodes(argument(parser, 0)) || !isNodes(argument(parser, 1))) {
    const int holds = xmlXPathCompareValues(parser, kLess ? 1 : 0, kStrict ? 1 : 0);
    return pushBoolean(parser, holds != 0);
  }
  const OwnedObject right(valuePop(parser));
  const OwnedObject left(valuePop(parser));
  const Extremes ofLeft(*left);
  const Extremes ofRight(*right);
  const double dblLesser = kLess ? ofLeft.dblLeast : ofRight.dblLeast;
  const double dblGreater = kLess ? ofRight.dblMost : ofLeft.dblMost;
  pushBoolean(parser, ofLeft.blnAny && ofRight.blnAny &&
                          (kStrict ? dblLesser < dblGreater : dblLesser <= dblGreater));
}

template <void (*kCalculate)(Parser*)>
void calculate(Parser* parser, int lngArguments) {
  for (int at = 0; at < lngArguments; ++at) {
    if (!countText(parser, argument(parser, at))) return;
  }
  kCalculate(parser);
}

/// Adds the nodes that are not there yet. A namespace is a copy of its own in each set, so the
/// library goes through all to know it again.
void addNodes(Parser* parser, const xmlXPathObject& from, std::unordered_set<xmlNode*>& known,
              xmlNodeSet* into) {
  for (int at = 0; at < sizeOf(&from); ++at) {
    xmlNode* const node = from.nodesetval->nodeTab[at];
    int added = 0;
    if (node->type == XML_NAMESPACE_DECL) {
      if (!count(parser, static_cast<std::size_t>(into->nodeNr))) return;
      auto* const ns = reinterpret_cast<xmlNs*>(node);
      added = xmlXPathNodeSetAddNs(into, reinterpret_cast<xmlNode*>(ns->next), ns);
    } else if (known.insert(node).second) {
      added = xmlXPathNodeSetAddUnique(into, node);
    }
    if (added != 0) return xmlXPathErr(parser, XPATH_MEMORY_ERROR);
  }
}

void unite(Parser* parser, int lngArguments) {
  std::size_t lngNodes = 0;
  for (int at = 0; at < lngArguments; ++at) {
    const xmlXPathObject* const value = argument(parser, at);
    if (!isNodes(value)) return xmlXPathErr(parser, XPATH_INVALID_TYPE);
    lngNodes += static_cast<std::size_t>(sizeOf(value));
  }
  if (!count(parser, lngNodes)) return;
  OwnedObject united(xmlXPathNewNodeSet(nullptr));
  if (!united) return xmlXPathErr(parser, XPATH_MEMORY_ERROR);
  guarded(parser, [&] {
    std::unordered_set<xmlNode*> known;
    for (int at = lngArguments - 1; at >= 0; --at) {
      addNodes(parser, *argument(parser, at), known, united->nodesetval);
    }
  });
  for (int at = 0; at < lngArguments; ++at) xmlXPathFreeObject(valuePop(parser));
  valuePush(parser, united.release());
}

struct Function {
  std::string_view strName;
  xmlXPathFunction call;
};

constexpr Function kFunctions[] = {
    {"boolean", nullptr},  // these take no longer than it takes to call them
    {"count", nullptr},
    {"false", nullptr},
    {"last", nullptr},
    {"local-name", nullptr},
    {"name", nullptr},
    {"namespace-uri", nullptr},
    {"not", nullptr},
    {"position", nullptr},
    {"true", nullptr},
    {"contains", contains},
    {"substring-after", substringBeside<false>},
    {"substring-before", substringBeside<true>},
    {"translate", translate},
    {"varnel-at-least", compareByOrder<false, false>},
    {"varnel-at-most", compareByOrder<true, false>},
    {"varnel-difference", calculate<xmlXPathSubValues>},
    {"varnel-equal", compareForEquality<true>},
    {"varnel-greater", compareByOrder<false, true>},
    {"varnel-less", compareByOrder<true, true>},
    {"varnel-negative", calculate<xmlXPathValueFlipSign>},
    {"varnel-product", calculate<xmlXPathMultValues>},
    {"varnel-quotient", calculate<xmlXPathDivValues>},
    {"varnel-remainder", calculate<xmlXPathModValues>},
    {"varnel-sum", calculate<xmlXPathAddValues>},
    {"varnel-unequal", compareForEquality<false>},
    {"varnel-union", unite},
};

}  // namespace

xmlXPathFunction countedFunction(xmlXPathContext* context, const xmlChar* name,
                                 const xmlChar* uri) {
  const std::string_view strName = view(name);
  if (uri) return nullptr;  // XPath 1.0 has none in a namespace
  const auto* const known =
      std::find_if(std::begin(kFunctions), std::end(kFunctions),
                   [&](const Function& function) { return function.strName == strName; });
  if (known != std::end(kFunctions) && known->call) return known->call;
  const xmlXPathFunction library = own(context, strName);
  return library && known == std::end(kFunctions) ? callCounted : library;
}

}  // namespace Varnel_Tolv_XML_Creation
