#pragma once

#include "kivplatform_export.h"

#include <QString>

#include <functional>

class TaskSchedulerPrivate;

/// One piece of timed work run by TaskScheduler: a callback, when to run it, and whether to
/// keep running it.
///
/// The task belongs to whoever created it (usually through a std::unique_ptr); the scheduler
/// only refers to it while it is scheduled. Destroying a task stops it, also from inside any
/// callback, its own included. Tasks are used on the GUI thread only.
///
/// "Stopped" below means taken out of the scheduler: isScheduled() turns false and the callback
/// is not called again until the task is added anew.
class KIVPLATFORM_EXPORT TaskSchedulerTask
{
public:
    using Callback = std::function<void()>;

    /// @param name        Shown in the scheduler's log lines.
    /// @param priority    Orders tasks that are due at the same instant: the lower number runs
    ///                    first; equal priorities run in the order they were (re)armed.
    /// @param callback    The work.
    /// @param background  The task's firings may be coalesced when the scheduler falls behind:
    ///                    if a repeating background task could not run for a whole period or
    ///                    more (a long callback, a blocked GUI thread), the missed firings are
    ///                    dropped, it runs once, and its next firing is one period after that.
    ///                    A foreground task (false) keeps its cadence instead and catches up,
    ///                    one missed firing per event-loop turn.
    /// @param delayMs     Time from addTask() to the first firing, and the period of a
    ///                    repeating task (a period of 0 is taken as 1 ms). Negative means 0.
    /// @param repeat      Fire every delayMs until stopped, rather than once.
    TaskSchedulerTask(const QString &name, int priority, Callback callback, bool background,
                      int delayMs, bool repeat);
    /// Stops the task.
    ~TaskSchedulerTask();

    TaskSchedulerTask(const TaskSchedulerTask &) = delete;
    TaskSchedulerTask &operator=(const TaskSchedulerTask &) = delete;

    const QString &name() const { return mName; }
    int priority() const { return mPriority; }
    bool isBackground() const { return mBackground; }
    bool isRepeating() const { return mRepeat; }
    /// The delay of a one-shot task, the period of a repeating one.
    int delay() const { return mDelay; }
    /// Added and not stopped yet. A one-shot task stops as its callback starts, so it may add
    /// itself again from the callback; a repeating task stays scheduled.
    bool isScheduled() const { return mScheduled; }
    /// Added as an animation (see TaskScheduler::addTask()).
    bool isAnimation() const { return mAnimation; }
    /// Whether the task may fire (see setReady()).
    bool isReady() const { return mReady; }
    /// setAbort() was called and the task has not been stopped yet.
    bool isAbortPending() const { return mAbortPending; }

    /// Changes the delay/period to @p ms. A task waiting for its next firing is rescheduled to
    /// fire @p ms after now (so calling it again restarts the countdown). Called from the
    /// task's own callback, it sets the period the task re-arms with when the callback
    /// returns, counted from the due time of the current firing.
    void setTimer(int ms);
    /// Arms or holds the task. A task is ready unless told otherwise, and a ready task fires
    /// when its timer runs out. setReady(false) holds it: its timer keeps counting but it does
    /// not fire, however long it waits, until setReady(true); then it fires at its due time,
    /// or on the next event-loop turn when that time has passed meanwhile (once: a repeating
    /// task does not replay the periods it was held for). The flag belongs to the task and
    /// stays over addTask() and stopping; runNow() fires a held task too.
    void setReady(bool ready);
    /// If the task is scheduled, runs its callback now, synchronously, as a firing: a one-shot
    /// task is then done, a repeating one fires next one period after now. Does nothing for a
    /// task that is not scheduled or whose callback is running, and only stops the task when
    /// setAbort() is pending.
    void runNow();
    /// Stops the task now. Safe from any callback, the task's own included.
    void abortTask();
    /// Stops the task instead of its next firing. Called from the task's own callback, the task
    /// is stopped as soon as the callback returns; otherwise it stays scheduled until it would
    /// have fired.
    void setAbort();

private:
    friend class TaskSchedulerPrivate;
    bool isWaiting() const;

    QString mName;
    int mPriority;
    Callback mCallback;
    int mDelay;
    bool mBackground;
    bool mRepeat;

    // Kept by the scheduler.
    qint64 mDue = 0; // the next firing: the key in the scheduler's queue, with mSeq
    qint64 mTimerDue = 0; // the firing the timer gives; kept while the task is held
    quint64 mSeq = 0; // arming order, breaks ties between equal due times and priorities
    bool mScheduled = false;
    bool mQueued = false; // waiting in the queue
    bool mHeld = false; // an animation held while animations are paused
    bool mRunning = false; // inside its callback
    bool mArmedInCallback = false; // added again from inside its callback
    bool mAnimation = false;
    bool mReady = true;
    bool mAbortPending = false;
    bool *mDeletedFlag = nullptr; // set while the callback runs, tells the scheduler of deletion
};
