#pragma once

#include "model/DXFLine.h"
#include "model/DXFPolyline.h"
#include "support/TextInfo.h"

#include <cmath>
#include <string>

/// Entities to write, different ones for different numbers.
namespace SampleEntities {

constexpr int NUM_VERTICES = 12;

inline GTL::Point3D<double> Place(int i)
{
    return {10000 * std::sin(i * 0.7), 10000 * std::cos(i * 0.3), i % 8 == 0 ? i * 0.01 : 0.0};
}

inline DXFEntity* NewLine(int i)
{
    return new DXFLine(Place(i), Place(i + 1));
}

inline DXFEntity* NewPolyline(int i)
{
    auto* polyline = new DXFPolyline();
    polyline->SetLWPolyLine(true);
    for (int k = 0; k < NUM_VERTICES; ++k) polyline->PushBack(Place(i + k));
    return polyline;
}

/// Of either kind of text.
template <class Text>
DXFEntity* NewText(int i)
{
    auto* text = new Text();
    text->SetText(L"valve DN50 level +12.50 room " + std::to_wstring(i));
    text->SetPosition(Place(i));
    TextInfo info;
    info.SetFont(i % 100 < 90 ? L"STANDARD" : L"ARIAL");
    info.SetSize(2.5F);
    text->SetTextInfo(info);
    return text;
}

} // namespace SampleEntities
