#include "check/Words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <system_error>

#include "platform/text/Text.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kLongest = 40;  // of words that are compared: longer ones are no slips

/// How many letters must be replaced, left out, added or exchanged with their neighbour to make one
/// word of the other, by the usual table of all pairs of beginnings. Both are at most kLongest.
std::size_t slips(std::string_view strOne, std::string_view strOther) {
  std::array<std::array<std::size_t, kLongest + 1>, kLongest + 1> cost;
  for (std::size_t one = 0; one <= strOne.size(); ++one) cost[one][0] = one;
  for (std::size_t other = 0; other <= strOther.size(); ++other) cost[0][other] = other;
  for (std::size_t one = 1; one <= strOne.size(); ++one) {
    for (std::size_t other = 1; other <= strOther.size(); ++other) {
      const bool blnSame = strOne[one - 1] == strOther[other - 1];
      std::size_t& lngBest = cost[one][other];
      lngBest = std::min({cost[one - 1][other] + 1, cost[one][other - 1] + 1,
                          cost[one - 1][other - 1] + (blnSame ? 0 : 1)});
      if (one > 1 && other > 1 && strOne[one - 1] == strOther[other - 2] &&
          strOne[one - 2] == strOther[other - 1]) {
        lngBest = std::min(lngBest, cost[one - 2][other - 2] + 1);
      }
    }
  }
  return cost[strOne.size()][strOther.size()];
}

}  // namespace

std::string inQuotes(std::string_view strText) {
  constexpr std::size_t kShown = 120;
  if (strText.size() <= kShown) return '"' + std::string(strText) + '"';
  std::size_t lngEnd = kShown;
  while (lngEnd > 0 && (static_cast<unsigned char>(strText[lngEnd]) & 0xC0) == 0x80) --lngEnd;
  return '"' + std::string(strText.substr(0, lngEnd)) + "...\"";
}

bool isSlipOf(std::string_view strWord, std::string_view strKnown) {
  if (strWord == strKnown || strWord.size() > kLongest || strKnown.size() > kLongest) return false;
  const std::string strOne = toLower(trim(strWord));
  const std::string strOther = toLower(strKnown);
  if (strOne.empty() || strOther.empty()) return false;
  const std::size_t lngAllowed = strOther.size() < 3 ? 0 : strOther.size() < 6 ? 1 : 2;
  const std::size_t lngLonger = std::max(strOne.size(), strOther.size());
  const std::size_t lngShorter = std::min(strOne.size(), strOther.size());
  if (lngLonger > kLongest || lngLonger - lngShorter > lngAllowed) return false;
  return slips(strOne, strOther) <= lngAllowed;
}

std::string_view intendedWord(std::string_view strWord,
                              std::initializer_list<std::string_view> words) {
  const std::string_view* const meant = firstMeant(words, strWord);
  return meant ? *meant : std::string_view();
}

std::optional<std::size_t> smallNumber(std::string_view strText) {
  constexpr std::size_t kMostDigits = 9;
  std::size_t lngNumber = 0;
  const auto [end, error] = std::from_chars(strText.begin(), strText.end(), lngNumber);
  if (error != std::errc() || end != strText.end() || strText.size() > kMostDigits) return {};
  return lngNumber;
}

bool hasCapitals(std::string_view strId) { return toLower(strId) != strId; }

}  // namespace Varnel_Tolv_XML_Creation
