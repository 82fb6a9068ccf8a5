#include "platform/schema/component/Definitions.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/xml/NamespaceUris.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

struct Defining {
  std::string_view strElement;
  Symbol symbol;
  std::string_view strInMessages;
};

constexpr auto kDefining = std::to_array<Defining>({
    {"complexType", Symbol::type, "type"},
    {"simpleType", Symbol::type, "type"},
    {"element", Symbol::element, "element"},
    {"attribute", Symbol::attribute, "attribute"},
    {"group", Symbol::group, "group"},
    {"attributeGroup", Symbol::attributeGroup, "attribute group"},
});

const Defining* definingBy(const SchemaElement& element) {
  const auto found = std::find_if(kDefining.begin(), kDefining.end(),
                                  [&](const Defining& one) { return element.is(one.strElement); });
  return found == kDefining.end() ? nullptr : found;
}

std::string_view inMessages(Symbol symbol) {
  const auto found = std::find_if(kDefining.begin(), kDefining.end(),
                                  [=](const Defining& one) { return one.symbol == symbol; });
  return found->strInMessages;
}

/// Whether `at` says what the type that a definition redefines becomes.
bool derivesRedefined(const SchemaElement& at) {
  const TreeNode* node = at.definition().node;
  const TreeNode* parent = at.node()->parent;
  return parent == node || parent->parent == node;
}

}  // namespace

Definitions::Definitions(const SchemaDocuments& documents, NameTable& names) : names_(names) {
  // First, so that no document can give these names another meaning.
  add({Symbol::type, names_.intern(kSchemaUri, "anyType")}, false);
  for (const BuiltInType& type : SimpleType::builtIns()) {
    add({Symbol::type, names_.intern(kSchemaUri, type.strName)}, false);
  }
  for (const SchemaDocument& document : documents.documents) {
    SchemaPart& part = parts_.emplace_back(SchemaPart{&document});
    const TreeNode* node = document.root;
    const SchemaElement root(roots_.emplace_back(Definition{Symbol::type, kNoName, &part, node}));
    part.blnElementsQualified = root.token("elementFormDefault") == "qualified";
    part.blnAttributesQualified = root.token("attributeFormDefault") == "qualified";
    part.block = root.derivations("blockDefault", 0, ~0u);
    part.final = root.derivations("finalDefault", 0, ~0u);
    addChildren(root, false);
  }
  // A document stands before those that it redefines: the last redefinition is the innermost.
  for (auto root = roots_.rbegin(); root != roots_.rend(); ++root) {
    for (SchemaElement child = SchemaElement(*root).child(); child; child = child.next()) {
      if (child.is("redefine")) addChildren(child, true);
    }
  }
  for (const Definition& definition : definitions_) {
    const auto symbol = static_cast<std::size_t>(definition.symbol);
    const bool blnMeant = meanings_.at(symbol).find(definition.name) == &definition;
    if (blnMeant) all_.at(symbol).push_back(&definition);
  }
}

void Definitions::addChildren(const SchemaElement& parent, bool blnRedefined) {
  const SchemaPart& part = parent.part();
  for (SchemaElement child = parent.child(); child; child = child.next()) {
    const Defining* defining = definingBy(child);
    if (!defining) continue;
    const NameId name = names_.intern(part.document->strTargetNamespace, child.token("name"));
    add({defining->symbol, name, &part, child.node()}, blnRedefined);
  }
}

void Definitions::add(const Definition& definition, bool blnRedefined) {
  Definition& added = definitions_.emplace_back(definition);
  added.lngIndex = definitions_.size() - 1;
  const Definition*& meaning = meanings_.at(static_cast<std::size_t>(added.symbol))[added.name];
  if (blnRedefined) added.redefined = meaning;
  if (blnRedefined || !meaning) meaning = &added;
}

const Definition* Definitions::find(const SchemaElement& at, Symbol symbol,
                                    std::string_view strName) const {
  if (!at.namespaceOf(prefixOf(strName))) return nullptr;
  const SchemaElement::Name name = at.expand(strName);
  const NameId known = names_.find(name.strUri, name.strLocal);
  const Definition* meaning = meanings_.at(static_cast<std::size_t>(symbol)).find(known);
  // Within a redefinition its own name means what it redefines; of a type, only as its base.
  const Definition& owner = at.definition();
  const bool blnOriginal = meaning && owner.redefined && owner.symbol == symbol &&
                           owner.name == known && (symbol != Symbol::type || derivesRedefined(at));
  return blnOriginal ? owner.redefined : meaning;
}

const Definition& Definitions::named(const SchemaElement& at, Symbol symbol,
                                     std::string_view strName) const {
  if (const Definition* meaning = find(at, symbol, strName)) return *meaning;
  refuse(at, "It refers to the " + std::string(inMessages(symbol)) + " '" +
                 at.expand(strName).text() + "', which is not there.");
}

const Definition& Definitions::builtIn(std::string_view strName) const {
  return *meanings_.front().find(names_.find(kSchemaUri, strName));
}

const std::vector<const Definition*>& Definitions::all(Symbol symbol) const {
  return all_.at(static_cast<std::size_t>(symbol));
}

}  // namespace Varnel_Tolv_XML_Creation
