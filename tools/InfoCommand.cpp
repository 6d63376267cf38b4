#include "Commands.h"
#include "Drawing.h"
#include "EntityDump.h"
#include "InfoText.h"
#include "Interrupt.h"
#include "ModelInfo.h"
#include "Report.h"
#include "Summary.h"
#include "TextTable.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <map>
#include <memory>

namespace {

Json LayersJson(const DXF& document)
{
    Json layers = Json::array();
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        layers.push_back({{"name", ToUtf8(layer.Name())},
                          {"color", ColorText(layer.Color())},
                          {"visible", layer.IsVisible()},
                          {"style", ToUtf8(layer.StyleStr())},
                          {"width", ReadsLike(layer.Width())},
                          {"entities", layer.NumEntities()}});
    }
    return layers;
}

Json BlocksJson(const DXF& document)
{
    Json blocks = Json::array();
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        blocks.push_back({{"name", ToUtf8(block->first)},
                          {"base", PointJson(block->second->BasePoint())},
                          {"entities", block->second->GetDXF()->NumEntities()}});
    return blocks;
}

std::string InfoJson(const Drawing& drawing, const Summary& summary)
{
    const auto textOrNull = [](bool known, const std::string& text) {
        return known ? Json(text) : Json();
    };
    const char* lineEnds = drawing.LineEnds();
    Json info;
    info["file"] = ToUtf8(drawing.File());
    info["format"] = drawing.Format();
    info["release"] = textOrNull(!drawing.Release().empty(), ToUtf8(drawing.Release()));
    info["line_ends"] = textOrNull(lineEnds != nullptr, lineEnds ? lineEnds : "");
    info["layers"] = LayersJson(drawing.Document());
    info["blocks"] = BlocksJson(drawing.Document());
    info["kinds"] = Json::object();
    for (const auto& [kind, count] : summary.kinds) info["kinds"][std::string(kind)] = count;
    info["extents"] = Json();
    if (summary.extents.IsValid())
        info["extents"] = {{"min", PointJson(summary.extents.MinPnt())},
                           {"max", PointJson(summary.extents.MaxPnt())}};
    info["images"] = Json::array();
    for (const Summary::Image& image : summary.images)
        info["images"].push_back({{"file", ToUtf8(image.file)}, {"found", image.found}});
    info["skipped"] = Json::object();
    for (const auto& [name, count] : drawing.Skipped()) info["skipped"][ToUtf8(name)] = count;
    info["warnings"] = Json::array();
    for (const std::wstring& warning : drawing.Warnings()) info["warnings"].push_back(ToUtf8(warning));
    return JsonText(info);
}

/// The name under which people know a release.
std::string ReleaseName(const std::wstring& release)
{
    static const std::map<std::wstring, const char*> NAMES = {
        {L"AC1001", "R2"},   {L"AC1002", "R2.5"}, {L"AC1003", "R2.6"}, {L"AC1004", "R9"},
        {L"AC1006", "R10"},  {L"AC1009", "R12"},  {L"AC1012", "R13"},  {L"AC1014", "R14"},
        {L"AC1015", "2000"}, {L"AC1018", "2004"}, {L"AC1021", "2007"}, {L"AC1024", "2010"},
        {L"AC1027", "2013"}, {L"AC1032", "2018"},
    };
    if (release.empty()) return "of no stated release";
    const auto name = NAMES.find(release);
    return Printable(release) + (name == NAMES.end() ? "" : std::string(" (") + name->second + ")");
}

std::string LayersText(const Drawing& drawing)
{
    const DXF& document = drawing.Document();
    TextTable table({TextTable::LEFT, TextTable::LEFT, TextTable::LEFT, TextTable::LEFT, TextTable::RIGHT,
                     TextTable::RIGHT});
    table.Add({"name", "colour", "visible", "style", "width", "entities"});
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        table.Add({Shown(layer.Name()), ColorText(layer.Color()), layer.IsVisible() ? "yes" : "no",
                   ToUtf8(layer.StyleStr()), ShortestText(layer.Width()),
                   std::to_string(layer.NumEntities())});
    }
    return "\nLayers, drawn in this order\n" + table.Text("  ");
}

std::string BlocksText(const Drawing& drawing)
{
    TextTable table({TextTable::LEFT, TextTable::LEFT, TextTable::RIGHT});
    table.Add({"name", "base", "entities"});
    DXF::BlockMap::const_iterator block;
    bool more = drawing.Document().GetFirstBlock(block);
    if (!more) return "\nBlocks: none\n";
    for (; more; more = drawing.Document().GetFNextBlock(block))
        table.Add({Shown(block->first), PointText(block->second->BasePoint()),
                   std::to_string(block->second->GetDXF()->NumEntities())});
    return "\nBlocks\n" + table.Text("  ");
}

std::string KindsText(const Summary& summary)
{
    if (summary.kinds.empty()) return "\nEntities: none\n";
    TextTable table({TextTable::LEFT, TextTable::RIGHT});
    for (const auto& [kind, count] : summary.kinds) table.Add({std::string(kind), std::to_string(count)});
    return "\nEntities by kind, blocks not counted\n" + table.Text("  ");
}

/// Images that name one file share a row.
std::string ImagesText(const Summary& summary)
{
    if (summary.images.empty()) return "";
    std::map<std::wstring, std::pair<bool, std::uint64_t>> files;
    for (const Summary::Image& image : summary.images) {
        auto& [found, count] = files[image.file];
        found = found || image.found;
        ++count;
    }
    TextTable table({TextTable::LEFT, TextTable::LEFT, TextTable::RIGHT});
    table.Add({"file", "", "images"});
    for (const auto& [file, state] : files)
        table.Add({file.empty() ? "(no file named)" : Shown(file), state.first ? "found" : "not found",
                   std::to_string(state.second)});
    return "\nImages\n" + table.Text("  ");
}

std::string InfoText(const Drawing& drawing, const Summary& summary)
{
    std::string text = Printable(drawing.File()) + "\n";
    TextTable head({TextTable::LEFT, TextTable::LEFT});
    const bool isPlot = drawing.Format() == std::string_view("plot");
    head.Add({"format", isPlot ? "plot file, version " + Printable(drawing.Release())
                               : "DXF, " + ReleaseName(drawing.Release())});
    if (!isPlot) head.Add({"line ends", drawing.LineEnds() ? drawing.LineEnds() : "none"});
    if (summary.extents.IsValid())
        head.Add(
            {"extents", PointText(summary.extents.MinPnt()) + " to " + PointText(summary.extents.MaxPnt())});
    else
        head.Add({"extents", "none"});
    text += head.Text("  ");
    text += LayersText(drawing) + BlocksText(drawing) + KindsText(summary) + ImagesText(summary);
    if (!drawing.Warnings().empty()) text += "\nWarnings\n";
    for (const std::wstring& warning : drawing.Warnings()) text += "  " + Printable(warning) + "\n";
    return text;
}

int Info(const std::wstring& file, bool json)
{
    if (const auto model = RecognizeFile(file).model) return ModelInfo(file, *model, json);
    Drawing drawing;
    if (!drawing.Read(file, {}))
        return Interrupt::IsStopped() ? SayStopped() : Fail(file, drawing.Complaint());
    const Summary summary = Summarize(drawing);
    StandardOutput::Write(json ? InfoJson(drawing, summary) : InfoText(drawing, summary));
    return StandardOutput::Finish();
}

} // namespace

void AddInfo(CLI::App& program, int& status)
{
    CLI::App* command = program.add_subcommand("info", "Show what is in a drawing or a model");
    command->footer("Examples:\n  halyard info plan.dxf\n  halyard info house.3ds");
    const auto file = std::make_shared<std::string>();
    const auto json = std::make_shared<bool>(false);
    command->add_option("FILE", *file, "The drawing or model (.3ds, .skp) to read")->required();
    command->add_flag("--json", *json, "Print one JSON object, for scripts");
    command->callback([file, json, &status] { status = Info(FromUtf8(*file), *json); });
}
