#include "Commands.h"
#include "EditDrawing.h"

#include <CLI/CLI.hpp>

#include <memory>

void AddConvert(CLI::App& program, int& status)
{
    CLI::App* command =
        program.add_subcommand("convert", "Read a drawing and write it as DXF (release AC1014) or as a plot file");
    command->footer("The name of OUT says which. In DXF inserts become the entities that they show; in a "
                    "plot file arcs of polylines\nbecome chords. OUT is written beside its place and put "
                    "there when it is whole; it may be IN itself.\n\nExamples:\n"
                    "  halyard convert old.dxf new.dxf\n  halyard convert plan.dxf plan.plot");
    const auto options = std::make_shared<EditOptions>();
    options->keepsInserts = true;
    AddEditOptions(*command, *options);
    command->callback([options, &status] {
        status = EditDrawing(*options, [](Drawing&) { return std::nullopt; });
    });
}
