#include "config/convertToXsdDate.h"

#include <gmock/gmock.h>

#include "support/Host.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;

TEST(convertToXsdDate, WritesADateAsYearMonthAndDay) {
  const struct {
    const char *says, *strType, *strValue, *strDate;
  } cases[] = {
      {"day, month and year", "date", "5/3/2012", "2012-03-05"},
      {"two digits stay two", "date", "15.11.2012", "2012-11-15"},
      {"a month's name", "date", "5 March 2012", "2012-03-05"},
      {"a year in front", "date", "2012-03-05", "2012-03-05"},
      {"a year of two digits", "date", "5-3-12", "2012-03-05"},
      {"blanks around it", "date", "  5/3/2012 ", "2012-03-05"},
      {"a time of day is dropped", "date", "5/3/2012 14:30", "2012-03-05"},
      {"a time alone stands on the first day", "date", "14:30", "1899-12-30"},
      {"the year as it is, below 1000 too", "date", "5/3/0800", "800-03-05"},
      {"no data type", "", "5/3/2012", "2012-03-05"},
      {"any data type", "text", "5/3/2012", "2012-03-05"},
      {"the data type is case-sensitive", "Time", "5/3/2012 14:30", "2012-03-05"},
      {"and not trimmed", " time", "5/3/2012 14:30", "2012-03-05"},
  };
  const TestHost host;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(convertToXsdDate(host.session(), c.strType, c.strValue), c.strDate);
  }
}

TEST(convertToXsdDate, WritesMidnightForTheTypeTimeWhateverTheTimeOfDay) {
  const TestHost host;
  const Session session = host.session();
  EXPECT_EQ(convertToXsdDate(session, "time", "5/3/2012 14:30:59"), "2012-03-05T00:00:00");
  EXPECT_EQ(convertToXsdDate(session, "time", "5/3/2012"), "2012-03-05T00:00:00");
  EXPECT_EQ(convertToXsdDate(session, "time", "9:05 PM"), "1899-12-30T00:00:00");
}

TEST(convertToXsdDate, GivesBackWhatIsNoDate) {
  const TestHost host;
  for (const char* strValue :
       {"", " ", "soon", "31/2/2012", "2012", "5/3", "2012-03-05T00:00:00", "5/3/2012Z", "25:00",
        " no date ", "5/3/99999", "\xFF\x01", "5/3/2012'"}) {
    for (const char* strType : {"date", "time", "", "text"}) {
      EXPECT_EQ(convertToXsdDate(host.session(), strType, strValue), strValue) << strType;
    }
  }
  const std::string strHuge(std::size_t{1} << 20, '9');
  EXPECT_EQ(convertToXsdDate(host.session(), "date", strHuge), strHuge);
}

TEST(convertToXsdDate, ReadsTheHostsDateOrder) {
  TestHost host;
  const auto converted = [&](DateOrder order) {
    host.services().dateOrder = order;
    return convertToXsdDate(host.session(), "date", "5/3/10");
  };
  EXPECT_EQ(converted(DateOrder::dayMonthYear), "2010-03-05");
  EXPECT_EQ(converted(DateOrder::monthDayYear), "2010-05-03");
  EXPECT_EQ(converted(DateOrder::yearMonthDay), "2005-03-10");
}

TEST(convertToXsdDate, WritesNoTrace) {
  const TestHost host;
  EXPECT_EQ(convertToXsdDate(host.session(), "date", "5/3/2012"), "2012-03-05");
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(convertAnswer, ConvertsWhatIsOfADateType) {
  const struct {
    const char *says, *type, *answer, *converted;
  } cases[] = {
      {"a date", "date", "5/3/2012", "2012-03-05"},
      {"in any case", "DaTe", "5/3/2012", "2012-03-05"},
      {"a time", "time", "5/3/2012", "2012-03-05T00:00:00"},
      {"a time in another case is one without midnight", "Time", "5/3/2012", "2012-03-05"},
      {"no date", "date", "soon", "soon"},
      {"nothing", "date", "", ""},
      {"a text", "text", "5/3/2012", "5/3/2012"},
      {"no type", "", "5/3/2012", "5/3/2012"},
  };
  const TestHost host;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(convertAnswer(host.session(), c.type, c.answer), c.converted);
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
