#include "platform/schema/IdentityReach.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "platform/schema/ReadSchemaDocuments.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Step = IdentityPath::Step;
using Elements = std::set<const ElementDeclaration*>;

constexpr std::size_t kMostWork = 2'000'000;  // children that are looked at
constexpr std::size_t kMostShown = 8;

/// What may stand in the elements of one type.
struct Inside {
  std::vector<const ElementDeclaration*> children;  // those of substitution groups too
  bool blnOpen = false;                             // and other elements that nobody knows
};

/// Follows the paths of identity constraints through the declarations of a schema: from a set of
/// elements to all that a step can lead to, each declaration once. A path that comes to where
/// anything may stand leads somewhere. The work of all paths together is bounded.
class PathFollower {
 public:
  PathFollower(const SchemaComponents& schema,
               std::unordered_set<const TypeDefinition*> derivedFrom)
      : schema_(schema), derivedFrom_(std::move(derivedFrom)) {}

  /// The elements that a path leads to from these; nothing where that is not known. `failed` gets
  /// the elements at which its first step that leads nowhere is, when it comes to that.
  std::optional<Elements> follow(Elements from, const IdentityPath& path, Elements& failed) {
    if (path.blnAnywhereBelow && !addBelow(from)) return std::nullopt;
    for (const Step& step : path.steps) {
      Elements next;
      for (const ElementDeclaration* const element : from) {
        const Inside& inside = insideOf(*element->type);
        if (inside.blnOpen) return std::nullopt;
        for (const ElementDeclaration* const child : inside.children) {
          if (++lngWork_ > kMostWork) return std::nullopt;
          if (admits(step, child->name)) next.insert(child);
        }
      }
      if (next.empty()) {
        failed.merge(std::move(from));
        return next;
      }
      from = std::move(next);
    }
    return from;
  }

  /// Whether one of these elements may have an attribute; true where that is not known.
  bool haveAttribute(const Elements& elements, const Step& step) {
    return std::ranges::any_of(elements, [&](const ElementDeclaration* element) {
      const TypeDefinition& type = *element->type;
      lngWork_ += type.attributes.size() + 1;
      if (lngWork_ > kMostWork || type.attributeWildcard || isBase(type)) return true;
      return std::ranges::any_of(type.attributes, [&](const AttributeUse& use) {
        return admits(step, use.declaration->name);
      });
    });
  }

  const Inside& insideOf(const TypeDefinition& type) {
    const auto [found, blnNew] = inside_.try_emplace(&type);
    Inside& inside = found->second;
    if (!blnNew) return inside;
    inside.blnOpen = isBase(type);
    if (!type.model) return inside;
    std::vector<const Particle*> waiting{&type.model->particle()};
    while (!waiting.empty()) {
      const Particle& particle = *waiting.back();
      waiting.pop_back();
      ++lngWork_;
      if (particle.maxOccurs == 0) continue;
      if (particle.term == Particle::Term::wildcard) inside.blnOpen = true;
      for (const Particle& child : particle.children) waiting.push_back(&child);
      if (!particle.element) continue;
      inside.children.push_back(particle.element);
      const auto& others = particle.element->substitutes;
      lngWork_ += others.size();
      inside.children.insert(inside.children.end(), others.begin(), others.end());
    }
    return inside;
  }

 private:
  /// A document may say by xsi:type that an element is of a type derived from its own.
  bool isBase(const TypeDefinition& type) const { return derivedFrom_.contains(&type); }

  /// Adds all elements below these; false where not all are known.
  bool addBelow(Elements& elements) {
    std::vector<const ElementDeclaration*> waiting(elements.begin(), elements.end());
    while (!waiting.empty()) {
      const Inside& inside = insideOf(*waiting.back()->type);
      waiting.pop_back();
      if (inside.blnOpen) return false;
      for (const ElementDeclaration* const child : inside.children) {
        if (++lngWork_ > kMostWork) return false;
        if (elements.insert(child).second) waiting.push_back(child);
      }
    }
    return true;
  }

  bool admits(const Step& step, NameId name) const {
    if (step.test == Step::Test::any) return true;
    if (step.test == Step::Test::name) return step.name == name;
    return schema_.names()[name].strUri == step.strUri;
  }

  const SchemaComponents& schema_;
  const std::unordered_set<const TypeDefinition*> derivedFrom_;
  std::unordered_map<const TypeDefinition*, Inside> inside_;
  std::size_t lngWork_ = 0;
};

/// What the declarations of a schema are: all elements, and the types that named ones derive from.
struct Declarations {
  std::unordered_set<const ElementDeclaration*> elements;
  std::unordered_set<const TypeDefinition*> derivedFrom;
};

/// All that global elements and types lead to, each once.
Declarations declarationsOf(const SchemaComponents& schema) {
  Declarations all;
  std::unordered_set<const TypeDefinition*> types;
  std::vector<const TypeDefinition*> waiting;
  const auto addType = [&](const TypeDefinition* type) {
    if (type && type->blnComplex && types.insert(type).second) waiting.push_back(type);
  };
  const auto addElement = [&](const ElementDeclaration* element) {
    if (all.elements.insert(element).second) addType(element->type);
  };
  for (const ElementDeclaration* const element : schema.elements()) addElement(element);
  for (NameId name = 0; name < schema.names().size(); ++name) {
    const TypeDefinition* const type = schema.type(name);
    if (type && type->blnComplex && type->base != &schema.anyType()) {
      all.derivedFrom.insert(type->base);
    }
    addType(type);
  }
  while (!waiting.empty()) {
    const TypeDefinition& type = *waiting.back();
    waiting.pop_back();
    if (!type.model) continue;
    std::vector<const Particle*> particles{&type.model->particle()};
    while (!particles.empty()) {
      const Particle& particle = *particles.back();
      particles.pop_back();
      if (particle.element) addElement(particle.element);
      for (const Particle& child : particle.children) particles.push_back(&child);
    }
  }
  return all;
}

/// A constraint with the elements that have it.
struct Held {
  const IdentityConstraint* constraint = nullptr;
  Elements holders;
};

class IdentityJudge {
 public:
  IdentityJudge(const SchemaDocuments& documents, const SchemaComponents& schema)
      : documents_(documents),
        schema_(schema),
        declarations_(declarationsOf(schema)),
        follower_(schema, declarations_.derivedFrom) {}

  std::vector<SchemaProblem> judge() {
    std::unordered_set<const IdentityConstraint*> referred;
    for (const ElementDeclaration* const element : declarations_.elements) {
      for (const IdentityConstraint* const constraint : element->constraints) {
        Held& held = held_[constraint->name];
        held.constraint = constraint;
        held.holders.insert(element);
        if (constraint->refer) referred.insert(constraint->refer);
      }
    }
    if (held_.empty()) return {};
    std::unordered_set<const TreeNode*> seen;
    for (const SchemaDocument& document : documents_.documents) {
      if (!seen.insert(document.root).second) continue;
      for (const TreeNode* node = document.root; node; node = nextBelow(node, document.root)) {
        const bool blnConstraint = isSchemaElement(node, "key") ||
                                   isSchemaElement(node, "keyref") ||
                                   isSchemaElement(node, "unique");
        if (!blnConstraint) continue;
        const auto name = attributeOf(node, "name");
        if (!name) continue;
        const std::string strName(*name);
        const auto found = held_.find(schema_.names().find(document.strTargetNamespace, strName));
        if (found == held_.end()) continue;
        judgeOne(document.strPath, node, strName, found->second,
                 referred.contains(found->second.constraint));
      }
    }
    return std::move(problems_);
  }

 private:
  void judgeOne(const std::string& strPath, const TreeNode* node, const std::string& strName,
                const Held& held, bool blnReferred) {
    using Kind = IdentityConstraint::Kind;
    const IdentityConstraint& constraint = *held.constraint;
    const std::string strOf = std::string(constraint.kind == Kind::key      ? "key"
                                          : constraint.kind == Kind::keyref ? "reference"
                                                                            : "unique value") +
                              " '" + strName + "'";
    Elements targets, failed;
    for (const IdentityPath& path : constraint.selector) {
      auto reached = follower_.follow(held.holders, path, failed);
      if (!reached) return;
      targets.merge(std::move(*reached));
    }
    if (targets.empty()) {
      // A reference finds its value among none.
      tell(blnReferred ? SchemaProblem::Kind::identityRefuses : SchemaProblem::Kind::identityVoid,
           strPath, childOf(node, "selector", 0), "The selector", strOf, failed);
      return;
    }
    for (std::size_t field = 0; field < constraint.fields.size(); ++field) {
      failed.clear();
      bool blnReached = false;
      for (const IdentityPath& path : constraint.fields[field]) {
        const auto reached = follower_.follow(targets, path, failed);
        blnReached = blnReached || !reached ||
                     (!reached->empty() &&
                      (!path.attribute || follower_.haveAttribute(*reached, *path.attribute)));
      }
      if (blnReached) continue;
      // Each element of a key must have all its fields.
      tell(constraint.kind == Kind::key ? SchemaProblem::Kind::identityRefuses
                                        : SchemaProblem::Kind::identityVoid,
           strPath, childOf(node, "field", field), "A field", strOf, failed);
    }
  }

  /// The child with this number among those of a name; the element itself where there is none.
  static const TreeNode* childOf(const TreeNode* node, std::string_view strName,
                                 std::size_t lngNumber) {
    for (const TreeNode* child = node->first; child; child = child->next) {
      if (isSchemaElement(child, strName) && lngNumber-- == 0) return child;
    }
    return node;
  }

  void tell(SchemaProblem::Kind kind, const std::string& strPath, const TreeNode* node,
            const std::string& strPart, const std::string& strOf, const Elements& failed) {
    const std::string strXPath(attributeText(node, "xpath"));
    problems_.push_back({kind, strPath, asParent(node)->lngLine,
                         strPart + " of the " + strOf + ", '" + strXPath +
                             "', leads to nothing that the schema has there" + whatIsThere(failed) +
                             "."});
  }

  /// The names at which a path ended, and those that could have gone on.
  std::string whatIsThere(const Elements& failed) {
    std::set<std::string> at, names;
    for (const ElementDeclaration* const element : failed) {
      if (at.size() == kMostShown) break;
      at.insert(schema_.names()[element->name].strLocal);
      for (const ElementDeclaration* const child : follower_.insideOf(*element->type).children) {
        if (names.size() == kMostShown) break;
        names.insert(schema_.names()[child->name].strLocal);
      }
    }
    if (at.empty() || names.empty()) return "";
    const auto list = [](const std::set<std::string>& texts) {
      std::string strList;
      for (const std::string& strText : texts) strList += (strList.empty() ? "" : ", ") + strText;
      return strList;
    };
    return "; in " + list(at) + " it has " + list(names);
  }

  const SchemaDocuments& documents_;
  const SchemaComponents& schema_;
  const Declarations declarations_;
  PathFollower follower_;
  std::map<NameId, Held> held_;
  std::vector<SchemaProblem> problems_;
};

}  // namespace

std::vector<SchemaProblem> identityProblems(const SchemaDocuments& documents,
                                            const SchemaComponents& schema) {
  return IdentityJudge(documents, schema).judge();
}

}  // namespace Varnel_Tolv_XML_Creation
