#include "validation/report/ParkIndex.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(ParkIndex, FindsTheFirstRowOfAnId) {
  const struct {
    const char *says, *ids, *row, *value;
  } cases[] = {
      {"its number", "123", "3", "at 3"},
      {"a number beyond the rows", "123", "4", ""},
      {"a number out of order", "132", "2", "at 3"},
      {"a number that two rows have", "12324", "2", "at 2"},
      {"one of which neither is its own", "1424", "4", "at 2"},
      {"a number that an earlier row has", "313", "3", "at 1"},
      {"no number", "1a3", "a", "at 2"},
      {"a number behind it", "1a3", "3", "at 3"},
      {"nought", "120", "0", "at 3"},
      {"nought before a number", "12", "02", ""},
      {"a sign", "12", "+2", ""},
      {"nothing", "12", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    std::string strRows;
    int lngAt = 0;
    for (const char id : std::string(c.ids)) {
      strRows += std::string("<row id='") + id + "'><column id='c' value='at " +
                 std::to_string(++lngAt) + "'/></row>";
    }
    const ParkIndex park(
        parsed("<prtobjcts><prtobjct id='t'>" + strRows + "</prtobjct></prtobjcts>"));
    EXPECT_EQ(park.valueOf({"t", c.row, "c"}), c.value);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
