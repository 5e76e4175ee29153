// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once
#include "benchmarks/window/display.h"

#include <QObject>

#include <atomic>
#include <ctime>
#include <mutex>
#include <vector>

class QQuickWindow;

namespace veltro::bench {

/// What a window did with the inputs of one measurement; all in seconds.
struct FrameFigures {
    std::vector<double> inputToFrame; ///< from the display's side of each input to its frame
    std::vector<double> mainThread;   ///< what the main thread worked between two frames
};

/// Sees each input reach the window and each frame leave it. The main thread's own clock is read
/// by the thread that draws; the main thread itself only counts its inputs.
class FrameWatch : public QObject {
    Q_OBJECT
public:
    explicit FrameWatch(QQuickWindow &window);

    /// Begins a measurement. Main thread, with no input under way.
    void begin();
    /// Main thread, when all inputs have been answered.
    [[nodiscard]] FrameFigures end();
    /// Before the input is given to the display. Any thread.
    void noteInput();
    [[nodiscard]] bool isAnswered() const;
    [[nodiscard]] int frames() const { return m_frames; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void takeFrame();
    [[nodiscard]] double mainThreadSeconds() const;

    // Constant after construction.
    clockid_t m_mainClock{};
    // Main thread, read by the drawing one while the main one waits for it.
    std::size_t m_arrived = 0;
    // Drawing thread.
    std::size_t m_drawn = 0;
    double m_workedBefore = 0;
    std::atomic<int> m_frames = 0;
    mutable std::mutex m_lock;
    // Guarded by m_lock.
    std::vector<Clock::time_point> m_inputs;
    FrameFigures m_figures;
};

}
