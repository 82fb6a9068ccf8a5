#include "TraceText.h"

#include "TerminalText.h"

void TraceText::write(std::string_view strLine) {
  constexpr std::string_view kLineEnd = "\r\n";
  if (strLine.ends_with(kLineEnd)) strLine.remove_suffix(kLineEnd.size());
  strText_.append(withoutControls(strLine)).append("\n");
}
