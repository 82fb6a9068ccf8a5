#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/component/Names.h"

namespace Varnel_Tolv_XML_Creation {

struct ElementDeclaration;
struct LeafList;

/// What a wildcard for elements or attributes lets pass, and how that is then checked.
struct Wildcard {
  enum class Process : std::uint8_t { strict, lax, skip };
  bool blnOthers = true;          // all but those of the list, else those
  std::vector<std::string> uris;  // empty text: no namespace
  Process process = Process::strict;

  bool admits(std::string_view strUri) const noexcept;
};

/// A particle of a content model while the schema is read: a term and how often it may occur.
struct Particle {
  enum class Term : std::uint8_t { element, wildcard, sequence, choice, all };
  static constexpr std::uint32_t kUnbounded = std::numeric_limits<std::uint32_t>::max();

  static constexpr bool isGroup(Term term) noexcept {
    return term != Term::element && term != Term::wildcard;
  }

  Term term = Term::sequence;
  std::uint32_t minOccurs = 1;
  std::uint32_t maxOccurs = 1;
  const ElementDeclaration* element = nullptr;
  Wildcard wildcard;
  std::vector<Particle> children;  // of a group
};

/// What a child was found to be in a content model: nothing, an element (of a substitution group:
/// the member that was named, not its head), or what a wildcard admits.
struct ContentMatch {
  const ElementDeclaration* element = nullptr;
  const Wildcard* wildcard = nullptr;
  explicit operator bool() const noexcept { return element || wildcard; }
};

class ContentCursor;

/// The content model of a complex type: which children may stand where. Its size is that of the
/// schema's text (named groups written out), whatever the numbers of occurrences.
///
/// The declarations that its particles name must be complete (their substitution groups known)
/// before it is made, and outlive it.
class ContentModel {
 public:
  explicit ContentModel(Particle content);
  ~ContentModel();
  ContentModel(const ContentModel&) = delete;
  ContentModel& operator=(const ContentModel&) = delete;

  /// Whether no child at all is enough.
  bool emptiable() const noexcept;

  /// Whether there is a wildcard anywhere in it.
  bool hasWildcards() const noexcept;

  /// What a child of this name is anywhere in the model, if it may stand in it at all: an element
  /// declaration, or else a wildcard. All elements of one name in a model have one type.
  ContentMatch find(NameId name, std::string_view strUri) const noexcept;

  /// The particle that it was made from.
  const Particle& particle() const noexcept;

 private:
  friend class ContentCursor;
  struct Impl;
  std::unique_ptr<const Impl> impl_;
};

/// The words of a way (ContentSteps.h): the leaf that took the last child, 0 for none yet, then the
/// state of the path that leads there.
using WayWord = std::uint64_t;

/// Where among its children the reading of one element stands. It keeps every way in which the
/// children so far can be attributed to occurrences (one, in nearly all schemas), so a verdict is
/// exact whatever the numbers, and costs per child no more than the depth of the model.
class ContentCursor {
 public:
  explicit ContentCursor(const ContentModel& model);  // borrowed

  /// Takes the next child if it may stand here. If not, nothing changes. An abstract element is
  /// taken where it is declared; that none may stand there is for the caller to tell.
  ContentMatch accept(NameId name, std::string_view strUri);

  /// Whether the element may end here.
  bool complete() const noexcept;

  /// The elements that could stand here, in the order of the model, each once, the members of
  /// substitution groups behind their heads (an abstract head is none); no more than `lngMost` of
  /// them. Wildcards have no name.
  std::vector<const ElementDeclaration*> expected(
      std::size_t lngMost = std::numeric_limits<std::size_t>::max()) const;

  /// How many ways of attributing the children so far it keeps: what the next child costs, so that
  /// tests can hold it to a bound.
  std::size_t ways() const noexcept { return ways_.size() / lngStride_; }

 private:
  // A step from a way: to a leaf, into the occurrence of a group (`turn`) that it is in already, or
  // into a new one.
  struct Step {
    std::size_t lngFrom;  // the way
    std::uint32_t leaf;
    std::uint32_t turn;
    bool blnNewOccurrence;
  };

  const WayWord* way(std::size_t lngWay) const noexcept {
    return ways_.data() + lngWay * lngStride_;
  }
  bool isSingle() const noexcept { return ways_.size() == lngStride_; }
  std::uint32_t plainStep(WayWord* way, LeafList list) const noexcept;
  template <class Fits>
  bool collect(LeafList list, const Fits& fits);
  void take();
  void advance(WayWord* way, const Step& step) const noexcept;
  void weighLast(std::size_t lngFirst);

  const ContentModel::Impl* model_;
  std::size_t lngStride_;  // words of a way
  std::vector<WayWord> ways_;
  std::vector<WayWord> next_;  // kept for their memory, as `steps_`
  std::vector<Step> steps_;
  bool blnLost_ = false;
};

}  // namespace Varnel_Tolv_XML_Creation
