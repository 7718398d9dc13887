// Kiv_ActionButton: triggers, auto-repeat on the manual clock, the enabled state, faulty input.

#include "ButtonTestSupport.h"

#include "Bnd_ConnectionDict.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_ActionButton.h"

#include <QtTest>

using namespace ButtonTest;

namespace {

std::unique_ptr<Kiv_ActionButton> makeButton(const QString &iEnabledConn = {}, bool iDefault = true,
                                             const char *iScript = "Test.act()")
{
    auto button = std::make_unique<Kiv_ActionButton>(nullptr, "button", QStringLiteral("Go"),
                                                     QString(iScript), iEnabledConn, iDefault);
    button->resize(80, 24);
    return button;
}

} // namespace

class tst_ActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void triggers();
    void autoRepeat_data();
    void autoRepeat();
    void enabledState_data();
    void enabledState();
    void unparsableScript();

private:
    std::unique_ptr<RecordingAction> mAction;
    int mTasksBefore = 0;
};

void tst_ActionButton::init()
{
    mAction = std::make_unique<RecordingAction>();
    mTasksBefore = TaskScheduler::instance().scheduledTaskCount();
}

void tst_ActionButton::cleanup()
{
    mAction.reset();
    QCOMPARE(TaskScheduler::instance().scheduledTaskCount(), mTasksBefore);
}

void tst_ActionButton::triggers()
{
    auto button = makeButton();
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QTest::keyClick(button.get(), Qt::Key_A);
    QTest::keyClick(button.get(), Qt::Key_Return);
    QTest::keyClick(button.get(), Qt::Key_Enter);
    QCOMPARE(mAction->count(), 3);
}

void tst_ActionButton::autoRepeat_data()
{
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<int>("changeAt"); // -1: none
    QTest::addColumn<QString>("change"); // "destroy", "off" (auto-repeat) or "interval N"
    QTest::addColumn<Times>("expected"); // when the script ran, from the press

    QTest::newRow("shorter than the delay") << 999 << -1 << "" << Times { 999 };
    QTest::newRow("held 1600 ms") << 1600 << -1 << "" << Times { 1000, 1500, 1600 };
    QTest::newRow("off while repeating") << 3200 << 1200 << "off" << Times { 1000, 3200 };
    QTest::newRow("destroyed while held") << 3200 << 1200 << "destroy" << Times { 1000 };
    QTest::newRow("interval changed during the delay")
        << 1000 << 300 << "interval 200" << Times { 500, 700, 900, 1000 };
}

void tst_ActionButton::autoRepeat()
{
    QFETCH(int, holdMs);
    QFETCH(int, changeAt);
    QFETCH(QString, change);
    QFETCH(Times, expected);

    auto button = makeButton();
    button->SetKorvexAutoRepeat(true);
    button->SetRepeatDelay(1000);
    button->SetRepeatInterval(500);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton);
    if (changeAt >= 0) {
        advance(changeAt);
        if (change == "destroy")
            button.reset();
        else if (change == "off")
            button->SetKorvexAutoRepeat(false);
        else
            button->SetRepeatInterval(change.section(' ', 1).toInt());
        holdMs -= changeAt;
    }
    advance(holdMs);
    if (button)
        QTest::mouseRelease(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->times, expected);
}

void tst_ActionButton::enabledState_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<bool>("modelValue");
    QTest::addColumn<bool>("defaultEnabled");
    QTest::addColumn<bool>("expected");

    QTest::newRow("no connection, default off") << "" << true << false << false;
    QTest::newRow("no model yet") << "Deck9.canPlay" << false << false << false;
    QTest::newRow("model true, default off") << "Deck1.canPlay" << true << false << true;
    QTest::newRow("model false, default on") << "Deck1.canPlay" << false << true << false;
    QTest::newRow("through the environment") << "$Deck.canPlay" << false << true << false;
}

void tst_ActionButton::enabledState()
{
    QFETCH(QString, connection);
    QFETCH(bool, modelValue);
    QFETCH(bool, defaultEnabled);
    QFETCH(bool, expected);

    Bnde_SimpleValue<bool> canPlay(QStringLiteral("Deck1.canPlay"), modelValue);
    QVERIFY(canPlay.Publish());
    auto button = makeButton(connection, defaultEnabled);
    auto *env = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(),
                                              &Bnd_ConnectionDict::Singleton());
    env->set(QStringLiteral("Deck"), QStringLiteral("Deck1"));
    button->makeConnections(Bnd_ConnectionEnvironmentPtr(env));
    QCOMPARE(button->isEnabled(), expected);
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), int(expected));
}

void tst_ActionButton::unparsableScript()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot parse the action script"));
    auto button = makeButton({}, true, "Test.act(");
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), 0);
}

QTEST_MAIN(tst_ActionButton)
#include "tst_actionbutton.moc"
