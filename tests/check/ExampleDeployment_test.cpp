#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "interface/CheckDeployment.h"
#include "support/Documents.h"

// Mistakes that are easily made, planted one at a time in the example deployment, which has none.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

struct Plant {
  const char *file, *find, *replacement;
  Severity severity;
  const char* object;  // null: what is found concerns other things than questions
};

constexpr Plant kPlants[] = {
    {"object-list.xml", R"(id="urgency" objecttype="field")", R"(id="urgency" objecttype="feild")",
     Severity::error, "urgency"},
    {"object-list.xml", R"(id="urgency" objecttype="field")", R"(id="urgency")", Severity::error,
     "urgency"},
    {"object-list.xml", R"(id="urgency" objecttype="field")", R"(id="urgency" objecttype="Field")",
     Severity::error, "urgency"},
    {"object-list.xml", R"(id="urgency" objecttype="field" type="select" dynamic="false")",
     R"(id="urgency" objecttype="field" type="select")", Severity::error, "urgency"},
    {"object-list.xml", R"(id="urgency" objecttype="field" type="select" dynamic="false")",
     R"(id="urgency" objecttype="field" type="select" dynamic="no")", Severity::error, "urgency"},
    {"object-list.xml", R"(<prtobjct id="urgency")", R"(<prtobject id="urgency")", Severity::error,
     "urgency"},
    {"object-list.xml", R"(type="dynatable" dynamic="false" tablelabel)",
     R"(type="dynatabel" dynamic="false" tablelabel)", Severity::error, "defects"},
    {"object-list.xml", R"(id="basement" objecttype="field" type="check")",
     R"(id="basement" objecttype="field" type="Check")", Severity::error, "basement"},
    {"object-list.xml", R"(id="complaintdate" objecttype="field" type="date")",
     R"(id="complaintdate" objecttype="field" type="dat")", Severity::error, "complaintdate"},
    {"object-list.xml", R"(checkedvalue="protected")", R"(checkdvalue="protected")",
     Severity::error, "listed"},
    {"object-list.xml", R"(letterlabel="C1 Owner")", R"(leterlabel="C1 Owner")", Severity::warning,
     "ownername"},
    {"object-list.xml", R"(id="street")", R"(id="Street")", Severity::error, "Street"},
    {"object-list.xml", R"(id="street")", R"(id="stret")", Severity::error, "stret"},
    {"object-list.xml", R"(id="street")", R"(id="street ")", Severity::error, "street "},
    {"object-list.xml", R"(id="street")", R"(id="stre'et")", Severity::error, "stre'et"},
    {"object-list.xml", R"(id="street")", R"(id="")", Severity::error, ""},
    {"object-list.xml", R"(id="housenumber")", R"(id="street")", Severity::error, "street"},
    {"object-list.xml", R"(group="present"/>
  <prtobjct id="present3")",
     R"(group="presnt"/>
  <prtobjct id="present3")",
     Severity::error, "present2"},
    {"object-list.xml", R"(<row id="2" rowlabel="Façade"/>)", R"(<row id="2"/>)", Severity::warning,
     "areas"},
    {"object-list.xml", R"(<row id="2" rowlabel="Façade"/>)", R"(<row id="1" rowlabel="Façade"/>)",
     Severity::error, "areas"},
    {"object-list.xml", R"(<row id="2" rowlabel="Façade"/>)",
     R"(<row id="two" rowlabel="Façade"/>)", Severity::error, "areas"},
    {"object-list.xml", R"(columnlabel="Moisture in %")", "", Severity::error, "moisture"},
    {"object-list.xml", R"(firstcolumn="found")", R"(firstcolumn="foud")", Severity::error,
     "duration"},
    {"object-list.xml", R"(secondcolumn="repairby")", R"(secondcolumn="Repairby")", Severity::error,
     "duration"},
    {"object-list.xml", R"(timedimabbr="d")", R"(timedimabbr="days")", Severity::error, "duration"},
    {"object-list.xml", R"(calculate="true")", R"(calculate="True")", Severity::error, "duration"},
    {"object-list.xml", R"(datatype="date")", R"(datatype="Date")", Severity::error, "duration"},
    {"object-list.xml", "<hdnflds/>", R"(<hdnflds><hdnfld id="officeid" value="1"/></hdnflds>)",
     Severity::warning, nullptr},
    {"object-list.xml", R"(<?xml version="1.0" encoding="UTF-8"?>
)",
     "", Severity::error, ""},
    {"object-list.xml", R"(tablelabel="Defects" fieldlabel="Defects")", R"(tablelabel="Defects")",
     Severity::error, "defects"},
    {"object-list.xml", R"(<column id="basis" columnlabel="Legal basis" autovalue)",
     R"(<column id="basis" columnlabel="Legal basis" autovlue)", Severity::error, "basis"},
    {"object-list.xml", R"(<column id="remedy")", R"(<colum id="remedy")", Severity::error,
     "remedy"},
    {"object-list.xml", "<prtobjcts>", R"(<prtobjcts xmlns="urn:x">)", Severity::error, ""},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="urgncy" toschema="true">)", Severity::error, "urgency"},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="Urgency" toschema="true">)", Severity::error, "urgency"},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="urgency" toschema="True">)", Severity::error, "urgency"},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="urgency" toschema="yes">)", Severity::error, "urgency"},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="urgency">)", Severity::error, "urgency"},
    {"object-mapper.xml", R"(<messageitem id="urgency" toschema="true">)",
     R"(<messageitem id="urgency" toshema="true">)", Severity::error, "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node>rtp:Urgency</node>", Severity::error,
     "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node>Urgency</node>", Severity::error,
     "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node>/rpt:Urgency</node>", Severity::error,
     "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node>rpt:Urgency/</node>", Severity::error,
     "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node> rpt:Urgency</node>", Severity::error,
     "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<node/>", Severity::error, "urgency"},
    {"object-mapper.xml", "<node>rpt:Urgency</node>", "<nod>rpt:Urgency</nod>", Severity::error,
     "urgency"},
    {"object-mapper.xml", R"(<parentxpath>/rpt:InspectionReport/rpt:Header</parentxpath>
    <node>rpt:Urgency)",
     R"(<parentxpath>/rpt:InspectionReport/rpt:Haeder</parentxpath>
    <node>rpt:Urgency)",
     Severity::error, "urgency"},
    {"object-mapper.xml", R"(<parentxpath>/rpt:InspectionReport/rpt:Header</parentxpath>
    <node>rpt:Urgency)",
     R"(<parentxpath>/InspectionReport/Header</parentxpath>
    <node>rpt:Urgency)",
     Severity::error, "urgency"},
    {"object-mapper.xml", R"(<parentxpath>/rpt:InspectionReport/rpt:Header</parentxpath>
    <node>rpt:Urgency)",
     R"(<parentxpath>/rpt:InspectionReport/rpt:Header[</parentxpath>
    <node>rpt:Urgency)",
     Severity::error, "urgency"},
    {"object-mapper.xml", R"(<parentxpath>/rpt:InspectionReport/rpt:Header</parentxpath>
    <node>rpt:Urgency)",
     "<node>rpt:Urgency", Severity::error, "urgency"},
    {"object-mapper.xml", R"(absent="mobilephone")", R"(absent="mobilphone")", Severity::error,
     "officephone"},
    {"object-mapper.xml", R"(absent="mobilephone")", R"(absent="Mobilephone")", Severity::error,
     "officephone"},
    {"object-mapper.xml", R"(absent="mobilephone")", R"(absnt="mobilephone")", Severity::error,
     "officephone"},
    {"object-mapper.xml", R"(<node item="ownername">)", R"(<node item="ownernam">)",
     Severity::error, "buildingvacant"},
    {"object-mapper.xml", R"(absent="buildingvacant" checkexists="true")",
     R"(absent="buildingvacant" checkexists="True")", Severity::error, "buildingvacant"},
    {"object-mapper.xml", R"(<action id="structured_address_type"/>)",
     R"(<action id="structured_adress_type"/>)", Severity::error, "owneraddress"},
    {"object-mapper.xml", R"(<action id="contact_person_type">)", R"(<action id="contact_type">)",
     Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter id="role" messageitem="contactrole"/>)",
     R"(<parameter id="role" messageitem="contactrol"/>)", Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter id="role" messageitem="contactrole"/>)",
     R"(<parameter id="rol" messageitem="contactrole"/>)", Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
     R"(<parameter id="name" formvalue="True"/>)", Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
     R"(<parameter id="name" formvalu="true"/>)", Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter id="name" formvalue="true"/>)",
     R"(<parameter id="Name" formvalue="true"/>)", Severity::error, "contactname"},
    {"object-mapper.xml", R"(<parameter item="departuretime"/>)",
     R"(<parameter item="departure"/>)", Severity::error, "arrivaltime"},
    {"object-mapper.xml", R"(<action id="addinfotonode" separator=" - ">)",
     R"(<action id="addinfotonod" separator=" - ">)", Severity::error, "arrivaltime"},
    {"object-mapper.xml", R"(<action id="addinfotonode" separator=" - ">)",
     R"(<action id="addinfotonode" seperator=" - ">)", Severity::error, "arrivaltime"},
    {"object-mapper.xml", R"(<messageitem id="present" type="group")",
     R"(<messageitem id="present" type="groups")", Severity::error, "present"},
    {"object-mapper.xml", R"(<messageitem id="defects" type="dynatable")",
     R"(<messageitem id="defects" type="dynatabel")", Severity::error, "defects"},
    {"object-mapper.xml", R"(<action id="defect_row_type"/>)", R"(<action id="defect_rowtype"/>)",
     Severity::error, "defects"},
    {"object-mapper.xml", R"(<action id="rowinfotovalue"/>)", R"(<action id="rowinfotovalues"/>)",
     Severity::error, "areas"},
    {"object-mapper.xml", "<node>pbr:Defect</node>", "<node>pbx:Defect</node>", Severity::error,
     "defects"},
    {"object-mapper.xml", "<extrapath>/rpt:InspectionReport/rpt:Record/pbr:Source</extrapath>",
     "<extrapath>/rpt:InspectionReport/rpt:Record/pbr:Sorce</extrapath>", Severity::error,
     "casenumber"},
    {"object-mapper.xml", R"(<messageitem id="town" toschema="true">)",
     R"(<messageitem id="postcode" toschema="true">)", Severity::warning, "postcode"},
    {"object-mapper.xml", R"(<docinfo id="attestationtime">)", R"(<docinfo id="attestationTime">)",
     Severity::error, nullptr},
    {"object-mapper.xml", "<node>rpt:AttestationTime</node>", "<node>rpt:AttestationTim</node>",
     Severity::error, nullptr},
    {"object-mapper.xml", R"(<parameter id="protregion" attribute="region"/>)",
     R"(<parameter id="protregion" attribute="regon"/>)", Severity::error, nullptr},
    {"object-mapper.xml", "<docnodes>", "<docnodes><!-- x -->", Severity::error, nullptr},
    {"object-mapper.xml", R"(<node type="cnt:inspector">)", R"(<node type="cnt:Inspector">)",
     Severity::error, nullptr},
    {"object-mapper.xml", R"(<action id="copyhcpdetailtype">)", R"(<action id="copyhcpdetail">)",
     Severity::error, nullptr},
    {"object-mapper.xml", R"(<insertbefore appendonnomatch="true">)",
     R"(<insertbefore appendonnomatch="ja">)", Severity::error, nullptr},
    {"object-mapper.xml", R"(<node>rpt:ComplaintDate</node>
        </insert)",
     R"(<node>rpt:ComplaintDat</node>
        </insert)",
     Severity::error, nullptr},
    {"object-mapper.xml", "<node>/rpt:InspectionReport/rpt:Assessment/rpt:Grade</node>",
     "<node>/rpt:InspectionReport/rpt:Assessment/rpt:Grad</node>", Severity::error, nullptr},
    {"object-mapper.xml", R"(<parameter action="copy" under="parent">cnt:Role</parameter>)",
     R"(<parameter action="copi" under="parent">cnt:Role</parameter>)", Severity::error, nullptr},
    {"hidden-fields.xml", R"(toschema="true"/>
  <hiddenfield id="formversion")",
     R"(toschema="True"/>
  <hiddenfield id="formversion")",
     Severity::error, "officeid"},
    {"hidden-fields.xml", R"(id="officeid" output="officeid")", R"(id="officeid" output="oficeid")",
     Severity::error, "oficeid"},
    {"hidden-fields.xml", R"(output="language" )", "", Severity::error, nullptr},
    {"hidden-fields.xml", R"(<hiddenfield id="page_lang")",
     R"(<!-- x --><hiddenfield id="page_lang")", Severity::error, nullptr},
    {"hidden-fields.xml", R"(<hiddenfield id="officeid")", R"(<hidenfield id="officeid")",
     Severity::error, nullptr},
    {"hidden-fields.xml", R"(output="language")", R"(output="formversion")", Severity::warning,
     nullptr},
    {"namespaces.xml", R"(ref="urn:example:inspection:contact")",
     R"(ref="urn:example:inspection:contacts")", Severity::error, ""},
    {"namespaces.xml",
     R"(name="urn:example:inspection:contact" ref="urn:example:inspection:contact")",
     R"(name="urn:example:contact" ref="urn:example:contact")", Severity::error, ""},
    {"namespaces.xml", R"(id="cnt")", R"(id="cnd")", Severity::error, nullptr},
    {"namespaces.xml", R"(id="cnt")", R"(id="c t")", Severity::error, ""},
    {"template.xml", R"(xmlns:bld="urn:example:inspection:building")",
     R"(xmlns:bld="urn:example:building")", Severity::error, ""},
    {"template.xml", "<Parties/>", "<Partys/>", Severity::error, nullptr},
    {"template.xml", R"(xmlns="urn:example:inspection:report"
)",
     "", Severity::error, nullptr},
    {"schema-types.xml", R"(<schematype id="contact_person_type">)",
     R"(<schematype id="Contact_person_type">)", Severity::error, nullptr},
    {"schema-types.xml", R"(<value id="line4"/>)", R"(<value id="line5"/>)", Severity::error,
     "line5"},
    {"schema-types.xml", R"(xmlns:cnt="urn:example:inspection:contact")",
     R"(xmlns:cnt="urn:example:contact")", Severity::error, ""},
    {"reference.xml", R"(<rpt:Title mandatory="true"/>)", R"(<rpt:Title mandatory="1"/>)",
     Severity::error, ""},
    {"reference.xml", R"(<rpt:Title mandatory="true"/>)", R"(<rpt:Title mandatroy="true"/>)",
     Severity::error, ""},
    {"reference.xml", R"(<rpt:Title mandatory="true"/>)", R"(<rpt:Titel mandatory="true"/>)",
     Severity::error, "reporttitle"},
    {"reference.xml", R"(questionIds="occupantname;buildingvacant")",
     R"(questionIds="occupantname;buildingvacnt")", Severity::error, "buildingvacnt"},
    {"reference.xml", R"(questionIds="occupantname;buildingvacant")",
     R"(questionIds="occupantname, buildingvacant")", Severity::error, nullptr},
    {"reference.xml", "<InspectionReport xmlns:rpt",
     R"(<InspectionReport xmlns="urn:example:inspection:report" xmlns:rpt)", Severity::error, ""},
    {"reference.xml", R"(<pbr:Period mandatory="false">)", R"(<pbr:Period mandatory="true">)",
     Severity::error, ""},
    {"questions.xml", R"(<question id="basement" type="check">)",
     R"(<question id="basement" type="select">)", Severity::error, "basement"},
    {"questions.xml", R"(<question id="storeys" type="text">)",
     R"(<question id="storeys" type="check">)", Severity::error, "storeys"},
    {"questions.xml", R"(<question id="street")", R"(<question id="stret")", Severity::error,
     "street"},
    {"questions.xml", R"(<question id="street")", R"(<question id="Street")", Severity::error,
     nullptr},
    {"questions.xml", "bld:Location/bld:Street</xpath>", "bld:Location/bld:Streat</xpath>",
     Severity::error, "street"},
    {"questions.xml", "<xpath>/InspectionReport/Header/rpt:Kind</xpath>",
     "<xpath>/rpt:InspectionReport/rpt:Header/rpt:Kind</xpath>", Severity::error, "inspectionkind"},
    {"questions.xml", "<xpath>/InspectionReport/Header/rpt:Kind</xpath>",
     "<xpath>/InspectionReport/Header/rpt:Urgency</xpath>", Severity::error, "inspectionkind"},
    {"questions.xml", "<xpath>/InspectionReport/Header/rpt:Kind</xpath>",
     "<xpath> /InspectionReport/Header/rpt:Kind</xpath>", Severity::error, "inspectionkind"},
    {"questions.xml", R"(<question id="defects" type="dynaTable">)",
     R"(<question id="defects" type="dynatable">)", Severity::error, "defects"},
    {"questions.xml", R"(<column id="severity">)", R"(<column id="severty">)", Severity::error,
     "severty"},
    {"questions.xml", "<path>pbr:Severity</path>", "<path>pbr:Severty</path>", Severity::error,
     "severity"},
    {"questions.xml", "<path>pbr:Severity</path>", "<path>pbr:Place</path>", Severity::error,
     "severity"},
    {"questions.xml", R"(maxLength="8")", R"(maxLength="eight")", Severity::warning, "housenumber"},
    {"questions.xml", R"(maxLength="8")", R"(maxlength="8")", Severity::warning, "housenumber"},
    {"questions.xml", "<questions>", R"(<questions xmlns="urn:x">)", Severity::error, ""},
    {"protocol-info.xml", R"(region="Nordmark")", R"(regoin="Nordmark")", Severity::error, nullptr},
};

/// A copy of the example's files that the check reads.
class Example {
 public:
  Example() {
    const std::filesystem::path example =
        std::filesystem::path(VARNEL_SOURCE_DIR) / "examples" / "inspection";
    std::filesystem::copy(example, directory_.path() / "inspection",
                          std::filesystem::copy_options::recursive);
    files = {.strTemplateXML = at("template.xml"),
             .strMsgObjectXML = at("object-mapper.xml"),
             .strSchemaTypeMapperXML = at("schema-types.xml"),
             .strHiddenFieldXML = at("hidden-fields.xml"),
             .strNamespaceXML = at("namespaces.xml"),
             .strQuestionsXmlPath = at("questions.xml"),
             .strReferenceXmlPath = at("reference.xml"),
             .strObjectList = at("object-list.xml"),
             .strProtocolInfo = at("protocol-info.xml"),
             .strSchemaUrl = "schema/inspection.xsd",
             .strSchemaUri = "urn:example:inspection:report",
             .strPageDirectory = at("pages")};
  }

  std::string at(const std::string& strName) const {
    return directory_.at("inspection/" + strName);
  }

  /// Makes a mistake in a text that stands once in a file. The line where the new text begins to
  /// differ from the old.
  std::size_t plant(const Plant& plant) const {
    std::string strText = textOfFile(at(plant.file));
    const std::string_view strFind = plant.find, strNew = plant.replacement;
    const std::size_t lngAt = strText.find(strFind);
    if (lngAt == std::string::npos || strText.find(strFind, lngAt + 1) != std::string::npos) {
      throw std::runtime_error("not exactly once: " + std::string(strFind));
    }
    const auto differ = std::mismatch(strFind.begin(), strFind.end(), strNew.begin(), strNew.end());
    const auto lngSame = static_cast<std::size_t>(differ.first - strFind.begin());
    strText.replace(lngAt, strFind.size(), strNew);
    directory_.file(std::string("inspection/") + plant.file, strText);
    const auto end = strText.begin() + static_cast<std::ptrdiff_t>(lngAt + lngSame);
    return 1 + static_cast<std::size_t>(std::count(strText.begin(), end, '\n'));
  }

  DeploymentFiles files;

 private:
  TemporaryDirectory directory_;
};

static_assert(std::size(kPlants) >= 40);

TEST(ExampleDeployment, HasNoFinding) {
  for (const Finding& finding : checkDeployment(Example().files)) {
    ADD_FAILURE() << finding.file << ":" << finding.line << " " << finding.code << " "
                  << finding.message;
  }
}

TEST(ExampleDeployment, HasEachPlantedMistakeFoundAtItsPlace) {
  for (const Plant& plant : kPlants) {
    SCOPED_TRACE(std::string(plant.file) + ": " + plant.replacement);
    const Example example;
    const std::size_t lngLine = example.plant(plant);
    const std::vector<Finding> findings = checkDeployment(example.files);
    const auto found = std::ranges::find_if(findings, [&](const Finding& finding) {
      return finding.severity == plant.severity && finding.file == example.at(plant.file) &&
             finding.line == lngLine && (!plant.object || finding.object == plant.object);
    });
    if (found == findings.end()) {
      std::string strOthers;
      for (const Finding& finding : findings) {
        strOthers += finding.code + " " + std::filesystem::path(finding.file).filename().string() +
                     ":" + std::to_string(finding.line) + " " + finding.object + "\n";
      }
      ADD_FAILURE() << "not found on line " << lngLine << ":\n" << strOthers;
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
