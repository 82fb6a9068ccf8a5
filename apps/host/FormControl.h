#pragma once

#include <string>
#include <string_view>

#include "host/PageModel.h"
#include "host/ViewText.h"

/// What an input tells of the texts around it to those who do not see them.
struct Described {
  std::string strBy = {};  // the ids of the texts, in the order in which they are to be heard
  bool blnWrong = false;
  bool blnMust = false;

  void setOn(ViewText& view) const {
    view.set("aria-describedby", strBy)
        .setFlag("aria-invalid", blnWrong)
        .setFlag("aria-required", blnMust);
  }
};

struct Control {
  std::string_view strName;
  const std::string& strAnchor;
  std::string_view strKind;  // that of the input, or "output"
  std::string_view strValue;
  const Described& described;
};

/// Writes the element in which a question or a cell is answered. These are elements of HTML, which
/// a stylesheet need only copy. None is of a type that would change or hide an answer which does
/// not fit.
void writeControl(ViewText& view, const Input& input, const Control& control);
