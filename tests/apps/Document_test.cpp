#include <algorithm>

#include "Program.h"

// `varnel-xml document`: the data dictionary of a form.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

class DataDictionary : public ProgramTest {
 protected:
  ProgramRun document(std::vector<std::string> words = {}, std::string strFolder = ".") const {
    words.insert(words.begin(), {"document", "--deployment", std::move(strFolder)});
    return runProgram(directory_.path(), words);
  }
  ProgramRun markdown(const std::string& strFolder = ".") const {
    return document({"--format", "markdown"}, strFolder);
  }
  ProgramRun markdownOfExample(const char* name) const {
    return markdown(std::string(VARNEL_SOURCE_DIR "/examples/") + name);
  }
};

/// The line of the table that tells of a question; `strId` as Markdown shows it.
std::string lineOf(const std::string& strText, const std::string& strId) {
  for (const char* const strBefore : {"| ", "<br>"}) {
    const std::size_t at = strText.find(strBefore + strId + " |");
    if (at == std::string::npos) continue;
    const std::size_t begin = strText.rfind('\n', at) + 1;
    return strText.substr(begin, strText.find('\n', at) - begin);
  }
  return "";
}

TEST_F(DataDictionary, TellsOfAFieldItsLabelPlaceLimitsAndRule) {
  const ProgramRun run = markdownOfExample("permit");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(lineOf(run.out, "eventname"),
            "| Name of the event<br>eventname | /ev:Application/ev:Event/ev:Name | "
            "text<br>in the message: text; 3 to 60 characters | Required in every message.<br>"
            "Sent when it is answered.<br>object-mapper.xml:4 |");
  EXPECT_THAT(lineOf(run.out, "days"), HasSubstr("whole number; at least 1; at most 14 |"));
  EXPECT_THAT(lineOf(run.out, "level"),
              AllOf(HasSubstr("number; at least 40; at most 95; at most 1 decimals"),
                    HasSubstr("Required where the message has Sound.")));
  EXPECT_THAT(lineOf(run.out, "music"),
              AllOf(HasSubstr("check box; ticked it is \xE2\x80\x9Ctrue\xE2\x80\x9D<br>in the "
                              "message: true or false"),
                    HasSubstr("Optional.")));
}

TEST_F(DataDictionary, TellsThatAnAnswerIsRequiredWhereAnyPlaceOrItsElementIs) {
  // The first line of an address is optional, the last is not. What counts is the address.
  const std::filesystem::path folder = directory_.path() / "inspection";
  std::filesystem::copy(VARNEL_SOURCE_DIR "/examples/inspection", folder,
                        std::filesystem::copy_options::recursive);
  EXPECT_THAT(lineOf(markdown("inspection").out, "owneraddress"),
              AllOf(HasSubstr("Optional."), Not(HasSubstr("Required"))));
  std::string strSchema = textOfFile(folder / "schema/contact.xsd");
  const std::string strOptional = R"(name="Address" type="AddressType" minOccurs="0")";
  ASSERT_NE(strSchema.find(strOptional), std::string::npos);
  strSchema.replace(strSchema.find(strOptional), strOptional.size(),
                    R"(name="Address" type="AddressType")");
  write("inspection/schema/contact.xsd", strSchema);
  EXPECT_THAT(lineOf(markdown("inspection").out, "owneraddress"),
              AllOf(HasSubstr("Required in every message."), Not(HasSubstr("Optional."))));
}

TEST_F(DataDictionary, HasTheNameOfTheFolderHoweverItIsWritten) {
  std::filesystem::create_directory(directory_.path() / "market");
  std::filesystem::copy(VARNEL_SOURCE_DIR "/examples/readme", directory_.path() / "market",
                        std::filesystem::copy_options::recursive);
  for (const char* const strFolder : {"market", "market/", "./market/."}) {
    EXPECT_THAT(markdown(strFolder).out, HasSubstr("market")) << strFolder;
  }
  const ProgramRun run = runProgram(directory_.path() / "market",
                                    {"document", "--deployment", ".", "--format", "markdown"});
  EXPECT_THAT(run.out, HasSubstr("Data dictionary of market")) << run.err;
}

TEST_F(DataDictionary, ListsTheValuesThatTheSchemaAllows) {
  write("codes.xsd",
        R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:c"
             elementFormDefault="qualified"><xs:element name="card"><xs:complexType><xs:sequence>
             <xs:element name="name"><xs:simpleType><xs:restriction base="xs:string">
               <xs:enumeration value="Ada|Eve"/><xs:enumeration value="&lt;Bob&gt;"/>
             </xs:restriction></xs:simpleType></xs:element>
           </xs:sequence></xs:complexType></xs:element></xs:schema>)");
  write("spaces.xml", R"(<namespaces><namespace id="c" name="urn:c" ref="urn:c"/></namespaces>)");
  const ProgramRun run = document({"--format", "markdown", "--schema-url", "codes.xsd",
                                   "--page-dir", "pages", "--namespaces", "spaces.xml"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(lineOf(run.out, "name"), HasSubstr("one of: Ada\\|Eve, \\<Bob\\>"));
  EXPECT_THAT(lineOf(run.out, "born"), HasSubstr("The schema declares no /c:card/c:born."));
}

TEST_F(DataDictionary, TellsOfATableItsRowsAndOfEachColumnItsPlace) {
  const std::string strText = markdownOfExample("inspection").out;
  EXPECT_THAT(lineOf(strText, "areas"),
              AllOf(HasSubstr("6 rows: Roof, Fa\xC3\xA7"
                              "ade, Windows and doors"),
                    HasSubstr("becomes one text of its labels and cells")));
  EXPECT_THAT(lineOf(strText, "defects, column duration"),
              AllOf(HasSubstr("pbr:Defects/pbr:Defect/pbr:Period/pbr:Length"),
                    HasSubstr("Computed: from found to repairby, counted in d.")));
  EXPECT_THAT(lineOf(strText, "defects, column basis"),
              AllOf(HasSubstr("pbr:Defect/pbr:AdditionalInfo (with the column's id)"),
                    HasSubstr("Always \xE2\x80\x9C"
                              "Building order, section 12\xE2\x80\x9D.")));
  EXPECT_THAT(lineOf(strText, "meters"), HasSubstr("pbr:Readings/pbr:Reading |"))
      << "the entry of its group";
}

TEST_F(DataDictionary, TellsTheConditionsAndActionsOfTheMapping) {
  const std::string strText = markdownOfExample("inspection").out;
  EXPECT_THAT(lineOf(strText, "internalnote"),
              HasSubstr("Its entry does not send it (toschema is false)."));
  EXPECT_THAT(lineOf(strText, "parcelnumber"), HasSubstr("(checkexists)"));
  EXPECT_THAT(lineOf(strText, "officephone"),
              HasSubstr("Only when \xE2\x80\x9Cmobilephone\xE2\x80\x9D is not answered (absent)."));
  EXPECT_THAT(lineOf(strText, "casenumber"),
              HasSubstr("/rpt:InspectionReport/rpt:Header/rpt:CaseNumber<br>"
                        "/rpt:InspectionReport/rpt:Record/pbr:Source/pbr:CaseNumber |"));
  EXPECT_THAT(lineOf(strText, "contactrole"),
              AllOf(HasSubstr("/cnt:Contact/cnt:Role (by the entry object-mapper.xml:"),
                    HasSubstr("Its entry does not send it")));
  EXPECT_THAT(lineOf(strText, "departuretime"), HasSubstr("rpt:Visit/rpt:OnSite (by the entry"));
  EXPECT_THAT(lineOf(strText, "owneraddress"),
              AllOf(HasSubstr("cnt:Address/cnt:Line1<br>"), HasSubstr("filled from the last")));
  EXPECT_THAT(lineOf(strText, "present2"), HasSubstr("\\[not(cnt:Name/text())\\]/cnt:Name"));
}

TEST_F(DataDictionary, TellsOfEveryQuestionInTheOrderOfTheObjectListThenOfHiddenFields) {
  const std::string strFolder = VARNEL_SOURCE_DIR "/examples/inspection";
  const ProgramRun run = markdown(strFolder);
  const Document objList = Document::create();
  ASSERT_TRUE(objList.load(strFolder + "/object-list.xml"));
  const std::optional<NodeList> colObjects = objList.selectNodes("//prtobjct");
  std::vector<std::string> ids;
  for (const Node& objObject : *colObjects) ids.push_back(*objObject.getAttribute("id"));
  ids.insert(ids.end(), {"officeid", "formversion"});
  std::size_t last = 0;
  for (const std::string& strId : ids) {
    const std::string strLine = lineOf(run.out, strId);
    ASSERT_FALSE(strLine.empty()) << strId;
    const std::size_t at = run.out.find(strLine);
    EXPECT_GT(at, last) << strId;
    last = at;
  }
  EXPECT_THAT(run.out, Not(HasSubstr("entrystarted"))) << "a hidden field that is not sent";
}

TEST_F(DataDictionary, TellsOfAQuestionWithoutAnEntryThatEverySubmissionFails) {
  write("mapper.xml", R"(<message><messageitem id="name"/></message>)");
  const std::string strText = markdown().out;
  EXPECT_THAT(lineOf(strText, "name"), HasSubstr("Every submission fails: toschema is"));
  EXPECT_THAT(lineOf(strText, "born"), HasSubstr("the object mapper has no entry for it"));
}

TEST_F(DataDictionary, KeepsMarkupInLabelsText) {
  write("objects.xml",
        R"(<prtobjcts><prtobjct id="name" objecttype="field" type="text" dynamic="false"
             letterlabel="&lt;b&gt;A|B&lt;/b&gt;&#10;*c* &amp;amp;"/></prtobjcts>)");
  EXPECT_THAT(document({"--object-list", "objects.xml"}).out,
              AllOf(HasSubstr("&lt;b&gt;A|B&lt;/b&gt; *c* &amp;amp;"), Not(HasSubstr("<b>"))));
  EXPECT_THAT(document({"--object-list", "objects.xml", "--format", "markdown"}).out,
              HasSubstr("| \\<b\\>A\\|B\\</b\\> \\*c\\* \\&amp;<br>name |"));
}

TEST_F(DataDictionary, MakesAPageOfItsOwn) {
  const ProgramRun run = document({}, VARNEL_SOURCE_DIR "/examples/inspection");
  expectPageOfItsOwn(run, "Data dictionary of inspection");
}

TEST_F(DataDictionary, FindsAnEntryAsARunDoesWhateverTheLettersOfItsId) {
  write(
      "objects.xml",
      "<prtobjcts><prtobjct id=\"\xC3\x84RGER\" objecttype=\"field\" type=\"text\"/></prtobjcts>");
  write("mapper.xml",
        "<message><messageitem id=\"\xC3\xA4rger\" toschema=\"true\">"
        "<parentxpath>/c:card</parentxpath><node>c:name</node></messageitem></message>");
  const ProgramRun run = document(
      {"--format", "markdown", "--object-list", "objects.xml", "--object-mapper", "mapper.xml"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(lineOf(run.out, "\xC3\x84RGER"), HasSubstr("/c:card/c:name"));
  EXPECT_THAT(run.out, Not(HasSubstr("no entry for it")));
}

TEST_F(DataDictionary, FindsTheEntryAndThePlaceOfIdsThatAreTooLongToBeShown) {
  const std::string strLong(500, 'x');
  write("objects.xml",
        "<prtobjcts><prtobjct id=\"t\" objecttype=\"table\" type=\"dynatable\" "
        "dynamic=\"false\"><column id=\"" +
            strLong +
            "c\"/></prtobjct>"
            "</prtobjcts>");
  write("hidden.xml", "<hiddenfields><hiddenfield id=\"h\" output=\"" + strLong +
                          "h\" toschema=\"true\"/></hiddenfields>");
  const std::string strPlace = "<parentxpath>/c:card</parentxpath><node>c:";
  write("mapper.xml", "<message><messageitem id=\"" + strLong + "h\" toschema=\"true\">" +
                          strPlace +
                          "hidden</node></messageitem><messageitem id=\"t\" type=\"dynatable\" "
                          "toschema=\"true\">" +
                          strPlace + "row</node><action id=\"rows\"/></messageitem></message>");
  write("types.xml",
        "<SchemaTypeMapperDocument xmlns:c=\"urn:card\"><schematypes>"
        "<schematype id=\"rows\"><c:cell><value id=\"" +
            strLong + "c\"/></c:cell></schematype></schematypes></SchemaTypeMapperDocument>");
  const ProgramRun run = document({"--format", "markdown", "--object-list", "objects.xml"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out,
              AllOf(HasSubstr("/c:card/c:hidden"), HasSubstr("/c:card/c:row/c:cell"),
                    Not(HasSubstr("no entry for it")), Not(HasSubstr("has no place for it"))));
}

TEST_F(DataDictionary, RefusesWhatItCannotRead) {
  EXPECT_TRUE(CouldNotRun(document({"--format", "pdf"}), "--format"));
  EXPECT_TRUE(CouldNotRun(document({"--object-list", "none.xml"}), "none.xml"));
  EXPECT_TRUE(CouldNotRun(document({"--schema-url", "none.xsd"}), "none.xsd"));
  write("empty.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"/>)");
  EXPECT_TRUE(CouldNotRun(document({"--schema-url", directory_.at("empty.xsd")}), "empty.xsd"))
      << "no run finds a schema by an absolute path";
  write("broken.xml", "<message>");
  EXPECT_TRUE(CouldNotRun(document({"--object-mapper", "broken.xml"}), "broken.xml"));
  EXPECT_TRUE(CouldNotRun(document({"--schema-types", "broken.xml"}), "broken.xml"));
}

TEST_F(DataDictionary, RefusesAFormThatNobodyCouldRead) {
  std::string strList = "<prtobjcts>";
  for (int object = 0; object <= 10'000; ++object) strList += "<prtobjct objecttype='field'/>";
  write("objects.xml", strList + "</prtobjcts>");
  EXPECT_TRUE(CouldNotRun(document({"--object-list", "objects.xml"}), "10000"));
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
