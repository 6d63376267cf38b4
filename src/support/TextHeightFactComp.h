#pragma once

#include "platform/Export.h"
#include "platform/Font.h"
#include "support/TextInfo.h"

/// A font's height factor: its cell height (ascent plus descent) over the height of its capital letters.
class HALYARD_API TextHeightFactComp {
public:
    /// The one shared instance.
    static TextHeightFactComp& Get();
    /// Greater than 0 for every font, the fallback for a missing one included.
    double operator()(const TextInfo& info) const;

    /// The face that a text is measured and drawn with: that of its font's name, bold or italic by its style
    /// or by the marks of the name.
    static const FontFace& Face(const TextInfo& info);
    /// The factor of a face.
    static double Factor(const FontMetrics& metrics);
};
