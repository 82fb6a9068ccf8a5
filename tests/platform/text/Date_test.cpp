#include "platform/text/Date.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

std::ostream& operator<<(std::ostream& out, const DateTime& moment) {
  return out << moment.year << '-' << moment.month << '-' << moment.day << ' ' << moment.hour << ':'
             << moment.minute << ':' << moment.second;
}

namespace {

using Moment = std::optional<DateTime>;

Moment day(int year, int month, int dayOfMonth) {
  return DateTime{
      .year = year, .month = month, .day = dayOfMonth, .hour = 0, .minute = 0, .second = 0};
}

Moment at(const Moment& date, int hour, int minute, int second) {
  DateTime moment = *date;
  moment.hour = hour;
  moment.minute = minute;
  moment.second = second;
  return moment;
}

/// A time without a date.
Moment time(int hour, int minute, int second) {
  return at(day(1899, 12, 30), hour, minute, second);
}

constexpr Moment kNoDate = std::nullopt;

struct Case {
  const char *says, *text;
  Moment moment;
};

void expectEach(const std::vector<Case>& colCases, DateOrder order = DateOrder::dayMonthYear) {
  for (const Case& c : colCases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(parseDate(c.text, order), c.moment) << c.text;
  }
}

TEST(ParseDate, ReadsThreeNumbersWithOneKindOfSeparator) {
  expectEach({
      {"slashes", "5/3/2012", day(2012, 3, 5)},
      {"hyphens", "5-3-2012", day(2012, 3, 5)},
      {"points", "5.3.2012", day(2012, 3, 5)},
      {"two digits each", "05/03/2012", day(2012, 3, 5)},
      {"blanks around the whole", "  5/3/2012  ", day(2012, 3, 5)},
      {"two kinds of separator", "5/3-2012", kNoDate},
      {"commas", "5,3,2012", kNoDate},
      {"blanks for separators", "5 3 2012", kNoDate},
      {"blanks beside separators", "5 / 3 / 2012", kNoDate},
      {"two separators together", "5//3/2012", kNoDate},
      {"two groups", "5/3", kNoDate},
      {"two groups and a separator", "5/3/", kNoDate},
      {"four groups", "5/3/20/12", kNoDate},
      {"a separator behind the whole", "5/3/2012/", kNoDate},
      {"a sign", "-5/3/2012", kNoDate},
      {"a number alone", "2012", kNoDate},
      {"digits without separators", "20120305", kNoDate},
      {"a day of three digits is taken for a year, and there is no year 5", "005/3/12", kNoDate},
      {"a month of three digits", "5/003/2012", kNoDate},
      {"a year of five digits", "5/3/02012", kNoDate},
      {"a tab around the whole", "\t5/3/2012", kNoDate},
      {"a line end behind the whole", "5/3/2012\n", kNoDate},
      {"nothing", "", kNoDate},
      {"blanks alone", "   ", kNoDate},
      {"words", "no date", kNoDate},
      {"digits of another script", "\u0665/3/2012", kNoDate},
  });
}

TEST(ParseDate, TakesAFirstNumberOfThreeOrFourDigitsForTheYear) {
  const std::vector<Case> colCases = {
      {"year, month, day", "2012-03-05", day(2012, 3, 5)},
      {"with other separators", "2012/3/5", day(2012, 3, 5)},
      {"a year of three digits", "312-3-5", day(312, 3, 5)},
      {"it is never year, day, month", "2012-13-05", kNoDate},
      {"nor two years", "2012-03-2012", kNoDate},
      {"the first year", "100-1-1", day(100, 1, 1)},
      {"with four digits", "0100-1-1", day(100, 1, 1)},
      {"the last day", "9999-12-31", day(9999, 12, 31)},
      {"a year below the first", "099-1-1", kNoDate},
      {"far below", "0000-1-1", kNoDate},
      {"a year above the last", "10000-1-1", kNoDate},
  };
  for (const DateOrder order :
       {DateOrder::dayMonthYear, DateOrder::monthDayYear, DateOrder::yearMonthDay}) {
    expectEach(colCases, order);
  }
}

TEST(ParseDate, ReadsTheConfiguredOrderFirstAndTheOthersAfterIt) {
  const struct {
    const char *says, *text;
    Moment dayFirst, monthFirst, yearFirst;
  } cases[] = {
      {"every order gives a date", "5/3/12", day(2012, 3, 5), day(2012, 5, 3), day(2005, 3, 12)},
      {"a year of four digits at the end is the year", "5/3/2012", day(2012, 3, 5), day(2012, 5, 3),
       day(2012, 3, 5)},
      {"only a day can be 25", "25/3/2012", day(2012, 3, 25), day(2012, 3, 25), day(2012, 3, 25)},
      {"only a day can be 25, in the second place too", "3/25/2012", day(2012, 3, 25),
       day(2012, 3, 25), day(2012, 3, 25)},
      {"only year, month, day is left", "99/2/25", day(1999, 2, 25), day(1999, 2, 25),
       day(1999, 2, 25)},
      {"30 February is read as 1930", "30/02/10", day(1930, 2, 10), day(1930, 2, 10),
       day(1930, 2, 10)},
      {"and 31 April as 1931", "31/4/29", day(1931, 4, 29), day(1931, 4, 29), day(1931, 4, 29)},
      {"a leap day beside its year", "29/2/12", day(2012, 2, 29), day(2012, 2, 29),
       day(2029, 2, 12)},
      {"no order gives a date", "31/02/2012", kNoDate, kNoDate, kNoDate},
      {"nor here", "13/13/2012", kNoDate, kNoDate, kNoDate},
      {"nor with zeros", "0/0/0", kNoDate, kNoDate, kNoDate},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(parseDate(c.text, DateOrder::dayMonthYear), c.dayFirst);
    EXPECT_EQ(parseDate(c.text, DateOrder::monthDayYear), c.monthFirst);
    EXPECT_EQ(parseDate(c.text, DateOrder::yearMonthDay), c.yearFirst);
  }
}

TEST(ParseDate, PutsYearsOfOneOrTwoDigitsBetween1930And2029) {
  expectEach({
      {"0", "5/3/0", day(2000, 3, 5)},
      {"00", "5/3/00", day(2000, 3, 5)},
      {"one digit", "5/3/9", day(2009, 3, 5)},
      {"29", "5/3/29", day(2029, 3, 5)},
      {"30", "5/3/30", day(1930, 3, 5)},
      {"99", "5/3/99", day(1999, 3, 5)},
      {"three digits are a year as they stand", "5/3/112", day(112, 3, 5)},
      {"below the first year", "5/3/099", kNoDate},
      {"four digits too", "5/3/0029", kNoDate},
      {"with a month's name", "5 March 29", day(2029, 3, 5)},
      {"with a month's name, from 30 on", "5 March 30", day(1930, 3, 5)},
      {"with a month's name, three digits", "5 March 112", day(112, 3, 5)},
      {"with a month's name, below the first year", "5 March 0029", kNoDate},
  });
}

TEST(ParseDate, KnowsRealCalendarDaysOnly) {
  expectEach({
      {"a leap day", "2012-02-29", day(2012, 2, 29)},
      {"no leap year", "2011-02-29", kNoDate},
      {"no leap year at the century", "1900-02-29", kNoDate},
      {"a leap year at the fourth century", "2000-02-29", day(2000, 2, 29)},
      {"31 April", "2012-04-31", kNoDate},
      {"31 December", "2012-12-31", day(2012, 12, 31)},
      {"32 December", "2012-12-32", kNoDate},
      {"day 0", "2012-12-0", kNoDate},
      {"month 0", "2012-0-1", kNoDate},
      {"month 13", "2012-13-1", kNoDate},
      {"31 June by name", "31 June 2012", kNoDate},
  });
}

TEST(ParseDate, KnowsTheEnglishNamesOfTheMonths) {
  expectEach({
      {"day, name, year", "5 March 2012", day(2012, 3, 5)},
      {"name, day, year", "March 5 2012", day(2012, 3, 5)},
      {"name, day, comma, year", "March 5, 2012", day(2012, 3, 5)},
      {"three letters", "5 Mar 2012", day(2012, 3, 5)},
      {"any case", "5 mARCH 2012", day(2012, 3, 5)},
      {"three letters in any case", "5 MAR 2012", day(2012, 3, 5)},
      {"hyphens", "5-Mar-2012", day(2012, 3, 5)},
      {"slashes", "5/Mar/2012", day(2012, 3, 5)},
      {"points", "5.Mar.2012", day(2012, 3, 5)},
      {"commas", "5,Mar,2012", day(2012, 3, 5)},
      {"a point and blanks", "5. March  2012", day(2012, 3, 5)},
      {"a hyphen between blanks", "5 - March - 2012", day(2012, 3, 5)},
      {"a mark in one place, blanks in the other", "5-March 2012", day(2012, 3, 5)},
      {"the name first, with hyphens", "Mar-5-2012", day(2012, 3, 5)},
      {"many blanks", "5    March    2012", day(2012, 3, 5)},
      {"two marks together", "5--Mar-2012", kNoDate},
      {"two marks with a blank between them", "5. - March 2012", kNoDate},
      {"nothing between day and name", "5March 2012", kNoDate},
      {"nothing between name and year", "5 March2012", kNoDate},
      {"nothing between name and day", "March5 2012", kNoDate},
      {"another mark", "5_March_2012", kNoDate},
      {"four letters", "5 Marc 2012", kNoDate},
      {"two letters", "5 Ma 2012", kNoDate},
      {"four letters, as some write", "5 Sept 2012", kNoDate},
      {"more letters than the name has", "5 Marches 2012", kNoDate},
      {"another language", "5 M\u00E4rz 2012", kNoDate},
      {"an ordinal", "5th March 2012", kNoDate},
      {"a weekday", "Monday 5 March 2012", kNoDate},
      {"the year first", "2012 March 5", kNoDate},
      {"no year", "5 March", kNoDate},
      {"no day", "March 2012", kNoDate},
      {"a day of three digits", "005 March 2012", kNoDate},
      {"the name alone", "March", kNoDate},
      {"a mark behind the whole", "5 March 2012.", kNoDate},
      {"a tab between", "5\tMarch\t2012", kNoDate},
  });
}

TEST(ParseDate, ReadsTimes) {
  expectEach({
      {"hours and minutes", "14:30", time(14, 30, 0)},
      {"and seconds", "14:30:15", time(14, 30, 15)},
      {"one digit each", "4:3:5", time(4, 3, 5)},
      {"midnight", "0:00", time(0, 0, 0)},
      {"the last second", "23:59:59", time(23, 59, 59)},
      {"hour 24", "24:00", kNoDate},
      {"minute 60", "12:60", kNoDate},
      {"second 60", "12:00:60", kNoDate},
      {"three digits", "012:30", kNoDate},
      {"three digits for minutes", "12:030", kNoDate},
      {"blanks around the whole", "  14:30 ", time(14, 30, 0)},
      {"blanks beside the colon", "14 : 30", kNoDate},
      {"a colon at the end", "14:", kNoDate},
      {"another colon at the end", "14:30:", kNoDate},
      {"a colon in front", ":30", kNoDate},
      {"four groups", "14:30:15:00", kNoDate},
      {"points for colons", "14.30", kNoDate},
      {"a fraction of a second", "14:30:15.5", kNoDate},
      {"a zone", "14:30Z", kNoDate},
      {"another zone", "14:30+01:00", kNoDate},
      {"hours alone", "14", kNoDate},
  });
}

TEST(ParseDate, KnowsTheTwoHalvesOfTheDay) {
  expectEach({
      {"morning", "2:30 AM", time(2, 30, 0)},
      {"afternoon", "2:30 PM", time(14, 30, 0)},
      {"no blank", "2:30PM", time(14, 30, 0)},
      {"many blanks", "2:30   PM", time(14, 30, 0)},
      {"small letters", "2:30 pm", time(14, 30, 0)},
      {"mixed letters", "2:30 pM", time(14, 30, 0)},
      {"with seconds", "2:30:15 PM", time(14, 30, 15)},
      {"hours alone", "2 PM", time(14, 0, 0)},
      {"hours alone without a blank", "2am", time(2, 0, 0)},
      {"midnight is 12 AM", "12:30 AM", time(0, 30, 0)},
      {"noon is 12 PM", "12:30 PM", time(12, 30, 0)},
      {"0 AM is midnight too", "0:30 AM", time(0, 30, 0)},
      {"with hours alone", "0 AM", time(0, 0, 0)},
      {"there is no 0 PM", "0:30 PM", kNoDate},
      {"nor 13 PM", "13:30 PM", kNoDate},
      {"nor 13 AM", "13:30 AM", kNoDate},
      {"the mark alone", "PM", kNoDate},
      {"half a mark", "2:30 P", kNoDate},
      {"points in the mark", "2:30 p.m.", kNoDate},
      {"more letters than the mark has", "2:30 PMs", kNoDate},
      {"two marks", "2:30 PM PM", kNoDate},
      {"the mark first", "PM 2:30", kNoDate},
      {"a tab before the mark", "2:30\tPM", kNoDate},
  });
}

TEST(ParseDate, ReadsADateAndATimeWithBlanksBetween) {
  const Moment march = day(2012, 3, 5);
  expectEach({
      {"numbers", "5/3/2012 14:30", at(march, 14, 30, 0)},
      {"the year first", "2012-03-05 14:30:15", at(march, 14, 30, 15)},
      {"a name", "5 March 2012 2:30 pm", at(march, 14, 30, 0)},
      {"the name first", "March 5, 2012 2 PM", at(march, 14, 0, 0)},
      {"many blanks", "5/3/2012    14:30", at(march, 14, 30, 0)},
      {"a year of two digits", "5/3/12 14:30", at(march, 14, 30, 0)},
      {"another order of the numbers", "3/25/2012 14:30", at(day(2012, 3, 25), 14, 30, 0)},
      {"T between them", "2012-03-05T14:30:15", kNoDate},
      {"a comma between them", "5/3/2012, 14:30", kNoDate},
      {"a tab between them", "5/3/2012\t14:30", kNoDate},
      {"nothing between them", "5 March 201214:30", kNoDate},
      {"the time first", "14:30 5/3/2012", kNoDate},
      {"no time but a number", "5/3/2012 14", kNoDate},
      {"no time at all", "5/3/2012 x", kNoDate},
      {"a time that does not exist", "5/3/2012 25:00", kNoDate},
      {"a date that does not exist", "31/2/2012 14:30", kNoDate},
      {"a zone", "5/3/2012 14:30 UTC", kNoDate},
      {"two dates", "5/3/2012 5/3/2012", kNoDate},
  });
}

TEST(ParseDate, AnswersForTextsOfAnyLength) {
  constexpr std::size_t kMegabyte = 1'000'000;
  const std::string strBlanks(kMegabyte, ' ');
  EXPECT_EQ(parseDate(strBlanks + "5" + strBlanks + "March" + strBlanks + "2012" + strBlanks +
                          "2:30" + strBlanks + "PM" + strBlanks,
                      DateOrder::dayMonthYear),
            at(day(2012, 3, 5), 14, 30, 0));
  for (const char* piece : {"1", "a", " ", "/", ":", "5/3/2012 ", "12:30 ", "may ", "\0", "\xFF"}) {
    std::string strText = "5/3/2012 1";
    while (strText.size() < kMegabyte) strText += *piece == '\0' ? std::string(1, '\0') : piece;
    EXPECT_EQ(parseDate(strText, DateOrder::dayMonthYear), kNoDate);
    EXPECT_EQ(parseDate(strText.substr(9), DateOrder::dayMonthYear), kNoDate);
  }
  EXPECT_EQ(parseDate(std::string_view("5/3/2012\0", 9), DateOrder::dayMonthYear), kNoDate);
}

template <class... Values>
std::string written(const char* form, Values... values) {
  std::array<char, 64> text{};
  const int lngLength = std::snprintf(text.data(), text.size(), form, values...);
  return std::string(text.data(), static_cast<std::size_t>(lngLength));
}

TEST(ParseDate, ReadsEveryDayBackFromEveryFormItCanBeWrittenIn) {
  constexpr std::array<const char*, 12> kMonths = {"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
  for (const int year : {100, 999, 1000, 1900, 1929, 1930, 1999, 2000, 2011, 2012, 2029, 2030}) {
    const bool blnLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    for (int month = 1; month <= 12; ++month) {
      const int lngLengths[] = {31, blnLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
      const char* name = kMonths[static_cast<std::size_t>(month - 1)];
      for (int d = 1; d <= 31; ++d) {
        const bool blnReal = d <= lngLengths[month - 1];
        const Moment expected = blnReal ? day(year, month, d) : kNoDate;
        const auto expectIn = [&](DateOrder order, const std::string& strText) {
          ASSERT_EQ(parseDate(strText, order), expected) << strText;
        };
        for (const char separator : {'/', '-', '.'}) {
          expectIn(DateOrder::dayMonthYear,
                   written("%d%c%d%c%04d", d, separator, month, separator, year));
          expectIn(DateOrder::monthDayYear,
                   written("%02d%c%02d%c%d", month, separator, d, separator, year));
          expectIn(DateOrder::dayMonthYear,
                   written("%04d%c%02d%c%02d", year, separator, month, separator, d));
          if (blnReal && year >= 1930 && year < 2030) {
            expectIn(DateOrder::dayMonthYear,
                     written("%d%c%d%c%02d", d, separator, month, separator, year % 100));
            expectIn(DateOrder::yearMonthDay,
                     written("%02d%c%d%c%d", year % 100, separator, month, separator, d));
          }
        }
        expectIn(DateOrder::dayMonthYear, written("%d %s %d", d, name, year));
        expectIn(DateOrder::dayMonthYear, written("%d-%.3s-%04d", d, name, year));
        expectIn(DateOrder::monthDayYear, written("%s %d, %d", name, d, year));
        expectIn(DateOrder::yearMonthDay, written("%.3s/%02d/%d", name, d, year));
      }
    }
  }
}

TEST(ParseDate, ReadsEveryMinuteBack) {
  for (int hour = 0; hour < 24; ++hour) {
    for (int minute = 0; minute < 60; ++minute) {
      const char* mark = hour < 12 ? "AM" : "PM";
      const int lngHour = hour % 12 == 0 ? 12 : hour % 12;
      ASSERT_EQ(parseDate(written("%d:%02d", hour, minute), DateOrder::dayMonthYear),
                time(hour, minute, 0));
      ASSERT_EQ(parseDate(written("%02d:%02d:%02d", hour, minute, minute), DateOrder::dayMonthYear),
                time(hour, minute, minute));
      ASSERT_EQ(parseDate(written("%d:%02d %s", lngHour, minute, mark), DateOrder::dayMonthYear),
                time(hour, minute, 0));
    }
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
