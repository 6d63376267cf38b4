#include "Summary.h"

#include "EntityKind.h"
#include "model/DXFImage.h"
#include "model/DXFWriter.h"
#include "platform/FilePath.h"
#include "platform/FileSystem.h"

#include <array>

namespace {

/// A picture that cannot be read is found all the same: it is looked for where the image itself looks.
bool IsFound(const DXFImage& image, const std::wstring& drawingFile)
{
    if (image.GetPicture()) return true;
    const std::wstring& name = image.FileName();
    if (name.empty()) return false;
    const std::wstring folder = FilePath::Folder(drawingFile);
    const std::wstring slashes = FilePath::WithSlashes(name);
    for (const std::wstring& place :
         {name, slashes, FilePath::Join(folder, slashes), FilePath::Join(folder, FilePath::FileName(name))})
        if (FileSystem::IsRegularFile(place)) return true;
    return false;
}

class ImageFinder : public DXFWriter {
public:
    ImageFinder(const std::wstring& drawingFile, std::vector<Summary::Image>& images)
        : m_DrawingFile(drawingFile), m_Images(images)
    {
    }

    void Write(const DXFImage& image) override
    {
        m_Images.push_back({image.FileName(), IsFound(image, m_DrawingFile)});
    }
    using DXFWriter::Write;

private:
    const std::wstring& m_DrawingFile;
    std::vector<Summary::Image>& m_Images;
};

template <class Visit>
void ForEachEntity(const DXF& document, const Visit& visit)
{
    for (std::size_t i = 0; i < document.NumLayers(); ++i) {
        const DXFLayer& layer = *document[i];
        for (std::size_t k = 0; k < layer.NumEntities(); ++k) visit(*layer[k]);
    }
}

} // namespace

Summary Summarize(Drawing& drawing)
{
    Summary summary;
    DXF& document = drawing.Document();
    summary.extents = document.Extents();

    std::array<std::uint64_t, ENTITY_KINDS.size()> counts{};
    ImageFinder finder(drawing.File(), summary.images);
    ForEachEntity(document, [&](const DXFEntity& entity) {
        ++counts[KindOf(entity)];
        entity.Write(finder);
    });
    DXF::BlockMap::const_iterator block;
    for (bool more = document.GetFirstBlock(block); more; more = document.GetFNextBlock(block))
        ForEachEntity(*block->second->GetDXF(), [&](const DXFEntity& entity) { entity.Write(finder); });

    for (std::size_t kind = 0; kind < counts.size(); ++kind)
        if (counts[kind] > 0) summary.kinds.emplace_back(ENTITY_KINDS[kind], counts[kind]);
    return summary;
}
