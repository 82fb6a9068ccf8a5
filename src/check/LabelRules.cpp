#include <array>
#include <string>

#include "check/Rule.h"
#include "check/RuleTables.h"
#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

/// What the text of a row is made of.
void findRowLabels(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table || !object.entry) continue;
    if (object.entry->actionKind() != ActionKind::rowText || object.entry->isLeftOut()) continue;
    const auto add = [&](const Node& objNode, std::string_view attribute,
                         const std::string& strWhat) {
      findings.add(*object.file, objNode, attribute, object.strId,
                   strWhat +
                       ": the text of a row then begins with the whole text of the row before "
                       "it.",
                   "Give labels to the table and to each row of a fixed grid; use a complex type "
                   "for a dynamic table.");
    };
    if (attributeText(object.objNode, kTableLabel).empty()) {
      add(object.objNode, kTableLabel, "The table has no tablelabel");
    } else if (toLower(object.strType) != "table" && object.rows.empty()) {
      add(object.objNode, kType, "The rows of a dynamic table have no label");
    }
    for (const Node& objRow : object.rows) {
      if (toLower(object.strType) == "table" && attributeText(objRow, kRowLabel).empty()) {
        add(objRow, kRowLabel, "The row has no rowlabel");
      }
    }
  }
}

/// Labels that are needed to make the text of a row, or to lead an error back to its cell.
void findMissingLabels(const ParsedDeployment& deployment, Findings& findings) {
  for (const FormObject& object : deployment.objects) {
    if (object.kind != ObjectKind::table || !object.entry || object.entry->isLeftOut()) continue;
    const bool blnRowText = object.entry->actionKind() == ActionKind::rowText;
    if (deployment.validates() && !object.objNode.getAttribute(kFieldLabel)) {
      findings.add(
          *object.file, object.objNode, kFieldLabel, object.strId,
          "The table has no fieldlabel: an error in it is led back to no question, and the "
          "verdict is lost.",
          "Give it the label that people see.");
    }
    if (!blnRowText && !deployment.validates()) continue;
    for (const TableColumn& column : object.columns) {
      const bool blnThere = blnRowText ? !attributeText(column.objNode, kColumnLabel).empty()
                                       : column.objNode.getAttribute(kColumnLabel).has_value();
      if (blnThere) continue;
      findings.add(*object.file, column.objNode, kColumnLabel, column.strId,
                   blnRowText ? "The column has no columnlabel: every form with the table fails."
                              : "The column has no columnlabel: an error in a cell is led back to "
                                "no question, and the verdict is lost.",
                   "Give it the label that people see.");
    }
  }
}

constexpr auto kRules = std::to_array<Rule>({
    {"row-label-missing", Severity::warning, findRowLabels},
    {"label-missing", Severity::error, findMissingLabels},
});

}  // namespace

std::span<const Rule> labelRules() { return kRules; }

}  // namespace Varnel_Tolv_XML_Creation
