#include "ProofText.h"

#include <nlohmann/json.hpp>

#include "TerminalText.h"

using nlohmann::ordered_json;

namespace {

std::string nameOf(const AnswerPlace& place) {
  std::string strName = place.strQuestionId;
  if (!place.strRowIndex.empty()) strName += ", row " + place.strRowIndex;
  if (!place.strColumnId.empty()) strName += ", column " + place.strColumnId;
  return strName.empty() ? "no question" : oneLine(strName);
}

void addSpoiled(const SpoiledAnswer& spoiled, std::string& strText) {
  strText += nameOf(spoiled.place) + ": " + std::string(spoilingName(spoiled.kind)) + ": " +
             oneLine(shownValue(spoiled.strValue)) + '\n';
  for (const AnswerPlace& named : spoiled.named) {
    if (!(named == spoiled.place)) strText += "    names " + nameOf(named) + '\n';
  }
}

template <class Wanted>
void addSection(const Proof& proof, const char* heading, const Wanted& wanted,
                std::string& strText) {
  bool blnBegun = false;
  for (const SpoiledAnswer& spoiled : proof.spoiled) {
    if (!wanted(spoiled)) continue;
    if (!blnBegun) strText.append("\n").append(heading).append(":\n");
    blnBegun = true;
    addSpoiled(spoiled, strText);
  }
}

std::string figures(const char* list, std::size_t lngNamed, std::size_t lngWrong) {
  return std::string(list) + ": " + std::to_string(lngNamed) + " of " + std::to_string(lngWrong) +
         " led back, " + percentOf(lngNamed, lngWrong) + '\n';
}

ordered_json jsonOf(const AnswerPlace& place) {
  return {{"questionId", place.strQuestionId},
          {"rowIndex", place.strRowIndex},
          {"columnId", place.strColumnId}};
}

}  // namespace

std::string percentOf(std::size_t lngPart, std::size_t lngAll) {
  return std::to_string(lngAll == 0 ? 100 : lngPart * 100 / lngAll) + " %";
}

std::string shownValue(const std::string& strValue) {
  constexpr std::size_t kShown = 40;  // bytes: spoiled values are ASCII
  if (strValue.empty()) return "(nothing)";
  if (strValue.size() <= kShown) return strValue;
  return strValue.substr(0, kShown / 2) + "... (" + std::to_string(strValue.size()) +
         " characters)";
}

std::string_view outcomeName(SpoiledOutcome outcome) noexcept {
  switch (outcome) {
    case SpoiledOutcome::wrong:
      return "wrong";
    case SpoiledOutcome::notWrong:
      return "not-wrong";
    case SpoiledOutcome::noVerdict:
      break;
  }
  return "no-verdict";
}

std::string proofText(const Proof& proof) {
  std::string strText = std::to_string(proof.lngAnswers) + " answers, spoiled in " +
                        std::to_string(proof.spoiled.size()) +
                        " ways: " + std::to_string(proof.lngWrong) + " wrong, " +
                        std::to_string(proof.lngNotWrong) + " not wrong, " +
                        std::to_string(proof.lngNoVerdict) + " without a verdict\n";
  strText += figures("exact list", proof.lngExact, proof.lngWrong);
  strText += figures("compatible lists", proof.lngCompatible, proof.lngWrong);
  addSection(
      proof, "Missed by the exact list",
      [](const SpoiledAnswer& spoiled) {
        return spoiled.outcome == SpoiledOutcome::wrong && !spoiled.blnExact;
      },
      strText);
  addSection(
      proof, "Missed by the compatible lists alone",
      [](const SpoiledAnswer& spoiled) {
        return spoiled.outcome == SpoiledOutcome::wrong && spoiled.blnExact &&
               !spoiled.blnCompatible;
      },
      strText);
  addSection(
      proof, "Without a verdict",
      [](const SpoiledAnswer& spoiled) { return spoiled.outcome == SpoiledOutcome::noVerdict; },
      strText);
  addSection(
      proof, "Not wrong",
      [](const SpoiledAnswer& spoiled) { return spoiled.outcome == SpoiledOutcome::notWrong; },
      strText);
  return strText;
}

std::string proofJson(const Proof& proof) {
  const auto led = [&](std::size_t lngNamed) {
    return ordered_json{{"led", lngNamed}, {"missed", proof.lngWrong - lngNamed}};
  };
  ordered_json spoiledAnswers = ordered_json::array();
  for (const SpoiledAnswer& spoiled : proof.spoiled) {
    ordered_json item = jsonOf(spoiled.place);
    item["spoiling"] = spoilingName(spoiled.kind);
    item["value"] = spoiled.strValue;
    item["outcome"] = outcomeName(spoiled.outcome);
    if (spoiled.outcome == SpoiledOutcome::wrong) {
      item["exact"] = spoiled.blnExact;
      item["compatible"] = spoiled.blnCompatible;
      item["named"] = ordered_json::array();
      for (const AnswerPlace& named : spoiled.named) item["named"].push_back(jsonOf(named));
    }
    spoiledAnswers.push_back(std::move(item));
  }
  const ordered_json result = {
      {"answers", proof.lngAnswers},         {"wrong", proof.lngWrong},
      {"notWrong", proof.lngNotWrong},       {"noVerdict", proof.lngNoVerdict},
      {"exact", led(proof.lngExact)},        {"compatible", led(proof.lngCompatible)},
      {"spoiled", std::move(spoiledAnswers)}};
  return result.dump(2, ' ', false, ordered_json::error_handler_t::replace) + '\n';
}
