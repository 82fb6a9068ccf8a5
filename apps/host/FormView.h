#pragma once

#include <string>
#include <vector>

#include "host/Answers.h"
#include "host/FormErrors.h"
#include "host/PageModel.h"
#include "host/ViewText.h"

/// All that one page of a form shows.
struct FormView {
  const PageModel* page = nullptr;
  std::string strAction;  // the address that the page posts to
  std::string strId;      // empty: not parked yet
  std::string strState;   // new, parked, refused or accepted
  // What happened: conflict, accepted, not-checked, failed, store, token, rows; or else characters,
  // when some did not arrive.
  std::string strNotice;
  bool blnUnsaved = false;  // what the page shows was posted and is not in the store
  std::string strSaved;     // when it was parked last
  std::int64_t lngVersion = 0;
  std::string strToken;
  const Answers* answers = nullptr;
  Answers stored;  // of a conflict: what was saved elsewhere
  std::vector<FormError> errors;
  std::int64_t lngMostRows = 0;

  /// Whether the page shows what was saved elsewhere beside what was posted.
  bool isConflict() const { return strNotice == "conflict" || strNotice == "accepted"; }
};

ViewText viewOf(const FormView& form, ViewText::Form as);
