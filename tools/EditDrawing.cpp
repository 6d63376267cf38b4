#include "EditDrawing.h"

#include "Interrupt.h"
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

/// What is done to the drawing before it is written. A complaint when the change cannot be made.
std::optional<std::wstring> Prepare(Drawing& drawing, bool plain, const Change& change)
{
    const Progress progress("preparing", [] { return Progress::State(); });
    const std::atomic<bool>& keepGoing = Interrupt::KeepGoing();
    InsertExploder::Report report;
    if (!plain) report = InsertExploder().Explode(drawing.Document(), keepGoing);
    if (Interrupt::IsStopped()) return {};
    WarnOf(report, drawing.File());
    if (auto complaint = change(drawing)) return complaint;
    if (!plain && !Interrupt::IsStopped()) BringToWrittenForm(drawing.Document(), keepGoing);
    return {};
}

int WriteDrawing(Drawing& drawing, const std::wstring& out, bool trueColor)
{
    SafeOutput output(out);
    if (const auto complaint = output.Prepare()) return Fail(out, *complaint);

    DXFFile writer;
    writer.SetExportMode(trueColor ? 1 : 0);
    {
        const Progress progress("writing", [&writer] {
            return Progress::State{writer.Done(), writer.Total()};
        });
        // Failures of the output, its opening included, are asked for below.
        (void)writer.Write(output.TemporaryName(), drawing.Document(), Interrupt::KeepGoing());
    }
    if (Interrupt::IsStopped()) return SayStopped();
    if (writer.WriteFailed()) return Fail(out, L"cannot be written: " + writer.WriteFailReason());
    if (const auto complaint = output.Commit()) return Fail(out, *complaint);
    return EXIT_DONE;
}

/// The kind of the file to write is that of its name.
std::string CheckOutputName(const std::string& name)
{
    if (FilePath::SameText(FilePath::Extension(FromUtf8(name)), L"dxf")) return {};
    return name + " does not end in .dxf, the only kind of file that can be written";
}

} // namespace

void AddEditOptions(CLI::App& command, EditOptions& options)
{
    command.add_option("IN", options.in, "The drawing to read")->required();
    command.add_option("OUT", options.out, "The DXF file to write, named .dxf")
        ->required()
        ->check(CheckOutputName);
    command.add_flag("--true-color", options.trueColor,
                     "Write exact colours beside those of the colour table");
    command.add_flag("--plain", options.plain,
                     "Take the drawing as it was read: inserts lose their blocks");
}

int EditDrawing(const EditOptions& options, const Change& change)
{
    const std::wstring in = FromUtf8(options.in);
    const std::wstring out = FromUtf8(options.out);
    Drawing drawing;
    if (!drawing.Read(in, {.blocksUseLayers = !options.plain}))
        return Interrupt::IsStopped() ? SayStopped() : Fail(in, drawing.Complaint());
    drawing.Warn();
    if (drawing.EndedEarly() && FileSystem::SameFile(in, out))
        return Fail(out, L"is not replaced, because it could not be read to its end");
    if (const auto complaint = Prepare(drawing, options.plain, change)) return Fail(in, *complaint);
    if (Interrupt::IsStopped()) return SayStopped();
    return WriteDrawing(drawing, out, options.trueColor);
}
