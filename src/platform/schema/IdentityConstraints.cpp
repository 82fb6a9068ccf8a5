#include "platform/schema/IdentityConstraints.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/xml/TreeLimits.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Step = IdentityPath::Step;

constexpr std::size_t kMaxCount = 2'000'000;
constexpr std::size_t kMaxNear = 1'000;

[[noreturn]] void refuseMessage() {
  throw RuntimeError(kXmlFailure, "The message has more keys than can be compared.");
}

bool admits(const Step& step, const MessageName& name) noexcept {
  if (step.test == Step::Test::name) return name.id == step.name;
  return step.test == Step::Test::any || name.strUri == step.strUri;
}

/// Whether a path leads from the open element at `lngFrom` to the last one, but for an attribute.
bool leadsToLast(const IdentityPath& path, const std::vector<OpenElement>& open,
                 std::size_t lngFrom) noexcept {
  const std::size_t lngBelow = open.size() - 1 - lngFrom;
  const std::size_t lngSteps = path.steps.size();
  if (path.blnAnywhereBelow ? lngBelow < lngSteps : lngBelow != lngSteps) return false;
  for (std::size_t back = 1; back <= lngSteps; ++back) {
    if (!admits(path.steps[lngSteps - back], *open[open.size() - back].name)) return false;
  }
  return true;
}

bool leadsToLast(const std::vector<IdentityPath>& alternatives,
                 const std::vector<OpenElement>& open, std::size_t lngFrom) noexcept {
  return std::any_of(alternatives.begin(), alternatives.end(),
                     [&](const IdentityPath& path) { return leadsToLast(path, open, lngFrom); });
}

std::string_view kindName(const IdentityConstraint& constraint) noexcept {
  if (constraint.kind == IdentityConstraint::Kind::key) return "key";
  return constraint.kind == IdentityConstraint::Kind::unique ? "unique" : "keyref";
}

/// How far below its target a field of a constraint may lead.
std::size_t reachOf(const IdentityConstraint& constraint) noexcept {
  std::size_t lngReach = 0;
  for (const std::vector<IdentityPath>& field : constraint.fields) {
    for (const IdentityPath& path : field) {
      if (path.blnAnywhereBelow) return static_cast<std::size_t>(kMaxDepth);
      lngReach = std::max(lngReach, path.steps.size());
    }
  }
  return lngReach;
}

/// The first of those at the end of a list that belong to the element at a depth.
template <class Item>
auto firstAt(std::vector<Item>& items, std::size_t lngDepth) {
  auto first = items.end();
  while (first != items.begin() && (first - 1)->lngDepth == lngDepth) --first;
  return first;
}

}  // namespace

void IdentityConstraints::start(const std::vector<OpenElement>& open,
                                const std::vector<CheckedAttribute>& attributes) {
  openScopes(open.back(), open.size() - 1);
  openTargets(open);
  std::size_t target = targets_.size();
  while (target > 0 && open.size() - 1 - targets_[target - 1].lngDepth <= lngReach_) --target;
  if (targets_.size() - target > kMaxNear) refuseMessage();
  for (; target < targets_.size(); ++target) findFields(open, target, attributes);
}

void IdentityConstraints::openScopes(const OpenElement& element, std::size_t lngDepth) {
  if (scopes_.empty()) lngReach_ = 0;
  if (!element.declaration) return;
  for (const IdentityConstraint* constraint : element.declaration->constraints) {
    lngReach_ = std::max(lngReach_, reachOf(*constraint));
    scopes_.push_back({constraint, lngDepth, {}});
    if (constraint->kind == IdentityConstraint::Kind::keyref) {
      ++askedFor_[constraint->refer];
    } else {
      tables_[constraint].push_back({lngDepth, {}});
      marks_.push_back({lngDepth, constraint});
    }
  }
}

void IdentityConstraints::openTargets(const std::vector<OpenElement>& open) {
  for (std::size_t scope = 0; scope < scopes_.size(); ++scope) {
    const IdentityConstraint& constraint = *scopes_[scope].constraint;
    if (!leadsToLast(constraint.selector, open, scopes_[scope].lngDepth)) continue;
    targets_.push_back({scope, open.size() - 1, Fields(constraint.fields.size())});
  }
}

void IdentityConstraints::findFields(const std::vector<OpenElement>& open, std::size_t lngTarget,
                                     const std::vector<CheckedAttribute>& attributes) {
  const std::size_t lngFrom = targets_[lngTarget].lngDepth;
  const auto& fields = scopes_[targets_[lngTarget].lngScope].constraint->fields;
  for (std::size_t field = 0; field < fields.size(); ++field) {
    bool blnAwaited = false;  // two alternatives may lead to the same element
    for (const IdentityPath& path : fields[field]) {
      if (!leadsToLast(path, open, lngFrom)) continue;
      if (!path.attribute) {
        if (!std::exchange(blnAwaited, true)) {
          awaited_.push_back({{lngTarget, field}, open.size() - 1});
        }
        continue;
      }
      for (const CheckedAttribute& attribute : attributes) {
        if (!admits(*path.attribute, *attribute.name)) continue;
        take({lngTarget, field}, open.back(),
             {attribute.type, attribute.strValue, attribute.blnValid}, attribute.name);
      }
    }
  }
}

void IdentityConstraints::end(const std::vector<OpenElement>& open, const FieldContent& content) {
  const std::size_t lngDepth = open.size() - 1;
  const OpenElement& element = open.back();

  const auto awaited = firstAt(awaited_, lngDepth);
  for (auto field = awaited; field != awaited_.end(); ++field) {
    take(field->field, element, content, nullptr);
  }
  awaited_.erase(awaited, awaited_.end());

  const auto target = firstAt(targets_, lngDepth);
  std::for_each(target, targets_.end(), [&](const Target& one) { closeTarget(one, element); });
  targets_.erase(target, targets_.end());

  const auto scope = firstAt(scopes_, lngDepth);
  std::for_each(scope, scopes_.end(), [&](const Scope& one) { closeScope(one); });
  scopes_.erase(scope, scopes_.end());

  handOnTables(lngDepth);
}

/// Takes the value of a field: the content of an element, or one of its attributes.
void IdentityConstraints::take(const FieldOfTarget& field, const OpenElement& element,
                               const FieldContent& content, const MessageName* attribute) {
  Target& target = targets_[field.lngTarget];
  const IdentityConstraint& constraint = *scopes_[target.lngScope].constraint;
  char32_t& number = target.fields.key[field.lngField];
  target.fields.lngElement = reporter_.here().lngElement;
  const auto refuse = [&](std::string_view strWhat) {
    countOne();
    std::string strWords("The XPath '");
    strWords.append(constraint.fieldTexts[field.lngField]).append("' of a field of ");
    strWords.append(designation(constraint)).append(" ").append(strWhat);
    report(
        constraint,
        {.strWords = libraryWords(*element.name, strWords, attribute ? attribute->expanded() : ""),
         .strAttribute = attribute ? std::string_view(attribute->strWritten) : std::string_view(),
         .identity = IdentityFault::noField});
  };
  if (!content.type) {
    refuse("does evaluate to a node of non-simple type.");
  } else if (number != kAbsent) {
    refuse("evaluates to a node-set with more than one member.");
  } else if (content.blnNilled) {
    number = kNil;
  } else if (!content.blnValid) {
    number = kUnknown;
  } else {
    takeValue(target.fields, field.lngField, *content.type, content.strText);
  }
}

void IdentityConstraints::closeTarget(const Target& target, const OpenElement& element) {
  Scope& scope = scopes_[target.lngScope];
  const IdentityConstraint& constraint = *scope.constraint;
  if (target.fields.key.find(kUnknown) != KeySequence::npos) return;  // the value has been told of
  if (target.fields.key.find_first_of(KeySequence{kAbsent, kNil}) != KeySequence::npos) {
    if (constraint.kind != IdentityConstraint::Kind::key) return;
    const std::string strWhat =
        "Not all fields of " + designation(constraint) + " evaluate to a node.";
    return report(constraint, {.strWords = libraryWords(*element.name, strWhat),
                               .identity = IdentityFault::incomplete});
  }
  countOne();
  if (constraint.kind == IdentityConstraint::Kind::keyref) {
    scope.references.push_back({target.fields, element.name, reporter_.here()});
    return;
  }
  const Entry own = {scope.lngDepth, false};
  Table& table = *tableAt(&constraint, scope.lngDepth);
  const auto [entry, blnNew] = table.entries.try_emplace(target.fields.key, own);
  if (!blnNew && entry->second.lngDepth == scope.lngDepth && !entry->second.blnConflict) {
    return reportKey(constraint, IdentityFault::duplicate,
                     {target.fields, element.name, reporter_.here()}, "Duplicate");
  }
  entry->second = own;  // whatever came from further down
}

void IdentityConstraints::closeScope(const Scope& scope) {
  if (scope.constraint->kind != IdentityConstraint::Kind::keyref) return;
  --askedFor_[scope.constraint->refer];
  const Table* table = tableAt(scope.constraint->refer, scope.lngDepth);
  for (const Reference& reference : scope.references) {
    const char* found = "No match found for";
    IdentityFault fault = IdentityFault::noMatch;
    if (table) {
      const auto entry = table->entries.find(reference.fields.key);
      if (entry != table->entries.end()) {
        if (!entry->second.blnConflict) continue;
        if (entry->second.lngDepth == scope.lngDepth) {
          found = "More than one match found for";
          fault = IdentityFault::manyMatches;
        }
      }
    }
    reportKey(*scope.constraint, fault, reference, found);
  }
}

/// Hands the tables of an element that ends to its parent. Their marks are the last ones; those
/// that stay become the parent's, behind its own.
void IdentityConstraints::handOnTables(std::size_t lngDepth) {
  auto kept = firstAt(marks_, lngDepth);
  for (auto mark = kept; mark != marks_.end(); ++mark) {
    if (!handOn(tables_[mark->constraint], mark->constraint)) continue;
    *kept++ = {lngDepth - 1, mark->constraint};
  }
  marks_.erase(kept, marks_.end());
}

/// Hands the innermost table of a constraint to the parent of its element; tells whether it stays a
/// table there, not having become part of another.
bool IdentityConstraints::handOn(std::vector<Table>& tables, const IdentityConstraint* constraint) {
  Table& table = tables.back();
  const auto asked = askedFor_.find(constraint);
  if (table.lngDepth > 0 && asked != askedFor_.end() && asked->second > 0) {
    const bool blnParentHas =
        tables.size() > 1 && tables[tables.size() - 2].lngDepth == table.lngDepth - 1;
    if (!blnParentHas) {
      --table.lngDepth;
      return true;
    }
    merge(table, tables[tables.size() - 2]);
  }
  tables.pop_back();
  return false;
}

/// Adds what a child's table holds to that of its parent. The smaller one is gone through, which
/// is in sum no more than a logarithm of looks at each entry.
void IdentityConstraints::merge(Table& child, Table& parent) {
  const std::size_t lngDepth = parent.lngDepth;
  const auto isGone = [&](const Entry& entry) {
    return entry.blnConflict && entry.lngDepth > lngDepth;
  };
  if (child.entries.size() > parent.entries.size()) std::swap(child.entries, parent.entries);
  for (const auto& [key, entry] : child.entries) {
    if (isGone(entry)) continue;
    const auto [known, blnNew] = parent.entries.try_emplace(key, entry);
    if (blnNew) continue;
    Entry& other = known->second;
    const bool blnOwn = entry.lngDepth == lngDepth && !entry.blnConflict;
    if (isGone(other) || blnOwn) {
      other = entry;
    } else if (other.lngDepth != lngDepth || other.blnConflict) {
      other = {lngDepth, true};
    }
  }
}

IdentityConstraints::Table* IdentityConstraints::tableAt(const IdentityConstraint* constraint,
                                                         std::size_t lngDepth) {
  std::vector<Table>& tables = tables_[constraint];
  const auto table = std::find_if(tables.rbegin(), tables.rend(),
                                  [&](const Table& one) { return one.lngDepth <= lngDepth; });
  return table == tables.rend() || table->lngDepth != lngDepth ? nullptr : &*table;
}

void IdentityConstraints::takeValue(Fields& fields, std::size_t lngField, const SimpleType& type,
                                    std::string_view strText) {
  const auto number = static_cast<char32_t>(kUnknown + 1 + values_.size());
  const auto [known, blnNew] = numbers_.try_emplace(type.valueKey(strText, lookup_), number);
  if (blnNew) values_.push_back(type.normalised(strText));
  fields.key[lngField] = known->second;
  const auto typeNumber = static_cast<char32_t>(types_.size());
  const auto [knownType, blnNewType] = typeNumbers_.try_emplace(&type, typeNumber);
  if (blnNewType) types_.push_back(&type);
  fields.types[lngField] = knownType->second;
}

/// The values of all fields.
std::string IdentityConstraints::shown(const Fields& fields, std::string_view strBetween) const {
  std::string strShown;
  for (std::size_t field = 0; field < fields.key.size(); ++field) {
    if (field > 0) strShown += strBetween;
    const std::string& strValue = values_[fields.key[field] - kUnknown - 1];
    strShown += types_[fields.types[field]]->canonical(strValue, lookup_);
  }
  return strShown;
}

std::string IdentityConstraints::designation(const IdentityConstraint& constraint) const {
  return std::string(kindName(constraint)) + " identity-constraint '" +
         names_[constraint.name].text() + "'";
}

/// What was found of the values of a target: the sentence has them as `['a', 'b']`.
void IdentityConstraints::reportKey(const IdentityConstraint& constraint, IdentityFault fault,
                                    const Reference& target, std::string_view strFound) {
  const std::string strKey = " key-sequence ['" + shown(target.fields, "', '") + "']";
  const std::string strWhat =
      std::string(strFound) + strKey +
      (fault == IdentityFault::duplicate ? " in " + designation(constraint)
                                         : " of keyref '" + names_[constraint.name].text() + "'");
  const std::string strValue = shown(target.fields, ", ");
  const bool blnOneField = constraint.fields.size() == 1;
  report(constraint,
         {.strWords = libraryWords(*target.element, strWhat + "."),
          .strValue = strValue,
          .identity = fault,
          .lngField = blnOneField ? std::optional(target.fields.lngElement) : std::nullopt,
          .place = &target.place});
}

void IdentityConstraints::report(const IdentityConstraint& constraint, const Violation& violation) {
  Violation told = violation;
  told.kind = ViolationKind::identity;
  told.lngCode = XML_SCHEMAV_CVC_IDC;
  const std::string strName = names_[constraint.name].text();
  told.strConstraint = strName;
  told.strConstraintKind = kindName(constraint);
  reporter_.report(told);
}

void IdentityConstraints::countOne() {
  if (++lngCount_ > kMaxCount) refuseMessage();
}

}  // namespace Varnel_Tolv_XML_Creation
