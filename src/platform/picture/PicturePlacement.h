#pragma once

#include <cstdint>

#include "platform/CPoint.h"
#include "platform/Picture.h"

/// A picture placed in a parallelogram of device pixels by the corners that its upper left, upper right and
/// lower left corner get: bilinear between the centres of its pixels.
class PicturePlacement {
public:
    /// The picture is not owned and holds its pixels (see IsWhole).
    PicturePlacement(const Picture& picture, CPoint upperLeft, CPoint upperRight, CPoint lowerLeft);

    /// A picture has all the pixels that its size tells of, and at least one.
    static bool IsWhole(const Picture& picture);

    /// The parallelogram has no area: there is nothing to draw.
    bool IsFlat() const { return m_IsFlat; }

    /// Cuts the columns left <= x < right down to those of row y whose pixels have their centres in the
    /// picture.
    void CutRow(int y, int& left, int& right) const;

    /// Draws over the pixels left <= x < right of row y, which CutRow has left; `pixels` is the first of
    /// them. With `hasTransparency` the picture's pixels count by their alpha, else all are opaque.
    void DrawSpan(std::uint32_t* pixels, int y, int left, int right, bool hasTransparency) const;

private:
    struct Blend;

    /// Both picture coordinates of the centre of a row's pixel are linear in x: start + x * step.
    double StartX(int y) const { return (0.5 - m_X) * m_XByX + (y + 0.5 - m_Y) * m_XByY; }
    double StartY(int y) const { return (0.5 - m_X) * m_YByX + (y + 0.5 - m_Y) * m_YByY; }
    Blend Sample(double px, double py, bool hasTransparency) const;

    const Picture& m_Picture;
    double m_X;
    double m_Y;
    double m_XByX = 0; ///< Picture columns a device pixel to the right ...
    double m_XByY = 0; ///< ... and down.
    double m_YByX = 0;
    double m_YByY = 0;
    bool m_IsFlat = true;
};
