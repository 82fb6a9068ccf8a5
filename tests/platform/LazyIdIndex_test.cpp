#include "platform/LazyIdIndex.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "platform/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

TEST(LazyIdIndex, IsMadeAtTheSecondWishSinceTheLastChange) {
  const OwnedXmlDoc document = newXmlDoc();
  LazyIdIndex index;
  for (int change = 0; change < 3; ++change) {
    EXPECT_EQ(index.get(document.get(), false), nullptr);
    EXPECT_EQ(index.get(document.get(), true), nullptr);
    EXPECT_EQ(index.get(document.get(), false), nullptr) << "nobody wished";
    const IdIndex* made = index.get(document.get(), true);
    EXPECT_NE(made, nullptr);
    EXPECT_EQ(index.get(document.get(), false), made);
    EXPECT_EQ(index.get(document.get(), true), made);
    index.drop();
  }
}

TEST(LazyIdIndex, IsThereAtOnceAfterALoad) {
  const OwnedXmlDoc document = newXmlDoc();
  LazyIdIndex index;
  auto built = std::make_unique<IdIndex>();
  built->build(document.get());
  const IdIndex* expected = built.get();
  index.set(std::move(built));
  EXPECT_EQ(index.get(document.get(), false), expected);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
