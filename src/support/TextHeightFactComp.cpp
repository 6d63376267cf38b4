#include "support/TextHeightFactComp.h"

TextHeightFactComp& TextHeightFactComp::Get()
{
    static TextHeightFactComp s_Instance;
    return s_Instance;
}

double TextHeightFactComp::operator()(const TextInfo& info) const
{
    return Factor(Face(info).Metrics());
}

const FontFace& TextHeightFactComp::Face(const TextInfo& info)
{
    return FindFont(info.Font(), (info.Style() & TextInfo::BOLD) != 0,
                    (info.Style() & TextInfo::ITALIC) != 0);
}

double TextHeightFactComp::Factor(const FontMetrics& metrics)
{
    const int cell = metrics.ascent + metrics.descent;
    // A damaged font may state a cell of no height; text lines must keep their distance even so.
    if (cell <= 0 || metrics.capHeight <= 0) return 1;
    return static_cast<double>(cell) / metrics.capHeight;
}
