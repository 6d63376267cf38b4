#include "dxf/HandleSet.h"

#include <iterator>
#include <limits>

namespace {

constexpr int LARGEST = std::numeric_limits<int>::max();

} // namespace

HandleSet::Runs::const_iterator HandleSet::RunOf(int handle) const
{
    const auto next = m_Runs.upper_bound(handle);
    if (next == m_Runs.begin()) return m_Runs.end();
    const auto run = std::prev(next);
    return handle <= run->second ? run : m_Runs.end();
}

bool HandleSet::Has(int handle) const
{
    return RunOf(handle) != m_Runs.end();
}

void HandleSet::Add(int handle)
{
    auto next = m_Runs.upper_bound(handle);
    const bool touchesNext = next != m_Runs.end() && handle != LARGEST && next->first == handle + 1;
    if (next != m_Runs.begin()) {
        const auto run = std::prev(next);
        if (handle <= run->second) return;
        if (run->second + 1 == handle) {
            run->second = touchesNext ? next->second : handle;
            if (touchesNext) m_Runs.erase(next);
            return;
        }
    }
    const int last = touchesNext ? next->second : handle;
    if (touchesNext) next = m_Runs.erase(next);
    m_Runs.emplace_hint(next, handle, last);
}

int HandleSet::NextFree(int handle) const
{
    const int candidate = handle > 0 && handle != LARGEST ? handle + 1 : 1;
    const auto run = RunOf(candidate);
    if (run == m_Runs.end()) return candidate;
    if (run->second != LARGEST) return run->second + 1;
    const auto first = RunOf(1);
    return first == m_Runs.end() || first == run ? 1 : first->second + 1;
}
