#include "validation/lookup/ErrorRecords.h"

#include <gtest/gtest.h>

#include <vector>

namespace Varnel_Tolv_XML_Creation::test {
namespace {

TEST(addValidationUserError, KeepsEachPartInItsField) {
  std::vector<ValidationUserError> colErrors;
  UserErrorRecords colRecords(colErrors);
  addValidationUserError(colRecords, "too long", "q", "Name", "2", "c", "First name");
  ASSERT_EQ(colErrors.size(), 1u);
  EXPECT_EQ(colErrors[0].message, "too long");
  EXPECT_EQ(colErrors[0].questionId, "q");
  EXPECT_EQ(colErrors[0].questionText, "Name");
  EXPECT_EQ(colErrors[0].rowIndex, "2");
  EXPECT_EQ(colErrors[0].columnId, "c");
  EXPECT_EQ(colErrors[0].columnText, "First name");
}

TEST(addValidationUserError, KeepsTheFirstErrorOfAQuestion) {
  std::vector<ValidationUserError> colErrors;
  UserErrorRecords colRecords(colErrors);
  addValidationUserError(colRecords, "first", "q", "Name", "1", "c", "C");
  addValidationUserError(colRecords, "second", "q", "Name", "2", "d", "D");
  ASSERT_EQ(colErrors.size(), 1u);
  EXPECT_EQ(colErrors[0].message, "first");
  EXPECT_EQ(colErrors[0].rowIndex, "1");
}

TEST(addValidationUserError, LooksAtEveryRecordForTheQuestion) {
  std::vector<ValidationUserError> colErrors;
  UserErrorRecords colRecords(colErrors);
  for (const char* strId : {"a", "b", "c"}) {
    addValidationUserError(colRecords, "m", strId, "", "", "", "");
  }
  for (const char* strId : {"a", "b", "c"}) {
    addValidationUserError(colRecords, "again", strId, "", "", "", "");
  }
  ASSERT_EQ(colErrors.size(), 3u);
  for (const auto& objError : colErrors) EXPECT_EQ(objError.message, "m");
}

TEST(addValidationUserError, TellsIdsApartExactly) {
  std::vector<ValidationUserError> colErrors;
  UserErrorRecords colRecords(colErrors);
  for (const char* strId : {"q", "Q", "q ", ""}) {
    addValidationUserError(colRecords, "m", strId, "", "", "", "");
  }
  ASSERT_EQ(colErrors.size(), 4u);
  EXPECT_EQ(colErrors[3].questionId, "") << "in the order in which they came";

  addValidationUserError(colRecords, "again", "", "", "", "", "");
  EXPECT_EQ(colErrors.size(), 4u) << "the empty id is an id";
}

TEST(addValidationIntError, KeepsEachPartInItsField) {
  std::vector<ValidationIntError> colErrors;
  addValidationIntError(colErrors, "no question", "/r/a", "q", "2", "c");
  ASSERT_EQ(colErrors.size(), 1u);
  EXPECT_EQ(colErrors[0].message, "no question");
  EXPECT_EQ(colErrors[0].xpath, "/r/a");
  EXPECT_EQ(colErrors[0].questionId, "q");
  EXPECT_EQ(colErrors[0].rowIndex, "2");
  EXPECT_EQ(colErrors[0].columnId, "c");
}

TEST(addValidationIntError, KeepsEqualRecords) {
  std::vector<ValidationIntError> colErrors;
  addValidationIntError(colErrors, "m", "/r/a", "q", "2", "c");
  addValidationIntError(colErrors, "m", "/r/a", "q", "2", "c");
  addValidationIntError(colErrors, "n", "", "", "", "");
  ASSERT_EQ(colErrors.size(), 3u);
  EXPECT_EQ(colErrors[1].message, "m");
  EXPECT_EQ(colErrors[2].message, "n");
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
