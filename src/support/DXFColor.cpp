#include "support/DXFColor.h"

#include "support/ColorTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

constexpr std::uint32_t LOW_24_BITS = 0xFFFFFF;

constexpr int Channel(std::uint32_t color, int channel)
{
    return static_cast<int>(color >> (8 * channel) & 0xFF);
}

constexpr int Square(int value)
{
    return value * value;
}

/// Places of the table's colours, by open addressing; a quarter full.
class ExactColors {
public:
    constexpr ExactColors()
    {
        for (std::size_t index = 0; index < COLOR_TABLE.size(); ++index) {
            std::size_t slot = FirstSlot(COLOR_TABLE[index]);
            while (m_Slots[slot] != EMPTY && COLOR_TABLE[m_Slots[slot]] != COLOR_TABLE[index])
                slot = Next(slot);
            if (m_Slots[slot] == EMPTY) m_Slots[slot] = static_cast<std::uint16_t>(index);
        }
    }

    /// The lowest index of a colour; -1 when the table does not have it.
    int Of(std::uint32_t color) const
    {
        for (std::size_t slot = FirstSlot(color); m_Slots[slot] != EMPTY; slot = Next(slot))
            if (COLOR_TABLE[m_Slots[slot]] == color) return m_Slots[slot];
        return -1;
    }

private:
    static constexpr int SLOT_BITS = 10;
    static constexpr std::uint16_t EMPTY = 0xFFFF;

    static constexpr std::size_t FirstSlot(std::uint32_t color)
    {
        constexpr std::uint32_t GOLDEN_RATIO = 2654435769U; // of 2^32: spreads neighbours
        return (color * GOLDEN_RATIO) >> (32 - SLOT_BITS);
    }
    static constexpr std::size_t Next(std::size_t slot) { return (slot + 1) % (std::size_t{1} << SLOT_BITS); }
    static constexpr std::array<std::uint16_t, std::size_t{1} << SLOT_BITS> NoColors()
    {
        std::array<std::uint16_t, std::size_t{1} << SLOT_BITS> slots{};
        slots.fill(EMPTY);
        return slots;
    }

    std::array<std::uint16_t, std::size_t{1} << SLOT_BITS> m_Slots = NoColors();
};

constexpr ExactColors EXACT_COLORS;

/// For every cell of a grid over the colour cube: the table's entries that can be the nearest one of some
/// colour in the cell, by ascending index. Those are all entries whose least distance to the cell is not more
/// than the smallest of all greatest distances; a dozen for most cells.
class NearestColors {
public:
    NearestColors()
    {
        for (std::uint32_t cell = 0; cell < CELLS; ++cell) {
            m_First[cell] = static_cast<std::uint16_t>(m_Candidates.size());
            AddCandidates(cell);
        }
        m_First[CELLS] = static_cast<std::uint16_t>(m_Candidates.size());
    }

    /// Index of the nearest entry, the lowest among equals.
    int Of(std::uint32_t color) const
    {
        const std::size_t cell = CellOf(color);
        int best = 0;
        int bestDistance = DISTANCE_LIMIT;
        for (std::size_t i = m_First[cell]; i < m_First[cell + 1]; ++i) {
            const int distance = SquaredDistance(color, m_Candidates[i].color);
            if (distance < bestDistance) {
                best = m_Candidates[i].index;
                bestDistance = distance;
            }
        }
        return best;
    }

private:
    static constexpr int CELL_BITS = 3; ///< Of each channel.
    static constexpr int CELL_SIZE = 1 << (8 - CELL_BITS);
    static constexpr std::size_t CELLS = std::size_t{1} << (3 * CELL_BITS);
    static constexpr int DISTANCE_LIMIT = 3 * 256 * 256;

    struct Candidate {
        std::uint32_t color : 24;
        std::uint32_t index : 8;
    };

    static std::size_t CellOf(std::uint32_t color)
    {
        std::size_t cell = 0;
        for (int channel = 0; channel < 3; ++channel)
            cell = cell << CELL_BITS | static_cast<std::size_t>(Channel(color, channel) / CELL_SIZE);
        return cell;
    }

    struct Range {
        int least = 0;
        int greatest = 0;
    };

    /// Squared distances between a colour and the colours of a cell.
    static Range DistanceToCell(std::uint32_t color, std::uint32_t cell)
    {
        Range range;
        for (int channel = 0; channel < 3; ++channel) {
            const int place = static_cast<int>(cell >> (CELL_BITS * (2 - channel))) % (1 << CELL_BITS);
            const int low = place * CELL_SIZE;
            const int high = low + CELL_SIZE - 1;
            const int value = Channel(color, channel);
            range.least += Square(value - std::clamp(value, low, high));
            range.greatest += Square(std::max(value - low, high - value));
        }
        return range;
    }

    void AddCandidates(std::uint32_t cell)
    {
        int bound = DISTANCE_LIMIT;
        for (const std::uint32_t color : COLOR_TABLE)
            bound = std::min(bound, DistanceToCell(color, cell).greatest);
        for (std::uint32_t index = 0; index < COLOR_TABLE.size(); ++index)
            if (DistanceToCell(COLOR_TABLE[index], cell).least <= bound)
                m_Candidates.push_back({COLOR_TABLE[index] & LOW_24_BITS, index & 0xFF});
    }

    std::array<std::uint16_t, CELLS + 1> m_First{};
    std::vector<Candidate> m_Candidates;
};

} // namespace

DXFColor::DXFColor(int index)
    : m_Index(index >= 0 && index < static_cast<int>(COLOR_TABLE.size()) ? index : 0)
{
    m_Rgb = SwapRedBlue(COLOR_TABLE[static_cast<std::size_t>(m_Index)]);
}

DXFColor::DXFColor(unsigned long rgb) : m_Rgb(rgb & LOW_24_BITS) {}

int DXFColor::Index() const
{
    if (m_Index >= 0) return m_Index;
    const auto color = static_cast<std::uint32_t>(SwapRedBlue(m_Rgb));
    if (const int index = EXACT_COLORS.Of(color); index >= 0) return index;
    static const NearestColors s_Nearest;
    return s_Nearest.Of(color);
}
