#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
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

void addOptions(const Command& command, CLI::App& app) {
  for (const OptionRow& row : optionTable()) {
    if ((row.commands & command.id) == 0) continue;
    const std::string name = std::string("--") + row.name;
    CLI::Option* const option =
        isFlag(row.kind) ? app.add_flag(name) : app.add_option(name)->expected(1)->type_size(1);
    option->description(row.help)->group(row.group);
    // What is given twice is told below, in words that say what to do.
    option->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    if (!isFlag(row.kind)) option->type_name(placeholderOf(row));
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

OptionValues givenOptions(const Command& command, const CLI::App& app) {
  OptionValues values;
  for (const OptionRow& row : optionTable()) {
    if ((row.commands & command.id) == 0) continue;
    const std::string name = std::string("--") + row.name;
    const CLI::Option* const option = app.get_option(name);
    if (option->count() == 0) continue;
    if (option->count() > 1) {
      throw CannotRun(name + ": given " + std::to_string(option->count()) +
                      " times; leave all but one of them out");
    }
    values[row.name] =
        isFlag(row.kind) ? (option->as<bool>() ? "true" : "false") : option->results().front();
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
  for (const Command& command : commands()) {
    CLI::App* const one = app.add_subcommand(command.name, command.help);
    one->set_version_flag("--version", kVersion);
    one->footer(exitStatus(command));
    names.emplace_back(command.name);
    if (std::ranges::find(words, command.name) == words.end()) continue;  // nobody asks for its own
    addOptions(command, *one);
    if (command.operands) {
      one->add_option(command.operands, operands)->type_name("")->required();
    }
  }

  try {
    words = withEmptyValuesApart(std::move(words));
    std::ranges::reverse(words);  // the parser takes them from the back
    app.parse(std::move(words));
    for (const Command& command : commands()) {
      const CLI::App* const one = app.get_subcommand(command.name);
      if (one->parsed()) {
        return {.command = &command,
                .options = givenOptions(command, *one),
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
