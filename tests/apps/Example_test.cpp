#include "Program.h"

namespace Varnel_Tolv_XML_Creation::test {
namespace {

class InspectionExample : public ProgramTest {
 protected:
  ProgramRun buildExample(const char* form, std::vector<std::string> words) const {
    words.insert(words.begin(),
                 {"--deployment", kExample, "--form", kExample + "/" + form, "--park-out",
                  "park.xml", "--send-out", "send.xml", "--now", "2025-10-14T12:05:00"});
    return build(std::move(words));
  }
};

TEST_F(InspectionExample, CompleteAndSubmittedGivesTheParkedFormAndTheMessage) {
  const ProgramRun run = buildExample("complete.form", {"--submit"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kSuccessJson);
  ASSERT_TRUE(exists("park.xml"));
  ASSERT_TRUE(exists("send.xml"));

  const Document objPark = parsed(read("park.xml"));
  EXPECT_EQ(objPark.selectSingleNode("//prtobjct[@id='casenumber']/@value").text(),
            "NB-2025-00417");
  EXPECT_EQ(objPark.selectNodes("//prtobjct[@id='areas']/row")->length(), 6u);
  EXPECT_EQ(objPark.selectNodes("//prtobjct[@id='defects']/row")->length(), 3u);
  EXPECT_EQ(objPark.selectNodes("//hdnflds/hdnfld")->length(), 4u);

  const Document objSend = parsed(read("send.xml"));
  objSend.setSelectionNamespaces("xmlns:rpt='urn:example:inspection:report'");
  EXPECT_EQ(objSend.selectSingleNode("//rpt:Title").text(),
            "Damp & cracks at M\xC3\xB8lleg\xC3\xA5rden, stairwell B");
  EXPECT_EQ(objSend.selectNodes("//*[@questionId or @rowIndex or @columnId]")->length(), 0u);
}

TEST_F(InspectionExample, NotSubmittedGivesTheParkedFormAlone) {
  for (const char* form : {"complete.form", "draft.form"}) {
    SCOPED_TRACE(form);
    const ProgramRun run = buildExample(form, {});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, kSuccessJson);
    EXPECT_TRUE(exists("park.xml"));
    EXPECT_FALSE(exists("send.xml"));
  }
}

TEST_F(InspectionExample, FaultyAndNotValidatedIsBuiltAllTheSame) {
  const ProgramRun run = buildExample("faulty.form", {"--submit"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, kSuccessJson);
  EXPECT_TRUE(exists("park.xml"));
  EXPECT_TRUE(exists("send.xml"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
