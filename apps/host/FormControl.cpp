#include "host/FormControl.h"

#include <algorithm>
#include <cstdint>

#include "host/Answers.h"

namespace {

std::string widthOf(const Input& input) {
  if (!input.strWidth.empty()) return input.strWidth;
  if (input.strKind == "date" || input.strKind == "time" || input.strKind == "number") {
    return "short";
  }
  const std::int64_t lngMost = rowNumber(input.strMaxLength, 50);  // 0: more, or not known
  return lngMost == 0 ? "long" : lngMost <= 20 ? "short" : "medium";
}

const char* inputModeOf(std::string_view strKind) {
  if (strKind == "number") return "decimal";
  return strKind == "email" ? "email" : strKind == "tel" ? "tel" : "";
}

/// Whether it is none of the choices. The script looks for the class of such an input, so that it
/// does not copy the answer of one row into another.
bool isNoChoice(const Input& input, std::string_view strValue) {
  return !strValue.empty() && !input.choices.empty() &&
         std::ranges::find(input.choices, strValue, &Choice::strValue) == input.choices.end();
}

/// Calls `use` with each choice, and whether it is chosen; with null for an answer that is none and
/// stays as it was given.
template <class Use>
void forEachChoice(const Input& input, std::string_view strValue, Use use) {
  bool blnKnown = strValue.empty();
  for (const Choice& choice : input.choices) {
    const bool blnChosen = choice.strValue == strValue && !blnKnown;
    use(&choice, blnChosen);
    blnKnown = blnKnown || blnChosen;
  }
  if (isNoChoice(input, strValue)) use(nullptr, true);
}

void setValue(ViewText& view, const Choice* choice, const Control& control) {
  if (choice != nullptr) {
    view.setAlways("value", choice->strValue);
  } else {
    view.setPlace("value", control.strValue);
  }
}

void writeLabel(ViewText& view, const Choice* choice, const Control& control) {
  if (choice != nullptr) {
    view.text(choice->strLabel);
  } else {
    view.textPlace(control.strValue);
  }
}

void writeRadios(ViewText& view, const Input& input, const Control& control) {
  int lngNumber = 0;
  forEachChoice(input, control.strValue, [&](const Choice* choice, bool blnChosen) {
    const std::string strId = control.strAnchor + '-' + std::to_string(++lngNumber);
    view.begin("tick").begin("input").set("type", "radio").set("id", strId);
    view.setAlways("name", control.strName);
    setValue(view, choice, control);
    view.set("checked", blnChosen ? "checked" : "");
    view.set("class", choice == nullptr ? "no-choice" : "").end();
    view.begin("label").set("for", strId);
    writeLabel(view, choice, control);
    view.end().end();
  });
}

void writeSelect(ViewText& view, const Input& input, const Control& control) {
  view.begin("select").set("id", control.strAnchor).setAlways("name", control.strName);
  view.set("class", isNoChoice(input, control.strValue) ? "no-choice" : "");
  control.described.setOn(view);
  view.begin("option").setAlways("value", "").end();
  forEachChoice(input, control.strValue, [&](const Choice* choice, bool blnChosen) {
    view.begin("option");
    setValue(view, choice, control);
    view.set("selected", blnChosen ? "selected" : "");
    writeLabel(view, choice, control);
    view.end();
  });
  view.end();
}

void writeInput(ViewText& view, const Input& input, const Control& control) {
  const bool blnCheck = control.strKind == "check";
  view.begin("input").set("type", blnCheck ? "checkbox" : "text").set("id", control.strAnchor);
  view.setAlways("name", control.strName);
  if (blnCheck) {
    view.set("value", "on");
  } else {
    view.setPlace("value", control.strValue)
        .set("class", "width-" + widthOf(input))
        .set("inputmode", inputModeOf(control.strKind));
  }
  control.described.setOn(view);
  view.set("checked", blnCheck && !control.strValue.empty() ? "checked" : "").end();
}

}  // namespace

void writeControl(ViewText& view, const Input& input, const Control& control) {
  if (control.strKind == "radio") {
    writeRadios(view, input, control);
  } else if (control.strKind == "select") {
    writeSelect(view, input, control);
  } else if (control.strKind == "output") {
    view.begin("output").set("id", control.strAnchor);
    // What was computed for one row the script does not copy into another.
    view.set("class", input.strOutput.empty() ? "computed" : "");
    if (control.described.blnWrong) {
      view.set("tabindex", "-1").set("aria-describedby", control.strAnchor + "-error");
    }
    view.textPlace(control.strValue.empty() ? input.strOutput : control.strValue).end();
  } else if (control.strKind == "textarea") {
    view.begin("textarea").set("id", control.strAnchor).setAlways("name", control.strName);
    view.set("rows", "4");
    control.described.setOn(view);
    view.textPlace(control.strValue).end();
  } else {
    writeInput(view, input, control);
  }
}
