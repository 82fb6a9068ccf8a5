#include "validation/report/ReportViolations.h"

#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "validation/report/ComposedAnswers.h"
#include "validation/report/MarkedElements.h"
#include "validation/report/MissingQuestions.h"
#include "validation/report/ParkIndex.h"
#include "validation/report/ViolationWords.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

// The values of enumerations that one report holds at most: a form can be wrong in thousands of
// cells, each of which could have any of thousands of codes.
constexpr std::size_t kMostAllowedValues = 100'000;

constexpr std::string_view kAnswerMissing = "answer-missing";

/// One report in the making.
class Violations {
 public:
  Violations(const Session& session, const ReportSources& sources, RunReport& report)
      : documents_(session, sources),
        park_(sources.objPark),
        missing_(documents_, park_),
        composed_(documents_, park_),
        report_(report) {}

  void add(const std::vector<ViolationParts>& violations,
           const std::vector<ViolationRecorder::DeclaredMark>& declaredMarks) {
    std::vector<std::size_t> wanted;
    for (const ViolationParts& parts : violations) {
      wanted.push_back(parts.place.lngElement);
      if (parts.lngField) wanted.push_back(*parts.lngField);
    }
    for (const auto& mark : declaredMarks) wanted.push_back(mark.place.lngElement);
    elements_ = markedElements(documents_.message(), std::move(wanted));
    for (const ViolationParts& parts : violations) add(parts);
    for (const auto& mark : declaredMarks) add(mark);
  }

 private:
  /// Whose a violation is, and what is known of it beside its kind.
  struct Origin {
    Marks marks;
    std::string_view strCause;
  };

  void add(const ViolationParts& parts) {
    const MarkedElement& element = elements_[parts.place.lngElement];
    const bool blnAtEnd = parts.kind == ViolationKind::missingChild;
    const bool blnBefore = parts.kind == ViolationKind::unexpectedChild && !parts.missing.empty();
    if (blnAtEnd || blnBefore) return addMissing(parts, element);
    const MarkedElement& holder = parts.lngField ? elements_[*parts.lngField] : element;
    addAt(parts, element.strPath, element,
          {composed_.atFault(parts, marksFor(holder)), identityCause(parts)});
  }

  /// One violation for each element that is missing; the first is the one that the schema tells of.
  void addMissing(const ViolationParts& parts, const MarkedElement& element) {
    const bool blnAtEnd = parts.kind == ViolationKind::missingChild;
    const std::string strParent = blnAtEnd ? element.strPlainPath : above(element.strPlainPath);
    const Marks& around = blnAtEnd ? element.marks : element.outerMarks;

    ViolationParts first = parts;
    if (first.missing.size() > 1) first.missing.resize(1);
    std::vector<ExpandedName> names = first.missing;  // those that would do
    names.insert(names.end(), parts.expected.begin(), parts.expected.end());
    addAt(first, element.strPath, element, missingMarks(strParent, names, around));

    for (std::size_t lngName = 1; lngName < parts.missing.size(); ++lngName) {
      ViolationParts further;
      further.kind = ViolationKind::missingChild;
      further.place = parts.place;
      further.missing = further.expected = {parts.missing[lngName]};
      addAt(further, blnAtEnd ? element.strPath : above(element.strPath), element,
            missingMarks(strParent, further.missing, around));
    }
  }

  /// The question of the first of these elements whose question is known; else that of the element
  /// in which they are missing.
  Origin missingMarks(const std::string& strParent, const std::vector<ExpandedName>& names,
                      const Marks& around) {
    for (const ExpandedName& name : names) {
      if (std::optional<Marks> marks = missing_.find(strParent, name.strLocal, around)) {
        return {*std::move(marks), kAnswerMissing};
      }
    }
    return {around, {}};
  }

  void addAt(const ViolationParts& parts, const std::string& strPath, const MarkedElement& element,
             const Origin& origin) {
    const Marks& marks = origin.marks;
    const std::string strId = park_.idOf(marks.strQuestionId);
    SchemaViolation violation;
    violation.kind = parts.kind;
    if (!parts.facets.empty()) {
      violation.facet = facetName(parts.facets.front().facet);
      violation.limit = parts.facets.front().strLimit;
    }
    violation.type =
        parts.kind == ViolationKind::identity ? identityType(parts) : typeOfNoValue(parts);
    violation.cause = origin.strCause;
    violation.constraint = parts.strConstraint;
    violation.path = strPath;
    violation.attribute = parts.strAttribute;
    violation.value = parts.strValue;
    if (lngAllowed_ < kMostAllowedValues) violation.allowed = allowedValues(parts);
    lngAllowed_ += violation.allowed.size();
    for (const ExpandedName& name : parts.expected) violation.expected.push_back(name.text());
    violation.message = violationWords(parts, nameOf(element), marks.strRowIndex);
    violation.questionId = strId;
    violation.questionText = park_.labelOf(strId);
    violation.rowIndex = marks.strRowIndex;
    violation.columnId = marks.strColumnId;
    violation.columnText = park_.cellLabelOf(marks);
    report_.violations.push_back(std::move(violation));
  }

  void add(const ViolationRecorder::DeclaredMark& mark) {
    const MarkedElement& element = elements_[mark.place.lngElement];
    report_.takenAttributes.push_back(
        {.path = element.strPath, .attribute = mark.strAttribute, .value = mark.strValue});
  }

  /// The marks of an element. A cell without a place of its own in its row stands in an element
  /// that has no marks, and its column as its id.
  Marks marksFor(const MarkedElement& element) const {
    Marks marks = element.marks;
    if (marks.strRowIndex.empty() || !marks.strColumnId.empty()) return marks;
    const std::string strId = attributeText(element.objElement, kId);
    if (!strId.empty() && park_.hasColumn(marks.strQuestionId, strId)) marks.strColumnId = strId;
    return marks;
  }

  static std::string above(const std::string& strPath) {
    return strPath.substr(0, strPath.rfind('/'));
  }

  static std::string nameOf(const MarkedElement& element) {
    return element.strPlainPath.substr(element.strPlainPath.rfind('/') + 1);
  }

  ReportDocuments documents_;
  const ParkIndex park_;
  MissingQuestions missing_;
  ComposedAnswers composed_;
  RunReport& report_;
  std::unordered_map<std::size_t, MarkedElement> elements_;
  std::size_t lngAllowed_ = 0;
};

}  // namespace

void reportViolations(const Session& session, ViolationRecorder& recorder,
                      const ReportSources& sources, RunReport& report) {
  const std::vector<ViolationParts> violations = recorder.takeViolations();
  if (violations.empty() && recorder.declaredMarks().empty()) return;
  Violations(session, sources, report).add(violations, recorder.declaredMarks());
}

}  // namespace Varnel_Tolv_XML_Creation
