// The complete form of examples/inspection with one answer, or two, broken on the way to the
// schema. What comes back must be told at the question, row and column where it was broken.

#include "validation/PlantedErrors.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <map>

#include "validation/InspectionExample.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

/// What all paths begin with; the records and places of this test leave it out.
constexpr std::string_view kRoot = "/InspectionReport";

Records without(const Records& records, const Records& taken) {
  Records rest;
  std::ranges::set_difference(records, taken, std::inserter(rest, rest.end()));
  return rest;
}

class PlantedErrors : public ::testing::Test {
 protected:
  struct Break {
    const Place* place;
    Way way;
  };

  /// The records of the message broken in these places: "question/row/column" for the person at
  /// the form, "internal <path> question/row/column" for the others. None: the schema accepts it.
  Records verdict(std::initializer_list<Break> breaks) {
    const Document objMessage = parsed(strMessage_);
    const Document objPark = parsed(strPark_);
    const std::optional<NodeList> colElements = objMessage.selectNodes("//*");
    for (const Break& broken : breaks) {
      breakPlace(*broken.place, broken.way, colElements->item(broken.place->lngElement), objPark);
    }
    ValidationUserErrors colUserErrors;
    ValidationIntErrors colIntErrors;
    const Acknowledge objAck = example_.validate(objMessage, objPark, colUserErrors, colIntErrors);
    if (objAck.Success()) return {};
    EXPECT_EQ(objAck.ErrorCode(), SVC_RET_XML_CREATION_SCHEMA_VALIDATION_FAILED)
        << objAck.ErrorDetail();
    Records records;
    for (const ValidationUserError& err : colUserErrors.value()) {
      records.insert(address(err.questionId, err.rowIndex, err.columnId));
    }
    for (const ValidationIntError& err : colIntErrors.value()) {
      records.insert("internal " + err.xpath.substr(kRoot.size()) + " " +
                     address(err.questionId, err.rowIndex, err.columnId));
    }
    return records;
  }

  static std::string brokenText(const Place& place, Way way) {
    switch (way) {
      case Way::tooLong:
        return std::string(500, 'a');
      case Way::oneCharacter:
        return "x";
      case Way::noValueOfItsType:
        return "not-a-value";
      case Way::otherCase:
        return inOtherLetters(place.strText);
      case Way::empty:
      case Way::removed:
        break;
    }
    return "";
  }

  static void breakPlace(const Place& place, Way way, const Node& objElement,
                         const Document& objPark) {
    const std::string strText = brokenText(place, way);
    if (way == Way::removed) {
      (void)objElement.parentNode().removeChild(objElement);
    } else {
      objElement.setText(place.strBefore + strText);
    }
    std::string strParked = "/prtobjcts/prtobjct[@id='" + place.strQuestion + "']";
    if (!place.strRow.empty()) {
      strParked += "/row[@id='" + place.strRow + "']/column[@id='" + place.strColumn + "']";
    }
    if (const Node objParked = objPark.selectSingleNode(strParked)) {
      objParked.setAttribute("value", strText);
    }
  }

  static bool possible(const Place& place, Way way) {
    if (way == Way::removed) return place.strBefore.empty();
    return place.blnLeaf && brokenText(place, way) != place.strText;
  }

  /// Every error that the schema refuses, each with the records that it alone leaves.
  std::vector<Planted> plantEverywhere() {
    std::vector<Planted> planted;
    for (const Place& place : places_) {
      for (const auto& [way, strWay] : kWays) {
        if (!possible(place, way)) continue;
        Records alone = verdict({{&place, way}});
        if (!alone.empty()) planted.push_back({&place, way, strWay, std::move(alone)});
      }
    }
    return planted;
  }

  /// An error in another element: the next one for what is missing, as both then concern the same
  /// parent; else mostly one close by, every fourth time one far away.
  static const Planted& partnerOf(const std::vector<Planted>& planted, std::size_t lngFirst) {
    std::size_t lngSecond = lngFirst + 1;
    if (planted[lngFirst].way != Way::removed) {
      lngSecond += lngFirst % 4 == 0 ? planted.size() / 2 : lngFirst % 13;
    }
    while (planted[lngSecond % planted.size()].place->lngElement ==
           planted[lngFirst].place->lngElement) {
      ++lngSecond;
    }
    return planted[lngSecond % planted.size()];
  }

  InspectionExample example_;
  const std::string strMessage_ = example_.objMessage.xml();
  const std::string strPark_ = example_.objPark.xml();
  const std::vector<Place> places_ = placesOf(parsed(strMessage_));
};

TEST_F(PlantedErrors, ComeBackToTheirQuestionRowAndColumn) {
  ASSERT_THAT(verdict({}), IsEmpty()) << "the message is sound before it is broken";

  std::map<std::string_view, int> plantedInWay;
  std::map<const Shortfall*, int> shortOf;
  int lngCameBack = 0, lngNobodys = 0, lngListed = 0;
  const std::vector<Planted> planted = plantEverywhere();
  for (const Planted& error : planted) {
    ++plantedInWay[error.strWay];
    const Place& place = *error.place;
    const Shortfall* shortfall = shortfallOf(error);
    Records expected;
    if (shortfall != nullptr) {
      ++lngListed;
      ++shortOf[shortfall];
      for (const std::string& strRecord : shortfall->becomes) {
        expected.insert(recordAt(place, strRecord));
      }
    } else if (place.blnAnswer) {
      ++lngCameBack;
      expected.insert(place.answer());
    } else {
      // What the template or the document data wrote is nobody's answer.
      ++lngNobodys;
      const bool blnGone = error.way == Way::removed;
      expected.insert("internal " + (blnGone ? parentPath(place.strPath) : place.strPath) + " //");
    }
    EXPECT_EQ(error.alone, expected)
        << describe(error) << ": " << (shortfall != nullptr ? shortfall->because : "");
  }

  EXPECT_THAT(plantedInWay,
              UnorderedElementsAre(Pair("empty", 89), Pair("too long", 110),
                                   Pair("one character", 78), Pair("no value of its type", 62),
                                   Pair("a code in other letters", 27), Pair("removed", 46)));
  EXPECT_EQ(lngCameBack, 359);
  EXPECT_EQ(lngNobodys, 20);
  EXPECT_EQ(lngListed, 33);
  for (const Shortfall& shortfall : shortfalls()) {
    EXPECT_TRUE(shortOf.contains(&shortfall))
        << shortfall.path << " no longer falls short: " << shortfall.because;
  }
}

TEST_F(PlantedErrors, ComeBackInPairsAsTheyDoAlone) {
  // One user error for each question: of two, the later one is left to an internal record.
  // What is missing is told by the path of its parent: an empty answer below it is blamed first.
  int lngAsAlone = 0, lngOneQuestion = 0, lngBlamed = 0;
  const std::vector<Planted> planted = plantEverywhere();
  for (std::size_t lngFirst = 0; lngFirst < planted.size(); ++lngFirst) {
    const Planted& first = planted[lngFirst];
    const Planted& second = partnerOf(planted, lngFirst);
    SCOPED_TRACE(describe(first) + " and " + describe(second));
    const Records together = verdict({{first.place, first.way}, {second.place, second.way}});
    Records alone = first.alone;
    alone.insert(second.alone.begin(), second.alone.end());
    if (together == alone) {
      ++lngAsAlone;
      continue;
    }

    const Records lost = without(alone, together);
    const Records gained = without(together, alone);
    if (first.place->strQuestion == second.place->strQuestion) {
      ++lngOneQuestion;
      ASSERT_EQ(lost.size(), 1U);
      const std::string& strLost = *lost.begin();
      const Planted& unheard = second.alone.contains(strLost) ? second : first;
      // A cell that is gone has no element to name it: its row's element does.
      const std::string strLeft = unheard.way == Way::removed
                                      ? address(unheard.place->strQuestion, unheard.place->strRow)
                                      : strLost;
      EXPECT_THAT(strLost, Not(StartsWith("internal ")));
      EXPECT_THAT(together, Contains(StartsWith(unheard.place->strQuestion + "/")));
      EXPECT_THAT(together, Contains(AllOf(StartsWith("internal "), EndsWith(" " + strLeft))));
    } else {
      ++lngBlamed;
      const bool blnFirstIsGone = first.way == Way::removed;
      const Planted& gone = blnFirstIsGone ? first : second;
      const Planted& emptied = blnFirstIsGone ? second : first;
      EXPECT_EQ(gone.way, Way::removed);
      EXPECT_EQ(emptied.way, Way::empty);
      EXPECT_THAT(emptied.place->strPath, StartsWith(parentPath(gone.place->strPath) + "/"));
      // All that a person at the form was told alone is told again; the keepers read the other.
      EXPECT_THAT(lost, Each(StartsWith("internal ")));
      EXPECT_THAT(gained, ElementsAre("internal " + emptied.place->strPath + " " +
                                      emptied.place->answer()));
    }
  }

  EXPECT_EQ(lngAsAlone, 340);
  EXPECT_EQ(lngOneQuestion, 67);
  EXPECT_EQ(lngBlamed, 5);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
