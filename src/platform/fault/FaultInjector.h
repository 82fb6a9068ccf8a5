#pragma once

// The seam at which a test makes the document services fail. A real document hardly ever refuses
// a clone or runs out of memory; whoever relies on this library wants to know what happens then.
// In production no injector is set and each operation costs one test of a pointer.

namespace Varnel_Tolv_XML_Creation {

/// The operations on documents, nodes and lists in texts that can be made to fail.
enum class DomOperation {
  createDocument,
  load,
  getSelectionNamespaces,
  setSelectionNamespaces,
  documentElement,
  select,  // selectNodes and selectSingleNode
  getElementsByTagName,
  childNodes,
  createElement,
  createNode,
  cloneNode,
  appendChild,
  insertBefore,
  removeChild,
  getAttribute,
  setAttribute,
  removeAttribute,
  readText,
  writeText,
  serialise,
  parseError,  // for `nothing` it tells of a failure that did not happen
  split,       // of a text that is a list
  createReader,
  createValidator,
  addSchema,
  parse,
};

/// How an operation fails.
enum class Fault {
  none,         // it does not
  nothing,      // it gives Nothing, no list, False or the empty text and changes nothing; an
                // operation without a result fails as for `error`
  error,        // RuntimeError kXmlFailure, "Injected failure"
  outOfMemory,  // std::bad_alloc
};

class FaultInjector {
 public:
  virtual ~FaultInjector() = default;

  /// Asked before each operation on a document that was created with this injector.
  virtual Fault next(DomOperation operation) = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
