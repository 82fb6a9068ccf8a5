#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/schema/component/CompleteInOrder.h"
#include "platform/schema/component/ContentModel.h"
#include "platform/schema/component/Definitions.h"

namespace Varnel_Tolv_XML_Creation {

struct Readers;

/// A number of occurrences; one that is too large to count to is the largest that is not unbounded.
std::uint32_t occurrences(const SchemaElement& source, std::string_view strAttribute);

/// The model group that a definition or derivation states, or its reference to a named one.
SchemaElement modelGroupOf(const SchemaElement& body);

/// Reads the particles of content models. References to named groups are written out, and a
/// sequence within a sequence, or a choice within a choice, that occurs once is made part of it.
class ParticleReader {
 public:
  explicit ParticleReader(Readers& readers) : readers_(readers) {}

  /// Reads all named groups: what they declare is declared even where no type refers to them.
  void completeGroups();

  /// The content that a type states, or that its extension or restriction does; nothing when it is
  /// empty.
  std::optional<Particle> contentOf(const SchemaElement& body);

  /// Raises kXmlFailure when all copies come to too much, or when it nests deeper than kMaxDepth.
  Particle copyOf(const Particle& particle, const SchemaElement& at);

 private:
  struct GroupDraft {
    SchemaElement source;  // its all, choice or sequence
    Progress progress = Progress::untouched;
    std::vector<GroupDraft*> needs;
    Particle particle;
  };

  GroupDraft& draftOf(const Definition& definition);
  const Particle& complete(GroupDraft& first);
  void findNeeds(const SchemaElement& group, std::vector<GroupDraft*>& needs);

  void readGroup(const SchemaElement& source, Particle& group);
  void appendNamedGroup(const SchemaElement& reference, Particle& group);
  void appendGroup(const SchemaElement& source, Particle& parent);
  void appendTerm(const SchemaElement& source, Particle& parent);
  const Particle& named(const SchemaElement& reference);
  Particle::Term termOf(const SchemaElement& group);

  Readers& readers_;
  std::unordered_map<const Definition*, GroupDraft> groups_;
  Allowance allowance_;
};

}  // namespace Varnel_Tolv_XML_Creation
