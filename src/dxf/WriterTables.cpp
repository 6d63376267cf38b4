#include "dxf/DXFFile.h"

#include "dxf/FixedGroup.h"
#include "model/DXFText.h"

#include <array>
#include <string>

// Every file has the same tables, of which only layers and text styles depend on the drawing. A count in
// group 70 of a table is the one that readers of AC1014 have always got from this writer, and not always that
// of the records.

namespace {

constexpr std::size_t LONGEST_SYMBOL = 31;
constexpr std::wstring_view UNSAFE_CHARACTERS = L"!@#%^&*()+={}[]\\|'\";:.>,<?/`~ ";

// clang-format off
constexpr FixedGroup CLASSES[] = {
    {0, "SECTION"}, {2, "CLASSES"},
    {0, "CLASS"}, {1, "RASTERVARIABLES"}, {2, "AcDbRasterVariables"},
    {3, "ISM"}, {90, "0"}, {280, "0"}, {281, "0"},
    {0, "CLASS"}, {1, "IMAGEDEF"}, {2, "AcDbRasterImageDef"},
    {3, "ISM"}, {90, "0"}, {280, "0"}, {281, "0"},
    {0, "CLASS"}, {1, "IMAGEDEF_REACTOR"}, {2, "AcDbRasterImageDefReactor"},
    {3, "ISM"}, {90, "1"}, {280, "0"}, {281, "0"},
    {0, "CLASS"}, {1, "IMAGE"}, {2, "AcDbRasterImage"},
    {3, "ISM"}, {90, "127"}, {280, "0"}, {281, "1"},
    {0, "ENDSEC"},
};
// clang-format on

struct LineType {
    std::string_view name;
    std::string_view description;
    std::string_view numDashes;
    std::string_view length;
    std::array<std::string_view, 4> dashes; ///< drawn lengths, gaps negative, dots "0"; the rest empty
};
constexpr LineType LINE_TYPES[] = {
    {"CONTINUOUS", "Solid line", "0", "0.000000", {}},
    {"DASHED", "Dashed __ __ __ __ __ __ __ __ __ __ __ __ __", "2", "0.750000", {"0.500000", "-0.250000"}},
    {"DOT", "Dot . . . . . . . . . . . . . . . . . . . . . .", "2", "0.250000", {"0", "-0.250000"}},
    {"DASHDOT",
     "Dash dot __ . __ . __ . __ . __ . __ . __ . __",
     "4",
     "1.000000",
     {"0.500000", "-0.250000", "0", "-0.250000"}},
    {"BYBLOCK", "", "0", "0.0", {}},
    {"BYLAYER", "", "0", "0.0", {}},
};

// clang-format off
constexpr FixedGroup BLOCKS[] = {
    {0, "SECTION"}, {2, "BLOCKS"},
    {0, "BLOCK"}, NEW_HANDLE, {100, "AcDbEntity"}, {8, "0"},
    {100, "AcDbBlockBegin"}, {2, "*MODEL_SPACE"}, {70, "0"},
    {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, "*MODEL_SPACE"}, {1, ""},
    {0, "ENDBLK"}, NEW_HANDLE, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbBlockEnd"},
    {0, "BLOCK"}, NEW_HANDLE, {100, "AcDbEntity"}, {67, "1"}, {8, "0"},
    {100, "AcDbBlockBegin"}, {2, "*PAPER_SPACE"}, {70, "0"},
    {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {3, "*PAPER_SPACE"}, {1, ""},
    {0, "ENDBLK"}, NEW_HANDLE, {100, "AcDbEntity"}, {67, "1"}, {8, "0"}, {100, "AcDbBlockEnd"},
    {0, "ENDSEC"},
};
// clang-format on

} // namespace

/// A drawing without extents gets zeros.
void DXFFile::WriteHeader(DXF& document)
{
    const GTL::Extents3D<double> box = document.Extents();
    struct Corner {
        const wchar_t* variable;
        P3 point;
        bool withZ;
    };
    const P3 low = box.IsValid() ? box.MinPnt() : P3();
    const P3 high = box.IsValid() ? box.MaxPnt() : P3();
    const Corner corners[] = {{L"$EXTMIN", low, true},
                              {L"$EXTMAX", high, true},
                              {L"$LIMMIN", low, false},
                              {L"$LIMMAX", high, false}};

    WriteGroups("0\r\nSECTION\r\n2\r\nHEADER\r\n9\r\n$ACADVER\r\n1\r\nAC1014\r\n");
    for (const Corner& corner : corners) {
        WriteName(9, corner.variable);
        WriteReal(10, corner.point.X());
        WriteReal(20, corner.point.Y());
        if (corner.withZ) WriteReal(30, corner.point.Z());
    }
    WriteName(9, L"$HANDSEED");
    m_HandleSeedPosition = m_Output.Tell();
    WriteGroups("5\r\n       \r\n0\r\nENDSEC\r\n");
}

void DXFFile::WriteClasses()
{
    WriteGroups(CLASSES);
}

void DXFFile::WriteTables(const DXF& document)
{
    struct Table {
        const wchar_t* name;
        std::size_t count;
        void (DXFFile::*writeRecords)(const DXF&);
    };
    const Table tables[] = {
        {L"LTYPE", 1, &DXFFile::WriteLineTypes},
        {L"LAYER", document.NumLayers(), &DXFFile::WriteLayers},
        {L"STYLE", DXFText::s_FontTable.size(), &DXFFile::WriteTextStyles},
        {L"VIEW", 0, nullptr},
        {L"UCS", 0, nullptr},
        {L"APPID", 1, &DXFFile::WriteApplications},
        {L"BLOCK_RECORD", 0, &DXFFile::WriteBlockRecords},
        {L"VPORT", 0, nullptr},
        {L"DIMSTYLE", 0, nullptr},
    };

    WriteGroups("0\r\nSECTION\r\n2\r\nTABLES\r\n");
    for (const Table& table : tables) {
        WriteGroups("0\r\nTABLE\r\n");
        WriteEntityName(table.name);
        WriteHandle();
        WriteGroups("100\r\nAcDbSymbolTable\r\n");
        WriteInteger(70, static_cast<long long>(table.count));
        if (table.writeRecords) (this->*table.writeRecords)(document);
        WriteGroups("0\r\nENDTAB\r\n");
    }
    WriteGroups("0\r\nENDSEC\r\n");
}

void DXFFile::WriteRecordHead(std::string_view type, std::string_view recordClass)
{
    const FixedGroup head[] = {{0, type}, NEW_HANDLE, {100, "AcDbSymbolTableRecord"}, {100, recordClass}};
    WriteGroups(head);
}

void DXFFile::WriteLineTypes(const DXF&)
{
    for (const LineType& type : LINE_TYPES) {
        WriteRecordHead("LTYPE", "AcDbLinetypeTableRecord");
        const FixedGroup shape[] = {{2, type.name},       {70, "0"},        {3, type.description}, {72, "65"},
                                    {73, type.numDashes}, {40, type.length}};
        WriteGroups(shape);
        for (const std::string_view dash : type.dashes) {
            const FixedGroup groups[] = {{49, dash}, {74, "0"}};
            if (!dash.empty()) WriteGroups(groups);
        }
    }
}

void DXFFile::WriteLayers(const DXF& document)
{
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        WriteRecordHead("LAYER", "AcDbLayerTableRecord");
        WriteEntityName(WrittenLayerName(layer.Name()));
        WriteInt(0, 0);
        const int index = DXFColor(layer.Color()).Index();
        WriteColor(layer.IsVisible() ? index : -index);
        WriteColor(layer.Color());
        WriteGroups("6\r\nCONTINUOUS\r\n");
    }
}

void DXFFile::WriteTextStyles(const DXF&)
{
    for (const std::wstring& font : DXFText::s_FontTable) {
        WriteRecordHead("STYLE", "AcDbTextStyleTableRecord");
        WriteEntityName(MakeSafeName(font));
        WriteGroups("70\r\n0\r\n40\r\n0.000000\r\n41\r\n1.000000\r\n50\r\n0.000000\r\n"
                    "71\r\n0\r\n42\r\n5.000000\r\n");
        WriteName(3, font);
        WriteGroups("4\r\n\r\n");
    }
}

void DXFFile::WriteApplications(const DXF&)
{
    WriteRecordHead("APPID", "AcDbRegAppTableRecord");
    WriteGroups("2\r\nACAD\r\n70\r\n0\r\n");
}

void DXFFile::WriteBlockRecords(const DXF&)
{
    for (const wchar_t* name : {L"*MODEL_SPACE", L"*PAPER_SPACE"}) {
        WriteRecordHead("BLOCK_RECORD", "AcDbBlockTableRecord");
        WriteEntityName(name);
    }
}

/// The two spaces alone: the blocks of the drawing have no place here.
void DXFFile::WriteBlocks()
{
    WriteGroups(BLOCKS);
}

/// A name as symbol tables take it; a font's name becomes the name of its text style.
std::wstring DXFFile::MakeSafeName(const std::wstring& name)
{
    std::wstring safe = name.substr(0, LONGEST_SYMBOL);
    for (wchar_t& c : safe)
        if (UNSAFE_CHARACTERS.find(c) != std::wstring_view::npos) c = L'_';
    return safe;
}
