#pragma once

#include "model/DXF.h"

#include <cstdint>

/// What a drawing had to lose for a plot file.
struct PlotForm {
    std::uint64_t arcs = 0; ///< arcs in polylines and polygons that became chords
    std::uint64_t flattened =
        0; ///< arcs that became one straight line each, since chords would have been too many
    /// Inserts whose layer would give the block another look than it has now.
    std::uint64_t otherLooks = 0;
};

/// Brings a drawing, its blocks included, to what a plot file holds, so that reading the file gives the same:
/// arcs in polylines become chords, and what an entity of a block leaves to the layer of the insert takes the
/// look of the layer of the block's first insert. Stops when the flag reads false.
PlotForm BringToPlotForm(DXF& document, const std::atomic<bool>& keepGoing);
