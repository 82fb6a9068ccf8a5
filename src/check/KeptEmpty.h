#pragma once

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <vector>

#include "check/MessagePlan.h"

namespace Varnel_Tolv_XML_Creation {

/// Proves that forms make a message invalid because an element stays in it empty: the template or a
/// complex type brings it along, questions alone fill it, the reference XML keeps it, and the
/// schema refuses it so. What cannot be proved is not claimed; what is claimed, some form shows.
class KeptEmpty {
 public:
  /// Which element of the reference XML is asked about one of the message; Nothing for none.
  using ReferenceOf = std::function<Node(std::size_t lngElement)>;

  KeptEmpty(const MessagePlan& plan, ReferenceOf referenceOf);

  /// Of an element that is mandatory in the reference XML.
  bool spoils(std::size_t lngElement);

 private:
  using Answer = std::pair<const FormObject*, std::string>;  // and the column

  bool isBroughtAlong(const MessageElement& element) const;
  bool isKept(std::size_t lngElement) const;
  bool mayStayEmpty(std::size_t lngTop, std::vector<Answer>& answers);
  bool mayStayUnwritten(const MessageWrite& write, std::size_t lngTop) const;
  bool othersFill(std::size_t lngTop, const std::vector<Answer>& answers);
  bool isRefusedEmpty(std::size_t lngElement, std::size_t lngDepth);
  std::size_t optionalAncestor(std::size_t lngElement) const;

  template <class Visit>
  bool forAllBelow(std::size_t lngTop, std::size_t lngLeftOut, const Visit& visit);

  const MessagePlan& plan_;
  const std::vector<MessageElement>& elements_;
  ReferenceOf referenceOf_;
  std::unordered_map<std::size_t, std::vector<const MessageWrite*>> writes_;  // by the element
  std::size_t lngWork_ = 0;
};

/// Whether the reference XML says of an element that it stays, also when it is empty.
bool isMandatoryInReference(const Node& objReference);

}  // namespace Varnel_Tolv_XML_Creation
