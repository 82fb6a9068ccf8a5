#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

// What a content model admits, as XML Schema defines it ("Element Sequence Locally Valid
// (ModelPart)"): a sequence of children is admitted when it can be parted among the particles in
// some way. The reader may rely on a model being deterministic; this does not.

namespace Varnel_Tolv_XML_Creation {

/// A term of a content model with how often it may stand.
struct ModelPart {
  enum class Kind : std::uint8_t { element, sequence, choice, all };
  Kind kind = Kind::element;
  int lngMin = 1;
  int lngMax = 1;        // kUnbounded: any number
  std::string strName;   // of an element; of a group, when the term is written as one
  std::size_t type = 0;  // of an element: the number of its complex type, 0 for a simple one
  std::vector<ModelPart> parts;
};
inline constexpr int kUnbounded = -1;

/// Follows the children of one element. By partial derivatives: a state is the list of particles
/// that are still to come, and all states that the children so far can have led to are kept. That
/// costs up to the product of nested counts for a child, which the tests can afford.
class ContentByDefinition {
 public:
  explicit ContentByDefinition(const ModelPart& model);

  /// Takes the next child if it may stand there.
  bool take(const std::string& strName);

  /// Whether the element may end here.
  bool isComplete() const;

  /// What may stand next, in the order of the model, each name once.
  std::vector<std::string> next() const;

 private:
  /// A particle, or what is left of one.
  struct Rest {
    const ModelPart* particle;
    int lngMin;
    int lngMax;
    unsigned taken;  // of the children of xs:all: a set of bits, with one more when it has begun
    auto operator<=>(const Rest&) const = default;
  };
  using State = std::vector<Rest>;  // the next one last

  static Rest whole(const ModelPart& particle);
  static bool isNullable(const Rest& rest);
  static bool isTermNullable(const ModelPart& particle, unsigned taken);
  static void derive(const Rest& rest, const std::string& strName, std::vector<State>& into);
  static void deriveTerm(const Rest& rest, const std::string& strName, std::vector<State>& into);
  static void collectFirst(const Rest& rest, std::set<std::string>& names);

  const ModelPart& model_;
  std::set<State> states_;
};

}  // namespace Varnel_Tolv_XML_Creation
