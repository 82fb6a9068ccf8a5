#include "XmlMutator.h"

#include <array>
#include <cstddef>
#include <vector>

#include "platform/dom/Document.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation::fuzz {

namespace {

constexpr auto kEdgeValues = std::to_array<std::string_view>(
    {"",      " ",         "0",  "-1",        "00",  "2147483648", "1e99",     "true",
     "TRUE",  "1",         "'",  "\"",        "]]>", "&",          "a|b",      "//*",
     "/*[1]", "*[last()]", "..", "q[not(x)]", "x:y", "32/13/2025", "\xC2\x9B", "\xF0\x9F\x8E\x88"});

class Mutation {
 public:
  Mutation(const Node& objRoot, const Document& objOther, std::minstd_rand& dice)
      : objRoot_(objRoot), objOther_(objOther), dice_(dice) {}

  void apply() {
    colElements_ = elementsOf(objRoot_);
    switch (dice_() % 10) {
      case 0:
        return repeat();
      case 1:
        return takeOut();
      case 2:
        return place(any(colElements_));
      case 3:
        return place(any(colElements_).cloneNode(true));
      case 4:
        if (const Node objOtherRoot = objOther_.documentElement()) {
          place(any(elementsOf(objOtherRoot)).cloneFor(objRoot_, true));
        }
        return;
      case 5:
        return takeOutAttribute();
      case 6:
      case 7:
        return changeAttribute();
      default:
        return changeText();
    }
  }

 private:
  static std::vector<Node> elementsOf(const Node& objRoot) {
    std::vector<Node> colElements{objRoot};
    if (const auto found = objRoot.getElementsByTagName("*")) {
      colElements.insert(colElements.end(), found->begin(), found->end());
    }
    return colElements;
  }

  template <class Items>
  const typename Items::value_type& any(const Items& items) {
    return items[dice_() % items.size()];
  }

  /// An element that is not the root; Nothing when there is none.
  Node anyBelow() {
    const Node objElement = any(colElements_);
    return objElement == objRoot_ ? Node() : objElement;
  }

  void repeat() {
    const Node objElement = anyBelow();
    if (!objElement) return;
    const std::size_t lngTimes = dice_() % 16 == 0 ? 64 : 1 + dice_() % 3;
    for (std::size_t lngTime = 0; lngTime < lngTimes; ++lngTime) {
      objElement.parentNode().insertBefore(objElement.cloneNode(true), objElement);
    }
  }

  void takeOut() {
    if (const Node objElement = anyBelow()) objElement.parentNode().removeChild(objElement);
  }

  void place(const Node& objElement) {
    const Node objNeighbour = anyBelow();
    if (objNeighbour && dice_() % 2 == 0) {
      objNeighbour.parentNode().insertBefore(objElement, objNeighbour);
    } else {
      any(colElements_).appendChild(objElement);
    }
  }

  void takeOutAttribute() {
    const Node objElement = any(colElements_);
    const std::vector<NodeAttribute> colAttributes = objElement.attributes();
    if (!colAttributes.empty()) objElement.removeAttribute(any(colAttributes).strName);
  }

  /// Gives one element an attribute of another, or one of its own another value.
  void changeAttribute() {
    const std::vector<NodeAttribute> colAttributes = any(colElements_).attributes();
    if (colAttributes.empty()) return;
    const NodeAttribute& attribute = any(colAttributes);
    const Node objElement = any(colElements_);
    if (dice_() % 2 == 0) {
      objElement.setAttribute(attribute.strName, attribute.strValue);
      return;
    }
    const std::vector<NodeAttribute> colOwn = objElement.attributes();
    if (colOwn.empty()) return;
    objElement.setAttribute(any(colOwn).strName, dice_() % 2 == 0
                                                     ? std::string_view(attribute.strValue)
                                                     : any(kEdgeValues));
  }

  void changeText() {
    const Node objElement = any(colElements_);
    if (elementsOf(objElement).size() > 1 && dice_() % 8 != 0) return;
    objElement.setText(dice_() % 2 == 0 ? any(colElements_).text() : std::string(any(kEdgeValues)));
  }

  Node objRoot_;
  Document objOther_;
  std::minstd_rand& dice_;
  std::vector<Node> colElements_;
};

}  // namespace

std::optional<std::string> mutatedXml(std::string_view strText, std::string_view strOther,
                                      std::minstd_rand& dice) {
  const Document objXml = Document::create();
  if (!objXml.loadXML(strText)) return std::nullopt;
  const Document objOther = Document::create();
  objOther.loadXML(strOther);
  for (std::size_t lngLeft = 1 + dice() % 4; lngLeft > 0; --lngLeft) {
    try {
      Mutation(objXml.documentElement(), objOther, dice).apply();
    } catch (const RuntimeError&) {
      // What cannot be, an element below itself for one, is left as it was.
    }
  }
  return objXml.xml();
}

}  // namespace Varnel_Tolv_XML_Creation::fuzz
