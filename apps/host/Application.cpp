#include "host/Application.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "host/Embedded.h"
#include "host/Log.h"
#include "host/Moment.h"
#include "host/Token.h"

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kJson = "application/json";
constexpr const char* kXml = "application/xml; charset=utf-8";

bool wantsJson(const HttpRequest& request) {
  return request.strAccept.find(kJson) != std::string::npos;
}

HttpResponse text(std::string_view strContentType, std::string strBody, unsigned lngStatus = 200) {
  return {.lngStatus = lngStatus,
          .strContentType = std::string(strContentType),
          .strBody = std::move(strBody),
          .headers = {}};
}

std::string dumped(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

/// The part of a path behind a prefix; none when it begins otherwise or has a slash more.
std::optional<std::string_view> behind(std::string_view strPath, std::string_view strPrefix) {
  if (!strPath.starts_with(strPrefix)) return std::nullopt;
  strPath.remove_prefix(strPrefix.size());
  if (strPath.empty() || strPath.find('/') != std::string_view::npos) return std::nullopt;
  return strPath;
}

bool takeSuffix(std::string_view& strName, std::string_view strSuffix) {
  if (!strName.ends_with(strSuffix)) return false;
  strName.remove_suffix(strSuffix.size());
  return true;
}

/// Whether another site's page sent the request, as far as the browser tells.
bool isFromElsewhere(const HttpRequest& request) {
  if (request.strFetchSite == "cross-site") return true;
  const std::string& strOrigin = request.strOrigin;
  if (strOrigin.empty() || strOrigin == "null") return false;
  const std::size_t lngHost = strOrigin.find("://");
  return lngHost == std::string::npos || strOrigin.substr(lngHost + 3) != request.strHost;
}

bool isFormBody(const std::string& strContentType) {
  std::string strType = strContentType;
  std::ranges::transform(strType, strType.begin(), [](unsigned char letter) {
    return static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
  });
  std::erase(strType, ' ');
  std::erase(strType, '"');
  constexpr std::string_view kForm = "application/x-www-form-urlencoded";
  if (!strType.starts_with(kForm)) return false;
  const std::string_view strRest = std::string_view(strType).substr(kForm.size());
  if (!strRest.empty() && !strRest.starts_with(';')) return false;
  const std::size_t lngCharset = strRest.find("charset=");
  return lngCharset == std::string_view::npos ||
         strRest.substr(lngCharset + 8).starts_with("utf-8");
}

/// Whether what people can answer is the same in both.
bool sameAnswers(const PageModel& page, const Answers& left, const Answers& right,
                 std::int64_t lngMost) {
  const auto same = [&](const std::string& strName) {
    return answerTo(left, strName) == answerTo(right, strName);
  };
  for (const Section& section : page.sections) {
    for (const Question& question : section.questions) {
      if (!question.blnTable && !same(inputName(question.input.strId))) return false;
      if (!question.blnTable) continue;
      std::int64_t lngRows = static_cast<std::int64_t>(question.rows.size());
      if (question.blnDynamic) {
        lngRows = rowCount(question, left, lngMost);
        if (lngRows != rowCount(question, right, lngMost)) return false;
      }
      for (const Input& column : question.columns) {
        if (column.blnOutput) continue;
        for (std::int64_t lngRow = 1; lngRow <= lngRows; ++lngRow) {
          if (!same(cellName(question, column, lngRow))) return false;
        }
      }
    }
  }
  return true;
}

/// The rows behind the removed one move up.
void removeRow(const Question& table, std::int64_t lngRow, std::int64_t lngCount,
               Answers& answers) {
  for (const Input& column : table.columns) {
    for (std::int64_t at = lngRow; at <= lngCount; ++at) {
      const auto next = answers.find(cellName(table, column, at + 1));
      const std::string strName = cellName(table, column, at);
      if (next == answers.end()) {
        answers.erase(strName);
      } else {
        answers.insert_or_assign(strName, next->second);
      }
    }
  }
}

Metrics::Outcome counted(RunOutcome outcome) {
  switch (outcome) {
    case RunOutcome::parked:
      return Metrics::kParked;
    case RunOutcome::accepted:
      return Metrics::kAccepted;
    case RunOutcome::refused:
      return Metrics::kRefused;
    case RunOutcome::notChecked:
      return Metrics::kNotChecked;
    default:
      return Metrics::kFailed;
  }
}

std::string forPeople(std::string strMoment) {
  // 2026-03-05T09:05:07Z as 2026-03-05 09:05 UTC
  if (strMoment.size() != 20) return strMoment;
  return strMoment.substr(0, 10) + ' ' + strMoment.substr(11, 5) + " UTC";
}

}  // namespace

Application::Application(const HostOptions& options, Store& store, Deployments& deployments,
                         Metrics& metrics, std::function<void()> onAccepted)
    : options_(options),
      store_(store),
      deployments_(deployments),
      metrics_(metrics),
      onAccepted_(std::move(onAccepted)) {}

HttpResponse Application::answer(const HttpRequest& request) noexcept {
  try {
    try {
      return route(request);
    } catch (const StoreProblem& problem) {
      logEvent("store-problem", {{"reason", problem.what()}});
      HttpResponse response = trouble(request, 503, "The store cannot be reached",
                                      "Nothing was lost, and nothing was saved just now. Go back, "
                                      "your browser still has your answers, and try again soon.");
      response.headers.emplace_back("Retry-After", "5");
      return response;
    } catch (const std::exception& error) {
      logEvent("error", {{"reason", error.what()}});
      return trouble(request, 500, "Something went wrong",
                     "The fault is ours and has been recorded. Go back and try again.");
    }
  } catch (...) {
    return {.lngStatus = 500, .strContentType = "text/plain", .strBody = "", .headers = {}};
  }
}

HttpResponse Application::trouble(const HttpRequest& request, unsigned lngStatus, const char* title,
                                  std::string_view strText) const {
  if (wantsJson(request)) {
    return text(kJson,
                dumped({{"id", nullptr},
                        {"state", nullptr},
                        {"result", nullptr},
                        {"report", nullptr},
                        {"error", title}}),
                lngStatus);
  }
  const ViewDocument view("trouble");
  view.root().set("title", title).set("text", strText);
  return text("text/html; charset=utf-8", builtIn_.apply(view), lngStatus);
}

HttpResponse Application::route(const HttpRequest& request) {
  const std::string_view strPath = request.strPath;
  const bool blnGet = request.strMethod == "GET" || request.strMethod == "HEAD";
  const bool blnPost = request.strMethod == "POST";
  const auto notAllowed = [&](const char* allowed) {
    HttpResponse response = trouble(request, 405, "That cannot be done here",
                                    "The address does not take requests of this kind.");
    response.headers.emplace_back("Allow", allowed);
    return response;
  };
  const auto notFound = [&] {
    return trouble(request, 404, "There is no such page",
                   "The address may be incomplete, or what stood there is gone.");
  };

  if (strPath == "/") return blnGet ? home(request) : notAllowed("GET, HEAD");
  if (strPath == "/healthz")
    return blnGet ? text("text/plain", "alive\n") : notAllowed("GET, HEAD");
  if (strPath == "/readyz") return blnGet ? ready(request) : notAllowed("GET, HEAD");
  if (strPath == "/metrics") {
    return blnGet ? text("text/plain; version=0.0.4; charset=utf-8", metrics_.text())
                  : notAllowed("GET, HEAD");
  }
  if (const auto strFile = behind(strPath, "/static/")) {
    const std::string_view strContent = pageFile(*strFile);
    const bool blnStyle = strFile->ends_with(".css");
    if (strContent.empty() || (!blnStyle && !strFile->ends_with(".js"))) return notFound();
    if (!blnGet) return notAllowed("GET, HEAD");
    return text(blnStyle ? "text/css; charset=utf-8" : "text/javascript; charset=utf-8",
                std::string(strContent));
  }
  if (const auto strName = behind(strPath, "/forms/")) {
    if (deployments_.find(*strName) == nullptr) return notFound();
    if (blnPost) return post(request, *strName, "");
    return blnGet ? emptyForm(request, *strName) : notAllowed("GET, HEAD, POST");
  }
  for (const bool blnMessage : {false, true}) {
    auto strId = behind(strPath, blnMessage ? "/messages/" : "/parked/");
    if (!strId) continue;
    const bool blnXml = takeSuffix(*strId, ".xml");
    if (!isId(*strId)) return notFound();
    if (!blnMessage && !blnXml && blnPost) return post(request, "", *strId);
    if (!blnGet) return notAllowed(blnMessage || blnXml ? "GET, HEAD" : "GET, HEAD, POST");
    if (blnXml) return document(request, *strId, blnMessage);
    return blnMessage ? receipt(request, *strId) : parkedForm(request, *strId);
  }
  return notFound();
}

// What is shown

HttpResponse Application::home(const HttpRequest& request) {
  if (wantsJson(request)) {
    Json forms = Json::array();
    for (const Deployment& deployment : deployments_.all()) forms.push_back(deployment->name());
    return text(kJson, dumped({{"forms", forms}}));
  }
  const ViewDocument view("home");
  for (const Deployment& deployment : deployments_.all()) {
    const ViewElement entry = view.root().add("entry");
    entry.set("name", deployment->name()).set("title", deployment->page().strTitle);
    if (!deployment->page().strIntro.empty()) entry.add("intro", deployment->page().strIntro);
  }
  return render(200, view, builtIn_);
}

HttpResponse Application::ready(const HttpRequest& request) {
  try {
    store_.ping();
    metrics_.outboxWaiting = store_.waiting();
  } catch (const StoreProblem& problem) {
    logEvent("not-ready", {{"reason", problem.what()}});
    return trouble(request, 503, "Not ready", "The store cannot be reached.");
  }
  // Deployments that do not pass their check are never served.
  if (blnDraining_) return trouble(request, 503, "Not ready", "The host is being stopped.");
  return text("text/plain", "ready\n");
}

HttpResponse Application::emptyForm(const HttpRequest& request, std::string_view strName) {
  const Post post{.request = request,
                  .deployment = deployments_.find(strName),
                  .stored = {},
                  .answers = {},
                  .strAction = ""};
  return page(post, 200, viewFor(post));
}

HttpResponse Application::parkedForm(const HttpRequest& request, std::string_view strId) {
  std::optional<StoredForm> stored;
  {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    stored = store_.find(std::string(strId));
  }
  Deployment deployment = stored ? deployments_.find(stored->strDeployment) : nullptr;
  if (deployment == nullptr) {
    return trouble(request, 404, "There is no such form",
                   "The address may be incomplete. A saved form's address ends in 32 letters and "
                   "digits.");
  }
  Answers answers = answersIn(stored->strParkXml, stored->strRowCounts);
  const Post post{.request = request,
                  .deployment = std::move(deployment),
                  .stored = *std::move(stored),
                  .answers = std::move(answers),
                  .strAction = ""};
  return page(post, 200, viewFor(post));
}

HttpResponse Application::receipt(const HttpRequest& request, std::string_view strId) {
  const std::optional<StoredMessage> message = store_.message(std::string(strId));
  const std::optional<StoredForm> form = message ? store_.find(std::string(strId)) : std::nullopt;
  if (!form) {
    return trouble(request, 404, "There is no such receipt",
                   "The form was not accepted, or the address is incomplete.");
  }
  if (wantsJson(request)) return text(kJson, stateJson(*form, nullptr));
  const Deployment deployment = deployments_.find(form->strDeployment);
  const ViewDocument view("receipt");
  view.root()
      .set("id", strId)
      .set("form", form->strDeployment)
      .set("title", deployment ? deployment->page().strTitle : form->strDeployment)
      .set("accepted", forPeople(message->strAccepted))
      .set("size", std::to_string(message->strXml.size()))
      .set("target", message->strTarget)
      .set("delivered", forPeople(message->strDelivered));
  if (deployment && !deployment->page().strReceipt.empty()) {
    view.root().add("note", deployment->page().strReceipt);
  }
  return render(200, view, deployment ? deployment->stylesheet() : builtIn_);
}

HttpResponse Application::document(const HttpRequest& request, std::string_view strId,
                                   bool blnMessage) {
  std::string strXml;
  if (blnMessage) {
    if (const auto message = store_.message(std::string(strId))) strXml = message->strXml;
  } else if (const auto form = store_.find(std::string(strId))) {
    strXml = form->strParkXml;
  }
  if (strXml.empty()) {
    return trouble(request, 404, "There is no such document",
                   "The form was not accepted, or the address is incomplete.");
  }
  HttpResponse response = text(kXml, std::move(strXml));
  const std::string strFile = (blnMessage ? "message-" : "form-") + std::string(strId) + ".xml";
  response.headers.emplace_back("Content-Disposition", "attachment; filename=\"" + strFile + '"');
  return response;
}

// What is done

std::optional<HttpResponse> Application::refusal(const HttpRequest& request) const {
  if (isFromElsewhere(request)) {
    return trouble(request, 403, "The request came from another site",
                   "Open the form here and send it from its own page.");
  }
  if (!isFormBody(request.strContentType)) {
    return trouble(request, 415, "The answers came in a form that is not understood",
                   "A form is sent as application/x-www-form-urlencoded in UTF-8.");
  }
  const auto lngFields = std::ranges::count(request.strBody, '&') + 1;
  if (static_cast<std::size_t>(lngFields) > options_.lngMaxRows) {
    return trouble(request, 422, "The form is too large",
                   "It has more fields than are taken at a time. Nothing was saved.");
  }
  return std::nullopt;
}

HttpResponse Application::post(const HttpRequest& request, std::string_view strName,
                               std::string_view strId) {
  if (auto refused = refusal(request)) return *std::move(refused);
  Post post{.request = request,
            .deployment = nullptr,
            .stored = {},
            .answers = decodeBody(request.strBody),
            .strAction = ""};
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
  completeAnswers(post.deployment->page(), post.answers,
                  static_cast<std::int64_t>(options_.lngMaxRows));

  const TokenState tokenState = checkToken(store_.key(), request.strPath,
                                           answerTo(post.answers, "_token"), millisecondsNow());
  if (tokenState != TokenState::good) {
    logEvent("token-refused", {{"stale", tokenState == TokenState::stale}});
    FormView view = viewFor(post);
    view.strNotice = "token";
    view.blnUnsaved = true;
    view.lngVersion = rowNumber(answerTo(post.answers, "_version"), INT64_MAX);
    return page(post, 403, view);
  }
  for (const Section& section : post.deployment->page().sections) {
    for (const Question& question : section.questions) {
      const auto lngMost = static_cast<std::int64_t>(options_.lngMaxRows);
      if (question.blnTable && rowCount(question, post.answers, lngMost) > lngMost) {
        return trouble(request, 422, "The form is too large",
                       "One of its tables has more rows than are taken. Nothing was saved.");
      }
    }
  }

  const bool blnRows =
      post.strAction.starts_with("add-row:") || post.strAction.starts_with("remove-row:");
  if (blnRows) return changeRows(post);
  if (strId.empty()) return parkNew(post);
  if (post.strAction == "submit") return submit(post);
  if (post.strAction.empty() || post.strAction == "park") return parkAgain(post);
  return trouble(request, 422, "That cannot be done here", "The button is not known.");
}

HttpResponse Application::changeRows(Post& post) {
  const std::string_view strAction = post.strAction;
  const bool blnAdd = strAction.starts_with("add-row:");
  std::string_view strTable = strAction.substr(strAction.find(':') + 1);
  const auto lngMost = static_cast<std::int64_t>(options_.lngMaxRows);
  std::int64_t lngRow = 0;
  if (!blnAdd) {
    const std::size_t lngColon = strTable.rfind(':');
    lngRow =
        lngColon == std::string_view::npos ? 0 : rowNumber(strTable.substr(lngColon + 1), lngMost);
    strTable = strTable.substr(0, lngColon);
  }
  const Question* const table = findTable(post.deployment->page(), strTable);
  const std::int64_t lngCount = table == nullptr ? 0 : rowCount(*table, post.answers, lngMost);
  const bool blnKnown = table != nullptr && table->blnDynamic;
  if (!blnKnown || (!blnAdd && (lngRow < 1 || lngRow > lngCount)) ||
      (blnAdd && lngCount >= lngMost)) {
    return trouble(post.request, 422, "The row cannot be added or removed",
                   "There is no such table or row, or the table has as many rows as are taken.");
  }
  if (!blnAdd) removeRow(*table, lngRow, lngCount, post.answers);
  post.answers.insert_or_assign(inputName(table->input.strId) + "_rowCount",
                                std::to_string(blnAdd ? lngCount + 1 : lngCount - 1));
  FormView view = viewFor(post);
  // Nothing was saved: the page is still made from the version that it was made from.
  view.blnUnsaved = true;
  view.lngVersion = rowNumber(answerTo(post.answers, "_version"), INT64_MAX);
  return page(post, 200, view);
}

RunResult Application::run(const Post& post, bool blnSubmit) {
  RunResult result;
  {
    const Metrics::Timer timer(metrics_, Metrics::kRun);
    result = runForm(*post.deployment, post.answers, blnSubmit);
  }
  metrics_.countRun(counted(result.outcome));
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
  form.strRowCounts = rowCountsOf(post.deployment->page(), post.answers,
                                  static_cast<std::int64_t>(options_.lngMaxRows));
  form.strResult = Json{{"result", run.result}, {"report", run.report}}.dump(
      -1, ' ', false, Json::error_handler_t::replace);
  form.strChanged = momentText();
  if (form.strCreated.empty()) form.strCreated = form.strChanged;
  ++form.lngVersion;
  return form;
}

HttpResponse Application::parkNew(Post& post) {
  const RunResult result = run(post, false);
  if (result.outcome != RunOutcome::parked) {
    FormView view = viewFor(post);
    view.strNotice = "failed";
    view.blnUnsaved = true;
    return page(post, 500, view, &result);
  }
  StoredForm form = next(post, result, "parked");
  form.strId = randomId();
  {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    store_.create(form);
  }
  logEvent("parked", {{"form", form.strDeployment}, {"id", form.strId}, {"version", 1}});
  return redirect(post.request, "/parked/" + form.strId, form, &result);
}

HttpResponse Application::parkAgain(Post& post) {
  if (post.stored.strState == "accepted") return conflict(post);
  const std::int64_t lngFrom = rowNumber(answerTo(post.answers, "_version"), INT64_MAX);
  if (lngFrom != post.stored.lngVersion) return conflict(post);
  const RunResult result = run(post, false);
  if (result.outcome != RunOutcome::parked) {
    FormView view = viewFor(post);
    view.strNotice = "failed";
    view.blnUnsaved = true;
    return page(post, 500, view, &result);
  }
  const StoredForm form = next(post, result, "parked");
  bool blnDone = false;
  {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    blnDone = store_.replace(form);
  }
  if (!blnDone) return conflict(post);
  logEvent("parked",
           {{"form", form.strDeployment}, {"id", form.strId}, {"version", form.lngVersion}});
  return redirect(post.request, "/parked/" + form.strId, form, &result);
}

/// The form is not what the page was made from. Pressing a button twice is no conflict: what would
/// be saved is there already.
HttpResponse Application::conflict(Post& post) {
  if (auto stored = store_.find(post.stored.strId)) post.stored = *std::move(stored);
  const bool blnAccepted = post.stored.strState == "accepted";
  if (blnAccepted && post.strAction == "submit") {
    return redirect(post.request, "/messages/" + post.stored.strId, post.stored, nullptr);
  }
  Answers stored = answersIn(post.stored.strParkXml, post.stored.strRowCounts);
  if (sameAnswers(post.deployment->page(), post.answers, stored,
                  static_cast<std::int64_t>(options_.lngMaxRows)) &&
      post.strAction != "submit") {
    return redirect(post.request, "/parked/" + post.stored.strId, post.stored, nullptr);
  }
  logEvent("conflict", {{"form", post.stored.strDeployment},
                        {"id", post.stored.strId},
                        {"version", post.stored.lngVersion}});
  FormView view = viewFor(post);
  view.strNotice = blnAccepted ? "accepted" : "conflict";
  view.blnUnsaved = true;
  view.stored = std::move(stored);
  return page(post, 409, view);
}

HttpResponse Application::submit(Post& post) {
  if (post.stored.strState == "accepted") return conflict(post);
  const std::int64_t lngFrom = rowNumber(answerTo(post.answers, "_version"), INT64_MAX);
  if (lngFrom != post.stored.lngVersion) {
    const Answers stored = answersIn(post.stored.strParkXml, post.stored.strRowCounts);
    if (!sameAnswers(post.deployment->page(), post.answers, stored,
                     static_cast<std::int64_t>(options_.lngMaxRows))) {
      return conflict(post);
    }
  }
  RunResult result = run(post, true);
  if (result.outcome == RunOutcome::accepted) {
    const StoredForm form = next(post, result, "accepted");
    bool blnDone = false;
    {
      const Metrics::Timer timer(metrics_, Metrics::kStore);
      blnDone = store_.accept(form, result.strMessage, options_.strDeliver);
    }
    if (!blnDone) return conflict(post);
    logEvent("accepted",
             {{"form", form.strDeployment}, {"id", form.strId}, {"version", form.lngVersion}});
    onAccepted_();
    return redirect(post.request, "/messages/" + form.strId, form, &result);
  }
  if (result.outcome != RunOutcome::refused) return saveWithoutVerdict(post, result);

  StoredForm form = next(post, result, "refused");
  {
    const Metrics::Timer timer(metrics_, Metrics::kStore);
    if (!store_.replace(form)) return conflict(post);
  }
  logEvent("refused", {{"form", form.strDeployment},
                       {"id", form.strId},
                       {"version", form.lngVersion},
                       {"errors", result.errors.size()}});
  post.stored = std::move(form);
  FormView view = viewFor(post);
  view.errors = result.errors;
  return page(post, 422, view, &result);
}

/// Nobody knows whether the message is valid, so it is none; the answers are kept all the same.
HttpResponse Application::saveWithoutVerdict(Post& post, RunResult& result) {
  const RunResult parked = run(post, false);
  FormView view = viewFor(post);
  view.strNotice = "failed";
  if (parked.outcome == RunOutcome::parked) {
    StoredForm form = next(post, parked, "parked");
    if (!store_.replace(form)) return conflict(post);
    post.stored = std::move(form);
    view = viewFor(post);
    view.strNotice = "not-checked";
  }
  return page(post, 500, view, &result);
}

// How it is told

std::string Application::token(const std::string& strPath) const {
  return makeToken(store_.key(), strPath, millisecondsNow());
}

FormView Application::viewFor(const Post& post) const {
  const StoredForm& stored = post.stored;
  FormView view;
  view.page = &post.deployment->page();
  view.strForm = post.deployment->name();
  view.strAction =
      stored.strId.empty() ? "/forms/" + post.deployment->name() : "/parked/" + stored.strId;
  view.strId = stored.strId;
  view.strState = stored.strId.empty() ? "new" : stored.strState;
  view.strSaved = forPeople(stored.strChanged);
  view.lngVersion = stored.lngVersion;
  view.strToken = token(view.strAction);
  view.answers = post.answers;
  view.lngMostRows = static_cast<std::int64_t>(options_.lngMaxRows);
  return view;
}

HttpResponse Application::page(const Post& post, unsigned lngStatus, const FormView& view,
                               const RunResult* result) {
  if (wantsJson(post.request)) {
    StoredForm form = post.stored;
    if (form.strId.empty()) form.strDeployment = post.deployment->name();
    return text(kJson, stateJson(form, result), lngStatus);
  }
  return render(lngStatus, viewOf(view), post.deployment->stylesheet());
}

HttpResponse Application::render(unsigned lngStatus, const ViewDocument& view,
                                 const Stylesheet& stylesheet) {
  const Metrics::Timer timer(metrics_, Metrics::kRender);
  return text("text/html; charset=utf-8", stylesheet.apply(view), lngStatus);
}

HttpResponse Application::redirect(const HttpRequest& request, const std::string& strTo,
                                   const StoredForm& form, const RunResult* result) const {
  HttpResponse response{.lngStatus = 303, .strContentType = "", .strBody = "", .headers = {}};
  if (wantsJson(request)) response = text(kJson, stateJson(form, result), 303);
  response.headers.emplace_back("Location", strTo);
  return response;
}

std::string Application::stateJson(const StoredForm& form, const RunResult* result) const {
  const bool blnNew = form.strId.empty();
  Json json{{"id", blnNew ? Json(nullptr) : Json(form.strId)},
            {"state", blnNew ? "new" : form.strState},
            {"result", nullptr},
            {"report", nullptr}};
  if (result != nullptr) {
    json["result"] = result->result;
    json["report"] = result->report;
  } else if (!form.strResult.empty()) {
    const Json last = Json::parse(form.strResult, nullptr, false);
    if (last.is_object()) {
      json["result"] = last.value("result", Json());
      json["report"] = last.value("report", Json());
    }
  }
  json["version"] = form.lngVersion;
  json["token"] = token(blnNew ? "/forms/" + form.strDeployment : "/parked/" + form.strId);
  return dumped(json);
}
