#include "platform/xpath/LibraryMemory.h"

#include <libxml/xmlerror.h>
#include <libxml/xmlmemory.h>

#include <stdexcept>

namespace Varnel_Tolv_XML_Creation::test {

void useLibraryMemory(const LibraryMemory& memory) {
  if (xmlMemSetup(memory.release, memory.allocate, memory.reallocate, memory.duplicate) != 0) {
    throw std::logic_error("the XML library does not take this memory");
  }
}

void forgetLastLibraryError() { xmlResetLastError(); }

}  // namespace Varnel_Tolv_XML_Creation::test
