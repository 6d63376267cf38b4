#include "EditDrawing.h"

#include "Interrupt.h"
#include "PlotForm.h"
#include "Progress.h"
#include "Report.h"
#include "SafeOutput.h"
#include "WrittenForm.h"
#include "model/InsertExploder.h"
#include "platform/FilePath.h"
#include "platform/FileSystem.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>

namespace {

std::wstring Counted(std::uint64_t count, const wchar_t* one, const wchar_t* many)
{
    return std::to_wstring(count) + L" " + (count == 1 ? one : many);
}

void WarnOf(const InsertExploder::Report& report, const std::wstring& file)
{
    if (report.missingBlocks > 0)
        Warn(file,
             Counted(report.missingBlocks, L"insert", L"inserts") + L" dropped: the drawing lacks the block");
    if (report.recursive > 0)
        Warn(file, Counted(report.recursive, L"insert", L"inserts")
                       + L" dropped: a block holds itself, or blocks are nested too deep");
    if (report.limitReached)
        Warn(file, L"the inserts stand for too much; the rest of them was dropped after "
                       + Counted(report.entities, L"entity", L"entities"));
}

void WarnOf(const PlotForm& form, const std::wstring& file)
{
    if (form.arcs > 0)
        Warn(file, Counted(form.arcs, L"arc", L"arcs")
                       + L" in polylines became chords: a plot file holds none there");
    if (form.flattened > 0)
        Warn(file, Counted(form.flattened, L"arc", L"arcs")
                       + L" in polylines became straight lines: chords would have been too many");
    if (form.otherLooks > 0)
        Warn(file,
             Counted(form.otherLooks, L"insert does", L"inserts do")
                 + L" not show the look of the layer: in a plot file a block looks the same everywhere");
}

bool IsPlot(const std::string& name)
{
    return FilePath::SameText(FilePath::Extension(FromUtf8(name)), L"plot");
}

/// What is done to the drawing before it is written. A complaint when the change cannot be made.
std::optional<std::wstring> Prepare(Drawing& drawing, const EditOptions& options, const Change& change)
{
    const bool toPlot = IsPlot(options.out);
    const Progress progress("preparing", [] { return Progress::State(); });
    const std::atomic<bool>& keepGoing = Interrupt::KeepGoing();
    if (drawing.ChordedArcs() > 0)
        Warn(drawing.File(), Counted(drawing.ChordedArcs(), L"arc", L"arcs")
                                 + L" in polylines became chords: they lie in an inclined plane");
    InsertExploder::Report report;
    const bool explodes = !options.plain && !(toPlot && options.keepsInserts);
    if (explodes) report = InsertExploder().Explode(drawing.Document(), keepGoing);
    if (Interrupt::IsStopped()) return {};
    WarnOf(report, drawing.File());
    if (auto complaint = change(drawing)) return complaint;
    if (options.plain || Interrupt::IsStopped()) return {};
    if (toPlot)
        WarnOf(BringToPlotForm(drawing.Document(), keepGoing), drawing.File());
    else
        BringToWrittenForm(drawing.Document(), keepGoing);
    return {};
}

/// Why the file cannot be written, as a clause that follows its name.
std::optional<std::wstring> WriteDxf(Drawing& drawing, const std::wstring& file, bool trueColor)
{
    DXFFile writer;
    writer.SetExportMode(trueColor ? 1 : 0);
    {
        const Progress progress("writing", [&writer] {
            return Progress::State{writer.Done(), writer.Total()};
        });
        // Failures of the output, its opening included, are asked for below.
        (void)writer.Write(file, drawing.Document(), Interrupt::KeepGoing());
    }
    if (writer.WriteFailed()) return L"cannot be written: " + writer.WriteFailReason();
    return {};
}

std::optional<std::wstring> WritePlot(Drawing& drawing, const std::wstring& file)
{
    PlotFile writer;
    writer.SetKeepGoing(Interrupt::KeepGoing());
    const Progress progress("writing", [&writer] { return Progress::State{writer.Done(), writer.Total()}; });
    if (const ErrorString result = writer.Write(file, &drawing.Document()); !result)
        return L"cannot be written: " + (writer.WriteFailed() ? writer.WriteFailReason() : result.Text());
    return {};
}

int WriteDrawing(Drawing& drawing, const std::wstring& out, const EditOptions& options)
{
    SafeOutput output(out);
    if (const auto complaint = output.Prepare()) return Fail(out, *complaint);
    const auto failure = IsPlot(options.out) ? WritePlot(drawing, output.TemporaryName())
                                             : WriteDxf(drawing, output.TemporaryName(), options.trueColor);
    if (Interrupt::IsStopped()) return SayStopped();
    if (failure) return Fail(out, *failure);
    if (const auto complaint = output.Commit()) return Fail(out, *complaint);
    return EXIT_DONE;
}

/// The kind of the file to write is that of its name.
std::string CheckOutputName(const std::string& name)
{
    if (IsPlot(name) || FilePath::SameText(FilePath::Extension(FromUtf8(name)), L"dxf")) return {};
    return name + " does not end in .dxf or .plot, the kinds of file that can be written";
}

} // namespace

void AddEditOptions(CLI::App& command, EditOptions& options)
{
    command.add_option("IN", options.in, "The drawing to read")->required();
    command.add_option("OUT", options.out, "The file to write, named .dxf or .plot")
        ->required()
        ->check(CheckOutputName);
    command.add_flag("--true-color", options.trueColor,
                     "Write exact colours beside those of the colour table (in .plot they always are)");
    command.add_flag("--plain", options.plain,
                     "Take the drawing as it was read: in .dxf inserts lose their blocks");
}

int EditDrawing(const EditOptions& options, const Change& change)
{
    const std::wstring in = FromUtf8(options.in);
    const std::wstring out = FromUtf8(options.out);
    Drawing drawing;
    if (!drawing.Read(in, {.asShown = !options.plain, .models = options.models}))
        return Interrupt::IsStopped() ? SayStopped() : Fail(in, drawing.Complaint());
    drawing.Warn();
    if (drawing.EndedEarly() && FileSystem::SameFile(in, out))
        return Fail(out, L"is not replaced, because it could not be read to its end");
    if (const auto complaint = Prepare(drawing, options, change)) return Fail(in, *complaint);
    if (Interrupt::IsStopped()) return SayStopped();
    return WriteDrawing(drawing, out, options);
}
