#include "validation/report/MissingQuestions.h"

#include <algorithm>
#include <tuple>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "validation/report/LocalPath.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostCandidates = 64;  // of one path

std::string key(const Marks& marks) {
  return marks.strQuestionId + "\n" + marks.strRowIndex + "\n" + marks.strColumnId;
}

std::size_t steps(const std::string& strPath) {
  return static_cast<std::size_t>(std::count(strPath.begin(), strPath.end(), '/'));
}

}  // namespace

std::optional<Marks> MissingQuestions::find(const std::string& strParentPath,
                                            const std::string& strLocalName, const Marks& around) {
  const std::string strPath = localPath(strParentPath) + "/" + strLocalName;
  std::optional<Marks> best;
  auto bestRank = std::tuple<bool, int, bool, std::size_t, std::size_t>();
  for (const Candidate& candidate : candidatesAt(strPath)) {
    const QuestionPlaces::Place& place = candidate.place;
    Marks marks = {park_.idOf(place.strQuestionId), "", place.strColumnId};
    const bool blnInRow = !around.strRowIndex.empty();
    if (blnInRow && park_.idOf(around.strQuestionId) != marks.strQuestionId) continue;
    if (blnInRow) marks.strRowIndex = around.strRowIndex;
    if (!blnInRow) marks.strColumnId.clear();  // a whole row is missing
    if (isThere(marks)) continue;
    const auto answer = park_.answer(marks);
    const auto rank = std::tuple(candidate.lngBelow > 0, static_cast<int>(answer),
                                 !candidate.blnMandatory, candidate.lngBelow, place.lngOrder);
    if (best && bestRank <= rank) continue;
    best = marks;
    bestRank = rank;
  }
  return best;
}

const std::vector<MissingQuestions::Candidate>& MissingQuestions::candidatesAt(
    const std::string& strPath) {
  const auto [known, blnNew] = byPath_.try_emplace(strPath);
  if (!blnNew) return known->second;
  if (!places_) places_.emplace(documents_, park_);
  for (const std::string& strOriginal : places_->originals(strPath)) {
    addCandidates(strOriginal, known->second);
  }
  return known->second;
}

void MissingQuestions::addCandidates(const std::string& strPath,
                                     std::vector<Candidate>& candidates) {
  const QuestionPlaces::ByPath& places = places_->places();
  for (auto place = places.lower_bound(strPath);
       place != places.end() && candidates.size() < kMostCandidates; ++place) {
    if (!place->first.starts_with(strPath)) break;
    const std::string strBelow = place->first.substr(strPath.size());
    if (!strBelow.empty() && strBelow.front() != '/') continue;  // a longer name
    candidates.push_back({place->second, steps(strBelow), isMandatory(strPath, strBelow)});
  }
}

/// Whether every step below a path is mandatory.
bool MissingQuestions::isMandatory(const std::string& strPath, const std::string& strBelow) {
  if (!mandatory_) {
    mandatory_.emplace();
    for (const Node& objElement : required(documents_.reference().selectNodes("//*[@mandatory]"))) {
      if (toLower(trim(attributeText(objElement, "mandatory"))) != "true") continue;
      mandatory_->insert(elementPath(objElement));
    }
  }
  std::string strAt = strPath + strBelow;
  for (; strAt.size() > strPath.size(); strAt.resize(strAt.rfind('/'))) {
    if (!mandatory_->contains(strAt)) return false;
  }
  return true;
}

/// Whether the message has an answer of its own for a question or cell.
bool MissingQuestions::isThere(const Marks& marks) {
  if (!there_) {
    there_.emplace();
    for (const Node& objElement : required(documents_.message().selectNodes("//*[@questionId]"))) {
      if (objElement.selectSingleNode("*")) continue;
      there_->insert(
          key({park_.idOf(attributeText(objElement, kQuestionId)),
               attributeText(objElement, kRowIndex), attributeText(objElement, kColumnId)}));
    }
  }
  return there_->contains(key(marks));
}

}  // namespace Varnel_Tolv_XML_Creation
