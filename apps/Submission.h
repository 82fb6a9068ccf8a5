#pragma once

#include <optional>
#include <string>

#include "ExitStatus.h"
#include "Options.h"
#include "varnel_xml_creation/interface/RunDeployment.h"

// One run of the library, as every sub-command that submits a form makes it.

using Varnel_Tolv_XML_Creation::RunServices;

/// What a run hands out, and its report as far as it was asked for.
struct SubmissionOutputs : Varnel_Tolv_XML_Creation::RunOutputs {
  Varnel_Tolv_XML_Creation::RunReport report;
  bool blnEarlierForm = false;  // whether the object list held rows or hidden fields of one
};

/// The body of the form that --form names, without the line end behind it; an empty form without
/// the option. Raises CannotRun.
std::string readForm(const std::optional<std::string>& form);

/// The document of a file that an option names; Nothing without the option. Raises CannotRun.
Varnel_Tolv_XML_Creation::Document loaded(
    const char* option, const std::optional<std::string>& file,
    const Varnel_Tolv_XML_Creation::DocumentSettings& settings = {});

/// Runs one submission on a library instance of its own, beginning with a fresh copy of the object
/// list. Its report is kept when the options or `services` ask for one; where it lies is not for
/// `services` to say. Raises CannotRun when that or the protocol information cannot be read, and
/// whatever the library lets out.
SubmissionOutputs runSubmission(const Options& options,
                                const Varnel_Tolv_XML_Creation::FormCollection& request,
                                const RunServices& services);

/// The result of a run as one JSON object and a line end, with the report when --report asks for
/// it.
std::string resultOf(const Options& options, const SubmissionOutputs& run);

/// How the program ends for this run. --strict does not let pass a check that was asked for and did
/// not find the message valid, nor answers that were lost.
ExitStatus statusOf(const Options& options, const SubmissionOutputs& run);
