#include "LossWords.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Words = std::pair<std::string_view, std::string_view>;

constexpr auto kWords = std::to_array<Words>({
    {"unknown-question", "no object of the form asks for it"},
    {"unknown-object-type", "its objecttype is neither field nor table"},
    {"object-after-end-mark", "its object stands behind the end mark of the object list"},
    {"box-not-on", "the box was submitted with another word than on"},
    {"row-beyond-count", "its row is above the submitted row count"},
    {"unknown-column", "the table has no such column"},
    {"cell-not-read", "the column takes a fixed or computed value instead"},
    {"operand-without-result", "only a computed cell reads it, and that stayed empty"},
    {"unit-without-duration", "the duration of its row could not be computed"},
    {"blank-row", "its row has no cell of its own that was filled in"},
    {"blank-table", "the table was removed with its only row, which is blank"},
    {"parked-before", "the table has no columns any more: its object list was parked before"},
    {"word-not-true", "the word that should send it is not exactly true"},
    {"misnamed-hidden-field", "its element in the list is not named hiddenfield"},
    {"hidden-read-anew", "its value was read again under another name"},
    {"no-mapping", "the object mapper has no entry for it"},
    {"other-not-sent", "it goes with the answer of another object, and that was not sent"},
    {"item-not-found", "the object that takes its place does not exist"},
    {"value-not-used", "no parameter of the action brings it into the message"},
    {"line-without-slot", "the complex type has no slot for these lines"},
    {"table-without-place", "the entry of the table names no place"},
    {"cell-without-place", "the complex type of a row has no place for the column"},
    {"overwritten", "something else was written over it"},
    {"removed-as-empty", "its element was written empty and taken out"},
    {"written-as-empty", "its element was written empty"},
    {"run-failed", "the run failed here"},
});

}  // namespace

std::string_view lossWords(std::string_view strReason) {
  const auto* const found = std::ranges::find(kWords, strReason, &Words::first);
  return found == kWords.end() ? strReason : found->second;
}
