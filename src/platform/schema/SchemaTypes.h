#pragma once

#include <libxml/schemasInternals.h>

namespace Varnel_Tolv_XML_Creation {

// What the validator of this layer asks the library's compiled types. They are public structures
// without functions; nothing else reads their members.

/// Whether an element of this type may hold no element: it has a value, or nothing at all.
bool hasNoChildren(const xmlSchemaType* type) noexcept;
bool hasValue(const xmlSchemaType* type) noexcept;

/// The type of what no declaration covers: anything may stand in it.
const xmlSchemaType* anyType();

/// Whether the content is elements alone, so that white space between them means nothing.
bool hasElementsOnly(const xmlSchemaType* type) noexcept;

/// The model of the children, or null where there is none to be asked.
xmlRegexp* contentModel(const xmlSchemaType* type) noexcept;

/// Whether a wildcard leaves what it admits unchecked, and whether that must be declared.
bool skipsContents(const xmlSchemaWildcard* wildcard) noexcept;
bool isStrict(const xmlSchemaWildcard* wildcard) noexcept;

/// Whether a wildcard admits elements of a namespace, null for none.
bool admits(const xmlSchemaWildcard* wildcard, const xmlChar* uri) noexcept;

/// Whether white space around a value is not part of it. The library takes it for a part of dates,
/// times and whole numbers.
bool trimsValue(const xmlSchemaType* type) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
