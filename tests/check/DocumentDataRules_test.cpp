#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfDocumentDataRules() {
  static const std::vector<Mistake> kMistakes = {
      {"docdata-incomplete",
       "no time",
       {{"object-mapper.xml", R"(    <docinfo id="attestationtime">
      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:time</node>
    </docinfo>
)",
         ""}},
       {{Severity::error, "docdata-incomplete", "object-mapper.xml", "<docdata>"}}},
      {"docdata-incomplete",
       "no date, which nothing needs",
       {{"object-mapper.xml", R"(    <docinfo id="attestationdate">
      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:day</node>
    </docinfo>
)",
         ""}},
       {}},
      {"unknown-docinfo",
       "a capital",
       {{"object-mapper.xml", R"(<docinfo id="attestationdate">)",
         R"(<docinfo id="attestationDate">)"}},
       {{Severity::error, "unknown-docinfo", "object-mapper.xml"}}},
      {"unknown-docinfo",
       "a capital of the one that must be there",
       {{"object-mapper.xml", R"(<docinfo id="attestationtime">)",
         R"(<docinfo id="attestationTime">)"}},
       {{Severity::error, "unknown-docinfo", "object-mapper.xml"}}},
      {"docdata-incomplete",
       "another id for the one that must be there",
       {{"object-mapper.xml", R"(<docinfo id="attestationtime">)", R"(<docinfo id="sent">)"}},
       {{Severity::error, "docdata-incomplete", "object-mapper.xml", "<docdata>"},
        {Severity::error, "unknown-docinfo", "object-mapper.xml"}}},
      {"unknown-docinfo",
       "a comment",
       {{"object-mapper.xml", R"(<docinfo id="attestationdate">)",
         R"(<!-- - --><docinfo id="attestationdate">)"}},
       {}},
      {"docinfo-names-nothing",
       "a slip of the target",
       {{"object-mapper.xml", "<node>m:day</node>", "<node>m:dai</node>"}},
       {{Severity::error, "docinfo-names-nothing", "object-mapper.xml"}}},
      {"docinfo-names-nothing",
       "a target further down",
       {{"object-mapper.xml", R"(      <parentxpath>/m:report/m:head</parentxpath>
      <node>m:day</node>)",
         R"(      <parentxpath>/m:report</parentxpath>
      <node>m:head/m:day</node>)"}},
       {}},
      {"protocol-name",
       "an attribute that is not there",
       {{"object-mapper.xml", R"(attribute="version")", R"(attribute="edition")"}},
       {{Severity::error, "protocol-name", "object-mapper.xml"}}},
      {"protocol-name",
       "a slip in the mapper",
       {{"object-mapper.xml", R"(attribute="version")", R"(attribute="verison")"}},
       {{Severity::error, "protocol-name", "object-mapper.xml"}}},
      {"protocol-name",
       "a slip in the protocol information",
       {{"protocol-info.xml", R"(version="2")", R"(verison="2")"}},
       {{Severity::error, "protocol-name", "protocol-info.xml"}}},
      {"protocol-name",
       "an attribute that is empty",
       {{"protocol-info.xml", R"(version="2")", R"(version="")"}},
       {}},
      {"docnodes-comment",
       "a comment among the rules",
       {{"object-mapper.xml", R"(    <docnodes>
)",
         R"(    <docnodes>
      <!-- rules -->
)"}},
       {{Severity::error, "docnodes-comment", "object-mapper.xml", "<!-- rules -->"}}},
      {"docnodes-comment",
       "a comment in a rule",
       {{"object-mapper.xml", R"(<insertbefore appendonnomatch="true">)",
         R"(<!-- - --><insertbefore appendonnomatch="true">)"}},
       {}},
      {"docnode-incomplete",
       "no node",
       {{"object-mapper.xml", R"(        <node>/m:report/m:head/m:title</node>
)",
         ""}},
       {{Severity::error, "docnode-incomplete", "object-mapper.xml", "<docnode>"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:title mandatory="false"/>)"}}},
      {"docnode-incomplete",
       "a rule of another name",
       {{"object-mapper.xml", R"(<docnode>
        <parentxpath>/m:report/m:end</parentxpath>
        <node>/m:report/m:head)",
         R"(<rule>
        <parentxpath>/m:report/m:end</parentxpath>
        <node>/m:report/m:head)"},
        {"object-mapper.xml", R"(</insertbefore>
      </docnode>)",
         R"(</insertbefore>
      </rule>)"}},
       {}},
      {"unknown-docnode-word",
       "a type with a capital",
       {{"object-mapper.xml", R"(<node type="m:owner">)", R"(<node type="m:Owner">)"}},
       {{Severity::error, "unknown-docnode-word", "object-mapper.xml"}}},
      {"unknown-docnode-word",
       "a step that is none",
       {{"object-mapper.xml", R"(action="copy")", R"(action="copi")"}},
       {{Severity::error, "unknown-docnode-word", "object-mapper.xml"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:line4 mandatory="true"/>
    </m:copy>)"}}},
      {"unknown-docnode-word",
       "words in capitals",
       {{"object-mapper.xml", R"(<action id="copyhcpdetailtype">)",
         R"(<action id="CopyHcpDetailType">)"}},
       {}},
      {"docnode-names-nothing",
       "a slip of a path",
       {{"object-mapper.xml", "<node>/m:report/m:people/m:owner</node>",
         "<node>/m:report/m:people/m:ower</node>"}},
       {{Severity::error, "docnode-names-nothing", "object-mapper.xml"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:owner mandatory="false">
      <m:name mandatory="true"/>)"}}},
      {"docnode-names-nothing",
       "a node that only an answer makes",
       {{"object-mapper.xml", "<node>/m:report/m:head/m:title</node>",
         "<node>/m:report/m:head/m:seen</node>"},
        {"reference.xml", R"(    <m:title mandatory="false"/>
    <m:office)",
         R"(    <m:seen mandatory="false"/>
    <m:office)"}},
       {}},
      {"append-no-boolean",
       "a word that is none",
       {{"object-mapper.xml", R"(appendonnomatch="true")", R"(appendonnomatch="yes")"}},
       {{Severity::error, "append-no-boolean", "object-mapper.xml"}}},
      {"append-no-boolean",
       "a number",
       {{"object-mapper.xml", R"(appendonnomatch="true")", R"(appendonnomatch="1")"}},
       {}},
      {"insertbefore-names-nothing",
       "a slip of a reference",
       {{"object-mapper.xml", "          <node>m:office</node>", "          <node>m:ofice</node>"}},
       {{Severity::error, "insertbefore-names-nothing", "object-mapper.xml"}}},
      {"insertbefore-names-nothing",
       "a reference that the template has not",
       {{"object-mapper.xml", "          <node>m:office</node>", "          <node>m:note</node>"}},
       {}},
      {"docnode-names-nothing",
       "a type that no selected node has",
       {{"object-mapper.xml", R"(<node type="m:address">)", R"(<node type="m:adress">)"}},
       {{Severity::error, "docnode-names-nothing", "object-mapper.xml"}}},
      {"docnode-names-nothing",
       "a type of another node that may be the last",
       {{"object-mapper.xml", R"(<node type="m:address">)", R"(<node type="m:hours">)"}},
       {}},
      {"docnode-names-nothing",
       "a place of a copy that no step creates",
       {{"object-mapper.xml", R"(under="m:copy")", R"(under="m:cpy")"}},
       {{Severity::error, "docnode-names-nothing", "object-mapper.xml"},
        {Severity::note, "reference-unknown", "reference.xml", R"(<m:line4 mandatory="true"/>
    </m:copy>)"}}},
  };
  return kMistakes;
}

namespace {

TEST(DocumentDataRules, FindEachMistakeAndNothingElse) {
  expectFindings(mistakesOfDocumentDataRules());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
