#include <gtest/gtest.h>

#include "answers/AnswerStory.h"
#include "support/Results.h"

// Answers that were written into the message and do not stand there in the end. The entries of `q`
// and `r` stand on lines 2 and 3 of the mapper.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

std::string entryOf(std::string_view strId, std::string_view strNode,
                    std::string_view strMore = "") {
  return "<messageitem id='" + std::string(strId) + "' toschema='true'><parentxpath>/m:r" +
         "</parentxpath><node>" + std::string(strNode) + "</node>" + std::string(strMore) +
         "</messageitem>\n";
}

TEST(MessageLosses, TellOfAnswersThatALaterOneIsWrittenOver) {
  const struct {
    const char* says;
    std::string entries;
    const char *form, *losses;
  } cases[] = {
      {"places of their own", entryOf("q", "m:q") + entryOf("r", "m:n"), "q=1&r=2", ""},
      {"the same place", entryOf("q", "m:q") + entryOf("r", "m:q"), "q=1&r=2",
       "q|||1|overwritten|mapper.xml:3\n"},
      {"the same place and the same answer", entryOf("q", "m:q") + entryOf("r", "m:q"), "q=1&r=1",
       ""},
      {"the same place, one of them blank", entryOf("q", "m:q") + entryOf("r", "m:q"),
       "q=1&r=", ""},
      {"an element that holds the answer's", entryOf("q", "m:a/m:q") + entryOf("r", "m:a"),
       "q=1&r=2", "q|||1|overwritten|mapper.xml:3\n"},
      {"one of two places",
       entryOf("q", "m:q", "<extrapath>/m:r</extrapath><extranode>m:x</extranode>") +
           entryOf("r", "m:x"),
       "q=1&r=2", ""},
      {"both places",
       entryOf("q", "m:q", "<extrapath>/m:r</extrapath><extranode>m:x</extranode>") +
           entryOf("r", "m:q", "<extrapath>/m:r</extrapath><extranode>m:x</extranode>"),
       "q=1&r=2", "q|||1|overwritten|mapper.xml:3\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    story.strObjects = question("q") + question("r");
    story.strEntries = c.entries;
    story.strForm = c.form;
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MessageLosses, TellOfTheCellsOfAllRowsThatALaterAnswerIsWrittenOver) {
  AnswerStory story;
  story.strObjects = question("r") + grid("<column id='c'/><column id='d'/>") + question("q");
  story.strEntries =
      entryOf("r", "m:g") +
      "<messageitem id='t' type='dynatable' toschema='true'><parentxpath>/m:r/m:g</parentxpath>"
      "<node>row</node><action id='cells'/></messageitem>\n" +
      entryOf("q", "m:g");
  story.strForm = "r=1&t_rowCount=3&t___c_1=a&t___c_2=b&t___c_3=c&t___d_2=d&q=2";
  EXPECT_EQ(story.losses(),
            "r|||1|overwritten|mapper.xml:4\n"
            "t|1|c|a|overwritten|mapper.xml:4\n"
            "t|2|c|b|overwritten|mapper.xml:4\n"
            "t|2|d|d|overwritten|mapper.xml:4\n"
            "t|3|c|c|overwritten|mapper.xml:4\n");
  EXPECT_EQ(story.strMessage.find("row"), std::string::npos);
}

TEST(MessageLosses, TellOfAnswersThatTheDocumentDataAreWrittenOver) {
  AnswerStory story;
  story.strEntries = entryOf("q", "m:q") +
                     "<docdata><docinfo id='attestationdate'><parentxpath>/m:r</parentxpath>"
                     "<node>m:q</node></docinfo><docinfo id='attestationtime'>"
                     "<parentxpath>/m:r/head</parentxpath><node>time</node></docinfo><docnodes/>"
                     "</docdata>\n";
  story.strForm = "q=1";
  EXPECT_EQ(story.losses(), "q|||1|overwritten|mapper.xml:3\n");
}

TEST(MessageLosses, TellWhetherTheCleanUpLeftTheEmptyElement) {
  const struct {
    const char *says, *reference, *losses;
  } cases[] = {
      {"an element that may go", "<m:r xmlns:m='urn:m' mandatory='true'/>",
       "q|||1|removed-as-empty|mapper.xml:2\n"},
      {"one that has to stay",
       "<m:r xmlns:m='urn:m' mandatory='true'><m:q mandatory='true'/></m:r>",
       "q|||1|written-as-empty|mapper.xml:2\n"},
      {"one that goes with its parent",
       "<m:r xmlns:m='urn:m' mandatory='true'><m:a><m:q mandatory='true'/></m:a></m:r>",
       "q|||1|removed-as-empty|mapper.xml:2\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    AnswerStory story;
    const bool blnInside = std::string_view(c.reference).find("<m:a>") != std::string_view::npos;
    story.deployment.file("reference.xml", c.reference);
    story.strObjects = question("q") + question("r");
    story.strEntries =
        "<messageitem id='q' toschema='true'><parentxpath>/m:r</parentxpath><node item='r'>" +
        std::string(blnInside ? "m:a/m:q" : "m:q") + "</node></messageitem>\n" +
        entryOf("r", "m:n");
    story.strForm = "q=1";
    EXPECT_EQ(story.losses(), c.losses);
    EXPECT_TRUE(Succeeded(story.objAck));
  }
}

TEST(MessageLosses, OfAFailedRunGoAsFarAsItCame) {
  AnswerStory story;
  story.strObjects = question("q") + question("r") + question("z") + question("s");
  story.strEntries = entryOf("q", "m:q") + entryOf("r", "m:q");
  story.strForm = "q=1&r=2&z=3&s=4";
  EXPECT_EQ(story.losses(), "q|||1|overwritten|mapper.xml:3\nz|||3|no-mapping|mapper.xml:0\n");
  EXPECT_FALSE(story.objAck.Success());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
