#pragma once

#include <libxml/schemasInternals.h>

#include <cstdint>
#include <optional>

#include "platform/schema/CompiledSchema.h"
#include "platform/schema/ContentPaths.h"
#include "platform/schema/ContentRun.h"

namespace Varnel_Tolv_XML_Creation {

/// What the repair of one document has cost so far. What would cost more is left undone, so that a
/// document full of errors is read in bounded time.
class RepairCosts {
 public:
  bool mayPlug() { return ++lngPlugs_ <= 10'000; }
  bool mayFeed(std::size_t lngCost) {
    return (lngFed_ += static_cast<std::int64_t>(lngCost)) <= 3'000'000;
  }
  bool mayRestore(std::size_t lngChildren) {
    return (lngRestored_ += static_cast<std::int64_t>(lngChildren)) <= 5'000'000;
  }

 private:
  std::int64_t lngPlugs_ = 0;     // validators besides the first
  std::int64_t lngFed_ = 0;       // elements made up for a validator
  std::int64_t lngRestored_ = 0;  // children that a model was told once more
};

/// The children that one validator has been given of one parent, as its content model sees them.
/// Unlike a bare run it survives a refusal.
class ContentTrack {
 public:
  /// The model is one of the schema's; where that counts occurrences it does not tell all it
  /// allows.
  ContentTrack(xmlRegexp* model, RepairCosts& costs, const CompiledSchema& schema);

  /// What the model has for the next child, null when it does not allow it here. `blnLookFirst`: it
  /// is rather not to be expected, so it is looked up before it is tried. What a schema declares
  /// for one place only is not taken for what a strict wildcard may stand for.
  const xmlSchemaElement* accept(const xmlChar* local, const xmlChar* uri, bool blnLookFirst);

  /// Accepts these too, but for spare ones that there is no more room for, and tells which it took.
  /// When it does not accept the others, it is lost, and that is nothing.
  std::optional<ContentPaths::Way> advance(const ContentPaths::Way& way);

  /// Whether it is not known any more where the children stand. It then accepts nothing.
  bool lost() const noexcept { return blnLost_; }

  NextElements next() const { return blnLost_ ? NextElements() : run_.next(); }
  const ContentPaths::Stand& stand() const noexcept { return stand_; }

 private:
  bool isWorthTrying(const xmlChar* local, const xmlChar* uri) const;
  bool isMeant(const xmlChar* local, const xmlChar* uri, const xmlSchemaElement* matched) const;
  void restore();

  ContentRun run_;
  ContentPaths::Stand stand_;
  RepairCosts& costs_;
  const CompiledSchema& schema_;
  bool blnLost_ = false;
  std::size_t lngRestored_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
