#include "host/PageModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// A form whose questions a to j are elements of a message `m`; j is a table.
class PageModelTest : public ::testing::Test {
 protected:
  PageModelTest() {
    write("m.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"><xs:element name="m">
      <xs:complexType><xs:sequence>
        <xs:element name="a"><xs:simpleType><xs:restriction base="xs:string">
          <xs:maxLength value="40"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="b"><xs:simpleType><xs:restriction base="xs:string">
          <xs:minLength value="5"/><xs:maxLength value="60"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="c"><xs:simpleType><xs:restriction base="xs:string">
          <xs:length value="4"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="d"><xs:simpleType><xs:restriction base="xs:string">
          <xs:minLength value="3"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="e"><xs:simpleType><xs:restriction base="xs:decimal">
          <xs:minInclusive value="-50"/><xs:maxInclusive value="50"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="f" type="xs:positiveInteger"/>
        <xs:element name="g" type="xs:int"/>
        <xs:element name="h" type="xs:date"/>
        <xs:element name="i"><xs:simpleType><xs:restriction base="xs:string">
          <xs:maxLength value="9"/><xs:enumeration value="yes"/></xs:restriction></xs:simpleType></xs:element>
        <xs:element name="j"><xs:complexType><xs:sequence>
          <xs:element name="k"><xs:simpleType><xs:restriction base="xs:string">
            <xs:minLength value="1"/><xs:maxLength value="1"/></xs:restriction></xs:simpleType></xs:element>
          <xs:element name="l" type="xs:unsignedByte"/>
        </xs:sequence></xs:complexType></xs:element>
      </xs:sequence></xs:complexType></xs:element></xs:schema>)");
    std::string strList = "<l>";
    std::string strQuestions = "<q>";
    for (const char question : std::string("abcdefghi")) {
      const std::string strId(1, question);
      strList += "<prtobjct id='" + strId + "' objecttype='field'/>";
      strQuestions += "<question id='" + strId + "'><xpath>/m/" + strId + "</xpath></question>";
    }
    write("list.xml", strList +
                          "<prtobjct id='j' objecttype='table'><column id='k'/>"
                          "<column id='l'/><column id='n' calculate='true'/>"
                          "<column id='o' calculate='True'/></prtobjct></l>");
    write("questions.xml",
          strQuestions +
              "<question id='j'><xpath>/m/j</xpath><column id='k'><path>k</path></column>"
              "<column id='l'><path>l</path></column></question></q>");
    options_.objectList = directory_.at("list.xml");
    options_.strQuestionsXmlPath = directory_.at("questions.xml");
    options_.pageDirectory = directory_.at("pages");
    options_.strSchemaUrl = "m.xsd";
  }

  void write(const char* name, const std::string& strText) const {
    std::ofstream(directory_.at(name)) << strText;
  }
  PageModel page() const { return readPageModel(options_, directory_.at("page.xml")); }

  /// Of a question, or of a column of the table.
  static Input input(const PageModel& page, const std::string& strId) {
    for (const Section& section : page.sections) {
      for (const Question& question : section.questions) {
        if (question.input.strId == strId) return question.input;
        const auto column = std::ranges::find(question.columns, strId, &Input::strId);
        if (column != question.columns.end()) return *column;
      }
    }
    return {};
  }

  TemporaryDirectory directory_;
  Options options_;
};

TEST_F(PageModelTest, TellsTheLimitsOfTheSchema) {
  const PageModel model = page();
  const struct {
    const char *id, *hint;
  } cases[] = {
      {"a", "at most 40 characters"},
      {"b", "5 to 60 characters"},
      {"c", "exactly 4 characters"},
      {"d", "at least 3 characters"},
      {"e", "-50 to 50"},
      {"f", "at least 1"},
      {"g", ""},  // nobody set the bounds of this type
      {"h", "day.month.year, as 31.10.2026"},
      {"i", ""},  // a choice
      {"k", "exactly 1 character"},
      {"l", "0 to 255"},
      {"n", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_EQ(input(model, c.id).strHint, c.hint);
  }
}

TEST_F(PageModelTest, TellsWhatThePageSaysInstead) {
  write("page.xml", R"(<page><section><question ref="a" hint="in capitals"/>
      <question ref="b" maxlength="7"/><question ref="c" maxlength="3"/>
      <question ref="d" maxlength="3"/>
      <question ref="i" kind="text"/></section></page>)");
  const PageModel model = page();
  EXPECT_EQ(input(model, "a").strHint, "in capitals");
  EXPECT_EQ(input(model, "b").strHint, "5 to 7 characters");
  EXPECT_EQ(input(model, "c").strHint, "at least 4 characters");  // the schema decides
  EXPECT_EQ(input(model, "d").strHint, "exactly 3 characters");
  EXPECT_EQ(input(model, "i").strHint, "at most 9 characters");
}

TEST_F(PageModelTest, AsksForACellThatTheRunDoesNotCompute) {
  const PageModel model = page();
  EXPECT_TRUE(input(model, "n").blnOutput);
  EXPECT_FALSE(input(model, "o").blnOutput);
  EXPECT_FALSE(input(model, "k").blnOutput);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
