// Name helpers, the delayed-action queue and shared busy states.

#include "Bnd_AsynchStateListener.h"
#include "Bnd_Utils.h"
#include "Bnde_SimpleValue.h"

#include <QtTest>

namespace {
struct CountingState : Bnd_AsynchStateListener
{
    using Bnd_AsynchStateListener::Bnd_AsynchStateListener;
    void asynchStateRefCountChanged(long iCount) override { seen << iCount; }
    QList<long> seen;
};
} // namespace

class tst_Utils : public QObject
{
    Q_OBJECT

private slots:
    void staticSpecs_data();
    void staticSpecs();
    void delayedActionsRunOnALaterTurn();
    void busyStateIsSharedAndCounted();
};

void tst_Utils::staticSpecs_data()
{
    QTest::addColumn<QString>("spec");
    QTest::addColumn<QString>("name"); // null: not a static spec
    QTest::newRow("made") << Bnd_Utils::Bnd_MakeStaticConnectionSpec("A.B") << "A.B";
    QTest::newRow("plain") << "A.B" << QString();
    QTest::newRow("case matters") << "StaticConnection: A" << QString();
}

void tst_Utils::staticSpecs()
{
    QFETCH(QString, spec);
    QFETCH(QString, name);
    QCOMPARE(Bnd_Utils::isStaticConnectionSpec(spec), !name.isNull());
    QCOMPARE(Bnd_Utils::stripStaticConnectionSpec(spec), name.isNull() ? spec : name);
}

void tst_Utils::delayedActionsRunOnALaterTurn()
{
    using Env = Bnd_ConnectionEnvironment;
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
    QVERIFY(!Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(), "A.go()"));

    QStringList ran; // "script@Row", Row read from the environment the script was queued with
    Bnd_Utils::Bnd_SetDelayedActionRunner(
        [&](const Bnd_ConnectionEnvironmentPtr &env, const QString &s) {
            ran << s + '@' + env->get("Row");
            return s != "B.go()";
        });
    auto *env = new Env(Env::blankEnvironment(), nullptr);
    env->set("Row", "R1");
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(env), "A.go()"));
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(), "B.go()"));
    QVERIFY(ran.isEmpty()); // never at once
    QTest::ignoreMessage(QtWarningMsg,
                         "Bnd_Utils::Bnd_AddDelayedAction, the script failed: B.go()");
    QTRY_COMPARE(ran, QStringList({ "A.go()@R1", "B.go()@" }));
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
}

void tst_Utils::busyStateIsSharedAndCounted()
{
    CountingState a("Busy.Render", "renderer"), b("Busy.Render", "exporter");
    a.addAsynchStateRef();
    a.addAsynchStateRef(); // once per participant
    b.addAsynchStateRef();
    QCOMPARE(b.refCount(), 2L);
    {
        CountingState c("Busy.Render", "temporary");
        c.addAsynchStateRef();
    } // gives its reference back
    a.releaseAsynchStateRef();
    b.releaseAsynchStateRef();
    QCOMPARE(a.seen, QList<long>({ 1, 2, 3, 2, 1, 0 }));

    Bnde_SimpleValue<long> hostCount("Busy.Host", 4); // a state the host published is used as is
    hostCount.Publish();
    CountingState d("Busy.Host", "d");
    d.addAsynchStateRef();
    QCOMPARE(hostCount.getValue(), 5L);
}

QTEST_GUILESS_MAIN(tst_Utils)
#include "tst_utils.moc"
