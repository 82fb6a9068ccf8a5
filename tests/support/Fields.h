#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "message/ProcessProtocolField.h"
#include "result/ServiceEnums.h"
#include "support/Messages.h"

namespace Varnel_Tolv_XML_Creation::test {

/// A field of a parked form. A second attribute of one name is not allowed, so what `strMore` gives
/// must not be among the first four.
inline std::string field(std::string_view strId, std::string_view strValue,
                         std::string_view strMore = "dynamic='false'") {
  return "<prtobjct objecttype='field' id=\"" + std::string(strId) + "\" value=\"" +
         std::string(strValue) + "\" " + std::string(strMore) + "/>";
}

inline constexpr std::string_view kPlace = "<parentxpath>/r</parentxpath><node>m:a</node>";

/// The mapping entry of the object `q`.
inline std::string entry(std::string_view strAttributes, std::string_view strChildren = kPlace) {
  return "<messageitem id='q' " + std::string(strAttributes) + ">" + std::string(strChildren) +
         "</messageitem>";
}

/// An entry of `q` that is sent, with a place, extra elements and an `item` of its `node`.
inline std::string sentEntry(std::string_view strChildren = kPlace) {
  return entry("toschema='true'", strChildren);
}

/// A place at which no element can be made, what is told of it and what is left of the message.
struct ImpossiblePlace {
  const char *says, *place;
  std::int32_t lngErrorCode;
  const char *detail, *left;
};
inline constexpr ImpossiblePlace kImpossiblePlaces[] = {
    {"no parent", "<parentxpath>/none</parentxpath><node>m:a</node>",
     SVC_RET_XML_CREATION_PARENT_NODE_MISSING,
     "Unable to select the parent xpath from the message template xml. - Context=buildXPath", ""},
    {"no node path", "<parentxpath>/r</parentxpath>", SVC_RET_XML_CREATION_NODE_PATH_MISSING,
     "No node path supplied to buildXPath. - Context=buildXPath", ""},
    {"an unknown prefix: its element stays, empty and without the question",
     "<parentxpath>/r</parentxpath><node>x:a</node>",
     SVC_RET_XML_CREATION_SCHEMA_REFERENCE_XML_NODE_MISSING,
     "The schema reference information for schema id=x could not be selected. "
     "Context:getSchemaReference",
     "<x:a/>"},
};

/// A field on its way from the parked form into the message.
class FieldStory {
 public:
  TestHost host;
  Session session = withNamespaces(host);
  Document objSendXML = message("");
  Document objParkXML;
  Document objObjectMapper;
  Document objSchemaTypeMapper = parsed("<SchemaTypeMapperDocument/>");

  FieldStory(std::string_view strObjects, std::string_view strEntries,
             std::string_view strMessage = "") {
    objSendXML = message(strMessage);
    objParkXML = parsed("<prtobjcts>" + std::string(strObjects) + "</prtobjcts>");
    objObjectMapper = mapper(strEntries);
  }

  /// As a run has it; one that may change is not compiled.
  static Document mapper(std::string_view strEntries, bool blnReadOnly = true) {
    return parsed("<message>" + std::string(strEntries) + "</message>",
                  {.blnReadOnly = blnReadOnly});
  }

  /// The content of `schematypes`.
  void types(std::string_view strTypes) {
    objSchemaTypeMapper =
        parsed("<SchemaTypeMapperDocument xmlns:m='urn:m'><schematypes>" + std::string(strTypes) +
               "</schematypes></SchemaTypeMapperDocument>");
  }

  /// Carries the object at this position, counted from 0, into the message.
  Acknowledge process(std::size_t lngObject = 0) {
    return ProcessProtocolField(session, objSendXML,
                                objParkXML.documentElement().childNodes()->item(lngObject),
                                objObjectMapper, objSchemaTypeMapper, objParkXML);
  }

  std::string sent() const { return content(objSendXML); }
};

}  // namespace Varnel_Tolv_XML_Creation::test
