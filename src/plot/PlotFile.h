#pragma once

#include "model/DXF.h"
#include "model/DXFLineBase.h"
#include "model/DXFWriter.h"
#include "support/CRCFile.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

class PlotInput;
class PlotOutput;
class TextEntity;

/// Reader and writer of plot files, the library's own compact binary form of a whole drawing: versions 3, 4,
/// 5, 6 and 9 are read, 9 is written. docs/formats/plot.md lays out every byte and tells what the form does
/// not hold. Used by one thread, for one reading or writing at a time.
class HALYARD_API PlotFile : public DXFWriter {
public:
    /// Kinds of records.
    enum HEADER : std::int32_t {
        END_OF_FILE = -1,
        LAYER = 1,
        SOLID = 2,
        MTEXT = 3,
        LINE = 4,
        POLYLINE = 5,
        POLYGON = 6,
        POINT = 7,
        CIRCLE = 8,
        TEXT = 9,
        ARC = 10,
        IMAGE = 11,
        FACE = 12,
        INSERT = 13,
        BLOCK = 14,
        BLOCK_END = 15,
    };
    /// How reading ended.
    enum ENDING {
        NOT_READ,    ///< nothing read yet, or not a plot file of a known version
        END_MARK,    ///< at the end mark
        END_OF_DATA, ///< the data end between two records, without an end mark
        EARLY,       ///< within a record, which the data left cannot hold: see EndOffset
        BAD_LAYER,   ///< at a layer whose name no layer can have
        STOPPED,     ///< the caller's flag
    };

    PlotFile();
    ~PlotFile() override;
    PlotFile(const PlotFile&) = delete;
    PlotFile& operator=(const PlotFile&) = delete;

    /// Writes the whole document, hidden layers too. Fails when the name is empty, the file cannot be opened
    /// or written (a full disk), or the drawing needs more than the 4 GB that offsets reach; such a file is
    /// of no use then.
    ErrorString Write(const std::wstring& fileName, const DXF* document);
    /// Replaces the contents of the document by those of the file. A file that is no plot file leaves the
    /// document as it was, one of an unknown version leaves it cleared. Data that break off are no failure:
    /// every record that was whole stays, and Ending tells.
    ErrorString Read(const std::wstring& fileName, DXF* document);

    /// The flag belongs to the caller and may be cleared in another thread. Reading then stops with a cleared
    /// document; writing completes the file without the rest of the entities. Both are successes.
    void SetKeepGoing(const std::atomic<bool>& keepGoing) { m_KeepGoing = &keepGoing; }

    /// About the last reading.
    ENDING Ending() const { return m_Ending; }
    /// Offset in the file where the record begins at which reading ended.
    std::uint64_t EndOffset() const { return m_RecordStart; }
    /// Version of the file; 0 when it has none.
    int Version() const { return m_Version; }
    /// Records of kinds that no version has, each of which was passed over by its head of eight bytes.
    std::uint64_t UnknownRecords() const { return m_UnknownRecords; }
    /// About the last writing: blocks within blocks, which have no place in the form and which no insert can
    /// show.
    std::uint64_t BlocksLeftOut() const { return m_BlocksLeftOut; }

    /// About the last writing: whether the output failed (a full disk, more than 4 GB), and why in one
    /// clause. A file that could not be opened is told by Write alone.
    bool WriteFailed() const { return !m_WriteFailReason.empty(); }
    const std::wstring& WriteFailReason() const { return m_WriteFailReason; }

    /// Work done and to do, in bytes when reading and in entities when writing. May be asked from another
    /// thread.
    std::uint64_t Done() const { return m_Done.load(std::memory_order_relaxed); }
    std::uint64_t Total() const { return m_Total.load(std::memory_order_relaxed); }

    void Write(const DXFInsert& insert) override;
    void Write(const DXF3dFace& face) override;
    void Write(const DXFImage& image) override;
    void Write(const DXFMText& text) override;
    void Write(const DXFText& text) override;
    void Write(const DXFArc& arc) override;
    void Write(const DXFCircle& circle) override;
    void Write(const DXFPolygon& polygon) override;
    void Write(const DXFPolyline& polyline) override;
    void Write(const DXFSolid& solid) override;
    void Write(const DXFPoint& point) override;
    void Write(const DXFLine& line) override;

private:
    // Writing
    void WriteDocument(const DXF& document);
    void Write(const DXFBlock& block);
    void Write(const DXFLayer& layer);
    void WriteBlockHeader(HEADER kind, std::uint64_t bodySize);
    template <class Record>
    void WriteRecord(HEADER kind, const Record& record);
    ErrorString EndOfWriting();

    // Reading
    ErrorString ReadDocument();
    void ReadNextGroup();
    bool ReadHeader(std::int32_t& kind);
    bool ReadLayer();
    bool ReadBlock();
    bool ReadBlockEnd();
    template <class Record>
    bool ReadRecord(Record& record);
    template <class Entity>
    bool ReadEntity();
    bool Read(DXFInsert* insert);
    template <class Cornered>
    bool ReadCorners(Cornered* entity);
    bool Read(DXF3dFace* face) { return ReadCorners(face); }
    bool Read(DXFImage* image);
    bool Read(DXFMText* text);
    bool Read(DXFText* text);
    bool Read(DXFArc* arc);
    bool Read(DXFCircle* circle);
    bool Read(DXFPolygon* polygon);
    bool Read(DXFPolyline* polyline);
    bool Read(DXFSolid* solid) { return ReadCorners(solid); }
    bool Read(DXFPoint* point);
    bool Read(DXFLine* line);
    void LoadPicture(DXFImage& image, const std::wstring& file);
    using RecordReader = bool (PlotFile::*)();
    static RecordReader ReaderOf(std::int32_t kind);

    struct TextScratch;

    CRCFile m_File;
    PlotOutput* m_Output = nullptr; ///< while something is written
    PlotInput* m_Input = nullptr;   ///< while something is read
    DXF* m_Document = nullptr;      ///< that is read
    DXF* m_Drawing = nullptr;       ///< that takes layers: the document's or the current block's
    DXFLayer* m_Layer = nullptr;    ///< that takes entities
    bool m_DocumentHasZero = false; ///< a record of its layer "0" was read
    bool m_BlockHasZero = false;    ///< likewise, of the current block's drawing
    std::wstring m_Folder;          ///< of the file that is read
    std::map<std::wstring, const DXFImage*> m_Pictures; ///< an image of each file that was loaded
    const std::atomic<bool>* m_KeepGoing;
    std::unique_ptr<TextScratch> m_Scratch;
    ENDING m_Ending = NOT_READ;
    std::int32_t m_Version = 0;
    std::uint64_t m_RecordStart = 0;
    std::uint64_t m_UnknownRecords = 0;
    std::uint64_t m_BlocksLeftOut = 0;
    std::wstring m_WriteFailReason;
    std::uint64_t m_Written = 0; ///< entities
    std::atomic<std::uint64_t> m_Done{0};
    std::atomic<std::uint64_t> m_Total{0};
};
