#pragma once

#include "dxf/HandleSet.h"
#include "model/DXF.h"
#include "model/DXFImageDef.h"
#include "model/DXFLineBase.h"
#include "model/DXFWriter.h"
#include "platform/OutputFile.h"
#include "support/DXFColor.h"

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

class DXFPolyline;
class GroupReader;
class TextEntity;
struct FixedGroup;

/// Reader and writer of DXF exchange files: reads all text releases, writes AC1014. Used by one thread.
///
/// A DXF file is a sequence of pairs of lines, a group code and a value. Code 0 begins an object and names
/// it. Text is one byte to one character of the same value; lines end with CR LF or LF and hold at most 511
/// characters. The flag keepGoing belongs to the caller, who may clear it in another thread to stop the work.
class HALYARD_API DXFFile : public DXFWriter {
public:
    /// The largest group code accepted.
    static constexpr int MAX_GROUP_CODE = 1071;

    /// How reading ended.
    enum ENDING {
        NOT_READ,    ///< nothing read yet, or the file could not be opened
        EOF_OBJECT,  ///< at the EOF object
        END_OF_DATA, ///< the data end between two objects, without an EOF object
        STOPPED,     ///< the caller's flag
        EARLY,       ///< within an object: see EndLine and EndReason; what was read before it is kept
        FAILED,      ///< with an error
    };
    /// Kinds of line ends seen.
    enum LINEENDS { NO_LINEENDS, LF, CR_LF, MIXED };

    DXFFile();
    ~DXFFile() override;
    DXFFile(const DXFFile&) = delete;
    DXFFile& operator=(const DXFFile&) = delete;

    ErrorString OpenRead(const std::wstring& fileName);
    /// Replaces the contents of the document by those of the file. With clearAll the whole document is
    /// cleared first, otherwise only the contents of its layers. On failure, or when the flag stopped it, the
    /// document is cleared in the same way; being stopped is a success. Data that break off end the reading
    /// with what was whole: an object cut short at the end of the data is dropped when there are entities
    /// before it.
    ErrorString Read(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing,
                     bool clearAll);
    /// Writes the whole document. Only a file that cannot be opened is a failure; what happens to the output
    /// later is kept for WriteFailed. When the flag is cleared the file is completed without the rest of the
    /// entities.
    ErrorString Write(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing);

    /// Above 0 the writer adds true colours (code 420) beside colour indices. 0 when new.
    void SetExportMode(int mode) { m_ExportMode = mode; }
    /// When set, layers that reading creates inside a block take the attributes of the document's layer of
    /// that name, so that entities without a colour, style or width of their own get those of the drawing's
    /// layer table; on a block's layer "0" they get the marks of DXFLayer::COLOR_OF_INSERT and its like,
    /// which InsertExploder replaces. Off when new: a block's own drawing then knows nothing of the
    /// document's layers.
    void SetBlocksUseDocumentLayers(bool use) { m_BlocksUseDocumentLayers = use; }
    /// When set, polylines of the plane, solids and TEXTs with an extrusion other than (0, 0, 1) are taken
    /// from their object coordinates to the world while they are read, by the arbitrary axis rule of the
    /// published DXF format: their entities have no extrusion of their own. Bulges in an inclined plane give
    /// way to vertices. Off when new: coordinates are then kept as they stand.
    void SetExtrusionsToWorld(bool take) { m_ExtrusionsToWorld = take; }
    /// When set, TEXTs that are aligned or fitted between two points (72 is 3 or 5) start at the first, run
    /// towards the second, and are as high as their length allows: no entity holds the width of letters. Off
    /// when new: they then start at the second point, as all texts with an alignment point do.
    void SetFitsTexts(bool fit) { m_FitsTexts = fit; }

    /// About the last reading.
    ENDING Ending() const { return m_Ending; }
    /// Number of the line at which reading ended, 1-based; 0 before any.
    int EndLine() const { return m_EndLine; }
    /// Why it ended there, one of the messages; empty for a normal end.
    const std::wstring& EndReason() const { return m_EndReason; }
    /// Value of $ACADVER ("AC1015"); empty when the header has none.
    const std::wstring& Release() const { return m_Release; }
    LINEENDS LineEnds() const;
    /// Objects of the ENTITIES and BLOCKS sections (and those outside any section) that became nothing, by
    /// name.
    const std::map<std::wstring, std::uint64_t>& Skipped() const { return m_Skipped; }
    /// The highest handle seen in the file.
    int HandleSeed() const { return m_HandleSeed; }
    /// Segments of polylines whose bulge gave way to vertices (see SetExtrusionsToWorld).
    std::uint64_t ChordedArcs() const { return m_ChordedArcs; }

    /// About the last writing: whether output failed (a full disk, ...), and why in one clause.
    bool WriteFailed() const { return m_Output.Failed(); }
    const std::wstring& WriteFailReason() const { return m_Output.Reason(); }

    /// Work done and to do, in bytes when reading and in entities when writing. May be asked from another
    /// thread.
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
    using Map = GTL::Transformation<P3>;

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
    ErrorString EndOfReading(int status);
    bool BrokeOff(const DXF& document) const;
    void CountSkipped(std::string_view name);
    void NoteHandle();
    void NoteSection();
    unsigned long TrueColor() const;
    DXFLayer* CurrentLayer(DXF& target);
    DXFLayer* TakeDocumentLayer(DXF& target, const std::wstring& name);
    std::optional<Map> MapToWorld() const;
    std::unique_ptr<DXFEntity> Mapped(std::unique_ptr<DXFEntity> entity, const std::optional<Map>& map);
    DXFEntity* AddEntity(DXF& target, DXFEntity* entity);
    void ReadLineAttributes(DXFLineBase* entity, DXF& document);
    template <class Entity>
    ErrorString ReadCorners(DXF& document, const std::optional<Map>& toWorld);
    class PolylineBuilder;
    ErrorString ReadVertices(PolylineBuilder& builder);
    ErrorString ReadTextBox(TextEntity& text);

    // Reading: one reader for each kind (EntityReaders.cpp, TextReaders.cpp, ImageReaders.cpp)
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

    // Writing: the file and its entities, primitives (DXFFileWrite.cpp)
    ErrorString OpenWrite(const std::wstring& fileName);
    void ResetWriter();
    void WriteEntities(const DXF& document, const std::atomic<bool>& keepGoing);
    void WriteEntity(DXFEntity& entity);
    void WriteHandleSeed();
    int TakeHandle();
    std::wstring GetFreeHandle();
    static std::wstring HandleText(int handle);
    static const std::wstring& WrittenLayerName(const std::wstring& name);
    void SetCurrentLayer(const std::wstring& name);
    void WriteGroups(std::string_view groups) { m_Output.Write(groups.data(), groups.size()); }
    void WriteGroups(std::span<const FixedGroup> groups);
    void WriteReal(int code, double value);
    void WriteInteger(int code, long long value);
    void WriteText(int code, std::wstring_view text);
    void WriteName(int code, std::wstring_view name);
    void WriteHandle();
    void WriteHandle(int code, int handle);
    void WriteFloat(double value, int index) { WriteReal(40 + index, value); }
    void WriteInt(int value, int index) { WriteInteger(70 + index, value); }
    void WriteAngle(double degrees, int index) { WriteReal(50 + index, degrees); }
    void WriteColor(const DXFColor& color) { WriteColor(color.Index()); }
    void WriteColor(int index) { WriteInteger(62, index); }
    void WriteColor(unsigned long color);
    void WriteLayerName(const std::wstring& name) { WriteName(8, name); }
    void WriteEntityName(const std::wstring& name) { WriteName(2, name); }
    void WriteBegin(const wchar_t* name) { WriteName(0, name); }
    void WritePoint(const P3& point, int index);
    int ColorIndex(unsigned long color);

    // Writing: what stands around the entities (WriterTables.cpp)
    void WriteHeader(DXF& document);
    void WriteClasses();
    void WriteTables(const DXF& document);
    void WriteRecordHead(std::string_view type, std::string_view recordClass);
    void WriteLineTypes(const DXF& document);
    void WriteLayers(const DXF& document);
    void WriteTextStyles(const DXF& document);
    void WriteApplications(const DXF& document);
    void WriteBlockRecords(const DXF& document);
    void WriteBlocks();
    static std::wstring MakeSafeName(const std::wstring& name);

    // Writing: images before anything else, dictionaries after it (WriterObjects.cpp)
    static DXFImage* ImageOf(DXFEntity& entity);
    void PrepareImages(const DXF& document);
    DXFImageDef& AddImageDef(const DXFImage& image);
    void QueueReactor(const DXFImage& image, int imageHandle);
    void WriteObjects();
    void WriteDictionary();
    void WriteImageDictionary();
    void WriteImageDef();

    // Writing: bodies of entities (EntityWriters.cpp)
    void WriteVertex(const P3& vertex, std::string_view head, bool withZ);
    void WriteVertices(const DXFPolyline& polyline, std::string_view head, bool withZ);
    void WriteLineData(const DXFLineBase& entity);
    void WriteNormal(const GTL::Vector3D<double>& normal);
    void WriteStyleName(const std::wstring& font);
    void WriteContent(const DXFMText& text);
    void WriteClipBoundary(const DXFImage& image);

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
    std::uint64_t m_ChordedArcs = 0;
    bool m_BlocksUseDocumentLayers = false;
    bool m_ExtrusionsToWorld = false;
    bool m_FitsTexts = false;

    // Writer state
    OutputFile m_Output;
    std::string m_CurrentLayer; ///< group 8 of the layer that is being written
    std::string m_StyleName;    ///< group 7 of the font below
    std::wstring m_StyleFont;
    std::string m_Prefix;      ///< of the MTEXT that is being written
    int m_RasterVariables = 0; ///< handle; 0 without images, as the next
    int m_ImageDictionary = 0;
    std::list<std::unique_ptr<DXFImageDef>> m_ImageDefs;
    std::string m_PendingObjects; ///< groups for the OBJECTS section
    HandleSet m_Handles;
    int m_HandleCounter = 0; ///< the last handle given out
    std::uint64_t m_HandleSeedPosition = 0;
    int m_ExportMode = 0;
    unsigned long m_LastColor = 0;
    int m_LastColorIndex = -1; ///< of m_LastColor; -1 when none was asked for

    std::atomic<std::uint64_t> m_Done{0};
    std::atomic<std::uint64_t> m_Total{0};
};
