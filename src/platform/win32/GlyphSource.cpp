#include "platform/raster/GlyphSource.h"

std::unique_ptr<GlyphSource> GlyphSource::Open(const FontFace&)
{
    return nullptr;
}
