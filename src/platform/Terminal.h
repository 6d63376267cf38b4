#pragma once

#include "platform/Export.h"

/// What the system says about the terminal that a program's standard streams may be connected to.
class HALYARD_API Terminal {
public:
    enum STREAM { STANDARD_INPUT = 0, STANDARD_OUTPUT = 1, STANDARD_ERROR = 2 };

    /// To be called once, before anything is written: from then on the bytes of the standard streams pass as
    /// they are, line ends included, and a terminal takes them for UTF-8 with the usual sequences of control.
    static void Prepare();

    /// True when someone can watch the stream: it is neither a file nor a pipe.
    [[nodiscard]] static bool IsTerminal(STREAM stream);

    /// Whether a failure to write to standard output, by its errno, means that the program at the other end
    /// of a pipe has gone.
    [[nodiscard]] static bool IsReaderGone(int errnoCode);

    /// Columns of the stream's terminal; 80 when it is none or does not say.
    [[nodiscard]] static int Columns(STREAM stream);
};
