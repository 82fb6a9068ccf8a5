#pragma once

#include <string>
#include <string_view>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {

/// A schema type mapper that holds these `schematype` elements; its selections know the prefixes m
/// and pbr.
inline Document schemaTypes(std::string_view strTypes, const DocumentSettings& settings = {}) {
  const Document objXml =
      parsed("<SchemaTypeMapperDocument xmlns:m='urn:m' xmlns:pbr='urn:pbr'><schematypes>" +
                 std::string(strTypes) + "</schematypes></SchemaTypeMapperDocument>",
             settings);
  objXml.setSelectionNamespaces("xmlns:m='urn:m' xmlns:pbr='urn:pbr'");
  return objXml;
}

}  // namespace Varnel_Tolv_XML_Creation::test
