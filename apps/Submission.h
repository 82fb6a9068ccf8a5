#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Options.h"
#include "interface/RunDeployment.h"

// One run of the library, as every sub-command that submits a form makes it.

using Varnel_Tolv_XML_Creation::RunOutputs;
using Varnel_Tolv_XML_Creation::RunServices;

/// The body of the form that --form names, without the line end behind it; an empty form without
/// the option. Raises CannotRun.
std::string readForm(const std::optional<std::string>& form);

/// The document of a file that an option names; Nothing without the option. Raises CannotRun.
Varnel_Tolv_XML_Creation::Document loaded(
    const char* option, const std::optional<std::string>& file,
    const Varnel_Tolv_XML_Creation::DocumentSettings& settings = {});

/// Runs one submission on a library instance of its own, beginning with a fresh copy of the object
/// list. Raises CannotRun when that or the protocol information cannot be read, and whatever the
/// library lets out.
RunOutputs runSubmission(const Options& options,
                         const Varnel_Tolv_XML_Creation::FormCollection& request,
                         const RunServices& services);

/// Keeps the trace until the run is over.
class TraceText : public Varnel_Tolv_XML_Creation::TraceSink {
 public:
  void write(std::string_view strLine) override;
  const std::string& text() const { return strText_; }

 private:
  std::string strText_;
};
