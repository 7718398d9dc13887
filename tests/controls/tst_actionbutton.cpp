// Kiv_ActionButton: what runs the script, auto-repeat on the scheduler's manual clock, the
// enabled state from a model or the default, and faulty input.

#include "ButtonTestSupport.h"

#include "Bnd_ConnectionDict.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_ActionButton.h"
#include "Kiv_ImmediateActionButton.h"
#include "Kiv_PlayButton.h"
#include "Kiv_WhatsThis.h"

#include <QtTest>

#include <memory>

using namespace ButtonTest;

namespace {

// Records how many times the script had run at each call of the hook.
class HookedButton : public Kiv_ActionButton
{
public:
    using Kiv_ActionButton::Kiv_ActionButton;
    const RecordingAction *action = nullptr;
    QList<int> runsAtHook;

protected:
    void afterClickAction() override { runsAtHook << action->count(); }
};

enum class Change { None, AutoRepeatOff, Interval200, Delay200 };

} // namespace

Q_DECLARE_METATYPE(Change)

class tst_ActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void triggers_data();
    void triggers();
    void autoRepeat_data();
    void autoRepeat();
    void destroyedWhileHeld();
    void enabledState_data();
    void enabledState();
    void enabledFollowsModel();
    void faultyInput_data();
    void faultyInput();
    void whatsThisNames();

private:
    std::unique_ptr<HookedButton> makeButton(const QString &iEnabledSpec = QString(),
                                             bool iDefaultEnabled = true,
                                             const QString &iScript = QStringLiteral("Test.act()"))
    {
        auto button = std::make_unique<HookedButton>(nullptr, "button", QStringLiteral("Go"),
                                                     iScript, iEnabledSpec, iDefaultEnabled);
        button->action = mAction.get();
        button->resize(80, 24);
        return button;
    }

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

void tst_ActionButton::triggers_data()
{
    QTest::addColumn<int>("key"); // 0: a left click
    QTest::addColumn<int>("expectedRuns");

    QTest::newRow("click") << 0 << 1;
    QTest::newRow("Return") << int(Qt::Key_Return) << 1;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << 1;
    QTest::newRow("Space") << int(Qt::Key_Space) << 1;
    QTest::newRow("another key") << int(Qt::Key_A) << 0;
}

void tst_ActionButton::triggers()
{
    QFETCH(int, key);
    QFETCH(int, expectedRuns);

    auto button = makeButton();
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    if (key == 0)
        QTest::mouseClick(button.get(), Qt::LeftButton);
    else
        QTest::keyClick(button.get(), Qt::Key(key));
    QCOMPARE(mAction->count(), expectedRuns);
    // The hook follows every click, after the script.
    QCOMPARE(button->runsAtHook, expectedRuns ? QList<int> { 1 } : QList<int> {});
}

void tst_ActionButton::autoRepeat_data()
{
    QTest::addColumn<bool>("autoRepeat");
    QTest::addColumn<int>("delay");
    QTest::addColumn<int>("interval");
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<Change>("change"); // made while held
    QTest::addColumn<int>("changeAt");
    QTest::addColumn<Times>("expected"); // when the script ran, from the press

    const Change none = Change::None;
    QTest::newRow("shorter than the delay")
        << true << 1000 << 500 << 999 << none << 0 << Times { 999 };
    QTest::newRow("held 1600 ms") << true << 1000 << 500 << 1600 << none << 0
                                  << Times { 1000, 1500, 1600 };
    QTest::newRow("held exactly the delay")
        << true << 1000 << 500 << 1000 << none << 0 << Times { 1000, 1000 };
    QTest::newRow("short delay and interval")
        << true << 200 << 100 << 450 << none << 0 << Times { 200, 300, 400, 450 };
    QTest::newRow("auto-repeat off") << false << 1000 << 500 << 3000 << none << 0 << Times { 3000 };
    QTest::newRow("auto-repeat turned off while repeating")
        << true << 1000 << 500 << 3200 << Change::AutoRepeatOff << 1200 << Times { 1000, 3200 };
    QTest::newRow("auto-repeat turned off before the first repeat")
        << true << 1000 << 500 << 3200 << Change::AutoRepeatOff << 400 << Times { 3200 };
    QTest::newRow("interval while repeating: at once")
        << true << 1000 << 500 << 1600 << Change::Interval200 << 1100
        << Times { 1000, 1300, 1500, 1600 };
    QTest::newRow("interval while waiting: after the delay")
        << true << 1000 << 500 << 1500 << Change::Interval200 << 500
        << Times { 1000, 1200, 1400, 1500 };
    QTest::newRow("delay: only the next press")
        << true << 1000 << 500 << 1600 << Change::Delay200 << 100 << Times { 1000, 1500, 1600 };
}

void tst_ActionButton::autoRepeat()
{
    QFETCH(bool, autoRepeat);
    QFETCH(int, delay);
    QFETCH(int, interval);
    QFETCH(int, holdMs);
    QFETCH(Change, change);
    QFETCH(int, changeAt);
    QFETCH(Times, expected);

    auto button = makeButton();
    button->SetKorvexAutoRepeat(autoRepeat);
    button->SetRepeatDelay(delay);
    button->SetRepeatInterval(interval);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());

    QTest::mousePress(button.get(), Qt::LeftButton);
    QCOMPARE(TaskScheduler::instance().scheduledTaskCount(), mTasksBefore + int(autoRepeat));
    advance(changeAt);
    if (change == Change::AutoRepeatOff) {
        button->SetKorvexAutoRepeat(false);
        QCOMPARE(TaskScheduler::instance().scheduledTaskCount(), mTasksBefore);
    } else if (change == Change::Interval200) {
        button->SetRepeatInterval(200);
    } else if (change == Change::Delay200) {
        button->SetRepeatDelay(200);
    }
    advance(holdMs - changeAt);
    QTest::mouseRelease(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->times, expected);
}

void tst_ActionButton::destroyedWhileHeld()
{
    auto button = makeButton();
    button->SetKorvexAutoRepeat(true);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton);
    advance(1200);
    button.reset();
    advance(2000);
    QCOMPARE(mAction->times, Times { 1000 });
}

void tst_ActionButton::enabledState_data()
{
    QTest::addColumn<QString>("spec");
    QTest::addColumn<bool>("publish"); // the bool model "Deck1.canPlay"
    QTest::addColumn<bool>("modelValue");
    QTest::addColumn<bool>("defaultEnabled");
    QTest::addColumn<bool>("expected");

    QTest::newRow("no spec, default on") << "" << true << false << true << true;
    QTest::newRow("no spec, default off") << "" << true << true << false << false;
    QTest::newRow("no model yet") << "Deck1.canPlay" << false << false << false << false;
    QTest::newRow("model true, default off") << "Deck1.canPlay" << true << true << false << true;
    QTest::newRow("model false, default on") << "Deck1.canPlay" << true << false << true << false;
    QTest::newRow("through the environment") << "$Deck.canPlay" << true << false << true << false;
    QTest::newRow("unbound variable") << "$Other.canPlay" << true << false << true << true;
}

void tst_ActionButton::enabledState()
{
    QFETCH(QString, spec);
    QFETCH(bool, publish);
    QFETCH(bool, modelValue);
    QFETCH(bool, defaultEnabled);
    QFETCH(bool, expected);

    Bnde_SimpleValue<bool> canPlay(QStringLiteral("Deck1.canPlay"), modelValue);
    if (publish)
        QVERIFY(canPlay.Publish());
    auto button = makeButton(spec, defaultEnabled);
    QCOMPARE(button->isEnabled(), defaultEnabled); // nothing is bound before makeConnections
    auto *env = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(),
                                              &Bnd_ConnectionDict::Singleton());
    env->set(QStringLiteral("Deck"), QStringLiteral("Deck1"));
    button->makeConnections(Bnd_ConnectionEnvironmentPtr(env));
    QCOMPARE(button->isEnabled(), expected);

    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), int(expected));
}

void tst_ActionButton::enabledFollowsModel()
{
    auto button = makeButton(QStringLiteral("Deck1.canPlay"), true);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    auto canPlay = std::make_unique<Bnde_SimpleValue<bool>>(QStringLiteral("Deck1.canPlay"), false);
    QVERIFY(canPlay->Publish()); // the waiting listener connects by itself
    QVERIFY(!button->isEnabled());
    canPlay->setValue(true);
    QVERIFY(button->isEnabled());
    canPlay->setValue(false);
    QVERIFY(!button->isEnabled());

    // Without the model, the default enabled state counts.
    canPlay.reset();
    QVERIFY(button->isEnabled());
    button->SetDefaultEnabledState(false);
    QVERIFY(!button->isEnabled());

    // A new spec leaves the old model at once.
    canPlay = std::make_unique<Bnde_SimpleValue<bool>>(QStringLiteral("Deck1.canPlay"), true);
    QVERIFY(canPlay->Publish());
    Bnde_SimpleValue<bool> other(QStringLiteral("Deck2.canPlay"), true);
    QVERIFY(other.Publish());
    button->setEnabledStateConnectionSpec("Deck2.canPlay");
    QVERIFY(!button->isEnabled());
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    canPlay->setValue(false);
    QVERIFY(button->isEnabled());
}

void tst_ActionButton::faultyInput_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("enabledSpec");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<int>("expectedRuns");

    const QString parse = "Kiv_ActionButton::SetActionScript, cannot parse the action script";
    QTest::newRow("does not parse") << "Test.act("
                                    << "" << parse << 0;
    QTest::newRow("nested call") << "Test.act(Test.act())"
                                 << "" << parse << 0;
    QTest::newRow("name with no model")
        << "Nowhere.act()"
        << ""
        << "Kiv_ActionButton::makeConnections, the action script \"Nowhere.act()\" does not "
           "connect"
        << 0;
    QTest::newRow("enabled model of another type")
        << "Test.act()"
        << "Test.title"
        << "Kiv_ActionButton::updateEnabledAppearance, the model \"Test.title\" holds no bool" << 1;
}

void tst_ActionButton::faultyInput()
{
    QFETCH(QString, script);
    QFETCH(QString, enabledSpec);
    QFETCH(QString, warning);
    QFETCH(int, expectedRuns);

    Bnde_SimpleValue<QString> title(QStringLiteral("Test.title"), QStringLiteral("x"));
    QVERIFY(title.Publish());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(warning)));
    auto button = makeButton(enabledSpec, true, script);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QVERIFY(button->isEnabled());
    QTest::mouseClick(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->count(), expectedRuns);
}

void tst_ActionButton::whatsThisNames()
{
    Kiv_ActionButton action;
    Kiv_ImmediateActionButton immediate;
    Kiv_PlayButton play;
    QCOMPARE(Kiv_WhatsThis::whatsThisName(&action), QStringLiteral("Kiv_ActionButton"));
    QCOMPARE(Kiv_WhatsThis::whatsThisName(&immediate), QStringLiteral("Kiv_ImmediateActionButton"));
    QCOMPARE(Kiv_WhatsThis::whatsThisName(&play), QStringLiteral("Kiv_PlayButton"));
}

QTEST_MAIN(tst_ActionButton)
#include "tst_actionbutton.moc"
