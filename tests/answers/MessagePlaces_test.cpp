#include "answers/MessagePlaces.h"

#include <gtest/gtest.h>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

std::string placeOf(const Document& objMessage, const Node& objElement) {
  const auto places = messagePlaces(objMessage, {objElement.identity()});
  const auto place = places.find(objElement.identity());
  return place == places.end() ? "nowhere" : place->second;
}

TEST(MessagePlaces, CountAmongSiblingsOfTheSameQualifiedName) {
  const Document objMessage = parsed(
      "<?xml version='1.0'?><!--c--><m:r xmlns:m='urn:m' xmlns:n='urn:m'>text<m:a/><n:a/><a/>"
      "<m:a><m:b/>text<m:b/></m:a><m:b/><n:a/></m:r>");
  objMessage.setSelectionNamespaces("xmlns:m='urn:m'");
  const struct {
    const char *says, *xpath, *place;
  } cases[] = {
      {"the root", "/*", "/m:r[1]"},
      {"the first of a name", "/*/*[1]", "/m:r[1]/m:a[1]"},
      {"another prefix is another name", "/*/*[2]", "/m:r[1]/n:a[1]"},
      {"and no prefix too", "/*/*[3]", "/m:r[1]/a[1]"},
      {"the second of a name", "/*/*[4]", "/m:r[1]/m:a[2]"},
      {"below it", "/*/*[4]/*[2]", "/m:r[1]/m:a[2]/m:b[2]"},
      {"counted anew in each parent", "/*/*[5]", "/m:r[1]/m:b[1]"},
      {"behind others", "/*/*[6]", "/m:r[1]/n:a[2]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(placeOf(objMessage, objMessage.selectSingleNode(c.xpath)), c.place);
  }
}

TEST(MessagePlaces, AreNoneForWhatDoesNotStandThere) {
  const Document objMessage = parsed("<r><a><b/></a></r>");
  const Node objInside = objMessage.selectSingleNode("/r/a/b");
  const Node objRemoved =
      objMessage.documentElement().removeChild(objMessage.selectSingleNode("/r/a"));
  EXPECT_EQ(placeOf(objMessage, objRemoved), "nowhere");
  EXPECT_EQ(placeOf(objMessage, objInside), "nowhere");
  EXPECT_TRUE(messagePlaces(Document(), {objInside.identity()}).empty());
}

TEST(MessagePlaces, AreFoundInADeepMessage) {
  std::string strOpen;
  std::string strClose;
  std::string strPlace;
  for (int lngLevel = 0; lngLevel < 250; ++lngLevel) {
    strOpen += "<a>";
    strClose += "</a>";
    strPlace += "/a[1]";
  }
  const Document objMessage = parsed(strOpen + "<b/><b/>" + strClose);
  EXPECT_EQ(placeOf(objMessage, objMessage.selectSingleNode("//b[2]")), strPlace + "/b[2]");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
