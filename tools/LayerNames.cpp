#include "LayerNames.h"

#include "Report.h"
#include "platform/Utf8.h"
#include "support/Numeric.h"

DXFLayer* LayerMeant(Drawing& drawing, const std::string& name)
{
    const std::wstring meant = FromUtf8(name);
    DXF& document = drawing.Document();
    for (std::size_t i = 0; i < document.NumLayers(); ++i)
        if (icompareW(AsMeant(document[i]->Name()), meant)) return document[i];
    return nullptr;
}

std::wstring NoSuchLayer(const std::string& name)
{
    return L"there is no layer " + FromUtf8(name);
}
