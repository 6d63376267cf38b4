#pragma once

#include <string>

#include "platform/CBitmap.h"
#include "platform/Export.h"

/// Writes a bitmap to a picture file, opaque, without metadata: PNG for the extension "png", an uncompressed
/// 24-bit BMP for "bmp", in any case. The file is created or emptied first.
///
/// False on failure; `reason`, if given, then says why in one clause ("no such folder", "not a picture format
/// that can be written"). A file that was begun then holds what could be written.
[[nodiscard]] HALYARD_API bool SavePicture(const std::wstring& name, const CBitmap& bitmap,
                                           std::wstring* reason = nullptr);
