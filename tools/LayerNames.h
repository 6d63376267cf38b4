#pragma once

#include "Drawing.h"

/// The layer that a user means by a name, without regard to case; null when there is none.
DXFLayer* LayerMeant(Drawing& drawing, const std::string& name);
/// "there is no layer NAME"
std::wstring NoSuchLayer(const std::string& name);
