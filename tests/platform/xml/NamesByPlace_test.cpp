#include "platform/xml/NamesByPlace.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_set>
#include <vector>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(NamesByPlace, AsksOnceForEachNameHoweverManyThereAre) {
  const std::array<xmlChar, 3000> texts{};
  NamesByPlace<std::size_t> names;
  std::size_t lngAsked = 0;
  std::vector<const std::size_t*> colKnown;
  for (int round = 0; round < 2; ++round) {
    for (std::size_t at = 0; at < texts.size(); ++at) {
      const std::size_t& known =
          names.get(&texts[at], nullptr, &texts[0], [&] { return ++lngAsked, at; });
      EXPECT_EQ(known, at);
      if (round == 0) {
        colKnown.push_back(&known);
      } else {
        EXPECT_EQ(&known, colKnown[at]);  // it has not moved
      }
    }
  }
  EXPECT_EQ(lngAsked, texts.size());
}

TEST(NamesByPlace, TellsNamesApartByEachOfTheirParts) {
  const std::array<xmlChar, 4> texts{};
  const xmlChar* const parts[] = {nullptr, &texts[1], &texts[2], &texts[3]};
  NamesByPlace<int> names;
  int lngMade = 0;
  for (const xmlChar* prefix : parts) {
    for (const xmlChar* uri : parts) {
      for (const xmlChar* local : {&texts[0], &texts[1], &texts[2]}) {
        const int lngBefore = lngMade;
        EXPECT_EQ(names.get(local, prefix, uri, [&] { return ++lngMade; }), lngBefore + 1);
      }
    }
  }
}

// A parser lays the names that it meets one after the other side by side.
TEST(NamesByPlace, HaveSlotsOfTheirOwnThoughEachPrefixMeetsEachLocalName) {
  constexpr std::size_t kParts = 300;
  constexpr std::size_t kBytes = 4;  // of each
  constexpr std::uint64_t kSlots = 1U << 18U;
  const std::vector<xmlChar> texts(2 * kParts * kBytes);
  std::unordered_set<std::uint64_t> slots;
  for (std::size_t prefix = 0; prefix < kParts; ++prefix) {
    for (std::size_t local = kParts; local < 2 * kParts; ++local) {
      slots.insert(
          NamesByPlace<int>::hashOf(&texts[local * kBytes], &texts[prefix * kBytes], texts.data()) %
          kSlots);
    }
  }
  // Chance gives 90,000 names some 76,000 of these slots.
  EXPECT_GT(slots.size(), 65'000U);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
