#include "GeneratedDeployment.h"

#include <stdlib.h>

#include <fstream>
#include <stdexcept>

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

std::string number(int lngNumber) { return std::to_string(lngNumber); }

std::string messageItem(const std::string& strId, const std::string& strType,
                        const std::string& strParent, const std::string& strNode,
                        const std::string& strAction) {
  return "<messageitem id='" + strId + "' type='" + strType + "' toschema='true'><parentxpath>" +
         strParent + "</parentxpath><node>" + strNode + "</node>" + strAction + "</messageitem>";
}

constexpr const char* kNamespaces =
    "<namespaces><namespace id='m' name='urn:bench:message' ref='urn:bench:message'/>"
    "<namespace id='pbr' name='urn:bench:record' ref='urn:bench:record'/></namespaces>";

constexpr const char* kTypes =
    "<SchemaTypeMapperDocument xmlns:m='urn:bench:message' xmlns:pbr='urn:bench:record'>"
    "<schematypes><schematype id='structured_address_type'>"
    "<m:line1><value id='line1'/></m:line1><m:line2><value id='line2'/></m:line2>"
    "<m:line3><value id='line3'/></m:line3><m:line4><value id='line4'/></m:line4></schematype>"
    "<schematype id='row_type'><m:c1><value id='c1'/></m:c1><m:c2><value id='c2'/></m:c2>"
    "<m:c3><value id='c3'/></m:c3><m:c4><value id='c4'/></m:c4><pbr:AdditionalInfo/></schematype>"
    "</schematypes></SchemaTypeMapperDocument>";

constexpr const char* kDocData =
    "<docdata><docinfo id='protocolname'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:name</node><action id='buildprotocolname'>"
    "<parameter id='protname' attribute='name'/><parameter id='protregion' attribute='region'/>"
    "<parameter id='protversion' attribute='version'/></action></docinfo>"
    "<docinfo id='attestationdate'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:date</node></docinfo>"
    "<docinfo id='attestationtime'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:time</node></docinfo><docnodes/></docdata>";

}  // namespace

const char* nameOf(Shape shape) {
  switch (shape) {
    case Shape::sections:
      return "sections";
    case Shape::flat:
      return "flat";
    case Shape::nested:
      return "nested";
    case Shape::parentsById:
      return "parents-by-id";
  }
  return "";
}

Shape shapeNamed(std::string_view strName) {
  for (const Shape shape : kShapes) {
    if (strName == nameOf(shape)) return shape;
  }
  throw std::runtime_error("no such shape: " + std::string(strName));
}

GeneratedDeployment::GeneratedDeployment(int lngFields, Shape shape)
    : lngFields_(lngFields), shape_(shape) {
  std::string strPattern =
      (std::filesystem::temp_directory_path() / "varnel-bench-XXXXXX").string();
  if (::mkdtemp(strPattern.data()) == nullptr) throw std::runtime_error("no directory");
  directory_ = strPattern;

  std::string strObjects = "<?xml version=\"1.0\"?><prtobjcts>";
  std::string strMapper = "<message>";
  writeFields(strObjects, strMapper);
  writeTables(strObjects, strMapper);
  write("objects.xml", strObjects + "<hdnflds/></prtobjcts>");
  write("mapper.xml", strMapper + kDocData + "</message>");

  std::string strTables;
  for (int lngTable = 0; lngTable < tables(); ++lngTable)
    strTables += "<m:t" + number(lngTable) + "/>";
  write("template.xml",
        "<?xml version=\"1.0\"?><m:message xmlns:m='urn:bench:message' "
        "xmlns:pbr='urn:bench:record'><m:head><m:name/><m:date/><m:time/></m:head><m:body>" +
            bodyOfTemplate() + "</m:body><m:tables>" + strTables + "</m:tables></m:message>");
  write("reference.xml", "<m:message xmlns:m='urn:bench:message' mandatory='true'>" +
                             bodyOfReference() + "</m:message>");
  write("types.xml", kTypes);
  write("namespaces.xml", kNamespaces);
  write("hidden.xml", "<hiddenfields/>");
}

GeneratedDeployment::~GeneratedDeployment() {
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
}

const char* GeneratedDeployment::answersPath() const {
  return shape_ == Shape::flat ? "/m:message/m:body/*" : "/m:message/m:body/*/*";
}

std::string GeneratedDeployment::parentOf(int lngField) const {
  const std::string strSection = number(lngField / kFieldsPerSection);
  switch (shape_) {
    case Shape::sections:
      return "/m:message/m:body/m:s" + strSection;
    case Shape::flat:
      return "/m:message/m:body";
    case Shape::nested:
      return "/m:message";
    case Shape::parentsById:
      return "//m:s[@id='s" + strSection + "']";
  }
  return "";
}

std::string GeneratedDeployment::nodeOf(int lngField) const {
  if (shape_ == Shape::nested) return "m:body/m:x" + number(lngField) + "/m:q";
  return "m:q" + number(lngField);
}

std::string GeneratedDeployment::bodyOfTemplate() const {
  std::string strBody;
  for (int lngField = 0; isWide() && lngField < lngFields_; ++lngField) {
    strBody += "<m:e" + number(lngField) + "/>";
  }
  for (int lngSection = 0; !isWide() && lngSection * kFieldsPerSection < lngFields_; ++lngSection) {
    strBody += shape_ == Shape::sections ? "<m:s" + number(lngSection) + "/>"
                                         : "<m:s id='s" + number(lngSection) + "'/>";
  }
  return strBody;
}

std::string GeneratedDeployment::bodyOfReference() const {
  if (!isWide()) return "";
  std::string strBody;
  for (int lngField = 0; lngField < lngFields_; ++lngField) {
    strBody += shape_ == Shape::flat
                   ? "<m:q" + number(lngField) + "/>"
                   : "<m:x" + number(lngField) + "><m:q/></m:x" + number(lngField) + ">";
  }
  return "<m:body>" + strBody + bodyOfTemplate() + "</m:body>";
}

void GeneratedDeployment::write(const char* strName, const std::string& strText) const {
  std::ofstream stream(directory_ / strName, std::ios::binary);
  stream << strText;
  if (!stream.flush()) throw std::runtime_error("a file cannot be written");
}

void GeneratedDeployment::writeFields(std::string& strObjects, std::string& strMapper) {
  for (int lngField = 0; lngField < lngFields_; ++lngField) {
    const std::string strId = "q" + number(lngField);
    std::string strType = "text";
    std::string strValue = "Answer " + number(lngField);
    std::string strAction;
    switch (lngField % 10) {
      case 2:
        strType = "check";
        strValue = "on";
        break;
      case 4:
        strType = "date";
        strValue = number(lngField % 28 + 1) + "/03/2026";
        break;
      case 6:
        strAction =
            "<action id='addinfotonode' separator=': '><parameter formlabel='yes'/>"
            "<parameter formvalue='yes'/></action>";
        break;
      case 8:
        strValue = "1 High Street\r\nOld Town\r\nNorthshire\r\nNS1 1AA";
        strAction = "<action id='structured_address_type'/>";
        break;
      default:
        break;
    }
    strObjects +=
        "<prtobjct id='" + strId + "' objecttype='field' type='" + strType + "' dynamic='false'/>";
    strMapper += messageItem(strId, "field", parentOf(lngField), nodeOf(lngField), strAction);
    form_.add(strId, strValue);
    form_.add(strId + "_hiddenName", "Question " + number(lngField));
  }
}

void GeneratedDeployment::writeTables(std::string& strObjects, std::string& strMapper) {
  for (int lngTable = 0; lngTable < tables(); ++lngTable) {
    const std::string strId = "table" + number(lngTable);
    strObjects += "<prtobjct id='" + strId +
                  "' objecttype='table' type='dynatable' dynamic='false' tablelabel='Table'>";
    for (int lngColumn = 1; lngColumn <= kColumns; ++lngColumn) {
      const std::string strColumn = "c" + number(lngColumn);
      strObjects += "<column id='" + strColumn + "' columnlabel='Column'/>";
      for (int lngRow = 1; lngRow <= kRows; ++lngRow) {
        form_.add(strId + "___" + strColumn + "_" + number(lngRow), "Cell " + number(lngRow));
      }
    }
    strObjects += "</prtobjct>";
    form_.add(strId + "_rowCount", number(kRows));
    strMapper += messageItem(
        strId, "dynatable", "/m:message/m:tables/m:t" + number(lngTable), "m:row",
        lngTable % 2 == 0 ? "<action id='rowinfotovalue'/>" : "<action id='row_type'/>");
  }
}

}  // namespace Varnel_Tolv_XML_Creation::bench
