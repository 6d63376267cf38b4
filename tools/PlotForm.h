#pragma once

#include "model/DXF.h"

#include <cstdint>

/// What a drawing had to lose for a plot file.
struct PlotForm {
    std::uint64_t arcs = 0; ///< arcs in polylines and polygons that became chords
    std::uint64_t flattened =
        0; ///< arcs that became one straight line each, since chords would have been too many
};

/// Brings a drawing, its blocks included, to what a plot file holds, so that reading the file gives the same:
/// arcs in polylines become chords, and what an entity of a block leaves to the layer of the insert takes a
/// layer's defaults. Stops when the flag reads false.
PlotForm BringToPlotForm(DXF& document, const std::atomic<bool>& keepGoing);
