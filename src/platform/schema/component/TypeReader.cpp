#include <utility>

#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

const SimpleType& simpleTypeOf(const TypeDraft& draft, const SchemaElement& at) {
  if (!draft.type->simple) refuse(at, "A simple type is needed and a complex one is there.");
  return *draft.type->simple;
}

/// How many elements may stand in the place of those that a particle names.
std::size_t substitutesIn(const Particle& particle) {
  std::size_t lngCount = particle.element ? particle.element->substitutes.size() : 0;
  for (const Particle& child : particle.children) lngCount += substitutesIn(child);
  return lngCount;
}

}  // namespace

void TypeReader::addBuiltIn() {
  const auto add = [&](std::string_view strName) -> TypeDraft& {
    TypeDraft& draft = draftOf(readers_.definitions.builtIn(strName));
    draft.progress = Progress::complete;
    return draft;
  };
  TypeDraft& any = add("anyType");
  readers_.store.anyType = any.type;
  any.type->blnComplex = true;
  any.type->derivedBy = kByRestriction;
  any.type->content = TypeDefinition::Content::mixed;
  any.type->attributeWildcard.emplace().process = Wildcard::Process::lax;
  Particle& wildcard = any.content.emplace().children.emplace_back();
  wildcard.term = Particle::Term::wildcard;
  wildcard.wildcard.process = Wildcard::Process::lax;
  wildcard.minOccurs = 0;
  wildcard.maxOccurs = Particle::kUnbounded;

  for (const auto& [strName, strBase] : SimpleType::builtIns()) {
    TypeDefinition& type = *add(strName).type;
    type.base = draftOf(readers_.definitions.builtIn(strBase)).type;
    type.content = TypeDefinition::Content::simple;
    type.simple = SimpleType::builtIn(strName);
    type.derivedBy = type.simple->variety() == SimpleType::Variety::list ? kByList : kByRestriction;
  }
}

const TypeDefinition* TypeReader::declaredAt(const SchemaElement& declaration) {
  const TypeDraft* draft = draftAt(declaration, "type");
  return draft ? draft->type : nullptr;
}

const SimpleType& TypeReader::simpleTypeAt(const SchemaElement& declaration) {
  TypeDraft* draft = draftAt(declaration, "type");
  if (!draft) return *SimpleType::builtIn("anySimpleType");
  complete(*draft);
  return simpleTypeOf(*draft, declaration);
}

void TypeReader::completeAll() {
  for (const Definition* definition : readers_.definitions.all(Symbol::type)) draftOf(*definition);
  // Reading one type adds those without a name that stand in it.
  for (std::size_t at = 0; at < drafts_.size(); ++at) complete(drafts_[at]);
  for (const Definition* definition : readers_.definitions.all(Symbol::type)) {
    readers_.store.typesByName[definition->name] = draftOf(*definition).type;
  }
}

void TypeReader::makeModels() {
  for (TypeDraft& draft : drafts_) {
    if (!draft.content) continue;
    allowance_.spend(substitutesIn(*draft.content), draft.source);
    draft.type->model = std::make_unique<const ContentModel>(std::move(*draft.content));
    draft.content.reset();
  }
}

TypeDraft& TypeReader::draftOf(const Definition& definition) {
  if (byDefinition_.size() <= definition.lngIndex) byDefinition_.resize(definition.lngIndex + 1);
  TypeDraft*& draft = byDefinition_[definition.lngIndex];
  if (!draft) draft = &addDraft(definition.name, SchemaElement(definition));
  return *draft;
}

TypeDraft& TypeReader::anonymous(const SchemaElement& source) { return addDraft(kNoName, source); }

TypeDraft& TypeReader::addDraft(NameId name, const SchemaElement& source) {
  TypeDraft& draft = drafts_.emplace_back();
  draft.type = &readers_.store.types.emplace_back();
  draft.type->name = name;
  draft.type->blnComplex = source && source.is("complexType");
  draft.source = source;
  return draft;
}

TypeDraft* TypeReader::draftAt(const SchemaElement& declaration, std::string_view strAttribute) {
  if (declaration.has(strAttribute)) {
    return &draftOf(readers_.definitions.referred(declaration, Symbol::type, strAttribute));
  }
  const SchemaElement inner = declaration.child({"simpleType", "complexType"});
  return inner ? &anonymous(inner) : nullptr;
}

void TypeReader::complete(TypeDraft& first) {
  completeInOrder(
      first, [this](TypeDraft& draft) { findNeeds(draft); },
      [this](TypeDraft& draft) {
        draft.type->blnComplex ? completeComplex(draft) : completeSimple(draft);
      });
}

void TypeReader::findNeeds(TypeDraft& draft) {
  if (draft.type->blnComplex) return findComplexNeeds(draft);
  const SchemaElement variety = draft.source.child({"restriction", "list", "union"});
  if (!variety) refuse(draft.source, "A simple type says nothing.");
  if (variety.is("union")) {
    for (const std::string_view strMember : variety.tokens("memberTypes")) {
      draft.needs.push_back(&draftOf(readers_.definitions.named(variety, Symbol::type, strMember)));
    }
    for (SchemaElement child = variety.child(); child; child = child.next()) {
      if (child.is("simpleType")) draft.needs.push_back(&anonymous(child));
    }
  } else {
    TypeDraft* need = draftAt(variety, variety.is("list") ? "itemType" : "base");
    if (!need) refuse(variety, "A simple type does not say what it comes from.");
    draft.needs.push_back(need);
  }
}

void TypeReader::completeSimple(TypeDraft& draft) {
  TypeDefinition& type = *draft.type;
  const SchemaElement variety = draft.source.child({"restriction", "list", "union"});
  type.content = TypeDefinition::Content::simple;
  if (variety.is("restriction")) {
    const TypeDraft& base = *draft.needs.front();
    type.base = base.type;
    type.derivedBy = kByRestriction;
    type.simple = & restrict(simpleTypeOf(base, variety), variety);
    return;
  }
  type.base = draftOf(readers_.definitions.builtIn("anySimpleType")).type;
  if (variety.is("list")) {
    type.derivedBy = kByList;
    type.simple = &keep(SimpleType::listOf(simpleTypeOf(*draft.needs.front(), variety)));
  } else {
    std::vector<const SimpleType*> members;
    for (const TypeDraft* need : draft.needs) members.push_back(&simpleTypeOf(*need, variety));
    type.derivedBy = kByUnion;
    type.simple = &keep(SimpleType::unionOf(std::move(members)));
  }
}

const SimpleType& TypeReader::restrict(const SimpleType& base, const SchemaElement& restriction) {
  std::vector<FacetDefinition> facets;
  for (SchemaElement child = restriction.child(); child; child = child.next()) {
    const std::optional<Facet> facet = facetNamed(child.node()->name->strLocal);
    if (facet) facets.push_back({*facet, std::string(child.attribute("value"))});
  }
  if (facets.empty()) return base;
  return keep(SimpleType::restriction(base, facets, restriction.prefixes()));
}

const SimpleType& TypeReader::keep(std::unique_ptr<const SimpleType> type) {
  return *readers_.store.simpleTypes.emplace_back(std::move(type));
}

ValueConstraint readValue(const SchemaElement& declaration, const SimpleType* type) {
  ValueConstraint value;
  if (declaration.has("default")) {
    value.kind = ValueConstraint::Kind::byDefault;
    value.strValue = declaration.attribute("default");
  } else if (declaration.has("fixed")) {
    value.kind = ValueConstraint::Kind::fixed;
    value.strValue = declaration.attribute("fixed");
    if (!type) return value;
    const PrefixLookup prefixes = declaration.prefixes();
    if (!type->check(value.strValue, prefixes, nullptr)) {
      refuse(declaration, "The fixed value '" + value.strValue + "' is none of its type.");
    }
    value.strKey = type->valueKey(value.strValue, prefixes);
  }
  return value;
}

}  // namespace Varnel_Tolv_XML_Creation
