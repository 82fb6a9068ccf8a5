#pragma once

#include <string>
#include <string_view>

#include "varnel_xml_creation/platform/host/Trace.h"

/// Keeps the trace until the run is over: each line is one line of text, whatever was answered
/// (TerminalText.h).
class TraceText : public Varnel_Tolv_XML_Creation::TraceSink {
 public:
  void write(std::string_view strLine) override;
  const std::string& text() const { return strText_; }

 private:
  std::string strText_;
};
