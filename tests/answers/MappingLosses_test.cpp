#include <gtest/gtest.h>

#include "answers/AnswerStory.h"
#include "support/Results.h"

// Answers that the object mapper or the schema types keep from the message. The entry of `q` stands
// on line 2 of the mapper.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr const char* kPlace = "<parentxpath>/m:r</parentxpath><node>m:q</node>";
constexpr const char* kOther =
    "\n<messageitem id='r' toschema='true'><parentxpath>/m:r</parentxpath><node>m:n</node>"
    "</messageitem>";

std::string entryOf(std::string_view strAttributes, std::string_view strContent = kPlace) {
  return "<messageitem id='q' " + std::string(strAttributes) + ">" + std::string(strContent) +
         "</messageitem>";
}

std::string byAction(std::string_view strAction) {
  return entryOf("toschema='true'", kPlace + std::string(strAction));
}

TEST(MappingLosses, TellWhichFieldsAreNotSent) {
  const struct {
    const char* says;
    std::string entry;
    const char *form, *losses;
    bool succeeds = true;
  } cases[] = {
      {"no entry", "", "q=1", "q|||1|no-mapping|mapper.xml:0\n", false},
      {"no entry for a blank answer", "", "q=", "", false},
      {"sent", entryOf("toschema='true'"), "q=1", ""},
      {"another word for true", entryOf("toschema='True'"), "q=1",
       "q|||1|word-not-true|mapper.xml:2\n"},
      {"a number for true", entryOf("toschema='1'"), "q=1", "q|||1|word-not-true|mapper.xml:2\n"},
      {"the same for a blank answer", entryOf("toschema='True'"), "q=", ""},
      {"left out on purpose", entryOf("toschema='false'"), "q=1", ""},
      {"left out on purpose by a number", entryOf("toschema='0'"), "q=1", ""},
      {"left out for another answer", entryOf("toschema='true' absent='r'"), "q=1&r=2", ""},
      {"left out for another answer, in another word", entryOf("toschema='True' absent='r'"),
       "q=1&r=2", ""},
      {"left out because it is there",
       entryOf("toschema='true' checkexists='true'",
               "<parentxpath>/m:r</parentxpath><node>head</node>"),
       "q=1", ""},
      {"no word at all ends the run", entryOf(""), "q=1", "q|||1|run-failed|mapper.xml:2\n", false},
      {"a parent that is not there ends it",
       entryOf("toschema='true'", "<parentxpath>/m:x</parentxpath><node>m:q</node>"), "q=1",
       "q|||1|run-failed|mapper.xml:2\n", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = c.entry + kOther;
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_EQ(story.objAck.Success(), c.succeeds);
  }
}

TEST(MappingLosses, TellWhereAnotherObjectTakesTheAnswersPlace) {
  const struct {
    const char *says, *item, *form, *losses;
  } cases[] = {
      {"it has an answer", "r", "q=1&r=2", ""},
      {"it has none, and the element is removed", "r", "q=1",
       "q|||1|removed-as-empty|mapper.xml:2\n"},
      {"it is not there", "x", "q=1", "q|||1|item-not-found|mapper.xml:2\n"},
      {"it is not there, but nothing was answered", "x", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = entryOf("toschema='true'", "<parentxpath>/m:r</parentxpath><node item='" +
                                                      std::string(c.item) + "'>m:q</node>") +
                       kOther;
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MappingLosses, TellWhichAnswersTheEntryOfAnotherLeftBehind) {
  const std::string strNode = "<parentxpath>/m:r</parentxpath><node item='s'>m:q</node>";
  const std::string strPair =
      "<action id='x'><parameter id='v' formvalue='true'/><parameter id='w' messageitem='s'/>"
      "</action>";
  const struct {
    const char* says;
    std::string objects, entry;
    const char *form, *losses;
  } cases[] = {
      {"it took the answer along", question("q") + question("s"), byAction(strPair), "q=1&s=2", ""},
      {"it was not answered itself", question("q") + question("s"), byAction(strPair), "s=2",
       "s|||2|other-not-sent|mapper.xml:2\n"},
      {"there was nothing to take along", question("q") + question("s"), byAction(strPair),
       "s=", ""},
      {"it is not in the form", question("s"), byAction(strPair), "s=2",
       "s|||2|other-not-sent|mapper.xml:2\n"},
      {"its type has no place for the answer", question("q") + question("s"),
       byAction("<action id='one'><parameter id='v' formvalue='true'/>"
                "<parameter id='w' messageitem='s'/></action>"),
       "q=1&s=2", "s|||2|other-not-sent|mapper.xml:2\n"},
      {"it is not sent either", question("q") + question("s"),
       entryOf("toschema='false'", kPlace + strPair), "s=2", ""},
      {"it is left out for another answer, on purpose",
       question("q") + question("r") + question("s"),
       entryOf("toschema='true' absent='r'", kPlace + strPair), "q=1&r=3&s=2", ""},
      {"the item of a node goes with a blank answer too", question("q") + question("s"),
       entryOf("toschema='true'", strNode), "s=2", ""},
      {"the item of a node that is not in the form", question("s"),
       entryOf("toschema='true'", strNode), "s=2", "s|||2|other-not-sent|mapper.xml:2\n"},
      {"a text of two values that was not made", question("q") + question("s"),
       byAction("<action id='addinfotonode'><parameter formvalue='true'/><parameter item='s'/>"
                "</action>"),
       "s=2", "s|||2|other-not-sent|mapper.xml:2\n"},
      {"an answer that was not even parked", question("q") + question("s", "type='check'"),
       byAction(strPair), "q=1&s=yes", "s|||yes|box-not-on|:2\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = c.objects;
    story.strEntries = c.entry + "\n<messageitem id='s' toschema='false'/>" + kOther;
    story.strTypes =
        "<schematype id='x'><m:v><value id='v'/></m:v><m:w><value id='w'/></m:w></schematype>"
        "<schematype id='one'><m:v><value id='v'/></m:v></schematype>";
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MappingLosses, TellWhatAComplexTypeDoesNotTake) {
  const struct {
    const char* says;
    std::string action;
    const char *types, *losses;
  } cases[] = {
      {"the value in its place", "<action id='x'><parameter id='v' formvalue='true'/></action>",
       "<m:v><value id='v'/></m:v>", ""},
      {"no placeholder for it", "<action id='x'>\n<parameter id='w' formvalue='true'/></action>",
       "<m:v><value id='v'/></m:v>", "q|||1|value-not-used|mapper.xml:3\n"},
      {"another word for true", "<action id='x'>\n<parameter id='v' formvalue='yes'/></action>",
       "<m:v><value id='v'/></m:v>", "q|||1|word-not-true|mapper.xml:3\n"},
      {"a parameter that gives nothing",
       "<action id='x'>\n<parameter id='v' formvalu='true'/></action>",
       "<m:v><value id='v'/></m:v>", "q|||1|value-not-used|mapper.xml:3\n"},
      {"a placeholder that nothing fills", "<action id='x'/>", "<m:v><value id='v'/></m:v>",
       "q|||1|value-not-used|mapper.xml:2\n"},
      {"a constant stands for it", "<action id='x'><parameter id='v'>ticked</parameter></action>",
       "<m:v><value id='v'/></m:v>", ""},
      {"a structure without values stands for it", "<action id='x'/>", "<m:v>ticked</m:v>", ""},
      {"the value beside a label",
       "<action id='x'><parameter id='l' formlabel='true'/><parameter id='v' formvalue='true'/>"
       "</action>",
       "<m:v><value id='v'/></m:v><m:l><value id='l'/></m:l>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strEntries = byAction(c.action);
    story.strTypes = "<schematype id='x'>" + std::string(c.types) + "</schematype>";
    story.strForm = "q=1&q_hiddenName=Label";
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MappingLosses, TellWhatOnePlaceholderTakesFromAnother) {
  const std::string strBoth =
      "<action id='x'><parameter id='v' formvalue='true'/><parameter id='w' messageitem='r'/>"
      "</action>";
  const struct {
    const char *says, *types, *losses;
  } cases[] = {
      {"elements of their own", "<m:v><value id='v'/></m:v><m:w><value id='w'/></m:w>", ""},
      {"one in the placeholder of the other",
       "<m:v><value id='v'><m:w><value id='w'/></m:w></value></m:v>",
       "r|||2|overwritten|mapper.xml:2\n"},
      {"one that is the other's child", "<m:v><value id='w'><value id='v'/></value></m:v>",
       "q|||1|overwritten|mapper.xml:2\n"},
      {"one in the element of the other, behind it",
       "<m:v><value id='v'/><m:w><value id='w'/></m:w></m:v>", "r|||2|overwritten|mapper.xml:2\n"},
      {"before it", "<m:v><m:w><value id='w'/></m:w><value id='v'/></m:v>",
       "r|||2|overwritten|mapper.xml:2\n"},
      {"one that no parameter names stays with what is in it",
       "<m:v><value id='z'><m:w><value id='w'/></m:w><m:u><value id='v'/></m:u></value></m:v>", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = byAction(strBoth) + "\n<messageitem id='r' toschema='false'/>";
    story.strTypes = "<schematype id='x'>" + std::string(c.types) + "</schematype>";
    story.strForm = "q=1&r=2";
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
    for (const AnswerLoss& loss : story.report.losses) {
      EXPECT_EQ(story.strMessage.find(">" + loss.value + "<"), std::string::npos);
    }
  }
}

TEST(MappingLosses, TellWhatATextOfTwoValuesDoesNotTake) {
  const struct {
    const char* says;
    std::string parameters;
    const char* losses;
  } cases[] = {
      {"its own and another's", "<parameter formvalue='true'/><parameter item='r'/>", ""},
      {"its own in any word", "<parameter formvalue='no'/><parameter formlabel='true'/>", ""},
      {"the label and another's on purpose", "<parameter formlabel='true'/><parameter item='r'/>",
       ""},
      {"a parameter that gives nothing", "\n<parameter formvalu='true'/><parameter item='r'/>",
       "q|||1|value-not-used|mapper.xml:3\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries =
        byAction("<action id='addinfotonode'>" + c.parameters + "</action>") + kOther;
    story.strForm = "q=1&r=2";
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MappingLosses, TellWhichLinesOfAnAddressHaveNoSlot) {
  constexpr const char* kAll =
      "<m:a><value id='l1'/></m:a><m:b><value id='l2'/></m:b><m:c><value id='l3'/></m:c>"
      "<m:d><value id='l4'/></m:d>";
  constexpr const char* kLastTwo = "<m:c><value id='l3'/></m:c><m:d><value id='l4'/></m:d>";
  const struct {
    const char *says, *types, *form, *losses;
  } cases[] = {
      {"a slot for each", kAll, "q=A,B,C,D", ""},
      {"two lines, two slots", kLastTwo, "q=C%0D%0AD", ""},
      {"more lines than slots", kLastTwo, "q=A,B,C,D", "q|||A, B|line-without-slot|mapper.xml:2\n"},
      {"a slot in the element of one that stays empty",
       "<m:b><m:a><value id='l4'/></m:a><value id='l3'/></m:b>", "q=A",
       "q|||A|overwritten|mapper.xml:2\n"},
      {"nothing but separators", kAll, "q=,%0D%0A,", "q|||,\r\n,|removed-as-empty|mapper.xml:2\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strEntries = byAction("<action id='structured_address_type'/>");
    story.strTypes =
        "<schematype id='structured_address_type'>" + std::string(c.types) + "</schematype>";
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
