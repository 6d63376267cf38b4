// A window that shows a drawing:  viewer FILE.dxf [--screenshot FILE.png]
//
// The wheel zooms about the mouse, the left button drags. The view keeps its picture: moving another window
// over this one costs a copy. With --screenshot the window is shown once, saved as a picture and closed.
#include <windows.h>

#include <shellapi.h>

#include <atomic>
#include <cmath>
#include <string>

#include "dxf/DXFFile.h"
#include "model/DXF.h"
#include "platform/CDC.h"
#include "platform/PictureFile.h"
#include "render/NewWinDXF.h"

namespace {
constexpr double ZOOM = 1.25; // a notch of the wheel
constexpr unsigned long BACKGROUND = RGB(24, 28, 34);

struct Window {
    DXF drawing;
    NewWinDXF view{&drawing};
    double x = 0; ///< The drawing's place in the middle of the window, in drawing units.
    double y = 0;
    double scale = 0; ///< Drawing units a pixel.
    POINT grip = {};  ///< Where the mouse was while dragging.
    std::wstring screenshot;
};

CRect ClientOf(HWND handle)
{
    RECT rect = {};
    GetClientRect(handle, &rect);
    return {0, 0, static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
}

void ShowAll(Window& window, const CRect& rect)
{
    const GTL::Extents3D<double> box = window.drawing.Extents();
    if (!box.IsValid() || rect.IsRectEmpty()) return;
    window.x = (box.MinX() + box.MaxX()) / 2;
    window.y = (box.MinY() + box.MaxY()) / 2;
    window.scale =
        1.05 * std::fmax((box.MaxX() - box.MinX()) / rect.Width(), (box.MaxY() - box.MinY()) / rect.Height());
    if (!(window.scale > 0)) window.scale = 1;
}

void Paint(Window& window, HWND handle)
{
    PAINTSTRUCT paint = {};
    const HDC hdc = BeginPaint(handle, &paint);
    const CRect rect = ClientOf(handle);
    const double w = window.scale * rect.Width() / 2;
    const double h = window.scale * rect.Height() / 2;
    CDC dc;
    dc.Attach(hdc);
    window.view.Draw(&dc, {{window.x - w, window.y - h}, {window.x + w, window.y + h}}, rect);
    if (!window.screenshot.empty()) {
        CBitmap bitmap;
        CDC memory;
        const bool isSaved = bitmap.CreateBitmap(rect.Width(), rect.Height()) && !memory.SelectObject(&bitmap)
                             && memory.BitBlt(0, 0, rect.Width(), rect.Height(), &dc, 0, 0, SRCCOPY)
                             && SavePicture(window.screenshot, bitmap);
        PostQuitMessage(isSaved ? 0 : 1);
    }
    dc.Detach();
    EndPaint(handle, &paint);
}

/// Keeps the drawing's place below the mouse.
void Zoom(Window& window, HWND handle, POINT mouse, int delta)
{
    ScreenToClient(handle, &mouse);
    const CRect rect = ClientOf(handle);
    const double dx = mouse.x - rect.Width() / 2.0;
    const double dy = rect.Height() / 2.0 - mouse.y;
    const double before = window.scale;
    window.scale *= std::pow(ZOOM, -static_cast<double>(delta) / WHEEL_DELTA);
    window.x += dx * (before - window.scale);
    window.y += dy * (before - window.scale);
    InvalidateRect(handle, nullptr, FALSE);
}

void Drag(Window& window, HWND handle, POINT mouse)
{
    window.x -= (mouse.x - window.grip.x) * window.scale;
    window.y += (mouse.y - window.grip.y) * window.scale;
    window.grip = mouse;
    InvalidateRect(handle, nullptr, FALSE);
}

LRESULT CALLBACK Answer(HWND handle, UINT message, WPARAM word, LPARAM value)
{
    auto* window = reinterpret_cast<Window*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
    if (!window) return DefWindowProcW(handle, message, word, value);
    const POINT mouse = {static_cast<short>(LOWORD(value)), static_cast<short>(HIWORD(value))};
    switch (message) {
    case WM_PAINT:
        return Paint(*window, handle), 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        return InvalidateRect(handle, nullptr, FALSE), 0;
    case WM_MOUSEWHEEL:
        return Zoom(*window, handle, mouse, static_cast<short>(HIWORD(word))), 0;
    case WM_LBUTTONDOWN:
        return SetCapture(handle), window->grip = mouse, 0;
    case WM_LBUTTONUP:
        return ReleaseCapture(), 0;
    case WM_MOUSEMOVE:
        return (word & MK_LBUTTON) != 0 ? Drag(*window, handle, mouse) : void(), 0;
    case WM_DESTROY:
        return PostQuitMessage(0), 0;
    default:
        return DefWindowProcW(handle, message, word, value);
    }
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    Window window;
    const std::atomic<bool> keepGoing{true};
    DXFFile reader;
    // Colours of blocks, what is mirrored, and fitted texts as other programs have them.
    reader.SetBlocksUseDocumentLayers(true);
    reader.SetExtrusionsToWorld(true);
    reader.SetFitsTexts(true);
    if (count < 2 || !reader.Read(arguments[1], window.drawing, keepGoing, true)) {
        MessageBoxW(nullptr, L"viewer FILE.dxf: no drawing could be read", L"viewer", MB_ICONERROR);
        return 2;
    }
    if (count > 3 && std::wstring(arguments[2]) == L"--screenshot") window.screenshot = arguments[3];
    window.view.SetOption(DrawingOption::All(BACKGROUND));

    WNDCLASSW kind = {};
    kind.lpfnWndProc = Answer;
    kind.hInstance = instance;
    kind.hCursor = LoadCursorW(nullptr, reinterpret_cast<const wchar_t*>(IDC_CROSS));
    kind.lpszClassName = L"HalyardViewer";
    RegisterClassW(&kind);
    const HWND handle = CreateWindowW(kind.lpszClassName, arguments[1], WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                      CW_USEDEFAULT, 1000, 700, nullptr, nullptr, instance, nullptr);
    if (!handle) return 1;
    ShowAll(window, ClientOf(handle));
    SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&window));
    ShowWindow(handle, SW_SHOWNORMAL);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    return static_cast<int>(message.wParam);
}
