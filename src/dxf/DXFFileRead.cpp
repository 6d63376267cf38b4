#include "dxf/ReadState.h"

#include "platform/FilePath.h"
#include "support/NumberText.h"
#include "support/UtilityTimer.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/// BLOCKS sections within blocks are read to this depth.
constexpr int MAX_BLOCKS_DEPTH = 64;

/// The groups of the header that the writer writes; an empty value stands for any.
constexpr std::array<std::pair<int, std::string_view>, 20> OWN_HEADER = {{
    {2, "HEADER"},  {9, "$ACADVER"}, {1, "AC1014"}, {9, "$EXTMIN"},   {10, ""},       {20, ""}, {30, ""},
    {9, "$EXTMAX"}, {10, ""},        {20, ""},      {30, ""},         {9, "$LIMMIN"}, {10, ""}, {20, ""},
    {9, "$LIMMAX"}, {10, ""},        {20, ""},      {9, "$HANDSEED"}, {5, ""},        {0, ""},
}};
constexpr std::size_t OWN_SEED_LENGTH = 7;

bool IsOwnHeader(const GroupReader& groups)
{
    if (groups.NumGroups() != OWN_HEADER.size() - 1) return false;
    for (std::size_t i = 0; i < groups.NumGroups(); ++i) {
        const auto& [code, value] = OWN_HEADER[i];
        if (groups.CodeAt(i) != code || (!value.empty() && groups.ValueAt(i) != value)) return false;
    }
    return groups.First(5).size() == OWN_SEED_LENGTH;
}

/// Value of the header variable, from the group that follows its name.
std::wstring HeaderVariable(const GroupReader& groups, std::string_view name)
{
    for (std::size_t i = 0; i + 1 < groups.NumGroups(); ++i)
        if (groups.CodeAt(i) == 9 && groups.ValueAt(i) == name) return Widen(groups.ValueAt(i + 1));
    return {};
}

ErrorString LineError(int line, Message what)
{
    ErrorString error(Message::ErrorLine);
    error << line << what;
    return error;
}

/// Entities on layer "0" of a block look as the layer that it is inserted on.
void LeaveToInsert(DXFLayer& layer)
{
    layer.SetColor(DXFLayer::COLOR_OF_INSERT);
    layer.SetWidth(DXFLayer::WIDTH_OF_INSERT);
    layer.SetStyle(static_cast<LineInfo::LINESTYLE>(DXFLayer::STYLE_OF_INSERT));
}

/// Clears the whole document, or the contents of its layers.
void ClearDocument(DXF& document, bool all)
{
    if (all) return document.Clear();
    for (unsigned long long i = 0; i < document.NumLayers(); ++i) document[i]->Clear();
}

} // namespace

std::wstring Widen(std::string_view bytes)
{
    std::wstring text(bytes.size(), L'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
    return text;
}

float FloatOf(std::string_view text)
{
    constexpr double LARGEST = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(ParseDouble(text), -LARGEST, LARGEST));
}

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

bool SameName(std::string_view bytes, std::string_view upperCaseName)
{
    return bytes.size() == upperCaseName.size()
           && std::equal(bytes.begin(), bytes.end(), upperCaseName.begin(), [](char a, char b) {
                  return a == b || (a >= 'a' && a <= 'z' && a - 'a' + 'A' == b);
              });
}

DXFFile::DXFFile() : m_Reader(std::make_unique<GroupReader>()), m_ReadState(std::make_unique<ReadState>()) {}

DXFFile::~DXFFile() = default;

ErrorString DXFFile::OpenRead(const std::wstring& fileName)
{
    m_Reader->Close();
    if (m_Reader->Open(fileName)) return true;
    ErrorString error(Message::ErrorOpeningFile);
    error << FilePath::FileName(fileName) << Message::ForReading;
    return error;
}

DXFFile::LINEENDS DXFFile::LineEnds() const
{
    if (m_Reader->NumLineEnds() == 0) return NO_LINEENDS;
    if (m_Reader->NumCrLf() == 0) return LF;
    return m_Reader->NumCrLf() == m_Reader->NumLineEnds() ? CR_LF : MIXED;
}

ErrorString DXFFile::Read(const std::wstring& fileName, DXF& document, const std::atomic<bool>& keepGoing,
                          bool clearAll)
{
    *m_ReadState = ReadState();
    m_ReadState->document = &document;
    m_ReadState->keepGoing = &keepGoing;
    m_ReadState->folder = FilePath::Folder(fileName);
    m_Ending = NOT_READ;
    m_EndLine = 0;
    m_EndReason.clear();
    m_Release.clear();
    m_Skipped.clear();
    m_HandleSeed = 0;
    m_ChordedArcs = 0;
    m_Done = 0;
    ClearDocument(document, clearAll);
    if (ErrorString opened = OpenRead(fileName); !opened) return opened;
    m_Total = m_Reader->FileSize();

    UtilityTimer timer;
    m_Reader->SetLine(0);
    ErrorString result = ReadHead();
    if (!!result) result = ReadObjects(document, keepGoing);
    if (!result) {
        m_Ending = FAILED;
        m_EndLine = m_Reader->Line();
        m_EndReason = result.Text();
    }
    const bool stopped = !!result && !keepGoing.load();
    if (stopped) m_Ending = STOPPED;
    if (!result || stopped) ClearDocument(document, clearAll);
    *m_ReadState = ReadState();
    if (!result) return result;
    (void)timer.Stop();
    m_Done = m_Total.load();
    m_Reader->Finish();
    return true;
}

ErrorString DXFFile::ReadHead()
{
    std::wstring line;
    for (;;) {
        if (!ReadLine(line)) return LineError(m_Reader->Line(), Message::NoDataExpectedZero);
        const int code = atoi(line);
        if (code == 0) return true;
        if (code != 999) {
            ErrorString error = LineError(m_Reader->Line(), Message::UnexpectedGroupCode);
            error << code << Message::UnexpectedGroupCodeFound;
            return error;
        }
        if (!ReadLine(line)) return LineError(m_Reader->Line(), Message::NoDataExpectedName);
    }
}

ErrorString DXFFile::ReadObjects(DXF& document, const std::atomic<bool>& keepGoing)
{
    for (;;) {
        if (!ReadNextGroup()) return true;
        if (!keepGoing.load(std::memory_order_relaxed)) return true;
        const ErrorString processed = ProcessGroup(document);
        if (!!processed) continue;
        if (!BrokeOff(document)) return processed;
        m_Ending = EARLY;
        m_EndLine = m_Reader->Line();
        m_EndReason = processed.Text();
        return true;
    }
}

/// True when the data ended within the object at hand and there is something whole before it that must not be
/// lost.
bool DXFFile::BrokeOff(const DXF& document) const
{
    return m_Reader->AtEnd() && m_ReadState->blocksDepth == 0 && document.NumEntities() > 0;
}

bool DXFFile::ReadLine(std::wstring& line)
{
    line = Widen(m_Reader->ReadLine());
    return !line.empty() || !(m_Reader->AtEnd() || m_Reader->Failed());
}

ErrorString DXFFile::ReadNextGroup()
{
    const GroupReader::Status status = m_Reader->ReadObject(MAX_GROUP_CODE);
    m_Done.store(m_Reader->BytesRead(), std::memory_order_relaxed);
    if (status == GroupReader::Status::OK && !SameName(m_Reader->Name(), "EOF")) return true;
    return EndOfReading(static_cast<int>(status));
}

/// Keeps how and where the reading ended, the first time that it does.
ErrorString DXFFile::EndOfReading(int groupStatus)
{
    using Status = GroupReader::Status;
    const auto status = static_cast<Status>(groupStatus);
    ErrorString error = LineError(m_Reader->Line(), Message::NoDataExpectedName);
    if (status == Status::BAD_CODE) {
        error = ErrorString(Message::InvalidGroupCode);
        error << m_Reader->Code() << Message::ExclamationMark;
    } else if (status == Status::IO_ERROR) {
        error = ErrorString(Message::IoError);
    }
    if (m_Ending != NOT_READ) return error;
    m_EndLine = m_Reader->Line();
    if (status == Status::OK) {
        m_Ending = EOF_OBJECT;
    } else if (m_Reader->LineTooLong()) {
        m_Ending = EARLY;
        m_EndLine = m_Reader->LongLine();
        m_EndReason = L"A line is longer than 511 characters.";
    } else {
        m_Ending = status == Status::NO_NAME ? END_OF_DATA : EARLY;
        if (m_Ending == EARLY) m_EndReason = error.Text();
    }
    return error;
}

namespace {

/// Names that carry structure, not content.
constexpr std::array<std::string_view, 7> STRUCTURE = {"SECTION", "ENDSEC", "TABLE", "ENDTAB",
                                                       "SEQEND",  "ENDBLK", "BLOCK"};
/// Sections whose other objects are not part of the picture.
constexpr std::array<std::wstring_view, 6> BACKGROUND = {L"HEADER",  L"CLASSES",        L"TABLES",
                                                         L"OBJECTS", L"THUMBNAILIMAGE", L"ACDSDATA"};

} // namespace

void DXFFile::CountSkipped(std::string_view name)
{
    if (name.empty()) return;
    if (std::any_of(STRUCTURE.begin(), STRUCTURE.end(), [name](auto n) { return SameName(name, n); })) return;
    const std::wstring& section = m_ReadState->section;
    if (std::find(BACKGROUND.begin(), BACKGROUND.end(), section) != BACKGROUND.end()) return;
    ++m_Skipped[Widen(name)];
}

void DXFFile::NoteHandle()
{
    const std::string_view text = m_Reader->First(5);
    std::uint64_t handle = 0;
    for (const char c : text.substr(std::min(text.find_first_not_of(' '), text.size()))) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0 || handle > 0x7FFFFFFF) break;
        handle = handle * 16 + static_cast<std::uint64_t>(digit);
    }
    m_HandleSeed = std::max(m_HandleSeed, static_cast<int>(std::min<std::uint64_t>(handle, 0x7FFFFFFF)));
}

/// A section begins or ends: notes which one, and what the header says.
void DXFFile::NoteSection()
{
    const std::string_view name = m_Reader->Name();
    if (SameName(name, "ENDSEC")) m_ReadState->section.clear();
    if (!SameName(name, "SECTION")) return;
    m_ReadState->section = Widen(UpperCase(m_Reader->First(2)));
    if (!SameName(m_Reader->First(2), "HEADER")) return;
    m_ReadState->ownHeader = IsOwnHeader(*m_Reader);
    m_Release = HeaderVariable(*m_Reader, "$ACADVER");
}

ErrorString DXFFile::ProcessGroup(DXF& document)
{
    struct Row {
        std::string_view name;
        ReadState::Reader reader;
    };
    static constexpr std::array<Row, 14> READERS = {{
        {"LINE", &DXFFile::ReadLine},
        {"LWPOLYLINE", &DXFFile::ReadLWPolyline},
        {"POLYLINE", &DXFFile::ReadPolyline},
        {"LAYER", &DXFFile::ReadLayer},
        {"POINT", &DXFFile::ReadPoint},
        {"SOLID", &DXFFile::ReadSolid},
        {"3DFACE", &DXFFile::Read3dFace},
        {"CIRCLE", &DXFFile::ReadCircle},
        {"MTEXT", &DXFFile::ReadMText},
        {"TEXT", &DXFFile::ReadText},
        {"ARC", &DXFFile::ReadArc},
        {"IMAGE", &DXFFile::ReadImage},
        {"IMAGEDEF", &DXFFile::ReadImageDef},
        {"INSERT", &DXFFile::ReadInsert},
    }};
    if (m_Reader->Has(5)) NoteHandle();
    const std::string_view name = m_Reader->Name();
    for (const Row& row : READERS)
        if (SameName(name, row.name)) return (this->*row.reader)(document);
    NoteSection();
    if (SameName(name, "SECTION") && SameName(m_Reader->First(2), "BLOCKS")) return ReadBlocks(document);
    CountSkipped(m_Reader->Name());
    return true;
}

ErrorString DXFFile::ReadBlocks(DXF& document)
{
    if (m_ReadState->blocksDepth >= MAX_BLOCKS_DEPTH) return true;
    ++m_ReadState->blocksDepth;
    ErrorString result = true;
    while (!!result && !m_ReadState->Stopped()) {
        if (!ReadNextGroup() || m_Reader->Name() == "ENDSEC") break;
        if (SameName(m_Reader->Name(), "BLOCK"))
            result = ReadBlock(document);
        else
            CountSkipped(m_Reader->Name());
    }
    --m_ReadState->blocksDepth;
    if (m_ReadState->blocksDepth == 0) m_ReadState->section.clear();
    return result;
}

ErrorString DXFFile::ReadBlock(DXF& document)
{
    DXFBlock* block = document.AddBlock(Widen(m_Reader->First(2)));
    P3 base;
    if (ErrorString read = ReadPoint(base, 0); !read) return read;
    block->SetBasePoint(base);
    block->SetLayerName(Widen(m_Reader->First(8)));
    block->SetBlockTypeFlag(ParseInt(m_Reader->First(70)));
    block->SetXref(Widen(m_Reader->First(1)));
    DXF* inner = block->GetDXF();
    if (m_BlocksUseDocumentLayers) LeaveToInsert(*(*inner)[L"0"]);
    while (!m_ReadState->Stopped()) {
        if (ErrorString read = ReadNextGroup(); !read) return read;
        if (m_Reader->Name() == "ENDBLK") break;
        // What fails may have read on, up to the last of its vertices.
        const std::string name(m_Reader->Name());
        if (!ProcessGroup(*inner)) CountSkipped(name);
    }
    return true;
}

ErrorString DXFFile::ReadLayer(DXF& document)
{
    if (ErrorString verified = VerifyGroupData({2, 62}); !verified) return verified;
    const std::wstring name = Widen(m_Reader->First(2));
    DXFLayer* layer = document.AddLayer(name);
    if (!layer) layer = document[HashedString<wchar_t>(name)];
    if (!layer) {
        ErrorString error(Message::ErrorAddingLayer);
        error << name << L".";
        return error;
    }
    const int value = ParseInt(m_Reader->First(62));
    const long long index = value < 0 ? -static_cast<long long>(value) : value;
    if (value < 0) layer->SetVisible(false);
    layer->SetColor(DXFColor(index <= 255 ? static_cast<int>(index) : 0));
    if (m_Reader->Has(420)) layer->SetColor(TrueColor());
    if (m_Reader->Has(6)) layer->SetStyleStr(Widen(m_Reader->First(6)));
    const int width = ParseInt(m_Reader->First(370));
    if (width > 0) layer->SetWidth(static_cast<float>(width) / 100.0F);
    return true;
}

ErrorString DXFFile::VerifyGroupData(std::initializer_list<int> codes)
{
    for (const int code : codes) {
        const std::size_t index = m_Reader->IndexOf(code);
        if (index != GroupReader::NONE && !m_Reader->ValueAt(index).empty()) continue;
        ErrorString error(Message::ErrorBeforeLine);
        error << m_Reader->Line();
        if (index != GroupReader::NONE)
            error << Message::NoGroupData;
        else
            error << Message::ExpectedGroupCode << code << L".";
        return error;
    }
    return true;
}

ErrorString DXFFile::ReadPoint(P3& point, int base)
{
    if (ErrorString verified = VerifyGroupData({base + 10, base + 20}); !verified) return verified;
    point.X(ParseDouble(m_Reader->First(base + 10)));
    point.Y(ParseDouble(m_Reader->First(base + 20)));
    if (m_Reader->Has(base + 30)) point.Z(ParseDouble(m_Reader->First(base + 30)));
    return true;
}

/// Value of code 420, a colour 0x00RRGGBB in the file.
unsigned long DXFFile::TrueColor() const
{
    return SwapRedBlue(static_cast<unsigned long>(ParseInt(m_Reader->First(420))));
}

void DXFFile::ReadColor(DXFEntity* entity, DXF& document)
{
    if (m_Reader->Has(420)) return entity->SetColor(TrueColor());
    if (m_Reader->Has(62)) {
        const int index = ParseInt(m_Reader->First(62));
        return entity->SetColor(DXFColor(index >= 0 && index <= 255 ? index : 0));
    }
    if (const DXFLayer* layer = CurrentLayer(document)) entity->SetColor(layer->Color());
}

void DXFFile::ReadLineWidth(DXFLineBase* entity, DXF& document)
{
    if (m_Reader->Has(370)) {
        const int width = ParseInt(m_Reader->First(370));
        if (width >= 0) entity->SetWidth(static_cast<float>(width) / 100.0F);
        return;
    }
    if (m_ReadState->ownHeader && m_Reader->Has(39)) return entity->SetWidth(FloatOf(m_Reader->First(39)));
    if (const DXFLayer* layer = CurrentLayer(document)) entity->SetWidth(layer->Width());
}

void DXFFile::ReadLineStyle(DXFLineBase* entity, DXF& document)
{
    if (m_Reader->Has(6)) {
        const std::string_view name = m_Reader->First(6);
        if (SameName(name, "CONTINUOUS")) return entity->SetStyle(LineInfo::CONTINUOUS);
        return entity->SetStyleStr(Widen(name));
    }
    if (const DXFLayer* layer = CurrentLayer(document)) entity->SetStyle(layer->Style());
}

void DXFFile::AddHandle(int handle)
{
    m_Handles.Add(handle);
}

/// The layer of the target drawing that code 8 of the current object names, or null. The look-up is by bytes
/// and kept for one drawing at a time; layers are never removed while a file is read.
DXFLayer* DXFFile::CurrentLayer(DXF& target)
{
    ReadState& state = *m_ReadState;
    if (state.layersOf != &target) {
        state.layers.clear();
        state.lastLayer = nullptr;
        state.layersOf = &target;
    }
    const std::string_view bytes = m_Reader->First(8);
    if (state.lastLayer && state.lastLayer->first == bytes) return state.lastLayer->second;
    auto place = state.layers.find(bytes);
    if (place == state.layers.end()) {
        const std::wstring name = Widen(bytes);
        DXFLayer* layer = target[HashedString<wchar_t>(name)];
        if (!layer && m_BlocksUseDocumentLayers && &target != state.document)
            layer = TakeDocumentLayer(target, name);
        if (!layer) return nullptr;
        place = state.layers.emplace(std::string(bytes), layer).first;
    }
    state.lastLayer = &*place;
    return place->second;
}

/// A layer of a block's drawing made after the document's layer of that name; null when the document has
/// none.
DXFLayer* DXFFile::TakeDocumentLayer(DXF& target, const std::wstring& name)
{
    const DXFLayer* model = (*m_ReadState->document)[HashedString<wchar_t>(name)];
    DXFLayer* layer = model ? target.AddLayer(name) : nullptr;
    if (!layer) return nullptr;
    layer->SetColor(model->Color());
    layer->SetWidth(model->Width());
    layer->SetStyle(static_cast<LineInfo::LINESTYLE>(model->Style()));
    return layer;
}

/// Hands a new entity to the layer that code 8 names, making it when missing. Null, and the entity is gone,
/// when there can be no such layer.
DXFEntity* DXFFile::AddEntity(DXF& target, DXFEntity* entity)
{
    DXFLayer* layer = CurrentLayer(target);
    return layer ? target.AddTo(*layer, entity) : target.Add(Widen(m_Reader->First(8)), entity, true);
}
