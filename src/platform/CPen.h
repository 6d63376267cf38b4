#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>

#include "platform/Export.h"
#include "platform/GdiConstants.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// How lines are drawn. A pen is a description; a context that draws with it looks at it at each operation,
/// so a pen that is made anew while it is selected counts from the next line on. A pen that holds nothing
/// (new, deleted, or after a failed Create...) draws as a context's first pen does: solid, black, 1 pixel.
class HALYARD_API CPen {
public:
    /// Most lengths in the pattern of a geometric pen.
    static constexpr std::size_t MAX_PATTERN = 16;

    CPen() = default;
    /// As by CreatePen.
    CPen(int style, int width, unsigned long color) { (void)CreatePen(style, width, color); }
    virtual ~CPen() = default;

    /// A pen of style PS_SOLID to PS_INSIDEFRAME (which is solid), width in logical units, colour 0x00BBGGRR.
    ///
    /// Lines of at most one pixel, and those of width 0 at any scale, are cosmetic: exactly one pixel wide
    /// and, by the style, dashed in pixels along the line's major axis, on and off in turn: PS_DASH 18, 6;
    /// PS_DOT 3, 3; PS_DASHDOT 9, 6, 3, 6; PS_DASHDOTDOT 9, 3, 3, 3, 3, 3. In the background mode OPAQUE the
    /// gaps get the background colour. A width above a pixel draws solid whatever the style, with round caps
    /// and joins. A negative width counts as positive. False, and no pen, for another style.
    [[nodiscard]] bool CreatePen(int style, int width, unsigned long color);

    /// The pen that ExtCreatePen gives for a solid brush. `style` is PS_GEOMETRIC with PS_SOLID, PS_NULL or
    /// PS_USERSTYLE; caps and joins are round whatever its flags say. Width and the lengths of the pattern
    /// (on, off, ...) are in logical units; the pattern runs along the true length of a line. Gaps are never
    /// painted; a pattern whose gaps the caps close to within half a pixel draws solid. False, and no pen,
    /// for another style, a width below 1, or with PS_USERSTYLE when there are no or more than MAX_PATTERN
    /// lengths, a negative one, or only zeros.
    [[nodiscard]] bool CreateGeometricPen(int style, int width, unsigned long color, const int* pattern,
                                          int count);

    /// Leaves a pen that holds nothing. False when it held nothing before.
    bool DeleteObject();

    bool IsCreated() const { return m_IsCreated; }
    bool IsGeometric() const { return m_IsGeometric; }
    /// PS_SOLID to PS_USERSTYLE, without flags.
    int Style() const { return m_Style; }
    /// Logical units, not negative.
    int Width() const { return m_Width; }
    unsigned long Color() const { return m_Color; }
    /// Lengths in logical units; empty unless the style is PS_USERSTYLE.
    std::span<const int> Pattern() const { return {m_Pattern.data(), m_PatternCount}; }
    /// What the system draws with (see SystemObjects); null for a pen that holds nothing.
    const std::shared_ptr<void>& Handle() const { return m_Handle; }

private:
    bool m_IsCreated = false;
    bool m_IsGeometric = false;
    int m_Style = PS_SOLID;
    int m_Width = 1;
    unsigned long m_Color = 0;
    std::array<int, MAX_PATTERN> m_Pattern{};
    std::size_t m_PatternCount = 0;
    std::shared_ptr<void> m_Handle;
};

#endif
