#include <nlohmann/json.hpp>

#include "Program.h"

// Stored forms that `varnel-xml batch` makes into messages again.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

using nlohmann::json;

class StoredForm : public ProgramTest {
 protected:
  /// The deployment's object list with these objects.
  void objects(const std::string& strObjects) const {
    write("objects.xml",
          "<?xml version=\"1.0\"?><prtobjcts>" + strObjects + "<hdnflds/></prtobjcts>");
  }

  /// What becomes of one line.
  json answer(const json& line, std::vector<std::string> words = {}) const {
    words.insert(words.begin(), {"batch", "--deployment", "."});
    const ProgramRun run = runProgram(directory_.path(), words, {.strInput = line.dump() + '\n'});
    if (run.status > 1) throw std::runtime_error(run.err);
    return json::parse(run.out);
  }
  json posted(const std::string& strForm, std::vector<std::string> words = {}) const {
    return answer({{"id", "a"}, {"form", strForm}}, std::move(words));
  }
  json stored(const json& park, std::vector<std::string> words = {}) const {
    return answer({{"id", "a"}, {"park", park}}, std::move(words));
  }
};

const char* const kTables =
    "<prtobjct id='Name' objecttype='field' type='text' dynamic='false'/>"
    "<prtobjct id='box' objecttype='field' type='check' dynamic='false' checkedvalue='Y'/>"
    "<prtobjct id='plainbox' objecttype='field' type='check' dynamic='false'/>"
    "<prtobjct id='Grid' objecttype='table' type='table'>"
    "<row id='1'/><row id='2'/><row id='3'/><column id='a'/><column id='b'/></prtobjct>"
    "<prtobjct id='Dyn' objecttype='table' type='dynaTable'>"
    "<column id='from'/><column id='to'/><column id='fixed' autovalue='F'/>"
    "<column id='days' calculate='true' datatype='date' timedimabbr='d' firstcolumn='from'"
    " secondcolumn='to'/><column id='timedimension'/></prtobjct>"
    "<prtobjct id='list' objecttype='table' type='list'><column id='c'/></prtobjct>";

const char* const kCounts = "grid_rowCount=3&dyn_rowCount=3&list_rowCount=1";

TEST_F(StoredForm, OfAnUnchangedDeploymentIsStoredAgainAsItWas) {
  objects(kTables);
  write("hidden.xml",
        "<hiddenfields><hiddenfield id='h' output='h' toschema='true'/>"
        "<hiddenfield id='in' output='Out'/><hiddenfield id='' output='repeated'/>"
        "<hiddenfield id='in2' output='Out'/></hiddenfields>");
  const struct {
    const char* says;
    std::string form;
  } cases[] = {
      {"an empty form", kCounts},
      {"answers and labels", "name=a%26b+%C3%85&name_hiddenName=The+name&" + std::string(kCounts)},
      {"a line end in an answer", "name=a%0D%0Ab&" + std::string(kCounts)},
      {"ticked boxes", "box=on&plainbox=on&" + std::string(kCounts)},
      {"a box that was posted with another value", "box=yes&" + std::string(kCounts)},
      {"a field posted twice", "name=a&name=b&" + std::string(kCounts)},
      {"a grid", "Grid___a_1=1&Grid___b_3=6&" + std::string(kCounts)},
      {"a part of a grid", "Grid___a_1=1&grid_rowCount=2&dyn_rowCount=0&list_rowCount=0"},
      {"a blank row of a grid alone", "grid_rowCount=1&dyn_rowCount=0&list_rowCount=0"},
      {"rows between which one is blank", "Dyn___from_1=x&Dyn___to_3=y&" + std::string(kCounts)},
      {"a row far down",
       "Dyn___from_2000000=x&grid_rowCount=0&dyn_rowCount=2000000&list_rowCount=0"},
      {"no row", "grid_rowCount=0&dyn_rowCount=0&list_rowCount=0"},
      {"one blank row", "grid_rowCount=3&dyn_rowCount=1&list_rowCount=1"},
      {"blank rows", "grid_rowCount=3&dyn_rowCount=4&list_rowCount=2"},
      {"a computed cell", "Dyn___from_1=1.2.2026&Dyn___to_1=3.2.2026&Dyn___timedimension_1=days&" +
                              std::string(kCounts)},
      {"a computed cell without an operand",
       "Dyn___from_1=1.2.2026&Dyn___timedimension_1=days&" + std::string(kCounts)},
      {"rows without numbers",
       "list___c_2=x&list___c_4=y&grid_rowCount=0&dyn_rowCount=0&list_rowCount=4"},
      {"hidden fields", "h=1&in=2&in2=3&" + std::string(kCounts)},
  };
  for (const auto& c : cases) {
    for (const bool blnSubmit : {false, true}) {
      SCOPED_TRACE(std::string(c.says) + (blnSubmit ? ", submitted" : ", parked"));
      const std::vector<std::string> words{blnSubmit ? "--submit" : "--submit=false"};
      const json first = posted(c.form, words);
      const json again = stored(first["park"], words);
      EXPECT_EQ(again["park"], first["park"]);
      EXPECT_EQ(again["result"], first["result"]);
      EXPECT_EQ(again["send"], first["send"]);
      EXPECT_FALSE(again.contains("missing")) << again["missing"];
    }
  }
}

TEST_F(StoredForm, OfTheExampleGivesTheSameMessageAgain) {
  const std::string strExample = VARNEL_SOURCE_DIR "/examples/inspection";
  for (const char* form : {"complete.form", "faulty.form", "draft.form"}) {
    SCOPED_TRACE(form);
    std::string strForm = textOfFile(strExample + "/" + form);
    while (strForm.ends_with('\n')) strForm.pop_back();
    const std::vector<std::string> words{
        "batch",      "--deployment", strExample,           "--submit",
        "--validate", "--now",        "2025-10-14T12:05:00"};
    const ProgramRun first = runProgram(
        directory_.path(), words, {.strInput = json({{"id", "a"}, {"form", strForm}}).dump()});
    const ProgramRun again = runProgram(
        directory_.path(), words,
        {.strInput = json({{"id", "a"}, {"park", json::parse(first.out)["park"]}}).dump()});
    EXPECT_EQ(again.out, first.out);
  }
}

TEST_F(StoredForm, IsReadByTheObjectListOfToday) {
  objects(kTables);
  const json first = posted(
      "name=N&box=on&Grid___a_1=1&Grid___a_3=3&Dyn___from_1=1.2.2026&Dyn___to_1=3.2.2026&"
      "Dyn___from_3=x&" +
      std::string(kCounts));
  const struct {
    const char *says, *objects, *xpath, *value;
  } cases[] = {
      {"an id with other capitals",
       "<prtobjct id='NAME' objecttype='field' type='text' dynamic='false'/>", "//prtobjct/@value",
       "N"},
      {"a label of its own",
       "<prtobjct id='name' objecttype='field' type='text' dynamic='false' letterlabel='L'/>",
       "//prtobjct/@fieldlabel", "L"},
      {"a box with another value",
       "<prtobjct id='box' objecttype='field' type='check' dynamic='false' checkedvalue='Z'/>",
       "//prtobjct/@value", "Z"},
      {"a box that became a text",
       "<prtobjct id='box' objecttype='field' type='text' dynamic='false'/>", "//prtobjct/@value",
       "Y"},
      {"a question that is new",
       "<prtobjct id='new' objecttype='field' type='text' dynamic='false'/>", "//prtobjct/@value",
       ""},
      {"a grid with one row more, which a page posts too",
       "<prtobjct id='Grid' objecttype='table' type='table'><row id='1'/><row id='2'/><row id='3'/>"
       "<row id='4'/><column id='a'/></prtobjct>",
       "//row[@id='4']/column/@id", "a"},
      {"a grid with a row less",
       "<prtobjct id='Grid' objecttype='table' type='table'><row id='1'/><row id='2'/>"
       "<column id='a'/></prtobjct>",
       "//row[@id='1']/column/@value", "1"},
      {"a column that is computed no more",
       "<prtobjct id='Dyn' objecttype='table' type='dynatable'><column id='days'/></prtobjct>",
       "//row[@id='1']/column/@value", "2"},
      {"a column that is fixed now",
       "<prtobjct id='Dyn' objecttype='table' type='dynatable'><column id='from'/>"
       "<column id='to' autovalue='T'/></prtobjct>",
       "//row[@id='3']/column[@id='to']/@value", "T"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    objects(c.objects);
    const json now = stored(first["park"]);
    ASSERT_EQ(now["result"], json::parse(kSuccessJson));
    const Document objPark = parsed(now["park"].get<std::string>());
    const Node objFound = objPark.selectSingleNode(c.xpath);
    ASSERT_TRUE(objFound) << now["park"];
    EXPECT_EQ(objFound.text(), c.value);
  }
}

TEST_F(StoredForm, WithoutATableHadOneBlankRow) {
  const json first = posted(kForm);
  objects("<prtobjct id='Dyn' objecttype='table' type='dynatable'><column id='a'/></prtobjct>");
  const json now = stored(first["park"]);
  EXPECT_EQ(now["result"], json::parse(kSuccessJson));
  EXPECT_EQ(parsed(now["park"].get<std::string>()).selectNodes("//prtobjct")->length(), 0u);
}

TEST_F(StoredForm, TellsTheAnswersForWhichThereIsNoPlaceAnyMore) {
  objects(kTables);
  write("hidden.xml", "<hiddenfields><hiddenfield id='in' output='out'/></hiddenfields>");
  const json first =
      posted("name=N&box=on&in=H&Grid___a_3=3&Dyn___from_2=x&Dyn___to_2=y&" + std::string(kCounts));
  objects(
      "<prtobjct id='Grid' objecttype='table' type='table'><row id='1'/><row id='2'/>"
      "<column id='a'/></prtobjct>"
      "<prtobjct id='Dyn' objecttype='table' type='dynatable'><column id='from'/></prtobjct>");
  write("hidden.xml", "<hiddenfields/>");
  const json expected = json::parse(R"([
    {"questionId": "Name", "rowIndex": "", "columnId": "", "value": "N"},
    {"questionId": "box", "rowIndex": "", "columnId": "", "value": "Y"},
    {"questionId": "Grid", "rowIndex": "3", "columnId": "a", "value": "3"},
    {"questionId": "Dyn", "rowIndex": "2", "columnId": "to", "value": "y"},
    {"questionId": "Dyn", "rowIndex": "2", "columnId": "fixed", "value": "F"},
    {"questionId": "out", "rowIndex": "", "columnId": "", "value": "H"}])");
  EXPECT_EQ(stored(first["park"])["missing"], expected);
}

TEST_F(StoredForm, NamesItsFieldsInLowerCaseOfAnyAlphabet) {
  objects("<prtobjct id='\xC3\x85' objecttype='field' type='text' dynamic='false'/>");
  const json first = posted("%C3%A5=x");
  EXPECT_EQ(stored(first["park"])["park"], first["park"]);
  EXPECT_NE(first["park"].get<std::string>().find("value=\"x\""), std::string::npos);
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
