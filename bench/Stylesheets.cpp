#include "Stylesheets.h"

#include <libxslt/transform.h>
#include <libxslt/xsltutils.h>

#include <fstream>
#include <stdexcept>

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

const xmlChar* xml(const char* strText) { return reinterpret_cast<const xmlChar*>(strText); }

std::string attribute(xmlNode* node, const char* strName) {
  xmlChar* value = xmlGetNoNsProp(node, xml(strName));
  const std::string strValue = value ? reinterpret_cast<const char*>(value) : "";
  xmlFree(value);
  return strValue;
}

bool isNamed(const xmlNode* node, const char* strName) {
  return xmlStrEqual(node->name, xml(strName)) != 0;
}

std::string file(const std::string& strName) { return VARNEL_STYLESHEETS "/" + strName; }

}  // namespace

Stylesheets::Stylesheets(const GeneratedDeployment& deployment, Kind kind)
    : deployment_(deployment),
      schema_(compiledSchema(deployment.file("message.xsd"))),
      parameters_(
          {"date", "'2026-03-14'", "time", "'12:05:00'", "protocol", "'Benchmark (North, v1)'"}) {
  if (kind == Kind::generated) {
    const std::string strFile = deployment.file("message.xsl");
    std::ofstream(strFile) << generatedStylesheet(deployment);
    stylesheet_ = compiled(strFile);
    return;
  }
  stylesheet_ = compiled(file("interpreting.xsl"));
  for (const char* strName : {"template", "mapper", "types", "namespaces"}) {
    parameters_.push_back(std::string(strName) + "-file");
    parameters_.push_back("'" + deployment.file((std::string(strName) + ".xml").c_str()) + "'");
  }
}

Stylesheets::Stylesheet Stylesheets::compiled(const std::string& strFile) {
  Stylesheet stylesheet(xsltParseStylesheetFile(xml(strFile.c_str())));
  if (!stylesheet) throw std::runtime_error("no stylesheet: " + strFile);
  return stylesheet;
}

LibxmlDocument Stylesheets::parked() const {
  LibxmlDocument document = parsedFile(deployment_.file("objects.xml"));
  for (xmlNode* object = xmlDocGetRootElement(document.get())->children; object != nullptr;
       object = object->next) {
    const std::string strKind = attribute(object, "objecttype");
    if (strKind == "field") parkField(object);
    if (strKind == "table") parkTable(object);
  }
  return document;
}

void Stylesheets::parkField(xmlNode* object) const {
  const std::string strId = attribute(object, "id");
  std::string strValue = deployment_.form().formItem(strId);
  if (attribute(object, "type") == "check") strValue = strValue == "on" ? "true" : "";
  xmlSetProp(object, xml("value"), xml(strValue.c_str()));
  xmlSetProp(object, xml("fieldlabel"),
             xml(deployment_.form().formItem(strId + "_hiddenName").c_str()));
}

void Stylesheets::parkTable(xmlNode* object) const {
  const std::string strId = attribute(object, "id");
  const bool blnFixed = attribute(object, "type") == "table";
  std::vector<std::pair<xmlNode*, std::string>> columns;
  std::vector<xmlNode*> rows;
  for (xmlNode* child = object->children; child != nullptr; child = child->next) {
    if (isNamed(child, "column")) columns.emplace_back(child, attribute(child, "id"));
    if (isNamed(child, "row")) rows.push_back(child);
  }
  const std::size_t lngRows = std::stoul(deployment_.form().formItem(strId + "_rowCount"));
  for (std::size_t lngRow = 0; lngRow < lngRows; ++lngRow) {
    const std::string strRow = std::to_string(lngRow + 1);
    xmlNode* row =
        blnFixed ? rows.at(lngRow) : xmlNewDocNode(object->doc, nullptr, xml("row"), nullptr);
    bool blnBlank = true;
    for (const auto& [column, strColumn] : columns) {
      const std::string strValue =
          deployment_.form().formItem(strId + "___" + strColumn + "_" + strRow);
      xmlNode* cell = xmlAddChild(row, xmlDocCopyNode(column, object->doc, 1));
      xmlSetProp(cell, xml("value"), xml(strValue.c_str()));
      if (!strValue.empty()) blnBlank = false;
    }
    if (blnFixed) continue;
    xmlSetProp(row, xml("id"), xml(strRow.c_str()));
    if (blnBlank) {
      xmlFreeNode(row);
    } else {
      xmlAddChild(object, row);
    }
  }
  for (const auto& [column, strColumn] : columns) {
    xmlUnlinkNode(column);
    xmlFreeNode(column);
  }
}

Outcome Stylesheets::run() const {
  std::vector<const char*> parameters;
  for (const std::string& strParameter : parameters_) parameters.push_back(strParameter.c_str());
  parameters.push_back(nullptr);

  Outcome outcome;
  const LibxmlDocument park = parked();
  outcome.strParkXML = serialised(park);
  const LibxmlDocument message(
      xsltApplyStylesheet(stylesheet_.get(), park.get(), parameters.data()));
  if (!message) throw std::runtime_error("a transformation failed");
  outcome.blnValid = isValid(schema_, message);
  outcome.strMessage = serialised(message);
  return outcome;
}

}  // namespace Varnel_Tolv_XML_Creation::bench
