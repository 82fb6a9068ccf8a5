// What the application does with a form that is posted.
#include <algorithm>
#include <filesystem>
#include <iterator>

#include "Words.h"
#include "host/Application.h"
#include "host/FormAnswers.h"
#include "host/Log.h"
#include "host/Moment.h"
#include "host/Token.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

/// Whether another site's page sent the request, as far as the browser tells.
bool isFromElsewhere(const HttpRequest& request) {
  if (request.strFetchSite == "cross-site") return true;
  const std::string& strOrigin = request.strOrigin;
  if (strOrigin.empty() || strOrigin == "null") return false;
  const std::size_t lngHost = strOrigin.find("://");
  return lngHost == std::string::npos || strOrigin.substr(lngHost + 3) != request.strHost;
}

/// Whether the kind is that of a form, and its character set UTF-8 where it tells one.
bool isFormBody(const std::string& strContentType) {
  std::string strType = lowerCase(strContentType);
  std::erase_if(strType,
                [](char letter) { return letter == ' ' || letter == '\t' || letter == '"'; });
  std::size_t end = std::min(strType.find(';'), strType.size());
  if (std::string_view(strType).substr(0, end) != "application/x-www-form-urlencoded") return false;
  while (end < strType.size()) {
    const std::size_t at = end + 1;
    end = std::min(strType.find(';', at), strType.size());
    const std::string_view strWord = std::string_view(strType).substr(at, end - at);
    if (strWord.starts_with("charset=") && strWord != "charset=utf-8") return false;
  }
  return true;
}

constexpr const char* kTooLarge = "The form is too large";

std::size_t fieldsIn(const HttpRequest& request) {
  return static_cast<std::size_t>(std::ranges::count(request.strBody, '&')) + 1;
}

void logForm(const char* event, const StoredForm& form) {
  logEvent(event, {{"form", form.strDeployment}, {"id", form.strId}, {"version", form.lngVersion}});
}

}  // namespace

std::optional<HttpResponse> Application::refusal(const HttpRequest& request) const {
  if (isFromElsewhere(request)) {
    return trouble(request, 403, "The request came from another site",
                   "Open the form here and send it from its own page.");
  }
  if (!isFormBody(request.strContentType)) {
    return trouble(request, 415, "The answers came in a form that is not understood",
                   "A form is sent as application/x-www-form-urlencoded in UTF-8.");
  }
  // Up to twice as many are read, to be shown as they were typed.
  if (fieldsIn(request) / 2 > options_.lngMaxRows) {
    return tooLarge(request);
  }
  return std::nullopt;
}

/// To a form that is so large that not even its page is made.
HttpResponse Application::tooLarge(const HttpRequest& request) const {
  return trouble(request, 422, kTooLarge,
                 "It has more fields or rows than are taken at a time. Nothing was saved.");
}

/// Puts what a form posted into the page of a trouble. Needs neither the store nor a deployment.
void Application::keepPosted(const HttpRequest& request, const ViewElement& trouble) const {
  const bool blnForm =
      request.strPath.starts_with("/forms/") || request.strPath.starts_with("/parked/");
  if (request.strMethod != "POST" || !blnForm || isFromElsewhere(request) ||
      !isFormBody(request.strContentType) || fieldsIn(request) / 2 > options_.lngMaxRows) {
    return;
  }
  const ViewElement again = trouble.add("again");
  again.set("action", request.strPath);
  for (const auto& [strName, strValue] : decodeBody(request.strBody)) {
    again.add("posted").set("name", strName).set("value", strValue);
  }
}

HttpResponse Application::post(const HttpRequest& request, std::string_view strName,
                               std::string_view strId) {
  if (auto refused = refusal(request)) return *std::move(refused);
  Post post{.request = request, .answers = decodeBody(request.strBody)};
  if (!strId.empty()) {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    std::optional<StoredForm> stored = store_.find(std::string(strId));
    if (stored) post.stored = *std::move(stored);
  }
  post.deployment = deployments_.find(strId.empty() ? strName : post.stored.strDeployment);
  if (post.deployment == nullptr) {
    return trouble(request, 404, "There is no such form", "The address may be incomplete.");
  }
  post.strAction = answerTo(post.answers, "_action");
  const PageModel& page = post.deployment->page();
  completeAnswers(page, post.answers, mostRowsShown());

  if (cellCount(page, post.answers, mostRowsShown()) > 2 * mostCells(page)) {
    return tooLarge(request);
  }

  const TokenState tokenState = checkToken(store_.key(), request.strPath,
                                           answerTo(post.answers, "_token"), millisecondsNow());
  if (tokenState != TokenState::good) {
    logEvent("token-refused", {{"stale", tokenState == TokenState::stale}});
    return asTyped(post, 403, "token");
  }

  try {
    return act(post);
  } catch (const StoreProblem& problem) {
    logEvent("store-problem", {{"reason", problem.what()}});
    HttpResponse response = asTyped(post, 503, "store");
    response.headers.emplace_back("Retry-After", kRetryAfter);
    return response;
  }
}

bool Application::hasTableBeyond(const Post& post, std::int64_t lngRows) {
  for (const Section& section : post.deployment->page().sections) {
    for (const Question& question : section.questions) {
      if (question.blnTable && rowCount(question, post.answers, lngRows) > lngRows) return true;
    }
  }
  return false;
}

/// Whether it has more fields or cells, or one of its tables more rows, than are taken.
bool Application::isTooLarge(const Post& post) const {
  if (fieldsIn(post.request) > options_.lngMaxRows) return true;
  const PageModel& page = post.deployment->page();
  if (cellCount(page, post.answers, mostRows()) > mostCells(page)) return true;
  return hasTableBeyond(post, mostRows());
}

HttpResponse Application::act(Post& post) {
  const std::string_view strAction = post.strAction;
  const bool blnRemoves = strAction.starts_with("remove-row:");
  // So it can become smaller; but what the page has no row for would be lost.
  if (blnRemoves && !hasTableBeyond(post, mostRowsShown())) return changeRows(post);
  if (isTooLarge(post)) {
    logRefusal(post.request, 422, kTooLarge);
    return asTyped(post, 422, "rows");
  }
  if (strAction.starts_with("add-row:")) return changeRows(post);
  if (post.stored.strId.empty()) return parkNew(post);
  if (strAction == "submit") return submit(post);
  if (strAction.empty() || strAction == "park") return parkAgain(post);
  return trouble(post.request, 422, "That cannot be done here", "The button is not known.");
}

/// The page with what was posted, which is not in the store: it is still made from the version that
/// it was made from.
HttpResponse Application::asTyped(const Post& post, unsigned lngStatus, const char* notice,
                                  const RunResult* run) {
  FormView view = viewFor(post);
  if (*notice != '\0') view.strNotice = notice;
  view.blnUnsaved = true;
  view.lngVersion = postedVersion(post.answers);
  return page(post, lngStatus, view, run);
}

HttpResponse Application::changeRows(Post& post) {
  const std::string_view strAction = post.strAction;
  const bool blnAdd = strAction.starts_with("add-row:");
  std::string_view strTable = strAction.substr(strAction.find(':') + 1);
  const std::int64_t lngMost = mostRowsShown();
  std::int64_t lngRow = 0;
  if (!blnAdd) {
    const std::size_t lngColon = strTable.rfind(':');
    lngRow =
        lngColon == std::string_view::npos ? 0 : rowNumber(strTable.substr(lngColon + 1), lngMost);
    strTable = strTable.substr(0, lngColon);
  }
  const PageModel& page = post.deployment->page();
  const Question* const table = page.find(strTable);
  const bool blnKnown = table != nullptr && table->blnDynamic;
  const std::int64_t lngCount = blnKnown ? rowCount(*table, post.answers, lngMost) : 0;
  if (!blnKnown || (!blnAdd && (lngRow < 1 || lngRow > lngCount))) {
    return trouble(post.request, 422, "The row cannot be added or removed",
                   "There is no such table or row.");
  }
  const std::int64_t lngCells = cellCount(page, post.answers, lngMost);
  if (blnAdd && (lngCount >= mostRows() ||
                 lngCells + static_cast<std::int64_t>(table->columns.size()) > mostCells(page))) {
    logRefusal(post.request, 422, "The table has as many rows as are taken");
    return asTyped(post, 422, "rows");
  }
  if (!blnAdd) removeRow(*table, lngRow, lngCount, post.answers);
  post.answers.insert_or_assign(rowCountNameOf(table->input.strId),
                                std::to_string(blnAdd ? lngCount + 1 : lngCount - 1));
  return asTyped(post, 200, "");
}

/// What is wrong with a message and no input of the page can mend, and which answers did not reach
/// it: the configuration is to be looked at. Names of elements and reasons, and no answer.
void Application::logWhatNobodyMends(const Post& post, const RunReport& report) const {
  for (const SchemaViolation& violation : report.violations) {
    if (post.deployment->page().find(violation.questionId) != nullptr) continue;
    logEvent("violation-without-question", {{"form", post.deployment->name()},
                                            {"id", post.stored.strId},
                                            {"kind", violationKindName(violation.kind)},
                                            {"facet", violation.facet},
                                            {"path", violation.path}});
  }
  for (const AnswerLoss& loss : report.losses) {
    const std::string& strFile =
        loss.file.empty() ? *post.deployment->toRun(true).objectList : loss.file;
    logEvent("answer-lost", {{"form", post.deployment->name()},
                             {"id", post.stored.strId},
                             {"reason", loss.reason},
                             {"file", std::filesystem::path(strFile).filename().string()},
                             {"line", loss.line}});
  }
}

RunResult Application::run(const Post& post, bool blnSubmit) {
  RunResult result;
  {
    const Metrics::Timer timer(metrics_, Metrics::kRun);
    result = runForm(*post.deployment, post.answers, blnSubmit);
  }
  metrics_.countRun(result.outcome);
  if (blnSubmit) logWhatNobodyMends(post, result.report);
  if (result.outcome == RunOutcome::failed || result.outcome == RunOutcome::notChecked) {
    logEvent("run-failed", {{"form", post.deployment->name()},
                            {"id", post.stored.strId},
                            {"submit", blnSubmit},
                            {"reason", result.strReason}});
  }
  return result;
}

StoredForm Application::next(const Post& post, const RunResult& run, const char* state) const {
  StoredForm form = post.stored;
  form.strDeployment = post.deployment->name();
  form.strState = state;
  form.strParkXml = run.strParkXml;
  form.strRowCounts = rowCountsOf(post.deployment->page(), post.answers, mostRows());
  form.strResult = run.strJson;
  form.strChanged = momentText();
  if (form.strCreated.empty()) form.strCreated = form.strChanged;
  ++form.lngVersion;
  return form;
}

/// Saves a form by `attempt`, in the place of the stored one. One that was saved meanwhile with the
/// same answers, as by a button that was pressed twice, is no other: what comes now is the newer
/// version of it. False when there is another one now.
bool Application::save(const Post& post, StoredForm& form, const std::function<bool()>& attempt) {
  const Metrics::Timer timer(metrics_, Metrics::kStore);
  while (!attempt()) {
    const std::optional<StoredForm> stored = store_.find(form.strId);
    if (!stored || stored->strState == "accepted" || stored->lngVersion < form.lngVersion ||
        !sameAnswers(post.deployment->page(), post.answers,
                     answersIn(stored->strParkXml, stored->strRowCounts), mostRows())) {
      return false;
    }
    form.lngVersion = stored->lngVersion + 1;
  }
  return true;
}

bool Application::replace(const Post& post, StoredForm& form) {
  const bool blnDone = save(post, form, [&] { return store_.replace(form); });
  if (blnDone) metrics_.countParked();
  return blnDone;
}

/// The form is now what was saved of it, for the page that comes back.
void Application::takeSaved(Post& post, StoredForm form, const RunResult& run) {
  post.stored = std::move(form);
  takeComputed(post.deployment->page(), run.objPark, post.answers);
}

HttpResponse Application::parkNew(Post& post) {
  const RunResult result = run(post, false);
  if (result.outcome != RunOutcome::parked) return asTyped(post, 500, "failed", &result);
  StoredForm form = next(post, result, "parked");
  form.strId = randomId();
  {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    store_.create(form);
  }
  metrics_.countParked();
  logForm("parked", form);
  return redirect(post, "/parked/" + form.strId, form, &result);
}

HttpResponse Application::parkAgain(Post& post) {
  if (post.stored.strState == "accepted") return conflict(post);
  if (postedVersion(post.answers) != post.stored.lngVersion) return conflict(post);
  const RunResult result = run(post, false);
  if (result.outcome != RunOutcome::parked) return asTyped(post, 500, "failed", &result);
  StoredForm form = next(post, result, "parked");
  if (!replace(post, form)) return conflict(post);
  logForm("parked", form);
  return redirect(post, "/parked/" + form.strId, form, &result);
}

/// The form is not what the page was made from. Pressing a button twice is no conflict: what would
/// be saved is there already.
HttpResponse Application::conflict(Post& post) {
  if (auto stored = store_.find(post.stored.strId)) post.stored = *std::move(stored);
  const bool blnAccepted = post.stored.strState == "accepted";
  if (blnAccepted && post.strAction == "submit") {
    return redirect(post, "/messages/" + post.stored.strId, post.stored, nullptr);
  }
  Answers stored = answersIn(post.stored.strParkXml, post.stored.strRowCounts);
  if (sameAnswers(post.deployment->page(), post.answers, stored, mostRows()) &&
      post.strAction != "submit") {
    return redirect(post, "/parked/" + post.stored.strId, post.stored, nullptr);
  }
  logForm("conflict", post.stored);
  FormView view = viewFor(post);
  view.strNotice = blnAccepted ? "accepted" : "conflict";
  view.blnUnsaved = true;
  view.stored = std::move(stored);
  return page(post, 409, view);
}

HttpResponse Application::submit(Post& post) {
  if (post.stored.strState == "accepted") return conflict(post);
  if (postedVersion(post.answers) != post.stored.lngVersion) {
    const Answers stored = answersIn(post.stored.strParkXml, post.stored.strRowCounts);
    if (!sameAnswers(post.deployment->page(), post.answers, stored, mostRows())) {
      return conflict(post);
    }
  }
  const RunResult result = run(post, true);
  if (result.outcome == RunOutcome::accepted) {
    StoredForm form = next(post, result, "accepted");
    const bool blnDone = save(
        post, form, [&] { return store_.accept(form, result.strMessage, options_.strDeliver); });
    if (!blnDone) return conflict(post);
    metrics_.countAccepted();
    logForm("accepted", form);
    onAccepted_();
    return redirect(post, "/messages/" + form.strId, form, &result);
  }
  if (result.outcome != RunOutcome::refused) return saveWithoutVerdict(post, result);

  std::vector<FormError> errors =
      errorsOf(result.report, post.deployment->texts(), post.deployment->page(), post.answers);
  std::ranges::move(unreadableAnswers(post.deployment->page(), post.answers, mostRowsShown()),
                    std::back_inserter(errors));
  StoredForm form = next(post, result, "refused");
  if (!replace(post, form)) return conflict(post);
  logEvent("refused", {{"form", form.strDeployment},
                       {"id", form.strId},
                       {"version", form.lngVersion},
                       {"errors", errors.size()}});
  takeSaved(post, std::move(form), result);
  FormView view = viewFor(post);
  view.errors = std::move(errors);
  return page(post, 422, view, &result);
}

/// Nobody knows whether the message is valid, so it is none; the answers are kept all the same.
HttpResponse Application::saveWithoutVerdict(Post& post, const RunResult& result) {
  const RunResult parked = run(post, false);
  if (parked.outcome != RunOutcome::parked) return asTyped(post, 500, "failed", &result);
  StoredForm form = next(post, parked, "parked");
  form.strResult = result.strJson;  // tells why to those who run the deployment
  if (!replace(post, form)) return conflict(post);
  takeSaved(post, std::move(form), parked);
  FormView view = viewFor(post);
  view.strNotice = "not-checked";
  return page(post, 500, view, &result);
}
