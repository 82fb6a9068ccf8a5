#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "interface/BuildXML.h"
#include "support/Documents.h"

namespace Varnel_Tolv_XML_Creation::test {

/// How many times fewer runs an ordinary test tries under a sanitizer, which makes each many times
/// as long. In those of one thread the thread sanitizer has nothing to see.
#if defined(__SANITIZE_THREAD__)
constexpr std::size_t kThinning = 16;
#elif defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kThinning = 3;
#else
constexpr std::size_t kThinning = 1;
#endif

/// All that a run told its caller, to be compared byte by byte.
struct RunOutcome {
  bool blnRaised = false;  // an exception left the call; then there is no result
  Acknowledge objAck;
  std::string strParkXML;
  std::string strSendXML;  // empty when the run set no message
  std::string strVerdict;  // both collections, a line for each error

  /// The result and the verdict, for people.
  std::string told() const {
    return std::to_string(objAck.ErrorCode()) + ' ' + objAck.ErrorDetail() + '|' +
           objAck.UserMessage() + '\n' + strVerdict;
  }
  bool operator==(const RunOutcome& other) const {
    return blnRaised == other.blnRaised && told() == other.told() &&
           strParkXML == other.strParkXML && strSendXML == other.strSendXML;
  }
};

/// One form of examples/inspection, submitted and validated as often as its user likes, which may
/// be on any number of threads at once, with an instance each. It needs no test framework.
class ExampleRun {
 public:
  using Ids = std::span<const std::string_view>;

  /// The whole form, or what it holds of these objects. The settings are those of every document,
  /// the caller's own included. For the whole form no XML is touched yet. `folder` may be a copy of
  /// the example's.
  explicit ExampleRun(std::string_view strForm, Ids ids = {}, TraceSink* traceSink = nullptr,
                      const DocumentSettings& settings = {},
                      std::filesystem::path folder = VARNEL_SOURCE_DIR "/examples/inspection",
                      FileCache* cache = nullptr)
      : folder_(std::move(folder)),
        form_(body(strForm)),
        strObjectList_(ids.empty() ? textOfFile(at("object-list.xml")) : objectList(ids)) {
    host_ = {.objectContext = &context_,
             .clock = &clock_,
             .traceSink = traceSink,
             .documentSettings = settings,
             .cache = cache};
  }
  ExampleRun(const ExampleRun&) = delete;
  ExampleRun& operator=(const ExampleRun&) = delete;

  const HostServices& host() const { return host_; }

  RunOutcome run(BuildXML& library) const {
    return run(
        library, [] {}, [] {});
  }

  /// The same. `begin` is called when only the library is still to be called, `end` when it has
  /// returned.
  template <class Begin, class End>
  RunOutcome run(BuildXML& library, Begin&& begin, End&& end) const {
    Document objParkXML = parsed(strObjectList_, host_.documentSettings);
    const Document objProtocol =
        parsed(textOfFile(at("protocol-info.xml")), host_.documentSettings);
    const Node objProtocolInfo = objProtocol.documentElement();
    Document objSendXML;
    ValidationUserErrors colUserErrors;
    ValidationIntErrors colIntErrors;
    RunOutcome outcome;
    begin();
    try {
      outcome.objAck = library.buildXML(
          strTemplate_, strMapper_, strTypes_, strHiddenFields_, strNamespaces_, strQuestions_,
          strReference_, true, true, objParkXML, objSendXML, objProtocolInfo, colUserErrors,
          colIntErrors, "schema/inspection.xsd", "urn:example:inspection:report");
    } catch (...) {
      outcome.blnRaised = true;
    }
    end();
    outcome.strParkXML = objParkXML.xml();
    if (objSendXML) outcome.strSendXML = objSendXML.xml();
    outcome.strVerdict = verdict(colUserErrors, colIntErrors);
    return outcome;
  }

 private:
  std::string at(std::string_view strFile) const { return (folder_ / strFile).string(); }

  /// What a browser sends, without the line end of the file.
  std::string body(std::string_view strForm) const {
    std::string strBody = textOfFile(at(strForm));
    while (strBody.ends_with('\n')) strBody.pop_back();
    return strBody;
  }

  std::string objectList(Ids ids) const {
    const Document objList = parsed(textOfFile(at("object-list.xml")));
    const NodeList colObjects = objList.documentElement().getElementsByTagName("prtobjct").value();
    for (const Node& objObject : colObjects) {
      const std::string strId = objObject.getAttribute("id").value();
      if (std::find(ids.begin(), ids.end(), strId) == ids.end()) {
        objObject.parentNode().removeChild(objObject);
      }
    }
    return objList.xml();
  }

  static std::string verdict(const ValidationUserErrors& colUserErrors,
                             const ValidationIntErrors& colIntErrors) {
    std::string strVerdict;
    const auto line = [&](std::initializer_list<std::string_view> values) {
      for (const std::string_view strValue : values) strVerdict.append(strValue).append("|");
      strVerdict += '\n';
    };
    if (colUserErrors) line({"for the user"});
    for (const auto& error : colUserErrors.value_or(std::vector<ValidationUserError>())) {
      line({error.questionId, error.questionText, error.rowIndex, error.columnId, error.columnText,
            error.message});
    }
    if (colIntErrors) line({"internal"});
    for (const auto& error : colIntErrors.value_or(std::vector<ValidationIntError>())) {
      line({error.message, error.xpath, error.questionId, error.rowIndex, error.columnId});
    }
    return strVerdict;
  }

  const std::filesystem::path folder_;
  FormCollection form_;
  const std::string strObjectList_;
  const std::string strTemplate_ = at("template.xml"), strMapper_ = at("object-mapper.xml"),
                    strTypes_ = at("schema-types.xml"), strHiddenFields_ = at("hidden-fields.xml"),
                    strNamespaces_ = at("namespaces.xml"), strQuestions_ = at("questions.xml"),
                    strReference_ = at("reference.xml");
  PageServer server_{at("pages")};
  ObjectContext context_{.request = &form_, .server = &server_};
  FixedClock clock_{DateTime{2025, 10, 14, 12, 5, 0}};
  HostServices host_;
};

}  // namespace Varnel_Tolv_XML_Creation::test
