#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "config/Session.h"
#include "result/Acknowledge.h"

// The three values of the message's document header: protocol name, attestation date and time.

namespace Varnel_Tolv_XML_Creation {

/// Writes one value of the document header where the object mapper's `docinfo` at `strDocInfoPath`
/// says. `strGetWhat` chooses the value, exactly: "Protocol", "AttestationDate",
/// "AttestationTime"; any other word gives the empty text.
///
/// No result at all comes back when there is no such `docinfo`, when it has no `parentxpath`, and
/// for another word; nothing more is then told. Errors:
/// SVC_RET_XML_CREATION_PROT_NODE_NOT_SELECTED when the message has no such place, those of the
/// protocol's name. Raises run-time error 91 where there is a failure to tell but no result yet to
/// tell it with, such as a `docinfo` without `node`.
std::optional<Acknowledge> GetDocData(const Session& session, std::string_view strDocInfoPath,
                                      std::string_view strGetWhat, const Document& objObjectMapper,
                                      const Document& objXmlDocument, const Node& objProtocolXML);

/// The node that `strDocInfoPath` selects in the object mapper, or Nothing. Has no handler.
Node getDocInfo(const Session& session, std::string_view strDocInfoPath,
                const Document& objObjectMapper);

/// The `parentxpath` child of a `docinfo`, or Nothing. Has no handler.
Node getParentNode(const Node& objDocInfo);

/// The time of day of `strTime` as hh:mm:ss. Raises run-time error 13 for a text that is no time.
std::string convertToXsdTime(const Session& session, std::string_view strTime);

/// One part of the protocol's name, in `strValue`: the attribute of `objProtocolXML` that the
/// parameter `strParamId` of the action "buildprotocolname" names; empty when it is missing.
///
/// Errors: SVC_RET_XML_CREATION_UNABLE_TO_SELECT_PARAMETER,
/// SVC_RET_XML_CREATION_PARAM_ATTR_MISSING.
Acknowledge getProtInfo(const Session& session, std::string_view strParamId, const Node& objDocInfo,
                        std::string& strValue, const Node& objProtocolXML);

/// The protocol's name as it is shown: "name (region, vversion)". A version without a region is not
/// shown; nothing at all is "UNKNOWN".
Acknowledge buildProtocolName(std::string_view strName, std::string_view strRegion,
                              std::string_view strVersion, std::string& strProtocolName);

}  // namespace Varnel_Tolv_XML_Creation
