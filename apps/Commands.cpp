#include "Commands.h"

#include <array>

namespace {

constexpr auto kCommands = std::to_array<Command>({
    {kBuild, "build", "Runs one submission.", "the run failed", nullptr, runBuild},
    {kCheck, "check", "Proves a deployment consistent.", "there are findings of severity error",
     nullptr, runCheck},
    {kExplain, "explain", "Tells where every answer of a submission went, and why not.",
     "the run failed", nullptr, runExplain},
    {kProve, "prove", "Proves that the errors of a message lead back to the answers.",
     "an error does not", nullptr, runProve},
    {kDocument, "document", "Writes the data dictionary of a form.", nullptr, nullptr, runDocument},
    {kTest, "test", "Runs submissions, each a folder with what is expected of it.",
     "something else came out", "DIR", runTest},
    {kBatch, "batch", "Runs the submissions of standard input, one JSON object a line.",
     "a run failed or a line was bad", nullptr, runBatch},
});

}  // namespace

std::span<const Command> commands() { return kCommands; }
