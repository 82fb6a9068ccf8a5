#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "../platform/dom/Document.h"
#include "../platform/host/HostServices.h"
#include "../result/Acknowledge.h"
#include "../result/Export.h"
#include "../result/ValidationErrors.h"

namespace Varnel_Tolv_XML_Creation {

struct Session;

/// Turns submitted data-entry forms into XML. An instance is used by one thread at a time; distinct
/// instances run in parallel. It keeps two things between calls: the namespace list, loaded by the
/// first run and used for all, also when it could not be loaded and every run fails for want of it;
/// and the default user message. The host's services must outlive it.
/// One that was moved from may only be assigned to or destroyed.
///
/// A thread may be cancelled (pthread_cancel, deferred) in a call of this class or while it loads a
/// document: that takes effect at its next cancellation point behind the call, also when the call
/// is waiting in one of the host's services. Asynchronous cancellation is not supported.
class VARNEL_EXPORT BuildXML {
 public:
  explicit BuildXML(const HostServices& host);
  ~BuildXML();
  BuildXML(BuildXML&&) noexcept;
  BuildXML& operator=(BuildXML&&) noexcept;

  /// Runs one submission. Files are named by path or `file:` URL; `docs/formats.md` describes them.
  ///
  /// `objParkXML` is the object list of the form (root `prtobjcts`); it is filled in place with the
  /// submitted answers, also by a run that fails later. With `blnSubmit` the message is built too
  /// and comes back in `objSendXML`, also when the schema finds it invalid; without it the
  /// arguments of the message are left alone. `objProtocolInfo` is an element with the form's name,
  /// region and version as attributes, or Nothing.
  ///
  /// With `blnValidateAgainstSchema` the message is checked against the schema of the namespace
  /// `strSchemaUri` at `strSchemaUrl`, a location relative to the directory above the calling page.
  /// What is wrong comes back in the two collections, which a valid message leaves as they were. Of
  /// a check that could not be carried out only the report tells (`HostServices::report`).
  ///
  /// Nothing is reset: an argument that a run does not set keeps what an earlier one left there.
  ///
  /// What comes back can be loaded again with the settings that it was made with: a parked form or
  /// a message beyond these limits is run-time error kXmlFailure, and the caller goes on with the
  /// object list and the form that it has.
  ///
  /// The result is that of the first step that failed: a code of `eReturnValues` for a failure that
  /// was expected, else the number of a run-time error (`RuntimeErrorNumber`). No exception leaves
  /// this call but one: a RuntimeError or std::bad_alloc raised while the inputs are written to the
  /// trace, before there is a result to tell it with.
  Acknowledge buildXML(std::string_view strTemplateXML, std::string_view strMsgObjectXML,
                       std::string_view strSchemaTypeMapperXML, std::string_view strHiddenFieldXML,
                       std::string_view strNamespaceXML, std::string_view strQuestionsXmlPath,
                       std::string_view strReferenceXmlPath, bool blnSubmit,
                       bool blnValidateAgainstSchema, Document& objParkXML, Document& objSendXML,
                       const Node& objProtocolInfo,
                       ValidationUserErrors& colOutValidationUserErrors,
                       ValidationIntErrors& colOutInternalErrors, std::string_view strSchemaUrl,
                       std::string_view strSchemaUri);

  /// Writes one value of the message's document header ("Protocol", "AttestationDate" or
  /// "AttestationTime", exactly) at the place that the `docinfo` at `strDocInfoPath` of the object
  /// mapper gives. No result at all when there is no such `docinfo`, when it has no `parentxpath`,
  /// and for another word, which writes the empty text. A failure for which there is no result yet
  /// raises RuntimeError 91.
  std::optional<Acknowledge> GetDocData(std::string_view strDocInfoPath,
                                        std::string_view strGetWhat,
                                        const Document& objObjectMapper,
                                        const Document& objXmlDocument,
                                        const Node& objProtocolXML) const;

  /// The time of day in `strTime` as hh:mm:ss. Raises RuntimeError 13 for a text that is no time.
  std::string convertToXsdTime(std::string_view strTime) const;

  /// The node that `strDocInfoPath` selects in the object mapper, or Nothing. Raises RuntimeError
  /// for a path that is no XPath, 91 for no mapper.
  Node getDocInfo(std::string_view strDocInfoPath, const Document& objObjectMapper) const;

  /// The child `parentxpath` of a `docinfo`, or Nothing. Raises RuntimeError 91 for Nothing.
  Node getParentNode(const Node& objDocInfo) const;

 private:
  std::unique_ptr<Session> session_;
};

}  // namespace Varnel_Tolv_XML_Creation
