#pragma once

#include <string>
#include <vector>

#include "Options.h"
#include "Submission.h"
#include "varnel_xml_creation/result/RunReport.h"

// What `varnel-xml explain` tells, whatever the format.

/// One answer, in the words of the form.
struct ExplainedAnswer {
  std::string strLabel;  // of the question, and of the column; empty where the form has none
  std::string strQuestionId;
  std::string strRowIndex;
  std::string strColumnId;
  std::string strValue;
  Varnel_Tolv_XML_Creation::JournalOutcome outcome{};
  std::string strReason;  // of a lost one: its code
  std::string strWhy;     // and the same in words
  std::vector<std::string> places;
  std::string strRule;  // "object-mapper.xml:12"; empty where no place decides
};

struct Explanation {
  std::string strForm;     // the file of the form
  std::string strFailure;  // of the run; empty for a successful one
  std::string strVerdict;  // of the schema
  std::vector<ExplainedAnswer> answers;
};

/// How many answers that are not blank came to this end.
std::size_t countOf(const Explanation& explanation,
                    Varnel_Tolv_XML_Creation::JournalOutcome outcome);

Explanation explain(const Options& options, const SubmissionOutputs& run);
