#include "platform/xml/NamesByPlace.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(NamesByPlace, AsksOnceForEachNameHoweverManyThereAre) {
  const std::array<xmlChar, 3000> texts{};
  NamesByPlace<std::size_t> names(4);
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
  NamesByPlace<int> names(16);
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

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
