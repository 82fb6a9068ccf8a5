#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>

#include "../../result/Export.h"

namespace Varnel_Tolv_XML_Creation {

class ChunkPool;

/// What was made of the files of deployments, so that the next run need not read them again: parsed
/// documents with their indexes, and compiled schemas. A host makes one and gives
/// it to all its instances (`HostServices::cache`); any number of threads may use it.
///
/// Whatever is taken from it was made of the files as they are: at each use path, device, inode,
/// size and times are compared, so a file that was changed, replaced or touched is seen by the next
/// load of it. What is kept never changes. When it would take more than `lngMaxBytes`, what was not
/// used for the longest time goes; a run that still uses it does so to its end. Beside that it
/// keeps memory of documents of ended runs for those of the next: a sixteenth of `lngMaxBytes` at
/// most.
class VARNEL_EXPORT FileCache {
 public:
  static constexpr std::size_t kDefaultMaxBytes = std::size_t{256} << 20;

  explicit FileCache(std::size_t lngMaxBytes = kDefaultMaxBytes);
  ~FileCache();
  FileCache(const FileCache&) = delete;
  FileCache& operator=(const FileCache&) = delete;

  /// What it holds, as far as it accounts for it: an estimate by the sizes of the files.
  std::size_t bytes() const;

  struct Made;

  /// What was made under this name, or what `make` makes. Of two threads that find nothing both
  /// make it. For the library: the name must tell what type of value it is.
  std::shared_ptr<const void> get(std::string_view strName, const std::function<Made()>& make);

  /// For the library: the memory of documents that went, for those to come.
  const std::shared_ptr<ChunkPool>& chunkPool() const noexcept;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace Varnel_Tolv_XML_Creation
