#pragma once

#include "ModelDrawing.h"
#include "Recognition.h"
#include "dxf/DXFFile.h"
#include "plot/PlotFile.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// How a drawing is to be read.
struct ReadOptions {
    /// Entities of blocks take what they do not say themselves from the drawing's layers, as other programs
    /// have it, and entities of the plane are taken from object coordinates to the world.
    bool asShown = false;
    /// Models become drawings in this way; without it they are refused.
    std::optional<ModelOptions> models = {};
};

/// A drawing read from a file, and what there is to say about the reading.
class Drawing {
public:
    /// Recognises the file by its first bytes and reads it. False when there is no drawing in the end: the
    /// complaint says why. Also false when the user stopped it (ask Interrupt).
    [[nodiscard]] bool Read(const std::wstring& file, const ReadOptions& options);
    /// Why reading failed: a clause that follows the file's name.
    const std::wstring& Complaint() const { return m_Complaint; }

    const std::wstring& File() const { return m_File; }
    DXF& Document() { return m_Document; }
    const DXF& Document() const { return m_Document; }

    /// "dxf" or "plot"
    const char* Format() const { return m_Format == FORMAT::PLOT ? "plot" : "dxf"; }
    /// As the file names it ("AC1015"; of a plot file its version, "9"); empty when it does not.
    const std::wstring& Release() const { return m_Release; }
    /// "CRLF", "LF" or "mixed"; null when the file has no line ends.
    const char* LineEnds() const { return m_LineEnds; }
    /// Objects that were passed over, by name.
    const std::map<std::wstring, std::uint64_t>& Skipped() const { return m_Skipped; }
    /// Reading ended before the end of the file.
    bool EndedEarly() const { return m_EndedEarly; }
    /// Arcs of polylines in inclined planes that became chords when they were read.
    std::uint64_t ChordedArcs() const { return m_ChordedArcs; }
    /// Sentences about what was passed over and how reading ended.
    const std::vector<std::wstring>& Warnings() const { return m_Warnings; }
    /// Writes the warnings to standard error.
    void Warn() const;

private:
    bool ReadDxf(const ReadOptions& options);
    bool ReadPlot();
    bool ReadModel(MODEL kind, const ModelOptions& options);
    bool Refuse(bool found, const std::wstring& message);
    void Note(const DXFFile& reader);
    void Note(const PlotFile& reader);

    std::wstring m_File;
    std::wstring m_Complaint;
    DXF m_Document;
    FORMAT m_Format = FORMAT::DXF;
    std::wstring m_Release;
    const char* m_LineEnds = nullptr;
    std::map<std::wstring, std::uint64_t> m_Skipped;
    std::vector<std::wstring> m_Warnings;
    bool m_EndedEarly = false;
    std::uint64_t m_ChordedArcs = 0;
};
