// Options that several commands have.
#pragma once

#include <CLI/CLI.hpp>

#include <optional>

// --frame, a finite number.
CLI::Option* addFrameOption(CLI::App& command, std::optional<double>& frame);
// --threads, 0 to kMostThreads.
CLI::Option* addThreadsOption(CLI::App& command, std::optional<int>& threads);
