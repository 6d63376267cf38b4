#pragma once

#include "platform/Export.h"

/// Which library this is.
class HALYARD_API LibraryVersion {
public:
    /// A byte for each of the four parts: 5.5.1.0 is 0x5050100. Hosts have to be compiled anew when the first
    /// part changes.
    static unsigned Number();

    /// The day on which it was compiled: "2026-11-21".
    static const char* BuildDate();
};
