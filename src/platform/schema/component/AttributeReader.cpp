#include <utility>

#include "platform/schema/component/Readers.h"
#include "platform/schema/component/Wildcards.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// What stands in for the size of a value beside that of an attribute without one.
std::size_t partsOf(const ValueConstraint& value) {
  constexpr std::size_t kBytesOfOnePart = 64;
  return 1 + (value.strValue.size() + value.strKey.size()) / kBytesOfOnePart;
}

/// The wildcard of an extension: what its base admits, and what is stated beside.
std::optional<Wildcard> extended(const std::optional<Wildcard>& base,
                                 const std::optional<Wildcard>& own) {
  if (!base || !own) return own ? own : base;
  return unionOf(*own, *base);
}

/// What a type states takes the place of what it inherits under the same name.
void override(std::vector<AttributeUse>& inherited, std::vector<AttributeUse> own) {
  std::unordered_map<NameId, AttributeUse*> byName;
  for (AttributeUse& use : own) byName.emplace(use.declaration->name, &use);
  for (AttributeUse& use : inherited) {
    const auto found = byName.find(use.declaration->name);
    if (found != byName.end()) use = std::exchange(*found->second, {});
  }
  for (AttributeUse& use : own) {
    if (use.declaration) inherited.push_back(std::move(use));
  }
}

}  // namespace

void AttributeReader::declareGlobal() {
  for (const Definition* definition : readers_.definitions.all(Symbol::attribute)) {
    const SchemaElement source(*definition);
    AttributeDeclaration& declaration = declare(source, definition->name);
    declaration.value = readValue(source, declaration.type);
    readers_.store.attributesByName[declaration.name] = &declaration;
  }
}

void AttributeReader::complete(TypeDefinition& type, const SchemaElement& body) {
  AttributeSet own = read(body);
  spendOn(type.base->attributes, body);
  type.attributes = type.base->attributes;
  type.attributeWildcard = std::move(own.wildcard);
  if (type.derivedBy == kByExtension) {
    type.attributeWildcard = extended(type.base->attributeWildcard, type.attributeWildcard);
    if (type.attributeWildcard) allowance_.spend(type.attributeWildcard->uris.size(), body);
  } else {
    std::erase_if(type.attributes, [&](const AttributeUse& use) {
      return own.prohibited.contains(use.declaration->name);
    });
  }
  if (type.attributes.empty()) {
    type.attributes = std::move(own.uses);
  } else {
    override(type.attributes, std::move(own.uses));
  }
  type.indexAttributes();
}

AttributeReader::AttributeSet AttributeReader::read(const SchemaElement& body) {
  AttributeSet set;
  const SchemaElement any = body.child({"anyAttribute"});
  if (any) set.wildcard = readWildcard(any);
  for (SchemaElement child = body.child(); child; child = child.next()) {
    if (child.is("attribute")) readUse(child, set);
    if (child.is("attributeGroup")) {
      const AttributeSet& group = groupAt(child);
      spendOn(group.uses, child);
      set.uses.insert(set.uses.end(), group.uses.begin(), group.uses.end());
      if (!group.wildcard) continue;
      allowance_.spend(group.wildcard->uris.size(), child);
      set.wildcard = set.wildcard ? intersectionOf(*set.wildcard, *group.wildcard) : group.wildcard;
    }
  }
  return set;
}

void AttributeReader::readUse(const SchemaElement& source, AttributeSet& set) {
  AttributeUse use;
  const std::string_view strUse = source.token("use");
  if (strUse == "prohibited") {
    set.prohibited.insert(source.has("ref")
                              ? readers_.definitions.referred(source, Symbol::attribute, "ref").name
                              : localName(source));
    return;
  }
  use.blnRequired = strUse == "required";
  if (source.has("ref")) {
    const Definition& global = readers_.definitions.referred(source, Symbol::attribute, "ref");
    use.declaration = readers_.store.attributesByName.find(global.name);
  } else {
    use.declaration = &declare(source, localName(source));
  }
  use.value = readValue(source, use.declaration->type);
  if (use.value.kind == ValueConstraint::Kind::none) use.value = use.declaration->value;
  allowance_.spend(partsOf(use.value), source);
  set.uses.push_back(std::move(use));
}

NameId AttributeReader::localName(const SchemaElement& source) {
  return source.declaredName(source.part().blnAttributesQualified, readers_.store.names);
}

AttributeDeclaration& AttributeReader::declare(const SchemaElement& source, NameId name) {
  AttributeDeclaration& declaration = readers_.store.attributes.emplace_back();
  declaration.name = name;
  declaration.type = &readers_.types.simpleTypeAt(source);
  return declaration;
}

const AttributeReader::AttributeSet& AttributeReader::groupAt(const SchemaElement& reference) {
  GroupDraft& group = draftAt(reference);
  completeInOrder(
      group,
      [this](GroupDraft& draft) {
        for (SchemaElement child = draft.source.child(); child; child = child.next()) {
          if (child.is("attributeGroup")) draft.needs.push_back(&draftAt(child));
        }
      },
      [this](GroupDraft& draft) { draft.set = read(draft.source); });
  return group.set;
}

AttributeReader::GroupDraft& AttributeReader::draftAt(const SchemaElement& reference) {
  const Definition& definition =
      readers_.definitions.referred(reference, Symbol::attributeGroup, "ref");
  GroupDraft& draft = groups_[&definition];
  draft.source = SchemaElement(definition);
  return draft;
}

void AttributeReader::spendOn(const std::vector<AttributeUse>& uses, const SchemaElement& at) {
  for (const AttributeUse& use : uses) allowance_.spend(partsOf(use.value), at);
}

}  // namespace Varnel_Tolv_XML_Creation
