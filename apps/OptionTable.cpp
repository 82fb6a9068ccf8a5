#include "OptionTable.h"

#include <algorithm>
#include <array>

#include "CatalogueFiles.h"

namespace {

constexpr const char* kArguments = "The library's arguments";
constexpr const char* kHost = "The web page that calls it";
constexpr const char* kOutputs = "What is written";
constexpr const char* kExpected = "What is expected";

// The sub-commands that take a deployment, and those of them that take a form.
constexpr unsigned kEach = kBuild | kCheck | kBatch | kExplain | kProve | kDocument;
constexpr unsigned kOneForm = kBuild | kExplain | kProve;
constexpr unsigned kRuns = kBuild | kBatch;  // and tell what came out

constexpr auto kOptions = std::to_array<OptionRow>({
    {"template", OptionKind::file, "FILE", kArguments, "the message before any answer", kEach},
    {"object-mapper", OptionKind::file, "FILE", kArguments, "where in the message answers go",
     kEach},
    {"schema-types", OptionKind::file, "FILE", kArguments, "models of structured elements", kEach},
    {"hidden-fields", OptionKind::file, "FILE", kArguments, "the list of hidden fields", kEach},
    {"namespaces", OptionKind::file, "FILE", kArguments, "the namespaces and their prefixes",
     kEach},
    {"questions", OptionKind::file, "FILE", kArguments, "the message path of each question", kEach},
    {"reference", OptionKind::file, "FILE", kArguments, "which message elements are mandatory",
     kEach},
    {"submit", OptionKind::flag, "", kArguments, "build the message too", kEach},
    {"validate", OptionKind::flag, "", kArguments, "ask for the schema's verdict on the message",
     kEach},
    {"object-list", OptionKind::file, "FILE", kArguments, "the form's objects, to be filled",
     kEach},
    {"protocol-info", OptionKind::file, "FILE", kArguments,
     "its document element tells the form's name, region and version", kEach},
    {"schema-url", OptionKind::text, "URL", kArguments,
     "the schema, relative to the directory above the page's", kEach},
    {"schema-uri", OptionKind::text, "URI", kArguments, "the schema's target namespace", kEach},

    {"form", OptionKind::file, "FILE", kHost,
     "the submitted form, URL-encoded; - is standard input (default: an empty form)", kOneForm},
    {"page-dir", OptionKind::file, "DIR", kHost,
     "the calling page's directory (default: the current directory)", kEach},
    {"no-context", OptionKind::flag, "", kHost, "run as if outside a web request", kEach},
    {"no-server", OptionKind::flag, "", kHost, "leave the item \"Server\" out of the context",
     kEach},
    {"date-order", OptionKind::text, "dmy|mdy|ymd", kHost,
     "how all-numeric dates are read (default: dmy)", kEach},
    {"now", OptionKind::text, "YYYY-MM-DDTHH:MM:SS", kHost,
     "a fixed local date and time (default: the clock's)", kEach},
    {"deployment", OptionKind::commandLineOnly, "DIR", kHost,
     "read the options above from DIR/deployment.json; one given here wins", kEach},

    {"threads", OptionKind::commandLineOnly, "N", kHost,
     "how many submissions run at the same time (default: 1)", kBatch},

    {"park-out", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the parked form, if --object-list is given", kBuild},
    {"send-out", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the message, when the run made one", kBuild},
    {"result", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the result as JSON (default: standard output)", kBuild},
    {"format", OptionKind::commandLineOnly, "text|json|html|markdown", kOutputs,
     "how it is written: findings as text or json; an explanation or a proof as text, json or "
     "html; a data dictionary as html or markdown (default: the first of them)",
     kCheck | kExplain | kProve | kDocument},
    {"hints", OptionKind::commandLineFlag, "", kOutputs,
     "tell below each finding what to do, as at a terminal, also in a file", kCheck},
    {"trace", OptionKind::commandLineOnly, "FILE", kOutputs,
     "every trace line; it holds personal data, all that people answered; control characters and "
     "line ends inside a line are written as \\n, \\r, \\x1b; - is standard error",
     kBuild},
    {"report", OptionKind::commandLineFlag, "", kOutputs,
     "tell in the result what really happened: the exact verdict, every violation, every loss",
     kRuns},
    {"explain", OptionKind::commandLineFlag, "", kOutputs,
     "tell too what became of each answer; implies --report", kRuns},
    {"language", OptionKind::text, "", kOutputs,
     "add texts in this language to the report, for people at the form", kRuns},
    {"strict", OptionKind::commandLineFlag, "", kOutputs,
     "end with status 3 when the run succeeded and its report shows otherwise", kRuns},

    {"update", OptionKind::commandLineFlag, "", kExpected,
     "write what came out, in the place of what was expected", kTest},
    {"exact", OptionKind::commandLineFlag, "", kExpected,
     "the files are to be the same byte by byte", kTest},
});

}  // namespace

std::span<const OptionRow> optionTable() { return kOptions; }

const OptionRow* findOption(std::string_view name) {
  const auto* const row = std::ranges::find(kOptions, name, &OptionRow::name);
  return row == kOptions.end() ? nullptr : row;
}

std::optional<std::string> valueOf(const OptionValues& values, std::string_view name) {
  const auto found = values.find(name);
  if (found == values.end()) return std::nullopt;
  return found->second;
}

bool isSet(const OptionValues& values, std::string_view name) {
  return valueOf(values, name).value_or("false") == "true";
}

std::string placeholderOf(const OptionRow& row) {
  if (*row.placeholder != '\0' || isFlag(row.kind)) return row.placeholder;
  std::string strLanguages = "en";  // in which the texts are written first
  for (const CatalogueFile& file : catalogueFiles()) {
    if (file.strLanguage != "en") strLanguages.append("|").append(file.strLanguage);
  }
  return strLanguages;
}
