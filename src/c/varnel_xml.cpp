#include "varnel_xml.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "interface/RunDeployment.h"
#include "platform/json/ResultJson.h"
#include "platform/text/Text.h"
#include "result/RuntimeError.h"

using namespace Varnel_Tolv_XML_Creation;

struct varnel_xml_deployment {
  std::string strFolder;  // empty: none
  Deployment deployment;
  DocumentSettings documentSettings;
  RunLimits runLimits;
  FileCache cache;
};

struct varnel_xml_result {
  std::int32_t lngErrorCode = 0;
  std::int32_t lngUnreadable = 0;
  std::string strJson;
  std::optional<std::string> park;
  std::optional<std::string> message;
  std::optional<Verdict> verdict;
};

namespace {

/// What the caller did wrong.
struct BadArgument {
  const char* reason;
};

void require(bool blnHolds, const char* reason) {
  if (!blnHolds) throw BadArgument{reason};
}

/// A structure of the caller's as this version knows it; the default one for null. The first
/// version of it had `lngFirstSize` bytes.
template <class Structure>
Structure known(const Structure* given, std::size_t lngFirstSize) {
  Structure mine{};
  if (given == nullptr) return mine;
  require(given->size >= lngFirstSize, "the size of a structure is too small");
  const char* const bytes = reinterpret_cast<const char*>(given);
  std::memcpy(&mine, bytes, std::min(given->size, sizeof(Structure)));
  for (std::size_t at = sizeof(Structure); at < given->size; ++at) {
    require(bytes[at] == 0, "a structure asks for what this version does not know");
  }
  return mine;
}

/// The end of the last member of a structure's first version.
#define VARNEL_SIZE_UP_TO(STRUCTURE, MEMBER) \
  (offsetof(STRUCTURE, MEMBER) + sizeof(STRUCTURE::MEMBER))

// A byte that belongs to no member would be taken for one of a later version.
static_assert(sizeof(varnel_xml_submission) == VARNEL_SIZE_UP_TO(varnel_xml_submission, reserved));
static_assert(sizeof(varnel_xml_settings) == VARNEL_SIZE_UP_TO(varnel_xml_settings, run_bytes));

std::string_view textOf(const char* text, std::size_t lngLength) {
  require(text != nullptr || lngLength == 0, "a text is NULL and has a length");
  return text == nullptr ? std::string_view() : std::string_view(text, lngLength);
}

/// Writes as much of one line as fits, cut between two characters.
void tell(varnel_xml_error* error, std::string_view strReason) noexcept {
  constexpr std::size_t kBegin = offsetof(varnel_xml_error, message);
  if (error == nullptr || error->size <= kBegin) return;
  const std::string_view strShown =
      beginningOf(strReason, std::min(error->size - kBegin, sizeof(error->message)) - 1);
  char* const end = std::transform(
      strShown.begin(), strShown.end(), error->message,
      [](char letter) { return static_cast<unsigned char>(letter) < ' ' ? ' ' : letter; });
  *end = '\0';
}

varnel_xml_status statusOf(const RuntimeError& error) noexcept {
  switch (error.number()) {
    case kInvalidArgument:
      return VARNEL_XML_CANNOT_USE;
    case kOutOfMemory:
      return VARNEL_XML_OUT_OF_MEMORY;
    default:
      return VARNEL_XML_INTERNAL_ERROR;
  }
}

/// The border to the caller, which no exception crosses.
template <class Body>
varnel_xml_status guarded(varnel_xml_error* error, Body&& body) noexcept {
  tell(error, "");
  try {
    body();
    return VARNEL_XML_OK;
  } catch (const BadArgument& argument) {
    tell(error, argument.reason);
    return VARNEL_XML_BAD_ARGUMENT;
  } catch (...) {
    const RuntimeError cause = CurrentRuntimeError();
    tell(error, cause.description());
    return statusOf(cause);
  }
}

class CalledTrace : public TraceSink {
 public:
  explicit CalledTrace(const varnel_xml_submission& submission) : submission_(submission) {}
  void write(std::string_view strLine) override {
    submission_.trace(submission_.trace_context, strLine.data(), strLine.size());
  }

 private:
  const varnel_xml_submission& submission_;
};

std::unique_ptr<varnel_xml_deployment> opened(const char* folder,
                                              const varnel_xml_settings& settings) {
  require(settings.options != nullptr || settings.option_count == 0,
          "options is NULL and has a count");
  DeploymentValues values;
  for (std::size_t at = 0; at < settings.option_count; ++at) {
    const varnel_xml_option& option = settings.options[at];
    require(option.key != nullptr && option.value != nullptr,
            "a key or value of an option is NULL");
    values[option.key] = option.value;
  }
  DocumentSettings documentSettings;
  if (settings.document_bytes != 0) documentSettings.lngMaxBytes = settings.document_bytes;
  RunLimits runLimits;
  if (settings.run_nodes != 0) runLimits.lngMaxNodes = settings.run_nodes;
  if (settings.run_bytes != 0) runLimits.lngMaxBytes = settings.run_bytes;
  const std::size_t lngCacheBytes =
      settings.cache_bytes != 0 ? settings.cache_bytes : FileCache::kDefaultMaxBytes;
  return std::unique_ptr<varnel_xml_deployment>(new varnel_xml_deployment{
      .strFolder = folder != nullptr ? folder : "",
      .deployment = openDeployment(
          folder != nullptr ? std::optional<std::string>(folder) : std::nullopt, std::move(values)),
      .documentSettings = documentSettings,
      .runLimits = runLimits,
      .cache = FileCache(lngCacheBytes)});
}

Document objectList(const Deployment& deployment, const varnel_xml_submission& submission,
                    const RunServices& services) {
  if (submission.object_list == nullptr) return documentOf(deployment.objectList, services);
  Document objList = Document::create(services.documentSettings);
  if (!objList.loadXML(textOf(submission.object_list, submission.object_list_length))) {
    throw RuntimeError(kInvalidArgument, "the object list: " + objList.parseError().reason);
  }
  return objList;
}

/// The file that the object list comes from, if it does.
std::string_view objectListFile(const Deployment& deployment,
                                const varnel_xml_submission& submission) {
  const bool blnOwn = submission.object_list != nullptr || !deployment.objectList;
  return blnOwn ? std::string_view() : std::string_view(*deployment.objectList);
}

std::unique_ptr<varnel_xml_result> resultOf(varnel_xml_deployment& opened,
                                            const varnel_xml_submission& submission) {
  require(submission.reserved == 0, "a structure asks for what this version does not know");
  FormCollection form(textOf(submission.form, submission.form_length));
  if (submission.replace_unstorable != 0) form.replaceUnstorable();
  Deployment deployment = opened.deployment;
  deployment.blnSubmit = submission.submit != 0;
  deployment.blnValidateAgainstSchema = submission.validate != 0;

  CalledTrace trace(submission);
  RunReport report;
  const bool blnReport = submission.report != 0 || submission.journal != 0;
  const RunServices services{.traceSink = submission.trace != nullptr ? &trace : nullptr,
                             .cache = &opened.cache,
                             .report = blnReport ? &report : nullptr,
                             .blnJournal = submission.journal != 0,
                             .documentSettings = opened.documentSettings,
                             .runLimits = opened.runLimits};
  const RunOutputs run =
      runDeployment(deployment, form, objectList(deployment, submission, services),
                    documentOf(deployment.protocolInfo, services), services);

  auto result = std::make_unique<varnel_xml_result>();
  result->lngErrorCode = run.objAck.ErrorCode();
  constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max();
  result->lngUnreadable = static_cast<std::int32_t>(std::min(form.unreadableFields(), kMost));
  result->strJson = resultJson(run.objAck, run.colUserErrors, run.colInternalErrors,
                               {.report = services.report,
                                .blnJournal = services.blnJournal,
                                .strFolder = opened.strFolder,
                                .strObjectList = objectListFile(deployment, submission)});
  if (run.objParkXML) result->park = run.objParkXML.xml();
  if (run.objSendXML) result->message = run.objSendXML.xml();
  if (blnReport) result->verdict = report.verdict;
  return result;
}

const char* told(const std::string* strText, std::size_t* length) {
  if (length != nullptr) *length = strText != nullptr ? strText->size() : 0;
  return strText != nullptr ? strText->c_str() : nullptr;
}

/// The same of a document that a result may have.
const char* told(const varnel_xml_result* result,
                 std::optional<std::string> varnel_xml_result::*document, std::size_t* length) {
  const bool blnHas = result != nullptr && (result->*document).has_value();
  return told(blnHas ? &*(result->*document) : nullptr, length);
}

}  // namespace

extern "C" {

const char* varnel_xml_version(void) { return VARNEL_VERSION; }

const char* varnel_xml_status_name(varnel_xml_status status) {
  switch (status) {
    case VARNEL_XML_OK:
      return "ok";
    case VARNEL_XML_BAD_ARGUMENT:
      return "bad argument";
    case VARNEL_XML_CANNOT_USE:
      return "cannot use";
    case VARNEL_XML_OUT_OF_MEMORY:
      return "out of memory";
    case VARNEL_XML_INTERNAL_ERROR:
      return "internal error";
  }
  return "unknown";
}

varnel_xml_status varnel_xml_open(const char* folder, const varnel_xml_settings* settings,
                                  varnel_xml_deployment** deployment, varnel_xml_error* error) {
  if (deployment != nullptr) *deployment = nullptr;
  return guarded(error, [&] {
    require(deployment != nullptr, "deployment is NULL");
    *deployment =
        opened(folder, known(settings, VARNEL_SIZE_UP_TO(varnel_xml_settings, document_bytes)))
            .release();
  });
}

void varnel_xml_close(varnel_xml_deployment* deployment) { delete deployment; }

varnel_xml_status varnel_xml_run(varnel_xml_deployment* deployment,
                                 const varnel_xml_submission* submission,
                                 varnel_xml_result** result, varnel_xml_error* error) {
  if (result != nullptr) *result = nullptr;
  return guarded(error, [&] {
    require(deployment != nullptr && submission != nullptr && result != nullptr,
            "an argument is NULL");
    *result = resultOf(*deployment,
                       known(submission, VARNEL_SIZE_UP_TO(varnel_xml_submission, trace_context)))
                  .release();
  });
}

void varnel_xml_free(varnel_xml_result* result) { delete result; }

int32_t varnel_xml_error_code(const varnel_xml_result* result) {
  return result != nullptr ? result->lngErrorCode : kInternalError;
}

int32_t varnel_xml_unreadable(const varnel_xml_result* result) {
  return result != nullptr ? result->lngUnreadable : 0;
}

const char* varnel_xml_json(const varnel_xml_result* result, size_t* length) {
  return told(result != nullptr ? &result->strJson : nullptr, length);
}

const char* varnel_xml_park(const varnel_xml_result* result, size_t* length) {
  return told(result, &varnel_xml_result::park, length);
}

const char* varnel_xml_message(const varnel_xml_result* result, size_t* length) {
  return told(result, &varnel_xml_result::message, length);
}

const char* varnel_xml_verdict(const varnel_xml_result* result) {
  if (result == nullptr || !result->verdict) return nullptr;
  return verdictName(*result->verdict).data();  // a literal, so a NUL stands behind it
}

}  // extern "C"
