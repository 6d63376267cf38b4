#pragma once

#include "platform/Export.h"
#include "support/TextInfo.h"

/// A font's height factor: its cell height (ascent plus descent) over the height of its capital letters.
class HALYARD_API TextHeightFactComp {
public:
    /// The one shared instance.
    static TextHeightFactComp& Get();
    /// Greater than 0 for every font, the fallback for a missing one included.
    double operator()(const TextInfo& info) const;
};
