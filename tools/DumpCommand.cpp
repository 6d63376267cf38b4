#include "Commands.h"
#include "Drawing.h"
#include "EntityDump.h"
#include "Interrupt.h"
#include "Progress.h"
#include "Report.h"
#include "platform/Terminal.h"
#include "platform/Utf8.h"

#include <CLI/CLI.hpp>

#include <atomic>
#include <memory>
#include <optional>

namespace {

/// Text is handed on in pieces of about this size.
constexpr std::size_t PIECE = std::size_t{1} << 18;

/// Walks a drawing and writes what it meets to standard output.
class DrawingDump {
public:
    /// False when the output takes no more, or the user stopped it.
    bool Write(const DXF& document, const std::wstring* block)
    {
        for (std::size_t i = 0; i < document.NumLayers(); ++i)
            if (!WriteLayer(*document[i], block)) return false;
        return true;
    }

    bool WriteBlocks(const DXF& document)
    {
        DXF::BlockMap::const_iterator block;
        for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
            if (!Write(*block->second->GetDXF(), &block->first)) return false;
        return true;
    }

    bool Flush()
    {
        const bool written = StandardOutput::Write(m_Dump.Json().Text());
        m_Dump.Json().Clear();
        return written;
    }

    std::uint64_t Done() const { return m_Done.load(std::memory_order_relaxed); }

private:
    bool WriteLayer(const DXFLayer& layer, const std::wstring* block)
    {
        m_Dump.SetPlace(layer.Name(), block);
        for (std::size_t i = 0; i < layer.NumEntities(); ++i) {
            layer[i]->Write(m_Dump);
            m_Done.fetch_add(1, std::memory_order_relaxed);
            if (m_Dump.Json().Text().size() >= PIECE && !Flush()) return false;
            if (Interrupt::IsStopped()) return false;
        }
        return true;
    }

    EntityDump m_Dump;
    std::atomic<std::uint64_t> m_Done{0};
};

int Dump(const std::wstring& file)
{
    Drawing drawing;
    if (!drawing.Read(file, {}))
        return Interrupt::IsStopped() ? SayStopped() : Fail(file, drawing.Complaint());
    drawing.Warn();

    DrawingDump dump;
    {
        // On a terminal the lines themselves show that something goes on.
        std::optional<Progress> progress;
        const auto total = static_cast<std::uint64_t>(drawing.Document().NumEntities());
        if (!Terminal::IsTerminal(Terminal::STANDARD_OUTPUT))
            progress.emplace("writing", [&dump, total] { return Progress::State{dump.Done(), total}; });
        (void)(dump.Write(drawing.Document(), nullptr) && dump.WriteBlocks(drawing.Document())
               && dump.Flush());
    }
    if (Interrupt::IsStopped()) return SayStopped();
    return StandardOutput::Finish();
}

} // namespace

void AddDump(CLI::App& program, int& status)
{
    CLI::App* command =
        program.add_subcommand("dump", "Print every entity of a drawing, one line of JSON each");
    command->footer(
        "Layers come in drawing order, then the blocks by name. The document dump.md tells the fields.\n\n"
        "Example:\n  halyard dump plan.dxf | grep '\"kind\":\"TEXT\"'");
    const auto file = std::make_shared<std::string>();
    command->add_option("FILE", *file, "The drawing to read")->required();
    command->callback([file, &status] { status = Dump(FromUtf8(*file)); });
}
