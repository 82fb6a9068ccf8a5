#include "config/SubmittedCells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Host.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const TestHost::Fields kFields = {
    {"t___a_1", "x"},  {"t___a_10", "x"},  {"t___a_2", "x"},  {"t___a_3", ""},   {"t___b_4", "x"},
    {"t___b_2", "x"},  {"t___a_b_5", "x"}, {"t___a_06", "x"}, {"t___a_11", "x"}, {"t___a_0", "x"},
    {"t___a_-2", "x"}, {"t___a_+7", "x"},  {"t___a_8x", "x"}, {"t___a_", "x"},   {"t___a", "x"},
    {"t___9", "x"},    {"u___a_7", "x"},   {"t____8", " "},   {"T___a_9", "x"}};

TEST(SubmittedCells, OfAPrefixNameTheRowsFromTwoToTheRowCount) {
  const TestHost host(kFields);
  EXPECT_THAT(namedRows(host.session(), "t___", 10), ElementsAre(2, 3, 4, 5, 6, 8, 10));
  EXPECT_THAT(namedRows(host.session(), "t___", 1), IsEmpty());
  EXPECT_THAT(namedRows(host.session(), "none", 10), IsEmpty());
}

TEST(SubmittedCells, OfAPrefixNameFewRowsFarApartLikeManySideBySide) {
  const TestHost host({{"t___a_2000000000", "x"}, {"t___a_7", "x"}, {"t___b_7", "x"}});
  EXPECT_THAT(namedRows(host.session(), "t___", 2'000'000'000), ElementsAre(7, 2'000'000'000));
  EXPECT_THAT(namedRows(host.session(), "t___", 7), ElementsAre(7));
}

TEST(SubmittedCells, TellTheRowsInWhichOneOfTheColumnsIsFilled) {
  const TestHost host(kFields);
  const Session session = host.session();
  SubmittedCells cells(session, "t___", 10);
  for (const char* const says : {"the first time", "from what is known by now"}) {
    SCOPED_TRACE(says);
    EXPECT_THAT(cells.rowsOf(session, {"a"}), ElementsAre(2, 10));
    EXPECT_THAT(cells.rowsOf(session, {"b", "a", "b"}), ElementsAre(2, 4, 10));
    EXPECT_THAT(cells.rowsOf(session, {"a_b"}), ElementsAre(5));
    EXPECT_THAT(cells.rowsOf(session, {""}), ElementsAre(8));
    EXPECT_THAT(cells.rowsOf(session, {"A", "c"}), IsEmpty());
    EXPECT_THAT(cells.rowsOf(session, {}), IsEmpty());
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
