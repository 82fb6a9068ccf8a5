#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "check/Words.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// The place of an id, by which findings about it know each other.
std::string placeOf(const ComplexType& type, const std::string& strId) {
  return type.strId + '/' + strId;
}

void findParametersWithoutPlace(const ParsedDeployment& deployment, Findings& findings) {
  for (const MappingEntry& entry : deployment.entries) {
    const ComplexType* const type = deployment.typeFilledBy(entry);
    if (!type || entry.isTable()) continue;
    std::unordered_set<std::string> places;
    for (const Placeholder& place : type->placeholders) places.insert(toLower(place.strId));
    for (const Node& objParameter : entry.parameters()) {
      const std::string strId = attributeText(objParameter, kId);
      if (!isBlank(strId) && (places.contains(strId) || hasCapitals(strId))) continue;
      findings
          .add(deployment.objectMapper, objParameter, kId, entry.strId,
               "The parameter " + inQuotes(strId) + " has no place in the schematype " +
                   inQuotes(type->strId) + ": its value is lost.",
               "Give the schematype a value with this id, or correct the id.")
          .strMeant = placeOf(*type, strId);
    }
  }
}

void findCellsWithoutPlace(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table || !object.entry) continue;
    const ComplexType* const type = deployment.typeFilledBy(*object.entry);
    if (!type || type->blnAdditionalInfo) continue;
    const std::unordered_set<std::string> places = type->placeIds();
    for (const TableColumn& column : object.columns) {
      if (places.contains(column.strId)) continue;
      findings
          .add(*object.file, column.objNode, kId, column.strId,
               "The column " + inQuotes(column.strId) + " has no place in the schematype " +
                   inQuotes(type->strId) +
                   ", which has no pbr:AdditionalInfo either: its cells "
                   "are lost.",
               "Give the schematype a value with this id, or correct the one or the other.")
          .strMeant = placeOf(*type, column.strId);
    }
  }
}

/// Additional information is selected with the prefix pbr, which must then be known.
void findAdditionalInfoPrefix(const ParsedDeployment& deployment, Findings& findings) {
  if (!deployment.namespaceList.isLoaded() || deployment.namespaceOf("pbr")) return;
  std::unordered_set<const ComplexType*> told;
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table || !object.entry) continue;
    const ComplexType* const type = deployment.typeFilledBy(*object.entry);
    if (!type || !type->blnAdditionalInfo) continue;  // its cells have no place: told of the column
    const std::unordered_set<std::string> places = type->placeIds();
    for (const TableColumn& column : object.columns) {
      if (places.contains(column.strId) || !told.insert(type).second) continue;
      findings.add(deployment.namespaceList, deployment.namespaceList.root(), "", column.strId,
                   "The prefix \"pbr\" is not registered, and the column " +
                       inQuotes(column.strId) +
                       ", which has no place of its own, needs it for pbr:AdditionalInfo: every "
                       "form with the table fails.",
                   "Register it in the namespace list.");
    }
  }
}

/// What may fill the places of a complex type: ids of parameters, which are looked up in lower
/// case, and columns.
struct Filling {
  bool blnKnown = true;  // false where the table is not that fills it
  bool blnAddress = false;
  std::unordered_set<std::string> ids;
  std::vector<std::string> inOrder;  // the ids, each once

  void add(const std::string& strId) {
    if (ids.insert(strId).second) inOrder.push_back(strId);
  }

  bool fills(const Placeholder& place) const {
    // One for a line that there is not is told as that.
    return (blnAddress && place.slot()) || ids.contains(place.strId) ||
           ids.contains(toLower(place.strId));
  }
};

/// By the types, in the order of their file.
std::map<const ComplexType*, Filling> fillings(const ParsedDeployment& deployment) {
  std::map<const ComplexType*, Filling> filled;
  for (const MappingEntry& entry : deployment.entries) {
    const ComplexType* const type = deployment.typeFilledBy(entry);
    if (!type || entry.isLeftOut()) continue;
    Filling& one = filled[type];
    one.blnKnown = one.blnKnown && !entry.users.empty();
    one.blnAddress = one.blnAddress || entry.strLowerAction == kAddressAction;
    for (const Node& objParameter : entry.parameters()) {
      one.add(attributeText(objParameter, kId));
    }
    for (const FormObject* const object : entry.users) {
      for (const TableColumn& column : object->columns) one.add(column.strId);
    }
  }
  return filled;
}

/// Places that no action, or no column, ever fills. `blnSlips`: those whose id is nearly that of a
/// parameter or column which has no place.
void findUnfilledPlaces(const ParsedDeployment& deployment, Findings& findings, bool blnSlips) {
  if (!deployment.knowsObjects()) return;
  std::size_t lngCompared = 0;
  for (const auto& [type, filling] : fillings(deployment)) {
    if (!filling.blnKnown) continue;
    std::unordered_set<std::string> places;
    for (const Placeholder& place : type->placeholders) places.insert(toLower(place.strId));
    std::vector<std::string> without;
    for (const std::string& strId : filling.inOrder) {
      const bool blnPlace = places.contains(toLower(strId));
      if (!blnPlace && without.size() < kMostCompared) without.push_back(strId);
    }
    for (const Placeholder& place : type->placeholders) {
      if (isBlank(place.strId) || filling.fills(place)) continue;
      const bool blnCompared = ++lngCompared <= kMostCompared;
      const std::string* const meant = blnCompared ? firstMeant(without, place.strId) : nullptr;
      if ((meant != nullptr) != blnSlips) continue;
      findings.add(deployment.schemaTypes, place.objNode, kId, place.strId,
                   "No parameter and no column has the id " + inQuotes(place.strId) +
                       " of this place: it is never filled" +
                       (meant ? ", and " + inQuotes(*meant) + " has no place." : "."),
                   meant ? "Write " + inQuotes(*meant) + " here, or correct it there."
                         : "Correct the id, or take the place out.");
    }
  }
}

void findMisspeltPlaces(const ParsedDeployment& deployment, Findings& findings) {
  findUnfilledPlaces(deployment, findings, true);
  for (const ComplexType& type : deployment.complexTypes) {
    const NodeList colElements = required(type.objNode.getElementsByTagName("*"));
    for (const Node& objElement : colElements) {
      const std::string strName = objElement.nodeName();
      const bool blnPlain = objElement.namespaceUri().empty() && objElement.getAttribute(kId);
      if (!blnPlain || !isSlipOf(strName, kValue)) continue;
      const std::string strId = attributeText(objElement, kId);
      findings
          .add(deployment.schemaTypes, objElement, "", strId,
               "The element " + inQuotes(strName) +
                   " is no place, which is a value: it goes into "
                   "the message as it stands.",
               "Write value.")
          .strMeant = placeOf(type, strId);
    }
  }
}

void findNeverFilledPlaces(const ParsedDeployment& deployment, Findings& findings) {
  findUnfilledPlaces(deployment, findings, false);
}

/// The complex type of addresses, if answers are split for it; else null.
const ComplexType* addressType(const ParsedDeployment& deployment) {
  const bool blnUsed = std::ranges::any_of(deployment.entries, [](const MappingEntry& entry) {
    return entry.isAddress() && !entry.isTable() && !entry.isLeftOut();
  });
  return blnUsed ? deployment.complexType(kAddressAction) : nullptr;
}

bool isLine(std::optional<std::size_t> lngSlot) {
  return lngSlot && *lngSlot >= 1 && *lngSlot <= kAddressLines;
}

/// Lines of an address that no place takes. Told at the place that has the slip, where one is left
/// over: one for a line that another takes already, or for none.
void findLinesWithoutPlace(const ParsedDeployment& deployment, Findings& findings) {
  const ComplexType* const type = addressType(deployment);
  if (!type) return;
  std::unordered_set<std::size_t> lines;
  std::vector<const Placeholder*> left;
  for (const Placeholder& place : type->placeholders) {
    const auto lngSlot = place.slot();
    const bool blnTaken = isLine(lngSlot) && !lines.insert(*lngSlot).second;
    if (!lngSlot || blnTaken) left.push_back(&place);
  }
  std::size_t at = 0;
  for (std::size_t lngLine = 1; lngLine <= kAddressLines; ++lngLine) {
    if (lines.contains(lngLine)) continue;
    const Placeholder* const place = at < left.size() ? left[at++] : nullptr;
    findings.add(deployment.schemaTypes, place ? place->objNode : type->objNode, place ? kId : "",
                 place ? place->strId : "",
                 "No place of " + inQuotes(type->strId) + " is for line " +
                     std::to_string(lngLine) + " of an address: an answer that has one loses it.",
                 "Let the ids of the places end in 1, 2, 3 and 4.");
  }
}

void findWrongLineSlots(const ParsedDeployment& deployment, Findings& findings) {
  const ComplexType* const type = addressType(deployment);
  if (!type) return;
  for (const Placeholder& place : type->placeholders) {
    if (!place.slot() || isLine(place.slot())) continue;
    findings.add(deployment.schemaTypes, place.objNode, kId, place.strId,
                 "The place " + inQuotes(place.strId) +
                     " is for a line that an address does not have: every form with one fails.",
                 "Let the ids of the places end in 1 to 4.");
  }
}

void findDuplicatePlaces(const ParsedDeployment& deployment, Findings& findings) {
  std::unordered_set<const ComplexType*> ofTables;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.isTable()) ofTables.insert(deployment.typeFilledBy(entry));
  }
  for (const ComplexType& type : deployment.complexTypes) {
    if (!ofTables.contains(&type)) continue;
    std::unordered_set<std::string> seen;
    for (const Placeholder& place : type.placeholders) {
      if (isBlank(place.strId) || seen.insert(place.strId).second) continue;
      findings.add(deployment.schemaTypes, place.objNode, kId, place.strId,
                   "The schematype has a place with the id " + inQuotes(place.strId) +
                       " before this one, which takes the cell; this one stays empty.",
                   "Give each place an id of its own.");
    }
  }
}

/// A place directly in a schematype has no element that could take the value, and one among others
/// takes their room. Each element's children are listed once, so the walk is linear.
void findPlacesWithoutElement(const ParsedDeployment& deployment, Findings& findings) {
  for (const ComplexType& type : deployment.complexTypes) {
    if (type.placeholders.empty()) continue;
    std::vector<Node> open{type.objNode};
    while (!open.empty()) {
      const Node objAround = open.back();
      open.pop_back();
      const std::vector<Node> colChildren = childElements(objAround);
      for (const Node& objPlace : colChildren) {
        open.push_back(objPlace);
        const bool blnPlace = objPlace.nodeName() == kValue && objPlace.getAttribute(kId);
        if (!blnPlace || (objAround != type.objNode && colChildren.size() == 1)) continue;
        findings.add(deployment.schemaTypes, objPlace, "", attributeText(objPlace, kId),
                     objAround == type.objNode
                         ? "The place stands in no element of the message: its value replaces the "
                           "whole schematype."
                         : "The place shares its element with others, which its value replaces.",
                     "Give each place an element of its own.");
      }
    }
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"parameter-without-place", Severity::error, findParametersWithoutPlace},
    {"cell-without-place", Severity::error, findCellsWithoutPlace},
    {"additional-info-prefix", Severity::error, findAdditionalInfoPrefix},
    {"place-misspelt", Severity::error, findMisspeltPlaces},
    {"place-never-filled", Severity::warning, findNeverFilledPlaces},
    {"line-without-place", Severity::error, findLinesWithoutPlace},
    {"line-beyond-four", Severity::error, findWrongLineSlots},
    {"duplicate-place", Severity::error, findDuplicatePlaces},
    {"place-without-element", Severity::error, findPlacesWithoutElement},
});

}  // namespace

std::span<const Rule> complexTypeRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
