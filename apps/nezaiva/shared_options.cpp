#include "apps/nezaiva/shared_options.h"

#include "host/renderer/setting_limits.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>

using namespace ombrix;

CLI::Option* addFrameOption(CLI::App& command, std::optional<double>& frame)
{
    const auto problem = [](const std::string& text) {
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        const bool whole = !text.empty() && *end == '\0';
        if (whole && std::isfinite(number)) return std::string();
        return fmt::format("\"{}\" is no frame; write a finite number, as 12 or 2.5", text);
    };
    return command.add_option("--frame", frame, "The frame; else that of the scene")
        ->check(CLI::Validator(problem, ""))
        ->type_name("F");
}

CLI::Option* addThreadsOption(CLI::App& command, std::optional<int>& threads)
{
    return command.add_option("--threads", threads, "Threads, 0 for all processors; else those of the scene")
        ->check(CLI::Range(0, kMostThreads))
        ->type_name("N");
}
