#include "Kiv_AutoRepeat.h"

#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"

#include <algorithm>

namespace {
// Auto-repeat runs ahead of ordinary timed work that falls due at the same instant.
constexpr int cTaskPriority = 5;
} // namespace

Kiv_AutoRepeat::Kiv_AutoRepeat(const QString &iTaskName, std::function<void()> iCallback)
    : mTaskName(iTaskName)
    , mCallback(std::move(iCallback))
{ }

Kiv_AutoRepeat::~Kiv_AutoRepeat() = default;

void Kiv_AutoRepeat::start()
{
    if (mTaskP)
        return;
    // A foreground task: a held button keeps its cadence even when the GUI thread is busy.
    mTaskP = std::make_unique<TaskSchedulerTask>(
        mTaskName, cTaskPriority, [this] { fire(); }, false, mDelay, true);
    TaskScheduler::instance().addTask(mTaskP.get(), false);
    mPhase = Waiting;
}

void Kiv_AutoRepeat::stop()
{
    // Deleting the task takes it out of the scheduler, also from inside its own callback.
    mTaskP.reset();
    mPhase = Idle;
}

void Kiv_AutoRepeat::setDelay(int iMs)
{
    mDelay = std::max(iMs, 0);
}

void Kiv_AutoRepeat::setInterval(int iMs)
{
    mInterval = std::max(iMs, 0);
    if (mTaskP)
        mTaskP->setTimer(mInterval);
}

void Kiv_AutoRepeat::fire()
{
    if (mPhase == Waiting) {
        mPhase = Repeating;
        // From inside the callback this sets the period the task re-arms with.
        mTaskP->setTimer(mInterval);
    }
    // Last: the callback may stop the repeat or destroy the owner.
    const std::function<void()> callback = mCallback;
    callback();
}
