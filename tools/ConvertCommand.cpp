#include "Commands.h"
#include "EditDrawing.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>

#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

struct Options : EditOptions {
    ModelOptions model;
};

std::string CheckUnits(const std::string& text)
{
    const double metres = std::atof(text.c_str());
    return metres > 0 && std::isfinite(metres) ? std::string() : text + " is no length in metres";
}

void AddModelOptions(CLI::App& command, ModelOptions& options)
{
    command
        .add_option(
            "--units", options.metresPerUnit,
            "For models: the length of a unit of the drawing in metres, 1 if not given (0.001: millimetres)")
        ->type_name("METRES")
        ->check(CheckUnits);
    command.add_flag("--swap-axes", options.swapAxes, "For models: (x, y, z) becomes (x, z, -y)");
}

int Convert(const CLI::App& command, Options& options)
{
    const bool asksForModel = command.count("--units") + command.count("--swap-axes") > 0;
    const Recognition recognition = RecognizeFile(FromUtf8(options.in));
    if (asksForModel && recognition.format)
        throw CLI::ValidationError("--units and --swap-axes are for models, and " + options.in
                                   + " is a drawing");
    options.models = options.model;
    return EditDrawing(options, [](Drawing&) { return std::nullopt; });
}

} // namespace

void AddConvert(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand(
        "convert", "Read a drawing or a model and write it as DXF (release AC1014) or as a plot file");
    command->footer("The name of OUT says which. In DXF inserts become the entities that they show; in a "
                    "plot file arcs of polylines\nbecome chords. OUT is written beside its place and put "
                    "there when it is whole; it may be IN itself.\n\nExamples:\n"
                    "  halyard convert old.dxf new.dxf\n  halyard convert plan.dxf plan.plot");
    const auto options = std::make_shared<Options>();
    options->keepsInserts = true;
    AddEditOptions(*command, *options);
    AddModelOptions(*command, options->model);
    command->callback([command, options, &status] { status = Convert(*command, *options); });
}
