#pragma once

#include "platform/Export.h"

#include <string>

/// Names of line styles in drawings: "CONTINUOUS" (0), "DASHED" (1), "DOT" (2), "DASHDOT" (3).

/// Name of a style value; any other than 1, 2 and 3 is "CONTINUOUS".
HALYARD_API const wchar_t* LineStyleName(int style);
/// Style of a name, compared without regard to case; an unknown name is 1 (dashed).
HALYARD_API int LineStyleOf(const std::wstring& name);
