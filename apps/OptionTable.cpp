#include "OptionTable.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* kArguments = "The library's arguments";
constexpr const char* kHost = "The web page that calls it";
constexpr const char* kOutputs = "What is written";

constexpr auto kOptions = std::to_array<OptionRow>({
    {"template", OptionKind::file, "FILE", kArguments, "the message before any answer"},
    {"object-mapper", OptionKind::file, "FILE", kArguments, "where in the message answers go"},
    {"schema-types", OptionKind::file, "FILE", kArguments, "models of structured elements"},
    {"hidden-fields", OptionKind::file, "FILE", kArguments, "the list of hidden fields"},
    {"namespaces", OptionKind::file, "FILE", kArguments, "the namespaces and their prefixes"},
    {"questions", OptionKind::file, "FILE", kArguments, "the message path of each question"},
    {"reference", OptionKind::file, "FILE", kArguments, "which message elements are mandatory"},
    {"submit", OptionKind::flag, "", kArguments, "build the message too"},
    {"validate", OptionKind::flag, "", kArguments, "ask for the schema's verdict on the message"},
    {"object-list", OptionKind::file, "FILE", kArguments, "the form's objects, to be filled"},
    {"protocol-info", OptionKind::file, "FILE", kArguments,
     "its document element tells the form's name, region and version"},
    {"schema-url", OptionKind::text, "URL", kArguments,
     "the schema, relative to the directory above the page's"},
    {"schema-uri", OptionKind::text, "URI", kArguments, "the schema's target namespace"},

    {"form", OptionKind::file, "FILE", kHost,
     "the submitted form, URL-encoded; - is standard input (default: an empty form)"},
    {"page-dir", OptionKind::file, "DIR", kHost,
     "the calling page's directory (default: the current directory)"},
    {"no-context", OptionKind::flag, "", kHost, "run as if outside a web request"},
    {"no-server", OptionKind::flag, "", kHost, "leave the item \"Server\" out of the context"},
    {"date-order", OptionKind::text, "dmy|mdy|ymd", kHost,
     "how all-numeric dates are read (default: dmy)"},
    {"now", OptionKind::text, "YYYY-MM-DDTHH:MM:SS", kHost,
     "a fixed local date and time (default: the clock's)"},
    {"deployment", OptionKind::commandLineOnly, "DIR", kHost,
     "read the options above from DIR/deployment.json; one given here wins"},

    {"park-out", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the parked form, if --object-list is given"},
    {"send-out", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the message, when the run made one"},
    {"result", OptionKind::commandLineOnly, "FILE", kOutputs,
     "the result as JSON (default: standard output)"},
    {"trace", OptionKind::commandLineOnly, "FILE", kOutputs,
     "every trace line, what people answered included; - is standard error"},
});

}  // namespace

std::span<const OptionRow> optionTable() { return kOptions; }

const OptionRow* findOption(std::string_view name) {
  const auto* const row = std::ranges::find(kOptions, name, &OptionRow::name);
  return row == kOptions.end() ? nullptr : row;
}
