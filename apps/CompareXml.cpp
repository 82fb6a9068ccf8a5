#include "CompareXml.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <utility>

using namespace Varnel_Tolv_XML_Creation;

namespace {

using Attributes = std::map<std::string, std::string, std::less<>>;

/// A node with what counts in a comparison.
struct Item {
  bool blnElement = false;
  std::string strName;       // as written; "#text", "#comment" or a processing instruction's target
  std::string strNamespace;  // of an element
  std::string strValue;      // of all but elements
  Attributes attributes;
  std::vector<Item> children;
  std::size_t lngHash = 0;  // of all that counts, what is below it included

  std::string baseName() const { return strName.substr(strName.find(':') + 1); }
  std::string id() const {
    const auto found = attributes.find("id");
    return found == attributes.end() ? "" : found->second;
  }
};

void mix(std::size_t& lngHash, std::string_view strText) {
  lngHash = lngHash * 1'000'003 + std::hash<std::string_view>()(strText);
}

Item itemOf(const Node& objNode);

/// Depth is bounded by what a document accepts.
void addChildren(const Node& objNode, Item& item) {
  const std::optional<NodeList> colChildren = objNode.childNodes();
  for (const Node& objChild : *colChildren) {
    if (objChild.nodeType() == NodeType::documentType) continue;
    // The declaration says nothing about the document.
    if (objChild.nodeType() == NodeType::processingInstruction && objChild.nodeName() == "xml") {
      continue;
    }
    Item child = itemOf(objChild);
    if (child.strName == "#text" && !item.children.empty() &&
        item.children.back().strName == "#text") {
      item.children.back().strValue += child.strValue;
    } else if (child.strName != "#text" || !child.strValue.empty()) {
      item.children.push_back(std::move(child));
    }
  }
}

Item itemOf(const Node& objNode) {
  Item item;
  item.blnElement = objNode.nodeType() == NodeType::element;
  item.strName = objNode.nodeName();
  if (item.blnElement) {
    item.strNamespace = objNode.namespaceUri();
    for (NodeAttribute& attribute : objNode.attributes()) {
      if (attribute.strName == "xmlns" || attribute.strName.starts_with("xmlns:")) continue;
      item.attributes.emplace(std::move(attribute.strName), std::move(attribute.strValue));
    }
    addChildren(objNode, item);
  } else {
    if (objNode.nodeType() == NodeType::cdataSection) item.strName = "#text";
    item.strValue = objNode.text();
  }
  mix(item.lngHash, item.blnElement ? item.baseName() : item.strName);
  for (const std::string_view strPart : {item.strNamespace, item.strValue}) {
    mix(item.lngHash, strPart);
  }
  for (const auto& [strName, strValue] : item.attributes) {
    mix(item.lngHash, strName);
    mix(item.lngHash, strValue);
  }
  for (const Item& child : item.children) item.lngHash = item.lngHash * 31 + child.lngHash;
  return item;
}

/// Whose answer a place of a parked form is.
struct Marks {
  std::string strQuestion, strRow, strColumn;

  Marks below(const Item& item) const {
    const std::string strName = item.strName;
    if (strName == "prtobjct" || strName == "hdnfld") return {item.id(), "", ""};
    if (strName == "row" && !strQuestion.empty()) return {strQuestion, item.id(), ""};
    if (strName == "column" && !strQuestion.empty()) return {strQuestion, strRow, item.id()};
    return *this;
  }
};

/// What a person reads of an element that the other document does not have.
std::string content(const Item& item) {
  std::string strText = item.strValue;
  if (const auto value = item.attributes.find("value"); value != item.attributes.end()) {
    strText += value->second;
  }
  for (const Item& child : item.children) {
    const std::string strBelow = content(child);
    if (!strText.empty() && !strBelow.empty()) strText += ' ';
    strText += strBelow;
  }
  return strText;
}

std::string parentOf(const std::string& strPath) { return strPath.substr(0, strPath.rfind('/')); }

/// What a child is compared with: one of the same name and the same id.
std::string keyOf(const Item& child) {
  return child.blnElement ? child.baseName() + '\n' + child.id() : child.strName;
}

class Comparison {
 public:
  std::vector<XmlDifference> differences;

  void compareChildren(const Item& expected, const Item& actual, const std::string& strPath,
                       const Marks& marks);

 private:
  using Group = std::vector<std::pair<const Item*, std::string>>;  // with the path of each

  static std::map<std::string, Group> groups(const Item& parent, const std::string& strPath);
  void compareGroup(const Group& expected, const Group& actual, const Marks& marks);
  void compare(const Item& expected, const Item& actual, const std::string& strPath,
               const Marks& around);
  void add(const std::string& strPath, std::string strWhat, std::optional<std::string> expected,
           std::optional<std::string> actual, const Marks& marks) {
    differences.push_back({strPath, std::move(strWhat), std::move(expected), std::move(actual),
                           marks.strQuestion, marks.strRow, marks.strColumn});
  }
  void addOneSided(const Item& item, const std::string& strPath, bool blnExpected,
                   const Marks& around) {
    std::optional<std::string> expected;
    std::optional<std::string> actual;
    (blnExpected ? expected : actual) = content(item);
    const bool blnElement = item.blnElement;
    add(blnElement ? strPath : parentOf(strPath), blnElement ? "" : item.strName,
        std::move(expected), std::move(actual), around.below(item));
  }
};

std::map<std::string, Comparison::Group> Comparison::groups(const Item& parent,
                                                            const std::string& strPath) {
  std::map<std::string, Group> found;
  std::map<std::string, std::size_t> positions;  // by the name as written, as paths count
  for (const Item& child : parent.children) {
    const std::string strPosition = std::to_string(++positions[child.strName]);
    found[keyOf(child)].emplace_back(&child,
                                     strPath + '/' + child.strName + '[' + strPosition + ']');
  }
  return found;
}

void Comparison::compareChildren(const Item& expected, const Item& actual,
                                 const std::string& strPath, const Marks& marks) {
  const std::size_t lngBefore = differences.size();
  const std::map<std::string, Group> ours = groups(expected, strPath);
  const std::map<std::string, Group> theirs = groups(actual, strPath);
  const Group none;
  const auto in = [&](const std::map<std::string, Group>& all, const std::string& strKey) {
    const auto found = all.find(strKey);
    return found == all.end() ? &none : &found->second;
  };
  // In the order of the documents, what only the second has at the end.
  std::vector<std::string> keys;
  std::set<std::string> seen;
  for (const Item* const parent : {&expected, &actual}) {
    for (const Item& child : parent->children) {
      std::string strKey = keyOf(child);
      if (seen.insert(strKey).second) keys.push_back(std::move(strKey));
    }
  }
  for (const std::string& strKey : keys)
    compareGroup(*in(ours, strKey), *in(theirs, strKey), marks);
  if (differences.size() != lngBefore) return;
  // The same children in another order.
  for (std::size_t at = 0; at < expected.children.size() && at < actual.children.size(); ++at) {
    const Item& one = expected.children[at];
    const Item& other = actual.children[at];
    if (one.lngHash == other.lngHash) continue;
    const auto named = [](const Item& item) {
      return item.id().empty() ? item.strName : item.strName + " \"" + item.id() + '"';
    };
    add(strPath.empty() ? "/" : strPath, "order", named(one), named(other), marks);
    return;
  }
}

void Comparison::compareGroup(const Group& expected, const Group& actual, const Marks& marks) {
  std::size_t lngBegin = 0;
  std::size_t lngExpected = expected.size();
  std::size_t lngActual = actual.size();
  if (lngExpected != lngActual) {
    const auto alike = [&](std::size_t lngOne, std::size_t lngOther) {
      return expected[lngOne].first->lngHash == actual[lngOther].first->lngHash;
    };
    while (lngBegin < lngExpected && lngBegin < lngActual && alike(lngBegin, lngBegin)) ++lngBegin;
    while (lngExpected > lngBegin && lngActual > lngBegin &&
           alike(lngExpected - 1, lngActual - 1)) {
      --lngExpected;
      --lngActual;
    }
  }
  std::size_t at = lngBegin;
  for (; at < lngExpected && at < lngActual; ++at) {
    compare(*expected[at].first, *actual[at].first, actual[at].second, marks);
  }
  for (std::size_t rest = at; rest < lngExpected; ++rest) {
    addOneSided(*expected[rest].first, expected[rest].second, true, marks);
  }
  for (std::size_t rest = at; rest < lngActual; ++rest) {
    addOneSided(*actual[rest].first, actual[rest].second, false, marks);
  }
}

void Comparison::compare(const Item& expected, const Item& actual, const std::string& strPath,
                         const Marks& around) {
  if (expected.lngHash == actual.lngHash) return;
  if (!expected.blnElement || !actual.blnElement) {
    // The text of an element is told as its own.
    add(parentOf(strPath), expected.strName, expected.strValue, actual.strValue, around);
    return;
  }
  const Marks marks = around.below(actual);
  if (expected.strNamespace != actual.strNamespace) {
    add(strPath, "namespace", expected.strNamespace, actual.strNamespace, marks);
  }
  for (const auto& [strName, strValue] : expected.attributes) {
    const auto found = actual.attributes.find(strName);
    if (found == actual.attributes.end()) {
      add(strPath, '@' + strName, strValue, std::nullopt, marks);
    } else if (found->second != strValue) {
      add(strPath, '@' + strName, strValue, found->second, marks);
    }
  }
  for (const auto& [strName, strValue] : actual.attributes) {
    if (!expected.attributes.contains(strName)) {
      add(strPath, '@' + strName, std::nullopt, strValue, marks);
    }
  }
  compareChildren(expected, actual, strPath, marks);
}

}  // namespace

std::vector<XmlDifference> compareXml(const Document& objExpected, const Document& objActual) {
  Item expected;
  Item actual;
  addChildren(objExpected, expected);
  addChildren(objActual, actual);
  Comparison comparison;
  comparison.compareChildren(expected, actual, "", {});
  return std::move(comparison.differences);
}
