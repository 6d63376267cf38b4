#include "LayerNames.h"

#include "Report.h"
#include "platform/Utf8.h"
#include "support/Numeric.h"

bool IsMeant(const DXFLayer& layer, const std::string& name)
{
    return icompareW(AsMeant(layer.Name()), FromUtf8(name));
}

DXFLayer* LayerMeant(Drawing& drawing, const std::string& name)
{
    DXF& document = drawing.Document();
    for (std::size_t i = 0; i < document.NumLayers(); ++i)
        if (IsMeant(*document[i], name)) return document[i];
    return nullptr;
}

std::wstring NoSuchLayer(const std::string& name)
{
    return L"there is no layer " + FromUtf8(name);
}
