#include "dxf/DXFFile.h"

// A drawing reads and writes itself here, in the one place that knows the file format.

ErrorString DXF::Read(const std::wstring& fileName, const std::atomic<bool>& keepGoing, bool clearAll)
{
    DXFFile file;
    return file.Read(fileName, *this, keepGoing, clearAll);
}

ErrorString DXF::Write(const std::wstring& fileName, const std::atomic<bool>& keepGoing, int exportMode)
{
    DXFFile file;
    file.SetExportMode(exportMode);
    return file.Write(fileName, *this, keepGoing);
}
