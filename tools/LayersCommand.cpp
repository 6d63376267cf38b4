#include "CommandText.h"
#include "Commands.h"
#include "EditDrawing.h"
#include "LayerNames.h"
#include "Report.h"
#include "model/DXFImage.h"
#include "platform/FilePath.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>

namespace {

using Complaint = std::optional<std::wstring>;
using Step = Complaint (*)(Drawing& drawing, const std::string& text);

struct LayersOptions {
    EditOptions edit;
    std::map<const CLI::Option*, Step> steps;
};

/// Messages of several lines become one.
Complaint ComplaintOf(const ErrorString& result)
{
    if (!!result) return std::nullopt;
    std::wstring text = result.Text();
    while (text.ends_with(L'\n')) text.pop_back();
    std::replace(text.begin(), text.end(), L'\n', L' ');
    return text;
}

/// Images know the name of their layer.
void TellImages(DXFLayer& layer)
{
    for (std::size_t i = 0; i < layer.NumEntities(); ++i)
        if (auto* image = dynamic_cast<DXFImage*>(layer[i])) image->SetLayerName(layer.Name());
}

/// "A=B". The layer keeps its place in the drawing order.
Complaint Rename(Drawing& drawing, const std::string& text)
{
    const std::size_t equal = text.find('=');
    const std::string from = text.substr(0, equal);
    const std::wstring to = FromUtf8(text.substr(equal + 1));
    const DXFLayer* layer = LayerMeant(drawing, from);
    if (!layer) return NoSuchLayer(from);
    if (auto complaint = ComplaintOf(DXFLayer::IsValidName(to))) return complaint;
    const std::wstring old = layer->Name();
    std::vector<std::wstring> order = drawing.Document().GetLayerOrder();
    if (auto complaint = ComplaintOf(drawing.Document().RenameLayer(old.c_str(), to.c_str())))
        return complaint;
    std::replace(order.begin(), order.end(), old, to);
    drawing.Document().SetLayerOrder(order);
    if (DXFLayer* renamed = drawing.Document()[HashedString<wchar_t>(to)]) TellImages(*renamed);
    return std::nullopt;
}

Complaint Remove(Drawing& drawing, const std::string& name)
{
    DXFLayer* layer = LayerMeant(drawing, name);
    return layer ? ComplaintOf(drawing.Document().RemoveLayer(*layer)) : NoSuchLayer(name);
}

Complaint ToFront(Drawing& drawing, const std::string& name)
{
    const DXFLayer* layer = LayerMeant(drawing, name);
    if (!layer) return NoSuchLayer(name);
    drawing.Document().BringToFront(layer->Name());
    return std::nullopt;
}

Complaint ToBack(Drawing& drawing, const std::string& name)
{
    const DXFLayer* layer = LayerMeant(drawing, name);
    if (!layer) return NoSuchLayer(name);
    drawing.Document().MoveToBack(layer->Name());
    return std::nullopt;
}

Complaint Order(Drawing& drawing, const std::string& names)
{
    std::vector<std::wstring> order;
    for (const std::string& name : PiecesOf(names)) {
        const DXFLayer* layer = LayerMeant(drawing, name);
        if (!layer) return NoSuchLayer(name);
        order.push_back(layer->Name());
    }
    drawing.Document().SetLayerOrder(order);
    return std::nullopt;
}

/// A drawing begins with layer "0", so a file that is read brings it back to its place.
void WarnOfLayerZero(Drawing& drawing, const std::string& out)
{
    const bool isPlot = FilePath::SameText(FilePath::Extension(FromUtf8(out)), L"plot");
    if (!isPlot && drawing.Document().GetLayerOrder().front() != L"0")
        Warn(FromUtf8(out), L"layer 0 comes first whenever a DXF file is read, whatever its place was");
}

/// The steps in the order in which they stand on the command line.
Complaint Apply(const CLI::App& command, const LayersOptions& options, Drawing& drawing)
{
    for (const GivenStep& given : StepsInOrder(command)) {
        const auto step = options.steps.find(given.option);
        if (step == options.steps.end()) continue;
        if (auto complaint = step->second(drawing, given.value)) return complaint;
    }
    WarnOfLayerZero(drawing, options.edit.out);
    return std::nullopt;
}

std::string CheckRename(const std::string& text)
{
    const std::size_t equal = text.find('=');
    const bool isPair = equal != std::string::npos && equal > 0 && equal + 1 < text.size();
    return isPair ? "" : text + " is not of the form of OLD=NEW";
}

CLI::Option* AddStep(CLI::App& command, LayersOptions& options, const char* name, Step step, const char* form,
                     const char* help)
{
    CLI::Option* option = AddStepOption(command, name, form, help);
    options.steps.emplace(option, step);
    return option;
}

} // namespace

void AddLayers(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand("layers", "Rename, remove and reorder layers");
    command->footer("The steps apply in the order in which they are given, each as often as it is given. "
                    "Layers are drawn from\nback to front. Inserts become the entities that they show, on "
                    "the layers of these.\n\nExample:\n"
                    "  halyard layers --rename WALL=WALLS --front TEXT plan.dxf out.dxf");
    const auto options = std::make_shared<LayersOptions>();
    AddEditOptions(*command, options->edit);
    AddStep(*command, *options, "--rename", Rename, "OLD=NEW",
            "Give a layer another name; it keeps its place")
        ->check(CheckRename);
    AddStep(*command, *options, "--remove", Remove, "NAME", "Remove a layer with its entities");
    AddStep(*command, *options, "--front", ToFront, "NAME", "Draw a layer last, over all others");
    AddStep(*command, *options, "--back", ToBack, "NAME", "Draw a layer first, under all others");
    AddStep(*command, *options, "--order", Order, "NAME,...",
            "Bring these layers to the front, the last named topmost");
    command->callback([command, options, &status] {
        const bool hasStep = std::any_of(options->steps.begin(), options->steps.end(),
                                         [](const auto& step) { return step.first->count() > 0; });
        if (!hasStep)
            throw CLI::RequiredError("At least one of --rename, --remove, --front, --back and --order");
        status =
            EditDrawing(options->edit, [&](Drawing& drawing) { return Apply(*command, *options, drawing); });
    });
}
