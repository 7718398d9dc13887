#pragma once

#include "kivcore_export.h"

#include <QString>

#include <functional>
#include <memory>

class TaskSchedulerTask;

/// The auto-repeat of a button that is held down, run by the task scheduler.
///
/// start() arms a repeating task that first fires after the repeat delay and from then on every
/// repeat interval; each firing calls the callback. stop() deletes the task. The owner calls
/// start() on press and stop() on release:
///
///     Kiv_AutoRepeat mRepeat{QStringLiteral("MyButtonAutoRepeatTask"), [this] { runScript(); }};
///     mRepeat.start();   // press: the callback runs after 1000 ms, then every 500 ms
///     mRepeat.stop();    // release
///
/// The callback is the last thing a firing does, so it may stop the repeat or destroy the owner
/// (and this object with it).
class KIVCORE_EXPORT Kiv_AutoRepeat
{
public:
    enum Phase {
        Idle = 0, ///< no task
        Waiting = 1, ///< pressed, waiting for the first repeat
        Repeating = 2 ///< firing every interval
    };

    static constexpr int cDefaultDelay = 1000;
    static constexpr int cDefaultInterval = 500;

    Kiv_AutoRepeat(const QString &iTaskName, std::function<void()> iCallback);
    /// Stops the repeat.
    ~Kiv_AutoRepeat();
    Kiv_AutoRepeat(const Kiv_AutoRepeat &) = delete;
    Kiv_AutoRepeat &operator=(const Kiv_AutoRepeat &) = delete;

    /// Arms the task with the repeat delay unless it is already armed.
    void start();
    /// Deletes the task; back to idle.
    void stop();

    bool isActive() const { return mTaskP != nullptr; }
    Phase phase() const { return mPhase; }

    /// Time from start() to the first repeat; takes effect at the next start(). Negative values
    /// are taken as 0.
    void setDelay(int iMs);
    int delay() const { return mDelay; }
    /// Time between repeats. A running task takes it at once: its next firing comes the new
    /// interval from now, also while it still waits for its first repeat. Negative values are
    /// taken as 0 (the scheduler runs a period of 0 as 1 ms).
    void setInterval(int iMs);
    int interval() const { return mInterval; }

private:
    void fire();

    QString mTaskName;
    std::function<void()> mCallback;
    std::unique_ptr<TaskSchedulerTask> mTaskP;
    int mDelay = cDefaultDelay;
    int mInterval = cDefaultInterval;
    Phase mPhase = Idle;
};
