#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "validation/report/MarkedElements.h"
#include "validation/report/ParkIndex.h"
#include "validation/report/QuestionPlaces.h"
#include "validation/report/ReportDocuments.h"

namespace Varnel_Tolv_XML_Creation {

/// Finds the question whose answer would put a missing element into the message.
///
/// Of the questions whose place is the missing element, or else below it, those whose element is
/// there already are none. The nearest of the others is: one that has been left blank before one
/// that has an answer (which was not sent) and one that is not in the form, then one that the
/// reference XML has as mandatory, the one that is the least further down, and the first. All that
/// is read for this is read when it is first asked for; what was found for one path is kept.
class MissingQuestions {
 public:
  /// Both must live as long.
  MissingQuestions(ReportDocuments& documents, const ParkIndex& park)
      : documents_(documents), park_(park) {}

  /// The question of an element that is missing in another; in a row of a table the cell. None when
  /// it is not known.
  std::optional<Marks> find(const std::string& strParentPath, const std::string& strLocalName,
                            const Marks& around);

 private:
  struct Candidate {
    QuestionPlaces::Place place;
    std::size_t lngBelow = 0;  // steps below the missing element
    bool blnMandatory = false;
  };

  const std::vector<Candidate>& candidatesAt(const std::string& strPath);
  void addCandidates(const std::string& strPath, std::vector<Candidate>& candidates);
  bool isMandatory(const std::string& strPath, const std::string& strBelow);
  bool isThere(const Marks& marks);

  ReportDocuments& documents_;
  const ParkIndex& park_;
  std::optional<QuestionPlaces> places_;
  std::optional<std::unordered_set<std::string>> mandatory_;  // paths
  std::optional<std::unordered_set<std::string>> there_;      // marks
  std::unordered_map<std::string, std::vector<Candidate>> byPath_;
};

}  // namespace Varnel_Tolv_XML_Creation
