#include "message/AddressLines.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <random>

#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

TEST(ReplaceLineBreaks, ReplacesPairsBeforeWhatIsLeftOfThem) {
  const struct {
    const char *says, *text, *replacement, *result;
  } cases[] = {
      {"a pair is one line break", "a\r\nb", ",", "a,b"},
      {"a carriage return alone is one", "a\rb", ",", "a,b"},
      {"a line feed alone is one", "a\nb", ",", "a,b"},
      {"the other order is two", "a\n\rb", ",", "a,,b"},
      {"two carriage returns and a line feed are two", "a\r\r\nb", ",", "a,,b"},
      {"all of them go", "\r\na\rb\nc\r\n", ",", ",a,b,c,"},
      {"they may be replaced by nothing", "a\r\nb\rc\nd", "", "abcd"},
      {"or by a longer text", "a\r\nb", "<br/>", "a<br/>b"},
      {"a replacement with line ends meets the steps after it", "a\r\nb", "\r", "a\rb"},
      {"a text without line breaks stays", "a, b\tc", ",", "a, b\tc"},
      {"the empty text stays", "", ",", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_EQ(ReplaceLineBreaks(c.text, c.replacement), c.result);
  }
}

TEST(ReplaceLineBreaks, ReplacesAgainWhatAnEarlierReplacementBroughtIn) {
  // Each step works on the result of the one before: what replaces a pair may hold a line feed,
  // which the last step then replaces in turn.
  EXPECT_EQ(ReplaceLineBreaks("a\r\nb", "[\n]"), "a[[\n]]b");
}

std::optional<AddressLines> linesOf(std::string_view strAddress) {
  std::optional<AddressLines> arrAddressLines = AddressLines{"left", "over", "from", "a", "call"};
  EXPECT_TRUE(Succeeded(MakeAddressLines(strAddress, arrAddressLines)));
  return arrAddressLines;
}

TEST(MakeAddressLines, FillsFourLinesFromTheEnd) {
  const struct {
    const char *says, *address;
    std::array<const char*, 4> lines;
  } cases[] = {
      {"nothing gives four empty lines", "", {"", "", "", ""}},
      {"so do blanks", "   ", {"", "", "", ""}},
      {"and a comma", ",", {"", "", "", ""}},
      {"and commas and blanks", " , ,, , ", {"", "", "", ""}},
      {"one part is the last line", "A", {"", "", "", "A"}},
      {"the last of two is the last line", "A,B", {"", "", "A", "B"}},
      {"three parts leave the first line empty", "A,B,C", {"", "A", "B", "C"}},
      {"four parts fill four lines", "A,B,C,D", {"A", "B", "C", "D"}},
      {"the first two of five share a line", "A,B,C,D,E", {"A, B", "C", "D", "E"}},
      {"the first three of six share a line", "A,B,C,D,E,F", {"A, B, C", "D", "E", "F"}},
      {"empty parts and blanks around commas collapse", ", ,A,,", {"", "", "", "A"}},
      {"blanks around commas go", "A , B  ,  C", {"", "A", "B", "C"}},
      {"empty parts between others go", "A,,B, ,C", {"", "A", "B", "C"}},
      {"blanks around the whole go", "  A,B  ", {"", "", "A", "B"}},
      {"blanks inside a part stay", "1  Long  Road,B", {"", "", "1  Long  Road", "B"}},
      {"a tab is no blank", "A,\tB", {"", "", "A", "\tB"}},
      {"line ends are no separators here", "A\r\nB", {"", "", "", "A\r\nB"}},
      {"other separators are none", "A;B/C", {"", "", "", "A;B/C"}},
      {"letters beyond ASCII come back in order",
       "Ä\xC3\xB8\xE2\x82\xAC,\xF0\x9F\x8F\xA0z",
       {"", "", "Ä\xC3\xB8\xE2\x82\xAC", "\xF0\x9F\x8F\xA0z"}},
      {"combining marks stay behind their letters", "e\xCC\x81,a", {"", "", "e\xCC\x81", "a"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    EXPECT_THAT(linesOf(c.address),
                Optional(ElementsAre(c.lines[0], c.lines[1], c.lines[2], c.lines[3])));
  }
}

// The procedure as one would write it down by hand, each step on its own.

void replaceUntilGone(std::string& strText, std::string_view strOld, std::string_view strNew) {
  for (std::size_t at; (at = strText.find(strOld)) != std::string::npos;)
    strText.replace(at, strOld.size(), strNew);
}

std::string trimmed(std::string strText) {
  while (strText.starts_with(' ')) strText.erase(0, 1);
  while (strText.ends_with(' ')) strText.pop_back();
  return strText;
}

std::string reversed(std::string strText) {
  std::reverse(strText.begin(), strText.end());
  return strText;
}

AddressLines byHand(std::string_view strAddress) {
  std::string strText = trimmed(std::string(strAddress));
  replaceUntilGone(strText, ", ", ",");
  replaceUntilGone(strText, " ,", ",");
  replaceUntilGone(strText, ",,", ",");
  if (strText.starts_with(',')) strText.erase(0, 1);
  if (strText.ends_with(',')) strText.pop_back();

  std::string strRest = reversed(strText);
  AddressLines lines;
  while (lines.size() < 3) {
    const std::size_t at = strRest.find(',');
    if (at == std::string::npos) break;
    lines.push_back(strRest.substr(0, at));
    strRest.erase(0, at + 1);
  }
  lines.push_back(strRest);
  lines.resize(4);
  for (std::string& strLine : lines) {
    const std::string strPart = trimmed(reversed(strLine));
    strLine.clear();
    for (const char c : strPart) strLine += c == ',' ? std::string(", ") : std::string(1, c);
  }
  std::swap(lines[0], lines[3]);
  std::swap(lines[1], lines[2]);
  return lines;
}

TEST(MakeAddressLines, GivesWhatItsStepsGiveByHand) {
  std::mt19937 random(20240229);
  constexpr std::string_view kLetters = "ab, ";
  for (int i = 0; i < 20000; ++i) {
    std::string strAddress;
    for (std::size_t lngLength = random() % 24; lngLength > 0; --lngLength)
      strAddress += kLetters[random() % kLetters.size()];
    ASSERT_THAT(linesOf(strAddress), Optional(byHand(strAddress))) << "\"" << strAddress << "\"";
  }
}

// --- Hostile addresses ---

TEST(MakeAddressLines, TakesLongRunsInItsStride) {
  constexpr std::size_t kMany = 5'000'000;
  const std::string strBlanks(kMany, ' ');
  const std::string strCommas(kMany, ',');
  std::string strMixed;
  for (std::size_t i = 0; i < kMany / 4; ++i) strMixed += " , ,";
  EXPECT_THAT(linesOf("A," + strBlanks + "B"), Optional(ElementsAre("", "", "A", "B")));
  EXPECT_THAT(linesOf("A" + strBlanks + ",B"), Optional(ElementsAre("", "", "A", "B")));
  EXPECT_THAT(linesOf("A" + strCommas + "B"), Optional(ElementsAre("", "", "A", "B")));
  EXPECT_THAT(linesOf("A" + strMixed + "B"), Optional(ElementsAre("", "", "A", "B")));
}

TEST(MakeAddressLines, PutsAnyNumberOfPartsIntoTheFirstLine) {
  std::string strAddress, strFirstLine;
  for (int i = 0; i < 200'000; ++i) {
    strAddress += "x,";
    strFirstLine += i == 0 ? "x" : ", x";
  }
  EXPECT_THAT(linesOf(strAddress + "B,C,D"), Optional(ElementsAre(strFirstLine, "B", "C", "D")));
}

TEST(MakeAddressLines, LosesNoByteOfWhatIsNotUtf8) {
  const auto arrLines = linesOf("\xFF\x80,a");
  ASSERT_TRUE(arrLines);
  ASSERT_EQ(arrLines->size(), 4u);
  EXPECT_EQ((*arrLines)[2].size(), 2u);
  EXPECT_EQ((*arrLines)[3], "a");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
