#pragma once

#include <memory>

#include "platform/CDC.h"
#include "platform/DeviceMapping.h"
#include "platform/win32/GdiDrawing.h"

/// A bitmap of GDI. A DIB section is selected into one context at a time.
struct GdiBitmap {
    HBITMAP handle = nullptr;
    HDC holder = nullptr;           ///< The context that has it selected; null when none has.
    HGDIOBJ holdersFirst = nullptr; ///< What that selects in its place.

    GdiBitmap() = default;
    ~GdiBitmap();
    GdiBitmap(const GdiBitmap&) = delete;
    GdiBitmap& operator=(const GdiBitmap&) = delete;
};

/// An object of GDI that is deleted with its last holder; null for a null handle.
std::shared_ptr<void> OwnGdiObject(HGDIOBJ object);

/// What a context holds of GDI: an HDC, its own or the host's, and what is selected into that. An object that
/// is selected lives until another one is, whatever becomes of the pen, brush, font or bitmap that it was
/// made for.
struct CDC::System {
    /// A memory context; its HDC is null when there is not the memory for it.
    System();
    /// The host's.
    explicit System(HDC attached);
    ~System();
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    /// A context's, made at the first call.
    static System& Of(const CDC& dc);
    /// Selects what the context has selected by now, and gives the HDC to draw on.
    static HDC Drawable(const CDC& dc);

    /// Takes the map over into the HDC of a memory context.
    void ApplyMap();

    /// There are pixels that can be drawn on.
    bool HasSurface() const { return isAttached || bitmap; }
    void ChooseBitmap(const std::shared_ptr<GdiBitmap>& wanted);
    /// Selects what the HDC had at first.
    void ChooseFirst();

    /// One kind of object.
    struct Slot {
        std::shared_ptr<void> chosen; ///< Null for the first.
        HGDIOBJ first = nullptr;

        void Choose(HDC hdc, const std::shared_ptr<void>& wanted);
    };

    HDC hdc = nullptr;
    bool isAttached = false;
    /// The map of a memory context. GDI would make the scales of MM_ISOTROPIC equal in the millimetres of the
    /// screen, whole ones, so that 640 pixels may become 639; a bitmap's pixels are square.
    DeviceMapping map;
    /// The position lies where GDI may have to be spared a line from it (see GdiFar).
    bool isPositionFar = false;
    Slot pen;
    Slot brush;
    Slot font;
    std::shared_ptr<GdiBitmap> bitmap;
    HGDIOBJ firstBitmap = nullptr;
    HGDIOBJ systemFont = nullptr; ///< What a memory context has before its first font.
    std::shared_ptr<void> firstFont;
};

/// Values of GDI as ours.
struct GdiValue {
    static CPoint PointOf(const POINT& p) { return {static_cast<int>(p.x), static_cast<int>(p.y)}; }
    static CSize SizeOf(const SIZE& size) { return {static_cast<int>(size.cx), static_cast<int>(size.cy)}; }

    /// What a function that asks a context for a point or a size gives; zeros when it fails.
    template <class Value>
    static Value Ask(BOOL(WINAPI* ask)(HDC, Value*), HDC hdc)
    {
        Value value = {};
        return ask(hdc, &value) ? value : Value{};
    }
};
