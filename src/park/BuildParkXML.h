#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Fills the object list `objParkingXML` (root `prtobjcts`) with the submitted form: every field
/// and table below the root, in document order, up to the first object without `objecttype`.
///
/// Errors: SVC_RET_XML_CREATION_PROTFLD_LIST_SELECTION_FAILED and those of `ParkProtField` and
/// `ParkProtTable`. The objects parked before a failure keep their new values.
Acknowledge BuildParkXML(const Session& session, const Document& objParkingXML);

}  // namespace Varnel_Tolv_XML_Creation
