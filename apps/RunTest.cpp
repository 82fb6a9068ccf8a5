#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>

#include "CannotRun.h"
#include "Commands.h"
#include "CompareResult.h"
#include "CompareXml.h"
#include "Files.h"
#include "OptionFiles.h"
#include "Options.h"
#include "OutputFile.h"
#include "Submission.h"
#include "TerminalText.h"
#include "TraceText.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostShown = 100;  // differences of one folder

enum class Kind { xml, result, trace };

/// A file of a folder that says what is expected.
struct ExpectedFile {
  const char* name;
  Kind kind;
};

// The trace is long: it is compared and written anew only where it is there.
constexpr ExpectedFile kFiles[] = {{"park.xml", Kind::xml},
                                   {"send.xml", Kind::xml},
                                   {"result.json", Kind::result},
                                   {"trace.txt", Kind::trace}};

bool isThere(const char* name) {
  std::error_code none;  // what cannot be looked at is not there
  return fs::exists(name, none);
}

/// Whose answer the elements of the message are: by the journal of the run, and for elements that
/// the message does not have by the path that the questions, or the same elements elsewhere, have.
class Answered {
 public:
  Answered() = default;
  Answered(const RunReport& report, const std::string& strQuestionsXmlPath) {
    for (const JournalEntry& entry : report.journal) {
      const std::string strPlace = namedPlace(entry.questionId, entry.rowIndex, entry.columnId);
      for (const std::string& strPath : entry.places) {
        exact_.emplace(strPath, strPlace);
        note(withoutPositions(strPath), namedPlace(entry.questionId, "", entry.columnId));
      }
    }
    const Document objQuestions = Document::create();
    if (strQuestionsXmlPath.empty() || !objQuestions.load(strQuestionsXmlPath)) return;
    const std::optional<NodeList> colPaths = objQuestions.selectNodes("/questions/question/xpath");
    for (const Node& objPath : *colPaths) {
      const Node objQuestion = objPath.parentNode();
      const std::string strId = objQuestion.getAttribute("id").value_or("");
      note(objPath.text(), namedPlace(strId, "", ""));
      const std::optional<NodeList> colColumns = objQuestion.selectNodes("column/path");
      for (const Node& objColumn : *colColumns) {
        note(objPath.text() + '/' + objColumn.text(),
             namedPlace(strId, "", objColumn.parentNode().getAttribute("id").value_or("")));
      }
    }
  }

  /// Empty for an element that is nobody's.
  std::string at(const std::string& strPath) const {
    if (const auto found = exact_.find(strPath); found != exact_.end()) return found->second;
    const auto found = anywhere_.find(withoutPositions(strPath));
    return found == anywhere_.end() ? "" : found->second;
  }

 private:
  void note(const std::string& strPath, const std::string& strPlace) {
    const auto [known, blnNew] = anywhere_.emplace(strPath, strPlace);
    if (!blnNew && known->second != strPlace) known->second.clear();  // several questions'
  }

  static std::string withoutPositions(const std::string& strPath) {
    std::string strPlain;
    bool blnPosition = false;
    for (const char letter : strPath) {
      if (letter == '[') blnPosition = true;
      if (!blnPosition) strPlain += letter;
      if (letter == ']') blnPosition = false;
    }
    return strPlain;
  }

  std::map<std::string, std::string> exact_;
  std::map<std::string, std::string> anywhere_;
};

std::string shown(const std::optional<std::string>& value) {
  return value ? quotedValue(*value) : "nothing";
}

std::string described(const XmlDifference& difference, const Answered& answered) {
  std::string strWhere =
      namedPlace(difference.strQuestion, difference.strRow, difference.strColumn);
  const bool blnMarked = !strWhere.empty();
  if (!blnMarked) {
    strWhere = answered.at(difference.strPath);
    strWhere += strWhere.empty() ? difference.strPath : " (" + difference.strPath + ')';
  }
  // The value of a marked element is the answer itself.
  const bool blnAnswer = blnMarked && difference.strWhat == "@value";
  if (!difference.strWhat.empty() && difference.strWhat != "#text" && !blnAnswer) {
    strWhere += ", " + difference.strWhat;
  }
  return strWhere + ": expected " + shown(difference.expected) + ", got " +
         shown(difference.actual);
}

/// The submission of one folder, which is the current directory.
class Case {
 public:
  explicit Case(bool blnExact) : blnExact_(blnExact) {}

  /// Runs it. Raises CannotRun.
  void run();
  /// In what it is not as expected.
  std::vector<std::string> differences() const;
  /// Writes what came out: to the files that are there, or to all when there are none.
  void update() const;

 private:
  /// What came out for a file; none when that is not made.
  std::optional<std::string> outputOf(const ExpectedFile& file) const;
  void compare(const ExpectedFile& file, std::vector<std::string>& lines) const;
  static Document parsed(const ExpectedFile& file, const std::string& strText);

  const bool blnExact_;
  Options options_;
  SubmissionOutputs outputs_;
  TraceText trace_;
};

void Case::run() {
  options_ = readOptions(readSubmission("."));
  const FormCollection request(readForm(options_.form));
  TraceSink* const sink = isThere("trace.txt") ? &trace_ : nullptr;
  outputs_ = runSubmission(options_, request, {.traceSink = sink, .blnJournal = true});
}

std::optional<std::string> Case::outputOf(const ExpectedFile& file) const {
  switch (file.kind) {
    case Kind::result:
      return resultOf(options_, outputs_);
    case Kind::trace:
      return trace_.text();
    default:
      break;
  }
  const Document& objXml =
      std::string_view(file.name) == "park.xml" ? outputs_.objParkXML : outputs_.objSendXML;
  if (!objXml) return std::nullopt;
  return objXml.xml();
}

Document Case::parsed(const ExpectedFile& file, const std::string& strText) {
  const Document objXml = Document::create();
  if (objXml.loadXML(strText)) return objXml;
  throw CannotRun(std::string(file.name) + ": " + describe(objXml.parseError()));
}

std::string firstDifferentLine(const std::string& strExpected, const std::string& strActual) {
  std::size_t lngLine = 1;
  std::size_t lngBegin = 0;
  for (std::size_t at = 0; at < strExpected.size() && at < strActual.size(); ++at) {
    if (strExpected[at] != strActual[at]) break;
    if (strExpected[at] == '\n') {
      ++lngLine;
      lngBegin = at + 1;
    }
  }
  const auto lineOf = [&](const std::string& strText) {
    if (lngBegin >= strText.size()) return std::string("nothing");
    return quotedValue(std::string_view(strText).substr(
        lngBegin, std::min(strText.find('\n', lngBegin), strText.size()) - lngBegin));
  };
  return "line " + std::to_string(lngLine) + ": expected " + lineOf(strExpected) + ", got " +
         lineOf(strActual);
}

void Case::compare(const ExpectedFile& file, std::vector<std::string>& lines) const {
  const std::string strExpected = readFile("", file.name);
  const std::optional<std::string> actual = outputOf(file);
  if (actual.value_or("") == strExpected) return;
  const std::string strName = std::string(file.name) + ": ";
  if (strExpected.empty() || !actual) {
    lines.push_back(strName + (actual ? "expected none, got one" : "expected one, got none"));
    return;
  }
  const std::size_t lngBefore = lines.size();
  switch (file.kind) {
    case Kind::xml: {
      const bool blnMessage = std::string_view(file.name) == "send.xml";
      const Answered answered =
          blnMessage ? Answered(outputs_.report, options_.strQuestionsXmlPath) : Answered();
      for (const XmlDifference& difference :
           compareXml(parsed(file, strExpected), parsed(file, *actual))) {
        lines.push_back(strName + described(difference, answered));
      }
      break;
    }
    case Kind::result:
      for (const std::string& strLine : compareResult(file.name, strExpected, *actual)) {
        lines.push_back(strName + strLine);
      }
      break;
    case Kind::trace:
      lines.push_back(strName + firstDifferentLine(strExpected, *actual));
      break;
  }
  if (blnExact_ && lines.size() == lngBefore) {
    lines.push_back(strName +
                    "the same, written otherwise: " + firstDifferentLine(strExpected, *actual));
  }
}

std::vector<std::string> Case::differences() const {
  std::vector<std::string> lines;
  bool blnAny = false;
  for (const ExpectedFile& file : kFiles) {
    if (!isThere(file.name)) continue;
    blnAny = true;
    compare(file, lines);
  }
  if (!blnAny)
    lines.emplace_back(
        "nothing is expected: no park.xml, send.xml or result.json, which --update writes");
  return lines;
}

void Case::update() const {
  const bool blnAny =
      std::ranges::any_of(kFiles, [](const ExpectedFile& file) { return isThere(file.name); });
  for (const ExpectedFile& file : kFiles) {
    const std::optional<std::string> actual = outputOf(file);
    if (blnAny ? !isThere(file.name) : !actual || file.kind == Kind::trace) continue;
    const std::string strText = actual.value_or("");
    // What is as it was keeps its time, so that nothing is made anew because of it.
    if (isThere(file.name) && readFile("", file.name) == strText) continue;
    OutputFile output("", file.name);
    output.write(strText);
    output.putInPlace();
  }
}

/// What is told about a folder.
struct Outcome {
  bool blnCouldRun = true;
  std::vector<std::string> lines;
};

Outcome runCase(bool blnUpdate, bool blnExact) {
  try {
    Case one(blnExact);
    one.run();
    if (blnUpdate) one.update();
    return {.lines = one.differences()};
  } catch (const std::exception& error) {
    return {.blnCouldRun = false, .lines = {error.what()}};
  }
}

}  // namespace

ExitStatus runTest(OptionValues values, const std::vector<std::string>& folders) {
  const bool blnUpdate = isSet(values, "update");
  const bool blnExact = isSet(values, "exact");
  const fs::path home = fs::current_path();
  std::size_t lngDifferent = 0;
  std::size_t lngNotRun = 0;
  std::string strAll, strDifferent;  // what is told of all folders, and of the different ones
  for (const std::string& strFolder : folders) {
    // The folder is the current directory of its run, so that the paths in texts and traces are the
    // same wherever it stands.
    std::error_code error;
    fs::current_path(home / strFolder, error);
    const Outcome outcome = error ? Outcome{.blnCouldRun = false, .lines = {error.message()}}
                                  : runCase(blnUpdate, blnExact);
    fs::current_path(home);
    if (!outcome.blnCouldRun) {
      ++lngNotRun;
      writeStandardError(oneLine("varnel-xml: " + strFolder + ": " + outcome.lines.front(), " ") +
                         '\n');
      continue;
    }
    std::string strText =
        withoutControls((outcome.lines.empty() ? "ok    " : "DIFF  ") + strFolder) + '\n';
    for (std::size_t at = 0; at < outcome.lines.size() && at < kMostShown; ++at) {
      strText += "      " + withoutControls(outcome.lines[at]) + '\n';
    }
    if (outcome.lines.size() > kMostShown) {
      strText += "      and " + std::to_string(outcome.lines.size() - kMostShown) + " more\n";
    }
    strAll += strText;
    if (outcome.lines.empty()) continue;
    ++lngDifferent;
    strDifferent += strText;
  }
  // Status 2 says that standard output is empty. What was found all the same is not kept back.
  if (lngNotRun > 0) {
    writeStandardError(strDifferent);
    return kCouldNotRun;
  }
  writeStandardOutput(strAll + std::to_string(folders.size()) + " submissions, " +
                      std::to_string(lngDifferent) + " different, 0 not run\n");
  return lngDifferent > 0 ? kFailed : kSucceeded;
}
