#pragma once

#include <cstddef>

/// An index that walks round a ring of positions and wraps at its ends. The ring is not owned and must not be
/// empty.
template <class Ring>
class CircIterator {
public:
    explicit CircIterator(const Ring& ring, std::size_t index = 0)
        : m_Ring(&ring), m_Index(index % ring.size())
    {
    }

    CircIterator& operator++()
    {
        m_Index = m_Index + 1 == m_Ring->size() ? 0 : m_Index + 1;
        return *this;
    }
    CircIterator operator++(int)
    {
        const CircIterator before = *this;
        ++*this;
        return before;
    }
    /// So many positions back; negative numbers go forward.
    CircIterator operator-(int steps) const
    {
        const long long size = static_cast<long long>(m_Ring->size());
        const long long back = ((static_cast<long long>(m_Index) - steps) % size + size) % size;
        return CircIterator(*m_Ring, static_cast<std::size_t>(back));
    }
    decltype(auto) operator*() const { return (*m_Ring)[m_Index]; }
    std::size_t Index() const { return m_Index; }
    bool operator==(const CircIterator& other) const { return m_Index == other.m_Index; }

private:
    const Ring* m_Ring;
    std::size_t m_Index;
};
