#pragma once

#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <vector>

#include "ContentByDefinition.h"
#include "Items.h"

// Random schemas, messages for them, and what the reader has to report of these messages, taken
// from the definition and from nothing that the reader has: content models of sequences, choices,
// named groups and xs:all, one in another, counted up to 20, unbounded and plain.

namespace Varnel_Tolv_XML_Creation {

/// How many pairs a test makes unless told otherwise; each schema has ten messages.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr unsigned long kGeneratedPairs = 1'000;
#else
inline constexpr unsigned long kGeneratedPairs = 4'000;
#endif

class GeneratedSchema {
 public:
  /// The same schema for the same seed, everywhere.
  explicit GeneratedSchema(std::uint_fast32_t seed);

  const std::string& text() const { return strText_; }

  /// How many elements its largest content model has once every count is written out.
  std::size_t unrolled() const;

  /// Whether counts (other than optional and unbounded) stand on elements only, and on none of a
  /// group that may stand more than once.
  bool countsPlainly() const;

  /// A message with that many damages; its root is "m".
  Item message(std::mt19937& random, int lngDamages) const;

  /// The lines that a recorder without events must have of a message.
  std::vector<std::string> reports(const Item& message) const;

 private:
  class Maker;

  void fill(const ModelPart& particle, std::mt19937& random, std::vector<Item>& children) const;
  void damage(Item& message, std::mt19937& random) const;
  void report(const Item& item, std::size_t type, const std::string& strPath,
              std::vector<std::string>& lines) const;

  std::deque<ModelPart> models_;      // of the complex types; 1 is the root's, 0 of none
  std::vector<std::string> globals_;  // the names of the global elements, all of them numbers
  std::vector<std::string> numbers_;  // the names of all numbers
  std::string strText_;
};

}  // namespace Varnel_Tolv_XML_Creation
