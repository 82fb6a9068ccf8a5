#pragma once

#include <libxslt/documents.h>
#include <libxslt/imports.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xsltutils.h>

/// Something in libxslt by its name. The library is loaded with the first of them: most commands
/// make no page, and would pay for the look-up of each of the 400 names that it needs of libxml2.
/// Raises CannotRun when it is not there.
class XsltName {
 public:
  explicit XsltName(const char* name) : name_(name) {}

  template <class Declared>
  explicit(false) operator Declared*() const {
    return reinterpret_cast<Declared*>(address());
  }

 private:
  void* address() const;

  const char* name_;
};

/// What is used of libxslt.
struct Xslt {
  decltype(&xsltInit) init = XsltName("xsltInit");
  decltype(&xsltSetGenericErrorFunc) setGenericErrorFunc = XsltName("xsltSetGenericErrorFunc");
  decltype(&xsltDocDefaultLoader) docDefaultLoader = XsltName("xsltDocDefaultLoader");
  decltype(&xsltSetLoaderFunc) setLoaderFunc = XsltName("xsltSetLoaderFunc");

  decltype(&xsltParseStylesheetDoc) parseStylesheetDoc = XsltName("xsltParseStylesheetDoc");
  decltype(&xsltNextImport) nextImport = XsltName("xsltNextImport");
  decltype(&xsltFreeStylesheet) freeStylesheet = XsltName("xsltFreeStylesheet");

  decltype(&xsltNewSecurityPrefs) newSecurityPrefs = XsltName("xsltNewSecurityPrefs");
  decltype(&xsltSetSecurityPrefs) setSecurityPrefs = XsltName("xsltSetSecurityPrefs");
  decltype(&xsltSetCtxtSecurityPrefs) setCtxtSecurityPrefs = XsltName("xsltSetCtxtSecurityPrefs");
  decltype(&xsltSecurityForbid) securityForbid = XsltName("xsltSecurityForbid");

  decltype(&xsltNewTransformContext) newTransformContext = XsltName("xsltNewTransformContext");
  decltype(&xsltFreeTransformContext) freeTransformContext = XsltName("xsltFreeTransformContext");
  decltype(&xsltApplyStylesheetUser) applyStylesheetUser = XsltName("xsltApplyStylesheetUser");
  decltype(&xsltSaveResultToString) saveResultToString = XsltName("xsltSaveResultToString");
};

/// The same for all threads.
const Xslt& xslt();
