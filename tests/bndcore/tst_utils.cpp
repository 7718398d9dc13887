// Name helpers, the delayed-action queue and shared busy states.

#include "Bnd_AsynchStateListener.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Bnde_SimpleValue.h"

#include <QtTest>

namespace {
class CountingState : public Bnd_AsynchStateListener
{
public:
    using Bnd_AsynchStateListener::Bnd_AsynchStateListener;
    QList<long> seen;

protected:
    void asynchStateRefCountChanged(long iCount) override { seen << iCount; }
};
} // namespace

class tst_Utils : public QObject
{
    Q_OBJECT

private slots:
    void staticSpecs_data();
    void staticSpecs();
    void delayedActionNeedsARunner();
    void delayedActionRunsOnALaterTurn();
    void busyStateIsSharedAndCounted();
};

void tst_Utils::staticSpecs_data()
{
    QTest::addColumn<QString>("spec");
    QTest::addColumn<bool>("isStatic");
    QTest::addColumn<QString>("name");
    QTest::newRow("made") << Bnd_Utils::Bnd_MakeStaticConnectionSpec("A.B") << true << "A.B";
    QTest::newRow("no blank") << "staticConnection:A.B" << true << "A.B";
    QTest::newRow("plain") << "A.B" << false << "A.B";
    QTest::newRow("case matters") << "StaticConnection: A" << false << "StaticConnection: A";
}

void tst_Utils::staticSpecs()
{
    QFETCH(QString, spec);
    QFETCH(bool, isStatic);
    QFETCH(QString, name);
    QCOMPARE(Bnd_Utils::isStaticConnectionSpec(spec), isStatic);
    QCOMPARE(Bnd_Utils::stripStaticConnectionSpec(spec), name);
}

void tst_Utils::delayedActionNeedsARunner()
{
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
    QVERIFY(!Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(), "A.go()"));
}

void tst_Utils::delayedActionRunsOnALaterTurn()
{
    QStringList ran;
    QString seenVariable;
    Bnd_Utils::Bnd_SetDelayedActionRunner(
        [&](const Bnd_ConnectionEnvironmentPtr &env, const QString &s) {
            ran << s;
            seenVariable = env->get("Row");
            return true;
        });
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set("Row", "R1");
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(env), "A.go()"));
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction(Bnd_ConnectionEnvironmentPtr(), "B.go()"));
    QVERIFY(ran.isEmpty()); // never at once
    QTRY_COMPARE(ran, QStringList({ "A.go()", "B.go()" }));
    QCOMPARE(seenVariable, QString());
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
}

void tst_Utils::busyStateIsSharedAndCounted()
{
    CountingState a("Busy.Render", "renderer");
    CountingState b("Busy.Render", "exporter");
    a.addAsynchStateRef();
    a.addAsynchStateRef(); // once per participant
    b.addAsynchStateRef();
    QCOMPARE(a.refCount(), 2L);
    QVERIFY(b.isBusy());
    {
        CountingState c("Busy.Render", "temporary");
        c.addAsynchStateRef();
        QCOMPARE(a.refCount(), 3L);
    } // gives its reference back
    a.releaseAsynchStateRef();
    b.releaseAsynchStateRef();
    QVERIFY(!a.isBusy());
    QCOMPARE(a.seen, QList<long>({ 1, 2, 3, 2, 1, 0 }));

    // A state published by the host is used as it is.
    Bnde_SimpleValue<long> hostCount("Busy.Host", 4);
    hostCount.Publish();
    CountingState d("Busy.Host", "d");
    d.addAsynchStateRef();
    QCOMPARE(hostCount.getValue(), 5L);
}

QTEST_GUILESS_MAIN(tst_Utils)
#include "tst_utils.moc"
