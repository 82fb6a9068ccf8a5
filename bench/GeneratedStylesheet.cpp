#include "Stylesheets.h"

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

std::string call(const std::string& strTemplate, const std::string& strParameters) {
  return "<xsl:call-template name='" + strTemplate + "'>" + strParameters + "</xsl:call-template>";
}

std::string parameter(const std::string& strName, const std::string& strValue) {
  return "<xsl:with-param name='" + strName + "' select=\"" + strValue + "\"/>";
}

/// What a field writes: the context is its object.
std::string valueOf(int lngField) {
  switch (lngField % GeneratedDeployment::kFieldKinds) {
    case GeneratedDeployment::date:
      return call("date", parameter("value", "@value"));
    case GeneratedDeployment::labelAndValue:
      return "<xsl:value-of select=\"concat(@fieldlabel, ': ', @value)\"/>";
    case GeneratedDeployment::address:
      return call("address", parameter("value", "@value") + parameter("prefix", "'m:'") +
                                 parameter("namespace", "'urn:bench:message'"));
    default:
      return "<xsl:value-of select=\"translate(@value, '&#13;&#10;', '')\"/>";
  }
}

std::string section(const GeneratedDeployment& deployment, int lngSection) {
  std::string strSection;
  const int lngFirst = lngSection * GeneratedDeployment::kFieldsPerSection;
  for (int lngField = lngFirst; lngField < lngFirst + GeneratedDeployment::kFieldsPerSection &&
                                lngField < deployment.dimensions().fields;
       ++lngField) {
    const std::string strName = "q" + std::to_string(lngField);
    strSection += "<xsl:for-each select=\"key('object', '" + strName +
                  "')[@value != '']\"><m:" + strName + ">" + valueOf(lngField) + "</m:" + strName +
                  "></xsl:for-each>";
  }
  const std::string strName = "m:s" + std::to_string(lngSection);
  return "<" + strName + ">" + strSection + "</" + strName + ">";
}

std::string table(const GeneratedTable& table, int lngColumns) {
  const std::string strObject = "<xsl:for-each select=\"key('object', '" + table.id + "')" +
                                (table.texts ? "" : "/row[column/@value != '']") + "\">";
  if (table.texts) {
    return strObject +
           call("row-texts",
                parameter("name", "'m:row'") + parameter("namespace", "'urn:bench:message'")) +
           "</xsl:for-each>";
  }
  std::string strCells;
  for (int lngColumn = 1; lngColumn <= lngColumns; ++lngColumn) {
    const std::string strColumn = "c" + std::to_string(lngColumn);
    const bool blnLast = lngColumn == lngColumns;  // has no place in the type
    strCells +=
        "<xsl:for-each select=\"column[@id='" + strColumn + "'][@value != '']\">" +
        (blnLast ? "<pbr:AdditionalInfo id='" + strColumn + "'>" : "<m:" + strColumn + ">") +
        "<xsl:value-of select='@value'/>" +
        (blnLast ? "</pbr:AdditionalInfo>" : "</m:" + strColumn + ">") + "</xsl:for-each>";
  }
  return strObject + "<m:row>" + strCells + "</m:row></xsl:for-each>";
}

}  // namespace

std::string generatedStylesheet(const GeneratedDeployment& deployment) {
  const int lngFields = deployment.dimensions().fields;
  std::string strBody;
  for (int lngSection = 0; lngSection * GeneratedDeployment::kFieldsPerSection < lngFields;
       ++lngSection) {
    strBody += section(deployment, lngSection);
  }
  std::string strTables;
  for (std::size_t lngTable = 0; lngTable < deployment.tables().size(); ++lngTable) {
    const std::string strName = "m:t" + std::to_string(lngTable);
    strTables += "<" + strName + ">" +
                 table(deployment.tables()[lngTable], deployment.dimensions().columns) + "</" +
                 strName + ">";
  }
  return "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' "
         "xmlns:m='urn:bench:message' xmlns:pbr='urn:bench:record'><xsl:include "
         "href='" VARNEL_STYLESHEETS
         "/values.xsl'/><xsl:template match='/'><m:message><m:head><m:name><xsl:value-of "
         "select='$protocol'/></m:name><m:date><xsl:value-of select='$date'/></m:date><m:time>"
         "<xsl:value-of select='$time'/></m:time></m:head>" +
         (strBody.empty() ? "" : "<m:body>" + strBody + "</m:body>") +
         (strTables.empty() ? "" : "<m:tables>" + strTables + "</m:tables>") +
         "</m:message></xsl:template></xsl:stylesheet>";
}

}  // namespace Varnel_Tolv_XML_Creation::bench
