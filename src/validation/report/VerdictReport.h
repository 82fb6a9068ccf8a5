#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"
#include "validation/report/ReportViolations.h"
#include "validation/report/ViolationRecorder.h"

namespace Varnel_Tolv_XML_Creation {

class ValidatingReader;

/// Fills the verdict and the violations of the run's report while a message is checked; does
/// nothing when nobody asks for one. Whatever it does not manage leaves the check as it is.
class VerdictReport {
 public:
  /// How far the check has come.
  enum class Stage { locatingSchema, readingSchema, readingMessage, mappingErrors };

  /// What it is given must live as long as it does.
  VerdictReport(const Session& session, const ReportSources& sources);

  void reach(Stage stage) noexcept { stage_ = stage; }

  /// Hears of everything that the reader has to say.
  void listenTo(ValidatingReader& reader);

  /// Writes the violations down, while the schema is still there; also those of a message that was
  /// read in part.
  void keepViolations() noexcept;

  /// The verdict, for the result of the check.
  void conclude(const Acknowledge& objAck) noexcept;

 private:
  std::string reasonOf(const Acknowledge& objAck) const;
  std::string unreadable(std::string_view strWhat, std::string_view strPath) const;
  std::string unknownQuestion() const;
  Document newEvidence() const;

  const Session& session_;
  const ReportSources& sources_;
  Stage stage_ = Stage::locatingSchema;
  std::optional<ViolationRecorder> recorder_;
  std::string strNotListed_;  // why the violations could not be written down
};

}  // namespace Varnel_Tolv_XML_Creation
