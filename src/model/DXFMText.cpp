#include "model/DXFMText.h"

#include "model/DXFWriter.h"

DXFMText* DXFMText::Copy() const
{
    return new DXFMText(*this);
}

const wchar_t* DXFMText::Name() const
{
    return L"MTEXT";
}

void DXFMText::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

TextRectComp::Rect DXFMText::Measure() const
{
    return TextRectComp()(GetTextInfo(), Text(), GetTextInfo().RectWidth());
}
