#include "dxf/DXFFile.h"

#include "dxf/FixedGroup.h"
#include "dxf/WriterText.h"
#include "model/DXFImage.h"
#include "model/FetchAhead.h"

#include <cwchar>
#include <unordered_map>

namespace {

/// Size of a pixel in a definition, whatever the image: 1/1276.
constexpr double DEFINITION_PIXEL_SIZE = 0.0007836990595611;

// clang-format off
constexpr FixedGroup ROOT_DICTIONARY[] = {
    {0, "DICTIONARY"}, {5, "C"}, {100, "AcDbDictionary"},
    {3, "ACAD_GROUP"}, {350, "D"}, {3, "ACAD_MLINESTYLE"}, {350, "1B"},
};
constexpr FixedGroup GROUPS_AND_MLINE_STYLES[] = {
    {0, "DICTIONARY"}, {5, "D"},
    {102, "{ACAD_REACTORS"}, {330, "C"}, {102, "}"}, {100, "AcDbDictionary"},
    {0, "DICTIONARY"}, {5, "1B"},
    {102, "{ACAD_REACTORS"}, {330, "C"}, {102, "}"}, {100, "AcDbDictionary"},
    {3, "STANDARD"}, {350, "1C"},
};
constexpr FixedGroup ROOT_REACTOR[] = {{102, "{ACAD_REACTORS"}, {330, "C"}, {102, "}"}};
constexpr FixedGroup RASTER_VARIABLES[] = {
    {100, "AcDbRasterVariables"}, {90, "0"}, {70, "0"}, {71, "1"}, {72, "0"},
};
constexpr FixedGroup STANDARD_MLINE_STYLE[] = {
    {0, "MLINESTYLE"}, {5, "1C"},
    {102, "{ACAD_REACTORS"}, {330, "1B"}, {102, "}"}, {100, "AcDbMlineStyle"},
    {2, "STANDARD"}, {70, "0"}, {3, ""}, {62, "256"}, {51, "90.0"}, {52, "90.0"}, {71, "2"},
    {49, "0.5"}, {62, "256"}, {6, "BYLAYER"},
    {49, "-0.5"}, {62, "256"}, {6, "BYLAYER"},
};
// clang-format on

/// Part of a file name between its last backslash and the last "." behind it; false when it lacks either.
bool FindEntryName(const std::wstring& fileName, std::wstring_view& name)
{
    const std::size_t backslash = fileName.rfind(L'\\');
    const std::size_t dot = fileName.rfind(L'.');
    if (backslash == std::wstring::npos || dot == std::wstring::npos) return false;
    name = std::wstring_view(fileName).substr(backslash + 1);
    if (dot > backslash) name = name.substr(0, dot - backslash - 1);
    return true;
}

} // namespace

/// The entity as an image, or null; the name decides first, since it is quick to look at.
DXFImage* DXFFile::ImageOf(DXFEntity& entity)
{
    return std::wcscmp(entity.Name(), L"IMAGE") == 0 ? dynamic_cast<DXFImage*>(&entity) : nullptr;
}

/// Gives every image its definition and the handles that other records refer to, and counts the entities.
void DXFFile::PrepareImages(const DXF& document)
{
    std::unordered_map<std::wstring_view, DXFImageDef*> definitions;
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        const std::size_t entities = layer.NumEntities();
        count += entities;
        for (std::size_t k = 0; k < entities; ++k) {
            FetchAhead(layer, k, entities, sizeof(DXFEntity));
            DXFImage* image = ImageOf(*layer[k]);
            if (!image) continue;
            const auto found = definitions.find(image->FileName());
            DXFImageDef& definition = found != definitions.end() ? *found->second : AddImageDef(*image);
            definitions.emplace(definition.m_FileName, &definition);
            image->SetDefinitionHandle(definition.m_Handle);
            image->SetReactorHandle(GetFreeHandle());
            definition.m_Reactors.push_back(image->ReactorHandle());
        }
    }
    m_Total.store(count, std::memory_order_relaxed);
}

DXFImageDef& DXFFile::AddImageDef(const DXFImage& image)
{
    DXFImageDef& definition = *m_ImageDefs.emplace_back(std::make_unique<DXFImageDef>());
    definition.m_Handle = GetFreeHandle();
    definition.m_FileName = image.FileName();
    definition.m_Id = image.DefinitionId();
    definition.m_Width = image.Width();
    definition.m_Height = image.Height();
    definition.m_PixelSizeU = definition.m_PixelSizeV = DEFINITION_PIXEL_SIZE;
    return definition;
}

void DXFFile::WriteObjects()
{
    WriteGroups("0\r\nSECTION\r\n2\r\nOBJECTS\r\n");
    WriteDictionary();
    WriteImageDef();
    WriteGroups("0\r\nENDSEC\r\n");
}

void DXFFile::WriteDictionary()
{
    const bool hasImages = !m_ImageDefs.empty();
    WriteGroups(ROOT_DICTIONARY);
    if (hasImages) {
        m_RasterVariables = TakeHandle();
        m_ImageDictionary = TakeHandle();
        WriteGroups("3\r\nACAD_IMAGE_VARS\r\n");
        WriteHandle(350, m_RasterVariables);
        WriteGroups("3\r\nACAD_IMAGE_DICT\r\n");
        WriteHandle(350, m_ImageDictionary);
    }
    WriteGroups(m_PendingObjects);
    WriteGroups(GROUPS_AND_MLINE_STYLES);
    if (hasImages) WriteImageDictionary();
    WriteGroups(STANDARD_MLINE_STYLE);
}

void DXFFile::WriteImageDictionary()
{
    WriteGroups("0\r\nRASTERVARIABLES\r\n");
    WriteHandle(5, m_RasterVariables);
    WriteGroups(ROOT_REACTOR);
    WriteGroups(RASTER_VARIABLES);
    WriteGroups("0\r\nDICTIONARY\r\n");
    WriteHandle(5, m_ImageDictionary);
    WriteGroups(ROOT_REACTOR);
    WriteGroups("100\r\nAcDbDictionary\r\n");
    for (const auto& definition : m_ImageDefs) {
        std::wstring_view name;
        if (FindEntryName(definition->m_FileName, name)) WriteName(3, name);
        WriteName(350, definition->m_Handle);
    }
}

void DXFFile::WriteImageDef()
{
    for (const auto& definition : m_ImageDefs) {
        WriteGroups("0\r\nIMAGEDEF\r\n");
        WriteName(5, definition->m_Handle);
        WriteGroups("102\r\n{ACAD_REACTORS\r\n");
        WriteHandle(330, m_ImageDictionary);
        for (const std::wstring& reactor : definition->m_Reactors) WriteName(330, reactor);
        WriteGroups("102\r\n}\r\n100\r\nAcDbRasterImageDef\r\n90\r\n0\r\n");
        WriteName(1, definition->m_FileName);
        WriteReal(10, definition->m_Width);
        WriteReal(20, definition->m_Height);
        WriteReal(11, definition->m_PixelSizeU);
        WriteReal(21, definition->m_PixelSizeV);
        WriteGroups("280\r\n1\r\n281\r\n2\r\n");
    }
}

/// The object that ties an image to its definition.
void DXFFile::QueueReactor(const DXFImage& image, int imageHandle)
{
    std::string& groups = m_PendingObjects;
    groups += "0\r\nIMAGEDEF_REACTOR\r\n5\r\n";
    AppendName(groups, image.ReactorHandle());
    groups += "\r\n100\r\nAcDbRasterImageDefReactor\r\n90\r\n2\r\n330\r\n";
    AppendName(groups, HandleText(imageHandle));
    groups += "\r\n";
}
