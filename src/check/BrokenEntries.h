#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "check/Findings.h"
#include "check/ParsedDeployment.h"
#include "check/PathTree.h"
#include "check/StepNames.h"

namespace Varnel_Tolv_XML_Creation {

/// The one entry that has a question and no object, where an object has the id of another: that of
/// this entry is probably meant. Null when there is none or more than one, and where no two objects
/// have one id.
const MappingEntry* entryOfMissingObject(const ParsedDeployment& deployment);

/// The entries of the mapping in which an error was found that keeps them from what they are for,
/// and what they were meant to do: which elements they should make, by what their questions say,
/// and the answers of which other objects they take along.
class BrokenEntries {
 public:
  BrokenEntries(const ParsedDeployment& deployment, const std::vector<Found>& findings);

  bool isEmpty() const noexcept { return entries_.empty() && objects_.empty(); }

  /// Whether one of them should make the elements with this path, or some in or around them.
  bool wereToMake(const StepNames& path) const;

  /// Whether one of them should take the answer to this object along.
  bool takeAlong(const std::string& strObject) const;

  /// How many names were compared until now.
  std::size_t work() const noexcept { return lngWork_; }

 private:
  void add(const MappingEntry& entry);
  StepNames addObject(const FormObject& object);
  void addWritten(const std::string& strParent, const std::string& strNode);
  void addNames(const MappingEntry& entry);
  void addCopies();
  std::set<std::string> namesToBeMadeAt(const StepNames& path) const;

  const ParsedDeployment& deployment_;
  std::unordered_set<const MappingEntry*> entries_;
  std::unordered_set<const FormObject*> objects_;
  PathTree places_;        // as the questions say
  PathTree writtenThere_;  // as entries do whose questions say nothing
  std::unordered_set<std::string> takenAlong_;
  std::vector<std::string> unknownNames_;  // which they take along, and no object has
  mutable std::size_t lngWork_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
