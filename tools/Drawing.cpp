#include "Drawing.h"

#include "Interrupt.h"
#include "Progress.h"
#include "Recognition.h"
#include "Report.h"
#include "platform/InputFile.h"

#include <algorithm>

namespace {

/// "12 HATCH, 3 DIMENSION": the most frequent first.
std::wstring ListOf(const std::map<std::wstring, std::uint64_t>& skipped)
{
    constexpr std::size_t MOST = 8;
    std::vector<std::pair<std::wstring, std::uint64_t>> kinds(skipped.begin(), skipped.end());
    std::stable_sort(kinds.begin(), kinds.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    std::wstring list;
    for (std::size_t i = 0; i < std::min(kinds.size(), MOST); ++i) {
        if (i > 0) list += L", ";
        list += std::to_wstring(kinds[i].second) + L" "
                + (kinds[i].first.empty() ? L"without a name" : kinds[i].first);
    }
    if (kinds.size() > MOST) list += L" and " + std::to_wstring(kinds.size() - MOST) + L" more kinds";
    return list;
}

const char* NameOf(DXFFile::LINEENDS lineEnds)
{
    switch (lineEnds) {
    case DXFFile::LF:
        return "LF";
    case DXFFile::CR_LF:
        return "CRLF";
    case DXFFile::MIXED:
        return "mixed";
    case DXFFile::NO_LINEENDS:
        break;
    }
    return nullptr;
}

} // namespace

bool Drawing::Read(const std::wstring& file, const ReadOptions& options)
{
    m_File = file;
    const Recognition recognition = RecognizeFile(file);
    m_Complaint = recognition.complaint;
    if (recognition.model && options.models) return ReadModel(*recognition.model, *options.models);
    if (!recognition.format) return false;
    m_Format = *recognition.format;
    return m_Format == FORMAT::PLOT ? ReadPlot() : ReadDxf(options);
}

bool Drawing::ReadDxf(const ReadOptions& options)
{
    DXFFile reader;
    reader.SetBlocksUseDocumentLayers(options.asShown);
    reader.SetExtrusionsToWorld(options.asShown);
    reader.SetFitsTexts(options.asShown);
    ErrorString result = true;
    {
        const Progress progress("reading", [&reader] {
            return Progress::State{reader.Done(), reader.Total()};
        });
        result = reader.Read(m_File, m_Document, Interrupt::KeepGoing(), true);
    }
    if (Interrupt::IsStopped()) return false;
    if (!result) return Refuse(reader.Ending() != DXFFile::NOT_READ, result.Text());
    Note(reader);
    return true;
}

bool Drawing::ReadModel(MODEL kind, const ModelOptions& options)
{
    const Progress progress("reading", [] { return Progress::State(); });
    ModelReading reading = DrawModel(m_File, kind, options, m_Document);
    m_Complaint = reading.complaint;
    m_Warnings = std::move(reading.warnings);
    return reading.complaint.empty() && !Interrupt::IsStopped();
}

bool Drawing::ReadPlot()
{
    PlotFile reader;
    reader.SetKeepGoing(Interrupt::KeepGoing());
    ErrorString result = true;
    {
        const Progress progress("reading", [&reader] {
            return Progress::State{reader.Done(), reader.Total()};
        });
        result = reader.Read(m_File, &m_Document);
    }
    if (Interrupt::IsStopped()) return false;
    if (!result) return Refuse(false, result.Text());
    Note(reader);
    return true;
}

/// Complains of a file that was not found any more, or with the reader's message.
bool Drawing::Refuse(bool found, const std::wstring& message)
{
    InputFile again;
    if (!found && !again.Open(m_File))
        m_Complaint = again.Reason();
    else
        m_Complaint = L"cannot be read as a drawing: " + AsMeant(message);
    return false;
}

void Drawing::Note(const DXFFile& reader)
{
    m_Release = reader.Release();
    m_LineEnds = NameOf(reader.LineEnds());
    m_Skipped = reader.Skipped();
    m_ChordedArcs = reader.ChordedArcs();
    m_EndedEarly = reader.Ending() == DXFFile::EARLY;
    if (m_EndedEarly)
        m_Warnings.push_back(L"reading ended early, at line " + std::to_wstring(reader.EndLine())
                             + L"; what stands before it was kept (" + reader.EndReason() + L")");
    if (reader.Ending() == DXFFile::END_OF_DATA)
        m_Warnings.push_back(L"the file ends without its end mark (EOF); it may have been cut short");
    if (!m_Skipped.empty())
        m_Warnings.push_back(L"skipped: " + ListOf(m_Skipped)
                             + L" (kinds that Halyard does not hold, or objects that it could not read)");
}

void Drawing::Note(const PlotFile& reader)
{
    m_Release = std::to_wstring(reader.Version());
    m_EndedEarly = reader.Ending() == PlotFile::EARLY || reader.Ending() == PlotFile::BAD_LAYER;
    if (m_EndedEarly)
        m_Warnings.push_back(L"reading ended early, at byte " + std::to_wstring(reader.EndOffset())
                             + L"; what stands before it was kept ("
                             + (reader.Ending() == PlotFile::EARLY ? L"the file ends within a record"
                                                                   : L"a layer has a name that none can have")
                             + L")");
    if (reader.Ending() == PlotFile::END_OF_DATA)
        m_Warnings.push_back(L"the file ends without its end mark; it may have been cut short");
    if (reader.UnknownRecords() > 0)
        m_Warnings.push_back(
            L"skipped: " + std::to_wstring(reader.UnknownRecords())
            + (reader.UnknownRecords() == 1 ? L" record of an unknown kind" : L" records of unknown kinds")
            + L"; what follows may be misread");
}

void Drawing::Warn() const
{
    for (const std::wstring& warning : m_Warnings) ::Warn(m_File, warning);
}
