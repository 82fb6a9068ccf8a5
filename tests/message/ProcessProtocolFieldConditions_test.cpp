#include <gmock/gmock.h>

#include "support/Fields.h"

// The part of ProcessProtocolField that decides whether a field is sent. A field that is not is a
// success without effect.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;

constexpr const char* kSent = "<m:a questionId=\"q\">v</m:a>";

TEST(ProcessProtocolField, IsSentOnlyWhenToschemaIsExactlyTrue) {
  const struct {
    const char *says, *toschema, *sent;
  } cases[] = {
      {"exactly so", "true", kSent},
      {"not", "false", ""},
      {"not", "0", ""},
      {"True passes for a Boolean word, but is another text", "True", ""},
      {"so does a number", "1", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v"), entry("toschema='" + std::string(c.toschema) + "'"));
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
    if (story.sent().empty()) {
      EXPECT_THAT(
          story.host.traceLines(),
          ElementsAre("ProcessProtocolField: strMapperPath=//message/messageitem[@id='q']"));
    }
  }
}

TEST(ProcessProtocolField, NeedsABooleanWordForToschema) {
  for (const char* strAttributes : {"", "toschema=''", "toschema='yes'"}) {
    SCOPED_TRACE(strAttributes);
    FieldStory story(field("q", ""), entry(strAttributes));
    EXPECT_TRUE(FailedWithRuntimeError(story.process(), kTypeMismatch, "ProcessProtocolField",
                                       "Type mismatch"));
    EXPECT_EQ(story.sent(), "");
  }
}

TEST(ProcessProtocolField, IsNotSentWithoutAValue) {
  const struct {
    const char *says, *value, *sent;
  } cases[] = {
      {"an empty one", "", ""},
      {"one of blanks", "   ", ""},
      {"a tab is a value", "&#9;", "<m:a questionId=\"q\">\t</m:a>"},
      {"a line end is one and leaves an empty element", "&#13;&#10;",
       "<m:a questionId=\"q\"></m:a>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value), sentEntry());
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(ProcessProtocolField, IsNotSentWithoutAnAttributeValue) {
  FieldStory story("<prtobjct id='q' dynamic='false'/>", sentEntry());
  EXPECT_TRUE(Succeeded(story.process()));
  EXPECT_EQ(story.sent(), "");
}

TEST(ProcessProtocolField, IsSentInTheAbsenceOfAnotherAnswer) {
  const struct {
    const char *says, *other, *sent;
  } cases[] = {
      {"the object is missing", "", kSent},
      {"it has no value", "<prtobjct id='Other'/>", kSent},
      {"an empty one", "<prtobjct id='Other' value=''/>", kSent},
      {"or blanks", "<prtobjct id='Other' value='  '/>", kSent},
      {"a value keeps the field out", "<prtobjct id='Other' value='x'/>", ""},
      {"a tab is one", "<prtobjct id='Other' value='&#9;'/>", ""},
      {"its id counts as written", "<prtobjct id='other' value='x'/>", kSent},
      {"the first of several counts", "<prtobjct id='Other'/><prtobjct id='Other' value='x'/>",
       kSent},
      {"it may stand anywhere", "<group><prtobjct id='Other' value='x'/></group>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v") + c.other, entry("toschema='true' absent='Other'"));
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(ProcessProtocolField, ChecksForAnExistingElementWhenTold) {
  const struct {
    const char *says, *attributes, *before, *sent;
  } cases[] = {
      {"it is there", "checkexists='true'", "<m:a/>", "<m:a/>"},
      {"it is not", "checkexists='true'", "<m:b/>", "<m:b/><m:a questionId=\"q\">v</m:a>"},
      {"in another case that is not asked", "checkexists='TRUE'", "<m:a/>",
       "<m:a questionId=\"q\">v</m:a><m:a/>"},
      {"nor by itself", "", "<m:a/>", "<m:a questionId=\"q\">v</m:a><m:a/>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", "v"), entry("toschema='true' " + std::string(c.attributes)),
                     c.before);
    EXPECT_TRUE(Succeeded(story.process()));
    EXPECT_EQ(story.sent(), c.sent);
  }
}

TEST(ProcessProtocolField, WritesOnlyTheFirstOfTwoFieldsThatCheckForTheSameElement) {
  const std::string strPlace(kPlace);
  FieldStory story(field("q", "one") + field("p", "two"),
                   entry("toschema='true' checkexists='true'") +
                       "<messageitem id='p' toschema='true' checkexists='true'>" + strPlace +
                       "</messageitem>");
  EXPECT_TRUE(Succeeded(story.process(0)));
  EXPECT_TRUE(Succeeded(story.process(1)));
  EXPECT_EQ(story.sent(), "<m:a questionId=\"q\">one</m:a>");
}

// The questions are asked in a fixed order, which a malformed expression makes visible.
TEST(ProcessProtocolField, AsksAboutAbsentAndExistingObjectsBeforeItDecides) {
  const struct {
    const char *says, *value, *attributes, *children;
    bool blnAsked;
  } cases[] = {
      {"toschema false ends it before", "v", "toschema='false' absent=\"it's\"", "", false},
      {"a mere True does not", "v", "toschema='True' absent=\"it's\"", "", true},
      {"nor does an empty value", "", "toschema='true' absent=\"it's\"", "", true},
      {"nor when an existing element is asked for", "", "toschema='true' checkexists='true'",
       "<parentxpath>it's</parentxpath><node>m:a</node>", true},
      {"an empty value ends it before the place is used", "", "toschema='true'",
       "<parentxpath>it's</parentxpath><node>m:a</node>", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FieldStory story(field("q", c.value), entry(c.attributes, c.children));
    if (c.blnAsked) {
      EXPECT_TRUE(FailedWithNumber(story.process(), kXmlFailure, "ProcessProtocolField"));
    } else {
      EXPECT_TRUE(Succeeded(story.process()));
    }
    EXPECT_EQ(story.sent(), "");
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
