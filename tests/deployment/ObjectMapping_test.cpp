#include "deployment/ObjectMapping.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

// The selection of the path says what the mapping has to find.
TEST(ObjectMapping, FindsTheEntryThatItsPathSelects) {
  const Document objMapper = parsed(R"(<message>
<messageitem id="q" type="other"/>
<messageitem id="q" type="group"/>
<messageitem id="q" type="table"/>
<messageitem id="q" type="dynatable"/>
<messageitem id="q"/>
<messageitem id="Q" type="tablegroup"/>
<messageitem id="d" type="dynatable"/>
<messageitem id="d" type="table"/>
<messageitem id="" type="group"/>
<messageitem type="table"/>
<messageitem id=" q "/>
<messageitem id="e" type="Group"/>
<other><messageitem id="no"/></other>
<x:message xmlns:x="urn:x"><messageitem id="no"/></x:message>
<x:messageitem xmlns:x="urn:x" id="no"/>
<deeper><message>
<messageitem id="deep"/>
<messageitem id="q" type="tablegroup"><message>
<messageitem id="within" type="group"/>
</message></messageitem></message></deeper>
<messageitem x:id="no" xmlns:x="urn:x"/>
<messageitem id="&quot;"/>
<messageitem id="&#10;"/>
</message>)");
  const ObjectMapping mapping(objMapper);
  int lngFound = 0;
  for (const char* strId :
       {"q", "Q", "d", "", " q ", "e", "no", "deep", "within", "\"", "\n", "z"}) {
    for (const auto kind :
         {EntryKind::any, EntryKind::group, EntryKind::table, EntryKind::tableGroup}) {
      const std::string strPath = messageItemPath(strId, kind);
      SCOPED_TRACE(strPath);
      ASSERT_TRUE(ObjectMapping::isPlainId(strId));
      const Node objMessageItem = objMapper.selectSingleNode(strPath);
      const MessageItem* const item = mapping.find(strId, kind);
      ASSERT_EQ(item != nullptr, bool{objMessageItem});
      if (!item) continue;
      ++lngFound;
      EXPECT_EQ(item->lngLine, objMessageItem.lineNumber());
    }
  }
  EXPECT_EQ(lngFound, 17);
}

TEST(ObjectMapping, ReadsEachEntryWithItsPaths) {
  const Document objMapper = parsed(
      "<message><messageitem id='q' toschema='true' checkexists='true' absent='o'>"
      "<parentxpath>/m:r</parentxpath><node item='i'>m:a/m:b</node><extrapath>/m:r</extrapath>"
      "<extranode>m:x</extranode><action id='act'><parameter/></action></messageitem></message>");
  const ObjectMapping mapping(objMapper);
  const MessageItem* const item = mapping.find("q", EntryKind::any);
  ASSERT_TRUE(item);
  EXPECT_EQ(item->info.strToSchema, "true");
  EXPECT_TRUE(item->info.blnCheckExists);
  EXPECT_EQ(item->info.strAbsent, "o");
  EXPECT_EQ(item->info.strItem, "i");
  EXPECT_EQ(item->action, objMapper.selectSingleNode("//action").identity());
  EXPECT_FALSE(item->info.objAction) << "copied for a run that meets it";
  EXPECT_EQ(item->place.whole().strText, "/m:r/m:a/m:b");
  EXPECT_EQ(item->place.whole().steps.size(), 3);
  EXPECT_EQ(item->extra.whole().strText, "/m:r/m:x");
}

TEST(ObjectMapping, LeavesIdsThatChangeTheirPathToIt) {
  EXPECT_TRUE(ObjectMapping::isPlainId("q"));
  EXPECT_TRUE(ObjectMapping::isPlainId(""));
  EXPECT_FALSE(ObjectMapping::isPlainId("q' or '1'='1"));
  EXPECT_FALSE(ObjectMapping::isPlainId("'"));
  EXPECT_FALSE(ObjectMapping::isPlainId(std::string(2'000'000, 'q')));
}

TEST(ObjectMapping, IsEmptyForWhatIsNoMapper) {
  for (const char* strText : {"<message/>", "<other><messageitem id='q'/></other>"}) {
    EXPECT_FALSE(ObjectMapping(parsed(strText)).find("q", EntryKind::any));
  }
  EXPECT_FALSE(ObjectMapping(Document::create()).find("q", EntryKind::any));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
