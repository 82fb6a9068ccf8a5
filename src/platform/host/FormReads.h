#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host/WebRequest.h"

namespace Varnel_Tolv_XML_Creation {

/// A request that is read, and which of its fields were. The request must live as long and stay as
/// it is.
///
/// Of a `FormCollection` each field has a number, so that noting it takes no more than finding it;
/// of another request the names are kept.
class FormReads {
 public:
  explicit FormReads(const Request& request);

  /// The value of a field, as `Request::formItem`.
  std::string read(std::string_view strName);

  /// The names of the fields that were submitted and never read, in any order. One whose value is
  /// empty may count as never read.
  std::vector<std::string> unread() const;

 private:
  const Request& request_;
  const FormCollection* const collection_;    // the request, where it is one and nothing more
  std::vector<char> wasRead_;                 // the collection's fields by their numbers: 0 or 1
  std::set<std::string, std::less<>> names_;  // of any other request
};

}  // namespace Varnel_Tolv_XML_Creation
