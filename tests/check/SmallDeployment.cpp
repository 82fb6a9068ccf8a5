#include "check/SmallDeployment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "check/Rule.h"
#include "check/RuleTables.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kObjectList = R"(<?xml version="1.0" encoding="UTF-8"?>
<prtobjcts>
  <prtobjct id="title" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="seen" objecttype="field" type="date" dynamic="false" letterlabel="Seen on"/>
  <prtobjct id="urgent" objecttype="field" type="check" dynamic="false" checkedvalue="yes"/>
  <prtobjct id="phone1" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="phone2" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="owner" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="role" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="address" objecttype="field" type="textarea" dynamic="false"/>
  <prtobjct id="from" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="until" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="guest1" objecttype="field" type="text" dynamic="true" group="guests"/>
  <prtobjct id="guest2" objecttype="field" type="text" dynamic="true" group="guests"/>
  <prtobjct id="rooms" objecttype="table" type="table" dynamic="false"
            tablelabel="Rooms" fieldlabel="Rooms">
    <row id="1" rowlabel="Hall"/>
    <row id="2" rowlabel="Attic"/>
    <column id="state" columnlabel="State"/>
    <column id="damp" columnlabel="Damp"/>
  </prtobjct>
  <prtobjct id="faults" objecttype="table" type="dynatable" dynamic="false"
            tablelabel="Faults" fieldlabel="Faults">
    <column id="fault" columnlabel="Fault"/>
    <column id="found" columnlabel="Found" columntype="date"/>
    <column id="mended" columnlabel="Mended" columntype="date"/>
    <column id="days" columnlabel="Days" calculate="true" firstcolumn="found"
            secondcolumn="mended" datatype="date" timedimabbr="d"/>
    <column id="timedimension" columnlabel="Unit" autovalue="days"/>
    <column id="basis" columnlabel="Basis" autovalue="Section 12"/>
  </prtobjct>
  <prtobjct id="meters" objecttype="table" type="dynatable" dynamic="true" group="readings"
            tablelabel="Meters" fieldlabel="Meters">
    <column id="meter" columnlabel="Meter"/>
  </prtobjct>
  <prtobjct id="note" objecttype="field" type="textarea" dynamic="false"/>
  <hdnflds/>
</prtobjcts>
)";

constexpr const char* kHiddenFields = R"(<?xml version="1.0" encoding="UTF-8"?>
<hiddenfields>
  <hiddenfield id="office" output="office" toschema="true"/>
  <hiddenfield id="page_lang" output="language" toschema="false"/>
</hiddenfields>
)";

constexpr const char* kNamespaces = R"(<?xml version="1.0" encoding="UTF-8"?>
<namespaces>
  <namespace id="m" name="urn:example:m" ref="urn:example:m"/>
  <namespace id="pbr" name="urn:example:pbr" ref="urn:example:pbr"/>
</namespaces>
)";

constexpr const char* kTemplate = R"(<?xml version="1.0" encoding="UTF-8"?>
<m:report xmlns:m="urn:example:m" xmlns:pbr="urn:example:pbr">
  <m:head>
    <m:form/>
    <m:day/>
    <m:time/>
  </m:head>
  <m:people>
    <m:guest/>
    <m:guest/>
  </m:people>
  <m:rooms/>
  <m:faults/>
  <m:meters/>
  <m:end/>
</m:report>
)";

constexpr const char* kObjectMapper = R"(<?xml version="1.0" encoding="UTF-8"?>
<message>
  <!-- The head. -->
  <messageitem id="title" toschema="true">
    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:title</node>
    <extrapath>/m:report/m:end</extrapath>
    <extranode>m:again</extranode>
  </messageitem>
  <messageitem id="seen" toschema="true">
    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:seen</node>
  </messageitem>
  <messageitem id="urgent" toschema="true">
    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:urgent</node>
  </messageitem>
  <messageitem id="phone1" toschema="true">
    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:contact/m:phone</node>
  </messageitem>
  <messageitem id="phone2" toschema="true" absent="phone1">
    <parentxpath>/m:report/m:head</parentxpath>
    <node>m:contact/m:phone</node>
  </messageitem>
  <!-- The people. -->
  <messageitem id="owner" toschema="true">
    <parentxpath>/m:report/m:people</parentxpath>
    <node>m:owner</node>
    <action id="person_type">
      <parameter id="name" formvalue="true"/>
      <parameter id="role" messageitem="role"/>
      <parameter id="caption" formlabel="true"/>
      <parameter id="channel">on site</parameter>
    </action>
  </messageitem>
  <messageitem id="role" toschema="false"/>
  <messageitem id="address" toschema="true">
    <parentxpath>/m:report/m:people</parentxpath>
    <node>m:address</node>
    <action id="structured_address_type"/>
  </messageitem>
  <messageitem id="from" toschema="true">
    <parentxpath>/m:report/m:people</parentxpath>
    <node>m:hours</node>
    <action id="addinfotonode" separator=" - ">
      <parameter formvalue="true"/>
      <parameter item="until"/>
    </action>
  </messageitem>
  <messageitem id="until" toschema="false"/>
  <messageitem id="guests" type="group" toschema="true">
    <parentxpath>/m:report/m:people/m:guest[not(m:name/text())]</parentxpath>
    <node>m:name</node>
  </messageitem>
  <!-- The tables. -->
  <messageitem id="rooms" type="table" toschema="true">
    <parentxpath>/m:report/m:rooms</parentxpath>
    <node>m:room</node>
    <action id="rowinfotovalue"/>
  </messageitem>
  <messageitem id="faults" type="dynatable" toschema="true">
    <parentxpath>/m:report/m:faults</parentxpath>
    <node>m:fault</node>
    <action id="fault_row_type"/>
  </messageitem>
  <messageitem id="readings" type="tablegroup" toschema="true">
    <parentxpath>/m:report/m:meters</parentxpath>
    <node>m:reading</node>
    <action id="reading_row_type"/>
  </messageitem>
  <messageitem id="note" toschema="true" checkexists="true">
    <parentxpath>/m:report/m:end</parentxpath>
    <node item="title">m:note</node>
  </messageitem>
  <messageitem id="office" toschema="true">
    <parentxpath>/m:report/m:end</parentxpath>
    <node>m:office</node>
  </messageitem>
  <docdata>
    <docinfo id="protocolname">
      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:form</node>
      <action id="buildprotocolname">
        <parameter id="protname" attribute="name"/>
        <parameter id="protregion" attribute="region"/>
        <parameter id="protversion" attribute="version"/>
      </action>
    </docinfo>
    <docinfo id="attestationdate">
      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:day</node>
    </docinfo>
    <docinfo id="attestationtime">
      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:time</node>
    </docinfo>
    <docnodes>
      <docnode>
        <parentxpath>/m:report/m:end</parentxpath>
        <node>/m:report/m:head/m:title</node>
        <insertbefore appendonnomatch="true">
          <node>m:office</node>
        </insertbefore>
      </docnode>
      <docnode>
        <parentxpath>/m:report/m:end</parentxpath>
        <node>/m:report/m:people/*[last()]</node>
        <action id="checknodetype">
          <node type="m:owner">
            <action id="copyhcpdetailtype">
              <node>/m:report/m:people/m:owner</node>
            </action>
          </node>
          <node type="m:address">
            <action id="makehcpdetailtype">
              <node>/m:report/m:people/m:address</node>
              <parameter action="create" under="parent">m:copy</parameter>
              <parameter action="copy" under="m:copy">m:line4</parameter>
            </action>
          </node>
        </action>
      </docnode>
    </docnodes>
  </docdata>
</message>
)";

constexpr const char* kSchemaTypes = R"(<?xml version="1.0" encoding="UTF-8"?>
<SchemaTypeMapperDocument xmlns:m="urn:example:m" xmlns:pbr="urn:example:pbr">
  <schematypes>
    <schematype id="person_type">
      <m:name><value id="name"/></m:name>
      <m:role><value id="role"/></m:role>
      <m:caption><value id="caption"/></m:caption>
      <m:channel><value id="channel"/></m:channel>
    </schematype>
    <schematype id="structured_address_type">
      <m:line1><value id="line1"/></m:line1>
      <m:line2><value id="line2"/></m:line2>
      <m:line3><value id="line3"/></m:line3>
      <m:line4><value id="line4"/></m:line4>
    </schematype>
    <schematype id="fault_row_type">
      <m:what><value id="fault"/></m:what>
      <m:found><value id="found"/></m:found>
      <m:mended><value id="mended"/></m:mended>
      <m:length>
        <m:number><value id="days"/></m:number>
        <m:unit><value id="timedimension"/></m:unit>
      </m:length>
      <pbr:AdditionalInfo/>
    </schematype>
    <schematype id="reading_row_type">
      <m:meter><value id="meter"/></m:meter>
    </schematype>
  </schematypes>
</SchemaTypeMapperDocument>
)";

constexpr const char* kReference = R"(<?xml version="1.0" encoding="UTF-8"?>
<m:report xmlns:m="urn:example:m" xmlns:pbr="urn:example:pbr" mandatory="true">
  <m:head mandatory="true">
    <m:form mandatory="true"/>
    <m:day mandatory="true"/>
    <m:time mandatory="true"/>
    <m:title mandatory="true"/>
    <m:seen mandatory="false"/>
    <m:urgent mandatory="false"/>
    <m:contact mandatory="false">
      <m:phone mandatory="true" questionIds="phone1;phone2"/>
    </m:contact>
  </m:head>
  <m:people mandatory="false">
    <m:guest mandatory="false">
      <m:name mandatory="false"/>
    </m:guest>
    <m:owner mandatory="false">
      <m:name mandatory="true" choice="true"/>
      <m:role mandatory="false"/>
      <m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
    <m:address mandatory="false">
      <m:line1 mandatory="false"/>
      <m:line2 mandatory="false"/>
      <m:line3 mandatory="false"/>
      <m:line4 mandatory="true"/>
    </m:address>
    <m:hours mandatory="false"/>
  </m:people>
  <m:rooms mandatory="false">
    <m:room mandatory="false"/>
  </m:rooms>
  <m:faults mandatory="false">
    <m:fault mandatory="false">
      <m:what mandatory="true"/>
      <m:found mandatory="false"/>
      <m:mended mandatory="false"/>
      <m:length mandatory="false">
        <m:number mandatory="true"/>
        <m:unit mandatory="true"/>
      </m:length>
      <pbr:AdditionalInfo mandatory="false"/>
    </m:fault>
  </m:faults>
  <m:meters mandatory="false">
    <m:reading mandatory="false">
      <m:meter mandatory="true"/>
    </m:reading>
  </m:meters>
  <m:end mandatory="true">
    <m:again mandatory="false"/>
    <m:note mandatory="false"/>
    <m:title mandatory="false"/>
    <m:office mandatory="true"/>
    <m:copy mandatory="false">
      <m:line4 mandatory="true"/>
    </m:copy>
    <m:owner mandatory="false">
      <m:name mandatory="true"/>
      <m:role mandatory="false"/>
      <m:caption mandatory="false"/>
      <m:channel mandatory="false"/>
    </m:owner>
  </m:end>
</m:report>
)";

constexpr const char* kQuestions = R"(<?xml version="1.0" encoding="UTF-8"?>
<questions>
  <question id="title" maxLength="60" minLength="2">
    <xpath>/m:report/m:head/m:title</xpath>
  </question>
  <question id="seen" type="date">
    <xpath>/m:report/m:head/m:seen</xpath>
  </question>
  <question id="urgent" type="check">
    <xpath>/m:report/m:head/m:urgent</xpath>
  </question>
  <question id="phone1">
    <xpath>/m:report/m:head/m:contact/m:phone</xpath>
  </question>
  <question id="phone2">
    <xpath>/m:report/m:head/m:contact/m:phone</xpath>
  </question>
  <question id="owner">
    <xpath>/m:report/m:people/m:owner/m:name</xpath>
  </question>
  <question id="role">
    <xpath>/m:report/m:people/m:owner/m:role</xpath>
  </question>
  <question id="address" maxLength="200">
    <xpath>/m:report/m:people/m:address</xpath>
  </question>
  <question id="from">
    <xpath>/m:report/m:people/m:hours</xpath>
  </question>
  <question id="until">
    <xpath>/m:report/m:people/m:hours</xpath>
  </question>
  <question id="guest1">
    <xpath>/m:report/m:people/m:guest/m:name</xpath>
  </question>
  <question id="guest2">
    <xpath>/m:report/m:people/m:guest/m:name</xpath>
  </question>
  <question id="rooms" type="dynaTable">
    <xpath>/m:report/m:rooms/m:room</xpath>
    <column id="state" maxLength="10"/>
    <column id="damp"/>
  </question>
  <question id="faults" type="dynaTable">
    <xpath>/m:report/m:faults/m:fault</xpath>
    <column id="fault" maxLength="80" minLength="3">
      <path>m:what</path>
    </column>
    <column id="found">
      <path>m:found</path>
    </column>
    <column id="mended">
      <path>m:mended</path>
    </column>
    <column id="days">
      <path>m:length/m:number</path>
    </column>
    <column id="timedimension">
      <path>m:length/m:unit</path>
    </column>
    <column id="basis">
      <path>pbr:AdditionalInfo</path>
    </column>
  </question>
  <question id="meters" type="dynaTable">
    <xpath>/m:report/m:meters/m:reading</xpath>
    <column id="meter">
      <path>m:meter</path>
    </column>
  </question>
  <question id="note">
    <xpath>/m:report/m:end/m:note</xpath>
  </question>
  <question id="office" type="hidden">
    <xpath>/m:report/m:end/m:office</xpath>
  </question>
</questions>
)";

constexpr const char* kProtocolInfo = R"(<?xml version="1.0" encoding="UTF-8"?>
<protocol name="Fault report" region="North" version="2"/>
)";

std::size_t lineAt(std::string_view strText, std::size_t lngAt) {
  const std::string_view strBefore = strText.substr(0, lngAt);
  return 1 + static_cast<std::size_t>(std::count(strBefore.begin(), strBefore.end(), '\n'));
}

}  // namespace

std::string summary(const Finding& finding) {
  return std::string(severityName(finding.severity)) + " " + finding.code + " " + finding.file +
         ":" + std::to_string(finding.line) + " " + finding.object;
}

std::vector<std::string> summaries(const std::vector<Finding>& findings) {
  std::vector<std::string> texts;
  for (const Finding& finding : findings) texts.push_back(summary(finding));
  std::sort(texts.begin(), texts.end());
  return texts;
}

SmallDeployment::SmallDeployment() {
  const struct {
    std::string DeploymentFiles::*name;
    const char *file, *text;
  } rows[] = {
      {&DeploymentFiles::strObjectList, "object-list.xml", kObjectList},
      {&DeploymentFiles::strHiddenFieldXML, "hidden-fields.xml", kHiddenFields},
      {&DeploymentFiles::strNamespaceXML, "namespaces.xml", kNamespaces},
      {&DeploymentFiles::strTemplateXML, "template.xml", kTemplate},
      {&DeploymentFiles::strMsgObjectXML, "object-mapper.xml", kObjectMapper},
      {&DeploymentFiles::strSchemaTypeMapperXML, "schema-types.xml", kSchemaTypes},
      {&DeploymentFiles::strReferenceXmlPath, "reference.xml", kReference},
      {&DeploymentFiles::strQuestionsXmlPath, "questions.xml", kQuestions},
      {&DeploymentFiles::strProtocolInfo, "protocol-info.xml", kProtocolInfo},
  };
  for (const auto& row : rows) {
    files.*row.name = directory_.file(row.file, row.text);
  }
}

std::size_t SmallDeployment::replace(std::string_view strFile, std::string_view strFind,
                                     std::string_view strReplacement) const {
  std::string strText = text(strFile);
  const std::size_t lngAt = strText.find(strFind);
  if (lngAt == std::string::npos || strText.find(strFind, lngAt + 1) != std::string::npos) {
    throw std::runtime_error("not exactly once in " + std::string(strFile) + ": " +
                             std::string(strFind));
  }
  strText.replace(lngAt, strFind.size(), strReplacement);
  write(strFile, strText);
  return lineAt(strText, lngAt);
}

std::vector<Finding> SmallDeployment::check() const {
  std::vector<Finding> findings = checkDeployment(files);
  for (Finding& finding : findings) {
    finding.file = std::filesystem::path(finding.file).filename().string();
  }
  return findings;
}

namespace {

/// The summaries of what is expected, where the mistake was made on this line.
std::vector<std::string> expectedIn(const SmallDeployment& deployment,
                                    const std::vector<Expected>& rows, std::size_t lngChanged) {
  std::vector<Finding> expected;
  for (const Expected& row : rows) {
    std::size_t lngLine = lngChanged;
    if (!row.at.empty()) {
      const std::string strText = deployment.text(row.file);
      const std::size_t lngAt = strText.find(row.at);
      if (lngAt == std::string::npos) throw std::runtime_error("not there: " + row.at);
      lngLine = lineAt(strText, lngAt);
    }
    expected.push_back({.severity = row.severity,
                        .code = row.code,
                        .file = row.file,
                        .line = lngLine,
                        .object = row.object,
                        .message = {},
                        .hint = {}});
  }
  return summaries(expected);
}

}  // namespace

void expectFindings(const std::vector<Mistake>& mistakes) {
  for (const Mistake& mistake : mistakes) {
    SCOPED_TRACE(std::string(mistake.code) + ": " + mistake.says);
    const SmallDeployment deployment;
    std::size_t lngLine = 0;
    for (const Replacement& one : mistake.replacements) {
      const std::size_t lngChanged = deployment.replace(one.file, one.find, one.text);
      if (lngLine == 0) lngLine = lngChanged;
    }
    const std::vector<std::string> expected = expectedIn(deployment, mistake.findings, lngLine);
    const std::vector<Finding> found = deployment.check();
    EXPECT_EQ(summaries(found), expected);
    for (const Finding& finding : found) {
      EXPECT_FALSE(finding.message.empty() || finding.hint.empty()) << summary(finding);
    }
  }
}

std::vector<std::string> foundBesideSchema(const SmallDeployment& deployment) {
  std::vector<Finding> findings = deployment.check();
  std::erase_if(findings, [](const Finding& finding) {
    return std::ranges::none_of(schemaRules(),
                                [&](const Rule& rule) { return rule.strCode == finding.code; });
  });
  for (const Finding& finding : findings) {
    EXPECT_FALSE(finding.message.empty() || finding.hint.empty()) << summary(finding);
  }
  return summaries(findings);
}

void expectBesideSchema(const std::vector<SchemaMistake>& mistakes) {
  for (const SchemaMistake& mistake : mistakes) {
    SCOPED_TRACE(mistake.says);
    SmallDeployment deployment;
    addSchema(deployment);
    const Replacement& one = mistake.replacement;
    const std::size_t lngLine = deployment.replace(one.file, one.find, one.text);
    EXPECT_EQ(foundBesideSchema(deployment), expectedIn(deployment, mistake.findings, lngLine));
  }
}

}  // namespace Varnel_Tolv_XML_Creation::test
