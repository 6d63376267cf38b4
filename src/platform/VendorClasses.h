#pragma once

/// The one switch of the device classes. A compiler that has the vendor's class library builds a host, and
/// this library, with the vendor's CDC, CPen, CBrush, CFont, CBitmap, CRect, CPoint, CSize and CString in
/// place of those that stand beside this header: _AFX or _AFXDLL tells of it, as it does in the host. Both
/// have to be built alike.
///
/// Never built so: no such compiler was at hand (see docs/device.md).
#if defined(_WIN32) && (defined(_AFX) || defined(_AFXDLL))
#define HALYARD_VENDOR_CLASSES
#include <afxwin.h>
#endif
