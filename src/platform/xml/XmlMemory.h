#pragma once

#include <libxml/xmlerror.h>

// libxml2 often goes on when it gets no memory, with a name, a text, a node of a result or the
// words of a report missing. It does raise an error about it, mostly where there is no one to hear.

namespace Varnel_Tolv_XML_Creation {

/// Hears what libxml2 raises on this thread outside of any parser or other context, for as long as
/// it lives; what the host has set to hear it is back afterwards. Watches may be nested. The
/// library is prepared for use.
class MemoryWatch {
 public:
  MemoryWatch() noexcept;
  ~MemoryWatch();
  MemoryWatch(const MemoryWatch&) = delete;
  MemoryWatch& operator=(const MemoryWatch&) = delete;

  /// Raises std::bad_alloc when libxml2 has wanted memory in vain since this watch began.
  void check() const;

 private:
  xmlStructuredErrorFunc handlerBefore_;
  void* contextBefore_;
  bool blnShortBefore_;
};

/// Tells the innermost watch of an error that was raised in a context.
void noteShortage(const xmlError& report) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
