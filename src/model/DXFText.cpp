#include "model/DXFText.h"

#include "model/DXFWriter.h"

DXFText* DXFText::Copy() const
{
    return new DXFText(*this);
}

const wchar_t* DXFText::Name() const
{
    return L"TEXT";
}

void DXFText::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}

TextRectComp::Rect DXFText::Measure() const
{
    return TextRectComp()(GetTextInfo(), Text());
}
