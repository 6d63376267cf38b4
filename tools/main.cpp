#include "Commands.h"
#include "Interrupt.h"
#include "Report.h"
#include "platform/CommandLine.h"
#include "platform/Terminal.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

#ifdef NDEBUG
constexpr char BUILD[] = "release";
#else
constexpr char BUILD[] = "debug";
#endif

std::string Version()
{
    return std::string("halyard " HALYARD_VERSION " (") + BUILD + " build, C++ compiler " __VERSION__ ")";
}

/// Words that people know.
void NameParts(CLI::Formatter& formatter)
{
    formatter.label("SUBCOMMAND", "COMMAND");
    formatter.label("Positionals", "Files");
    formatter.label("REQUIRED", "");
    formatter.label("TEXT", "");
}

std::string UsageMessage(const CLI::App*, const CLI::Error& error)
{
    return std::string("halyard: ") + error.what()
           + "\n'halyard --help' and 'halyard COMMAND --help' tell more.\n";
}

int Run(std::vector<std::string> arguments)
{
    int status = EXIT_DONE;
    CLI::App program("Halyard reads, shows and writes line drawings (DXF).", "halyard");
    const auto formatter = std::make_shared<CLI::Formatter>();
    NameParts(*formatter);
    program.formatter(formatter);
    program.failure_message(UsageMessage);
    program.set_version_flag("--version", Version(), "Print the version and exit");
    program.set_help_flag("-h,--help", "Print this help and exit");
    // "/plan.dxf" is a file on every system.
    program.allow_windows_style_options(false);
    program.require_subcommand(0, 1);
    program.footer(
        "Exit status: 0 done, 1 a failure told in one sentence, 2 wrong usage, 130 stopped by Ctrl-C.\n"
        "'halyard COMMAND --help' tells more about a command.");
    for (const AddCommand add : COMMANDS) add(program, status);
    for (CLI::App* command : program.get_subcommands({})) command->group("Commands");
    try {
        // Taken from the end on; the program's own name is none of them.
        std::reverse(arguments.begin(), arguments.end());
        if (!arguments.empty()) arguments.pop_back();
        program.parse(std::move(arguments));
        if (program.get_subcommands().empty()) throw CLI::RequiredError("A command");
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? StandardOutput::Finish() : EXIT_WRONG_USAGE;
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    Terminal::Prepare();
    Interrupt::Install();
    try {
        return Run(ProgramArguments(argc, argv));
    } catch (const std::bad_alloc&) {
        std::fputs("halyard: not enough memory for this drawing\n", stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "halyard: %s\n", error.what());
    }
    return EXIT_FAILED;
}
