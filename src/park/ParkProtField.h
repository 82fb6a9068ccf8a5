#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Stores a field's submitted answer in the attribute `value` of its `prtobjct` and its label in
/// `fieldlabel`. The form's fields are named by the lower-cased id.
///
/// Errors: SVC_RET_XML_CREATION_PROTFLD_LIST_MISSING for Nothing, those of `GetFormCollectionItem`,
/// and run-time error 13 for a `dynamic` that is no Boolean word, a missing one included.
Acknowledge ParkProtField(const Session& session, const Node& objField);

}  // namespace Varnel_Tolv_XML_Creation
