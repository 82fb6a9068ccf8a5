#include "host/PageModel.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>

#include "CannotRun.h"
#include "Words.h"
#include "host/Answers.h"
#include "host/PageTexts.h"
#include "host/SchemaFacets.h"
#include "varnel_xml_creation/platform/dom/Document.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

std::string attribute(const Node& objElement, std::string_view strName) {
  return objElement ? objElement.getAttribute(strName).value_or("") : "";
}

/// The child elements with this name, or all.
std::vector<Node> children(const Node& objElement, std::string_view strName = "") {
  std::vector<Node> found;
  if (!objElement) return found;
  const std::optional<NodeList> colChildren = objElement.childNodes();
  for (const Node& objChild : *colChildren) {
    if (objChild.nodeType() != NodeType::element) continue;
    if (strName.empty() || objChild.nodeName() == strName) found.push_back(objChild);
  }
  return found;
}

std::string childText(const Node& objElement, std::string_view strName) {
  const std::vector<Node> found = children(objElement, strName);
  return found.empty() ? "" : found.front().text();
}

Document loaded(const std::string& strFile) {
  const Document objXml = Document::create();
  if (!objXml.load(strFile)) {
    const ParseError& error = objXml.parseError();
    throw CannotRun(strFile + ": " + error.reason + " (line " + std::to_string(error.line) + ")");
  }
  return objXml;
}

/// "rpt:CaseNumber" as "Case number".
std::string inWords(std::string_view strName) {
  const std::size_t lngColon = strName.rfind(':');
  if (lngColon != std::string_view::npos) strName.remove_prefix(lngColon + 1);
  std::string strWords;
  for (const char letter : strName) {
    const bool blnCapital = letter >= 'A' && letter <= 'Z';
    if (blnCapital && !strWords.empty()) strWords += ' ';
    strWords += blnCapital && !strWords.empty() ? static_cast<char>(letter - 'A' + 'a') : letter;
  }
  return strWords;
}

std::string step(std::string_view strPath, std::size_t lngIndex) {
  for (std::size_t at = 0; at < lngIndex; ++at) {
    const std::size_t lngSlash = strPath.find('/');
    if (lngSlash == std::string_view::npos) return "";
    strPath.remove_prefix(lngSlash + 1);
  }
  return std::string(strPath.substr(0, strPath.find('/')));
}

std::string lastStep(std::string_view strPath) {
  return std::string(strPath.substr(strPath.rfind('/') + 1));
}

const char* dateHint(DateOrder order) {
  switch (order) {
    case DateOrder::monthDayYear:
      return "month/day/year, as 10/31/2026";
    case DateOrder::yearMonthDay:
      return "year-month-day, as 2026-10-31";
    default:
      return "day.month.year, as 31.10.2026";
  }
}

/// Puts a page together, from the general to the particular: what the object list says, what the
/// schema and the questions add, what page.xml wants otherwise.
class PageReader {
 public:
  explicit PageReader(const Options& options)
      : options_(options),
        facets_(
            SchemaModel::read(schemaPathOf(PageServer(options.pageDirectory), options.strSchemaUrl),
                              options.strSchemaCatalog)) {
    if (!options.strQuestionsXmlPath.empty()) {
      const Document objQuestions = loaded(options.strQuestionsXmlPath);
      for (const Node& objQuestion : children(objQuestions.documentElement(), "question")) {
        questions_.try_emplace(attribute(objQuestion, "id"), objQuestion);
      }
    }
  }

  void readObjects(PageModel& page);
  void readHidden(PageModel& page) const;
  void refine(PageModel& page, const Document& objPage);

 private:
  Question readQuestion(const Node& objItem);
  Input readColumn(const Node& objColumn, const Node& objQuestion, const std::string& strPath);
  void applySchema(Input& input, const std::string& strPath, const Node& objLimits);
  void applyPage(Input& input, const Node& objWanted) const;
  Node questionOf(const std::string& strId) const {
    const auto found = questions_.find(strId);
    return found == questions_.end() ? Node() : found->second;
  }

  const Options& options_;
  SchemaFacets facets_;
  std::map<std::string, Node, std::less<>> questions_;
};

void PageReader::applySchema(Input& input, const std::string& strPath, const Node& objLimits) {
  const Facets facets = facets_.at(strPath);
  input.blnRequired = facets.blnRequired;
  input.strMaxLength = attribute(objLimits, "maxLength");
  if (input.strMaxLength.empty()) input.strMaxLength = facets.strMaxLength;
  input.strMinLength = facets.strMinLength;
  input.strLeast = facets.strLeast;
  input.strMost = facets.strMost;
  const bool blnFree = input.strKind == "text" || input.strKind == "select";
  if (blnFree && !facets.enumerations.empty()) {
    input.strKind = "select";
    for (const std::string& strValue : facets.enumerations) {
      input.choices.push_back({strValue, inWords(strValue)});
    }
  } else if (input.strKind == "select") {
    input.strKind = "text";  // no choices are known
  }
  if (input.strKind == "text" && facets.blnDate) input.strKind = "date";
  if (input.strKind == "text" && facets.blnNumber) input.strKind = "number";
}

Input PageReader::readColumn(const Node& objColumn, const Node& objQuestion,
                             const std::string& strPath) {
  Input input;
  input.strId = attribute(objColumn, "id");
  input.strLabel = attribute(objColumn, "columnlabel");
  if (input.strLabel.empty()) input.strLabel = input.strId;
  const std::string strType = attribute(objColumn, "columntype");
  input.strKind = strType == "date" || strType == "time" ? strType : "text";
  input.strOutput = attribute(objColumn, "autovalue");
  input.blnOutput = !input.strOutput.empty() || attribute(objColumn, "calculate") == "true";
  for (const Node& objLimits : children(objQuestion, "column")) {
    if (attribute(objLimits, "id") != input.strId) continue;
    const std::string strBelow = childText(objLimits, "path");
    applySchema(input, strBelow.empty() ? "" : strPath + '/' + strBelow, objLimits);
  }
  return input;
}

Question PageReader::readQuestion(const Node& objItem) {
  Question question;
  Input& input = question.input;
  input.strId = attribute(objItem, "id");
  const Node objQuestion = questionOf(input.strId);
  const std::string strPath = childText(objQuestion, "xpath");
  for (const char* const name : {"letterlabel", "tablelabel", "fieldlabel"}) {
    if (input.strLabel.empty()) input.strLabel = attribute(objItem, name);
  }
  if (input.strLabel.empty()) input.strLabel = inWords(lastStep(strPath));
  if (input.strLabel.empty()) input.strLabel = input.strId;

  question.blnTable = lowerCase(attribute(objItem, "objecttype")) == "table";
  const std::string strType = attribute(objItem, "type");
  if (!question.blnTable) {
    constexpr std::string_view kKinds[] = {"check", "date", "time", "select", "textarea"};
    const bool blnKnown = std::ranges::find(kKinds, strType) != std::end(kKinds);
    input.strKind = blnKnown ? strType : "text";
    applySchema(input, strPath, objQuestion);
    return question;
  }
  question.blnDynamic = lowerCase(strType) != "table";
  for (const Node& objRow : children(objItem, "row")) {
    question.rows.push_back({attribute(objRow, "id"), attribute(objRow, "rowlabel")});
  }
  for (const Node& objColumn : children(objItem, "column")) {
    question.columns.push_back(readColumn(objColumn, objQuestion, strPath));
  }
  return question;
}

void PageReader::readObjects(PageModel& page) {
  const Document objList = loaded(*options_.objectList);
  const std::optional<NodeList> colObjects = objList.getElementsByTagName("prtobjct");
  for (const Node& objItem : *colObjects) {
    const std::string strKind = lowerCase(attribute(objItem, "objecttype"));
    if (strKind.find_first_not_of(' ') == std::string::npos) break;  // the rest is not parked
    if (strKind != "field" && strKind != "table") continue;
    // A section holds what stands together in the message.
    const std::string strPath = childText(questionOf(attribute(objItem, "id")), "xpath");
    const std::string strTitle = inWords(step(strPath, 2));
    if (page.sections.empty() || (!strTitle.empty() && page.sections.back().strTitle != strTitle)) {
      page.sections.push_back(
          {.strId = "s" + std::to_string(page.sections.size() + 1), .strTitle = strTitle});
    }
    page.sections.back().questions.push_back(readQuestion(objItem));
  }
}

void PageReader::readHidden(PageModel& page) const {
  if (options_.strHiddenFieldXML.empty()) return;
  const Document objHidden = loaded(options_.strHiddenFieldXML);
  for (const Node& objField : children(objHidden.documentElement())) {
    page.hidden.push_back({attribute(objField, "id"), attribute(objField, "output"), ""});
  }
}

void PageReader::applyPage(Input& input, const Node& objWanted) const {
  const auto take = [&](std::string& strTarget, std::string strWanted) {
    if (!strWanted.empty()) strTarget = std::move(strWanted);
  };
  take(input.strLabel, attribute(objWanted, "label"));
  input.blnLabelGiven = !attribute(objWanted, "label").empty();
  take(input.strKind, attribute(objWanted, "kind"));
  take(input.strHint, attribute(objWanted, "hint"));
  take(input.strWidth, attribute(objWanted, "width"));
  take(input.strMaxLength, attribute(objWanted, "maxlength"));
  take(input.strHelp, childText(objWanted, "help"));
  const std::string strRequired = attribute(objWanted, "required");
  if (!strRequired.empty()) input.blnRequired = strRequired == "true";
  const std::vector<Node> choices = children(objWanted, "choice");
  if (choices.empty()) return;
  input.choices.clear();
  for (const Node& objChoice : choices) {
    input.choices.push_back({attribute(objChoice, "value"), objChoice.text()});
  }
  if (input.strKind != "radio") input.strKind = "select";
}

void PageReader::refine(PageModel& page, const Document& objPage) {
  const Node objRoot = objPage.documentElement();
  page.strTitle = attribute(objRoot, "title");
  const std::string strLanguage = attribute(objRoot, "lang");
  if (!strLanguage.empty()) page.strLanguage = strLanguage;
  page.strIntro = childText(objRoot, "intro");
  page.strReceipt = childText(objRoot, "receipt");
  for (const Node& objHidden : children(objRoot, "hidden")) {
    for (HiddenField& field : page.hidden) {
      if (field.strId == attribute(objHidden, "id")) field.strValue = attribute(objHidden, "value");
    }
  }

  // Questions go to the sections that want them; who is not wanted stays where it was, at the end.
  const auto taken = [&](const std::string& strId) -> std::optional<Question> {
    for (Section& section : page.sections) {
      const auto found = std::ranges::find(section.questions, strId,
                                           [](const Question& each) { return each.input.strId; });
      if (found == section.questions.end()) continue;
      std::optional<Question> question = std::move(*found);
      section.questions.erase(found);
      return question;
    }
    return std::nullopt;
  };
  std::vector<Section> wanted;
  for (const Node& objSection : children(objRoot, "section")) {
    Section section{.strId = "s" + std::to_string(wanted.size() + 1),
                    .strTitle = attribute(objSection, "title"),
                    .strHelp = childText(objSection, "help")};
    for (const Node& objWanted : children(objSection, "question")) {
      const std::string strId = attribute(objWanted, "ref");
      std::optional<Question> question = taken(strId);
      if (!question) throw CannotRun("page.xml: there is no question \"" + strId + '"');
      applyPage(question->input, objWanted);
      question->strAdd = attribute(objWanted, "add");
      for (const Node& objColumn : children(objWanted, "column")) {
        const auto column =
            std::ranges::find(question->columns, attribute(objColumn, "ref"), &Input::strId);
        if (column == question->columns.end()) {
          throw CannotRun("page.xml: \"" + strId + "\" has no column \"" +
                          attribute(objColumn, "ref") + '"');
        }
        applyPage(*column, objColumn);
      }
      section.questions.push_back(std::move(*question));
    }
    wanted.push_back(std::move(section));
  }
  for (Section& section : page.sections) {
    if (section.questions.empty()) continue;
    section.strId = "s" + std::to_string(wanted.size() + 1);
    wanted.push_back(std::move(section));
  }
  page.sections = std::move(wanted);
}

std::string numberHint(const Input& input, const PageTexts& texts) {
  const PageTexts::Values values{{"least", input.strLeast}, {"most", input.strMost}};
  if (!input.strLeast.empty() && !input.strMost.empty()) return texts("{least} to {most}", values);
  if (!input.strLeast.empty()) return texts("at least {least}", values);
  return input.strMost.empty() ? "" : texts("at most {most}", values);
}

/// One character is what any answer has. What ends below the schema's least length tells nothing:
/// the schema decides.
std::string lengthHint(const Input& input, const PageTexts& texts) {
  const PageTexts::Values values{{"least", input.strMinLength}, {"most", input.strMaxLength}};
  const std::int64_t lngLeast = rowNumber(input.strMinLength, INT64_MAX);
  const bool blnLeast = lngLeast > 1;
  const std::string& strMost = input.strMaxLength;
  const std::int64_t lngMost = rowNumber(strMost, INT64_MAX);  // 0: not known
  if (strMost.empty() || (lngMost > 0 && lngMost < lngLeast))
    return blnLeast ? texts("at least {least} characters", values) : "";
  const bool blnOne = strMost == "1";
  if (input.strMinLength == strMost) {
    return blnOne ? texts("exactly 1 character") : texts("exactly {most} characters", values);
  }
  if (blnLeast) return texts("{least} to {most} characters", values);
  return blnOne ? texts("at most 1 character") : texts("at most {most} characters", values);
}

/// Tells the form and the limits of an answer, where page.xml does not.
void addHint(Input& input, DateOrder order, const PageTexts& texts) {
  constexpr std::string_view kFree[] = {"text", "textarea", "email", "tel"};
  if (!input.strHint.empty() || input.blnOutput) return;
  if (input.strKind == "date") input.strHint = texts(dateHint(order));
  if (input.strKind == "number") input.strHint = numberHint(input, texts);
  if (std::ranges::find(kFree, input.strKind) != std::end(kFree)) {
    input.strHint = lengthHint(input, texts);
  }
  if (!input.strHint.empty()) input.strHintLanguage = texts.language();
}

}  // namespace

const Question* PageModel::find(std::string_view strQuestion) const {
  for (const Section& section : sections) {
    for (const Question& question : section.questions) {
      if (question.input.strId == strQuestion) return &question;
    }
  }
  return nullptr;
}

PageModel readPageModel(const Options& options, const std::string& strPageXml) {
  PageModel page;
  PageReader reader(options);
  reader.readObjects(page);
  reader.readHidden(page);
  if (std::filesystem::exists(strPageXml)) reader.refine(page, loaded(strPageXml));
  const PageTexts& texts = PageTexts::of(page.strLanguage);
  for (Section& section : page.sections) {
    for (Question& question : section.questions) {
      addHint(question.input, options.dateOrder, texts);
      for (Input& column : question.columns) addHint(column, options.dateOrder, texts);
    }
  }
  return page;
}
