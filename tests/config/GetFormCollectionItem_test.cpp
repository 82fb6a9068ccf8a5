#include "config/GetFormCollectionItem.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

#include "support/Host.h"
#include "support/Results.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/// The value of a field; "failed" when it cannot be read.
std::string read(const TestHost& host, std::string_view strFieldName) {
  std::string strValue = "left from before";
  const Acknowledge objAck = GetFormCollectionItem(host.session(), strFieldName, strValue);
  EXPECT_TRUE(Succeeded(objAck));
  return objAck.Success() ? strValue : "failed";
}

TEST(GetFormCollectionItem, ReadsTheSubmittedTextAsItComes) {
  const TestHost host({{"q", "  a & <b> %41+\r\n"}, {"", "of no name"}, {"it's", "quoted"}});
  EXPECT_EQ(read(host, "q"), "  a & <b> %41+\r\n");
  EXPECT_EQ(read(host, ""), "of no name");
  EXPECT_EQ(read(host, "it's"), "quoted");
}

TEST(GetFormCollectionItem, ReadsTheEmptyTextForAFieldNotSubmitted) {
  const TestHost host({{"q", "v"}});
  EXPECT_EQ(read(host, "other"), "");
}

TEST(GetFormCollectionItem, LooksNamesUpExactly) {
  const TestHost host({{"Name", "v"}});
  EXPECT_EQ(read(host, "Name"), "v");
  EXPECT_EQ(read(host, "name"), "");
  EXPECT_EQ(read(host, "Name "), "");
}

TEST(GetFormCollectionItem, JoinsSeveralValuesInTheOrderSubmitted) {
  const TestHost host({{"q", "two"}, {"q", "one"}, {"p", "x"}, {"q", ""}});
  EXPECT_EQ(read(host, "q"), "two, one, ");
}

TEST(GetFormCollectionItem, ReadsAHugeValue) {
  const std::string strHuge(std::size_t{4} << 20, 'x');
  TestHost host;
  host.submit("q", strHuge);
  EXPECT_EQ(read(host, "q"), strHuge);
}

TEST(GetFormCollectionItem, InventsNoValueForAnyName) {
  const TestHost host;
  for (const char* strName : {"date", "birthdate", "postcode", "transport_required", "q"}) {
    EXPECT_EQ(read(host, strName), "") << strName;
  }
}

TEST(GetFormCollectionItem, FailsOutsideAWebRequest) {
  TestHost host({{"q", "v"}});
  host.withoutContext();
  std::string strValue = "left from before";
  EXPECT_TRUE(FailedWith(GetFormCollectionItem(host.session(), "q", strValue),
                         SVC_RET_XML_CREATION_CNTXT_OBJ_MISSING,
                         "The context object for the intrinsic IIS Object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(strValue, "");
}

TEST(GetFormCollectionItem, FailsInAContextWithoutARequest) {
  TestHost host({{"q", "v"}});
  host.withoutRequest();
  std::string strValue = "left from before";
  EXPECT_TRUE(FailedWith(GetFormCollectionItem(host.session(), "q", strValue),
                         SVC_RET_XML_CREATION_REQUEST_OBJ_MISSING,
                         "The IIS Request object is missing",
                         "An error occurred getting a form collection item"));
  EXPECT_EQ(strValue, "");
}

TEST(GetFormCollectionItem, NeedsNoServer) {
  TestHost host({{"q", "v"}});
  host.withoutServer();
  EXPECT_EQ(read(host, "q"), "v");
}

/// A request of a server that cannot read its body.
template <class Error>
class BrokenRequest : public Request {
 public:
  explicit BrokenRequest(Error error) : error_(error) {}
  std::string formItem(std::string_view /*strName*/) const override { throw error_; }
  std::vector<std::string> formNames(std::string_view /*strPrefix*/) const override {
    throw error_;
  }

 private:
  Error error_;
};

template <class Error>
Acknowledge readingFrom(const BrokenRequest<Error>& request) {
  const ObjectContext context{.request = &request, .server = nullptr};
  TestHost host;
  host.services().objectContext = &context;
  std::string strValue = "left from before";
  const Acknowledge objAck = GetFormCollectionItem(host.session(), "q", strValue);
  EXPECT_EQ(strValue, "");
  return objAck;
}

TEST(GetFormCollectionItem, TellsWhatTheServerRaises) {
  EXPECT_TRUE(FailedWithRuntimeError(
      readingFrom(BrokenRequest(RuntimeError(-2147467259, "the body is gone"))), -2147467259,
      "GetFormCollectionItem", "the body is gone"));
  EXPECT_TRUE(FailedWithRuntimeError(readingFrom(BrokenRequest(std::runtime_error("odd"))), 51,
                                     "GetFormCollectionItem", "odd"));
  EXPECT_TRUE(FailedWithRuntimeError(readingFrom(BrokenRequest(std::bad_alloc())), 7,
                                     "GetFormCollectionItem", "Out of memory"));
}

TEST(GetFormCollectionItem, WritesNoTrace) {
  TestHost host({{"q", "v"}});
  EXPECT_EQ(read(host, "q"), "v");
  host.withoutContext();
  std::string strValue;
  EXPECT_FALSE(GetFormCollectionItem(host.session(), "q", strValue).Success());
  EXPECT_THAT(host.traceLines(), IsEmpty());
}

TEST(readsEmpty, IsTrueOnlyOfAFieldThatCanBeReadAndHoldsNothing) {
  TestHost host({{"empty", ""}, {"blank", " "}});
  EXPECT_TRUE(readsEmpty(host.session(), "empty"));
  EXPECT_TRUE(readsEmpty(host.session(), "none"));
  EXPECT_FALSE(readsEmpty(host.session(), "blank"));
  host.withoutRequest();
  EXPECT_FALSE(readsEmpty(host.session(), "empty"));
  host.withoutContext();
  EXPECT_FALSE(readsEmpty(host.session(), "empty"));
}

TEST(submittedFieldNames, AreThoseWithThePrefix) {
  const TestHost host({{"t_1", ""}, {"t_2", "v"}, {"t_2", "w"}, {"T_3", ""}, {"at_4", ""}});
  EXPECT_THAT(submittedFieldNames(host.session(), "t_"), UnorderedElementsAre("t_1", "t_2"));
  EXPECT_THAT(submittedFieldNames(host.session(), "none"), IsEmpty());
}

TEST(submittedFieldNames, RaisesUseOfNothingWhereThereIsNoRequest) {
  TestHost host;
  host.withoutRequest();
  const auto withoutRequest =
      raisedBy([&] { EXPECT_THAT(submittedFieldNames(host.session(), ""), IsEmpty()); });
  ASSERT_TRUE(withoutRequest.has_value());
  EXPECT_EQ(withoutRequest->number(), 91);
  host.withoutContext();
  const auto withoutContext =
      raisedBy([&] { EXPECT_THAT(submittedFieldNames(host.session(), ""), IsEmpty()); });
  ASSERT_TRUE(withoutContext.has_value());
  EXPECT_EQ(withoutContext->number(), 91);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
