#pragma once

#include <memory>

#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CFont.h"
#include "platform/CPen.h"
#include "platform/CPoint.h"
#include "platform/CRect.h"
#include "platform/CSize.h"
#include "platform/Export.h"
#include "platform/GdiConstants.h"
#include "platform/VendorClasses.h"

#ifndef HALYARD_VENDOR_CLASSES

struct Picture;

/// A device context that draws into the bitmap that is selected into it; without a bitmap it measures and
/// draws nothing. On Windows it is a memory context of GDI, or one of the host's that is attached; elsewhere
/// it draws in software, with the pixels that GDI gives. Every operation that a drawer uses is virtual: a
/// derived class draws elsewhere, or records what is drawn.
///
/// Points and sizes are in logical units unless said otherwise: device = (logical - window origin) * viewport
/// extent / window extent + viewport origin, for each axis, to the nearest pixel, halves up. Any int is a
/// valid coordinate. A colour is a word 0x00BBGGRR; higher bits are ignored. A count below 0 counts as 0. A
/// context starts with the map mode MM_TEXT, the background mode OPAQUE, black text, a white background, the
/// alignment TA_LEFT | TA_TOP, the fill rule ALTERNATE and the position (0, 0).
///
/// A context is used by one thread at a time; different contexts by different threads, as long as they draw
/// into different bitmaps.
class HALYARD_API CDC {
public:
    /// What is drawn has exactly the pixels of its rule while its points lie within so many units of the
    /// origin; beyond, it lies within a unit of its place.
#ifdef _WIN32
    static constexpr int EXACT_REACH = 1 << 16;
#else
    static constexpr int EXACT_REACH = 0x7FFFFFFF;
#endif

    CDC();
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

#ifdef _WIN32
    /// Takes a context of GDI, an HDC, to draw on from now on: what was selected or set before is forgotten,
    /// and what the HDC has selected and set counts. It stays the caller's, who detaches it (or lets this
    /// object end) before giving it back. False for null, and nothing is changed then.
    bool Attach(void* hdc);
    /// Ends that, with what was selected here taken out of it again. Returns the HDC; null when none was
    /// attached.
    void* Detach();
    /// The HDC that is drawn on. Null when there is not the memory for one.
    void* GetSafeHdc() const;
#endif

    /// Makes this a new memory context: everything selected or set before is forgotten. Any context is
    /// compatible, so `other` may be null. Always true.
    virtual bool CreateCompatibleDC(CDC* other);
    /// The same; nothing else has to be given back.
    virtual bool DeleteDC();

    /// Selects an object, not owned: it has to live until another one is selected or the context ends. Null
    /// stands for the object that a new context has (see the classes; no bitmap). Returns the one before,
    /// null in the same sense.
    virtual CPen* SelectObject(CPen* pen);
    virtual CBrush* SelectObject(CBrush* brush);
    virtual CFont* SelectObject(CFont* font);
    virtual CBitmap* SelectObject(CBitmap* bitmap);
    CPen* GetCurrentPen() const
    {
        return m_Pen;
    }
    CBrush* GetCurrentBrush() const
    {
        return m_Brush;
    }
    CFont* GetCurrentFont() const
    {
        return m_Font;
    }
    CBitmap* GetCurrentBitmap() const
    {
        return m_Bitmap;
    }

    /// The map of coordinates. Each returns what was set before: the mode is 0 and the extent (0, 0) when
    /// nothing was changed because the argument is refused. MM_TEXT makes both extents (1, 1); there they
    /// stay whatever is set. In MM_ISOTROPIC the viewport extent is shrunk on one axis until both axes have
    /// the same scale; MM_ANISOTROPIC keeps the extents. An extent of zero is refused.
    virtual int SetMapMode(int mode);
    virtual CPoint SetWindowOrg(int x, int y);
    virtual CPoint SetViewportOrg(int x, int y);
    virtual CSize SetWindowExt(int cx, int cy);
    virtual CSize SetViewportExt(int cx, int cy);
    int GetMapMode() const;
    CPoint GetWindowOrg() const;
    CPoint GetViewportOrg() const;
    CSize GetWindowExt() const;
    CSize GetViewportExt() const;

    /// Maps points in place from device pixels to logical units, and back.
    virtual void DPtoLP(CPoint* points, int count = 1) const;
    virtual void LPtoDP(CPoint* points, int count = 1) const;

    /// Each returns what was set before. OPAQUE: gaps of dashed cosmetic pens and the cells of text are
    /// filled with the background colour. (Set TRANSPARENT before dashed lines that shall not cover what they
    /// cross.)
    virtual int SetBkMode(int mode);
    virtual unsigned long SetBkColor(unsigned long color);
    virtual unsigned long SetTextColor(unsigned long color);
    virtual unsigned SetTextAlign(unsigned align);
    virtual int SetPolyFillMode(int mode);
    int GetBkMode() const;
    unsigned long GetBkColor() const;
    unsigned long GetTextColor() const;
    unsigned GetTextAlign() const;
    int GetPolyFillMode() const;

    /// Draws from now on only on the pixels that Polygon fills (rule ALTERNATE), in place of what was set
    /// before; fewer than 3 points let nothing through. The polygon is mapped when it is set. It counts for
    /// the bitmap that is selected then: selecting one of another size resets the clip.
    virtual bool SetClipPolygon(const CPoint* points, int count);
    virtual void ResetClip();

    /// Lines with the selected pen. A cosmetic line excludes its last pixel; its dashes run on through the
    /// vertices of one Polyline and start anew at each LineTo. LineTo leaves the position at its end,
    /// Polyline where it was. MoveTo returns the position before. Polyline: false for fewer than 2 points.
    virtual CPoint MoveTo(int x, int y);
    virtual bool LineTo(int x, int y);
    virtual bool Polyline(const CPoint* points, int count);
    CPoint MoveTo(const CPoint& p)
    {
        return MoveTo(p.x, p.y);
    }
    bool LineTo(const CPoint& p)
    {
        return LineTo(p.x, p.y);
    }
    CPoint GetCurrentPosition() const;

    /// Fills with the brush by the fill rule, then draws the closed outline with the pen. False for fewer
    /// than 2 points.
    virtual bool Polygon(const CPoint* points, int count);

    /// Returns the colour that is there now; CLR_INVALID outside the bitmap or the clip.
    virtual unsigned long SetPixel(int x, int y, unsigned long color);
    virtual unsigned long GetPixel(int x, int y) const;
    unsigned long SetPixel(const CPoint& p, unsigned long color)
    {
        return SetPixel(p.x, p.y, color);
    }

    /// Fills a rectangle, its right and bottom side excluded, and makes the colour the background colour.
    virtual void FillSolidRect(const CRect& rect, unsigned long color);

    /// Size of a text in the selected font, its direction aside: the sum of the advances and the cell height;
    /// nothing for an empty text.
    virtual CSize GetTextExtent(const wchar_t* text, int length) const;
    /// Draws a text with its point of reference (SetTextAlign) at (x, y); with TA_UPDATECP at the position,
    /// which then moves to where the text ends (starts, for TA_RIGHT; stays for TA_CENTER). Edges are
    /// grey-level.
    virtual bool TextOutW(int x, int y, const wchar_t* text, int length);

    /// Copies a rectangle of another context's bitmap. Sizes are those of the target, in logical units;
    /// (sourceX, sourceY) is in the source's. Pixels are never stretched: the two maps have to have the same
    /// scale. Source and target may be the same bitmap. Only SRCCOPY; false otherwise or without a source.
    virtual bool BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY,
                        unsigned long operation);

    /// Draws a picture into the parallelogram whose corners are the images of the picture's upper left, upper
    /// right and lower left corner; bilinear between the centres of pixels. With `hasTransparency` a pixel
    /// counts by its alpha, so that those of the colour key are left out; else all are opaque. False for an
    /// area of zero.
    virtual bool DrawPicture(const Picture& picture, const CPoint& upperLeft, const CPoint& upperRight,
                             const CPoint& lowerLeft, bool hasTransparency);

private:
    struct System;

    CPen* m_Pen = nullptr;
    CBrush* m_Brush = nullptr;
    CFont* m_Font = nullptr;
    CBitmap* m_Bitmap = nullptr;
    mutable std::unique_ptr<System> m_System; ///< what else is set, and what draws
};

#endif
