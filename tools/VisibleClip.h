#pragma once

#include "clip/DXFClipContext.h"
#include "model/DXF.h"

/// Cuts a drawing without inserts down to the window as DXF::Clip does, but so that nothing that shows is
/// lost: circles that cross the window, and arcs that are full turns, are first split into two half arcs with
/// their attributes, and all pieces of an entity get its attributes. Layers that are left empty go, but for
/// "0". Stops when the flag reads false; the drawing is then good for nothing.
void ClipVisibly(DXF& document, DXFClipContext window, const std::atomic<bool>& keepGoing);
