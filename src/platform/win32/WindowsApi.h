#pragma once

/// The one place that includes <windows.h>. What it defines as macros and this library uses as names is taken
/// back; the constants of GDI, which GdiConstants.h declares where this header was not included before, keep
/// theirs.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef STRICT
#define STRICT
#endif
#include <windows.h>

#undef ERROR
#undef FAILED
#undef GetObject
#undef IN
#undef OUT
#undef TEXT
#undef far
#undef near
