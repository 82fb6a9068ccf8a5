#pragma once

#include <optional>
#include <string>
#include <vector>

// The two records with which a schema's verdict comes back to the form, and the collections that
// hold them. A collection that is absent (Nothing) was never produced.

namespace Varnel_Tolv_XML_Creation {

/// An error that the person at the form can correct. There is at most one for each question, a
/// table being one; `RunReport::violations` are all of them.
struct ValidationUserError {
  std::string questionId;
  std::string questionText;  // the question's label in the form
  std::string rowIndex;      // the row's id for a table cell, else empty
  std::string columnId;      // the column's id for a table cell, else empty
  std::string columnText;    // the column's label for a table cell, else empty
  std::string message;       // what is wrong, in plain words
};

/// An error that was led to no question, or a further one of a question that has its user error:
/// for those who run the deployment, who cannot always correct it themselves.
struct ValidationIntError {
  std::string message;
  std::string xpath;  // path of the message element
  std::string questionId;
  std::string rowIndex;
  std::string columnId;
};

using ValidationUserErrors = std::optional<std::vector<ValidationUserError>>;
using ValidationIntErrors = std::optional<std::vector<ValidationIntError>>;

}  // namespace Varnel_Tolv_XML_Creation
