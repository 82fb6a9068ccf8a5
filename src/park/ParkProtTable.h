#pragma once

#include "config/Session.h"
#include "result/Acknowledge.h"

namespace Varnel_Tolv_XML_Creation {

/// Turns a table's column definitions (the `column` children of its `prtobjct`) and the submitted
/// cells into rows: each row gets a copy of every definition with the cell's `value`. A fixed grid
/// (`type` "table") fills the `row` elements it has; any other table gets new ones for the rows
/// that were filled in. The definitions are then removed, and a table with one row that is blank
/// goes altogether. A new row costs nothing unless something was submitted for it, however large
/// the posted row count is, nor for every table of one id unless it is for one of its columns.
///
/// Errors: SVC_RET_XML_CREATION_PROT_TBL_LIST_MISSING for Nothing, _PROT_TBL_ROWCOUNT_INVALID when
/// the row count cannot be read or is no number, _PROT_TBL_ROW_MISSING when a fixed grid has fewer
/// rows than were posted, _PROT_TBL_CLMN_MISSING, _CLONE_CLMN_NODE_FAILED,
/// _APPEND_CLMN_NODE_FAILED, _APPEND_ROW_NODE_FAILED, _REMOVE_TABLE_NODE_FAILED, those of
/// `GetFormCollectionItem`, and run-time errors: 91 for a missing `id` or `type`, 6 for a row count
/// beyond 32 bits, 5 for an unknown interval. Rows done before a failure stay, and so do the column
/// definitions.
Acknowledge ParkProtTable(const Session& session, const Node& objTable);

}  // namespace Varnel_Tolv_XML_Creation
