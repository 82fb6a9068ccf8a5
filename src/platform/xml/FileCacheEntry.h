#pragma once

#include <cstddef>
#include <memory>

#include "platform/xml/FileCache.h"
#include "platform/xml/FilesRead.h"

namespace Varnel_Tolv_XML_Creation {

/// Something that may be kept.
struct FileCache::Made {
  std::shared_ptr<const void> value;  // null: nothing could be made, so nothing is kept
  FilesRead files;                    // what it was made of
  std::size_t lngBytes = 0;           // the memory that it takes, about
};

}  // namespace Varnel_Tolv_XML_Creation
