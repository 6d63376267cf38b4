#include "Progress.h"

#include "platform/Terminal.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

constexpr auto PATIENCE = std::chrono::milliseconds(500);
constexpr auto STEP = std::chrono::milliseconds(100);
constexpr int WIDEST_BAR = 40;
/// Blank, brackets and "100 %".
constexpr int BESIDE_BAR = 9;

std::string Bar(const std::string& label, const Progress::State& state, int columns)
{
    if (state.total == 0) return label + " ...";
    const double part = std::min(1.0, static_cast<double>(state.done) / static_cast<double>(state.total));
    const std::string percent = std::to_string(static_cast<int>(part * 100)) + " %";
    const int width = std::min(WIDEST_BAR, columns - static_cast<int>(label.size()) - BESIDE_BAR);
    if (width <= 0) return percent;
    const auto filled = static_cast<std::size_t>(part * width);
    return label + " [" + std::string(filled, '#')
           + std::string(static_cast<std::size_t>(width) - filled, '.') + "] " + percent;
}

} // namespace

Progress::Progress(std::string label, Measure measure)
    : m_Label(std::move(label)), m_Measure(std::move(measure))
{
    if (Terminal::IsTerminal(Terminal::STANDARD_ERROR)) m_Thread = std::thread(&Progress::Watch, this);
}

Progress::~Progress()
{
    if (!m_Thread.joinable()) return;
    {
        const std::lock_guard hold(m_Mutex);
        m_IsOver = true;
    }
    m_End.notify_one();
    m_Thread.join();
}

void Progress::Watch()
{
    std::unique_lock hold(m_Mutex);
    if (m_End.wait_for(hold, PATIENCE, [this] { return m_IsOver; })) return;
    do Show();
    while (!m_End.wait_for(hold, STEP, [this] { return m_IsOver; }));
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
}

void Progress::Show() const
{
    std::string line = "\r";
    line += Bar(m_Label, m_Measure(), Terminal::Columns(Terminal::STANDARD_ERROR));
    line += "\033[K";
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
}
