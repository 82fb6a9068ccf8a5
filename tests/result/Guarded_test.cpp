#include "result/Guarded.h"

#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

/// A procedure whose body raises this.
template <class Error>
Acknowledge procedureRaising(const Error& error) {
  return Guarded("aProcedure", [&]() -> Acknowledge { throw error; });
}

TEST(Guarded, GivesBackWhatTheBodyReturns) {
  EXPECT_TRUE(Succeeded(Guarded("aProcedure", []() -> Acknowledge { return {}; })));

  Acknowledge objCallee = Failure(SVC_RET_XML_CREATION_NODE_MISSING, "d", "u");
  objCallee.ErrorSource("kept");
  const Acknowledge objAck = Guarded("aProcedure", [&] { return objCallee; });
  EXPECT_EQ(objAck.ErrorCode(), SVC_RET_XML_CREATION_NODE_MISSING);
  EXPECT_EQ(objAck.ErrorDetail(), "d");
  EXPECT_EQ(objAck.UserMessage(), "u");
  EXPECT_EQ(objAck.ErrorSource(), "kept");
}

TEST(Guarded, TellsARunTimeErrorByNumberNameAndDescription) {
  EXPECT_TRUE(FailedWith(procedureRaising(RuntimeError(kTypeMismatch)), 13,
                         "aProcedure - Type mismatch", "Type mismatch"));
  EXPECT_TRUE(FailedWith(procedureRaising(RuntimeError(-2147467259, "own words", "a source")),
                         -2147467259, "aProcedure - own words", "own words"));
  EXPECT_TRUE(FailedWith(procedureRaising(RuntimeError(12, "")), 12, "aProcedure - ", ""));
}

TEST(Guarded, TellsExhaustedMemoryAsNumber7) {
  EXPECT_TRUE(FailedWith(procedureRaising(std::bad_alloc()), 7, "aProcedure - Out of memory",
                         "Out of memory"));
}

TEST(Guarded, TellsAnyOtherExceptionAsNumber51) {
  EXPECT_TRUE(FailedWith(procedureRaising(std::length_error("too long")), 51,
                         "aProcedure - too long", "too long"));
  EXPECT_EQ(procedureRaising(42).ErrorCode(), 51);
  EXPECT_EQ(procedureRaising("a text").ErrorCode(), 51);
}

TEST(Guarded, NeverTellsAnErrorAsASuccess) {
  EXPECT_TRUE(FailedWith(procedureRaising(RuntimeError(0, "of number 0")), 51,
                         "aProcedure - of number 0", "of number 0"));
}

TEST(Guarded, FailsWithTheErrorOfTheInnermostProcedure) {
  const Acknowledge objAck = Guarded("outer", [] {
    return Guarded("inner", []() -> Acknowledge { throw RuntimeError(kObjectNotSet); });
  });
  EXPECT_TRUE(FailedWithRuntimeError(objAck, 91, "inner",
                                     "Object variable or With block variable not set"));
}

TEST(Guarded, ServesAResultThatMayBeNothing) {
  const auto nothing =
      Guarded("aProcedure", []() -> std::optional<Acknowledge> { return std::nullopt; });
  EXPECT_FALSE(nothing.has_value());

  const auto failed = Guarded(
      "aProcedure", []() -> std::optional<Acknowledge> { throw RuntimeError(kInvalidUseOfNull); });
  ASSERT_TRUE(failed.has_value());
  EXPECT_TRUE(FailedWithRuntimeError(*failed, 94, "aProcedure", "Invalid use of Null"));
}

TEST(GuardedWithAHandler, LeavesASuccessToTheBody) {
  bool blnHandled = false;
  const Acknowledge objAck = Guarded(
      "aProcedure", []() -> Acknowledge { return {}; },
      [&](const RuntimeError&) -> Acknowledge {
        blnHandled = true;
        return {};
      });
  EXPECT_TRUE(Succeeded(objAck));
  EXPECT_FALSE(blnHandled);
}

TEST(GuardedWithAHandler, ReturnsWhatTheHandlerMakesOfTheError) {
  const Acknowledge objAck = Guarded(
      "aProcedure", []() -> Acknowledge { throw RuntimeError(kOverflow); },
      [](const RuntimeError& error) {
        return Failure(error.number() + 1, error.description() + "!", "handled");
      });
  EXPECT_TRUE(FailedWith(objAck, 7, "Overflow!", "handled"));
}

TEST(GuardedWithAHandler, LetsTheHandlerRaiseAgain) {
  const auto error = raisedBy([] {
    const std::string strNothing = Guarded(
        "aProcedure", []() -> std::string { throw RuntimeError(kTypeMismatch); },
        [](const RuntimeError& caught) -> std::string { throw RuntimeError(caught); });
    ADD_FAILURE() << "went on with " << strNothing;
  });
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number(), 13);
  EXPECT_EQ(error->description(), "Type mismatch");
}

TEST(GuardedWithAHandler, HandsForeignExceptionsOverAsRunTimeErrors) {
  const auto numberFor = [](const auto& foreign) {
    return Guarded(
        "aProcedure", [&]() -> std::int32_t { throw foreign; },
        [](const RuntimeError& error) { return error.number(); });
  };
  EXPECT_EQ(numberFor(std::bad_alloc()), 7);
  EXPECT_EQ(numberFor(std::runtime_error("x")), 51);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
