#include "validation/report/ReportViolations.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "validation/report/MarkedElements.h"
#include "validation/report/ParkLabels.h"
#include "validation/report/ViolationWords.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

// The values of enumerations that one report holds at most: a form can be wrong in thousands of
// cells, each of which could have any of thousands of codes.
constexpr std::size_t kMostAllowedValues = 100'000;

/// One report in the making.
class Violations {
 public:
  Violations(const ReportSources& sources, RunReport& report)
      : sources_(sources), labels_(sources.objPark), report_(report) {}

  void add(std::vector<ViolationParts> violations,
           const std::vector<ViolationRecorder::DeclaredMark>& declaredMarks) {
    std::unordered_set<std::size_t> wanted;
    for (const ViolationParts& parts : violations) wanted.insert(parts.place.lngElement);
    for (const auto& mark : declaredMarks) wanted.insert(mark.place.lngElement);
    if (wanted.empty()) return;
    elements_ = markedElements(sources_.objMessage, wanted);
    for (const ViolationParts& parts : violations) add(parts);
    for (const auto& mark : declaredMarks) add(mark);
  }

 private:
  void add(const ViolationParts& parts) {
    const MarkedElement& element = elements_[parts.place.lngElement];
    addAt(parts, element, marksFor(element));
  }

  void addAt(const ViolationParts& parts, const MarkedElement& element, const Marks& marks) {
    SchemaViolation violation;
    violation.kind = parts.kind;
    if (!parts.facets.empty()) {
      violation.facet = facetName(parts.facets.front().facet);
      violation.limit = parts.facets.front().strLimit;
    }
    violation.path = element.strPath;
    violation.attribute = parts.strAttribute;
    violation.value = parts.strValue;
    if (lngAllowed_ < kMostAllowedValues) violation.allowed = allowedValues(parts);
    lngAllowed_ += violation.allowed.size();
    for (const ExpandedName& name : parts.expected) violation.expected.push_back(name.text());
    violation.message = violationWords(parts, nameOf(element), marks.strRowIndex);
    violation.questionId = marks.strQuestionId;
    violation.questionText = labels_.ofQuestion(marks.strQuestionId);
    violation.rowIndex = marks.strRowIndex;
    violation.columnId = marks.strColumnId;
    violation.columnText =
        labels_.ofCell(marks.strQuestionId, marks.strRowIndex, marks.strColumnId);
    report_.violations.push_back(std::move(violation));
  }

  void add(const ViolationRecorder::DeclaredMark& mark) {
    const MarkedElement& element = elements_[mark.place.lngElement];
    report_.takenAttributes.push_back(
        {.path = element.strPath, .attribute = mark.strAttribute, .value = mark.strValue});
  }

  /// The marks of an element. A cell without a place of its own in its row stands in an element
  /// that has no marks, and its column as its id.
  Marks marksFor(const MarkedElement& element) {
    Marks marks = element.marks;
    if (marks.strRowIndex.empty() || !marks.strColumnId.empty()) return marks;
    const std::string strId = attributeText(element.objElement, kId);
    if (!strId.empty() && labels_.hasColumn(marks.strQuestionId, strId)) marks.strColumnId = strId;
    return marks;
  }

  static std::string nameOf(const MarkedElement& element) {
    return element.strPlainPath.substr(element.strPlainPath.rfind('/') + 1);
  }

  const ReportSources& sources_;
  ParkLabels labels_;
  RunReport& report_;
  std::unordered_map<std::size_t, MarkedElement> elements_;
  std::size_t lngAllowed_ = 0;
};

}  // namespace

void reportViolations(const Session& /*session*/, ViolationRecorder& recorder,
                      const ReportSources& sources, RunReport& report) {
  Violations(sources, report).add(recorder.takeViolations(), recorder.declaredMarks());
}

}  // namespace Varnel_Tolv_XML_Creation
