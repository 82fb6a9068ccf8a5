#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/schema/ViolationParts.h"
#include "validation/report/MarkedElements.h"
#include "validation/report/ParkIndex.h"
#include "validation/report/ReportDocuments.h"

namespace Varnel_Tolv_XML_Creation {

/// Finds the answer that makes the value of an element wrong when the element holds several, or
/// that of a question other than the one it is marked with: the cells of a whole row
/// (rowinfotovalue), two values joined (addinfotonode), the value of an item.
///
/// An answer is at fault when the schema's type accepts the text without it, or with one of the
/// others in its place. Of several such answers it is the longest; without one the marks stand.
class ComposedAnswers {
 public:
  /// Both must live as long.
  ComposedAnswers(ReportDocuments& documents, const ParkIndex& park)
      : documents_(documents), park_(park) {}

  /// Whose value is wrong, the element being marked as `marks` say.
  Marks atFault(const ViolationParts& parts, const Marks& marks);

 private:
  struct Answer {
    Marks marks;
    std::string strValue;
    std::size_t lngAt = 0;  // in the text of the element
  };

  Node entryOf(const std::string& strQuestionId);
  std::vector<Answer> answersOf(const Node& objItem, const Marks& marks,
                                const std::string& strText) const;
  std::vector<Answer> joined(const Node& objAction, const Marks& marks,
                             const std::string& strText) const;
  std::vector<Answer> cells(const Marks& marks, const std::string& strText) const;

  ReportDocuments& documents_;
  const ParkIndex& park_;
  std::optional<std::unordered_map<std::string, Node>> entries_;  // by question
};

}  // namespace Varnel_Tolv_XML_Creation
