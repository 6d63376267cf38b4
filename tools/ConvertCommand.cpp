#include "Commands.h"
#include "EditDrawing.h"

#include <CLI/CLI.hpp>

#include <memory>

void AddConvert(CLI::App& program, int& status)
{
    CLI::App* command =
        program.add_subcommand("convert", "Read a drawing and write it as DXF (release AC1014)");
    command->footer("Inserts become the entities that they show. OUT is written beside its place and put "
                    "there when it is\n"
                    "whole; it may be IN itself.\n\nExample:\n  halyard convert old.dxf new.dxf");
    const auto options = std::make_shared<EditOptions>();
    AddEditOptions(*command, *options);
    command->callback([options, &status] {
        status = EditDrawing(*options, [](Drawing&) { return std::nullopt; });
    });
}
