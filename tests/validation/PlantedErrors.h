#pragma once

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dom/Document.h"

// Where the example's message can be broken, how, and which of these errors are not told at the
// question, row and column of the answer, each with the reason.

namespace Varnel_Tolv_XML_Creation::test {

using Records = std::multiset<std::string>;

enum class Way { empty, tooLong, oneCharacter, noValueOfItsType, otherCase, removed };
inline constexpr std::pair<Way, const char*> kWays[] = {
    {Way::empty, "empty"},
    {Way::tooLong, "too long"},
    {Way::oneCharacter, "one character"},
    {Way::noValueOfItsType, "no value of its type"},
    {Way::otherCase, "a code in other letters"},
    {Way::removed, "removed"},
};

/// "question/row/column", as records and places are compared.
inline std::string address(std::string_view strQuestion, std::string_view strRow = "",
                           std::string_view strColumn = "") {
  return std::string(strQuestion) + "/" + std::string(strRow) + "/" + std::string(strColumn);
}

template <class Item>
bool contains(const std::vector<Item>& items, const Item& item) {
  return std::ranges::find(items, item) != items.end();
}

inline std::string inOtherLetters(std::string strText) {
  for (char& letter : strText) {
    if (letter >= 'a' && letter <= 'z') {
      letter = static_cast<char>(letter - 'a' + 'A');
    } else if (letter >= 'A' && letter <= 'Z') {
      letter = static_cast<char>(letter - 'A' + 'a');
    }
  }
  return strText;
}

/// An element of the message that holds an answer, or a part of one.
struct Place {
  std::size_t lngElement = 0;  // among all elements, in document order
  std::string strPath;
  std::string strText;
  bool blnLeaf = true;
  bool blnAnswer = true;    // else the template or the document data wrote it
  std::string strQuestion;  // whose answer it holds, and of which cell
  std::string strRow;
  std::string strColumn;
  std::string strBefore;  // another answer in front of this one in the same element

  std::string answer() const { return address(strQuestion, strRow, strColumn); }
};

struct Planted {
  const Place* place;
  Way way;
  const char* strWay;
  Records alone;
};

inline std::string describe(const Planted& error) {
  return error.place->strPath + " (" + error.place->answer() + ") " + error.strWay;
}

/// The path below the root element.
inline std::string elementPath(const Node& objElement) {
  const Node objParent = objElement.parentNode();
  if (objParent.nodeType() != NodeType::element) return "";
  return elementPath(objParent) + "/" + objElement.nodeName();
}

inline std::string parentPath(const std::string& strPath) {
  return strPath.substr(0, strPath.rfind('/'));
}

/// Every place of the message, read from the text of it, as the schema's reader does.
inline std::vector<Place> placesOf(const Document& objMessage) {
  std::vector<Place> places;
  const std::optional<NodeList> colElements = objMessage.selectNodes("//*");
  for (std::size_t lngElement = 0; lngElement < colElements->length(); ++lngElement) {
    const Node objElement = colElements->item(lngElement);
    Place place{.lngElement = lngElement,
                .strPath = elementPath(objElement),
                .strText = objElement.text(),
                .blnLeaf = !objElement.selectSingleNode("*"),
                .strQuestion = objElement.getAttribute("questionId").value_or(""),
                .strRow = objElement.getAttribute("rowIndex").value_or(""),
                .strColumn = objElement.getAttribute("columnId").value_or(""),
                .strBefore = ""};
    const std::string strName = objElement.nodeName();
    if (strName == "pbr:AdditionalInfo") {
      place.strQuestion = "defects";
      place.strRow = objElement.parentNode().getAttribute("rowIndex").value_or("");
      place.strColumn = objElement.getAttribute("id").value_or("");
    } else if (strName == "pbr:AreaCondition") {
      place.strColumn = "any";  // the text holds all columns of the row
    } else if (place.strPath.ends_with("/cnt:Occupant/cnt:Name")) {
      place.strQuestion = "ownername";  // the building is occupied by its owner
    }
    place.blnAnswer = !place.strQuestion.empty();
    if (!place.blnAnswer && !place.blnLeaf) continue;
    places.push_back(place);
    if (strName == "rpt:OnSite") {
      place.strQuestion = "departuretime";
      place.strBefore = "09:25 - ";
      places.push_back(place);
    }
  }
  return places;
}

/// What does not become exactly one record, for the person at the form and at the right place.
struct Shortfall {
  const char* path;                  // below the root element, as in all records
  std::vector<std::string> answers;  // whose; none: everyone's at this path
  std::vector<Way> ways;
  std::vector<std::string> becomes;  // "%p" is the path, "%r" the row
  const char* because;
};

inline constexpr const char* kNoQuestionThere =
    "what is missing is told by the path of its parent, and no question has its path there";
inline constexpr const char* kFirstRow =
    "once a child has ended, the identifiers of the first row are in force, whose cell is filled";
inline constexpr const char* kWholeRow =
    "the text of a whole row names the row's last column, whichever is at fault";
inline constexpr const char* kNoIdentifiers =
    "a cell without a place of its own in the model of its row carries no identifiers";
inline constexpr const char* kItem =
    "an item is sent under the id of the question whose entry names it";
inline constexpr const char* kSharedPath = "every question that has the path and no answer is told";
inline constexpr const char* kTwoAnswers =
    "an element with two answers carries the id of the first question";

inline const std::vector<Shortfall>& shortfalls() {
  using enum Way;
  static const std::vector<Shortfall> kShortfalls = {
      {"/Document/rpt:CaseNumber", {}, {removed}, {"internal /Document //"}, kNoQuestionThere},
      {"/Document/cnt:Inspector/cnt:Name",
       {},
       {removed},
       {"internal /Document/cnt:Inspector //"},
       kNoQuestionThere},
      {"/Document/cnt:Inspector/cnt:StaffNumber",
       {},
       {removed},
       {"internal /Document/cnt:Inspector //"},
       kNoQuestionThere},
      {"/Document/cnt:Recipient/cnt:Name",
       {},
       {removed},
       {"internal /Document/cnt:Recipient //"},
       kNoQuestionThere},
      {"/Record/pbr:Source/pbr:CaseNumber",
       {},
       {removed},
       {"internal /Record/pbr:Source //"},
       kNoQuestionThere},

      {"/Record/pbr:Defects/pbr:Defect/pbr:Severity",
       {"defects/2/severity", "defects/4/severity"},
       {removed},
       {"internal /Record/pbr:Defects/pbr:Defect defects/1/"},
       kFirstRow},
      {"/Record/pbr:Defects/pbr:Defect/pbr:Found",
       {"defects/2/found", "defects/4/found"},
       {removed},
       {"internal /Record/pbr:Defects/pbr:Defect defects/1/"},
       kFirstRow},
      {"/Record/pbr:Defects/pbr:Defect/pbr:Period/pbr:Unit",
       {"defects/2/timedimension"},
       {removed},
       {"internal /Record/pbr:Defects/pbr:Defect/pbr:Period defects/1/"},
       kFirstRow},
      {"/Record/pbr:Readings/pbr:Reading/pbr:Value",
       {"meters/2/reading"},
       {removed},
       {"internal /Record/pbr:Readings/pbr:Reading meters/1/"},
       kFirstRow},

      {"/Record/pbr:Areas/pbr:AreaCondition", {}, {tooLong}, {"areas/%r/remark"}, kWholeRow},
      {"/Record/pbr:Areas/pbr:AreaCondition",
       {},
       {empty},
       {"areas/%r/remark", "internal %p areas/%r/remark"},
       kWholeRow},
      {"/Record/pbr:Defects/pbr:Defect/pbr:AdditionalInfo",
       {},
       {tooLong},
       {"internal %p //"},
       kNoIdentifiers},

      {"/Parties/cnt:Occupant/cnt:Name",
       {},
       {empty, tooLong, oneCharacter},
       {"buildingvacant//"},
       kItem},
      {"/Parties/cnt:Occupant/cnt:Name",
       {},
       {removed},
       {"buildingvacant//", "occupantname//"},
       kSharedPath},
      {"/Visit/rpt:OnSite",
       {"departuretime//"},
       {tooLong, oneCharacter, noValueOfItsType},
       {"arrivaltime//"},
       kTwoAnswers},
  };
  return kShortfalls;
}

/// A record of `Shortfall::becomes` for this place.
inline std::string recordAt(const Place& place, std::string strRecord) {
  const std::pair<std::string_view, const std::string*> marks[] = {{"%p", &place.strPath},
                                                                   {"%r", &place.strRow}};
  for (const auto& [strMark, strText] : marks) {
    const std::size_t lngAt = strRecord.find(strMark);
    if (lngAt != std::string::npos) strRecord.replace(lngAt, strMark.size(), *strText);
  }
  return strRecord;
}

inline const Shortfall* shortfallOf(const Planted& error) {
  for (const Shortfall& shortfall : shortfalls()) {
    if (error.place->strPath != shortfall.path || !contains(shortfall.ways, error.way)) continue;
    if (shortfall.answers.empty() || contains(shortfall.answers, error.place->answer())) {
      return &shortfall;
    }
  }
  return nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation::test
