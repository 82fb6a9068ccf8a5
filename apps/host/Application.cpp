#include "host/Application.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <typeinfo>

#include "Words.h"
#include "host/Embedded.h"
#include "host/FormAnswers.h"
#include "host/Log.h"
#include "host/Moment.h"
#include "host/Token.h"

using Json = nlohmann::ordered_json;

namespace {

constexpr const char* kJson = "application/json";
constexpr const char* kHtml = "text/html; charset=utf-8";
constexpr const char* kXml = "application/xml; charset=utf-8";
// A script can add rows where the limit is reached already: so many more are still shown.
constexpr std::int64_t kMoreRows = 100;
constexpr std::int64_t kUsualCells = 10'000;

/// Whether the words behind a kind say that it is not wanted: "q=0".
bool isUnwanted(std::string_view strWords) {
  const std::size_t lngQuality = strWords.find("q=0");
  return lngQuality != std::string_view::npos &&
         strWords.substr(lngQuality + 3).find_first_not_of(".0 \t") == std::string_view::npos;
}

/// Whether JSON is among the kinds that are asked for. Browsers do not name it.
bool wantsJson(const HttpRequest& request) {
  const std::string strAccept = lowerCase(request.strAccept);
  for (std::size_t at = 0; at < strAccept.size();) {
    const std::size_t end = std::min(strAccept.find(',', at), strAccept.size());
    const std::string_view strEntry = std::string_view(strAccept).substr(at, end - at);
    const std::size_t lngKind = strEntry.find_first_not_of(" \t");
    const std::size_t lngWords = std::min(strEntry.find(';'), strEntry.size());
    std::string_view strKind = strEntry.substr(0, lngWords);
    strKind.remove_prefix(std::min(lngKind, strKind.size()));
    while (strKind.ends_with(' ') || strKind.ends_with('\t')) strKind.remove_suffix(1);
    if (strKind == kJson) return !isUnwanted(strEntry.substr(lngWords));
    at = end + 1;
  }
  return false;
}

HttpResponse text(std::string_view strContentType, std::string strBody, unsigned lngStatus = 200) {
  return {.lngStatus = lngStatus,
          .strContentType = std::string(strContentType),
          .strBody = std::move(strBody)};
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

Json orNull(const std::string& strText) { return strText.empty() ? Json() : Json(strText); }

std::string forPeople(std::string strMoment) {
  // 2026-03-05T09:05:07Z as 2026-03-05 09:05 UTC
  if (strMoment.size() != 20) return strMoment;
  return strMoment.substr(0, 10) + ' ' + strMoment.substr(11, 5) + " UTC";
}

/// A target as it may be shown: what an address tells beyond its place can be a secret.
std::string placeOf(const std::string& strTarget) {
  return strTarget.starts_with("http") ? strTarget.substr(0, strTarget.find_first_of("?#"))
                                       : strTarget;
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
                                      "Nothing was saved just now, and nothing that was saved "
                                      "before is lost. Try again in a moment.");
      response.headers.emplace_back("Retry-After", kRetryAfter);
      return response;
    } catch (const std::exception& error) {
      // Its text may quote an answer; the kind says enough to begin with.
      logEvent("error", {{"reason", typeid(error).name()}});
      return trouble(request, 500, "Something went wrong",
                     "The fault is ours and has been recorded.");
    }
  } catch (...) {
    return {.lngStatus = 500, .strContentType = "text/plain"};
  }
}

void Application::logRefusal(const HttpRequest& request, unsigned lngStatus, const char* title) {
  logEvent("request-refused", {{"status", lngStatus},
                               {"method", request.strMethod.substr(0, 16)},
                               {"path", request.strPath.substr(0, 100)},
                               {"reason", title}});
}

HttpResponse Application::trouble(const HttpRequest& request, unsigned lngStatus, const char* title,
                                  std::string_view strText) const {
  logRefusal(request, lngStatus, title);
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
  if (lngStatus >= 500) keepPosted(request, view.root());
  return text(kHtml, builtIn_.apply(view), lngStatus);
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
  return render(view, builtIn_);
}

HttpResponse Application::ready(const HttpRequest& request) {
  if (blnDraining_) return trouble(request, 503, "Not ready", "The host is being stopped.");
  try {
    store_.ping();
  } catch (const StoreProblem& problem) {
    logEvent("not-ready", {{"reason", problem.what()}});
    return trouble(request, 503, "Not ready", "The store cannot be reached.");
  }
  // Deployments that do not pass their check are never served.
  return text("text/plain", "ready\n");
}

HttpResponse Application::emptyForm(const HttpRequest& request, std::string_view strName) {
  const Post post{.request = request, .deployment = deployments_.find(strName)};
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
                  .answers = std::move(answers)};
  return page(post, 200, viewFor(post));
}

HttpResponse Application::receipt(const HttpRequest& request, std::string_view strId) {
  const std::optional<StoredMessage> message = store_.message(std::string(strId));
  const std::optional<StoredForm> form = message ? store_.find(std::string(strId)) : std::nullopt;
  const Deployment deployment = form ? deployments_.find(form->strDeployment) : nullptr;
  if (deployment == nullptr) {
    return trouble(request, 404, "There is no such receipt",
                   "The form was not accepted, or the address is incomplete.");
  }
  if (wantsJson(request)) {
    Json json = stateJson(*form, nullptr);
    json["accepted"] = message->strAccepted;
    json["target"] = orNull(placeOf(message->strTarget));
    json["delivered"] = orNull(message->strDelivered);
    return text(kJson, dumped(json));
  }
  const ViewDocument view("receipt");
  view.root()
      .set("id", strId)
      .set("form", form->strDeployment)
      .set("title", deployment->page().strTitle)
      .set("lang", deployment->page().strLanguage)
      .set("accepted", forPeople(message->strAccepted))
      .set("size", std::to_string(message->strXml.size()))
      .set("target", placeOf(message->strTarget))
      .set("delivered", forPeople(message->strDelivered));
  if (!deployment->page().strReceipt.empty()) {
    view.root().add("note", deployment->page().strReceipt);
  }
  return render(view, deployment->stylesheet());
}

HttpResponse Application::document(const HttpRequest& request, std::string_view strId,
                                   bool blnMessage) {
  std::string strXml;
  auto form = store_.find(std::string(strId));
  // What this host does not serve it does not show, as with the pages.
  if (form && deployments_.find(form->strDeployment) != nullptr) {
    if (!blnMessage) {
      strXml = std::move(form->strParkXml);
    } else if (auto message = store_.message(std::string(strId))) {
      strXml = std::move(message->strXml);
    }
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

// How it is told

std::string Application::token(const std::string& strPath) const {
  return makeToken(store_.key(), strPath, millisecondsNow());
}

std::int64_t Application::mostRowsShown() const { return mostRows() + kMoreRows; }

/// The bound is for tables together: unless it was given, one alone may have all its rows.
std::int64_t Application::mostCells(const PageModel& page) const {
  if (options_.lngMaxCells) return static_cast<std::int64_t>(*options_.lngMaxCells);
  return std::max(kUsualCells, mostRows() * mostColumns(page));
}

FormView Application::viewFor(const Post& post) const {
  const StoredForm& stored = post.stored;
  FormView view;
  view.page = &post.deployment->page();
  view.strAction =
      stored.strId.empty() ? "/forms/" + post.deployment->name() : "/parked/" + stored.strId;
  view.strId = stored.strId;
  view.strState = stored.strId.empty() ? "new" : stored.strState;
  view.strSaved = forPeople(stored.strChanged);
  view.lngVersion = stored.lngVersion;
  view.strToken = token(view.strAction);
  view.answers = &post.answers;
  view.lngMostRows = mostRowsShown();
  // One that was accepted is not sent again, so nothing has to be typed again.
  if (stored.strState != "accepted" && hasUnreadable(post.answers)) view.strNotice = "characters";
  return view;
}

HttpResponse Application::page(const Post& post, unsigned lngStatus, const FormView& view,
                               const RunResult* result) {
  if (wantsJson(post.request)) {
    StoredForm form = post.stored;
    if (form.strId.empty()) form.strDeployment = post.deployment->name();
    // Who posts again with this version overwrites nothing that was not looked at.
    if (view.blnUnsaved) form.lngVersion = postedVersion(post.answers);
    return text(kJson, dumped(stateJson(form, result, view.strNotice)), lngStatus);
  }
  const Metrics::Timer timer(metrics_, Metrics::kRender);
  return text(kHtml, post.deployment->pageOf(view), lngStatus);
}

HttpResponse Application::render(const ViewDocument& view, const Stylesheet& stylesheet) {
  const Metrics::Timer timer(metrics_, Metrics::kRender);
  return text(kHtml, stylesheet.apply(view));
}

HttpResponse Application::redirect(const Post& post, const std::string& strTo,
                                   const StoredForm& form, const RunResult* result) const {
  HttpResponse response{.lngStatus = 303};
  if (wantsJson(post.request)) {
    response = text(kJson, dumped(stateJson(form, result)), 303);
  }
  response.headers.emplace_back("Location", strTo);
  return response;
}

Json Application::stateJson(const StoredForm& form, const RunResult* result,
                            const std::string& strError) const {
  const bool blnNew = form.strId.empty();
  Json json{{"id", blnNew ? Json(nullptr) : Json(form.strId)},
            {"state", blnNew ? "new" : form.strState},
            {"result", nullptr},
            {"report", nullptr}};
  const std::string& strLast = result != nullptr ? result->strJson : form.strResult;
  Json last = Json::parse(strLast, nullptr, false);
  if (last.is_object()) {
    json["report"] = last.value("report", Json());
    last.erase("report");
    json["result"] = std::move(last);
  }
  if (!strError.empty()) json["error"] = strError;
  json["version"] = form.lngVersion;
  json["token"] = token(blnNew ? "/forms/" + form.strDeployment : "/parked/" + form.strId);
  return json;
}
