#pragma once

#include <libxml/tree.h>

#include <cstdint>

#include "platform/xpath/LocationPath.h"

// What the steps of a location path ask of a node.

namespace Varnel_Tolv_XML_Creation {

/// Counts what an evaluation looks at, so that no expression keeps a thread for minutes.
class WorkLimit {
 public:
  /// Raises kXmlFailure when it is too much.
  void count() {
    if (--left_ == 0) exceeded();
  }

 private:
  [[noreturn]] static void exceeded();

  std::uint64_t left_ = 200'000'000;  // some seconds
};

bool hasName(const xmlNode* element, const NameTest& name);
bool hasName(const xmlAttr* attribute, const NameTest& name);

/// Whether all conditions of the list that starts at `first` hold for `element`.
bool holdAll(const LocationPath& path, ConditionIndex first, const xmlNode* element,
             WorkLimit& limit);

}  // namespace Varnel_Tolv_XML_Creation
