#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/schema/component/Definitions.h"

namespace Varnel_Tolv_XML_Creation {

/// The content of a complex type that is much work for the library's compiler.
struct HeavyContent {
  /// What the compiler has to see in its place: one child that must be there, or may be; or, of an
  /// extension, no content at all, that of its base being as much as it needs to know.
  enum class Substitute : std::uint8_t { required, optional, none };

  std::size_t lngDocument = 0;
  const TreeNode* particle = nullptr;  // the model group, or the reference to a named one
  Substitute substitute = Substitute::required;
};

/// The content models that the compiler had better not see. It makes an automaton of each, in which
/// a state has a transition to every child that may come next, compares all transitions of a state
/// with one another and makes a table of all states by all names: for n optional elements in a row
/// the first is n cubed, for n elements of any kind the second n squared.
struct HeavyContents {
  /// Work out of all proportion: models that are large by themselves, and all but the smallest once
  /// those before them come to too much together.
  std::vector<HeavyContent> excessive;

  /// Work to no end: all that the compiler could find out about these, it being in order otherwise,
  /// is whether the model is ambiguous, and no two of their elements can have the same name.
  std::vector<HeavyContent> plain;
};

/// Raises kXmlFailure for what cannot be bounded in this way: definitions that come to more than
/// 100,000 elements and attributes once all that they refer to is written out (groups that refer
/// twice to groups that refer twice ...), and those that refer to one another in a chain of more
/// than 250, which the compiler follows by recursion. Circles are left to the compiler, which
/// refuses them.
HeavyContents heavyContents(const SchemaDocuments& documents, const Definitions& definitions);

}  // namespace Varnel_Tolv_XML_Creation
