#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Catalogue.h"
#include "host/Answers.h"
#include "host/PageModel.h"
#include "varnel_xml_creation/result/RunReport.h"

/// What is wrong with an answer. Row and column are empty for a question that is no table; all
/// three are empty for an error that no answer can mend, which then has no text either.
struct FormError {
  std::string strQuestion = {};
  std::string strRow = {};
  std::string strColumn = {};
  std::string strMessage = {};               // for one who sees the place
  std::function<std::string()> inFull = {};  // the same with the place, which few need
};

/// The errors of a report at the places where they can be mended, in its order: first the schema's,
/// then the answers that would be lost. One for each place and cause, however many elements of the
/// message the cause makes wrong; one alone for all that no answer can mend. Where the page asks
/// for an answer and has none, that is told, also where the schema finds that the element behind it
/// may not stand there. Report and catalogue must outlive them.
std::vector<FormError> errorsOf(const Varnel_Tolv_XML_Creation::RunReport& report,
                                const Catalogue& catalogue, const PageModel& page,
                                const Answers& answers);

/// One for each answer that has a character which did not arrive.
std::vector<FormError> unreadableAnswers(const PageModel& page, const Answers& answers,
                                         std::int64_t lngMostRows);
