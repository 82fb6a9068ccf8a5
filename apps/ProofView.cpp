#include "ProofView.h"

#include <filesystem>

#include "ProofText.h"
#include "varnel_xml_creation/platform/text/Replacement.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

void setPlace(const ViewElement& item, const AnswerPlace& place) {
  item.set("question", withXmlCharacters(place.strQuestionId))
      .set("row", withXmlCharacters(place.strRowIndex))
      .set("column", withXmlCharacters(place.strColumnId));
}

}  // namespace

ViewDocument proofView(const Proof& proof) {
  ViewDocument view("prove");
  view.root()
      .set("form", withXmlCharacters(std::filesystem::path(proof.strForm).filename().string()))
      .set("answers", std::to_string(proof.lngAnswers))
      .set("wrong", std::to_string(proof.lngWrong))
      .set("not-wrong", std::to_string(proof.lngNotWrong))
      .set("no-verdict", std::to_string(proof.lngNoVerdict))
      .set("exact", percentOf(proof.lngExact, proof.lngWrong))
      .set("compatible", percentOf(proof.lngCompatible, proof.lngWrong))
      .setFlag("complete", isComplete(proof));
  for (const SpoiledAnswer& spoiled : proof.spoiled) {
    const ViewElement item = view.root().add("spoiled");
    setPlace(item, spoiled.place);
    item.set("spoiling", spoilingName(spoiled.kind))
        .set("outcome", outcomeName(spoiled.outcome))
        .setFlag("exact", spoiled.blnExact)
        .setFlag("compatible", spoiled.blnCompatible);
    item.add("value", withXmlCharacters(shownValue(spoiled.strValue)));
    for (const AnswerPlace& named : spoiled.named) setPlace(item.add("named"), named);
  }
  return view;
}
