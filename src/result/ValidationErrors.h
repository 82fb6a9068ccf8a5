#pragma once

#include <optional>
#include <string>
#include <vector>

// The two records with which a schema's verdict comes back to the form, and the collections that
// hold them. A collection that is absent (Nothing) was never produced.

namespace Varnel_Tolv_XML_Creation {

/// An error that the person at the form can correct.
struct ValidationUserError {
  std::string questionId;
  std::string questionText;  // the question's label in the form
  std::string rowIndex;      // the row's id for a table cell, else empty
  std::string columnId;      // the column's id for a table cell, else empty
  std::string columnText;    // the column's label for a table cell, else empty
  std::string message;       // what is wrong, in plain words
};

/// An error that only those who run the deployment can correct.
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
