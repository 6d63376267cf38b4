#include "CommandText.h"
#include "Commands.h"
#include "EditDrawing.h"
#include "Interrupt.h"
#include "VisibleClip.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <tuple>

namespace {

struct ClipOptions {
    EditOptions edit;
    std::string window;
};

/// Two opposite corners, "x0,y0,x1,y1".
std::optional<DXFClipContext> WindowOf(const std::string& text)
{
    const auto corners = NumbersOf(text, 4);
    if (!corners) return std::nullopt;
    DXFClipContext window;
    std::tie(window.xmin, window.xmax) = std::minmax((*corners)[0], (*corners)[2]);
    std::tie(window.ymin, window.ymax) = std::minmax((*corners)[1], (*corners)[3]);
    return window;
}

std::string CheckWindow(const std::string& text)
{
    return WindowOf(text) ? "" : text + " is not a window like 0,0,120.5,80";
}

int Clip(const ClipOptions& options)
{
    return EditDrawing(options.edit, [&](Drawing& drawing) -> std::optional<std::wstring> {
        DXFClipContext window = *WindowOf(options.window);
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
