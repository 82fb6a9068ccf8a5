#include "Commands.h"

#include <array>

#include "RunBatch.h"
#include "RunBuild.h"

namespace {

constexpr auto kCommands = std::to_array<Command>({
    {kBuild, "build", "Runs one submission.", nullptr, runBuild},
    {kBatch, "batch", "Runs the submissions of standard input, one JSON object a line.", nullptr,
     runBatch},
});

}  // namespace

std::span<const Command> commands() { return kCommands; }
