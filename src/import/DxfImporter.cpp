#include "import/DxfImporter.h"

#include "dxf/DXFFile.h"
#include "model/DXF.h"

bool DxfImporter::Import(const wchar_t* fileName)
{
    if (!fileName) return false;
    DXF document;
    DXFFile file;
    const std::atomic<bool> keepGoing = true;
    if (!file.Read(fileName, document, keepGoing, true)) return false;
    const DXF& drawing = document;
    for (std::size_t i = 0; i < drawing.NumLayers(); ++i) {
        const DXFLayer& layer = *drawing[i];
        for (std::size_t k = 0; k < layer.NumEntities(); ++k) layer[k]->Write(*this);
    }
    return true;
}
