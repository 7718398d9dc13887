#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"

#include <QCoreApplication>
#include <QTest>

#include <memory>
#include <numeric>
#include <utility>
#include <vector>

using Times = QList<int>;

// Every test runs on the manual clock and measures time from its start. A test owns its tasks,
// so at its end none may be left in the scheduler.
class tst_TaskScheduler : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firingTimes_data();
    void firingTimes();
    void setTimer_data();
    void setTimer();
    void dueOrder_data();
    void dueOrder();
    void dueTaskRunsOnNextTurn_data();
    void dueTaskRunsOnNextTurn();
    void setReady_data();
    void setReady();
    void callbackChangesTasks_data();
    void callbackChangesTasks();
    void deletingStops();
    void abort_data();
    void abort();
    void runNow_data();
    void runNow();
    void addedTwice();
    void lateRepeat_data();
    void lateRepeat();
    void pausedAnimations();

private:
    TaskScheduler &scheduler() { return TaskScheduler::instance(); }
    int elapsed() { return int(scheduler().now() - mStart); }
    // A task that appends the elapsed time of each firing to @p times.
    std::unique_ptr<TaskSchedulerTask> recordingTask(Times &times, int delay, bool repeat,
                                                     bool background = false)
    {
        return std::make_unique<TaskSchedulerTask>(
            QStringLiteral("recorder"), 0, [this, &times] { times << elapsed(); }, background,
            delay, repeat);
    }

    qint64 mStart = 0;
};

void tst_TaskScheduler::init()
{
    scheduler().setManualClock(true);
    mStart = scheduler().now();
}

void tst_TaskScheduler::cleanup()
{
    QCOMPARE(scheduler().scheduledTaskCount(), 0);
    scheduler().setAnimationsPaused(false);
    scheduler().setManualClock(true);
}

void tst_TaskScheduler::firingTimes_data()
{
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("repeat");
    QTest::addColumn<Times>("steps");
    QTest::addColumn<Times>("expected");

    QTest::newRow("one-shot") << 100 << false << Times { 250 } << Times { 100 };
    QTest::newRow("one-shot, due at the end of the span")
        << 100 << false << Times { 100 } << Times { 100 };
    QTest::newRow("one-shot, span too short") << 100 << false << Times { 99 } << Times {};
    QTest::newRow("one-shot, zero delay") << 0 << false << Times { 50 } << Times { 0 };
    QTest::newRow("repeat") << 100 << true << Times { 350 } << Times { 100, 200, 300 };
    QTest::newRow("repeat, in small steps")
        << 100 << true << Times { 50, 50, 50, 50, 50, 50, 50 } << Times { 100, 200, 300 };
    QTest::newRow("repeat, uneven steps")
        << 100 << true << Times { 99, 1, 0, 150 } << Times { 100, 200 };
    QTest::newRow("repeat, period 0 runs every ms")
        << 0 << true << Times { 3 } << Times { 0, 1, 2, 3 };
}

void tst_TaskScheduler::firingTimes()
{
    QFETCH(int, delay);
    QFETCH(bool, repeat);
    QFETCH(Times, steps);
    QFETCH(Times, expected);

    Times times;
    auto task = recordingTask(times, delay, repeat);
    scheduler().addTask(task.get(), false);
    for (int step : steps)
        scheduler().advance(step);

    QCOMPARE(times, expected);
    QCOMPARE(elapsed(), std::accumulate(steps.begin(), steps.end(), 0));
    QCOMPARE(task->isScheduled(), repeat || expected.isEmpty());
}

void tst_TaskScheduler::setTimer_data()
{
    QTest::addColumn<int>("delay");
    QTest::addColumn<bool>("repeat");
    QTest::addColumn<int>("changeAt"); // -1: from the first firing's callback
    QTest::addColumn<int>("timer");
    QTest::addColumn<int>("span");
    QTest::addColumn<Times>("expected");

    QTest::newRow("repeat, from its callback")
        << 1000 << true << -1 << 500 << 1600 << Times { 1000, 1500 };
    QTest::newRow("repeat, from its callback, longer")
        << 100 << true << -1 << 300 << 800 << Times { 100, 400, 700 };
    QTest::newRow("repeat, while waiting")
        << 1000 << true << 300 << 500 << 1600 << Times { 800, 1300 };
    QTest::newRow("repeat, while waiting, after a firing")
        << 100 << true << 150 << 400 << 1000 << Times { 100, 550, 950 };
    QTest::newRow("one-shot, restarts the countdown")
        << 1000 << false << 800 << 1000 << 2500 << Times { 1800 };
    QTest::newRow("one-shot, shorter") << 1000 << false << 100 << 50 << 1600 << Times { 150 };
    QTest::newRow("one-shot, zero") << 1000 << false << 100 << 0 << 1600 << Times { 100 };
}

void tst_TaskScheduler::setTimer()
{
    QFETCH(int, delay);
    QFETCH(bool, repeat);
    QFETCH(int, changeAt);
    QFETCH(int, timer);
    QFETCH(int, span);
    QFETCH(Times, expected);

    Times times;
    std::unique_ptr<TaskSchedulerTask> task;
    task = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("t"), 0,
        [&] {
            times << elapsed();
            if (changeAt < 0 && times.size() == 1)
                task->setTimer(timer);
        },
        false, delay, repeat);
    scheduler().addTask(task.get(), false);
    if (changeAt >= 0) {
        scheduler().advance(changeAt);
        task->setTimer(timer);
        span -= changeAt;
    }
    scheduler().advance(span);

    QCOMPARE(times, expected);
}

void tst_TaskScheduler::dueOrder_data()
{
    QTest::addColumn<QStringList>("tasks"); // "name:priority:delay", added in this order
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("due time first")
        << QStringList { "a:0:300", "b:5:100", "c:9:200" } << QStringList { "b", "c", "a" };
    QTest::newRow("then lower priority")
        << QStringList { "a:5:100", "b:1:100", "c:3:100" } << QStringList { "b", "c", "a" };
    QTest::newRow("then insertion order")
        << QStringList { "a:2:100", "b:2:100", "c:2:100" } << QStringList { "a", "b", "c" };
    QTest::newRow("negative priority")
        << QStringList { "a:0:100", "b:-1:100" } << QStringList { "b", "a" };
    QTest::newRow("all three") << QStringList { "a:2:100", "b:1:200", "c:1:100", "d:2:100" }
                               << QStringList { "c", "a", "d", "b" };
}

void tst_TaskScheduler::dueOrder()
{
    QFETCH(QStringList, tasks);
    QFETCH(QStringList, expected);

    QStringList order;
    std::vector<std::unique_ptr<TaskSchedulerTask>> owned;
    for (const QString &entry : tasks) {
        const QStringList parts = entry.split(':');
        const QString name = parts[0];
        owned.push_back(std::make_unique<TaskSchedulerTask>(
            name, parts[1].toInt(), [&order, name] { order << name; }, false, parts[2].toInt(),
            false));
        scheduler().addTask(owned.back().get(), false);
    }
    scheduler().advance(1000);

    QCOMPARE(order, expected);
}

void tst_TaskScheduler::dueTaskRunsOnNextTurn_data()
{
    QTest::addColumn<bool>("manualClock");
    QTest::addColumn<bool>("ready"); // a long delay, made ready, rather than a zero delay

    QTest::newRow("zero delay, manual clock") << true << false;
    QTest::newRow("zero delay, real clock") << false << false;
    QTest::newRow("ready, manual clock") << true << true;
    QTest::newRow("ready, real clock") << false << true;
}

void tst_TaskScheduler::dueTaskRunsOnNextTurn()
{
    QFETCH(bool, manualClock);
    QFETCH(bool, ready);

    scheduler().setManualClock(manualClock);
    int runs = 0;
    TaskSchedulerTask task(
        QStringLiteral("t"), 0, [&runs] { ++runs; }, false, ready ? 60000 : 0, false);
    scheduler().addTask(&task, false);
    if (ready)
        task.setReady(true);
    QCOMPARE(runs, 0);

    QTRY_COMPARE(runs, 1);
    QCoreApplication::processEvents();
    QCOMPARE(runs, 1);
    QVERIFY(!task.isScheduled());
}

void tst_TaskScheduler::setReady_data()
{
    QTest::addColumn<int>("readyAt"); // -1: before the task is added
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<bool>("repeat");
    QTest::addColumn<Times>("expected");

    QTest::newRow("one-shot") << 200 << false << false << Times { 200 };
    QTest::newRow("repeat, period counted from the early firing")
        << 200 << false << true << Times { 200, 1200, 2200 };
    QTest::newRow("before adding") << -1 << false << true << Times { 0, 1000, 2000 };
    QTest::newRow("one-shot, withdrawn") << 200 << true << false << Times { 1000 };
    QTest::newRow("repeat, withdrawn") << 200 << true << true << Times { 1000, 2000 };
    QTest::newRow("before adding, withdrawn") << -1 << true << true << Times { 1000, 2000 };
}

void tst_TaskScheduler::setReady()
{
    QFETCH(int, readyAt);
    QFETCH(bool, cancel);
    QFETCH(bool, repeat);
    QFETCH(Times, expected);

    Times times;
    auto task = recordingTask(times, 1000, repeat);
    if (readyAt < 0) {
        task->setReady(true);
        if (cancel)
            task->setReady(false);
        scheduler().addTask(task.get(), false);
    } else {
        scheduler().addTask(task.get(), false);
        scheduler().advance(readyAt);
        task->setReady(true);
        if (cancel)
            task->setReady(false);
    }
    scheduler().advance(2500 - elapsed());

    QCOMPARE(times, expected);
    QVERIFY(!task->isReady());
}

enum class Action {
    DeleteSelf,
    DeleteOther,
    AddNew,
    AddZeroDelay,
    DeleteSelfAndAdd,
    AbortSelf,
    RunSelfNow,
    RunOtherNow
};
Q_DECLARE_METATYPE(Action)

void tst_TaskScheduler::callbackChangesTasks_data()
{
    // Repeating tasks a and b fire every 100 ms, a first; a acts on its first firing.
    // The new task c is a one-shot with a 50 ms delay (or none).
    QTest::addColumn<Action>("action");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("a deletes itself")
        << Action::DeleteSelf << QStringList { "a@100", "b@100", "b@200", "b@300" };
    QTest::newRow("a deletes b, due at the same instant")
        << Action::DeleteOther << QStringList { "a@100", "a@200", "a@300" };
    QTest::newRow("a adds a task")
        << Action::AddNew
        << QStringList { "a@100", "b@100", "c@150", "a@200", "b@200", "a@300", "b@300" };
    QTest::newRow("a adds a zero-delay task, it runs after b")
        << Action::AddZeroDelay
        << QStringList { "a@100", "b@100", "c@100", "a@200", "b@200", "a@300", "b@300" };
    QTest::newRow("a deletes itself and adds a task")
        << Action::DeleteSelfAndAdd << QStringList { "a@100", "b@100", "c@150", "b@200", "b@300" };
    QTest::newRow("a aborts itself")
        << Action::AbortSelf << QStringList { "a@100", "b@100", "b@200", "b@300" };
    QTest::newRow("a runs itself now: ignored")
        << Action::RunSelfNow
        << QStringList { "a@100", "b@100", "a@200", "b@200", "a@300", "b@300" };
    // b runs inside a's callback and re-arms before a does, so b goes first afterwards.
    QTest::newRow("a runs b now") << Action::RunOtherNow
                                  << QStringList { "a@100", "b@100", "b@200",
                                                   "a@200", "b@300", "a@300" };
}

void tst_TaskScheduler::callbackChangesTasks()
{
    QFETCH(Action, action);
    QFETCH(QStringList, expected);

    QStringList log;
    std::unique_ptr<TaskSchedulerTask> a, b, c;
    auto record = [&](const char *name) {
        log << QStringLiteral("%1@%2").arg(name).arg(elapsed());
    };
    auto addC = [&](int delay) {
        c = std::make_unique<TaskSchedulerTask>(
            QStringLiteral("c"), 0, [&] { record("c"); }, false, delay, false);
        scheduler().addTask(c.get(), false);
    };
    bool first = true;
    a = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("a"), 0,
        [&] {
            record("a");
            if (!std::exchange(first, false))
                return;
            switch (action) {
            case Action::DeleteSelf:
                a.reset();
                break;
            case Action::DeleteOther:
                b.reset();
                break;
            case Action::AddNew:
                addC(50);
                break;
            case Action::AddZeroDelay:
                addC(0);
                break;
            case Action::DeleteSelfAndAdd:
                a.reset();
                addC(50);
                break;
            case Action::AbortSelf:
                a->abortTask();
                break;
            case Action::RunSelfNow:
                a->runNow();
                break;
            case Action::RunOtherNow:
                b->runNow();
                break;
            }
        },
        false, 100, true);
    b = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("b"), 0, [&] { record("b"); }, false, 100, true);
    scheduler().addTask(a.get(), false);
    scheduler().addTask(b.get(), false);
    scheduler().advance(350);

    QCOMPARE(log, expected);
}

void tst_TaskScheduler::deletingStops()
{
    Times times;
    auto task = recordingTask(times, 100, true);
    scheduler().addTask(task.get(), false);
    scheduler().advance(150);
    task.reset();
    QCOMPARE(scheduler().scheduledTaskCount(), 0);
    scheduler().advance(500);
    QCOMPARE(times, Times { 100 });

    auto pending = recordingTask(times, 100, false);
    scheduler().addTask(pending.get(), false);
    pending->setReady(true);
    pending.reset();
    QCoreApplication::processEvents();
    scheduler().advance(500);
    QCOMPARE(times, Times { 100 });
}

void tst_TaskScheduler::abort_data()
{
    QTest::addColumn<bool>("fromCallback");
    QTest::addColumn<bool>("deferred"); // setAbort() rather than abortTask()
    QTest::addColumn<bool>("repeat");
    QTest::addColumn<Times>("expected");

    // Aborted at 150 ms, or in the first firing's callback.
    QTest::newRow("abortTask") << false << false << true << Times { 100 };
    QTest::newRow("setAbort") << false << true << true << Times { 100 };
    QTest::newRow("abortTask from the callback") << true << false << true << Times { 100 };
    QTest::newRow("setAbort from the callback") << true << true << true << Times { 100 };
    QTest::newRow("one-shot, abortTask") << false << false << false << Times { 100 };
    QTest::newRow("one-shot, setAbort") << false << true << false << Times { 100 };
}

void tst_TaskScheduler::abort()
{
    QFETCH(bool, fromCallback);
    QFETCH(bool, deferred);
    QFETCH(bool, repeat);
    QFETCH(Times, expected);

    Times times;
    std::unique_ptr<TaskSchedulerTask> task, other;
    bool scheduledAfterCall = true;
    auto abortIt = [&] {
        if (deferred)
            task->setAbort();
        else
            task->abortTask();
        scheduledAfterCall = task->isScheduled();
    };
    task = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("t"), 0,
        [&] {
            times << elapsed();
            if (fromCallback)
                abortIt();
        },
        false, 100, repeat);
    // A one-shot is re-armed 200 ms later to have something to abort.
    other = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("re-add"), 0,
        [&] {
            if (!repeat)
                scheduler().addTask(task.get(), false);
        },
        false, 120, false);
    scheduler().addTask(task.get(), false);
    scheduler().addTask(other.get(), false);
    scheduler().advance(150);
    if (!fromCallback) {
        abortIt();
        // A deferred abort keeps the task until it would have fired.
        QCOMPARE(scheduledAfterCall, deferred);
        QCOMPARE(task->isAbortPending(), deferred);
    } else {
        QCOMPARE(scheduledAfterCall, deferred && repeat);
    }
    scheduler().advance(1000);

    QCOMPARE(times, expected);
    QVERIFY(!task->isScheduled());
    QVERIFY(!task->isAbortPending());
    QCOMPARE(scheduler().scheduledTaskCount(), 0);
}

void tst_TaskScheduler::runNow_data()
{
    QTest::addColumn<bool>("repeat");
    QTest::addColumn<bool>("added");
    QTest::addColumn<bool>("abortPending");
    QTest::addColumn<Times>("expected");

    // A 1000 ms task run now at 300 ms, followed up to 2500 ms.
    QTest::newRow("one-shot: done") << false << true << false << Times { 300 };
    QTest::newRow("repeat: a period after") << true << true << false << Times { 300, 1300, 2300 };
    QTest::newRow("not scheduled: nothing") << true << false << false << Times {};
    QTest::newRow("abort pending: stops instead") << true << true << true << Times {};
}

void tst_TaskScheduler::runNow()
{
    QFETCH(bool, repeat);
    QFETCH(bool, added);
    QFETCH(bool, abortPending);
    QFETCH(Times, expected);

    Times times;
    auto task = recordingTask(times, 1000, repeat);
    if (added)
        scheduler().addTask(task.get(), false);
    scheduler().advance(300);
    if (abortPending)
        task->setAbort();
    task->runNow();
    QCOMPARE(times, expected.mid(0, 1)); // synchronously
    scheduler().advance(2200);

    QCOMPARE(times, expected);
}

void tst_TaskScheduler::addedTwice()
{
    Times times;
    auto task = recordingTask(times, 100, false);
    scheduler().addTask(task.get(), false);
    scheduler().advance(50);
    QTest::ignoreMessage(QtWarningMsg,
                         "TaskScheduler::addTask, task 'recorder' is already scheduled");
    scheduler().addTask(task.get(), true);
    QCOMPARE(scheduler().scheduledTaskCount(), 1);
    scheduler().advance(500);

    QCOMPARE(times, Times { 100 });
    QVERIFY(!task->isAnimation());
}

void tst_TaskScheduler::lateRepeat_data()
{
    // A 100 ms repeating task whose first callback takes 350 ms.
    QTest::addColumn<bool>("background");
    QTest::addColumn<bool>("animation");
    QTest::addColumn<Times>("expected");

    QTest::newRow("foreground catches up")
        << false << false << Times { 100, 450, 450, 450, 500, 600 };
    QTest::newRow("background drops the missed firings") << true << false << Times { 100, 550 };
    QTest::newRow("animation drops the missed frames") << false << true << Times { 100, 550 };
}

void tst_TaskScheduler::lateRepeat()
{
    QFETCH(bool, background);
    QFETCH(bool, animation);
    QFETCH(Times, expected);

    Times times;
    TaskSchedulerTask task(
        QStringLiteral("slow"), 0,
        [&] {
            times << elapsed();
            if (times.size() == 1)
                scheduler().advance(350);
        },
        background, 100, true);
    // Due while the slow callback runs: it waits for the callback to return.
    Times otherTimes;
    auto other = recordingTask(otherTimes, 200, false);
    scheduler().addTask(&task, animation);
    scheduler().addTask(other.get(), false);
    scheduler().advance(600);

    QCOMPARE(times, expected);
    QCOMPARE(otherTimes, Times { 450 });
}

void tst_TaskScheduler::pausedAnimations()
{
    Times frames, ticks;
    auto animation = recordingTask(frames, 100, true);
    auto plain = recordingTask(ticks, 100, true);
    auto heldThenDeleted = recordingTask(frames, 100, true);
    scheduler().addTask(animation.get(), true);
    scheduler().addTask(plain.get(), false);
    scheduler().advance(150);
    scheduler().setAnimationsPaused(true);
    scheduler().addTask(heldThenDeleted.get(), true);
    scheduler().advance(300);
    QCOMPARE(frames, Times { 100 });
    QVERIFY(animation->isScheduled());

    heldThenDeleted.reset();
    scheduler().setAnimationsPaused(false);
    scheduler().advance(250);

    QCOMPARE(frames, (Times { 100, 550, 650 }));
    QCOMPARE(ticks, (Times { 100, 200, 300, 400, 500, 600, 700 }));
}

QTEST_MAIN(tst_TaskScheduler)
#include "tst_taskscheduler.moc"
