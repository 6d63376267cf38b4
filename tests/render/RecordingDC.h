#pragma once

#include "platform/CDC.h"

#include <sstream>
#include <string>
#include <vector>

/// A device that draws nothing and notes each call as a line of text, lines with the pen that draws them.
/// Texts are measured with the real fonts.
class RecordingDC : public CDC {
public:
    using CDC::LineTo;
    using CDC::MoveTo;
    using CDC::SelectObject;
    using CDC::SetPixel;

    std::vector<std::string> calls;

    /// What was noted since the last time.
    std::vector<std::string> Take()
    {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    CFont* SelectObject(CFont* font) override
    {
        std::ostringstream text;
        if (font)
            text << "font " << font->Height() << " at " << font->Escapement();
        else
            text << "font before";
        calls.push_back(text.str());
        return CDC::SelectObject(font);
    }
    int SetMapMode(int mode) override { return Note("mode", mode), CDC::SetMapMode(mode); }
    CSize SetWindowExt(int cx, int cy) override { return Note("window", cx, cy), CDC::SetWindowExt(cx, cy); }
    CSize SetViewportExt(int cx, int cy) override
    {
        return Note("viewport", cx, cy), CDC::SetViewportExt(cx, cy);
    }
    CPoint SetWindowOrg(int x, int y) override { return Note("origin", x, y), CDC::SetWindowOrg(x, y); }
    CPoint SetViewportOrg(int x, int y) override
    {
        return Note("viewport origin", x, y), CDC::SetViewportOrg(x, y);
    }
    int SetBkMode(int mode) override { return Note("background", mode), CDC::SetBkMode(mode); }
    unsigned long SetTextColor(unsigned long color) override
    {
        return Note("text color", color), CDC::SetTextColor(color);
    }
    unsigned SetTextAlign(unsigned align) override { return Note("align", align), CDC::SetTextAlign(align); }
    bool SetClipPolygon(const CPoint* points, int count) override
    {
        calls.push_back("clip" + Places(points, count));
        return true;
    }
    void ResetClip() override { calls.push_back("no clip"); }
    CPoint MoveTo(int x, int y) override { return Note("move", x, y), CPoint(); }
    bool LineTo(int x, int y) override
    {
        calls.push_back(PenText() + " line " + Place({x, y}));
        return true;
    }
    bool Polyline(const CPoint* points, int count) override
    {
        lengths.push_back(count);
        calls.push_back(PenText() + " polyline" + Places(points, count));
        return true;
    }
    bool Polygon(const CPoint* points, int count) override
    {
        std::ostringstream brush;
        brush << " brush " << std::hex << (GetCurrentBrush() ? GetCurrentBrush()->Color() : 0);
        calls.push_back(PenText() + brush.str() + " polygon" + Places(points, count));
        return true;
    }
    unsigned long SetPixel(int x, int y, unsigned long color) override
    {
        std::ostringstream text;
        text << "pixel " << x << ',' << y << ' ' << std::hex << color;
        calls.push_back(text.str());
        return color;
    }
    bool TextOutW(int x, int y, const wchar_t* text, int length) override
    {
        const std::wstring line(text, static_cast<std::size_t>(length));
        calls.push_back("text " + Place({x, y}) + ' ' + std::string(line.begin(), line.end()));
        return true;
    }
    bool DrawPicture(const Picture&, const CPoint& a, const CPoint& b, const CPoint& c, bool) override
    {
        calls.push_back("picture " + Place(a) + ' ' + Place(b) + ' ' + Place(c));
        return true;
    }

    std::vector<int> lengths; ///< numbers of points of all polylines

private:
    static std::string Place(CPoint p) { return std::to_string(p.x) + ',' + std::to_string(p.y); }
    static std::string Places(const CPoint* points, int count)
    {
        std::string text;
        for (int i = 0; i < count; ++i) text += ' ' + Place(points[i]);
        return text;
    }
    template <class... Numbers>
    void Note(const char* what, Numbers... numbers)
    {
        std::ostringstream text;
        text << what;
        ((text << ' ' << numbers), ...);
        calls.push_back(text.str());
    }
    /// Style, width and colour.
    std::string PenText() const
    {
        const CPen* pen = GetCurrentPen();
        if (!pen) return "no pen";
        std::ostringstream text;
        text << "pen " << pen->Style() << ' ' << pen->Width() << ' ' << std::hex << pen->Color() << std::dec;
        for (const int length : pen->Pattern()) text << '/' << length;
        return text.str();
    }
};
