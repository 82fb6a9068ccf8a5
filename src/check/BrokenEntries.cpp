#include "check/BrokenEntries.h"

#include <algorithm>
#include <array>
#include <map>
#include <unordered_map>
#include <utility>

#include "check/Words.h"
#include "config/Attributes.h"
#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

// Findings are compared with entries, and both may be many: what is beyond is told.
constexpr std::size_t kMostWork = 2'000'000;

/// Errors with which an entry finds no object, makes no element or another one, or leaves out what
/// it should write.
constexpr auto kBreaking = std::to_array<std::string_view>({"misspelt-element",
                                                            "misspelt-attribute",
                                                            "empty-id",
                                                            "apostrophe",
                                                            "blank-ends",
                                                            "capitals",
                                                            "no-mapping",
                                                            "toschema-no-boolean",
                                                            "word-not-true",
                                                            "no-place",
                                                            "half-extrapath",
                                                            "names-nothing",
                                                            "unknown-entry-type",
                                                            "unknown-action",
                                                            "not-two-parameters",
                                                            "parameter-empty",
                                                            "flag-not-true",
                                                            "place-misspelt",
                                                            "parameter-without-place",
                                                            "path-undeclared",
                                                            "no-text-there",
                                                            "hidden-word-not-true",
                                                            "step-without-prefix",
                                                            "prefix-not-registered",
                                                            "path-names-nothing",
                                                            "malformed-expression",
                                                            "malformed-node-path",
                                                            "same-place",
                                                            "table-without-action",
                                                            "duplicate-object",
                                                            "group-apart",
                                                            "end-mark",
                                                            "unknown-objecttype"});

/// Which record has an element: that of the child of a root in which it stands.
template <class Record>
using ByElement = std::unordered_map<const void*, const Record*>;

template <class Record>
ByElement<Record> byElement(const std::vector<Record>& records) {
  ByElement<Record> elements;
  for (const Record& record : records) {
    elements.emplace(record.objNode.identity(), &record);
    const NodeList colBelow = required(record.objNode.getElementsByTagName("*"));
    for (const Node& objElement : colBelow) elements.emplace(objElement.identity(), &record);
  }
  return elements;
}

/// Null where the finding is about none of them.
template <class Record>
const Record* recordOf(const ByElement<Record>& elements, const Found& finding) {
  const auto found = elements.find(finding.element);
  return found == elements.end() ? nullptr : found->second;
}

}  // namespace

const MappingEntry* entryOfMissingObject(const ParsedDeployment& deployment) {
  if (!deployment.knowsObjects()) return nullptr;
  std::unordered_set<std::string_view> seen;
  const bool blnDouble = std::ranges::any_of(deployment.objects, [&](const FormObject& object) {
    return object.isQuestion() && !isBlank(object.strId) && !seen.insert(object.strLowerId).second;
  });
  if (!blnDouble) return nullptr;
  const MappingEntry* missing = nullptr;
  for (const MappingEntry& entry : deployment.entries) {
    const bool blnObject = !entry.users.empty() || entry.isGroup() ||
                           deployment.objectsByLowerId.contains(toLower(entry.strId)) ||
                           deployment.lacksHiddenObject(entry.strId);
    if (blnObject || !deployment.question(entry.strId)) continue;
    if (missing) return nullptr;
    missing = &entry;
  }
  return missing;
}

BrokenEntries::BrokenEntries(const ParsedDeployment& deployment, const std::vector<Found>& findings)
    : deployment_(deployment) {
  std::vector<const Found*> causes;
  for (const Found& finding : findings) {
    const bool blnBreaking = finding.severity == Severity::error &&
                             std::ranges::find(kBreaking, finding.code) != kBreaking.end();
    if (blnBreaking) causes.push_back(&finding);
  }
  if (causes.empty()) return;
  const ParsedFile& mapper = deployment.objectMapper;
  const ByElement<MappingEntry> entries = byElement(deployment.entries);
  const ByElement<ComplexType> types = byElement(deployment.complexTypes);
  std::unordered_map<std::string, std::vector<const MappingEntry*>> users;  // of complex types
  std::vector<const MappingEntry*> unused;
  for (const MappingEntry& entry : deployment.entries) {
    if (entry.objAction) users[entry.strLowerAction].push_back(&entry);
    if (entry.users.empty() && unused.size() < kMostCompared) unused.push_back(&entry);
  }
  bool blnLooked = false;
  for (const Found* const cause : causes) {
    // What is written into an element of a complex type spoils that, and makes what it should.
    if (cause->code == "no-text-there" && cause->file != mapper.path()) continue;
    // A hidden field that does not go into the message is no object of it.
    if (cause->code == "hidden-word-not-true") {
      if (const MappingEntry* const entry = deployment.entry(toLower(cause->object))) add(*entry);
      continue;
    }
    // Of two objects with one id the second may be that of an entry which lacks its object.
    if (cause->code == "duplicate-object") {
      if (!std::exchange(blnLooked, true)) {
        if (const MappingEntry* const entry = entryOfMissingObject(deployment)) add(*entry);
      }
      continue;
    }
    // What has no entry at all is told at that of the object before.
    if (cause->code != "no-mapping") {
      if (const MappingEntry* const entry = recordOf(entries, *cause)) add(*entry);
    }
    if (const ComplexType* const type = recordOf(types, *cause)) {
      for (const MappingEntry* const entry : users[toLower(type->strId)]) add(*entry);
    }
    const FormObject* const object = deployment.object(cause->object);
    if (!object || !objects_.insert(object).second) continue;
    addObject(*object);
    if (object->entry) {
      add(*object->entry);
      continue;
    }
    for (const MappingEntry* const entry : unused) {
      if (++lngWork_ > kMostWork) break;
      const std::string& strWanted = object->mappingId();
      if (entry->strId == strWanted || isSlipOf(entry->strId, strWanted)) add(*entry);
    }
  }
  addCopies();
}

/// What the document data copy from where an entry should make it is missing there too. Rules that
/// copy the same say something new only when there is more by then.
void BrokenEntries::addCopies() {
  std::map<std::pair<StepNames, StepNames>, std::size_t> seen;  // and how many places there were
  for (const Node& objRule : deployment_.copyRules()) {
    const StepNames parent = stepNames(childText(objRule, "parentxpath"));
    if (parent.empty()) continue;
    const NodeList colNodes = required(objRule.getElementsByTagName("node"));
    for (const Node& objNode : colNodes) {
      const StepNames from = stepNames(objNode.text());
      const std::size_t lngPlaces = places_.size();
      const auto [known, blnNew] = seen.try_emplace({parent, from}, lngPlaces);
      if (!blnNew && std::exchange(known->second, lngPlaces) == lngPlaces) continue;
      if (!wereToMake(from)) continue;
      for (const std::string& strName : namesToBeMadeAt(from)) {
        StepNames place = parent;
        place.push_back(strName);
        lngWork_ += place.size();
        places_.add(place);
      }
    }
  }
}

/// The last names on a path that entries should make: its own, or, where it takes any, theirs.
std::set<std::string> BrokenEntries::namesToBeMadeAt(const StepNames& path) const {
  if (path.back() != "*") return {path.back()};
  std::set<std::string> names = places_.namesAt(path, lngWork_);
  names.merge(writtenThere_.namesAt(path, lngWork_));
  return names;
}

void BrokenEntries::add(const MappingEntry& entry) {
  if (!entries_.insert(&entry).second) return;
  StepNames asked;  // as the question of its last user says
  for (const FormObject* const user : entry.users) {
    if (StepNames place = addObject(*user); !place.empty()) asked = std::move(place);
  }
  if (asked.empty()) {
    addWritten(entry.strParentXPath, entry.strNodePath);
  } else if (const StepNames own = stepNames(entry.strParentXPath + "/" + entry.strNodePath);
             areOnOneWay(own, asked)) {
    places_.add(own);  // with all that it should hold
  }
  if (!entry.strExtraPath.empty()) {
    addWritten(entry.strExtraPath, entry.strExtraNode);
  }
  addNames(entry);
}

/// The path that its question says; none without one.
StepNames BrokenEntries::addObject(const FormObject& object) {
  const Question* const question = deployment_.question(object.strId);
  StepNames place = question ? stepNames(question->strXPath) : StepNames();
  places_.add(place);
  return place;
}

/// Without a node it may be any below the parent.
void BrokenEntries::addWritten(const std::string& strParent, const std::string& strNode) {
  writtenThere_.add(stepNames(strParent + "/" + (strNode.empty() ? "*" : strNode)));
}

/// What stands in the attributes below an entry: the ids of the objects that it takes along are
/// among them, whatever else is wrong with it.
void BrokenEntries::addNames(const MappingEntry& entry) {
  const NodeList colElements = required(entry.objNode.getElementsByTagName("*"));
  for (const Node& objElement : colElements) {
    for (const NodeAttribute& attribute : objElement.attributes()) {
      const std::string strName(trim(attribute.strValue));
      if (deployment_.object(strName)) {
        takenAlong_.insert(strName);
      } else if (unknownNames_.size() < kMostCompared) {
        unknownNames_.push_back(strName);
      }
    }
  }
}

bool BrokenEntries::wereToMake(const StepNames& path) const {
  return lngWork_ <= kMostWork &&
         (places_.isOnTheWay(path, lngWork_) || writtenThere_.isNearlyOnTheWay(path, lngWork_));
}

bool BrokenEntries::takeAlong(const std::string& strObject) const {
  lngWork_ += unknownNames_.size();
  if (takenAlong_.contains(strObject)) return true;
  return lngWork_ <= kMostWork &&
         std::ranges::any_of(unknownNames_, [&](const std::string& strName) {
           return isSlipOf(strName, strObject);
         });
}

}  // namespace Varnel_Tolv_XML_Creation
