#pragma once

#include "platform/Export.h"

/// What the system says about the terminal that a program's standard streams may be connected to.
class HALYARD_API Terminal {
public:
    enum STREAM { STANDARD_INPUT = 0, STANDARD_OUTPUT = 1, STANDARD_ERROR = 2 };

    /// True when someone can watch the stream: it is neither a file nor a pipe.
    [[nodiscard]] static bool IsTerminal(STREAM stream);

    /// Columns of the stream's terminal; 80 when it is none or does not say.
    [[nodiscard]] static int Columns(STREAM stream);
};
