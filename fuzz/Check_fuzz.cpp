#include <cstddef>
#include <cstdint>

#include "ExampleRun.h"

// The check of a deployment of which any number of files was changed.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Varnel_Tolv_XML_Creation::fuzz;
  checkExample(partsOf({reinterpret_cast<const char*>(data), size}));
  return 0;
}
