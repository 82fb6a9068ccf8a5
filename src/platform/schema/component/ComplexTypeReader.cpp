#include <iterator>
#include <utility>

#include "platform/schema/component/Readers.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Content = TypeDefinition::Content;

/// The extension or restriction that a complex type states; none when it restricts xs:anyType
/// without saying so.
SchemaElement derivationOf(const SchemaElement& complexType) {
  const SchemaElement content = complexType.child({"simpleContent", "complexContent"});
  return content ? content.child({"extension", "restriction"}) : content;
}

bool isMixed(const SchemaElement& complexType) {
  const SchemaElement content = complexType.child({"complexContent"});
  return content && content.has("mixed") ? content.flag("mixed") : complexType.flag("mixed");
}

bool isSequenceOnce(const Particle& particle) {
  return particle.term == Particle::Term::sequence && particle.minOccurs == 1 &&
         particle.maxOccurs == 1;
}

/// One behind the other in a sequence. A sequence that occurs once gives its members: a chain of
/// extensions becomes a long sequence, not a deep one.
Particle inSequence(Particle first, Particle second) {
  if (!isSequenceOnce(first)) {
    Particle sequence;
    sequence.children.push_back(std::move(first));
    first = std::move(sequence);
  }
  if (isSequenceOnce(second)) {
    std::move(second.children.begin(), second.children.end(), std::back_inserter(first.children));
  } else {
    first.children.push_back(std::move(second));
  }
  return first;
}

}  // namespace

void TypeReader::findComplexNeeds(TypeDraft& draft) {
  const SchemaElement derivation = derivationOf(draft.source);
  if (!derivation) {
    draft.needs.push_back(&draftOf(readers_.definitions.builtIn("anyType")));
    return;
  }
  draft.needs.push_back(&draftOf(readers_.definitions.referred(derivation, Symbol::type, "base")));
  const SchemaElement inner = derivation.child({"simpleType"});
  if (inner) draft.needs.push_back(&anonymous(inner));
}

void TypeReader::completeComplex(TypeDraft& draft) {
  const SchemaElement derivation = derivationOf(draft.source);
  const SchemaElement body = derivation ? derivation : draft.source;
  TypeDefinition& type = *draft.type;
  type.base = draft.needs.front()->type;
  type.derivedBy = body.is("extension") ? kByExtension : kByRestriction;
  type.blnAbstract = draft.source.flag("abstract");
  type.block =
      draft.source.derivations("block", draft.source.part().block, kByExtension | kByRestriction);
  readers_.attributes.complete(type, body);
  if (draft.source.child({"simpleContent"})) {
    readSimpleContent(draft, body);
  } else {
    readComplexContent(draft, body);
  }
}

void TypeReader::readSimpleContent(TypeDraft& draft, const SchemaElement& body) {
  // A restriction may state the simple type that it goes on from instead of its base's.
  const SimpleType* from = draft.needs.back()->type->simple;
  if (!from) refuse(body, "Simple content needs a simple type.");
  draft.type->content = Content::simple;
  draft.type->simple = body.is("restriction") ? & restrict(*from, body) : from;
}

void TypeReader::readComplexContent(TypeDraft& draft, const SchemaElement& body) {
  TypeDefinition& type = *draft.type;
  const TypeDraft& base = *draft.needs.front();
  const bool blnMixed = isMixed(draft.source);
  draft.content = readers_.particles.contentOf(body);
  if (blnMixed && !draft.content) draft.content.emplace();
  if (draft.content) type.content = blnMixed ? Content::mixed : Content::elementOnly;
  if (type.derivedBy != kByExtension) return;

  if (!draft.content) {
    type.content = base.type->content;
    type.simple = base.type->simple;
    if (base.content) draft.content = readers_.particles.copyOf(*base.content, body);
  } else if (base.content) {
    draft.content =
        inSequence(readers_.particles.copyOf(*base.content, body), std::move(*draft.content));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
