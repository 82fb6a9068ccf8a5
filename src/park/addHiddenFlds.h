#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Copies every hidden field of the list `objHiddenFldXML` into the first element `hdnflds` of
/// `objParkingXML`: an `hdnfld` with the submitted value under the field's `output`. A hidden field
/// whose `id` is empty takes the value of the one before it.
///
/// Errors: SVC_RET_XML_CREATION_HIDDEN_FLD_SELECTION_FAILED when either list is missing or an
/// element cannot be added, those of `GetFormCollectionItem`, run-time error 94 for a hidden field
/// without `id` or `output`. Elements already added stay.
Acknowledge addHiddenFlds(const Session& session, const Document& objParkingXML,
                          const Node& objHiddenFldXML);

}  // namespace Varnel_Tolv_XML_Creation
