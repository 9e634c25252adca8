// The command line program: reads the call, runs the command, and turns what went wrong into one line on
// standard error and an exit code.

#include "apps/nezaiva/commands.h"
#include "apps/nezaiva/standard_output.h"
#include "host/console/console.h"
#include "host/errors/errors.h"
#include "host/report/text_layout.h"
#include "host/scene/diagnostics.h"

#include <ombrix/exception_msg.h>

#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <sstream>
#include <system_error>

namespace {

constexpr const char* kDescription =
    "Nezaiva: Maya's shading nodes for the Ombrix renderer, and a small host that loads, probes, bakes and "
    "renders them.";
constexpr const char* kFooter =
    "Plug-in libraries are those of --library, else those in the folders of OMBRIX_PLUGIN_PATH, else those "
    "beside the program.\n"
    "Exit codes: 0 done, 1 the work failed, 2 the call or a file's contents are wrong.\n"
    "`nezaiva COMMAND --help` tells more.";

// Wraps the closing remarks of a help text.
class HelpFormatter : public CLI::Formatter {
public:
    HelpFormatter()
    {
        label("SUBCOMMAND", "COMMAND");
        label("Subcommands", "Commands");
        label("REQUIRED", "(required)");
    }
    std::string make_footer(const CLI::App* app) const override
    {
        const std::string footer = app->get_footer();
        return footer.empty() ? footer : "\n" + ombrix::wrapped(footer, 0, outputColumns());
    }
};

void addCommonOptions(CLI::App& app, CommandLine& commandLine)
{
    app.add_option_function<std::vector<std::string>>(
           "--library",
           [&commandLine](const std::vector<std::string>& files) {
               commandLine.libraries.insert(commandLine.libraries.end(), files.begin(), files.end());
           },
           "Load this plug-in library instead of the default ones; may be given several times")
        ->type_name("FILE")
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Options of all commands");
    const auto set = [](bool& flag) { return [&flag](std::int64_t) { flag = true; }; };
    app.add_flag_function("-q,--quiet", set(commandLine.quiet), "Say nothing but errors")
        ->group("Options of all commands");
    app.add_flag_function("-v,--verbose", set(commandLine.verbose), "Say more")
        ->group("Options of all commands");
}

int fail(ExitCode code, std::string_view message)
{
    if (!message.empty()) ombrix::writeErrorLine(fmt::format("error: {}", message));
    return code;
}

// The names that an unknown argument may have meant: the commands, or the options of a command.
std::vector<std::string> candidates(const CLI::App& app, bool option)
{
    std::vector<std::string> names;
    if (!option)
        for (const CLI::App* command : app.get_subcommands({}))
            names.push_back(command->get_name());
    else
        for (const CLI::Option* known : app.get_options())
            for (const std::string& name : known->get_lnames())
                names.push_back("--" + name);
    return names;
}

int reportWrongCall(const CLI::App& app, const CLI::ParseError& problem)
{
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    const CLI::App& command = chosen.empty() ? app : *chosen.front();
    const std::vector<std::string> unexpected = command.remaining();
    std::string message = problem.what(), nearest;
    if (!unexpected.empty()) {
        const std::string& word = unexpected.front();
        const bool option = word.starts_with("-");
        nearest = ombrix::nearestName(word, candidates(command, option));
        const char* what = option ? "there is no option" : "unexpected argument";
        if (!option && chosen.empty()) what = "there is no command";
        message = fmt::format("{} \"{}\"", what, word);
    } else if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&problem)) {
        message = "a command is missing";
    }
    if (!nearest.empty()) return fail(kWrongInput, fmt::format("{}; did you mean \"{}\"?", message, nearest));
    const std::string name = chosen.empty() ? "nezaiva" : "nezaiva " + command.get_name();
    return fail(kWrongInput, fmt::format("{}; `{} --help` shows what there is", message, name));
}

// Reads the call and runs its command, or writes what --help and --version ask for.
void parseAndRun(CLI::App& app, int argumentCount, char** arguments)
{
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& request) {
        std::ostringstream text;
        app.exit(request, text, text);
        writeToStandardOutput(text.str());
    }
}

// As a program ends that writes where nobody reads: by the signal, without a word.
int endByBrokenPipe()
{
    constexpr int kShellsCodeForSignals = 128;
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
    return kShellsCodeForSignals + SIGPIPE; // where the signal is blocked
}

int runCommandLine(CLI::App& app, CommandLine& commandLine, int argumentCount, char** arguments)
{
    try {
        parseAndRun(app, argumentCount, arguments);
        return commandLine.exitCode;
    } catch (const ombrix::ReaderGone&) {
        return endByBrokenPipe();
    } catch (const CLI::ParseError& problem) {
        return reportWrongCall(app, problem);
    } catch (const ombrix::WrongInput& problem) {
        return fail(kWrongInput, problem.what());
    } catch (const OUtils::ExceptionMsg& problem) {
        return fail(kWorkFailed, problem.what());
    } catch (const std::bad_alloc&) {
        return fail(kWorkFailed, "out of memory");
    } catch (const std::exception& problem) {
        return fail(kWorkFailed, problem.what());
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    // A reader that goes away shows as a failed write.
    std::signal(SIGPIPE, SIG_IGN);
    CommandLine commandLine;
    std::error_code ignored;
    commandLine.programFolder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();

    CLI::App app{kDescription, "nezaiva"};
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(kFooter);
    app.set_version_flag("--version", "nezaiva " NEZAIVA_VERSION);
    app.require_subcommand(1);
    addListCommand(app, commandLine);
    addDescribeCommand(app, commandLine);
    addProbeCommand(app, commandLine);
    addSourceCommand(app, commandLine);
    addBakeCommand(app, commandLine);
    addRenderCommand(app, commandLine);
    addCommonOptions(app, commandLine);
    for (CLI::App* command : app.get_subcommands({}))
        addCommonOptions(*command, commandLine);
    return runCommandLine(app, commandLine, argumentCount, arguments);
}
