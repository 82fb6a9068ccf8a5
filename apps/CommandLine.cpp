#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <string_view>
#include <utility>

#include "CannotRun.h"

namespace {

constexpr const char* kVersion = "varnel-xml " VARNEL_VERSION;

/// `--name=` as two words: the parser would take the word after it for the missing value.
std::vector<std::string> withEmptyValuesApart(std::vector<std::string> words) {
  std::vector<std::string> apart;
  for (std::string& word : words) {
    const bool isOption = word.size() > 3 && word.starts_with("--") && word.ends_with('=') &&
                          findOption(word.substr(2, word.size() - 3)) != nullptr;
    if (isOption) word.pop_back();
    apart.push_back(std::move(word));
    if (isOption) apart.emplace_back();
  }
  return apart;
}

/// The sub-commands and options that the words name. The parser takes its time for each that it
/// knows, so it gets no others, unless it may have to list them all.
class Named {
 public:
  explicit Named(const std::vector<std::string>& words) {
    for (const std::string_view word : words) {
      const std::string_view name = names_.emplace_back(word.substr(0, word.find('=')));
      const bool isOption = name.starts_with("--") && findOption(name.substr(2)) != nullptr;
      if (name.size() > 1 && name.starts_with('-') && !isOption) all_ = true;
    }
  }

  bool has(std::string_view name) const {
    return all_ || std::ranges::find(names_, name) != names_.end();
  }

 private:
  std::vector<std::string_view> names_;  // of the words
  bool all_ = false;                     // one asks for help, or is a mistake
};

/// What the parser knows of a sub-command.
struct Offer {
  const Command* command;
  const CLI::App* app;
  std::vector<std::pair<const OptionRow*, const CLI::Option*>> options;
};

void addOptions(const Named& named, CLI::App& app, Offer& offer) {
  for (const OptionRow& row : optionTable()) {
    const std::string name = std::string("--") + row.name;
    if ((row.commands & offer.command->id) == 0 || !named.has(name)) continue;
    CLI::Option* const option =
        isFlag(row.kind) ? app.add_flag(name) : app.add_option(name)->expected(1)->type_size(1);
    option->description(row.help)->group(row.group);
    // What is given twice is told below, in words that say what to do.
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    if (!isFlag(row.kind)) option->type_name(placeholderOf(row));
    offer.options.emplace_back(&row, option);
  }
}

/// What the exit status of a sub-command says, for the end of its help.
std::string exitStatus(const Command& command) {
  std::string text = "Exit status: 0 done";
  if (command.failed != nullptr) text += std::string("; 1 ") + command.failed;
  text += "; 2 cannot run, standard error says why";
  if ((findOption("strict")->commands & command.id) != 0) {
    text += ";\n3 with --strict, the run succeeded and its report shows otherwise";
  }
  return text + '.';
}

OptionValues givenOptions(const Offer& offer) {
  OptionValues values;
  for (const auto& [row, option] : offer.options) {
    if (option->count() == 0) continue;
    if (option->count() > 1) {
      throw CannotRun(std::string("--") + row->name + ": given " + std::to_string(option->count()) +
                      " times; leave all but one of them out");
    }
    values[row->name] =
        isFlag(row->kind) ? (option->as<bool>() ? "true" : "false") : option->results().front();
  }
  return values;
}

/// What is said of words that mean nothing, the first of which may be meant for a sub-command.
std::string notExpected(const std::vector<std::string>& words, bool blnNoCommand,
                        const std::string& strCommands) {
  const std::string strFirst = words.empty() ? "" : words.front();
  if (!strFirst.empty() && blnNoCommand && !strFirst.starts_with('-')) {
    return '"' + strFirst + "\" is none of the sub-commands " + strCommands;
  }
  return "The following arguments were not expected: " + CLI::detail::join(words, " ");
}

}  // namespace

CommandLine readCommandLine(std::vector<std::string> words) {
  CLI::App app("Turns a submitted form into the parked form and the electronic message.",
               "varnel-xml");
  app.require_subcommand(0, 1);  // none is told below, after a word that is none
  app.set_version_flag("--version", kVersion);
  app.footer("SUBCOMMAND --help lists its options and says what its exit status means.");
  std::vector<std::string> operands;
  std::vector<std::string> names;
  std::vector<Offer> offers;
  const Named named(words);
  for (const Command& command : commands()) {
    names.emplace_back(command.name);
    if (!named.has(command.name)) continue;
    CLI::App* const one = app.add_subcommand(command.name, command.help);
    one->set_version_flag("--version", kVersion);
    one->footer(exitStatus(command));
    Offer& offer = offers.emplace_back(Offer{.command = &command, .app = one, .options = {}});
    addOptions(named, *one, offer);
    if (command.operands) {
      one->add_option(command.operands, operands)->type_name("")->required();
    }
  }

  try {
    words = withEmptyValuesApart(std::move(words));
    std::ranges::reverse(words);  // the parser takes them from the back
    app.parse(std::move(words));
    for (const Offer& offer : offers) {
      if (offer.app->parsed() > 0) {
        return {.command = offer.command,
                .options = givenOptions(offer),
                .operands = std::move(operands)};
      }
    }
    throw CannotRun("a sub-command is required: " + CLI::detail::join(names, ", "));
  } catch (const CLI::Success& success) {
    std::ostringstream text;
    app.exit(success, text, text);
    return {.textToPrint = text.str()};
  } catch (const CLI::ExtrasError&) {
    throw CannotRun(notExpected(app.remaining(true), app.get_subcommands().empty(),
                                CLI::detail::join(names, ", ")));
  } catch (const CLI::Error& error) {
    throw CannotRun(error.what());
  }
}
