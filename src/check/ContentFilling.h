#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>

#include "check/MessageBuilding.h"

namespace Varnel_Tolv_XML_Creation {

/// Puts what a complex type holds below an element, and the values of an object into its places: of
/// a row of a table its cells, else what the parameters of the action name.
class ContentFilling {
 public:
  ContentFilling(MessageBuilding& building, std::size_t lngParent, const FormObject& object);

  void fill(const ComplexType& type);

 private:
  using Origin = MessageElement::Origin;
  using Source = MessageWrite::Source;

  void fillPlace(std::size_t lngElement, const Node& objPlace);
  void fillCell(std::size_t lngElement, const TableColumn& column, const Node& objAt);
  void fillFromParameter(std::size_t lngElement, const Node& objParameter);
  void addCellsWithoutPlace(std::size_t lngAdditional);

  MessageBuilding& building_;
  const ParsedDeployment& deployment_;
  const std::size_t lngParent_;
  const FormObject& object_;
  const MappingEntry& entry_;
  const bool blnRow_;
  std::unordered_map<std::string, const TableColumn*> columns_;  // that have no place yet
  std::unordered_map<std::string, Node> parameters_;
};

}  // namespace Varnel_Tolv_XML_Creation
