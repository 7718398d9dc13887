#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <climits>
#include <map>
#include <tuple>
#include <vector>

namespace {
Q_LOGGING_CATEGORY(lcScheduler, "kiv.platform.scheduler")
}

// The scheduler's state. It is never destroyed, so that tasks that outlive static destruction
// can still unregister safely.
class TaskSchedulerPrivate
{
public:
    static TaskSchedulerPrivate &get()
    {
        static auto *d = new TaskSchedulerPrivate;
        return *d;
    }

    qint64 now() const { return mManual ? mManualNow : mClock.elapsed() + mClockOffset; }

    void add(TaskSchedulerTask *task, bool animation);
    void arm(TaskSchedulerTask *task, qint64 timerDue);
    void unqueue(TaskSchedulerTask *task);
    void stop(TaskSchedulerTask *task);
    void fire(TaskSchedulerTask *task);
    void runNow(TaskSchedulerTask *task);
    void runDue(qint64 until, bool wholeSpan);
    void advance(int ms);
    void setManualClock(bool manual);
    void setAnimationsPaused(bool paused);
    void updateWakeup();

    int mScheduledCount = 0;
    bool mAnimationsPaused = false;
    bool mManual = false;

private:
    struct Key
    {
        qint64 due;
        int priority;
        quint64 seq;
        bool operator<(const Key &o) const
        {
            return std::tie(due, priority, seq) < std::tie(o.due, o.priority, o.seq);
        }
    };
    static Key keyOf(const TaskSchedulerTask *task)
    {
        return { task->mDue, task->mPriority, task->mSeq };
    }

    TaskSchedulerPrivate() { mClock.start(); }
    bool ensureTimer();
    static void dropTimer();

    std::map<Key, TaskSchedulerTask *> mQueue;
    std::vector<TaskSchedulerTask *> mHeld;
    QElapsedTimer mClock;
    qint64 mClockOffset = 0;
    qint64 mManualNow = 0;
    quint64 mNextSeq = 0;
    int mCallbackDepth = 0;
    QTimer *mTimer = nullptr;
};

static TaskSchedulerPrivate &sched()
{
    return TaskSchedulerPrivate::get();
}

void TaskSchedulerPrivate::add(TaskSchedulerTask *task, bool animation)
{
    if (!task) {
        qCWarning(lcScheduler, "TaskScheduler::addTask, null task");
        return;
    }
    const QCoreApplication *app = QCoreApplication::instance();
    if (app && QThread::currentThread() != app->thread()) {
        qCWarning(lcScheduler, "TaskScheduler::addTask, task '%s' added outside the GUI thread",
                  qUtf8Printable(task->mName));
        return;
    }
    if (task->mScheduled) {
        qCWarning(lcScheduler, "TaskScheduler::addTask, task '%s' is already scheduled",
                  qUtf8Printable(task->mName));
        return;
    }
    task->mScheduled = true;
    task->mAnimation = animation;
    task->mAbortPending = false;
    ++mScheduledCount;
    arm(task, now() + task->mDelay);
}

// Queues the task to fire at @p timerDue; a task that is not ready only keeps the time and waits
// for setReady(true).
void TaskSchedulerPrivate::arm(TaskSchedulerTask *task, qint64 timerDue)
{
    task->mTimerDue = timerDue;
    task->mDue = timerDue;
    task->mArmedInCallback = task->mRunning;
    if (!task->mReady)
        return;
    task->mSeq = mNextSeq++;
    mQueue.emplace(keyOf(task), task);
    task->mQueued = true;
    updateWakeup();
}

void TaskSchedulerPrivate::unqueue(TaskSchedulerTask *task)
{
    if (!task->mQueued)
        return;
    mQueue.erase(keyOf(task));
    task->mQueued = false;
    updateWakeup();
}

void TaskSchedulerPrivate::stop(TaskSchedulerTask *task)
{
    if (!task->mScheduled)
        return;
    unqueue(task);
    if (task->mHeld) {
        mHeld.erase(std::find(mHeld.begin(), mHeld.end(), task));
        task->mHeld = false;
    }
    task->mScheduled = false;
    task->mAbortPending = false;
    --mScheduledCount;
}

// One firing of a scheduled task that is out of the queue; task->mDue is the firing's due time.
void TaskSchedulerPrivate::fire(TaskSchedulerTask *task)
{
    if (task->mAbortPending) {
        stop(task);
        return;
    }
    if (!task->mRepeat) {
        task->mScheduled = false;
        --mScheduledCount;
    }

    // The callback may delete the task: run a moved-out copy and watch for the destructor.
    bool deleted = false;
    task->mDeletedFlag = &deleted;
    task->mRunning = true;
    task->mArmedInCallback = false;
    TaskSchedulerTask::Callback callback = std::move(task->mCallback);
    ++mCallbackDepth;
    if (callback)
        callback();
    --mCallbackDepth;
    if (deleted)
        return;
    task->mDeletedFlag = nullptr;
    task->mRunning = false;
    task->mCallback = std::move(callback);

    // Stopped, a one-shot that is done, or added again from the callback.
    if (!task->mScheduled || task->mArmedInCallback || task->mHeld)
        return;
    if (task->mAbortPending) {
        stop(task);
        return;
    }
    const qint64 period = std::max(task->mDelay, 1);
    const qint64 current = now();
    qint64 next = task->mDue + period;
    if (next <= current && (task->mBackground || task->mAnimation))
        next = current + period; // a whole period missed: drop the missed firings
    arm(task, next);
}

void TaskSchedulerPrivate::runNow(TaskSchedulerTask *task)
{
    if (!task->mScheduled || task->mRunning)
        return;
    unqueue(task);
    if (task->mHeld) {
        mHeld.erase(std::find(mHeld.begin(), mHeld.end(), task));
        task->mHeld = false;
    }
    task->mDue = now();
    fire(task);
}

// Fires, in order, the tasks due up to @p until. Unless @p wholeSpan, stops at the first task
// armed during this call: that one waits for the next event-loop turn.
void TaskSchedulerPrivate::runDue(qint64 until, bool wholeSpan)
{
    const quint64 firstNewSeq = mNextSeq;
    while (!mQueue.empty()) {
        const auto first = mQueue.begin();
        if (first->first.due > until || (!wholeSpan && first->first.seq >= firstNewSeq))
            break;
        TaskSchedulerTask *task = first->second;
        mQueue.erase(first);
        task->mQueued = false;
        if (mManual)
            mManualNow = std::max(mManualNow, task->mDue);
        if (task->mAnimation && mAnimationsPaused && !task->mAbortPending) {
            task->mHeld = true;
            mHeld.push_back(task);
            continue;
        }
        fire(task);
    }
    updateWakeup();
}

void TaskSchedulerPrivate::advance(int ms)
{
    if (!mManual) {
        qCWarning(lcScheduler, "TaskScheduler::advance, the manual clock is off");
        return;
    }
    ms = std::max(ms, 0);
    if (mCallbackDepth > 0) {
        mManualNow += ms;
        updateWakeup();
        return;
    }
    const qint64 target = mManualNow + ms;
    runDue(target, true);
    mManualNow = std::max(mManualNow, target);
    updateWakeup();
}

void TaskSchedulerPrivate::setManualClock(bool manual)
{
    if (manual == mManual)
        return;
    const qint64 current = now();
    mManual = manual;
    if (manual) {
        mManualNow = current;
    } else {
        mClock.restart();
        mClockOffset = current;
    }
    updateWakeup();
}

void TaskSchedulerPrivate::setAnimationsPaused(bool paused)
{
    if (paused == mAnimationsPaused)
        return;
    mAnimationsPaused = paused;
    if (paused)
        return; // animation tasks are held as they come due
    const std::vector<TaskSchedulerTask *> held = std::move(mHeld);
    mHeld.clear();
    for (TaskSchedulerTask *task : held) {
        task->mHeld = false;
        if (task->mAbortPending)
            stop(task);
        else
            arm(task, now() + task->mDelay);
    }
}

// Arms the timer for the earliest task. With the manual clock, only tasks already due need it.
void TaskSchedulerPrivate::updateWakeup()
{
    if (mQueue.empty()) {
        if (mTimer)
            mTimer->stop();
        return;
    }
    if (!ensureTimer())
        return;
    const qint64 wait = mQueue.begin()->first.due - now();
    if (mManual && wait > 0) {
        mTimer->stop();
        return;
    }
    mTimer->start(int(std::clamp<qint64>(wait, 0, INT_MAX)));
}

bool TaskSchedulerPrivate::ensureTimer()
{
    if (mTimer)
        return true;
    if (!QCoreApplication::instance())
        return false; // armed by the first change once the application exists
    mTimer = new QTimer;
    mTimer->setSingleShot(true);
    mTimer->setTimerType(Qt::PreciseTimer);
    QObject::connect(mTimer, &QTimer::timeout, [this] { runDue(now(), false); });
    qAddPostRoutine(&TaskSchedulerPrivate::dropTimer);
    return true;
}

// The timer must go with the application's event dispatcher.
void TaskSchedulerPrivate::dropTimer()
{
    TaskSchedulerPrivate &d = get();
    delete d.mTimer;
    d.mTimer = nullptr;
}

// --- TaskScheduler

TaskScheduler &TaskScheduler::instance()
{
    static TaskScheduler scheduler;
    return scheduler;
}

void TaskScheduler::addTask(TaskSchedulerTask *task, bool animation)
{
    sched().add(task, animation);
}

int TaskScheduler::scheduledTaskCount() const
{
    return sched().mScheduledCount;
}

qint64 TaskScheduler::now() const
{
    return sched().now();
}

void TaskScheduler::setManualClock(bool manual)
{
    sched().setManualClock(manual);
}

bool TaskScheduler::isManualClock() const
{
    return sched().mManual;
}

void TaskScheduler::advance(int ms)
{
    sched().advance(ms);
}

void TaskScheduler::setAnimationsPaused(bool paused)
{
    sched().setAnimationsPaused(paused);
}

bool TaskScheduler::animationsPaused() const
{
    return sched().mAnimationsPaused;
}

// --- TaskSchedulerTask

TaskSchedulerTask::TaskSchedulerTask(const QString &name, int priority, Callback callback,
                                     bool background, int delayMs, bool repeat)
    : mName(name)
    , mPriority(priority)
    , mCallback(std::move(callback))
    , mDelay(std::max(delayMs, 0))
    , mBackground(background)
    , mRepeat(repeat)
{ }

TaskSchedulerTask::~TaskSchedulerTask()
{
    if (mDeletedFlag)
        *mDeletedFlag = true;
    sched().stop(this);
}

bool TaskSchedulerTask::isWaiting() const
{
    // Scheduled and counting down (queued, or held back as not ready): not held as a paused
    // animation, and not inside its callback unless it was added again from there.
    return mScheduled && !mHeld && (!mRunning || mArmedInCallback);
}

void TaskSchedulerTask::setTimer(int ms)
{
    mDelay = std::max(ms, 0);
    if (isWaiting()) {
        TaskSchedulerPrivate &d = sched();
        d.unqueue(this);
        d.arm(this, d.now() + mDelay);
    }
}

void TaskSchedulerTask::setReady(bool ready)
{
    if (ready == mReady)
        return;
    mReady = ready;
    if (!isWaiting())
        return;
    TaskSchedulerPrivate &d = sched();
    if (!ready) {
        d.unqueue(this); // held: the due time is kept
        return;
    }
    // A timer that ran out while the task was held fires once, on the next turn.
    d.arm(this, std::max(mTimerDue, d.now()));
}

void TaskSchedulerTask::runNow()
{
    sched().runNow(this);
}

void TaskSchedulerTask::abortTask()
{
    sched().stop(this);
}

void TaskSchedulerTask::setAbort()
{
    if (!mScheduled)
        return;
    mAbortPending = true;
    if (!mReady && !mRunning && !mHeld)
        sched().stop(this); // held: it would never reach its firing
}
