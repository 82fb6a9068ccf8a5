#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Options.h"
#include "Spoiling.h"

// What `varnel-xml prove` finds out, whatever the format: whether the errors of a message lead back
// to the answers that are wrong.

/// The answer that an error names, or that was spoiled.
struct AnswerPlace {
  std::string strQuestionId;
  std::string strRowIndex;
  std::string strColumnId;
  bool operator==(const AnswerPlace&) const = default;
};

/// What came of one spoiled answer.
enum class SpoiledOutcome : std::uint8_t {
  wrong,     // the schema objects
  notWrong,  // it does not: the message is valid
  noVerdict  // the run failed, or the check could not be carried out
};

struct SpoiledAnswer {
  AnswerPlace place;
  SpoilingKind kind{};
  std::string strValue;
  SpoiledOutcome outcome{};
  // Of one that is wrong: whether an error of the two compatible lists names it, and a violation of
  // the report.
  bool blnCompatible = false;
  bool blnExact = false;
  std::vector<AnswerPlace> named;  // whom the violations name, each once
};

struct Proof {
  std::string strForm;                 // the file of the form
  std::size_t lngAnswers = 0;          // that were spoiled
  std::vector<SpoiledAnswer> spoiled;  // in the order of the journal
  std::size_t lngWrong = 0, lngNotWrong = 0, lngNoVerdict = 0;
  std::size_t lngCompatible = 0, lngExact = 0;  // of the wrong ones, those that are named
};

/// Enters one more spoiled answer and counts it.
void addTo(Proof& proof, SpoiledAnswer spoiled);

/// Whether the report names every wrong answer.
inline bool isComplete(const Proof& proof) { return proof.lngExact == proof.lngWrong; }

/// Spoils every answer of the form in every way, one at a time, and submits each time. Raises
/// CannotRun when the message of the form itself is not found valid, and as `runSubmission` does.
Proof prove(Options options);
