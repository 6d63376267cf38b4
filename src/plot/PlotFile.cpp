#include "plot/PlotFile.h"

#include "model/FetchAhead.h"
#include "platform/FilePath.h"
#include "platform/FileSystem.h"
#include "plot/PlotBody.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string_view>

namespace {

using PlotRecords::Owned;
using PlotRecords::Viewed;

/// The first 17 bytes of the UTF-16 text "HALYARD PLOT FILE".
constexpr std::string_view MAGIC("H\0A\0L\0Y\0A\0R\0D\0 \0P", 17);
constexpr std::int32_t VERSIONS[] = {3, 4, 5, 6, 9};
/// Entities that are written from one look at the caller's flag to the next.
constexpr std::size_t BETWEEN_LOOKS = 64;
constexpr wchar_t TOO_LARGE[] = L"the drawing needs more than the 4 GB that a plot file can have";

} // namespace

ErrorString PlotFile::Write(const std::wstring& fileName, const DXF* document)
{
    if (fileName.empty()) return ErrorString(Message::EmptyNameWritingPlot);
    if (!document) return false;
    m_WriteFailReason.clear();
    if (!m_File.Open(fileName, L"wb+")) return ErrorString::LastError();
    m_Written = 0;
    m_BlocksLeftOut = 0;
    PlotOutput output(m_File, [this] {
        m_Done.store(m_Written, std::memory_order_relaxed);
        return m_KeepGoing->load(std::memory_order_relaxed);
    });
    m_Output = &output;
    WriteDocument(*document);
    ErrorString result = EndOfWriting();
    m_Output = nullptr;
    return result;
}

void PlotFile::WriteDocument(const DXF& document)
{
    m_Done.store(0, std::memory_order_relaxed);
    m_Total.store(static_cast<std::uint64_t>(document.NumEntities()), std::memory_order_relaxed);
    m_Output->Append(MAGIC.data(), MAGIC.size());
    PlotRecords::Put{*m_Output}(PlotRecords::VERSION);
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        Write(*block->second);
    for (std::size_t i = 0; i < document.NumLayers(); ++i) Write(*document[i]);
    PlotRecords::Put{*m_Output}(std::int32_t{END_OF_FILE});
}

ErrorString PlotFile::EndOfWriting()
{
    m_Output->Flush();
    errno = 0;
    if (!m_File.Close()) m_Output->Fail(FileSystem::ErrnoText(errno));
    if (!m_Output->Failed()) return true;
    m_WriteFailReason = m_Output->Reason();
    return ErrorString(Message::IoError) << L" (" << m_Output->Reason() << L")";
}

void PlotFile::Write(const DXFBlock& block)
{
    WriteRecord(BLOCK, PlotRecords::Block<Viewed>{block.Name(), block.LayerName(), block.BasePoint(),
                                                  block.BlockTypeFlag(), block.Xref()});
    const DXF& drawing = *block.GetDXF();
    m_BlocksLeftOut += drawing.NumBlocks();
    for (std::size_t i = 0; i < drawing.NumLayers(); ++i) Write(*drawing[i]);
    WriteRecord(BLOCK_END, PlotRecords::BlockEnd());
}

void PlotFile::Write(const DXFLayer& layer)
{
    WriteRecord(LAYER, PlotRecords::Layer<Viewed>{layer.Name(), layer.IsVisible(), {layer.Color()}});
    const std::size_t count = layer.NumEntities();
    for (std::size_t i = 0; i < count; ++i) {
        if (i % BETWEEN_LOOKS == 0) m_Output->Look();
        if (m_Output->Failed() || m_Output->IsStopped()) return;
        FetchAhead(layer, i, count);
        layer[i]->Write(*this);
        ++m_Written;
    }
}

/// The end of a record is known before its body is written, so that no word has to be filled in later.
void PlotFile::WriteBlockHeader(HEADER kind, std::uint64_t bodySize)
{
    constexpr std::uint64_t HEADER_SIZE = 8;
    constexpr std::uint64_t LAST_OFFSET = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t end = m_Output->Tell() + HEADER_SIZE + bodySize;
    if (end > LAST_OFFSET) m_Output->Fail(TOO_LARGE);
    PlotRecords::Put{*m_Output}(PlotRecords::Header{kind, static_cast<std::uint32_t>(end)});
}

ErrorString PlotFile::Read(const std::wstring& fileName, DXF* document)
{
    if (fileName.empty()) return ErrorString(Message::EmptyNameReadingPlot);
    if (!document) return false;
    m_Ending = NOT_READ;
    m_Version = 0;
    m_UnknownRecords = 0;
    m_RecordStart = 0;
    m_Pictures.clear();
    m_Folder = FilePath::Folder(fileName);
    if (!m_File.Open(fileName, L"rb")) return ErrorString::LastError();
    PlotInput input(m_File, [this] {
        m_Done.store(m_Input->Tell(), std::memory_order_relaxed);
        return m_KeepGoing->load(std::memory_order_relaxed);
    });
    m_Input = &input;
    m_Done.store(0, std::memory_order_relaxed);
    m_Total.store(input.Size(), std::memory_order_relaxed);

    m_Document = m_Drawing = document;
    ErrorString result = ReadDocument();
    if (input.IsStopped()) {
        m_Ending = STOPPED;
        document->Clear();
        result = true;
    }
    m_Input = nullptr;
    m_Document = m_Drawing = nullptr;
    m_Layer = nullptr;
    m_Pictures.clear();
    m_File.Close();
    return result;
}

ErrorString PlotFile::ReadDocument()
{
    char magic[MAGIC.size()] = {};
    if (!m_Input->Take(magic, sizeof magic) || MAGIC != std::string_view(magic, sizeof magic))
        return ErrorString(Message::NotAPlotFile);
    m_Document->Clear();
    m_DocumentHasZero = false;
    m_Layer = (*m_Document)[0ULL];
    if (!m_Input->Take(&m_Version, sizeof m_Version)) m_Version = 0;
    if (std::find(std::begin(VERSIONS), std::end(VERSIONS), m_Version) == std::end(VERSIONS))
        return ErrorString(Message::InvalidFileVersion);
    ReadNextGroup();
    return true;
}

void PlotFile::ReadNextGroup()
{
    m_Ending = EARLY;
    std::int32_t kind = END_OF_FILE;
    while (ReadHeader(kind)) {
        const RecordReader reader = ReaderOf(kind);
        if (!reader)
            ++m_UnknownRecords;
        else if (!(this->*reader)())
            return;
    }
}

/// False where there is no further record.
bool PlotFile::ReadHeader(std::int32_t& kind)
{
    m_RecordStart = m_Input->Tell();
    const bool atEnd = m_Input->Left() == 0;
    std::uint32_t unused = 0;
    if (m_Input->Take(&kind, sizeof kind) && kind != END_OF_FILE)
        return m_Input->Take(&unused, sizeof unused);
    if (atEnd)
        m_Ending = END_OF_DATA;
    else if (!m_Input->Failed())
        m_Ending = END_MARK;
    return false;
}

bool PlotFile::ReadLayer()
{
    PlotRecords::Layer<Owned> record;
    if (!ReadRecord(record)) return false;
    const HashedString<wchar_t> name(record.name);
    DXFLayer* layer = (*m_Drawing)[name];
    bool& hasZero = m_Drawing == m_Document ? m_DocumentHasZero : m_BlockHasZero;
    if (!layer) {
        layer = m_Drawing->AddLayer(record.name);
    } else if (!hasZero && layer->Name() == L"0") {
        // Every drawing has layer "0" from the start, but its place in the order is that of its first record.
        hasZero = true;
        if (layer->NumEntities() == 0) m_Drawing->BringToFront(layer->Name());
    }
    if (!layer) {
        m_Ending = BAD_LAYER;
        return false;
    }
    layer->SetVisible(record.visible);
    layer->SetColor(record.color.device);
    m_Layer = layer;
    return true;
}

bool PlotFile::ReadBlock()
{
    PlotRecords::Block<Owned> record;
    if (!ReadRecord(record)) return false;
    DXFBlock* block = m_Document->AddBlock(record.name);
    block->SetLayerName(record.layer);
    block->SetBasePoint(record.base);
    block->SetBlockTypeFlag(record.flags);
    block->SetXref(record.xref);
    m_Drawing = block->GetDXF();
    m_BlockHasZero = false;
    return true;
}

bool PlotFile::ReadBlockEnd()
{
    m_Drawing = m_Document;
    return true;
}
