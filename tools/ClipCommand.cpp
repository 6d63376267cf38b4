#include "CommandText.h"
#include "Commands.h"
#include "EditDrawing.h"
#include "Interrupt.h"
#include "VisibleClip.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

struct ClipOptions {
    EditOptions edit;
    std::string window;
};

std::string CheckWindow(const std::string& text)
{
    return BoxOf(text) ? "" : text + " is not a window like 0,0,120.5,80";
}

int Clip(const ClipOptions& options)
{
    return EditDrawing(options.edit, [&](Drawing& drawing) -> std::optional<std::wstring> {
        const GTL::Extents2D<double> box = *BoxOf(options.window);
        DXFClipContext window{box.MinX(), box.MinY(), box.MaxX(), box.MaxY()};
        if (options.edit.plain)
            drawing.Document().Clip(window, Interrupt::KeepGoing());
        else
            ClipVisibly(drawing.Document(), window, Interrupt::KeepGoing());
        return std::nullopt;
    });
}

} // namespace

void AddClip(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand("clip", "Cut a drawing down to a window");
    command->footer("Inserts become the entities that they show, and these are cut. With --plain all inserts "
                    "go, and circles\nthat cross the window may lose parts.\n\nExample:\n"
                    "  halyard clip --window 0,0,420,297 plan.dxf part.dxf");
    const auto options = std::make_shared<ClipOptions>();
    AddEditOptions(*command, options->edit);
    command->add_option("--window", options->window, "What to keep, by two corners in drawing units")
        ->type_name("X0,Y0,X1,Y1")
        ->required()
        ->check(CheckWindow);
    command->callback([options, &status] { status = Clip(*options); });
}
