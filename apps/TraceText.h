#pragma once

#include <string>
#include <string_view>

#include "platform/host/Trace.h"

/// `strText` with each control character and line end written as an escape that can be read: \n,
/// \r, \t, \x1b, \u0085, \u2028. A backslash stays as it is.
std::string withoutControls(std::string_view strText);

/// Keeps the trace until the run is over: each line is one line of text, whatever was answered.
class TraceText : public Varnel_Tolv_XML_Creation::TraceSink {
 public:
  void write(std::string_view strLine) override;
  const std::string& text() const { return strText_; }

 private:
  std::string strText_;
};
