#pragma once

#include "model/DXF.h"
#include "model/EntityPlacement.h"

#include <cstdint>

/// Replaces the inserts of a document by the entities that they show. Blocks stay as they are.
class HALYARD_API InsertExploder {
public:
    /// What was done.
    struct Report {
        std::uint64_t inserts = 0;  ///< inserts replaced, nested ones and each cell of an array counted
        std::uint64_t entities = 0; ///< entities made in their place
        std::uint64_t curves = 0;   ///< circles and arcs outside of blocks that were taken to the world
        /// Inserts dropped because their document has no such block; one within a block counts once.
        std::uint64_t missingBlocks = 0;
        /// Visits cut because a block would have held itself, or nesting is too deep.
        std::uint64_t recursive = 0;
        /// A limit stopped the work: the rest of the inserts is dropped, and curves that would need vertices
        /// keep their extrusion.
        bool limitReached = false;
    };

    /// Nesting beyond this depth is cut; an insert outside of blocks has depth 1.
    static constexpr int MAX_DEPTH = 64;
    static constexpr std::uint64_t DEFAULT_LIMIT = 10'000'000;
    static constexpr std::uint64_t DEFAULT_POINT_LIMIT = 40'000'000;

    /// See EntityPlacement.
    static constexpr double CHORD_TOLERANCE = EntityPlacement::CHORD_TOLERANCE;

    /// At most so many entities, which together hold at most so many points (see EntityPlacement::Points).
    explicit InsertExploder(std::uint64_t limit = DEFAULT_LIMIT,
                            std::uint64_t pointLimit = DEFAULT_POINT_LIMIT)
        : m_Limit(limit), m_PointLimit(pointLimit)
    {
    }

    /// Works on every layer of the document, in place: an insert's entities stand where it stood. Entities on
    /// layer "0" of a block come onto the insert's layer, others behind those of the layer of their own name
    /// in the document, which is made when missing (a name that is not valid counts as "0"). Invisible layers
    /// of a block show nothing. Circles and arcs with an extrusion are taken to the world, outside of blocks
    /// too. A block that would hold itself, directly or through others, counts as empty at the second visit.
    ///
    /// Stops when the flag reads false; every insert is then either replaced or as it was.
    Report Explode(DXF& document, const std::atomic<bool>& keepGoing) const;

private:
    std::uint64_t m_Limit;
    std::uint64_t m_PointLimit;
};
