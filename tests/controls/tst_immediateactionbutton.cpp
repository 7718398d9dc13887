// Kiv_ImmediateActionButton: press, release and auto-repeat, the right button, the looks.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_ImmediateActionButton.h"

#include <QtTest>

#include <memory>

using namespace ButtonTest;

namespace {

const QByteArray cNormal = "Images/Buttons/StepForwardNormal.png";
const QByteArray cTracking = "Images/Buttons/StepForwardTracking.png";
const QByteArray cDisabled = "Images/Buttons/StepForwardDisabled.png";

std::unique_ptr<Kiv_ImmediateActionButton> makeButton(const QByteArray &iEnabledConn = {})
{
    auto button = std::make_unique<Kiv_ImmediateActionButton>(nullptr, "button",
                                                              QStringLiteral("Test.act()"));
    button->setNormalImage(cNormal);
    button->setTrackingImage(cTracking);
    button->setDisabledImage(cDisabled);
    button->setEnabledStateConnSpec(iEnabledConn);
    button->resize(button->sizeHint());
    return button;
}

bool shows(Kiv_ImmediateActionButton *iButton, const QByteArray &iImage)
{
    return render(iButton) == resourceImage(QString::fromUtf8(iImage));
}

} // namespace

class tst_ImmediateActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pressAndHold_data();
    void pressAndHold();
    void looks_data();
    void looks();
    void disabledByModel();

private:
    std::unique_ptr<RecordingAction> mAction;
    int mTasksBefore = 0;
};

void tst_ImmediateActionButton::init()
{
    mAction = std::make_unique<RecordingAction>();
    mTasksBefore = TaskScheduler::instance().scheduledTaskCount();
}

void tst_ImmediateActionButton::cleanup()
{
    mAction.reset();
    QCOMPARE(TaskScheduler::instance().scheduledTaskCount(), mTasksBefore);
}

void tst_ImmediateActionButton::pressAndHold_data()
{
    QTest::addColumn<bool>("actionDelay");
    QTest::addColumn<bool>("autoRepeat");
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<int>("releaseX"); // -5: outside
    QTest::addColumn<Times>("expected"); // the first run, if any, is on press unless delayed

    QTest::newRow("on press") << false << false << 0 << -5 << Times { 0 };
    QTest::newRow("delayed, released inside") << true << false << 0 << 10 << Times { 0 };
    QTest::newRow("delayed, released outside") << true << false << 0 << -5 << Times {};
    QTest::newRow("on press, held") << false << true << 1600 << 10 << Times { 0, 1000, 1500 };
    QTest::newRow("delayed, held") << true << true << 1600 << 10 << Times { 1000, 1500, 1600 };
}

void tst_ImmediateActionButton::pressAndHold()
{
    QFETCH(bool, actionDelay);
    QFETCH(bool, autoRepeat);
    QFETCH(int, holdMs);
    QFETCH(int, releaseX);
    QFETCH(Times, expected);

    auto button = makeButton();
    button->setActionDelay(actionDelay);
    button->setKorvexAutoRepeat(autoRepeat);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(mAction->count(), int(!actionDelay));
    advance(holdMs);
    QTest::mouseRelease(button.get(), Qt::LeftButton, {}, QPoint(releaseX, 10));
    QCOMPARE(mAction->times, expected);
}

void tst_ImmediateActionButton::looks_data()
{
    QTest::addColumn<Qt::MouseButton>("mouseButton");
    QTest::addColumn<QByteArray>("menuConn");
    QTest::addColumn<bool>("actionDelay");
    QTest::addColumn<bool>("enabledModel"); // a bool model, true
    QTest::addColumn<bool>("leave"); // the pointer leaves instead of releasing
    QTest::addColumn<QByteArray>("whileHeld"); // tracking: the action runs
    QTest::addColumn<QByteArray>("after");

    const Qt::MouseButton l = Qt::LeftButton, r = Qt::RightButton;
    const QByteArray m = "M", n = cNormal, t = cTracking;
    QTest::newRow("right, menu") << r << m << false << true << false << n << n;
    QTest::newRow("right, menu, delayed") << r << m << true << false << false << n << n;
    QTest::newRow("right, no menu") << r << QByteArray() << false << false << false << t << t;
    QTest::newRow("left, menu, no model") << l << m << false << false << false << t << t;
    QTest::newRow("left, model") << l << m << false << true << false << t << n;
    QTest::newRow("leave, no model") << l << m << false << false << true << t << t;
    QTest::newRow("leave, model") << l << m << false << true << true << t << n;
}

void tst_ImmediateActionButton::looks()
{
    QFETCH(Qt::MouseButton, mouseButton);
    QFETCH(QByteArray, menuConn);
    QFETCH(bool, actionDelay);
    QFETCH(bool, enabledModel);
    QFETCH(bool, leave);
    QFETCH(QByteArray, whileHeld);
    QFETCH(QByteArray, after);

    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), true);
    QVERIFY(canStep.Publish());
    auto button = makeButton(enabledModel ? "Test.canStep" : "");
    button->setContextMenuConnectionSpec(menuConn);
    button->setActionDelay(actionDelay);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QVERIFY(shows(button.get(), cNormal));
    QTest::mousePress(button.get(), mouseButton, {}, QPoint(10, 10));
    QVERIFY(shows(button.get(), whileHeld));
    QEvent event(QEvent::Leave);
    if (leave)
        QCoreApplication::sendEvent(button.get(), &event);
    else
        QTest::mouseRelease(button.get(), mouseButton, {}, QPoint(10, 10));
    QVERIFY(shows(button.get(), after));
    QCOMPARE(mAction->count(), int(whileHeld == cTracking));
}

void tst_ImmediateActionButton::disabledByModel()
{
    auto button = makeButton("Test.canStep");
    button->setKorvexAutoRepeat(true);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), false);
    QVERIFY(canStep.Publish()); // the waiting listener connects by itself
    QVERIFY(!button->isEnabled());
    QVERIFY(shows(button.get(), cDisabled));
    canStep.setValue(true);
    QVERIFY(shows(button.get(), cNormal));

    // Disabled while held: no release will come, so the repeat stops.
    QTest::mousePress(button.get(), Qt::LeftButton);
    advance(1200);
    canStep.setValue(false);
    advance(2000);
    QCOMPARE(mAction->times, Times({ 0, 1000 }));
}

QTEST_MAIN(tst_ImmediateActionButton)
#include "tst_immediateactionbutton.moc"
