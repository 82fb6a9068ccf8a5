#pragma once

/// How `varnel-xml` ends.
enum ExitStatus : int {
  kSucceeded = 0,
  kFailed = 1,             // a failed run, findings, differences: what each sub-command says
  kCouldNotRun = 2,        // bad options, files that cannot be read or written
  kReportedOtherwise = 3,  // --strict: the run succeeded and its report shows otherwise
};
