// Kiv_ActionButton: triggers, auto-repeat on the manual clock, the enabled state, faulty input.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_ActionButton.h"

#include <QtTest>

#include <optional>

using namespace ButtonTest;

namespace {

std::unique_ptr<Kiv_ActionButton> makeButton(const QString &iEnabledConn = {}, bool iDefault = true,
                                             const Bnd_ConnectionEnvironmentPtr &iEnv = {},
                                             const char *iScript = "Test.act()")
{
    auto button = std::make_unique<Kiv_ActionButton>(nullptr, "button", QStringLiteral("Go"),
                                                     QString(iScript), iEnabledConn, iDefault);
    button->resize(80, 24);
    button->makeConnections(iEnv);
    return button;
}

} // namespace

class tst_ActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init() { mAction.emplace(); }
    void cleanup() { QCOMPARE(mAction->tasksAdded(), 0); }
    void triggers();
    void autoRepeat_data();
    void autoRepeat();
    void enabledState_data();
    void enabledState();
    void unparsableScript();

private:
    std::optional<RecordingAction> mAction;
};

void tst_ActionButton::triggers()
{
    auto button = makeButton();
    QTest::mouseClick(button.get(), Qt::LeftButton);
    for (const auto key : { Qt::Key_A, Qt::Key_Return, Qt::Key_Enter })
        QTest::keyClick(button.get(), key);
    QCOMPARE(mAction->count(), 3);
}

void tst_ActionButton::autoRepeat_data()
{
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<int>("changeAt"); // -1: none
    QTest::addColumn<QString>("change"); // "destroy", "off" (auto-repeat) or "interval N"
    QTest::addColumn<Times>("expected"); // the runs from the press; delay 1000, interval 500

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
    QTest::newRow("no model yet, default on") << "Deck9.canPlay" << false << true << true;
    QTest::newRow("model true, default off") << "Deck1.canPlay" << true << false << true;
    QTest::newRow("model false, through $Deck") << "$Deck.canPlay" << false << true << false;
}

void tst_ActionButton::enabledState()
{
    QFETCH(QString, connection);
    QFETCH(bool, modelValue);
    QFETCH(bool, defaultEnabled);
    QFETCH(bool, expected);

    Bnde_SimpleValue<bool> canPlay(QStringLiteral("Deck1.canPlay"), modelValue);
    QVERIFY(canPlay.Publish());
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set(QStringLiteral("Deck"), QStringLiteral("Deck1"));
    auto button = makeButton(connection, defaultEnabled, Bnd_ConnectionEnvironmentPtr(env));
    QCOMPARE(button->isEnabled(), expected);
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), int(expected));
}

void tst_ActionButton::unparsableScript()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot parse the action script"));
    auto button = makeButton({}, true, {}, "Test.act(");
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), 0);
}

QTEST_MAIN(tst_ActionButton)
#include "tst_actionbutton.moc"
