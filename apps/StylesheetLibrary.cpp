#include "StylesheetLibrary.h"

#include <dlfcn.h>

#include <string>

#include "CannotRun.h"

void* XsltName::address() const {
  void* const library = dlopen("libxslt.so.1", RTLD_NOW);  // once loaded it stays
  void* const address = library == nullptr ? nullptr : dlsym(library, name_);
  if (address == nullptr) throw CannotRun(std::string("no pages without libxslt: ") + dlerror());
  return address;
}

const Xslt& xslt() {
  static const Xslt library;
  return library;
}
