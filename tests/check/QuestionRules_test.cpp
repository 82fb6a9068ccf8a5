#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {

const std::vector<Mistake>& mistakesOfQuestionRules() {
  static const std::vector<Mistake> kMistakes = {
      {"question-without-object",
       "a question for nothing",
       {{"questions.xml", R"(<questions>
)",
         R"(<questions>
  <question id="colour"><xpath>/m:report/m:head/m:title</xpath></question>
)"}},
       {{Severity::error, "question-without-object", "questions.xml",
         R"(<question id="colour"><xpath>/m:report/m:head/m:title</xpath></question>)", "colour"}}},
      {"question-without-object",
       "a question for an answer that is not sent",
       {{"questions.xml", R"(<question id="until">)", R"(<question id="until" type="text">)"}},
       {}},
      {"object-without-question",
       "a slip of the id",
       {{"questions.xml", R"(<question id="seen")", R"(<question id="sen")"}},
       {{Severity::error, "question-without-object", "questions.xml", "", "sen"},
        {Severity::error, "object-without-question", "questions.xml", "", "seen"}}},
      {"object-without-question",
       "no question for an answer that is not sent",
       {{"object-mapper.xml", R"(    <node>m:seen</node>
)",
         R"(    <node>m:seen</node>
)"},
        {"object-mapper.xml", R"(<messageitem id="until" toschema="false"/>)",
         R"(<messageitem id="until" toschema="false"/>
  <messageitem id="colour" toschema="false"/>)"},
        {"object-list.xml",
         R"(<prtobjct id="title" objecttype="field" type="text" dynamic="false"/>)",
         R"(<prtobjct id="title" objecttype="field" type="text" dynamic="false"/>
  <prtobjct id="colour" objecttype="field" type="text" dynamic="false"/>)"}},
       {}},
      {"question-type",
       "a table in lower case",
       {{"questions.xml", R"(<question id="faults" type="dynaTable">)",
         R"(<question id="faults" type="dynatable">)"}},
       {{Severity::error, "question-type", "questions.xml", "", "faults"}}},
      {"question-type",
       "a field with a type of its own",
       {{"questions.xml", R"(<question id="seen" type="date">)",
         R"(<question id="seen" type="anything">)"}},
       {}},
      {"question-without-path",
       "no path",
       {{"questions.xml", R"(<question id="seen" type="date">
    <xpath>/m:report/m:head/m:seen</xpath>)",
         R"(<question id="seen" type="date">)"}},
       {{Severity::error, "question-without-path", "questions.xml", "", "seen"}}},
      {"question-without-path",
       "a path in CDATA",
       {{"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
         "<xpath><![CDATA[/m:report/m:head/m:seen]]></xpath>"}},
       {}},
      {"question-path",
       "a slip in the path",
       {{"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
         "<xpath>/m:report/m:head/m:sen</xpath>"}},
       {{Severity::error, "question-path", "questions.xml", "", "seen"}}},
      {"question-path",
       "a blank before it",
       {{"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
         "<xpath> /m:report/m:head/m:seen</xpath>"}},
       {{Severity::error, "question-path", "questions.xml", "", "seen"}}},
      {"question-path",
       "the path of another",
       {{"questions.xml", "<xpath>/m:report/m:head/m:seen</xpath>",
         "<xpath>/m:report/m:head/m:title</xpath>"}},
       {{Severity::error, "question-path", "questions.xml", "", "seen"}}},
      {"question-path",
       "the second place of an answer",
       {{"questions.xml", "<xpath>/m:report/m:head/m:title</xpath>",
         "<xpath>/m:report/m:end/m:again</xpath>"}},
       {}},
      {"question-columns",
       "a slip of a column",
       {{"questions.xml", R"(<column id="damp"/>)", R"(<column id="dmap"/>)"}},
       {{Severity::error, "question-columns", "questions.xml",
         R"(<question id="rooms" type="dynaTable">)", "damp"},
        {Severity::error, "question-columns", "questions.xml", "", "dmap"}}},
      {"question-columns",
       "columns in another order",
       {{"questions.xml", R"(<column id="state" maxLength="10"/>
    <column id="damp"/>)",
         R"(<column id="damp"/>
    <column id="state" maxLength="10"/>)"}},
       {}},
      {"column-path",
       "a slip in the path",
       {{"questions.xml", "<path>m:found</path>", "<path>m:foud</path>"}},
       {{Severity::error, "column-path", "questions.xml", "", "found"}}},
      {"column-path",
       "the path of another column",
       {{"questions.xml", "<path>m:found</path>", "<path>m:mended</path>"}},
       {{Severity::error, "column-path", "questions.xml", "", "found"}}},
      {"column-path",
       "no path of a column of row texts",
       {{"questions.xml", R"(<column id="damp"/>)", R"(<column id="damp" maxLength="3"/>)"}},
       {}},
      {"length-no-number",
       "a word",
       {{"questions.xml", R"(maxLength="80")", R"(maxLength="eighty")"}},
       {{Severity::warning, "length-no-number", "questions.xml", "", "fault"}}},
      {"length-no-number",
       "a limit of nothing",
       {{"questions.xml", R"(minLength="3")", R"(minLength="0")"}},
       {}},
  };
  return kMistakes;
}

namespace {

TEST(QuestionRules, FindEachMistakeAndNothingElse) { expectFindings(mistakesOfQuestionRules()); }

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
