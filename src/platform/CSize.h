#pragma once

#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

/// A width and a height, in the units of whoever gives it.
struct CSize {
    int cx = 0;
    int cy = 0;

    constexpr CSize() = default;
    constexpr CSize(int width, int height) : cx(width), cy(height) {}

    constexpr bool operator==(const CSize&) const = default;
};

#endif
