#pragma once

#include <map>

/// An ordered set of handle numbers, kept as runs: handles come mostly in sequence, and a file may use millions.
class HandleSet {
public:
    /// No effect when it is there already.
    void Add(int handle);
    bool Has(int handle) const;
    /// The smallest number above `handle` that is not in the set; wraps to 1 past the largest int.
    int NextFree(int handle) const;
    bool IsEmpty() const { return m_Runs.empty(); }

private:
    std::map<int, int> m_Runs; ///< first to last of each run; runs never touch
};
