#pragma once

#include "model/DXF.h"

#include <cstdint>

/// Replaces the inserts of a document by the entities that they show.
class HALYARD_API InsertExploder {
public:
    /// What was done.
    struct Report {
        std::uint64_t inserts = 0;         ///< inserts replaced, nested ones and each cell of an array counted
        std::uint64_t entities = 0;        ///< entities made
        std::uint64_t missingBlocks = 0;   ///< inserts dropped because their document has no such block
        std::uint64_t recursive = 0;       ///< visits cut because a block would have held itself, or nesting is too deep
        bool limitReached = false;         ///< the limit on entities stopped the work: the rest of the inserts is dropped
    };

    /// Nesting beyond this depth is cut.
    static constexpr int MAX_DEPTH = 64;
    static constexpr std::uint64_t DEFAULT_LIMIT = 10'000'000;

    /// Arcs that no arc can stand for (uneven scales, tilted planes) become polylines that stay within this part of
    /// their radius (after the larger scale).
    static constexpr double CHORD_TOLERANCE = 1e-4;

    explicit InsertExploder(std::uint64_t limit = DEFAULT_LIMIT) : m_Limit(limit) {}

    /// Works on every layer of the document, in place: an insert's entities stand where it stood. Entities on layer "0"
    /// of a block come onto the insert's layer, others onto the layer of their own name in the document, which is made
    /// when missing. Circles and arcs with an extrusion are taken to the world. Stops when the flag reads false.
    Report Explode(DXF& document, const std::atomic<bool>& keepGoing);

private:
    std::uint64_t m_Limit;
};
