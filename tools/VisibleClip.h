#pragma once

#include "clip/DXFClipContext.h"
#include "model/DXF.h"

/// Cuts a drawing without inserts down to the window as DXF::Clip does, but so that nothing that shows is
/// lost: lines and arcs keep every stretch that lies in the window, circles that cross it become two half
/// arcs that are cut likewise, and all pieces of an entity get its attributes. Stretches of arcs that six
/// decimals of a degree cannot tell from a point go. Layers that are left empty go, but for "0". Stops when
/// the flag reads false; the drawing is then good for nothing.
void ClipVisibly(DXF& document, DXFClipContext window, const std::atomic<bool>& keepGoing);
