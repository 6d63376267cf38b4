#pragma once

#include "model/DXF.h"

/// Brings a drawing to exactly what the written file gives back when it is read, so that converting the
/// result once more yields the same bytes: numbers as their six decimals have them, the text of an MTEXT
/// without the prefix that an earlier write put before it, fonts by the names that text styles can have, and
/// what AC1014 has no place for here at the value that reading leaves (the width of polylines, the line style
/// of polygons).
///
/// Also makes the process's font table that of this drawing. Stops when the flag reads false.
void BringToWrittenForm(DXF& document, const std::atomic<bool>& keepGoing);
