#include "platform/host/FormReads.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace Varnel_Tolv_XML_Creation {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/// A request of a host that keeps its fields in its own way.
class OwnRequest : public Request {
 public:
  std::string formItem(std::string_view strName) const override {
    const auto known = fields_.find(strName);
    return known == fields_.end() ? std::string() : known->second;
  }
  std::vector<std::string> formNames(std::string_view strPrefix) const override {
    std::vector<std::string> names;
    for (const auto& [strName, strValue] : fields_) {
      if (strName.starts_with(strPrefix)) names.push_back(strName);
    }
    return names;
  }

 private:
  const std::map<std::string, std::string, std::less<>> fields_ = {
      {"a", "1"}, {"b", "2"}, {"c", "3"}, {"e", ""}};
};

/// One that answers a question of the host's beside those of a collection.
class ExtendedCollection : public FormCollection {
 public:
  using FormCollection::FormCollection;

  std::string formItem(std::string_view strName) const override {
    return strName == "user" ? "somebody" : FormCollection::formItem(strName);
  }
  std::vector<std::string> formNames(std::string_view strPrefix) const override {
    std::vector<std::string> names = FormCollection::formNames(strPrefix);
    if (std::string_view("user").starts_with(strPrefix)) names.emplace_back("user");
    return names;
  }
};

TEST(FormReads, KnowWhichFieldsOfARequestNobodyRead) {
  const FormCollection collection("a=1&b=2&c=3&e=&b=4");
  const OwnRequest own;
  const struct {
    const char* says;
    const Request& request;
    const char* ofB;
  } cases[] = {{"a collection", collection, "2, 4"}, {"a request of the host's", own, "2"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    FormReads reads(c.request);
    EXPECT_THAT(reads.unread(), UnorderedElementsAre("a", "b", "c", "e"));
    EXPECT_EQ(reads.read("b"), c.ofB);
    EXPECT_EQ(reads.read("b"), c.ofB);
    EXPECT_EQ(reads.read("x"), "");
    EXPECT_EQ(reads.read("A"), "");
    EXPECT_THAT(reads.unread(), UnorderedElementsAre("a", "c", "e"));
    EXPECT_EQ(reads.read("a") + reads.read("c"), "13");
    EXPECT_EQ(c.request.formItem("b"), c.ofB);
  }
}

TEST(FormReads, TakeWhatAClassOfTheHostsMakesOfACollection) {
  const ExtendedCollection request("a=1&b=2");
  FormReads reads(request);
  EXPECT_EQ(reads.read("user"), "somebody");
  EXPECT_EQ(reads.read("a"), "1");
  EXPECT_THAT(reads.unread(), UnorderedElementsAre("b"));
}

TEST(FormReads, AreNoneOfAnEmptyForm) {
  const FormCollection collection;
  FormReads reads(collection);
  EXPECT_EQ(reads.read("a"), "");
  EXPECT_THAT(reads.unread(), IsEmpty());
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation
