#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "config/AnswerLog.h"

namespace Varnel_Tolv_XML_Creation {

/// Which of the answers that were in hand did not reach the message, as the log tells: those that
/// something kept from it, and those of which nothing that was written stands there. Whether they
/// are blank is not looked at.
class LostAnswers {
 public:
  struct Loss {
    std::string_view strReason;
    AnswerRule rule;
    std::string strPart;
  };

  explicit LostAnswers(const AnswerLog& log);

  /// Why the answer that `objSource` holds is lost, alone or with its whole row; null when it is
  /// not. Of a table: all cells.
  const Loss* find(const Node& objSource) const;

  bool empty() const noexcept { return losses_.empty(); }

 private:
  void findGone(const AnswerLog& log);

  std::unordered_map<const void*, Loss> losses_;
};

}  // namespace Varnel_Tolv_XML_Creation
