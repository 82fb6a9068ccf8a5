#include "validation/lookup/isXpathMandatory.h"

#include <string>

#include "config/Attributes.h"
#include "config/Utility.h"
#include "platform/text/Text.h"
#include "result/Guarded.h"
#include "validation/lookup/QuestionLookups.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

constexpr std::string_view kProcedure = "isXpathMandatory";

bool isTrueWord(const Node& objElement, std::string_view strName) {
  return toLower(attributeText(objElement, strName)) == "true";
}

}  // namespace

Acknowledge isXpathMandatory(const Session& session, const Document& objReferenceXml,
                             std::string_view strXpath, std::string_view strStopXpath,
                             std::string_view strQuestionId, const Document& objParkXml,
                             bool& blnMandatory) {
  return Guarded(
      kProcedure,
      [&]() -> Acknowledge {
        blnMandatory = false;
        if (strXpath == strStopXpath) return {};

        trace(session, kProcedure, {"Testing xpath: ", strXpath});
        const Node objReferenceNode = objReferenceXml.selectSingleNode(strXpath);
        if (!objReferenceNode) {
          trace(session, kProcedure, {"objReferenceXmlNode Is Nothing"});
          return Failure(SVC_RET_XML_CREATION_REF_XML_OBJ_MISSING,
                         "Reference XML Node is missing: " + std::string(strXpath),
                         "An error has occurred validating the message XML");
        }
        if (!isTrueWord(objReferenceNode, "mandatory")) return {};
        blnMandatory = true;
        if (isTrueWord(objReferenceNode, "choice") && !getPrtObjct(objParkXml, strQuestionId)) {
          blnMandatory = false;
          return {};
        }
        // deliberate: the walk towards the stop path ends with the element that began it. Its next
        // path is taken all the same: a path without "/" has none.
        static_cast<void>(GetParentPath(strXpath));
        return {};
      },
      [&](const RuntimeError& error) -> Acknowledge {
        trace(session, kProcedure, {"Unexpected error in isXpathMandatory: ", error.description()});
        return FailureFromCurrentError(kProcedure);
      });
}

}  // namespace Varnel_Tolv_XML_Creation
