#pragma once

#include "platform/Export.h"
#include "platform/GdiConstants.h"

/// How areas are filled. As with pens, a context looks at it at each operation; one that holds nothing fills
/// as a context's first brush does: white.
class HALYARD_API CBrush {
public:
    CBrush() = default;
    /// As by CreateSolidBrush.
    explicit CBrush(unsigned long color) { (void)CreateSolidBrush(color); }
    virtual ~CBrush() = default;

    /// One colour, 0x00BBGGRR. Always true.
    [[nodiscard]] bool CreateSolidBrush(unsigned long color)
    {
        m_Color = color & 0xFFFFFF;
        m_IsCreated = true;
        return true;
    }

    /// Leaves a brush that holds nothing. False when it held nothing before.
    bool DeleteObject()
    {
        const bool wasCreated = m_IsCreated;
        m_Color = 0xFFFFFF;
        m_IsCreated = false;
        return wasCreated;
    }

    bool IsCreated() const { return m_IsCreated; }
    unsigned long Color() const { return m_Color; }

private:
    unsigned long m_Color = 0xFFFFFF;
    bool m_IsCreated = false;
};
