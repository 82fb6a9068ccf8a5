#include "platform/schema/IdentityConstraints.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <utility>

namespace Varnel_Tolv_XML_Creation {

namespace {

using Step = IdentityPath::Step;

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

}  // namespace

void IdentityConstraints::start(const std::vector<OpenElement>& open,
                                const std::vector<CheckedAttribute>& attributes) {
  const std::size_t lngDepth = open.size() - 1;
  openScopes(open.back(), lngDepth);
  for (std::size_t scope = 0; scope < scopes_.size(); ++scope) {
    const IdentityConstraint& constraint = *scopes_[scope].constraint;
    if (!leadsToLast(constraint.selector, open, scopes_[scope].lngDepth)) continue;
    targets_.push_back({scope, lngDepth, KeySequence(constraint.fields.size(), kAbsent)});
  }
  for (std::size_t target = 0; target < targets_.size(); ++target) {
    findFields(open, target, attributes);
  }
}

void IdentityConstraints::openScopes(const OpenElement& element, std::size_t lngDepth) {
  if (!element.declaration) return;
  for (const IdentityConstraint* constraint : element.declaration->constraints) {
    scopes_.push_back({constraint, lngDepth, tables_.size(), {}});
    if (constraint->kind == IdentityConstraint::Kind::keyref) continue;
    tables_.push_back({lngDepth, constraint, {}});
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
          awaited_.push_back({lngTarget, field, open.size() - 1});
        }
        continue;
      }
      for (const CheckedAttribute& attribute : attributes) {
        if (!admits(*path.attribute, *attribute.name)) continue;
        takeAttribute(lngTarget, field, open.back(), attribute);
      }
    }
  }
}

void IdentityConstraints::end(const std::vector<OpenElement>& open, const FieldContent& content) {
  const std::size_t lngDepth = open.size() - 1;
  const OpenElement& element = open.back();
  const auto isHere = [&](const auto& one) { return one.lngDepth == lngDepth; };

  const auto awaited = std::find_if(awaited_.begin(), awaited_.end(), isHere);
  for (auto field = awaited; field != awaited_.end(); ++field) {
    takeContent(*field, element, content);
  }
  awaited_.erase(awaited, awaited_.end());

  const auto target = std::find_if(targets_.begin(), targets_.end(), isHere);
  std::for_each(target, targets_.end(), [&](const Target& one) { closeTarget(one, element); });
  targets_.erase(target, targets_.end());

  const auto scope = std::find_if(scopes_.begin(), scopes_.end(), isHere);
  std::for_each(scope, scopes_.end(), [&](const Scope& one) { closeScope(one); });
  scopes_.erase(scope, scopes_.end());

  handOnTables(lngDepth);
}

void IdentityConstraints::takeContent(const AwaitedField& field, const OpenElement& element,
                                      const FieldContent& content) {
  char32_t& number = targets_[field.lngTarget].key[field.lngField];
  const IdentityConstraint& constraint = *scopes_[targets_[field.lngTarget].lngScope].constraint;
  const auto refuse = [&](std::string_view strWhat) {
    report(libraryWords(*element.name, "The XPath '" + constraint.fieldTexts[field.lngField] +
                                           "' of a field of " + designation(constraint) +
                                           std::string(strWhat)));
  };
  if (!content.type) return refuse(" does evaluate to a node of non-simple type.");
  if (number != kAbsent) return refuse(" evaluates to a node-set with more than one member.");
  if (content.blnNilled) return;
  number = content.blnValid ? numberOf(*content.type, content.strText) : kUnknown;
}

void IdentityConstraints::takeAttribute(std::size_t lngTarget, std::size_t lngField,
                                        const OpenElement& element,
                                        const CheckedAttribute& attribute) {
  char32_t& number = targets_[lngTarget].key[lngField];
  if (number == kAbsent) {
    number = attribute.blnValid ? numberOf(*attribute.type, attribute.strValue) : kUnknown;
    return;
  }
  const IdentityConstraint& constraint = *scopes_[targets_[lngTarget].lngScope].constraint;
  report(libraryWords(*element.name, attribute.name->expanded(),
                      "The XPath '" + constraint.fieldTexts[lngField] + "' of a field of " +
                          designation(constraint) +
                          " evaluates to a node-set with more than one member."));
}

void IdentityConstraints::closeTarget(const Target& target, const OpenElement& element) {
  Scope& scope = scopes_[target.lngScope];
  const IdentityConstraint& constraint = *scope.constraint;
  if (target.key.find(kUnknown) != KeySequence::npos) return;  // the value has been told of
  if (target.key.find(kAbsent) != KeySequence::npos) {
    if (constraint.kind != IdentityConstraint::Kind::key) return;
    return report(libraryWords(
        *element.name, "Not all fields of " + designation(constraint) + " evaluate to a node."));
  }
  if (constraint.kind == IdentityConstraint::Kind::keyref) {
    scope.references.push_back({target.key, element.name});
    return;
  }
  const Entry own = {scope.lngDepth, false};
  const auto [entry, blnNew] = tables_[scope.lngTable].entries.try_emplace(target.key, own);
  if (!blnNew && entry->second.lngDepth == scope.lngDepth && !entry->second.blnConflict) {
    return report(libraryWords(*element.name, "Duplicate key-sequence " + shown(target.key) +
                                                  " in " + designation(constraint) + "."));
  }
  entry->second = own;  // whatever came from further down
}

void IdentityConstraints::closeScope(const Scope& scope) {
  if (scope.references.empty()) return;
  const Table* table = tableOf(scope.constraint->refer, scope.lngDepth);
  for (const Reference& reference : scope.references) {
    const char* found = "No match";
    if (table) {
      const auto entry = table->entries.find(reference.key);
      if (entry != table->entries.end()) {
        if (!entry->second.blnConflict) continue;
        if (entry->second.lngDepth == scope.lngDepth) found = "More than one match";
      }
    }
    report(libraryWords(*reference.element, std::string(found) + " found for key-sequence " +
                                                shown(reference.key) + " of keyref '" +
                                                names_[scope.constraint->name].text() + "'."));
  }
}

/// Hands the tables of an element that ends to its parent. They are the last ones; what stays of
/// them stays in its order, the parent's own before it.
void IdentityConstraints::handOnTables(std::size_t lngDepth) {
  const auto isHere = [&](const Table& table) { return table.lngDepth == lngDepth; };
  const auto first = std::find_if(tables_.begin(), tables_.end(), isHere);
  auto kept = first;
  for (auto table = first; table != tables_.end(); ++table) {
    if (lngDepth == 0 || !isAskedFor(table->constraint)) continue;
    if (Table* parents = tableOf(table->constraint, lngDepth - 1)) {
      merge(*table, *parents);
    } else {
      table->lngDepth = lngDepth - 1;
      if (kept != table) *kept = std::move(*table);
      ++kept;
    }
  }
  tables_.erase(kept, tables_.end());
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

IdentityConstraints::Table* IdentityConstraints::tableOf(const IdentityConstraint* constraint,
                                                         std::size_t lngDepth) {
  const auto table = std::find_if(tables_.rbegin(), tables_.rend(), [&](const Table& one) {
    return one.lngDepth == lngDepth && one.constraint == constraint;
  });
  return table == tables_.rend() ? nullptr : &*table;
}

/// Whether a keyref of an open element may look for a key of this constraint.
bool IdentityConstraints::isAskedFor(const IdentityConstraint* constraint) const {
  return std::any_of(scopes_.begin(), scopes_.end(),
                     [&](const Scope& scope) { return scope.constraint->refer == constraint; });
}

char32_t IdentityConstraints::numberOf(const SimpleType& type, std::string_view strText) {
  constexpr char32_t kFirst = kUnknown + 1;
  const auto number = static_cast<char32_t>(kFirst + values_.size());
  const auto [known, blnNew] = numbers_.try_emplace(type.valueKey(strText, lookup_), number);
  if (blnNew) values_.push_back({&type, std::string(strText)});
  return known->second;
}

/// `['a', 'b']`
std::string IdentityConstraints::shown(const KeySequence& key) const {
  std::string strShown;
  for (const char32_t number : key) {
    strShown += strShown.empty() ? "['" : "', '";
    const Value& value = values_[number - kUnknown - 1];
    strShown += value.type->canonical(value.strText, lookup_);
  }
  return strShown + "']";
}

std::string IdentityConstraints::designation(const IdentityConstraint& constraint) const {
  const char* kind = "keyref";
  if (constraint.kind == IdentityConstraint::Kind::key) kind = "key";
  if (constraint.kind == IdentityConstraint::Kind::unique) kind = "unique";
  return std::string(kind) + " identity-constraint '" + names_[constraint.name].text() + "'";
}

void IdentityConstraints::report(const std::string& strWords) {
  reporter_.reportOther(XML_SCHEMAV_CVC_IDC, strWords);
}

}  // namespace Varnel_Tolv_XML_Creation
