#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

/// A place in a schema document; line 0: the whole of it.
struct SchemaSpot {
  std::string strPath;
  std::size_t lngLine = 0;
  // The path of the document that it includes, and that is not there; of one that is no file, the
  // URI.
  std::string strMissing = {};
};

/// The run-time error for a schema that cannot be had, in parts: where the reason stands, and the
/// reason alone. Copying never throws.
class SchemaFailure : public RuntimeError {
 public:
  SchemaFailure(std::string_view strDescription, SchemaSpot spot, std::string_view strReason)
      : RuntimeError(kXmlFailure, strDescription),
        parts_(std::make_shared<const Parts>(Parts{std::move(spot), std::string(strReason)})) {}

  const SchemaSpot& spot() const noexcept { return parts_->spot; }
  const std::string& reason() const noexcept { return parts_->strReason; }

 private:
  struct Parts {
    SchemaSpot spot;
    std::string strReason;
  };
  std::shared_ptr<const Parts> parts_;
};

}  // namespace Varnel_Tolv_XML_Creation
