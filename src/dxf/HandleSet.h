#pragma once

#include "platform/Export.h"

#include <map>

/// An ordered set of handle numbers, kept as runs: handles come mostly in sequence, and a file may use
/// millions.
class HALYARD_API HandleSet {
public:
    /// No effect when it is there already.
    void Add(int handle);
    bool Has(int handle) const;
    /// The smallest number above `handle`, and above 0, that is not in the set; past the largest int it is
    /// looked for again from 1 on. 1 when every number from 1 on is taken.
    int NextFree(int handle) const;
    bool IsEmpty() const { return m_Runs.empty(); }

private:
    using Runs = std::map<int, int>;
    Runs::const_iterator RunOf(int handle) const;

    Runs m_Runs; ///< first to last of each run; runs never touch
};
