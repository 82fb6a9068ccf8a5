#include "Commands.h"

#include <array>

#include "RunBuild.h"

namespace {

constexpr auto kCommands = std::to_array<Command>({
    {kBuild, "build", "Runs one submission.", nullptr, runBuild},
});

}  // namespace

std::span<const Command> commands() { return kCommands; }
