// Kiv_ImmediateActionButton: acting on press or on release inside, auto-repeat, the right
// button of a context menu, the looks driven by the mouse and the enabled-state model, and
// visibility from a model.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_ContextMenuListener.h"
#include "Kiv_ImmediateActionButton.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QtTest>

#include <memory>

using namespace ButtonTest;

namespace {

const QByteArray cNormal = "Images/Buttons/StepForwardNormal.png";
const QByteArray cTracking = "Images/Buttons/StepForwardTracking.png";
const QByteArray cDisabled = "Images/Buttons/StepForwardDisabled.png";

// In place of a menu-model listener: records where it was asked to pop up.
class RecordingMenuListener : public Kiv_ContextMenuListener
{
public:
    explicit RecordingMenuListener(QList<QPoint> *oPositions)
        : mPositions(oPositions)
    { }
    bool isConnected() const override { return true; }
    bool popup(const QPoint &iGlobalPos) override
    {
        *mPositions << iGlobalPos;
        return true;
    }

private:
    QList<QPoint> *mPositions;
};

bool sendContextMenu(QWidget *iWidget, QPoint iPos)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse, iPos, iWidget->mapToGlobal(iPos));
    event.ignore();
    QCoreApplication::sendEvent(iWidget, &event);
    return event.isAccepted();
}

} // namespace

class tst_ImmediateActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pressAndRelease_data();
    void pressAndRelease();
    void autoRepeat_data();
    void autoRepeat();
    void rightButton_data();
    void rightButton();
    void contextMenu_data();
    void contextMenu();
    void looks_data();
    void looks();
    void disabledByModel();
    void visibleState_data();
    void visibleState();
    void fillsBackground();

private:
    std::unique_ptr<Kiv_ImmediateActionButton> makeButton(QWidget *iParent = nullptr)
    {
        auto button = std::make_unique<Kiv_ImmediateActionButton>(iParent, "button",
                                                                  QStringLiteral("Test.act()"));
        button->setNormalImage(cNormal);
        button->setTrackingImage(cTracking);
        button->setDisabledImage(cDisabled);
        button->resize(button->sizeHint());
        return button;
    }
    static bool shows(Kiv_ImmediateActionButton *iButton, const QByteArray &iImage)
    {
        return render(iButton) == resourceImage(QString::fromUtf8(iImage));
    }

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

void tst_ImmediateActionButton::pressAndRelease_data()
{
    QTest::addColumn<bool>("actionDelay");
    QTest::addColumn<QPoint>("releaseAt");
    QTest::addColumn<int>("runsAfterPress");
    QTest::addColumn<int>("runsAfterRelease");

    QTest::newRow("on press, released inside") << false << QPoint(10, 10) << 1 << 1;
    QTest::newRow("on press, released outside") << false << QPoint(-5, 10) << 1 << 1;
    QTest::newRow("delayed, released inside") << true << QPoint(10, 10) << 0 << 1;
    QTest::newRow("delayed, released outside") << true << QPoint(-5, 10) << 0 << 0;
    QTest::newRow("delayed, released below") << true << QPoint(10, 32) << 0 << 0;
}

void tst_ImmediateActionButton::pressAndRelease()
{
    QFETCH(bool, actionDelay);
    QFETCH(QPoint, releaseAt);
    QFETCH(int, runsAfterPress);
    QFETCH(int, runsAfterRelease);

    auto button = makeButton();
    button->setActionDelay(actionDelay);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(mAction->count(), runsAfterPress);
    QTest::mouseRelease(button.get(), Qt::LeftButton, {}, releaseAt);
    QCOMPARE(mAction->count(), runsAfterRelease);
}

void tst_ImmediateActionButton::autoRepeat_data()
{
    QTest::addColumn<bool>("actionDelay");
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<int>("autoRepeatOffAt"); // -1: never
    QTest::addColumn<Times>("expected");

    QTest::newRow("on press, short") << false << 999 << -1 << Times { 0 };
    QTest::newRow("on press, held 1600 ms") << false << 1600 << -1 << Times { 0, 1000, 1500 };
    QTest::newRow("delayed, held 1600 ms") << true << 1600 << -1 << Times { 1000, 1500, 1600 };
    QTest::newRow("auto-repeat off while held") << false << 3000 << 1200 << Times { 0, 1000 };
}

void tst_ImmediateActionButton::autoRepeat()
{
    QFETCH(bool, actionDelay);
    QFETCH(int, holdMs);
    QFETCH(int, autoRepeatOffAt);
    QFETCH(Times, expected);

    auto button = makeButton();
    button->setActionDelay(actionDelay);
    button->setKorvexAutoRepeat(true);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), Qt::LeftButton);
    if (autoRepeatOffAt >= 0) {
        advance(autoRepeatOffAt);
        button->setKorvexAutoRepeat(false);
        QCOMPARE(TaskScheduler::instance().scheduledTaskCount(), mTasksBefore);
        holdMs -= autoRepeatOffAt;
    }
    advance(holdMs);
    QTest::mouseRelease(button.get(), Qt::LeftButton);
    QCOMPARE(mAction->times, expected);
}

void tst_ImmediateActionButton::rightButton_data()
{
    QTest::addColumn<Qt::MouseButton>("mouseButton");
    QTest::addColumn<QByteArray>("contextMenuSpec");
    QTest::addColumn<bool>("actionDelay");
    QTest::addColumn<int>("expectedRuns");
    QTest::addColumn<QByteArray>("imageWhileHeld");

    QTest::newRow("right, menu") << Qt::RightButton << QByteArray("M") << false << 0 << cNormal;
    QTest::newRow("right, menu, delayed")
        << Qt::RightButton << QByteArray("M") << true << 0 << cNormal;
    QTest::newRow("right, no menu") << Qt::RightButton << QByteArray() << false << 1 << cTracking;
    QTest::newRow("left, menu") << Qt::LeftButton << QByteArray("M") << false << 1 << cTracking;
}

void tst_ImmediateActionButton::rightButton()
{
    QFETCH(Qt::MouseButton, mouseButton);
    QFETCH(QByteArray, contextMenuSpec);
    QFETCH(bool, actionDelay);
    QFETCH(int, expectedRuns);
    QFETCH(QByteArray, imageWhileHeld);

    auto button = makeButton();
    button->setContextMenuConnectionSpec(contextMenuSpec);
    button->setActionDelay(actionDelay);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::mousePress(button.get(), mouseButton, {}, QPoint(10, 10));
    QVERIFY(shows(button.get(), imageWhileHeld));
    QTest::mouseRelease(button.get(), mouseButton, {}, QPoint(10, 10));
    QCOMPARE(mAction->count(), expectedRuns);
}

void tst_ImmediateActionButton::contextMenu_data()
{
    QTest::addColumn<bool>("menuInModel");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("expectedShown");

    QTest::newRow("menu") << true << true << true;
    QTest::newRow("model without a menu") << false << true << false;
    QTest::newRow("disabled button") << true << false << false;
}

void tst_ImmediateActionButton::contextMenu()
{
    QFETCH(bool, menuInModel);
    QFETCH(bool, enabled);
    QFETCH(bool, expectedShown);

    QMenu menu;
    menu.addAction(QStringLiteral("Add marker"));
    Bnde_SimpleValue<QMenu *> menuModel(QStringLiteral("Test.menu"), menuInModel ? &menu : nullptr);
    QVERIFY(menuModel.Publish());
    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), enabled);
    QVERIFY(canStep.Publish());
    QWidget window;
    auto button = makeButton(&window);
    button->setEnabledStateConnSpec("Test.canStep");
    button->setContextMenuConnectionSpec("Test.menu");
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    QCOMPARE(sendContextMenu(button.get(), QPoint(5, 5)), expectedShown);
    QCOMPARE(menu.isVisible(), expectedShown);
    menu.hide();

    // Another listener can take the menu's place; it gets the global position.
    QList<QPoint> positions;
    button->setContextMenuListener(std::make_unique<RecordingMenuListener>(&positions));
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QCOMPARE(sendContextMenu(button.get(), QPoint(3, 4)), enabled);
    QCOMPARE(positions.size(), int(enabled));
    if (enabled)
        QCOMPARE(positions.front(), button->mapToGlobal(QPoint(3, 4)));
    QCOMPARE(mAction->count(), 0);
}

void tst_ImmediateActionButton::looks_data()
{
    QTest::addColumn<bool>("enabledModel"); // a bool model, true, drives the look
    QTest::addColumn<bool>("leave"); // the pointer leaves instead of releasing
    QTest::addColumn<QByteArray>("expectedAfter");

    QTest::newRow("released, no model: tracking stays") << false << false << cTracking;
    QTest::newRow("released, model") << true << false << cNormal;
    QTest::newRow("left, no model: tracking stays") << false << true << cTracking;
    QTest::newRow("left, model") << true << true << cNormal;
}

void tst_ImmediateActionButton::looks()
{
    QFETCH(bool, enabledModel);
    QFETCH(bool, leave);
    QFETCH(QByteArray, expectedAfter);

    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), true);
    QVERIFY(canStep.Publish());
    auto button = makeButton();
    if (enabledModel)
        button->setEnabledStateConnSpec("Test.canStep");
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QVERIFY(shows(button.get(), cNormal));
    QTest::mousePress(button.get(), Qt::LeftButton);
    QVERIFY(shows(button.get(), cTracking));
    if (leave) {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(button.get(), &event);
    } else {
        QTest::mouseRelease(button.get(), Qt::LeftButton);
    }
    QVERIFY(shows(button.get(), expectedAfter));
}

void tst_ImmediateActionButton::disabledByModel()
{
    auto button = makeButton();
    button->setKorvexAutoRepeat(true);
    button->setEnabledStateConnSpec("Test.canStep");
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), false);
    QVERIFY(canStep.Publish()); // the waiting listener connects by itself
    QVERIFY(!button->isEnabled());
    QVERIFY(shows(button.get(), cDisabled));

    canStep.setValue(true);
    QVERIFY(button->isEnabled());
    QVERIFY(shows(button.get(), cNormal));

    // Disabled while held: no release will come, so the repeat stops.
    QTest::mousePress(button.get(), Qt::LeftButton);
    advance(1200);
    canStep.setValue(false);
    advance(2000);
    QCOMPARE(mAction->times, Times({ 0, 1000 }));
}

void tst_ImmediateActionButton::visibleState_data()
{
    QTest::addColumn<bool>("child"); // of a parent widget, else a window of its own
    QTest::addColumn<QByteArray>("spec");
    QTest::addColumn<bool>("publish"); // the bool model "Test.show", true
    QTest::addColumn<QList<bool>>("expectedHidden"); // connected, model false, model true again

    QTest::newRow("no spec") << true << QByteArray() << true << QList<bool> { false, false, false };
    QTest::newRow("no model") << true << QByteArray("Test.show") << false
                              << QList<bool> { true, true, true };
    QTest::newRow("model") << true << QByteArray("Test.show") << true
                           << QList<bool> { false, true, false };
    QTest::newRow("window: opened only again")
        << false << QByteArray("Test.show") << true << QList<bool> { true, true, false };
}

void tst_ImmediateActionButton::visibleState()
{
    QFETCH(bool, child);
    QFETCH(QByteArray, spec);
    QFETCH(bool, publish);
    QFETCH(QList<bool>, expectedHidden);

    Bnde_SimpleValue<bool> show(QStringLiteral("Test.show"), true);
    if (publish)
        QVERIFY(show.Publish());
    QWidget parent;
    auto button = makeButton(child ? &parent : nullptr);
    button->setVisibleStateConnectionSpec(spec);
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QList<bool> hidden { button->isHidden() };
    show.setValue(false);
    hidden << button->isHidden();
    show.setValue(true);
    hidden << button->isHidden();
    QCOMPARE(hidden, expectedHidden);
    button->hide();
}

void tst_ImmediateActionButton::fillsBackground()
{
    // Without an image: 32 by 32 of the background role's brush.
    Kiv_ImmediateActionButton button;
    QPalette palette = button.palette();
    palette.setColor(QPalette::Window, Qt::red);
    button.setPalette(palette);
    QCOMPARE(button.sizeHint(), QSize(32, 32));
    button.resize(40, 40);
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    button.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    QCOMPARE(image.pixelColor(39, 39), QColor(Qt::red));
}

QTEST_MAIN(tst_ImmediateActionButton)
#include "tst_immediateactionbutton.moc"
