#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/CPen.h"
#include "platform/raster/Canvas.h"

/// What a pen leaves on the device. Lengths are device pixels.
struct Stroke {
    double width = 1;            ///< At least 1; 0 draws nothing.
    bool isThin = true;          ///< One pixel by the rule of ThinLine, whatever the width.
    std::uint32_t pixel = 0;     ///< Of the line.
    std::uint32_t gapPixel = 0;  ///< Of the gaps between dashes ...
    bool hasPaintedGaps = false; ///< ... when they are painted.
    std::array<double, 2 * CPen::MAX_PATTERN> pattern{}; ///< On, off, ...; whole numbers for thin lines.
    std::size_t patternCount = 0;                        ///< Even; 0: no dashes.
    double period = 0;                                   ///< Sum of the pattern, at least 1.
};

/// Draws with a stroke from point to point; dashes run on through the points. Any point may lie anywhere: the
/// time is that of what shows, and a constant more for each point.
class StrokePath {
public:
    StrokePath(const Canvas& canvas, const Stroke& stroke, CPoint start);

    void LineTo(CPoint to);

private:
    /// So many pieces of wide lines are drawn before it is noted what is painted already.
    static constexpr int MANY_PIECES = 64;

    struct Covered {
        int left;
        int right;
    };

    void ThinDashes(CPoint to);
    void WideLine(CPoint to);
    void WideDashes(CPoint to);
    void Capsule(double x0, double y0, double x1, double y1);
    void FillRow(int y, int left, int right);
    /// Index of the pattern's length at a phase, and what is left of it.
    std::size_t PatternAt(double phase, double& left) const;

    const Canvas& m_Canvas;
    const Stroke& m_Stroke;
    CPoint m_At;
    double m_Phase = 0; ///< Place in the pattern, 0 <= phase < period.
    int m_Pieces = 0;
    std::vector<Covered> m_Covered; ///< By rows of the canvas, a run that is painted already.
};
