#pragma once

#include "plot/PlotArchives.h"
#include "plot/PlotFile.h"

template <class Record>
void PlotFile::WriteRecord(HEADER kind, const Record& record)
{
    PlotRecords::Measure measure;
    measure(record);
    WriteBlockHeader(kind, measure.Bytes());
    if (!m_Output->Failed()) PlotRecords::Put{*m_Output}(record);
}

/// False when the record is not whole.
template <class Record>
bool PlotFile::ReadRecord(Record& record)
{
    PlotRecords::Take{*m_Input, m_Version}(record);
    return !m_Input->Failed();
}
