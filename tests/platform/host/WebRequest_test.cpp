#include "platform/host/WebRequest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace Varnel_Tolv_XML_Creation {
namespace {

using std::string_literals::operator""s;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

constexpr std::size_t kMegabyte = 1'000'000;

std::string repeated(std::string_view strPiece, std::size_t lngBytes) {
  std::string strText;
  while (strText.size() < lngBytes) strText += strPiece;
  return strText;
}

TEST(FieldName, IsTheIdInLowerCaseOfAnyAlphabet) {
  const struct {
    const char *id, *name;
  } cases[] = {{"", ""}, {"q1", "q1"}, {"Q_1", "q_1"}, {"\xC3\x85", "\xC3\xA5"}};
  for (const auto& c : cases) EXPECT_EQ(fieldNameOf(c.id), c.name);
}

TEST(FieldName, OfALabelOrARowCountGoesOnBehindTheIdInLowerCase) {
  EXPECT_EQ(labelNameOf("Q_1"), "q_1_hiddenName");
  EXPECT_EQ(rowCountNameOf("T\xC3\x85"), "t\xC3\xA5_rowCount");
  EXPECT_TRUE(isLabelOrRowCount(labelNameOf("q")));
  EXPECT_TRUE(isLabelOrRowCount(rowCountNameOf("t")));
  for (const char* const name : {"", "q", "q_hiddenname", "t_rowCount_1", "t___rowCount_1"}) {
    EXPECT_FALSE(isLabelOrRowCount(name)) << name;
  }
}

TEST(FieldName, OfACellHasTheIdsAsTheyAreWritten) {
  EXPECT_EQ(cellNameOf("T1", "cA", "3"), "T1___cA_3");
  EXPECT_TRUE(cellNameOf("T1", "cA", "3").starts_with(cellPrefixOf("T1")));
  EXPECT_EQ(cellPrefixOf("T1"), "T1___");
}

TEST(FormCollection, ReplacesWhatCannotBeStoredAndCountsTheFieldsThatAreNotAsTyped) {
  FormCollection form("a=x%0By&b=%FF&c=plain%0A&d=%EF%BF%BD&e=%00&e=%01");
  EXPECT_EQ(form.unreadableFields(), 2U);  // b and d
  EXPECT_EQ(form.formItem("a"), "x\vy");
  form.replaceUnstorable();
  EXPECT_EQ(form.formItem("a"), "x\xEF\xBF\xBDy");
  EXPECT_EQ(form.formItem("c"), "plain\n");
  EXPECT_EQ(form.formItem("e"), "\xEF\xBF\xBD, \xEF\xBF\xBD");
  EXPECT_EQ(form.unreadableFields(), 4U);
}

TEST(FormCollection, DecodesABody) {
  const struct {
    const char *says, *body, *name, *value;
  } cases[] = {
      {"a pair", "q=1", "q", "1"},
      {"the second pair", "p=0&q=1", "q", "1"},
      {"a field not submitted", "p=0", "q", ""},
      {"nothing submitted", "", "q", ""},
      {"names are exact", "Q=1", "q", ""},
      {"no name by its beginning", "q1=1", "q", ""},
      {"no trimming", "q=+1+", "q", " 1 "},
      {"a plus is a blank", "q=a+b", "q", "a b"},
      {"an escaped plus is a plus", "q=a%2Bb", "q", "a+b"},
      {"escapes in small letters", "q=a%2bb", "q", "a+b"},
      {"escaped separators belong to the value", "q=a%26b%3Dc", "q", "a&b=c"},
      {"a second = belongs to the value", "q=a=b", "q", "a=b"},
      {"an escape is decoded once", "q=%2541", "q", "%41"},
      {"line ends", "q=a%0D%0Ab", "q", "a\r\nb"},
      {"UTF-8", "q=%C3%A9%E6%96%87", "q", "é文"},
      {"UTF-8 as it stands", "q=é", "q", "é"},
      {"names are decoded too", "a%20b+c%C3%A9=1", "a b cé", "1"},
      {"a name without =", "q", "q", ""},
      {"a name without a value", "q=", "q", ""},
      {"the empty name", "=1", "", "1"},
      {"empty pairs are nothing", "&&q=1&&", "q", "1"},
      {"several values in order", "q=b&p=x&q=a", "q", "b, a"},
      {"equal values are several", "q=a&q=a", "q", "a, a"},
      {"empty values are values", "q=&q=a&q", "q", ", a, "},
      {"differently escaped names are one field", "a+b=1&a%20b=2", "a b", "1, 2"},
      {"no digits in an escape", "q=%", "q", "%"},
      {"one digit in an escape", "q=%4", "q", "%4"},
      {"one digit, then the next pair", "q=%4&1=x", "q", "%4"},
      {"no hexadecimal digits", "q=%4G%G4%zz", "q", "%4G%G4%zz"},
      {"a sign is no digit", "q=%+1%-1", "q", "% 1%-1"},
      {"a per cent sign before an escape", "q=%%41", "q", "%A"},
      {"an escape of another fashion", "q=%u0041", "q", "%u0041"},
      {"a byte that is not UTF-8", "q=a%FFb", "q",
       "a\uFFFD"
       "b"},
      {"a character cut off by a letter", "q=%E6%96b", "q",
       "\uFFFD"
       "b"},
      {"a character cut off by the next pair", "q=%E6&p=%96%87", "q", "\uFFFD"},
      {"an encoded surrogate", "q=%ED%A0%80", "q", "\uFFFD\uFFFD\uFFFD"},
      {"a name that is not UTF-8", "%FF=1", "\uFFFD", "1"},
      {"bytes that are not UTF-8 as they stand", "q=\xFF", "q", "\uFFFD"},
      {"a semicolon separates nothing", "q=a;p=b", "q", "a;p=b"},
      {"a trailing line end belongs to the value", "q=a\n", "q", "a\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(FormCollection(c.body).formItem(c.name), c.value);
  }
  EXPECT_EQ(FormCollection("q=a%00b").formItem("q"), "a\0b"s);
}

TEST(FormCollection, TakesFurtherValuesAsTheyStand) {
  FormCollection form("q=a");
  form.add("q", "b+%41");
  form.add("p", "");
  form.add("p", "c");
  EXPECT_EQ(form.formItem("q"), "a, b+%41");
  EXPECT_EQ(form.formItem("p"), ", c");
}

TEST(FormCollection, TellsTheNamesThatBeginWithAText) {
  const FormCollection form(
      "t1___c2_3=x&t1___c1_1=&T1___c1_2=y&t1=z&t10___c1_1=w&t1___c2_3=v&t2=u");
  EXPECT_THAT(form.formNames("t1___"), UnorderedElementsAre("t1___c1_1", "t1___c2_3"));
  EXPECT_THAT(form.formNames("t1"),
              UnorderedElementsAre("t1", "t10___c1_1", "t1___c1_1", "t1___c2_3"));
  EXPECT_THAT(form.formNames("t2"), UnorderedElementsAre("t2"));
  EXPECT_THAT(form.formNames("t2_"), IsEmpty());
  EXPECT_THAT(form.formNames("u"), IsEmpty());
  EXPECT_THAT(form.formNames(""), UnorderedElementsAre("T1___c1_2", "t1", "t10___c1_1", "t1___c1_1",
                                                       "t1___c2_3", "t2"));
  EXPECT_THAT(FormCollection("&&").formNames(""), IsEmpty());
}

TEST(FormCollection, FindsEachOfManyNamesAndNoOther) {
  FormCollection form;
  for (int at = 0; at < 3000; ++at) {
    form.add("q" + std::to_string(at), std::to_string(at));
    if (at % 3 == 0) form.add("q" + std::to_string(at), "again");
  }
  const FormCollection copy = form;
  form.add("q1", "later");
  for (int at = 0; at < 3000; ++at) {
    const std::string strValue = std::to_string(at) + (at % 3 == 0 ? ", again" : "");
    EXPECT_EQ(copy.formItem("q" + std::to_string(at)), strValue);
    EXPECT_EQ(copy.formItem("p" + std::to_string(at)), "");
  }
  EXPECT_EQ(form.formItem("q1"), "1, later");
}

TEST(FormCollection, KnowsNamesOfAnyBytes) {
  FormCollection form;
  form.add("a\xFF", "1");
  form.add("a\xFF\xFF", "2");
  form.add("b", "3");
  EXPECT_THAT(form.formNames("a\xFF"), UnorderedElementsAre("a\xFF", "a\xFF\xFF"));
}

TEST(FormCollection, TakesBodiesOfAnyLength) {
  EXPECT_EQ(FormCollection(repeated("q=a&", kMegabyte)).formItem("q").size(),
            kMegabyte / 4 * 3 - 2);
  EXPECT_EQ(FormCollection(repeated("q&", kMegabyte)).formItem("q").size(), kMegabyte - 2);
  EXPECT_THAT(FormCollection(repeated("&", kMegabyte)).formNames(""), IsEmpty());
  EXPECT_EQ(FormCollection("q=" + repeated("%", kMegabyte)).formItem("q").size(), kMegabyte);
  EXPECT_EQ(FormCollection("q=" + repeated("=", kMegabyte)).formItem("q").size(), kMegabyte);
  EXPECT_EQ(FormCollection("q=" + repeated("%FF", kMegabyte)).formItem("q"),
            repeated("\uFFFD", kMegabyte));

  std::string strManyFields;
  for (int lngField = 0; lngField < 100'000; ++lngField) {
    strManyFields += "f" + std::to_string(lngField) + "=1&";
  }
  EXPECT_EQ(FormCollection(strManyFields).formNames("f").size(), 100'000U);
}

TEST(PageServer, ResolvesLocationsAgainstThePagesDirectory) {
  const struct {
    const char *says, *directory, *location, *path;
  } cases[] = {
      {"a file beside the page", "/srv/app/forms", "a.xsd", "/srv/app/forms/a.xsd"},
      {"a file below the page", "/srv/app/forms", "b/a.xsd", "/srv/app/forms/b/a.xsd"},
      {"one directory above the page", "/srv/app/forms", "../schemas/a.xsd",
       "/srv/app/schemas/a.xsd"},
      {"two directories above", "/srv/app/forms", "../../a.xsd", "/srv/a.xsd"},
      {"no higher than the root", "/srv", "../../../a.xsd", "/a.xsd"},
      {"points and doubled separators", "/srv/app/./forms/", "..//./a.xsd", "/srv/app/a.xsd"},
      {"a leading / does not leave the directory", "/srv/app/forms", "/etc/a.xsd",
       "/srv/app/forms/etc/a.xsd"},
      {"nor do two", "/srv/app/forms", "//etc/a.xsd", "/srv/app/forms/etc/a.xsd"},
      {"nor does one behind ..", "/srv/app/forms", "..//etc/a.xsd", "/srv/app/etc/a.xsd"},
      {"a relative directory", "forms", "../a.xsd", "a.xsd"},
      {"the working directory", ".", "../a.xsd", "../a.xsd"},
      {"the working directory without a name", "", "/a.xsd", "a.xsd"},
      {"nothing above a relative directory is lost", "..", "../a.xsd", "../../a.xsd"},
      {"letters beyond ASCII and blanks", "/srv/für uns", "Größe 1.xsd",
       "/srv/für uns/Größe 1.xsd"},
      {"a URL is a path of odd names", "/srv/app", "file:///etc/a.xsd", "/srv/app/file:/etc/a.xsd"},
      {"and stays one where nothing else is left", "forms", "../file:///etc/a.xsd",
       "./file:/etc/a.xsd"},
      {"of whatever scheme", "forms", "../a:b.xsd", "./a:b.xsd"},
      {"escapes are not decoded", "/srv", "a%20b.xsd", "/srv/a%20b.xsd"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(PageServer(c.directory).MapPath(c.location), c.path);
  }
}

TEST(WebRequest, FindsTheSchemaFromAboveThePage) {
  const struct {
    const char *says, *directory, *url, *path;
  } cases[] = {
      {"above the page's directory", "/srv/app/forms", "schema/a.xsd", "/srv/app/schema/a.xsd"},
      {"a root of this machine is none of the server", "/srv/app/forms", "/etc/a.xsd",
       "/srv/app/etc/a.xsd"},
      {"above the working directory", "", "a.xsd", "../a.xsd"},
      {"which has a name too", ".", "a.xsd", "../a.xsd"},
      {"further up", "/srv/app/forms", "../a.xsd", "/srv/a.xsd"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(schemaPathOf(PageServer(c.directory), c.url), c.path);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
