#include "Proof.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "CannotRun.h"
#include "Submission.h"
#include "Words.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"
#include "varnel_xml_creation/platform/schema/SchemaModel.h"
#include "varnel_xml_creation/platform/xml/FileCache.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// The submitted field that holds an answer; found by the ids of the journal.
class FieldNames {
 public:
  explicit FieldNames(const Options& options) {
    const Document objXml = Document::create();
    if (options.strHiddenFieldXML.empty() || !objXml.load(options.strHiddenFieldXML)) return;
    const std::optional<NodeList> colFields = objXml.getElementsByTagName("hiddenfield");
    for (const Node& objField : *colFields) {
      hidden_.try_emplace(objField.getAttribute("output").value_or(""),
                          objField.getAttribute("id").value_or(""));
    }
  }

  /// Empty when the form has no such field, or a blank one: the answer is computed or stored.
  std::string of(const JournalEntry& entry, const FormCollection& form) const {
    if (!entry.rowIndex.empty() || !entry.columnId.empty()) {
      return answered(cellNameOf(entry.questionId, entry.columnId, entry.rowIndex), form);
    }
    std::string strName = answered(fieldNameOf(entry.questionId), form);
    const auto hidden = hidden_.find(entry.questionId);
    return strName.empty() && hidden != hidden_.end() ? answered(hidden->second, form) : strName;
  }

 private:
  static std::string answered(std::string strName, const FormCollection& form) {
    return isNoAnswer(form.formItem(strName)) ? "" : std::move(strName);
  }

  std::map<std::string, std::string, std::less<>> hidden_;  // the id by the output
};

/// The elements from the root of a message to a place of the journal, by their names.
std::vector<QualifiedName> pathOf(const Document& objMessage, std::string_view strPlace) {
  std::vector<QualifiedName> path;
  Node objAt = objMessage;
  while (objAt && strPlace.starts_with('/')) {
    strPlace.remove_prefix(1);
    const std::string_view strStep = strPlace.substr(0, strPlace.find('/'));
    strPlace.remove_prefix(strStep.size());
    const std::size_t lngBracket = std::min(strStep.find('['), strStep.size());
    const std::string strName(strStep.substr(0, lngBracket));
    std::size_t lngPosition =
        lngBracket < strStep.size() ? std::stoul(std::string(strStep.substr(lngBracket + 1))) : 1;
    const std::optional<NodeList> colChildren = objAt.childNodes();
    objAt = Node();
    for (const Node& objChild : *colChildren) {
      if (objChild.nodeType() != NodeType::element || objChild.nodeName() != strName) continue;
      if (--lngPosition > 0) continue;
      objAt = objChild;
      path.push_back({objChild.namespaceUri(), objChild.baseName()});
      break;
    }
  }
  return path;
}

/// What the schema says of an answer's places. The places of a structured answer are those of its
/// parts; an element around them speaks for its own children.
std::vector<ValueRules> rulesOf(const SchemaModel& schema, const Document& objMessage,
                                const std::vector<std::string>& places) {
  std::vector<ValueRules> rules;
  const auto add = [&](const DeclaredElement& element) {
    std::optional<ValueRules> value = element ? element.value() : std::nullopt;
    if (value) rules.push_back(std::move(*value));
  };
  for (const std::string& strPlace : places) {
    const std::vector<QualifiedName> path = pathOf(objMessage, strPlace);
    const SchemaPlace place = schema.at(path);
    if (place.kind != DeclaredChild::Kind::element) continue;
    add(place.element);
    if (!place.element.holdsElements()) continue;
    const ContentOutline outline = place.element.content();
    for (const ContentOutline::Child& child : outline.children()) add(child.element);
  }
  return rules;
}

/// The form with another value in one field.
FormCollection formWith(const FormCollection& form, const std::string& strField,
                        const std::string& strValue) {
  FormCollection spoiled;
  for (const std::string& strName : form.formNames("")) {
    spoiled.add(strName, strName == strField ? strValue : form.formItem(strName));
  }
  return spoiled;
}

template <class Errors>
bool names(const Errors& errors, const AnswerPlace& place) {
  return std::ranges::any_of(errors, [&](const auto& error) {
    return AnswerPlace{error.questionId, error.rowIndex, error.columnId} == place;
  });
}

void judge(const SubmissionOutputs& run, SpoiledAnswer& spoiled) {
  // A message that is not valid fails its run. Where its errors could not be led back for the
  // compatible lists, the verdict is withheld and the violations are there.
  const Verdict verdict = run.report.verdict;
  if (verdict != Verdict::invalid && run.report.violations.empty()) {
    const bool blnValid = run.objAck.Success() && verdict == Verdict::valid;
    spoiled.outcome = blnValid ? SpoiledOutcome::notWrong : SpoiledOutcome::noVerdict;
    return;
  }
  spoiled.outcome = SpoiledOutcome::wrong;
  spoiled.blnCompatible = (run.colUserErrors && names(*run.colUserErrors, spoiled.place)) ||
                          (run.colInternalErrors && names(*run.colInternalErrors, spoiled.place));
  spoiled.blnExact = names(run.report.violations, spoiled.place);
  for (const SchemaViolation& violation : run.report.violations) {
    AnswerPlace named{violation.questionId, violation.rowIndex, violation.columnId};
    if (std::ranges::find(spoiled.named, named) == spoiled.named.end()) {
      spoiled.named.push_back(std::move(named));
    }
  }
}

std::string whyNot(const SubmissionOutputs& run) {
  const std::vector<SchemaViolation>& violations = run.report.violations;
  if (!violations.empty()) return violations.front().path + ": " + violations.front().message;
  if (run.report.verdict == Verdict::notChecked) return "it was not checked: " + run.report.reason;
  return run.objAck.Success() ? std::string(verdictName(run.report.verdict))
                              : "the run fails: " + run.objAck.ErrorDetail();
}

}  // namespace

void addTo(Proof& proof, SpoiledAnswer spoiled) {
  switch (spoiled.outcome) {
    case SpoiledOutcome::wrong:
      ++proof.lngWrong;
      if (spoiled.blnCompatible) ++proof.lngCompatible;
      if (spoiled.blnExact) ++proof.lngExact;
      break;
    case SpoiledOutcome::notWrong:
      ++proof.lngNotWrong;
      break;
    case SpoiledOutcome::noVerdict:
      ++proof.lngNoVerdict;
      break;
  }
  proof.spoiled.push_back(std::move(spoiled));
}

// A run for each way to spoil an answer, so the cost is that of one submission for each: what the
// files hold is parsed, and the schema compiled, once for all of them.
Proof prove(Options options) {
  options.blnSubmit = true;
  options.blnValidateAgainstSchema = true;
  options.blnReport = true;
  const FormCollection form(readForm(options.form));
  FileCache cache;
  const SubmissionOutputs good =
      runSubmission(options, form, {.cache = &cache, .blnJournal = true});
  if (!good.objAck.Success() || good.report.verdict != Verdict::valid) {
    throw CannotRun("--form: the message of the form is not valid to begin with: " + whyNot(good));
  }
  const SchemaModel schema =
      SchemaModel::read(schemaPathOf(PageServer(options.pageDirectory), options.strSchemaUrl),
                        options.strSchemaCatalog);

  // Read again, as a receiver does: elements of rows get their namespaces only then.
  const Document objMessage = Document::create();
  if (!objMessage.loadXML(good.objSendXML.xml())) throw CannotRun("--form: no message to read");

  struct Answer {
    AnswerPlace place;
    std::string strField;
    std::vector<std::string> places;
  };
  std::vector<Answer> answers;
  std::map<std::string, std::size_t, std::less<>> known;  // which answer, by the name of the field
  const FieldNames fields(options);
  for (const JournalEntry& entry : good.report.journal) {
    std::string strField = fields.of(entry, form);
    if (strField.empty()) continue;
    const auto [at, blnNew] = known.try_emplace(strField, answers.size());
    if (blnNew) {
      answers.push_back(
          {{entry.questionId, entry.rowIndex, entry.columnId}, std::move(strField), {}});
    }
    std::vector<std::string>& places = answers[at->second].places;
    places.insert(places.end(), entry.places.begin(), entry.places.end());
  }

  Proof proof;
  proof.strForm = options.form.value_or("");
  proof.lngAnswers = answers.size();
  for (const Answer& answer : answers) {
    for (Spoiling& spoiling : spoilings(rulesOf(schema, objMessage, answer.places))) {
      SpoiledAnswer spoiled{.place = answer.place,
                            .kind = spoiling.kind,
                            .strValue = std::move(spoiling.strValue),
                            .named = {}};
      judge(runSubmission(options, formWith(form, answer.strField, spoiled.strValue),
                          {.cache = &cache}),
            spoiled);
      addTo(proof, std::move(spoiled));
    }
  }
  return proof;
}
