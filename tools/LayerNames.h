#pragma once

#include "Drawing.h"

/// A user who writes this name means this layer: without regard to case, and as names are shown.
bool IsMeant(const DXFLayer& layer, const std::string& name);
/// The layer that a user means by a name, without regard to case; null when there is none.
DXFLayer* LayerMeant(Drawing& drawing, const std::string& name);
/// "there is no layer NAME"
std::wstring NoSuchLayer(const std::string& name);
