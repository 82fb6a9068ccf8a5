#include <unistd.h>

#include <charconv>
#include <chrono>
#include <exception>
#include <nlohmann/json.hpp>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "CannotRun.h"
#include "Commands.h"
#include "EndSignals.h"
#include "Files.h"
#include "JsonProblem.h"
#include "LineQueue.h"
#include "LineReader.h"
#include "Options.h"
#include "ParkedForm.h"
#include "Submission.h"

using namespace Varnel_Tolv_XML_Creation;
using Json = nlohmann::ordered_json;

namespace {

constexpr std::size_t kMostThreads = 256;
constexpr std::size_t kLinesPerThread =
    8;  // read ahead, so that one slow line keeps nobody waiting
constexpr std::size_t kMostBytes = std::size_t{256} << 20;

std::size_t threadCount(const OptionValues& values) {
  const auto found = values.find("threads");
  if (found == values.end()) return 1;
  const std::string& strCount = found->second;
  std::size_t lngCount = 0;
  const char* const end = strCount.data() + strCount.size();
  const auto [last, problem] = std::from_chars(strCount.data(), end, lngCount);
  if (problem != std::errc() || last != end || lngCount < 1 || lngCount > kMostThreads) {
    throw CannotRun("--threads: \"" + strCount + "\" is no number from 1 to " +
                    std::to_string(kMostThreads));
  }
  return lngCount;
}

/// One submission as a line asks for it.
struct BatchLine {
  std::optional<std::string> id;
  std::optional<std::string> form;
  std::optional<std::string> park;
};

/// What is wrong with a line, for the line that is written in its place.
class BadLine : public CannotRun {
 public:
  using CannotRun::CannotRun;
};

/// The value of a key; none when it is missing. The `id` is read before anything else can be wrong,
/// so that the answer to a bad line bears it.
std::optional<std::string> textOf(const nlohmann::json& line, const char* key) {
  const auto found = line.find(key);
  if (found == line.end()) return std::nullopt;
  if (!found->is_string()) throw BadLine('"' + std::string(key) + "\" is no text");
  return found->get<std::string>();
}

/// `request` keeps what was read before something was wrong.
void readRequest(const InputLine& line, BatchLine& request) {
  if (line.blnTooLong) {
    throw BadLine("the line is longer than " + std::to_string(LineReader::kMaxBytes) + " bytes");
  }
  // What stands inside other values is left out while it is read, however deep it goes.
  using Event = nlohmann::json::parse_event_t;
  const auto isKept = [](int lngDepth, Event event, const nlohmann::json&) {
    if (event == Event::object_start) return lngDepth == 0;
    return event != Event::array_start;
  };
  nlohmann::json object;
  try {
    object = nlohmann::json::parse(line.strText, isKept);
  } catch (const nlohmann::json::exception& error) {
    throw BadLine(jsonProblem(error, line.strText));
  }
  if (!object.is_object()) throw BadLine("the line is no JSON object");
  request.id = textOf(object, "id");
  if (!request.id) throw BadLine("\"id\" is missing");
  request.form = textOf(object, "form");
  request.park = textOf(object, "park");
  if (!request.form && !request.park) throw BadLine("neither \"form\" nor \"park\" is there");
  if (request.form && request.park) throw BadLine("both \"form\" and \"park\" are there");
}

bool holdsNothing(const InputLine& line) {
  return !line.blnTooLong && line.strText.find_first_not_of(" \t\r") == std::string::npos;
}

/// What the threads share; nothing of it changes.
class Batch {
 public:
  explicit Batch(OptionValues values)
      : options_(readOptions(std::move(values))), parkedForm_(readParkedForm(options_)) {
    // What is wrong with these is wrong with every line: better told at once.
    static_cast<void>(loaded("--protocol-info", options_.protocolInfo));
  }

  OutputLine run(const InputLine& line) {
    BatchLine request;
    try {
      readRequest(line, request);
      return run(request);
    } catch (const std::exception& error) {
      Json answer{{"id", request.id ? Json(*request.id) : Json(nullptr)},
                  {"error", error.what()},
                  {"line", line.lngNumber}};
      return {.strText = asLine(answer), .status = kFailed};
    }
  }

 private:
  static ParkedForm readParkedForm(const Options& options) {
    const Document objHiddenFields = Document::create();
    // Whatever is wrong with the list is told by the library, in the result of each line.
    static_cast<void>(objHiddenFields.load(options.strHiddenFieldXML));
    return {loaded("--object-list", options.objectList), objHiddenFields};
  }

  OutputLine run(const BatchLine& request) {
    const Document objStored = Document::create();
    if (request.park && !objStored.loadXML(*request.park)) {
      // The parser's own words can quote the form.
      const int lngLine = objStored.parseError().line;
      throw BadLine("\"park\": it is no well-formed XML" +
                    (lngLine > 0 ? ", seen in its line " + std::to_string(lngLine) : ""));
    }
    const FormCollection form =
        request.park ? parkedForm_.submission(objStored) : FormCollection(*request.form);
    const SubmissionOutputs run = runSubmission(options_, form, {.cache = &cache_});
    Json answer{{"id", *request.id},
                {"result", Json::parse(resultOf(options_, run))},
                {"park", run.objParkXML ? Json(run.objParkXML.xml()) : Json(nullptr)},
                {"send", run.objSendXML ? Json(run.objSendXML.xml()) : Json(nullptr)}};
    if (request.park) addMissing(answersMissing(objStored, run.objParkXML), answer);
    return {.strText = asLine(answer), .status = statusOf(options_, run)};
  }

  static void addMissing(const std::vector<StoredAnswer>& missing, Json& answer) {
    if (missing.empty()) return;
    Json list = Json::array();
    for (const StoredAnswer& one : missing) {
      list.push_back({{"questionId", one.strQuestion},
                      {"rowIndex", one.strRow},
                      {"columnId", one.strColumn},
                      {"value", one.strValue}});
    }
    answer["missing"] = std::move(list);
  }

  static std::string asLine(const Json& answer) {
    return answer.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
  }

  const Options options_;
  const ParkedForm parkedForm_;
  FileCache cache_;
};

/// How far the work is, on standard error when that is a terminal: one line, written over itself at
/// most twice a second.
class Progress {
 public:
  ~Progress() {
    if (blnShown_) static_cast<void>(::write(STDERR_FILENO, "\n", 1) + 0);
  }
  void add(ExitStatus status) {
    ++lngLines_;
    if (status == kFailed) ++lngFailed_;
    if (status == kReportedOtherwise) blnRefused_ = true;
    const auto now = std::chrono::steady_clock::now();
    if (!blnTerminal_ || (blnShown_ && now - shown_ < std::chrono::milliseconds(500))) return;
    show();
    shown_ = now;
  }
  void end() {
    if (blnTerminal_ && lngLines_ > 0) show();
  }
  /// The worst of all lines.
  ExitStatus status() const {
    if (lngFailed_ > 0) return kFailed;
    return blnRefused_ ? kReportedOtherwise : kSucceeded;
  }

 private:
  void show() {
    blnShown_ = true;
    writeStandardError("\rvarnel-xml: " + std::to_string(lngLines_) + " done, " +
                       std::to_string(lngFailed_) + " failed");
  }

  const bool blnTerminal_ = ::isatty(STDERR_FILENO) == 1;
  bool blnShown_ = false;
  std::chrono::steady_clock::time_point shown_;
  std::size_t lngLines_ = 0;
  std::size_t lngFailed_ = 0;
  bool blnRefused_ = false;
};

/// The threads of a batch. They end when the last line is done, or at once when the work is given
/// up.
class Crew {
 public:
  Crew(Batch& batch, std::size_t lngThreads, const EndSignals& signals)
      : signals_(signals), queue_(lngThreads * kLinesPerThread, kMostBytes) {
    for (std::size_t at = 0; at < lngThreads; ++at) {
      threads_.emplace_back([this, &batch] {
        while (std::optional<LineQueue::Task> task = queue_.take()) {
          queue_.finish(task->lngPlace, batch.run(task->line));
        }
      });
    }
    threads_.emplace_back([this] { read(); });
  }
  ~Crew() {
    queue_.stop();
    signals_.ask();  // the reader may be waiting for input
  }
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  std::optional<OutputLine> next() { return queue_.nextFinished(); }

  /// Raises what ended the reading. After the last line only.
  void rethrow() const {
    if (problem_) std::rethrow_exception(problem_);
  }

 private:
  void read() noexcept {
    try {
      LineReader reader(signals_.descriptor());
      while (std::optional<InputLine> line = reader.next()) {
        if (!holdsNothing(*line) && !queue_.put(std::move(*line))) break;
      }
    } catch (...) {
      problem_ = std::current_exception();
    }
    queue_.close();
  }

  const EndSignals& signals_;
  LineQueue queue_;
  std::exception_ptr problem_;         // written before the queue is closed, read after
  std::vector<std::jthread> threads_;  // the last member: the first to go
};

}  // namespace

ExitStatus runBatch(OptionValues values, const std::vector<std::string>& /*operands*/) {
  const std::size_t lngThreads = threadCount(values);
  Batch batch(std::move(values));
  const EndSignals signals;
  Progress progress;
  {
    Crew crew(batch, lngThreads, signals);
    while (const std::optional<OutputLine> line = crew.next()) {
      writeStandardOutput(line->strText);
      progress.add(line->status);
    }
    crew.rethrow();
  }
  progress.end();
  signals.endIfAsked();
  return progress.status();
}
