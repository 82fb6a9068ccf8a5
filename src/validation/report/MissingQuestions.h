#pragma once

#include <cstddef>
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
/// is read for this is read when it is first asked for; what was found for one path is kept. The
/// object mapper is not asked where the questions XML has a question with that very place that was
/// left blank: there is none nearer.
class MissingQuestions {
 public:
  /// Both must live as long.
  MissingQuestions(ReportDocuments& documents, const ParkIndex& park)
      : documents_(documents), park_(park), places_(documents, park) {}

  /// The question of an element that is missing in another; in a row of a table the cell. None when
  /// it is not known.
  std::optional<Marks> find(const std::string& strParentPath, const std::string& strLocalName,
                            const Marks& around);

 private:
  struct Candidate {
    QuestionPlaces::Place place;
    std::string strAbove;      // the path that is missing
    std::size_t lngBelow = 0;  // steps below the missing element
  };
  using Candidates = std::vector<Candidate>;

  /// What is known of one path: by the questions XML, and by the object mapper once it was asked.
  struct Known {
    Candidates ofQuestions;
    std::optional<Candidates> all;
  };

  /// The best so far.
  struct Best {
    std::optional<Marks> marks;
    const Candidate* candidate = nullptr;
    ParkIndex::Answer answer{};

    /// Whether no other place can be nearer.
    bool isNearest() const;
  };

  Best best(const Candidates& candidates, const Marks& around);
  bool isBetter(const Candidate& candidate, ParkIndex::Answer answer, const Best& best);
  const Candidates& all(const std::string& strPath, Known& known);
  static void addCandidates(const std::vector<QuestionPlaces::Place>& places,
                            const std::string& strPath, Candidates& candidates);
  bool isMandatory(const Candidate& candidate);
  bool isThere(const Marks& marks);

  /// The elements of the message that are marked with one question, and the rows and columns of
  /// those that hold an answer, once these are asked for.
  struct InMessage {
    std::vector<Node> elements;
    std::optional<std::unordered_set<std::string>> cells;
  };

  ReportDocuments& documents_;
  const ParkIndex& park_;
  QuestionPlaces places_;
  std::optional<std::unordered_set<std::string>> mandatory_;  // paths
  std::optional<std::unordered_map<std::string, InMessage>> there_;
  std::unordered_map<std::string, Known> byPath_;
};

}  // namespace Varnel_Tolv_XML_Creation
