#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/schema/component/Readers.h"
#include "platform/schema/component/Wildcards.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using Term = Particle::Term;

/// Gives a particle its occurrences; whether there may be any.
bool readOccurrences(const SchemaElement& source, Particle& particle) {
  particle.maxOccurs = occurrences(source, "maxOccurs");
  particle.minOccurs = std::min(occurrences(source, "minOccurs"), particle.maxOccurs);
  return particle.maxOccurs != 0;
}

struct Extent {
  std::size_t lngParts = 1;  // particles, and namespaces that their wildcards list
  int depth = 1;
};

Extent extentOf(const Particle& particle) {
  Extent extent{1 + particle.wildcard.uris.size()};
  for (const Particle& child : particle.children) {
    const Extent inner = extentOf(child);
    extent.lngParts += inner.lngParts;
    extent.depth = std::max(extent.depth, inner.depth + 1);
  }
  return extent;
}

}  // namespace

std::uint32_t occurrences(const SchemaElement& source, std::string_view strAttribute) {
  const std::string_view strNumber = source.token(strAttribute);
  if (strNumber.empty()) return 1;
  if (strNumber == "unbounded") return Particle::kUnbounded;
  std::uint64_t lngNumber = 0;
  for (const char digit : strNumber) {
    if (digit < '0' || digit > '9') continue;  // a sign
    lngNumber = lngNumber * 10 + static_cast<std::uint64_t>(digit - '0');
    lngNumber = std::min<std::uint64_t>(lngNumber, Particle::kUnbounded - 1);
  }
  return static_cast<std::uint32_t>(lngNumber);
}

SchemaElement modelGroupOf(const SchemaElement& body) {
  return body.child({"group", "all", "choice", "sequence"});
}

void ParticleReader::completeGroups() {
  for (const Definition* group : readers_.definitions.all(Symbol::group)) {
    complete(draftOf(*group));
  }
}

std::optional<Particle> ParticleReader::contentOf(const SchemaElement& body) {
  const SchemaElement source = modelGroupOf(body);
  if (!source) return std::nullopt;
  Particle content;
  if (!readOccurrences(source, content)) return std::nullopt;
  readGroup(source, content);
  // A choice of nothing that has to occur is not empty: nothing at all satisfies it. Nor is what
  // states only children that never occur: there may be white space in it.
  const bool blnEmpty = !source.is("group") &&
                        !source.child({"element", "any", "group", "choice", "sequence"}) &&
                        (content.term != Term::choice || content.minOccurs == 0);
  if (blnEmpty) return std::nullopt;
  return content;
}

Particle ParticleReader::copyOf(const Particle& particle, const SchemaElement& at) {
  const Extent extent = extentOf(particle);
  allowance_.spend(extent.lngParts, at);
  if (extent.depth > kMaxDepth) refuse(at, "Its groups nest too deeply.");
  return particle;
}

ParticleReader::GroupDraft& ParticleReader::draftOf(const Definition& definition) {
  const auto [draft, blnNew] = groups_.try_emplace(&definition);
  if (blnNew) draft->second.source = modelGroupOf(SchemaElement(definition));
  if (!draft->second.source) refuse(SchemaElement(definition), "A group says nothing.");
  return draft->second;
}

const Particle& ParticleReader::complete(GroupDraft& first) {
  completeInOrder(
      first, [this](GroupDraft& draft) { findNeeds(draft.source, draft.needs); },
      [this](GroupDraft& draft) { readGroup(draft.source, draft.particle); });
  return first.particle;
}

void ParticleReader::findNeeds(const SchemaElement& group, std::vector<GroupDraft*>& needs) {
  for (SchemaElement child = group.child(); child; child = child.next()) {
    if (child.is("group")) {
      needs.push_back(&draftOf(readers_.definitions.referred(child, Symbol::group, "ref")));
    } else if (child.isOneOf({"choice", "sequence"})) {
      findNeeds(child, needs);
    }
  }
}

void ParticleReader::readGroup(const SchemaElement& source, Particle& group) {
  if (source.is("group")) return appendNamedGroup(source, group);
  group.term = termOf(source);
  for (SchemaElement child = source.child(); child; child = child.next()) {
    if (child.isOneOf({"element", "any"})) {
      appendTerm(child, group);
    } else if (child.isOneOf({"group", "choice", "sequence", "all"})) {
      appendGroup(child, group);
    }
  }
}

void ParticleReader::appendNamedGroup(const SchemaElement& reference, Particle& group) {
  Particle copied = copyOf(named(reference), reference);
  group.term = copied.term;
  std::move(copied.children.begin(), copied.children.end(), std::back_inserter(group.children));
}

void ParticleReader::appendGroup(const SchemaElement& source, Particle& parent) {
  Particle& group = parent.children.emplace_back();
  if (!readOccurrences(source, group)) return parent.children.pop_back();
  allowance_.spend(1, source);
  const Term term = termOf(source);
  const bool blnPart = group.minOccurs == 1 && group.maxOccurs == 1 && term == parent.term;
  if (!blnPart) return readGroup(source, group);
  parent.children.pop_back();
  const std::size_t lngBefore = parent.children.size();
  readGroup(source, parent);
  // A group of nothing is not nothing: content that has one is not empty.
  if (parent.children.size() == lngBefore) parent.children.emplace_back().term = term;
}

void ParticleReader::appendTerm(const SchemaElement& source, Particle& parent) {
  Particle particle;
  if (!readOccurrences(source, particle)) return;
  if (source.is("element")) {
    particle.term = Term::element;
    particle.element = &readers_.elements.declaredAt(source);
  } else {
    particle.term = Term::wildcard;
    particle.wildcard = readWildcard(source);
  }
  allowance_.spend(1 + particle.wildcard.uris.size(), source);
  parent.children.push_back(std::move(particle));
}

const Particle& ParticleReader::named(const SchemaElement& reference) {
  return complete(draftOf(readers_.definitions.referred(reference, Symbol::group, "ref")));
}

Particle::Term ParticleReader::termOf(const SchemaElement& group) {
  if (group.is("group")) return named(group).term;
  if (group.is("all")) return Term::all;
  return group.is("choice") ? Term::choice : Term::sequence;
}

}  // namespace Varnel_Tolv_XML_Creation
