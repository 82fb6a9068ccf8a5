#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr unsigned kElementBlocks = kByExtension | kByRestriction | kBySubstitution;

/// The way from a type up to those that it derives from, and what was met on it.
struct Ascent {
  const TypeDefinition* const from;
  Allowance& allowance;
  const TypeDefinition* at = from;
  unsigned methods = 0;  // by which `from` derives from `at`
  unsigned blocked = 0;  // by the types between them

  /// Goes on to `type`; false when `from` does not derive from it.
  bool reach(const TypeDefinition* type, const SchemaElement& source) {
    while (at && at != type) {
      allowance.spend(1, source);
      if (at != from) blocked |= at->block;
      methods |= at->derivedBy;
      at = at->base;
    }
    return at;
  }
};

}  // namespace

void ElementReader::declareGlobal() {
  for (const Definition* definition : readers_.definitions.all(Symbol::element)) {
    const SchemaElement source(*definition);
    ElementDeclaration& element = declare(source, definition->name);
    element.blnAbstract = source.flag("abstract");
    GlobalDraft& draft = globals_.emplace_back(GlobalDraft{&element, source});
    globalsByName_[element.name] = &draft;
    readers_.store.elementsByName[element.name] = &element;
    readers_.store.globalElements.push_back(&element);
  }
}

const ElementDeclaration& ElementReader::declaredAt(const SchemaElement& source) {
  if (source.has("ref")) {
    const Definition& global = readers_.definitions.referred(source, Symbol::element, "ref");
    return *globalsByName_.find(global.name)->element;
  }
  ElementDeclaration& element = declare(
      source, source.declaredName(source.part().blnElementsQualified, readers_.store.names));
  if (!element.type) element.type = readers_.store.anyType;
  return element;
}

void ElementReader::completeAll() {
  for (GlobalDraft& global : globals_) {
    completeInOrder(
        global, [this](GlobalDraft& draft) { findHead(draft); },
        [this](GlobalDraft& draft) { completeGlobal(draft); });
  }
  for (const ValuedElement& valued : valued_) {
    valued.element->value = readValue(valued.source, valued.element->type->simple);
  }
  for (const GlobalDraft& global : globals_) substitute(global);
}

ElementDeclaration& ElementReader::declare(const SchemaElement& source, NameId name) {
  ElementDeclaration& element = readers_.store.elements.emplace_back();
  element.name = name;
  element.type = readers_.types.declaredAt(source);
  element.blnNillable = source.flag("nillable");
  element.block = source.derivations("block", source.part().block, kElementBlocks);
  element.constraints = readers_.identities.constraintsOf(source);
  if (source.has("default") || source.has("fixed")) valued_.push_back({&element, source});
  readers_.store.declared[name] = 1;
  return element;
}

void ElementReader::findHead(GlobalDraft& draft) {
  if (!draft.source.has("substitutionGroup")) return;
  const Definition& head =
      readers_.definitions.referred(draft.source, Symbol::element, "substitutionGroup");
  draft.needs.push_back(globalsByName_.find(head.name));
}

void ElementReader::completeGlobal(GlobalDraft& draft) {
  ElementDeclaration& element = *draft.element;
  if (draft.needs.empty()) {
    if (!element.type) element.type = readers_.store.anyType;
    return;
  }
  draft.head = draft.needs.front();
  const ElementDeclaration& head = *draft.head->element;
  if (!element.type) element.type = head.type;
  const SchemaElement& source = draft.head->source;
  const unsigned final =
      source.derivations("final", source.part().final, kByExtension | kByRestriction);
  if (final == 0) return;
  Ascent ascent{element.type, allowance_};
  if (!ascent.reach(head.type, draft.source) || (ascent.methods & final) != 0) draft.head = nullptr;
}

/// Adds an element to the groups of all heads above it that let it stand in their place. Member by
/// member, so that each group comes out in the order of the schema. Each member climbs the chain of
/// its types once, beside that of its heads; both kinds of steps count against the allowance, since
/// all groups together can be as large as the square of the schema.
void ElementReader::substitute(const GlobalDraft& member) {
  Ascent ascent{member.element->type, allowance_};
  for (const GlobalDraft* global = member.head; global; global = global->head) {
    ElementDeclaration& head = *global->element;
    allowance_.spend(1, member.source);
    if (!ascent.reach(head.type, member.source)) return;
    const unsigned blocked = head.block | head.type->block | ascent.blocked;
    if (((ascent.methods | kBySubstitution) & blocked) == 0) {
      head.substitutes.push_back(member.element);
    }
  }
}

}  // namespace Varnel_Tolv_XML_Creation
