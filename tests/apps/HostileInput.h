#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Program.h"

// What the suites HostileInput... share: a deployment whose files a test replaces by hostile ones,
// a secret outside it, and the ways in which a run refuses a document.

namespace Varnel_Tolv_XML_Creation::test {

/// How a run tells that it cannot have a document.
enum class Refusal {
  couldNotRun,    // status 2, before the library is called
  namespaces,     // the run fails with the code of the namespace list
  configuration,  // the run fails with the code of all other configuration files
  questions,      // the run succeeds without a verdict, the trace tells why
  schema,         // the same, and the reason in other words
};

/// One of the documents that a run reads.
struct Role {
  const char* option;
  const char* file;  // the honest one
  Refusal refusal;
};
extern const std::vector<Role> kConfigurationRoles;  // all but the schema
extern const Role kSchemaRole;

/// All of them, and the one that an option names.
std::vector<Role> allRoles();
const Role& roleOf(std::string_view strOption);

/// What a run left behind.
struct Outcome {
  ProgramRun run;
  std::string strTrace;
  std::string strSend;
};

class HostileInput : public ProgramTest {
 protected:
  HostileInput();

  /// Submits the form and has the message validated. Whatever the input: the run ends by itself
  /// with status 0, 1 or 2, in bounded time and memory, and tells nothing of the secret.
  Outcome submit(std::vector<std::string> words = {}, ProgramStreams streams = {}) const;

  /// The same with this file in the place of an honest one.
  Outcome submitWith(const Role& role, const std::string& strFile) const;
  /// The same with a file of this text.
  Outcome submitText(const Role& role, std::string_view strText) const;

  static void expectMemoryBelow(std::size_t lngMegabytes, const ProgramRun& run);
  /// The outcome is that of the honest deployment: the message is sent and valid.
  static void expectSent(const Outcome& outcome);
  /// The same for one document; the questions are read only where something is wrong.
  static void expectAccepted(const Role& role, const Outcome& outcome);
  /// `strFile` is refused as the role's document, with this somewhere in the reason where one is
  /// told.
  void expectRefused(const Role& role, const Outcome& outcome, const std::string& strFile,
                     std::string_view strReason = "") const;
  /// The schema at `strPath` was refused: no verdict, and the trace tells the path and the reason.
  static void expectNoVerdict(const Outcome& outcome, const std::string& strPath,
                              std::string_view strReason);

  /// The honest text with a document type before its root and `strContent` at the end of its root.
  /// `%DIR` in either stands for the directory of the secret.
  std::string infected(const Role& role, std::string_view strDocumentType,
                       std::string_view strContent) const;

  std::string secret(std::string_view strName) const { return outside_.at(strName); }

  TemporaryDirectory outside_;
};

/// The name of the file that `submitText` writes.
constexpr const char* kHostileFile = "hostile.xml";

/// What none of the files outside may give away.
constexpr std::string_view kSecret = "SECRET-7f3a";

}  // namespace Varnel_Tolv_XML_Creation::test
