#pragma once

#include "kivplatform_export.h"

#include <QtGlobal>

class TaskSchedulerTask;

/// Runs the timed work of the widget library (auto-repeat, coalesced notifications, overlays,
/// animations) on the GUI thread.
///
/// Tasks fire in order of due time, then priority (lower first), then arming order. A due task
/// never runs synchronously inside the call that made it due: the earliest possible firing is
/// the next event-loop turn. An event-loop turn runs the tasks that were due when it started,
/// and a task (re)armed during a turn runs on a later one, so user input gets through even when
/// the scheduler is behind.
///
/// Time comes from a monotonic clock, or from a manual clock that only moves when advance() is
/// called, for tests.
class KIVPLATFORM_EXPORT TaskScheduler
{
public:
    static TaskScheduler &instance();

    /// Schedules @p task to fire TaskSchedulerTask::delay() ms from now (on the next event-loop
    /// turn for a zero delay or a ready task). The scheduler does not take ownership. A task
    /// that is already scheduled is left as it is (and the call logged).
    ///
    /// @param animation  The task drives a frame animation (a busy indicator, say): a frame
    ///                   that is late is never replayed (the task behaves as a background one
    ///                   whatever its own flag), and the task is held, not fired, while
    ///                   animations are paused (setAnimationsPaused()). Pass false for
    ///                   everything else.
    void addTask(TaskSchedulerTask *task, bool animation = false);

    /// Tasks added and not stopped yet.
    int scheduledTaskCount() const;

    /// The scheduler's time in ms. Only differences between two values mean something.
    qint64 now() const;

    /// Switches to the manual clock, or back. The time carries on from its current value.
    /// With the manual clock, due tasks still run on the next event-loop turn, but time only
    /// moves in advance().
    void setManualClock(bool manual);
    bool isManualClock() const;
    /// Moves the manual clock @p ms forward, firing in order every task due up to the new time,
    /// with now() set to each firing's due time while its callback runs. Tasks re-armed during
    /// the span fire again within it when due. Called from inside a callback, it stands for the
    /// callback taking that long: it moves the clock and nothing else, and what became due runs
    /// late, after the callback.
    void advance(int ms);

    /// While paused, animation tasks that come due are held instead of fired; resuming re-arms
    /// each of them one period after the resume.
    void setAnimationsPaused(bool paused);
    bool animationsPaused() const;

private:
    TaskScheduler() = default;
};
