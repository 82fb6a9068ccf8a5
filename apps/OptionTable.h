#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "varnel_xml_creation/interface/Deployment.h"

// The options of `varnel-xml`, written once: the command line of every sub-command is read by this
// table. Those that are keys of deployment.json too the library knows (interface/Deployment.h).

/// The sub-commands; an option names those that take it by a set of these bits.
enum CommandId : unsigned {
  kBuild = 1,
  kCheck = 2,
  kBatch = 4,
  kTest = 8,
  kExplain = 16,
  kProve = 32,
  kDocument = 64,
};

enum class OptionKind {
  file,             // an input's name: below DIR when deployment.json has it
  text,             // anything else with a value
  flag,             // on or off
  commandLineOnly,  // a file to write, or the place of deployment.json: never a key of that
  commandLineFlag,  // on or off, and never a key of that either
};

struct OptionRow {
  const char* name;  // without the dashes
  OptionKind kind;
  const char* placeholder;  // what the help shows for the value; empty: the languages
  const char* group;        // the heading under which the help lists it
  const char* help;
  unsigned commands;  // that take it
};

std::span<const OptionRow> optionTable();

/// The row with this name; null when there is none.
const OptionRow* findOption(std::string_view name);

/// Whether an option has no value.
constexpr bool isFlag(OptionKind kind) {
  return kind == OptionKind::flag || kind == OptionKind::commandLineFlag;
}

/// Options by name, as they were given. A flag is "true" or "false".
using OptionValues = Varnel_Tolv_XML_Creation::DeploymentValues;

/// The value of an option, if it was given.
std::optional<std::string> valueOf(const OptionValues& values, std::string_view name);

/// Whether a flag was given, and not as "false".
bool isSet(const OptionValues& values, std::string_view name);

/// What the help shows for the value of an option.
std::string placeholderOf(const OptionRow& row);
