#pragma once

#include <memory>

#include "platform/Export.h"
#include "platform/GdiConstants.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// How areas are filled. As with pens, a context looks at it at each operation; one that holds nothing fills
/// as a context's first brush does: white.
class HALYARD_API CBrush {
public:
    CBrush() = default;
    /// As by CreateSolidBrush.
    explicit CBrush(unsigned long color) { (void)CreateSolidBrush(color); }
    virtual ~CBrush() = default;

    /// One colour, 0x00BBGGRR. False when the system has no room for it.
    [[nodiscard]] bool CreateSolidBrush(unsigned long color);

    /// Leaves a brush that holds nothing. False when it held nothing before.
    bool DeleteObject();

    bool IsCreated() const { return m_IsCreated; }
    unsigned long Color() const { return m_Color; }
    /// What the system draws with (see SystemObjects); null for a brush that holds nothing.
    const std::shared_ptr<void>& Handle() const { return m_Handle; }

private:
    unsigned long m_Color = 0xFFFFFF;
    bool m_IsCreated = false;
    std::shared_ptr<void> m_Handle;
};

#endif
