#pragma once

#include <chrono>

/// A stop watch.
class UtilityTimer {
public:
    void Start() { m_Start = std::chrono::steady_clock::now(); }
    /// Milliseconds since Start.
    double Stop() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_Start).count();
    }

private:
    std::chrono::steady_clock::time_point m_Start = std::chrono::steady_clock::now();
};
