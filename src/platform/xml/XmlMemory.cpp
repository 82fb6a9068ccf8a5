#include "platform/xml/XmlMemory.h"

#include <libxml/globals.h>

#include <new>

#include "platform/xml/XmlLibrary.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

thread_local bool blnShort = false;

/// To be asked before anything else of the library's state, which the first to look would set up.
xmlStructuredErrorFunc handlerInForce() {
  prepareXmlLibrary();
  return xmlStructuredError;
}

void onError(void* /*context*/, xmlError* report) { noteShortage(*report); }

}  // namespace

MemoryWatch::MemoryWatch() noexcept
    : handlerBefore_(handlerInForce()),
      contextBefore_(xmlStructuredErrorContext),
      blnShortBefore_(blnShort) {
  blnShort = false;
  xmlResetLastError();
  xmlSetStructuredErrorFunc(nullptr, onError);
}

MemoryWatch::~MemoryWatch() {
  xmlSetStructuredErrorFunc(contextBefore_, handlerBefore_);
  blnShort = blnShort || blnShortBefore_;
}

void MemoryWatch::check() const {
  // The last error tells of what was raised in a context that nobody asked.
  const xmlError* last = xmlGetLastError();
  if (blnShort || (last && last->code == XML_ERR_NO_MEMORY)) throw std::bad_alloc();
}

void noteShortage(const xmlError& report) noexcept {
  if (report.code == XML_ERR_NO_MEMORY) blnShort = true;
}

}  // namespace Varnel_Tolv_XML_Creation
