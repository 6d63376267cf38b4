#pragma once

/// Declares, of the vendor's device classes, what this library uses, as their reference publishes it. Sources
/// are compiled with it, never linked: that shows only that they ask for nothing which the vendor's classes
/// lack.
#include <windows.h>

struct CSize : SIZE {
    CSize();
    CSize(int cx, int cy);
    BOOL operator==(SIZE size) const;
};

class CPoint : public POINT {
public:
    CPoint();
    CPoint(int x, int y);
    CPoint(POINT point);
    BOOL operator==(POINT point) const;
};

class CRect : public RECT {
public:
    CRect();
    CRect(int l, int t, int r, int b);
    CRect(const RECT& rect);
    int Width() const;
    int Height() const;
    BOOL IsRectEmpty() const;
    BOOL EqualRect(LPCRECT rect) const;
    BOOL IntersectRect(LPCRECT a, LPCRECT b);
    operator LPCRECT() const;
    operator LPRECT();
};

class CString {
public:
    CString();
    CString(const wchar_t* text);
    int GetLength() const;
    operator const wchar_t*() const;
};

class CObject {
public:
    virtual ~CObject();

protected:
    CObject();
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
};

class CGdiObject : public CObject {
public:
    CGdiObject();
    HGDIOBJ GetSafeHandle() const;
    BOOL Attach(HGDIOBJ object);
    BOOL DeleteObject();
};

class CPen : public CGdiObject {
public:
    CPen();
    CPen(int style, int width, COLORREF color);
    BOOL CreatePen(int style, int width, COLORREF color);
};

class CBrush : public CGdiObject {
public:
    CBrush();
    CBrush(COLORREF color);
};

class CFont : public CGdiObject {
public:
    BOOL CreateFontW(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                     BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision, BYTE clipPrecision,
                     BYTE quality, BYTE pitch, LPCTSTR faceName);
};

class CDC;

class CBitmap : public CGdiObject {
public:
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
};

class CDC : public CObject {
public:
    CDC();
    HDC GetSafeHdc() const;
    virtual BOOL CreateCompatibleDC(CDC* dc);
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    virtual CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    virtual int SetMapMode(int mode);
    CPoint SetWindowOrg(int x, int y);
    CPoint SetViewportOrg(int x, int y);
    virtual CSize SetWindowExt(int cx, int cy);
    virtual CSize SetViewportExt(int cx, int cy);
    void DPtoLP(LPPOINT points, int count = 1) const;
    void LPtoDP(LPPOINT points, int count = 1) const;
    int SetBkMode(int mode);
    virtual COLORREF SetTextColor(COLORREF color);
    UINT SetTextAlign(UINT flags);
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT point);
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT point);
    BOOL Polyline(const POINT* points, int count);
    BOOL Polygon(const POINT* points, int count);
    COLORREF SetPixel(int x, int y, COLORREF color);
    COLORREF SetPixel(POINT point, COLORREF color);
    void FillSolidRect(LPCRECT rect, COLORREF color);
    CSize GetTextExtent(LPCTSTR text, int count) const;
    virtual BOOL TextOutW(int x, int y, LPCTSTR text, int count);
    BOOL BitBlt(int x, int y, int width, int height, CDC* source, int sourceX, int sourceY, DWORD operation);
};
