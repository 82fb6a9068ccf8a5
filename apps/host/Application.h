#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "host/Deployments.h"
#include "host/FormView.h"
#include "host/HostOptions.h"
#include "host/Http.h"
#include "host/Metrics.h"
#include "host/RunForm.h"
#include "host/Store.h"

/// What the host does with a request: pages, parking, submitting, receipts. It keeps nothing
/// between two requests. Several threads may call it at the same time.
class Application {
 public:
  /// `onAccepted` is called after a message was put into the outbox. What is given must outlive the
  /// application.
  Application(const HostOptions& options, Store& store, Deployments& deployments, Metrics& metrics,
              std::function<void()> onAccepted);

  /// Never throws: what goes wrong is an answer too.
  HttpResponse answer(const HttpRequest& request) noexcept;

  /// An answer without a page of its own, in the form that the request wants. When it is the host
  /// that could not do what a form asked, its page holds what was posted, to be sent once more.
  HttpResponse trouble(const HttpRequest& request, unsigned lngStatus, const char* title,
                       std::string_view strText) const;

  /// From now on the host is not ready for requests.
  void drain() { blnDraining_ = true; }

 private:
  using Deployment = std::shared_ptr<const FormDeployment>;

  /// One post of a form while it is worked on.
  struct Post {
    const HttpRequest& request;
    Deployment deployment = {};
    StoredForm stored = {};  // without an id: not parked yet
    Answers answers = {};
    std::string strAction = {};
  };

  HttpResponse route(const HttpRequest& request);
  HttpResponse home(const HttpRequest& request);
  HttpResponse ready(const HttpRequest& request);
  HttpResponse emptyForm(const HttpRequest& request, std::string_view strName);
  HttpResponse parkedForm(const HttpRequest& request, std::string_view strId);
  HttpResponse receipt(const HttpRequest& request, std::string_view strId);
  HttpResponse document(const HttpRequest& request, std::string_view strId, bool blnMessage);

  HttpResponse post(const HttpRequest& request, std::string_view strName, std::string_view strId);
  static bool hasTableBeyond(const Post& post, std::int64_t lngRows);
  bool isTooLarge(const Post& post) const;
  HttpResponse act(Post& post);
  HttpResponse changeRows(Post& post);
  HttpResponse parkNew(Post& post);
  HttpResponse parkAgain(Post& post);
  HttpResponse submit(Post& post);
  HttpResponse saveWithoutVerdict(Post& post, const RunResult& run);
  HttpResponse asTyped(const Post& post, unsigned lngStatus, const char* notice,
                       const RunResult* run = nullptr);
  HttpResponse conflict(Post& post);
  bool save(const Post& post, StoredForm& form, const std::function<bool()>& attempt);
  bool replace(const Post& post, StoredForm& form);
  static void takeSaved(Post& post, StoredForm form, const RunResult& run);

  /// The answer to a request whose body or origin is not acceptable; none for a good one.
  std::optional<HttpResponse> refusal(const HttpRequest& request) const;
  HttpResponse tooLarge(const HttpRequest& request) const;
  void keepPosted(const HttpRequest& request, const ViewElement& trouble) const;
  RunResult run(const Post& post, bool blnSubmit);
  void logWhatNobodyMends(const Post& post,
                          const Varnel_Tolv_XML_Creation::RunReport& report) const;
  StoredForm next(const Post& post, const RunResult& run, const char* state) const;
  FormView viewFor(const Post& post) const;
  HttpResponse page(const Post& post, unsigned lngStatus, const FormView& view,
                    const RunResult* run = nullptr);
  HttpResponse render(const ViewDocument& view, const Stylesheet& stylesheet);
  HttpResponse redirect(const Post& post, const std::string& strTo, const StoredForm& form,
                        const RunResult* run) const;
  static void logRefusal(const HttpRequest& request, unsigned lngStatus, const char* title);
  std::string token(const std::string& strPath) const;
  std::int64_t mostRows() const { return static_cast<std::int64_t>(options_.lngMaxRows); }
  std::int64_t mostCells(const PageModel& page) const;
  std::int64_t mostRowsShown() const;
  nlohmann::ordered_json stateJson(const StoredForm& form, const RunResult* run,
                                   const std::string& strError = "") const;

  const HostOptions& options_;
  Store& store_;
  Deployments& deployments_;
  Metrics& metrics_;
  std::function<void()> onAccepted_;
  Stylesheet builtIn_;
  std::atomic<bool> blnDraining_ = false;
};
