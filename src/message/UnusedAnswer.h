#pragma once

#include <optional>

#include "config/Session.h"
#include "message/AddressLines.h"

namespace Varnel_Tolv_XML_Creation {

/// Notes what a complex type did not take of the answer in hand, once its placeholders are filled:
/// lines for which it has no slot, or the value itself where the action means to write it (a
/// `formvalue`, a parameter that gives no value, a placeholder that was not filled). A complex type
/// of nothing but other values and constants stands for the answer as a whole.
void noteUnusedAnswer(AnswerLog& answers, const Node& objAction, const NodeList& colPlaceholders,
                      const std::optional<AddressLines>& arrLines);

}  // namespace Varnel_Tolv_XML_Creation
