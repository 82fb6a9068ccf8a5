#include "GeneratedDeployment.h"

#include <algorithm>
#include <cctype>

#include "GeneratedSchema.h"

namespace Varnel_Tolv_XML_Creation::bench {
namespace {

std::string number(int lngNumber) { return std::to_string(lngNumber); }

std::string messageItem(const std::string& strId, const std::string& strType,
                        const std::string& strParent, const std::string& strNode,
                        const std::string& strAction) {
  return "<messageitem id='" + strId + "' type='" + strType + "' toschema='true'><parentxpath>" +
         strParent + "</parentxpath><node>" + strNode + "</node>" + strAction + "</messageitem>";
}

std::string question(const std::string& strId, const std::string& strPath) {
  return "<question id='" + strId + "' maxLength='60'><xpath>" + strPath + "</xpath></question>";
}

constexpr const char* kExtras = "/m:message/m:extras";

constexpr const char* kHeader =
    "<docinfo id='protocolname'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:name</node><action id='buildprotocolname'>"
    "<parameter id='protname' attribute='name'/><parameter id='protregion' attribute='region'/>"
    "<parameter id='protversion' attribute='version'/></action></docinfo>"
    "<docinfo id='attestationdate'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:date</node></docinfo>"
    "<docinfo id='attestationtime'><parentxpath>/m:message/m:head</parentxpath>"
    "<node>m:time</node></docinfo>";

/// `strText` as a browser encodes it.
std::string encoded(const std::string& strText) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string strEncoded;
  for (const unsigned char letter : strText) {
    if (letter >= 0x80 || std::isalnum(letter) || letter == '_') {
      strEncoded += static_cast<char>(letter);
    } else {
      strEncoded += {'%', kDigits[letter / 16], kDigits[letter % 16]};
    }
  }
  return strEncoded;
}

}  // namespace

/// The documents while they are written.
struct GeneratedDeployment::Texts {
  std::string objects, mapper, types, hidden, namespaces, questions, reference;
  std::string body, tables, extras;                    // of the template
  std::string bodySchema, tablesSchema, extrasSchema;  // of the schema
  std::string documentRules, definitions;
};

GeneratedDeployment::GeneratedDeployment(const Dimensions& dimensions) : dimensions_(dimensions) {
  if (dimensions_.levels > 0)
    dimensions_.columns = dimensions_.levels + 1;  // the last has no place
  for (int lngTable = 0; lngTable < dimensions_.fields / 100; ++lngTable) {
    tables_.push_back({"table" + number(lngTable), kRows, false, lngTable % 2 == 0});
  }
  if (dimensions_.rows > 0) tables_.push_back({"rows", dimensions_.rows, false, false});
  if (dimensions_.gridRows > 0) tables_.push_back({"grid", dimensions_.gridRows, true, true});
  if (dimensions_.paddedRows > 0) tables_.push_back({"padded", dimensions_.paddedRows, true, true});

  Texts texts;
  addFields(texts);
  addTables(texts);
  addExtras(texts);
  writeFiles(texts);
}

int GeneratedDeployment::elements() const {
  int lngElements = dimensions_.fields;
  for (const GeneratedTable& table : tables_) lngElements += table.rows;
  return lngElements;
}

const char* GeneratedDeployment::elementsPath() const {
  return dimensions_.shape == Shape::flat ? "/m:message/m:body/*" : "/m:message/m:body/*/*";
}

bool GeneratedDeployment::isWide() const {
  return dimensions_.shape == Shape::flat || dimensions_.shape == Shape::nested;
}

bool GeneratedDeployment::isFaulty(int lngNumber, int lngOf) const {
  return dimensions_.faults > 0 && lngNumber % std::max(1, lngOf / dimensions_.faults) == 0;
}

std::string GeneratedDeployment::parentOf(int lngField) const {
  const std::string strSection = number(lngField / kFieldsPerSection);
  switch (dimensions_.shape) {
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
  if (dimensions_.shape == Shape::nested) return "m:body/m:x" + number(lngField) + "/m:q";
  return "m:q" + number(lngField);
}

std::string GeneratedDeployment::bodyOfTemplate() const {
  std::string strBody;
  for (int lngField = 0; isWide() && lngField < dimensions_.fields; ++lngField) {
    strBody += "<m:e" + number(lngField) + "/>";
  }
  for (int lngSection = 0; !isWide() && lngSection * kFieldsPerSection < dimensions_.fields;
       ++lngSection) {
    strBody += dimensions_.shape == Shape::sections ? "<m:s" + number(lngSection) + "/>"
                                                    : "<m:s id='s" + number(lngSection) + "'/>";
  }
  return strBody;
}

std::string GeneratedDeployment::bodyOfReference() const {
  std::string strBody;
  for (int lngField = 0; lngField < dimensions_.fields; ++lngField) {
    const std::string strField = number(lngField);
    switch (dimensions_.shape) {
      case Shape::sections: {
        const std::string strSection = "m:s" + number(lngField / kFieldsPerSection);
        if (lngField % kFieldsPerSection == 0) strBody += "<" + strSection + ">";
        strBody += "<m:q" + strField + " mandatory='true'/>";
        if (lngField % kFieldsPerSection == kFieldsPerSection - 1 ||
            lngField == dimensions_.fields - 1) {
          strBody += "</" + strSection + ">";
        }
        break;
      }
      case Shape::flat:
        strBody += "<m:q" + strField + "/>";
        break;
      case Shape::nested:
        strBody += "<m:x" + strField + "><m:q/></m:x" + strField + ">";
        break;
      case Shape::parentsById:
        break;
    }
  }
  return "<m:body>" + strBody + (isWide() ? bodyOfTemplate() : "") + "</m:body>";
}

void GeneratedDeployment::answer(const std::string& strName, const std::string& strValue) {
  form_.add(strName, strValue);
  answers_.emplace_back(strName, strValue);
}

void GeneratedDeployment::addFields(Texts& texts) {
  std::string strSection;
  for (int lngField = 0; lngField < dimensions_.fields; ++lngField) {
    const std::string strId = "q" + number(lngField);
    std::string strType = "text";
    std::string strValue = "Answer " + number(lngField);
    std::string strAction;
    std::string strSchemaType = "m:answer";
    switch (lngField % kFieldKinds) {
      case 0:
        if (isFaulty(lngField / kFieldKinds, dimensions_.fields / kFieldKinds)) {
          strValue.append(60, 'x');
        }
        break;
      case checkBox:
        strType = "check";
        strValue = "on";
        strSchemaType = "xs:boolean";
        break;
      case date:
        strType = "date";
        strValue = number(lngField % 28 + 1) + "/03/2026";
        strSchemaType = "xs:date";
        break;
      case labelAndValue:
        strAction =
            "<action id='addinfotonode' separator=': '><parameter formlabel='yes'/>"
            "<parameter formvalue='yes'/></action>";
        break;
      case address:
        strValue = "1 High Street\r\nOld Town\r\nNorthshire\r\nNS1 1AA";
        strAction = "<action id='structured_address_type'/>";
        strSchemaType = "m:address";
        break;
      default:
        break;
    }
    texts.objects +=
        "<prtobjct id='" + strId + "' objecttype='field' type='" + strType + "' dynamic='false'/>";
    texts.mapper += messageItem(strId, "field", parentOf(lngField), nodeOf(lngField), strAction);
    texts.questions += question(strId, parentOf(lngField) + "/" + nodeOf(lngField));
    strSection += element(strId, strSchemaType);
    if (lngField % kFieldsPerSection == kFieldsPerSection - 1 ||
        lngField == dimensions_.fields - 1) {
      texts.bodySchema += sequence("s" + number(lngField / kFieldsPerSection), strSection);
      strSection.clear();
    }
    answer(strId, strValue);
    answer(strId + "_hiddenName", "Question " + number(lngField));
  }
  texts.body = bodyOfTemplate();
  texts.reference = bodyOfReference();
}

void GeneratedDeployment::addTables(Texts& texts) {
  for (std::size_t lngTable = 0; lngTable < tables_.size(); ++lngTable) {
    const GeneratedTable& table = tables_[lngTable];
    const std::string strPlace = "t" + std::to_string(lngTable);
    const std::string strParent = "/m:message/m:tables/m:" + strPlace;
    texts.objects += "<prtobjct id='" + table.id + "' objecttype='table' type='" +
                     (table.fixed ? "table" : "dynatable") +
                     "' dynamic='false' tablelabel='Table' fieldlabel='Table'>";
    for (int lngRow = 1; table.fixed && lngRow <= table.rows; ++lngRow) {
      const bool blnPadded = lngRow == 1 && dimensions_.paddedRows > 0;
      texts.objects += "<row id='" + std::string(blnPadded ? "0" : "") + number(lngRow) +
                       "' rowlabel='Row " + number(lngRow) + "'/>";
    }
    std::string strColumns;
    for (int lngColumn = 1; lngColumn <= dimensions_.columns; ++lngColumn) {
      const std::string strColumn = "c" + number(lngColumn);
      texts.objects += "<column id='" + strColumn + "' columnlabel='Column'/>";
      strColumns +=
          "<column id='" + strColumn + "' maxLength='60'><path>m:" + strColumn + "</path></column>";
      for (int lngRow = 1; lngRow <= table.rows; ++lngRow) {
        const bool blnFaulty =
            dimensions_.fields == 0 && lngColumn == 1 && isFaulty(lngRow, table.rows);
        answer(table.id + "___" + strColumn + "_" + number(lngRow),
               "Cell " + number(lngRow) + (blnFaulty ? std::string(200, 'x') : ""));
      }
    }
    texts.objects += "</prtobjct>";
    answer(table.id + "_rowCount", number(table.rows));
    texts.mapper +=
        messageItem(table.id, table.fixed ? "table" : "dynatable", strParent, "m:row",
                    table.texts ? "<action id='rowinfotovalue'/>" : "<action id='row_type'/>");
    texts.questions += "<question id='" + table.id + "' type='dynaTable'><xpath>" + strParent +
                       "/m:row</xpath>" + strColumns + "</question>";
    texts.tables += "<m:" + strPlace + "/>";
    const char* strRowType = table.fixed ? "m:gridText" : table.texts ? "m:rowText" : "m:row";
    texts.tablesSchema += sequence(strPlace, element("row", strRowType, kAnyNumber), kOptional);
  }
}

void GeneratedDeployment::addExtraField(Texts& texts, const std::string& strId,
                                        const std::string& strType, const std::string& strNode,
                                        const std::string& strAction, const std::string& strValue) {
  texts.objects += "<prtobjct id='" + strId + "' objecttype='field' type='text' dynamic='false'/>";
  texts.mapper += messageItem(strId, "field", kExtras, "m:" + strNode, strAction);
  texts.extrasSchema += strType;
  answer(strId, strValue);
}

void GeneratedDeployment::addExtras(Texts& texts) {
  const Dimensions& size = dimensions_;
  for (int lngAction = 0; lngAction < size.actions; ++lngAction) {
    const std::string strId = "action" + number(lngAction);
    texts.types += "<schematype id='" + strId + "'><m:v><value id='v'/></m:v></schematype>";
    addExtraField(texts, strId, sequence(strId, element("v", "m:answer")), strId,
                  "<action id='" + strId + "'><parameter id='v' formvalue='true'/></action>",
                  "Answer");
  }
  for (int lngHidden = 0; lngHidden < size.hiddenFields; ++lngHidden) {
    const std::string strId = "hidden" + number(lngHidden);
    texts.hidden += "<hiddenfield id='" + strId + "' output='" + strId + "' toschema='true'/>";
    texts.mapper += messageItem(strId, "field", kExtras, "m:" + strId, "");
    texts.extrasSchema += element(strId, "m:answer");
    answer(strId, "Hidden");
  }
  for (int lngTable = 1; lngTable <= size.tablesOfOneId; ++lngTable) {
    texts.objects +=
        "<prtobjct id='same' objecttype='table' type='dynatable' dynamic='false'><column id='c'/>"
        "</prtobjct>";
    answer("same___c_" + number(lngTable), "");
  }
  if (size.tablesOfOneId > 0) {
    texts.mapper += messageItem("same", "dynatable", kExtras, "m:row", "<action id='row_type'/>");
    answer("same_rowCount", number(size.tablesOfOneId));
  }
  for (int lngQuestion = 0; lngQuestion < size.questions; ++lngQuestion) {
    texts.questions += question("x" + number(lngQuestion), "/m:message/m:x" + number(lngQuestion));
  }
  for (int lngElement = 0; lngElement < size.referenceElements; ++lngElement) {
    texts.reference += "<m:x" + number(lngElement) + " mandatory='false'/>";
  }
  for (int lngNamespace = 0; lngNamespace < size.namespaces; ++lngNamespace) {
    const std::string strId = "n" + number(lngNamespace);
    texts.namespaces += "<namespace id='" + strId + "' name='urn:bench:" + strId +
                        "' ref='urn:bench:" + strId + "'/>";
  }
  for (int lngRule = 0; lngRule < size.documentRules; ++lngRule) {
    texts.documentRules += "<docnode><parentxpath>" + std::string(kExtras) +
                           "/m:copies</parentxpath><node>/m:message/m:head/m:name</node></docnode>";
  }
  if (size.documentRules > 0) {
    texts.extras += "<m:copies/>";
    texts.extrasSchema =
        sequence("copies", element("name", "m:answer", kAnyNumber), kOptional) + texts.extrasSchema;
  }
  if (size.depth > 0) {
    std::string strNode = "d";
    for (int lngStep = 1; lngStep < size.depth; ++lngStep) strNode += "/m:d";
    addExtraField(texts, "deep", element("d", "m:deep"), strNode, "", "Answer");
  }
  for (int lngElement = 0; lngElement < size.width; ++lngElement) {
    texts.extras += "<m:w" + number(lngElement) + "/>";
  }
  for (int lngElement = 0; lngElement < 2 * size.sharedNames; ++lngElement) {
    texts.extras += "<m:w" + number(lngElement % size.sharedNames) + "/>";
  }
  if (size.listedQuestions > 0) {
    std::string strIds;
    for (int lngElement = 0; lngElement < size.listedQuestions; ++lngElement) {
      texts.extras += "<m:l questionId='x" + number(lngElement) + "'/>";
      strIds += "l" + number(lngElement) + ";";
    }
    texts.reference += "<m:extras mandatory='true'><m:l mandatory='true' questionIds='" + strIds +
                       "'/></m:extras>";
  }
  if (size.valueLength > 0) {
    addExtraField(texts, "long", element("long", "xs:string"), "long", "",
                  std::string(static_cast<std::size_t>(size.valueLength), 'x'));
  }
  if (size.attributes > 0) {
    std::string strAttributes;
    for (int lngAttribute = 0; lngAttribute < size.attributes; ++lngAttribute) {
      strAttributes += " a" + number(lngAttribute) + "='value'";
    }
    texts.objects += "<prtobjct id='x' objecttype='none'" + strAttributes + "/>";
    texts.extras = "<m:attributed" + strAttributes + ">text</m:attributed>" + texts.extras;
    texts.extrasSchema = element("attributed", "m:attributed") + texts.extrasSchema;
  }
  for (int lngType = 0; lngType < size.definitions; ++lngType) {
    texts.definitions += "<xs:complexType name='definition" + number(lngType) + "'><xs:sequence>" +
                         element("first", "m:answer") + element("second", "xs:date") +
                         "</xs:sequence></xs:complexType>";
  }
}

void GeneratedDeployment::writeFiles(const Texts& texts) {
  constexpr const char* kNames = " xmlns:m='urn:bench:message' xmlns:pbr='urn:bench:record'";
  std::string strRow;
  std::string strRowSchema;
  for (int lngColumn = 1; lngColumn < dimensions_.columns; ++lngColumn) {
    const std::string strColumn = "c" + number(lngColumn);
    strRow += "<m:" + strColumn + "><value id='" + strColumn + "'/></m:" + strColumn + ">";
    strRowSchema += element(strColumn, "m:answer");
  }
  std::string strLevelType;
  if (dimensions_.levels > 0) {
    strLevelType = "<xs:complexType name='level'><xs:sequence>" + element("level", "m:level") +
                   strRowSchema + "</xs:sequence></xs:complexType>";
    strRowSchema = element("level", "m:level");
  }
  for (int lngLevel = 0; lngLevel < dimensions_.levels; ++lngLevel) {
    strRow = "<m:level>" + strRow + "</m:level>";
  }
  directory_.file("objects.xml",
                  "<?xml version=\"1.0\"?><prtobjcts>" + texts.objects + "<hdnflds/></prtobjcts>");
  directory_.file("protocol.xml", "<info name='Benchmark' region='North' version='1'/>");
  directory_.file("mapper.xml", "<message>" + texts.mapper + "<docdata>" + kHeader + "<docnodes>" +
                                    texts.documentRules + "</docnodes></docdata></message>");
  directory_.file("template.xml", "<?xml version=\"1.0\"?><m:message" + std::string(kNames) +
                                      "><m:head><m:name/><m:date/><m:time/></m:head><m:body>" +
                                      texts.body + "</m:body><m:tables>" + texts.tables +
                                      "</m:tables><m:extras>" + texts.extras +
                                      "</m:extras></m:message>");
  directory_.file("reference.xml", "<m:message" + std::string(kNames) + " mandatory='true'>" +
                                       texts.reference + "</m:message>");
  directory_.file("types.xml",
                  "<SchemaTypeMapperDocument" + std::string(kNames) +
                      "><schematypes><schematype id='structured_address_type'>"
                      "<m:line1><value id='line1'/></m:line1><m:line2><value id='line2'/></m:line2>"
                      "<m:line3><value id='line3'/></m:line3><m:line4><value id='line4'/></m:line4>"
                      "</schematype><schematype id='row_type'>" +
                      strRow + "<pbr:AdditionalInfo/></schematype>" + texts.types +
                      "</schematypes></SchemaTypeMapperDocument>");
  directory_.file("namespaces.xml",
                  "<namespaces><namespace id='m' name='urn:bench:message' ref='urn:bench:message'/>"
                  "<namespace id='pbr' name='urn:bench:record' ref='urn:bench:record'/>" +
                      texts.namespaces + "</namespaces>");
  directory_.file("hidden.xml", "<hiddenfields>" + texts.hidden + "</hiddenfields>");
  directory_.file("questions.xml", "<questions>" + texts.questions + "</questions>");
  directory_.file("record.xsd", kRecordSchema);
  directory_.file(
      "message.xsd",
      "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'" + std::string(kNames) +
          " targetNamespace='urn:bench:message' elementFormDefault='qualified'>"
          "<xs:import namespace='urn:bench:record' schemaLocation='record.xsd'/>" +
          kSimpleTypes + strLevelType + "<xs:complexType name='row'><xs:sequence>" + strRowSchema +
          "<xs:element ref='pbr:AdditionalInfo' minOccurs='0'/></xs:sequence></xs:complexType>" +
          texts.definitions +
          sequence("message", sequence("head", element("name", "m:answer", "") +
                                                   element("date", "xs:date", "") +
                                                   element("time", "xs:time", "")) +
                                  sequence("body", texts.bodySchema, kOptional) +
                                  sequence("tables", texts.tablesSchema, kOptional) +
                                  sequence("extras", texts.extrasSchema, kOptional)) +
          "</xs:schema>");
  directory_.file(
      "deployment.json",
      R"({"template": "template.xml", "object-mapper": "mapper.xml", "schema-types": "types.xml",
"hidden-fields": "hidden.xml", "namespaces": "namespaces.xml", "questions": "questions.xml",
"reference": "reference.xml", "object-list": "objects.xml", "protocol-info": "protocol.xml",
"page-dir": "pages", "schema-url": "message.xsd", "schema-uri": "urn:bench:message"})");
  std::string strForm;
  for (const auto& [strName, strValue] : answers_) {
    strForm += (strForm.empty() ? "" : "&") + encoded(strName) + "=" + encoded(strValue);
  }
  directory_.file("answers.form", strForm);
}

}  // namespace Varnel_Tolv_XML_Creation::bench
