#include "validation/report/QuestionPlaces.h"

#include <algorithm>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"
#include "validation/report/LocalPath.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostParents = 16;  // that one XPath is followed to

std::string childText(const Node& objElement, std::string_view strName) {
  const Node objChild = objElement.selectSingleNode(strName);
  return objChild ? std::string(trim(objChild.text())) : std::string();
}

void sort(std::vector<QuestionPlaces::Place>& places) {
  std::ranges::stable_sort(places, {}, &QuestionPlaces::Place::strPath);
}

std::string lastStep(const std::string& strPath) { return strPath.substr(strPath.rfind('/')); }

}  // namespace

const std::vector<QuestionPlaces::Place>& QuestionPlaces::ofQuestions() {
  if (!ofQuestions_) {
    ofQuestions_ = readQuestions(documents_.questions());
    sort(*ofQuestions_);
  }
  return *ofQuestions_;
}

const std::vector<QuestionPlaces::Place>& QuestionPlaces::ofMapper() {
  if (!ofMapper_) readMapper();
  return *ofMapper_;
}

std::vector<QuestionPlaces::Place> QuestionPlaces::readQuestions(const Document& objQuestionsXml) {
  std::vector<Place> places;
  for (const Node& objXPath : required(objQuestionsXml.selectNodes("/questions/question/xpath"))) {
    const std::string strPath = localPath(trim(objXPath.text()));
    const Node objQuestion = objXPath.parentNode();
    const std::string strQuestionId = attributeText(objQuestion, kId);
    if (strPath.empty() || strQuestionId.empty()) continue;
    places.push_back({strPath, strQuestionId, "", places.size()});
    for (const Node& objColumn : required(objQuestion.selectNodes(kColumn))) {
      const std::string strBelow = localPath(childText(objColumn, "path"));
      if (strBelow.empty()) continue;
      places.push_back(
          {strPath + strBelow, strQuestionId, attributeText(objColumn, kId), places.size()});
    }
  }
  return places;
}

void QuestionPlaces::readMapper() {
  ofMapper_.emplace();
  const Document& objMapper = documents_.mapper();
  for (const Node& objItem : required(objMapper.selectNodes("//message/messageitem"))) {
    readItem(objItem);
  }
  for (const Node& objRule : required(objMapper.selectNodes("//message/docdata/docnodes/*"))) {
    readCopies(objRule);
  }
  sort(*ofMapper_);
}

void QuestionPlaces::readItem(const Node& objItem) {
  if (attributeText(objItem, kToSchema) != "true") return;
  const std::vector<std::string> questions = park_.objectsOf(objItem);
  const bool blnTable = attributeText(objItem, kType).find("table") != std::string::npos;
  const Node objAction = objItem.selectSingleNode("action");
  for (const auto& [strParent, strNode] :
       {std::pair("parentxpath", "node"), std::pair("extrapath", "extranode")}) {
    const std::string strBelow = localPath(childText(objItem, strNode));
    if (strBelow.empty()) continue;
    for (const std::string& strAbove : pathsOf(childText(objItem, strParent))) {
      for (const std::string& strQuestionId : questions) add(strAbove + strBelow, strQuestionId);
      if (objAction) readComplexType(objAction, strAbove + strBelow, questions, blnTable);
    }
  }
}

/// The places inside of a complex type: a table's by their columns, a field's by the parameters.
void QuestionPlaces::readComplexType(const Node& objAction, const std::string& strPath,
                                     const std::vector<std::string>& questions, bool blnTable) {
  const Node objType = typeOf(objAction);
  if (!objType) return;
  const std::string strTop = elementPath(objType);
  for (const Node& objPlace : required(objType.getElementsByTagName(kValue))) {
    const std::string strAt = strPath + elementPath(objPlace.parentNode()).substr(strTop.size());
    const std::string strId = attributeText(objPlace, kId);
    if (blnTable) {
      for (const std::string& strQuestionId : questions) add(strAt, strQuestionId, strId);
      continue;
    }
    for (const Node& objParameter : required(objAction.selectNodes("parameter"))) {
      if (attributeText(objParameter, kId) != toLower(strId)) continue;
      const std::string strOther = attributeText(objParameter, kMessageItem);
      if (attributeText(objParameter, kFormValue) == "true") {
        for (const std::string& strQuestionId : questions) add(strAt, strQuestionId);
      } else if (!isBlank(strOther)) {
        add(strAt, strOther);
      }
    }
  }
}

/// The complex type that an action makes; Nothing where there is none of its name.
Node QuestionPlaces::typeOf(const Node& objAction) {
  if (!types_) {
    types_.emplace();
    for (const Node& objType : required(
             documents_.types().selectNodes("/SchemaTypeMapperDocument/schematypes/schematype"))) {
      types_->try_emplace(attributeText(objType, kId), objType);
    }
  }
  const auto found = types_->find(toLower(attributeText(objAction, kId)));
  return found == types_->end() ? Node() : found->second;
}

/// A rule that copies elements of the message to another place.
void QuestionPlaces::readCopies(const Node& objRule) {
  const std::string strParent = localPath(childText(objRule, "parentxpath"));
  if (strParent.empty()) return;
  for (const Node& objNode : required(objRule.selectNodes("node | .//action/node"))) {
    const std::string strOriginal = localPath(trim(objNode.text()));
    if (strOriginal.empty()) continue;
    const Node objAction = objNode.parentNode();
    if (attributeText(objAction, kId) == "makehcpdetailtype") {
      readMadeCopies(objAction, strParent);
    } else {
      copies_.emplace(strParent + lastStep(strOriginal), strOriginal);
    }
  }
}

void QuestionPlaces::readMadeCopies(const Node& objAction, const std::string& strParent) {
  const std::string strOriginal = localPath(childText(objAction, "node"));
  std::string strUnder = strParent;
  for (const Node& objParameter : required(objAction.selectNodes("parameter"))) {
    const std::string strPath = localPath(trim(objParameter.text()));
    if (strPath.empty()) continue;
    if (attributeText(objParameter, "action") == "create") {
      strUnder = strParent + strPath;
    } else {
      copies_.emplace(strUnder + lastStep(strPath), strOriginal + strPath);
    }
  }
}

std::vector<std::string> QuestionPlaces::originals(const std::string& strPath) {
  static_cast<void>(ofMapper());  // which knows of the copies
  std::vector<std::string> paths = {strPath};
  for (std::size_t lngEnd = strPath.size(); lngEnd > 0 && lngEnd != std::string::npos;
       lngEnd = strPath.rfind('/', lngEnd - 1)) {
    const auto [first, last] = copies_.equal_range(strPath.substr(0, lngEnd));
    for (auto copy = first; copy != last; ++copy) {
      paths.push_back(copy->second + strPath.substr(lngEnd));
    }
  }
  return paths;
}

void QuestionPlaces::add(const std::string& strPath, const std::string& strQuestionId,
                         const std::string& strColumnId) {
  if (strPath.empty() || strQuestionId.empty()) return;
  // Behind those of the questions XML.
  const std::size_t lngOrder = ofQuestions().size() + ofMapper_->size();
  ofMapper_->push_back({strPath, strQuestionId, strColumnId, lngOrder});
}

/// The paths that an XPath leads to: its own, or those of what it selects in the message.
std::vector<std::string> QuestionPlaces::pathsOf(const std::string& strXPath) const {
  std::vector<std::string> paths;
  if (const std::string strPath = localPath(strXPath); !strPath.empty()) return {strPath};
  if (isBlank(strXPath)) return paths;
  const Acknowledge objAck = Guarded("pathsOf", [&]() -> Acknowledge {
    const NodeList colNodes = required(documents_.message().selectNodes(strXPath));
    for (std::size_t lngNode = 0; lngNode < std::min(colNodes.length(), kMostParents); ++lngNode) {
      paths.push_back(elementPath(colNodes.item(lngNode)));
    }
    return {};
  });
  static_cast<void>(objAck);  // what is no XPath leads nowhere
  return paths;
}

}  // namespace Varnel_Tolv_XML_Creation
