#include "platform/win32/GdiContext.h"

#include <utility>

#include "platform/SystemObjects.h"

namespace {
/// The font of a memory context without one of the host's.
std::shared_ptr<void> FirstFont()
{
    static const std::shared_ptr<void> s_Font = [] {
        std::shared_ptr<void> font;
        FontWish wish{};
        wish.height = CFont::FIRST_HEIGHT;
        wish.weight = FW_NORMAL;
        wish.outPrecision = OUT_TT_ONLY_PRECIS;
        wish.faceName = L"";
        return SystemObjects::MakeFont(wish, font) ? font : nullptr;
    }();
    return s_Font;
}

template <class Object>
const std::shared_ptr<void>& HandleOf(const Object* object)
{
    static const std::shared_ptr<void> s_None;
    return object ? object->Handle() : s_None;
}
} // namespace

GdiBitmap::~GdiBitmap()
{
    if (handle) ::DeleteObject(handle);
}

std::shared_ptr<void> OwnGdiObject(HGDIOBJ object)
{
    if (!object) return nullptr;
    return {object, [](void* owned) {
                ::DeleteObject(owned);
            }};
}

CDC::System::System() : hdc(::CreateCompatibleDC(nullptr)), firstFont(FirstFont())
{
    if (!hdc) return;
    pen.first = ::GetCurrentObject(hdc, OBJ_PEN);
    brush.first = ::GetCurrentObject(hdc, OBJ_BRUSH);
    font.first = systemFont = ::GetCurrentObject(hdc, OBJ_FONT);
    firstBitmap = ::GetCurrentObject(hdc, OBJ_BITMAP);
    if (!firstFont) return;
    ::SelectObject(hdc, firstFont.get());
    font.first = firstFont.get();
}

CDC::System::System(HDC attached) : hdc(attached), isAttached(true)
{
    pen.first = ::GetCurrentObject(hdc, OBJ_PEN);
    brush.first = ::GetCurrentObject(hdc, OBJ_BRUSH);
    font.first = ::GetCurrentObject(hdc, OBJ_FONT);
    firstBitmap = ::GetCurrentObject(hdc, OBJ_BITMAP);
}

CDC::System::~System()
{
    ChooseFirst();
    if (isAttached || !hdc) return;
    ::SelectObject(hdc, systemFont);
    ::DeleteDC(hdc);
}

void CDC::System::ChooseFirst()
{
    pen.Choose(hdc, nullptr);
    brush.Choose(hdc, nullptr);
    font.Choose(hdc, nullptr);
    ChooseBitmap(nullptr);
}

void CDC::System::Slot::Choose(HDC hdc, const std::shared_ptr<void>& wanted)
{
    if (wanted == chosen) return;
    ::SelectObject(hdc, wanted ? wanted.get() : first);
    chosen = wanted;
}

void CDC::System::ChooseBitmap(const std::shared_ptr<GdiBitmap>& wanted)
{
    if (wanted == bitmap && (!bitmap || bitmap->holder == hdc)) return;
    if (bitmap && bitmap->holder == hdc) {
        ::SelectObject(hdc, firstBitmap);
        bitmap->holder = nullptr;
    }
    bitmap = wanted;
    if (!bitmap) return;
    if (bitmap->holder) ::SelectObject(bitmap->holder, bitmap->holdersFirst);
    ::SelectObject(hdc, bitmap->handle);
    bitmap->holder = hdc;
    bitmap->holdersFirst = firstBitmap;
}

CDC::System& CDC::System::Of(const CDC& dc)
{
    if (!dc.m_System) dc.m_System = std::make_unique<System>();
    return *dc.m_System;
}

HDC CDC::System::Drawable(const CDC& dc)
{
    System& system = Of(dc);
    system.pen.Choose(system.hdc, HandleOf(dc.m_Pen));
    system.brush.Choose(system.hdc, HandleOf(dc.m_Brush));
    system.font.Choose(system.hdc, HandleOf(dc.m_Font));
    system.ChooseBitmap(std::static_pointer_cast<GdiBitmap>(HandleOf(dc.m_Bitmap)));
    return system.hdc;
}
