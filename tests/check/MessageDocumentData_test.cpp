#include <gtest/gtest.h>

#include "check/SmallDeployment.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

constexpr Severity kError = Severity::error;

}  // namespace

const std::vector<SchemaMistake>& mistakesOfMessageDocumentData() {
  static const std::vector<SchemaMistake> kMistakes = {
      {"a copy that may find nothing to stand before",
       "object-mapper.xml",
       "<insertbefore appendonnomatch=\"true\">",
       "<insertbefore>",
       {{kError, "insert-before-uncertain", "object-mapper.xml"}}}};
  return kMistakes;
}

namespace {

TEST(MessageDocumentData, FindEachMistakeAndNothingElse) {
  expectBesideSchema(mistakesOfMessageDocumentData());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
