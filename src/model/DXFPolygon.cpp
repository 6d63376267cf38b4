#include "model/DXFPolygon.h"

#include "model/DXFWriter.h"

DXFPolygon* DXFPolygon::Copy() const
{
    return new DXFPolygon(*this);
}

void DXFPolygon::Write(DXFWriter& writer) const
{
    writer.Write(*this);
}
