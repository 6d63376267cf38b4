#pragma once

#include "dxf/HandleSet.h"
#include "model/DXF.h"
#include "model/DXFImageDef.h"
#include "model/DXFLineBase.h"
#include "model/DXFWriter.h"
#include "platform/OutputFile.h"

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

class GroupReader;
class DXFPolyline;

/// Reader and writer of DXF exchange files: reads all text releases, writes AC1014. Used by one thread.
///
/// A DXF file is a sequence of pairs of lines, a group code and a value. Code 0 begins an object and names it. Text is one
/// byte to one character of the same value; lines end with CR LF or LF and hold at most 511 characters.
/// The flag keepGoing belongs to the caller, who may clear it in another thread to stop the work.
class HALYARD_API DXFFile : public DXFWriter {
public:
    /// The largest group code accepted.
    static constexpr int MAX_GROUP_CODE = 1071;

    /// How reading ended.
    enum ENDING {
        NOT_READ,      ///< nothing read yet, or the file could not be opened
        EOF_OBJECT,    ///< at the EOF object
        END_OF_DATA,   ///< the data end between two objects, without an EOF object
        STOPPED,       ///< the caller's flag
        EARLY,         ///< within an object: see EndLine and EndReason; what was read before it is kept
        FAILED,        ///< with an error
    };
    /// Kinds of line ends seen.
    enum LINEENDS { NO_LINEENDS, LF, CR_LF, MIXED };

    DXFFile();
    ~DXFFile() override;
    DXFFile(const DXFFile&) = delete;
    DXFFile& operator=(const DXFFile&) = delete;

    ErrorString OpenRead(const std::wstring& fileName);
    /// Replaces the contents of the document by those of the file. With clearAll the whole document is cleared first,
    /// otherwise only the contents of its layers. On failure, or when the flag stopped it, the document is cleared in the
    /// same way; being stopped is a success. Data that break off end the reading with what was whole.
    ErrorString Read(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing, bool clearAll);
    /// Writes the whole document. Only a file that cannot be opened is a failure; what happens to the output later is
    /// kept for WriteFailed. When the flag is cleared the file is completed without the rest of the entities.
    ErrorString Write(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing);

    /// Above 0 the writer adds true colours (code 420) beside colour indices. 0 when new.
    void SetExportMode(int mode) { m_ExportMode = mode; }
    /// When set, layers that reading creates inside a block take the attributes of the document's layer of that name, so
    /// that entities without a colour, style or width of their own get those of the drawing's layer table. Off when new:
    /// a block's own drawing then knows nothing of the document's layers.
    void SetBlocksUseDocumentLayers(bool use) { m_BlocksUseDocumentLayers = use; }

    /// About the last reading.
    ENDING Ending() const { return m_Ending; }
    /// Number of the line at which reading ended, 1-based; 0 before any.
    int EndLine() const { return m_EndLine; }
    /// Why it ended there, one of the messages; empty for a normal end.
    const std::wstring& EndReason() const { return m_EndReason; }
    /// Value of $ACADVER ("AC1015"); empty when the header has none.
    const std::wstring& Release() const { return m_Release; }
    LINEENDS LineEnds() const;
    /// Objects of the ENTITIES and BLOCKS sections (and those outside any section) that became nothing, by name.
    const std::map<std::wstring, std::uint64_t>& Skipped() const { return m_Skipped; }
    /// The highest handle seen in the file.
    int HandleSeed() const { return m_HandleSeed; }

    /// About the last writing: whether output failed (a full disk, ...), and why in one clause.
    bool WriteFailed() const { return m_Output.Failed(); }
    const std::wstring& WriteFailReason() const { return m_Output.Reason(); }

    /// Work done and to do, in bytes when reading and in entities when writing. May be asked from another thread.
    std::uint64_t Done() const { return m_Done.load(std::memory_order_relaxed); }
    std::uint64_t Total() const { return m_Total.load(std::memory_order_relaxed); }

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
    using DXFWriter::Write;

private:
    using P3 = GTL::Point3D<double>;

    // Reading: sections and shared readers (DXFFileRead.cpp)
    ErrorString ReadHead();
    ErrorString ReadObjects(DXF& document, const std::atomic<bool>& keepGoing);
    ErrorString ReadNextGroup();
    ErrorString ProcessGroup(DXF& document);
    bool ReadLine(std::wstring& line);
    ErrorString VerifyGroupData(std::initializer_list<int> codes);
    ErrorString ReadPoint(P3& point, int base);
    ErrorString ReadBlocks(DXF& document);
    ErrorString ReadBlock(DXF& document);
    ErrorString ReadLayer(DXF& document);
    void ReadColor(DXFEntity* entity, DXF& document);
    void ReadLineWidth(DXFLineBase* entity, DXF& document);
    void ReadLineStyle(DXFLineBase* entity, DXF& document);
    void AddHandle(int handle);

    // Reading: one reader for each kind (EntityReaders.cpp, TextReaders.cpp)
    ErrorString ReadPoint(DXF& document);
    ErrorString ReadLine(DXF& document);
    ErrorString ReadSolid(DXF& document);
    ErrorString Read3dFace(DXF& document);
    ErrorString ReadCircle(DXF& document);
    ErrorString ReadArc(DXF& document);
    ErrorString ReadPolyline(DXF& document);
    ErrorString ReadLWPolyline(DXF& document);
    ErrorString ReadText(DXF& document);
    ErrorString ReadMText(DXF& document);
    ErrorString ReadImage(DXF& document);
    ErrorString ReadImageDef(DXF& document);
    ErrorString ReadInsert(DXF& document);

    // Writing: file structure (DXFFileWrite.cpp, WriterTables.cpp, WriterObjects.cpp)
    ErrorString OpenWrite(const std::wstring& fileName);
    void WriteHeader(const DXF& document);
    void WriteClasses();
    void WriteTables(const DXF& document);
    void WriteBlocks();
    void WriteObjects(const DXF& document);
    void WriteDictionary(const DXF& document);
    void WriteImageDef(const DXF& document);
    void WriteHandle();
    std::wstring GetFreeHandle();
    static std::wstring MakeSafeName(const std::wstring& name);
    void WriteFloat(double value, int index);
    void WriteInt(int value, int index);
    void WriteAngle(double degrees, int index);
    void WriteColor(const DXFColor& color);
    void WriteColor(int index);
    void WriteColor(unsigned long color);
    void WriteLayerName(const std::wstring& name);
    void WriteEntityName(const std::wstring& name);
    void WriteBegin(const wchar_t* name);
    void WritePoint(const P3& point, int index);
    void WriteVertex(const P3& vertex);
    void WriteLineData(const DXFLineBase& entity);

    // Reader state
    std::unique_ptr<GroupReader> m_Reader;
    struct ReadState;
    std::unique_ptr<ReadState> m_ReadState; ///< what lives only while a file is read
    ENDING m_Ending = NOT_READ;
    int m_EndLine = 0;
    std::wstring m_EndReason;
    std::wstring m_Release;
    std::map<std::wstring, std::uint64_t> m_Skipped;
    int m_HandleSeed = 0;
    bool m_BlocksUseDocumentLayers = false;

    // Writer state
    OutputFile m_Output;
    const std::wstring* m_CurrentLayerName = nullptr;
    std::wstring m_RootDictionary;
    std::wstring m_GroupDictionary;
    std::wstring m_MlineDictionary;
    std::wstring m_RasterVariables;
    std::wstring m_ImageDictionary;
    std::list<std::unique_ptr<DXFImageDef>> m_ImageDefs;
    std::vector<std::wstring> m_PendingObjects;
    HandleSet m_Handles;
    int m_HandleCounter = 0;
    int m_EntityCount = 0;
    std::uint64_t m_HandleSeedPosition = 0;
    int m_ExportMode = 0;

    std::atomic<std::uint64_t> m_Done{0};
    std::atomic<std::uint64_t> m_Total{0};
};
