#pragma once

#include <optional>
#include <string_view>

#include "platform/schema/component/SchemaDocuments.h"
#include "platform/schema/component/SchemaFailure.h"

namespace Varnel_Tolv_XML_Creation {

/// Reads the schema document at `strPath`, which must have this target namespace if one is given,
/// and every document that it includes, redefines or imports. All of them are files of this
/// machine, or schemas that the library holds itself (W3cSchemas.h). An import whose file does not
/// exist, or that names none, is looked up by its location and its namespace: in the catalog at
/// `strCatalog` (none when empty), in the catalog.xml beside the schema, among the library's own
/// schemas. One that is found nowhere is left to the compiler, which complains when something
/// refers to that namespace.
///
/// Raises kXmlFailure, naming the file: for one that is missing, is no schema, has another target
/// namespace, or includes what cannot be had; and for a catalog that cannot be read.
SchemaDocuments readSchemaDocuments(std::optional<std::string_view> strNamespaceUri,
                                    std::string_view strPath, std::string_view strCatalog);

/// Whether a node is this element of XML Schema.
bool isSchemaElement(const TreeNode* node, std::string_view strName);

/// The run-time error for a schema that cannot be had: a SchemaFailure. The reason stands at
/// `spot`; one without a path is the schema as a whole.
[[noreturn]] void refuseSchema(std::string_view strPath, std::string_view strReason,
                               SchemaSpot spot = {});

}  // namespace Varnel_Tolv_XML_Creation
