#include "platform/schema/component/IdentityReader.h"

#include "platform/schema/component/IdentityPaths.h"
#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {

std::vector<const IdentityConstraint*> IdentityReader::constraintsOf(const SchemaElement& element) {
  using Kind = IdentityConstraint::Kind;
  NameTable& names = readers_.store.names;
  std::vector<const IdentityConstraint*> constraints;
  for (SchemaElement source = element.child(); source; source = source.next()) {
    if (!source.isOneOf({"unique", "key", "keyref"})) continue;
    IdentityConstraint& constraint = readers_.store.constraints.emplace_back();
    constraint.kind = source.is("unique") ? Kind::unique
                      : source.is("key")  ? Kind::key
                                          : Kind::keyref;
    constraint.name =
        names.intern(source.part().document->strTargetNamespace, source.token("name"));
    for (SchemaElement child = source.child(); child; child = child.next()) {
      if (child.is("selector")) constraint.selector = readIdentityPaths(child, names);
      if (!child.is("field")) continue;
      constraint.fields.push_back(readIdentityPaths(child, names));
      constraint.fieldTexts.emplace_back(child.attribute("xpath"));
    }
    const IdentityConstraint*& named = byName_[constraint.name];
    if (!named) named = &constraint;
    if (constraint.kind == Kind::keyref) references_.push_back({&constraint, source});
    constraints.push_back(&constraint);
  }
  return constraints;
}

void IdentityReader::connect() {
  for (const Reference& reference : references_) {
    const SchemaElement::Name name = reference.source.expand(reference.source.token("refer"));
    const IdentityConstraint* key =
        byName_.find(readers_.store.names.find(name.strUri, name.strLocal));
    const bool blnKey = key && key->kind != IdentityConstraint::Kind::keyref &&
                        key->fields.size() == reference.keyref->fields.size();
    if (!blnKey) refuse(reference.source, "A keyref refers to no key: '" + name.text() + "'.");
    reference.keyref->refer = key;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
