#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/schema/ViolationParts.h"

namespace Varnel_Tolv_XML_Creation {

/// Keeps everything that the schema has to say about one message.
class ViolationRecorder : public ViolationHandler {
 public:
  /// One of the library's marks which the schema declares for its element.
  struct DeclaredMark {
    MessagePlace place;
    std::string strAttribute;
    std::string strValue;
  };

  void violation(ViolationParts parts) override { violations_.push_back(std::move(parts)); }
  void declaredAside(const MessagePlace& place, std::string_view strAttribute,
                     std::string_view strValue) override {
    declaredMarks_.push_back({place, std::string(strAttribute), std::string(strValue)});
  }

  /// To be taken once, when the message has been read. In document order.
  std::vector<ViolationParts> takeViolations();
  const std::vector<DeclaredMark>& declaredMarks() const noexcept { return declaredMarks_; }

 private:
  std::vector<ViolationParts> violations_;
  std::vector<DeclaredMark> declaredMarks_;
};

}  // namespace Varnel_Tolv_XML_Creation
