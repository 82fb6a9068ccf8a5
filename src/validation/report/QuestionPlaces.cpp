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

std::string lastStep(const std::string& strPath) { return strPath.substr(strPath.rfind('/')); }

}  // namespace

QuestionPlaces::QuestionPlaces(ReportDocuments& documents, const ParkIndex& park)
    : documents_(documents), park_(park) {
  readQuestions(documents.questions());
  readMapper(documents.mapper(), documents.types());
}

void QuestionPlaces::readQuestions(const Document& objQuestionsXml) {
  for (const Node& objQuestion : required(objQuestionsXml.selectNodes("/questions/question"))) {
    const std::string strQuestionId = attributeText(objQuestion, kId);
    for (const Node& objXPath : required(objQuestion.selectNodes("xpath"))) {
      const std::string strPath = localPath(trim(objXPath.text()));
      add(strPath, strQuestionId);
      for (const Node& objColumn : required(objQuestion.selectNodes(kColumn))) {
        const std::string strBelow = localPath(childText(objColumn, "path"));
        if (!strBelow.empty())
          add(strPath + strBelow, strQuestionId, attributeText(objColumn, kId));
      }
    }
  }
}

void QuestionPlaces::readMapper(const Document& objMapper, const Document& objTypes) {
  for (const Node& objItem : required(objMapper.selectNodes("//message/messageitem"))) {
    readItem(objItem, objTypes);
  }
  for (const Node& objRule : required(objMapper.selectNodes("//message/docdata/docnodes/*"))) {
    readCopies(objRule);
  }
}

void QuestionPlaces::readItem(const Node& objItem, const Document& objTypes) {
  if (attributeText(objItem, "toschema") != "true") return;
  const std::vector<std::string> questions = park_.objectsOf(objItem);
  const bool blnTable = attributeText(objItem, kType).find("table") != std::string::npos;
  const Node objAction = objItem.selectSingleNode("action");
  for (const auto& [strParent, strNode] :
       {std::pair("parentxpath", "node"), std::pair("extrapath", "extranode")}) {
    const std::string strBelow = localPath(childText(objItem, strNode));
    if (strBelow.empty()) continue;
    for (const std::string& strAbove : pathsOf(childText(objItem, strParent))) {
      for (const std::string& strQuestionId : questions) add(strAbove + strBelow, strQuestionId);
      if (objAction) readComplexType(objAction, objTypes, strAbove + strBelow, questions, blnTable);
    }
  }
}

/// The places inside of a complex type: a table's by their columns, a field's by the parameters.
void QuestionPlaces::readComplexType(const Node& objAction, const Document& objTypes,
                                     const std::string& strPath,
                                     const std::vector<std::string>& questions, bool blnTable) {
  const std::string strType = toLower(attributeText(objAction, kId));
  Node objType;
  for (const Node& objOne :
       required(objTypes.selectNodes("/SchemaTypeMapperDocument/schematypes/schematype"))) {
    if (!objType && attributeText(objOne, kId) == strType) objType = objOne;
  }
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
      const std::string strOther = attributeText(objParameter, "messageitem");
      if (attributeText(objParameter, "formvalue") == "true") {
        for (const std::string& strQuestionId : questions) add(strAt, strQuestionId);
      } else if (!isBlank(strOther)) {
        add(strAt, strOther);
      }
    }
  }
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

std::vector<std::string> QuestionPlaces::originals(const std::string& strPath) const {
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
  places_.emplace(strPath, Place{strQuestionId, strColumnId, places_.size()});
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
