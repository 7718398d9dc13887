#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"

#include <QCoreApplication>
#include <QTest>

#include <functional>
#include <map>
#include <memory>

namespace {

// A task is "name delay [r]epeat [b]ackground [p]riority", optionally followed by "| steps" it
// runs on its first firing. Steps are separated by "; ".
void row(const char *iName, const QStringList &iTasks, const char *iSteps, const char *iFired,
         int iLeft)
{
    QTest::newRow(iName) << iTasks << QString(iSteps) << QString(iFired) << iLeft;
}

} // namespace

// Every test runs on the manual clock and measures time from its start.
class tst_TaskScheduler : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void scenario_data();
    void scenario();
    void dueTaskRunsOnNextTurn_data();
    void dueTaskRunsOnNextTurn();

private:
    TaskScheduler &scheduler() { return TaskScheduler::instance(); }
    int elapsed() { return int(scheduler().now() - mStart); }

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
}

void tst_TaskScheduler::scenario_data()
{
    QTest::addColumn<QStringList>("tasks");
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("expected"); // the firings as "name@ms", and "mark@ms"
    QTest::addColumn<int>("left"); // tasks still scheduled at the end

    row("one-shot, due to the ms", { "a 100" }, "add a; advance 99; mark; advance 151",
        "mark@99 a@100", 0);
    row("repeat, uneven steps", { "a 100 r" },
        "add a; advance 99; advance 1; advance 150; advance 50", "a@100 a@200 a@300", 1);
    row("period 0 runs every ms", { "a 0 r" }, "add a; advance 3", "a@0 a@1 a@2 a@3", 1);
    row("setTimer from its callback: 1000 then every 500", { "a 1000 r | timer a 500" },
        "add a; advance 1600", "a@1000 a@1500", 1);
    row("setTimer while waiting", { "a 1000 r" }, "add a; advance 300; timer a 500; advance 1300",
        "a@800 a@1300", 1);
    row("due time, then priority, then insertion",
        { "a 100 p2", "b 200 p1", "c 100 p1", "d 100 p2" },
        "add a; add b; add c; add d; advance 300", "c@100 a@100 d@100 b@200", 0);
    row("ready is armed: it fires when its timer runs out", { "a 750" },
        "ready a; add a; advance 749; mark; advance 1", "mark@749 a@750", 0);
    row("not ready holds it; ready again fires once, then the period", { "a 100 r" },
        "add a; advance 150; ready a no; advance 500; ready a; advance 250",
        "a@100 a@650 a@750 a@850", 1);
    row("held from the start, released before its time", { "a 100" },
        "ready a no; add a; advance 60; ready a; advance 100", "a@100", 0);
    row("runNow fires a held task; it stays held", { "a 100 r" },
        "ready a no; add a; advance 50; runNow a; advance 500", "a@50", 1);
    row("setAbort stops a held task at once", { "a 100" }, "ready a no; add a; setAbort a", "", 0);
    row("added twice", { "a 100" }, "add a; advance 50; add a anim; advance 500", "a@100", 0);
    row("deleted", { "a 100 r" }, "add a; advance 150; delete a; advance 500", "a@100", 0);
    row("deletes itself in its callback", { "a 100 r | delete a", "b 100 r" },
        "add a; add b; advance 350", "a@100 b@100 b@200 b@300", 1);
    row("deletes another due at the same instant", { "a 100 r | delete b", "b 100 r" },
        "add a; add b; advance 350", "a@100 a@200 a@300", 1);
    row("deletes itself and adds a task", { "a 100 r | delete a; add c", "b 100 r", "c 50" },
        "add a; add b; advance 350", "a@100 b@100 c@150 b@200 b@300", 1);
    row("adds a zero-delay task: it runs after b", { "a 100 r | add c", "b 100 r", "c 0" },
        "add a; add b; advance 250", "a@100 b@100 c@100 a@200 b@200", 2);
    row("runs itself now: ignored", { "a 100 r | runNow a", "b 100 r" },
        "add a; add b; advance 250", "a@100 b@100 a@200 b@200", 2);
    // b runs inside a's callback and re-arms before a does, so b goes first afterwards.
    row("runs another now", { "a 100 r | runNow b", "b 100 r" }, "add a; add b; advance 350",
        "a@100 b@100 b@200 a@200 b@300 a@300", 2);
    row("abortTask", { "a 100 r" }, "add a; advance 150; abort a; advance 1000", "a@100", 0);
    row("setAbort waits for the due time", { "a 100 r" },
        "add a; advance 150; setAbort a; mark; advance 1000", "a@100 mark@150", 0);
    row("abortTask in its callback", { "a 100 r | abort a" }, "add a; advance 1000", "a@100", 0);
    row("setAbort in its callback", { "a 100 r | setAbort a" }, "add a; advance 1000", "a@100", 0);
    row("runNow, one-shot", { "a 1000" }, "add a; advance 300; runNow a; mark; advance 2200",
        "a@300 mark@300", 0);
    row("runNow, repeat: a period after", { "a 1000 r" },
        "add a; advance 300; runNow a; advance 2200", "a@300 a@1300 a@2300", 1);
    row("runNow, not scheduled", { "a 1000 r" }, "advance 300; runNow a; advance 2200", "", 0);
    row("runNow, abort pending: stops instead", { "a 1000 r" },
        "add a; advance 300; setAbort a; runNow a; advance 2200", "", 0);
    row("late foreground repeat catches up", { "a 100 r | advance 350", "b 200" },
        "add a; add b; advance 600", "a@100 b@450 a@450 a@450 a@450 a@500 a@600", 1);
    row("late background repeat drops firings", { "a 100 r b | advance 350", "b 200" },
        "add a; add b; advance 600", "a@100 b@450 a@550", 1);
    row("late animation drops frames", { "a 100 r | advance 350", "b 200" },
        "add a anim; add b; advance 600", "a@100 b@450 a@550", 1);
    row("paused animations", { "a 100 r", "p 100 r", "h 100 r" },
        "add a anim; add p; advance 150; pause; add h anim; advance 300; "
        "delete h; resume; advance 250",
        "a@100 p@100 p@200 p@300 p@400 p@500 a@550 p@600 a@650 p@700", 2);
}

void tst_TaskScheduler::scenario()
{
    QFETCH(QStringList, tasks);
    QFETCH(QString, steps);
    QFETCH(QString, expected);
    QFETCH(int, left);

    QStringList log;
    std::map<QString, std::unique_ptr<TaskSchedulerTask>> owned;
    std::function<void(const QString &)> run = [&](const QString &iSteps) {
        for (const QString &step : iSteps.split("; ", Qt::SkipEmptyParts)) {
            const QStringList w = step.split(' ');
            TaskSchedulerTask *t = w.size() > 1 && owned.count(w[1]) ? owned[w[1]].get() : nullptr;
            if (w[0] == "advance")
                scheduler().advance(w[1].toInt());
            else if (w[0] == "mark")
                log << QStringLiteral("mark@%1").arg(elapsed());
            else if (w[0] == "pause" || w[0] == "resume")
                scheduler().setAnimationsPaused(w[0] == "pause");
            else if (w[0] == "add" && t->isScheduled()) {
                QTest::ignoreMessage(QtWarningMsg,
                                     "TaskScheduler::addTask, task 'a' is already scheduled");
                scheduler().addTask(t, w.size() > 2);
            } else if (w[0] == "add")
                scheduler().addTask(t, w.size() > 2);
            else if (w[0] == "delete")
                owned[w[1]].reset();
            else if (w[0] == "timer")
                t->setTimer(w[2].toInt());
            else if (w[0] == "ready")
                t->setReady(w.size() == 2);
            else if (w[0] == "abort")
                t->abortTask();
            else if (w[0] == "setAbort")
                t->setAbort();
            else if (w[0] == "runNow")
                t->runNow();
            else
                QFAIL(qPrintable("unknown step " + step));
        }
    };
    for (const QString &task : tasks) {
        const QString action = task.section(" | ", 1);
        const QStringList w = task.section(" | ", 0, 0).split(' ');
        const QString flags = w.mid(2).join(' ');
        const int priority = flags.contains('p') ? flags.section('p', 1).toInt() : 0;
        auto fired = std::make_shared<int>(0);
        owned[w[0]] = std::make_unique<TaskSchedulerTask>(
            w[0], priority,
            [&, name = w[0], action, fired] {
                log << QStringLiteral("%1@%2").arg(name).arg(elapsed());
                if (++*fired == 1)
                    run(action);
            },
            flags.contains('b'), w[1].toInt(), flags.contains('r'));
    }
    run(steps);
    QCOMPARE(log.join(' '), expected);
    QCOMPARE(scheduler().scheduledTaskCount(), left);
}

void tst_TaskScheduler::dueTaskRunsOnNextTurn_data()
{
    QTest::addColumn<bool>("manualClock");
    QTest::newRow("manual clock") << true;
    QTest::newRow("real clock") << false;
}

void tst_TaskScheduler::dueTaskRunsOnNextTurn()
{
    QFETCH(bool, manualClock);

    scheduler().setManualClock(manualClock);
    int runs = 0;
    TaskSchedulerTask task(
        QStringLiteral("t"), 0, [&runs] { ++runs; }, false, 0, false);
    scheduler().addTask(&task, false);
    QCOMPARE(runs, 0);
    QTRY_COMPARE(runs, 1);
    QCoreApplication::processEvents();
    QCOMPARE(runs, 1);
    QVERIFY(!task.isScheduled());
}

QTEST_MAIN(tst_TaskScheduler)
#include "tst_taskscheduler.moc"
