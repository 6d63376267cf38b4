#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// A progress bar on standard error for one piece of work: it appears when the work takes longer than half a
/// second and a terminal is there to show it, and leaves no trace at the end.
class Progress {
public:
    struct State {
        std::uint64_t done = 0;
        std::uint64_t total = 0; ///< 0: not known
    };
    /// Asked from another thread while the work goes on.
    using Measure = std::function<State()>;

    Progress(std::string label, Measure measure);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    void Watch();
    void Show() const;

    std::string m_Label;
    Measure m_Measure;
    std::mutex m_Mutex;
    std::condition_variable m_End;
    bool m_IsOver = false;
    std::thread m_Thread;
};
