#include "validation/report/MissingQuestions.h"

#include <algorithm>
#include <utility>

#include "config/Attributes.h"
#include "config/Names.h"
#include "platform/text/Text.h"
#include "validation/report/LocalPath.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::size_t kMostCandidates = 64;  // of one path

std::string cellKey(const std::string& strRowIndex, const std::string& strColumnId) {
  return strRowIndex + "\n" + strColumnId;
}

std::size_t steps(const std::string& strPath) {
  return static_cast<std::size_t>(std::count(strPath.begin(), strPath.end(), '/'));
}

}  // namespace

std::optional<Marks> MissingQuestions::find(const std::string& strParentPath,
                                            const std::string& strLocalName, const Marks& around) {
  const std::string strPath = localPath(strParentPath) + "/" + strLocalName;
  const auto [found, blnNew] = byPath_.try_emplace(strPath);
  Known& known = found->second;
  if (blnNew) addCandidates(places_.ofQuestions(), strPath, known.ofQuestions);
  const Best nearest = best(known.ofQuestions, around);
  return nearest.isNearest() ? nearest.marks : best(all(strPath, known), around).marks;
}

bool MissingQuestions::Best::isNearest() const {
  return candidate && candidate->lngBelow == 0 && answer == ParkIndex::Answer::blank;
}

MissingQuestions::Best MissingQuestions::best(const Candidates& candidates, const Marks& around) {
  Best best;
  for (const Candidate& candidate : candidates) {
    const QuestionPlaces::Place& place = candidate.place;
    Marks marks = {park_.idOf(place.strQuestionId), "", place.strColumnId};
    const bool blnInRow = !around.strRowIndex.empty();
    if (blnInRow && park_.idOf(around.strQuestionId) != marks.strQuestionId) continue;
    if (blnInRow) marks.strRowIndex = around.strRowIndex;
    if (!blnInRow) marks.strColumnId.clear();  // a whole row is missing
    if (isThere(marks)) continue;
    const auto answer = park_.answer(marks);
    if (best.candidate && !isBetter(candidate, answer, best)) continue;
    best = {std::move(marks), &candidate, answer};
  }
  return best;
}

/// What is the same for both is not looked up.
bool MissingQuestions::isBetter(const Candidate& candidate, ParkIndex::Answer answer,
                                const Best& best) {
  const Candidate& other = *best.candidate;
  const auto rank = std::pair(candidate.lngBelow > 0, answer);
  const auto otherRank = std::pair(other.lngBelow > 0, best.answer);
  if (rank != otherRank) return rank < otherRank;
  const bool blnMandatory = isMandatory(candidate);
  if (blnMandatory != isMandatory(other)) return blnMandatory;
  return std::pair(candidate.lngBelow, candidate.place.lngOrder) <
         std::pair(other.lngBelow, other.place.lngOrder);
}

const MissingQuestions::Candidates& MissingQuestions::all(const std::string& strPath,
                                                          Known& known) {
  if (!known.all) {
    known.all.emplace();
    for (const std::string& strOriginal : places_.originals(strPath)) {
      addCandidates(places_.ofQuestions(), strOriginal, *known.all);
      addCandidates(places_.ofMapper(), strOriginal, *known.all);
    }
  }
  return *known.all;
}

void MissingQuestions::addCandidates(const std::vector<QuestionPlaces::Place>& places,
                                     const std::string& strPath, Candidates& candidates) {
  for (auto place = std::ranges::lower_bound(places, strPath, {}, &QuestionPlaces::Place::strPath);
       place != places.end() && candidates.size() < kMostCandidates; ++place) {
    if (!place->strPath.starts_with(strPath)) break;
    const std::string strBelow = place->strPath.substr(strPath.size());
    if (!strBelow.empty() && strBelow.front() != '/') continue;  // a longer name
    candidates.push_back({*place, strPath, steps(strBelow)});
  }
}

/// Whether every step below the missing element is mandatory.
bool MissingQuestions::isMandatory(const Candidate& candidate) {
  if (!mandatory_) {
    mandatory_.emplace();
    for (const Node& objElement : required(documents_.reference().selectNodes("//*[@mandatory]"))) {
      if (toLower(trim(attributeText(objElement, "mandatory"))) != "true") continue;
      mandatory_->insert(elementPath(objElement));
    }
  }
  std::string strAt = candidate.place.strPath;
  for (; strAt.size() > candidate.strAbove.size(); strAt.resize(strAt.rfind('/'))) {
    if (!mandatory_->contains(strAt)) return false;
  }
  return true;
}

/// Whether the message has an answer of its own for a question or cell.
bool MissingQuestions::isThere(const Marks& marks) {
  if (!there_) {
    there_.emplace();
    for (const Node& objElement : required(documents_.message().selectNodes("//*[@questionId]"))) {
      InMessage& one = (*there_)[park_.idOf(attributeText(objElement, kQuestionId))];
      one.elements.push_back(objElement);
    }
  }
  const auto found = there_->find(marks.strQuestionId);
  if (found == there_->end()) return false;
  InMessage& one = found->second;
  if (!one.cells) {
    one.cells.emplace();
    for (const Node& objElement : one.elements) {
      if (objElement.selectSingleNode("*")) continue;
      one.cells->insert(
          cellKey(attributeText(objElement, kRowIndex), attributeText(objElement, kColumnId)));
    }
  }
  return one.cells->contains(cellKey(marks.strRowIndex, marks.strColumnId));
}

}  // namespace Varnel_Tolv_XML_Creation
