#include "validation/lookup/QuestionPaths.h"

#include <algorithm>

#include "config/Attributes.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kQuestions = "/questions/question";

/// Whether a path ends its own literal, so that only the selection knows what it means.
bool hasApostrophe(std::string_view strPath) {
  return strPath.find('\'') != std::string_view::npos;
}

std::vector<Node> nodes(const NodeList& colNodes) { return {colNodes.begin(), colNodes.end()}; }

}  // namespace

std::vector<Node> QuestionPaths::at(const std::string& strPath) {
  if (hasApostrophe(strPath)) {
    const std::string strXPath = std::string(kQuestions) + "[xpath='" + strPath + "']";
    return nodes(required(objQuestionsXml_.selectNodes(strXPath)));
  }
  if (!atPath_) readPaths();
  const auto found = atPath_->find(strPath);
  return found == atPath_->end() ? std::vector<Node>() : found->second;
}

std::optional<std::vector<Node>> QuestionPaths::below(const std::string& strPath) {
  if (hasApostrophe(strPath)) {
    const std::string strXPath =
        std::string(kQuestions) + "[starts-with(xpath, '" + strPath + "')]";
    const std::optional<NodeList> colQuestions = objQuestionsXml_.selectNodes(strXPath);
    return colQuestions ? std::optional(nodes(*colQuestions)) : std::nullopt;
  }
  if (!firstPaths_ && !readFirstPaths()) return std::nullopt;

  std::vector<std::size_t> places;
  for (auto path = std::lower_bound(firstPaths_->begin(), firstPaths_->end(),
                                    std::pair(strPath, std::size_t{0}));
       path != firstPaths_->end() && path->first.starts_with(strPath); ++path) {
    places.push_back(path->second);
  }
  std::sort(places.begin(), places.end());  // document order
  std::vector<Node> colQuestions;
  for (const std::size_t lngPlace : places) colQuestions.push_back(questions_[lngPlace]);
  return colQuestions;
}

void QuestionPaths::readPaths() {
  const std::string strXPath = std::string(kQuestions) + "/xpath";
  std::unordered_map<std::string, std::vector<Node>> atPath;
  for (const Node& objXpath : required(objQuestionsXml_.selectNodes(strXPath))) {
    const Node objQuestion = objXpath.parentNode();
    std::vector<Node>& colQuestions = atPath[objXpath.text()];
    const bool blnListed = !colQuestions.empty() && colQuestions.back() == objQuestion;
    if (!blnListed) colQuestions.push_back(objQuestion);
  }
  atPath_ = std::move(atPath);
}

bool QuestionPaths::readFirstPaths() {
  const std::optional<NodeList> colQuestions = objQuestionsXml_.selectNodes(kQuestions);
  if (!colQuestions) return false;
  questions_ = nodes(*colQuestions);
  std::vector<std::pair<std::string, std::size_t>> firstPaths;
  for (std::size_t lngPlace = 0; lngPlace < questions_.size(); ++lngPlace) {
    const Node objXpath = questions_[lngPlace].selectSingleNode("xpath");
    firstPaths.emplace_back(objXpath ? objXpath.text() : std::string(), lngPlace);
  }
  std::sort(firstPaths.begin(), firstPaths.end());
  firstPaths_ = std::move(firstPaths);
  return true;
}

}  // namespace Varnel_Tolv_XML_Creation
