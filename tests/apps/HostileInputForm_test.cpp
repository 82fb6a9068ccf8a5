#include <gmock/gmock.h>

#include "HostileInput.h"

// The one document that comes from anybody: the submitted form.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class HostileInputForm : public HostileInput {
 protected:
  Outcome submitForm(std::string_view strForm) const {
    write("hostile.form", strForm);
    return submit({"--form", "hostile.form"});
  }

  /// What the message holds as the name after this form; the born date is added to it.
  std::string nameIn(std::string_view strForm) const {
    const Outcome outcome = submitForm(std::string(strForm) + "&born=5.3.2026");
    EXPECT_LE(outcome.run.status, 1) << outcome.run.err;
    const Document objSend = parsed(outcome.strSend);
    objSend.setSelectionNamespaces("xmlns:c='urn:card'");
    return objSend.selectSingleNode("/c:card/c:name").text();
  }

  /// Replaces the object list by one with this table of two columns.
  void deployTable(const std::string& strTable) const {
    write("objects.xml",
          "<?xml version=\"1.0\"?><prtobjcts>" + strTable + "<hdnflds/></prtobjcts>");
  }
  Outcome parkTable(const std::string& strRowCount, const std::string& strCells = "") const {
    write("hostile.form", "t_rowCount=" + strRowCount + strCells);
    return submit({"--submit=false", "--form", "hostile.form"});
  }
};

constexpr const char* kGrownTable =
    "<prtobjct id=\"t\" objecttype=\"table\" type=\"dynatable\"><column id=\"a\"/>"
    "<column id=\"b\"/></prtobjct>";
constexpr const char* kFixedTable =
    "<prtobjct id=\"t\" objecttype=\"table\" type=\"table\"><row id=\"1\"/><row id=\"2\"/>"
    "<column id=\"a\"/></prtobjct>";

TEST_F(HostileInputForm, WithBrokenEscapesIsTakenAsItStands) {
  const struct {
    const char *says, *form, *name;
  } cases[] = {
      {"a lone %", "name=%", "%"},
      {"no digits", "name=%zz", "%zz"},
      {"one digit", "name=%4", "%4"},
      {"a sign for a digit", "name=%+1", "% 1"},
      {"an escaped escape", "name=%2541", "%41"},
      {"the form of a script", "name=%u0041", "%u0041"},
      {"an overlong <", "name=%C0%BC", "\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"half a surrogate pair", "name=%ED%A0%80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"a character cut short", "name=%E2%82", "\xEF\xBF\xBD"},
      {"beyond the last character", "name=%F4%90%80%80",
       "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
      {"mark-up", "name=%3C%21DOCTYPE+d%3E%26e%3B", "<!DOCTYPE d>&e;"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(nameIn(c.form), c.name);
  }
}

TEST_F(HostileInputForm, CannotPutAnEntityIntoTheMessage) {
  EXPECT_EQ(
      nameIn("name=%5D%3E%3C!ENTITY+e+SYSTEM+%22file://" + secret("secret.txt") + "%22%3E%26e;"),
      "]><!ENTITY e SYSTEM \"file://" + secret("secret.txt") + "\">&e;");
}

TEST_F(HostileInputForm, WithACharacterThatXmlDoesNotAllowIsRefused) {
  for (const char* form : {"name=%00", "name=a%00b", "name=%01", "name=%EF%BF%BE", "name=%1F"}) {
    SCOPED_TRACE(form);
    const Outcome outcome = submitForm(form);
    EXPECT_EQ(outcome.run.status, 1);
    EXPECT_THAT(
        outcome.run.out,
        StartsWith("{\n  \"success\": false,\n  \"errorCode\": -2147467259,\n"
                   "  \"errorName\": null,\n  \"errorDetail\": \"ParkProtField - An invalid "
                   "character was found in text content.\",\n"));
  }
}

TEST_F(HostileInputForm, MayHaveAMillionFields) {
  constexpr int kFields = kSanitized ? 100'000 : 1'000'000;
  std::string strForm = read("card.form");
  for (int lngField = 0; lngField < kFields; ++lngField) {
    strForm += "&f" + std::to_string(lngField) + "=1";
  }
  expectSent(submitForm(strForm));
}

TEST_F(HostileInputForm, MayRepeatAFieldAHundredThousandTimes) {
  constexpr std::size_t kTimes = 100'000;
  std::string strForm = "name=x";
  for (std::size_t lngTime = 1; lngTime < kTimes; ++lngTime) strForm += "&name=x";
  EXPECT_EQ(nameIn(strForm).size(), 3 * kTimes - 2);  // joined by ", "
}

TEST_F(HostileInputForm, MayHaveNamesAndValuesOfAMegabyte) {
  const std::string strLong(1'000'000, 'n');
  expectSent(submitForm(strLong + "=1&" + read("card.form") + "&=&=1&" + strLong + "&&&"));
  EXPECT_EQ(nameIn("name=" + strLong), strLong);
}

TEST_F(HostileInputForm, MakesNoRowsOfARowCount) {
  deployTable(kGrownTable);
  for (const char* count : {"2147483647", "1e9", "2,147,483,647", "1e0009", "+999999999.5"}) {
    SCOPED_TRACE(count);
    const Outcome outcome = parkTable(count, "&t___a_1=x&t___b_2147483647=y");
    EXPECT_EQ(outcome.run.status, 0) << outcome.run.out;
    const Document objPark = parsed(read("park.out"));
    EXPECT_LE(objPark.selectNodes("//row")->length(), 2U);
    EXPECT_TRUE(objPark.selectSingleNode("//row[@id='1']/column[@id='a'][@value='x']"));
  }
  EXPECT_TRUE(parsed(read("park.out")).selectSingleNode("//column[@id='b']"));
}

TEST_F(HostileInputForm, LeavesTheTableAloneWithARowCountBelowOne) {
  deployTable(kGrownTable);
  for (const char* count : {"0", "-1", "-0", "-2147483648", "0.5", "-1e9", "1e-400"}) {
    SCOPED_TRACE(count);
    const Outcome outcome = parkTable(count, "&t___a_1=x");
    EXPECT_EQ(outcome.run.status, 0) << outcome.run.out;
    EXPECT_THAT(read("park.out"), HasSubstr(kGrownTable));
  }
}

TEST_F(HostileInputForm, IsRefusedWithARowCountThatIsNone) {
  deployTable(kGrownTable);
  for (const char* count :
       {"", "x", "1x", "0x10", "inf", "nan", "1%00", "1;2", "%D9%A1", "--1", "1&t_rowCount=2"}) {
    SCOPED_TRACE(count);
    const Outcome outcome = parkTable(count, "&t___a_1=x");
    EXPECT_EQ(outcome.run.status, 1) << outcome.run.out;
    EXPECT_THAT(outcome.run.out,
                HasSubstr("\"errorName\": \"SVC_RET_XML_CREATION_PROT_TBL_ROWCOUNT_INVALID\",\n"
                          "  \"errorDetail\": \"The object list is missing\",\n"
                          "  \"userMessage\": \"An error occurred because object list is "
                          "missing\""));
  }
}

TEST_F(HostileInputForm, IsRefusedWithARowCountBeyondAllNumbers) {
  deployTable(kGrownTable);
  for (const char* count : {"2147483648", "-2147483649", "1e10", "99999999999999999999", "1e400"}) {
    SCOPED_TRACE(count);
    const Outcome outcome = parkTable(count);
    EXPECT_EQ(outcome.run.status, 1) << outcome.run.out;
    EXPECT_THAT(outcome.run.out, HasSubstr("\"errorCode\": 6,\n  \"errorName\": null,\n"
                                           "  \"errorDetail\": \"ParkProtTable - Overflow\",\n"
                                           "  \"userMessage\": \"Overflow\""));
  }
}

TEST_F(HostileInputForm, IsRefusedWithMoreRowsThanAFixedTableHas) {
  deployTable(kFixedTable);
  for (const char* count : {"3", "2147483647", "1e9"}) {
    SCOPED_TRACE(count);
    const Outcome outcome = parkTable(count);
    EXPECT_EQ(outcome.run.status, 1) << outcome.run.out;
    EXPECT_THAT(outcome.run.out,
                HasSubstr("\"errorName\": \"SVC_RET_XML_CREATION_PROT_TBL_ROW_MISSING\",\n"
                          "  \"errorDetail\": \"The protocol table row is missing\""));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
