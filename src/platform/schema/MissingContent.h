#pragma once

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/schema/MessageNames.h"
#include "platform/schema/Violation.h"
#include "platform/schema/component/Components.h"

namespace Varnel_Tolv_XML_Creation {

/// Finds what the content of an element lacks, for those who ask for the parts of violations.
///
/// A cursor that does not take a child, or may not end, is taken through the elements that it
/// expects, breadth first, until it does. The first way found is the shortest: what it took on the
/// way is what is missing, and the cursor goes on from there. Places from which the same elements
/// could follow count as one, so in nearly all models there are no more of them than particles.
/// Where no way is found the child is in the wrong place itself, and the cursor stays.
///
/// An element that was taken for missing may still come, behind the one that was too early. So what
/// is wrong with the order of children is told when their parent ends.
///
/// A search looks at no more than a hundred places, all searches of a message at no more than a
/// thousand; after that nothing is found any more, nor is it told what else was expected.
class MissingContent {
 public:
  explicit MissingContent(ViolationReporter& reporter, const NameTable& names)
      : reporter_(reporter), names_(names) {}

  /// The fewest elements behind which the content may end; none when they are not found.
  std::vector<const ElementDeclaration*> atEnd(const ContentCursor& cursor);

  /// The first child of an open element that may not stand where it stands. `lngDepth` tells open
  /// elements apart.
  void begin(std::size_t lngDepth, const ContentCursor& cursor, const MessageName& child,
             Violation violation);

  /// Another child of that element.
  void next(std::size_t lngDepth, const MessageName& child);

  /// The element ends.
  void end(std::size_t lngDepth);

  /// Tells what is still to be told of open elements, when no end of them will come.
  void flush();

 private:
  struct Gap {
    std::vector<const ElementDeclaration*> missing;
    ContentCursor behind;
  };

  /// An open element of which a child has been in a wrong place.
  struct Content {
    std::size_t lngDepth;
    ContentCursor cursor;
    std::vector<ViolationParts> violations;
    std::unordered_multimap<NameId, std::size_t> missing;  // and which of the violations told it
  };

  template <class Reached>
  std::optional<Gap> search(const ContentCursor& from, const Reached& reached);
  std::vector<const ElementDeclaration*> expectedBy(const ContentCursor& cursor) const;
  Content* contentAt(std::size_t lngDepth);
  void misplaced(Content& content, const MessageName& child, Violation violation);
  bool isLate(Content& content, const MessageName& child) const;
  void tell(Content& content);

  ViolationReporter& reporter_;
  const NameTable& names_;
  std::vector<Content> contents_;  // the outermost first
  std::size_t lngPlaces_ = 0;      // looked at so far
};

}  // namespace Varnel_Tolv_XML_Creation
