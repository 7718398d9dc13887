// Kiv_ImmediateActionButton: press, release and auto-repeat, the right button, the looks.

#include "ButtonTestSupport.h"

#include "Bnde_SimpleValue.h"
#include "Kiv_ImmediateActionButton.h"
#include "Mnu_CommandSegment.h"
#include "Mnu_QtManager.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QtTest>

#include <memory>
#include <optional>

using namespace ButtonTest;

namespace {

const QByteArray cNormal = "Images/Buttons/StepForwardNormal.png";
const QByteArray cTracking = "Images/Buttons/StepForwardTracking.png";
const QByteArray cDisabled = "Images/Buttons/StepForwardDisabled.png";

// Flags: "d" action delay, "r" auto-repeat, "m" a context-menu spec, "e" the enabled model
// "Test.canStep".
std::unique_ptr<Kiv_ImmediateActionButton> makeButton(const QString &iFlags)
{
    auto button = std::make_unique<Kiv_ImmediateActionButton>(nullptr, "button",
                                                              QStringLiteral("Test.act()"));
    button->setNormalImage(cNormal);
    button->setTrackingImage(cTracking);
    button->setDisabledImage(cDisabled);
    button->setEnabledStateConnSpec(iFlags.contains('e') ? "Test.canStep" : "");
    button->setContextMenuConnectionSpec(iFlags.contains('m') ? "M" : "");
    button->setActionDelay(iFlags.contains('d'));
    button->setKorvexAutoRepeat(iFlags.contains('r'));
    button->resize(button->sizeHint());
    button->makeConnections(Bnd_ConnectionEnvironmentPtr());
    return button;
}

bool shows(const std::unique_ptr<Kiv_ImmediateActionButton> &iButton, const QByteArray &iImage)
{
    return render(iButton.get()) == resourceImage(QString::fromUtf8(iImage));
}

// How a press ends: a release inside or outside the button, or the pointer leaving it.
enum End { In, Out, Leave };

void row(const char *iName, Qt::MouseButton iButton, const char *iFlags, int iHoldMs, int iEnd,
         const Times &iRuns, const QByteArray &iWhileHeld, const QByteArray &iAfter)
{
    QTest::newRow(iName) << iButton << QString(iFlags) << iHoldMs << iEnd << iRuns << iWhileHeld
                         << iAfter;
}

} // namespace

class tst_ImmediateActionButton : public QObject
{
    Q_OBJECT

private slots:
    void init() { mAction.emplace(); }
    void cleanup() { QCOMPARE(mAction->tasksAdded(), 0); }
    void pressAndRelease_data();
    void pressAndRelease();
    void disabledByModel();
    void contextMenuFromItsDescription();

private:
    std::optional<RecordingAction> mAction;
};

void tst_ImmediateActionButton::pressAndRelease_data()
{
    QTest::addColumn<Qt::MouseButton>("mouseButton");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<int>("holdMs");
    QTest::addColumn<int>("end");
    QTest::addColumn<Times>("runs"); // on press unless delayed; repeats at 1000, 1500
    QTest::addColumn<QByteArray>("whileHeld"); // tracking: the action runs
    QTest::addColumn<QByteArray>("after");

    const Qt::MouseButton l = Qt::LeftButton, r = Qt::RightButton;
    const QByteArray n = cNormal, t = cTracking;
    row("on press", l, "", 0, Out, { 0 }, t, t);
    row("delayed, released inside", l, "d", 0, In, { 0 }, t, t);
    row("delayed, released outside", l, "d", 0, Out, {}, t, t);
    row("on press, held", l, "r", 1600, In, { 0, 1000, 1500 }, t, t);
    row("delayed, held", l, "dr", 1600, In, { 1000, 1500, 1600 }, t, t);
    // The menu's press and release are ignored, also with the action delay on.
    row("right, menu, delayed", r, "dme", 0, In, {}, n, n);
    row("right, no menu", r, "", 0, In, { 0 }, t, t);
    row("left, menu, model", l, "me", 0, In, { 0 }, t, n);
    row("leave, model", l, "e", 0, Leave, { 0 }, t, n);
}

void tst_ImmediateActionButton::pressAndRelease()
{
    QFETCH(Qt::MouseButton, mouseButton);
    QFETCH(QString, flags);
    QFETCH(int, holdMs);
    QFETCH(int, end);
    QFETCH(Times, runs);
    QFETCH(QByteArray, whileHeld);
    QFETCH(QByteArray, after);

    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), true);
    QVERIFY(canStep.Publish());
    auto button = makeButton(flags); // an enabled model holds true
    QVERIFY(shows(button, cNormal));
    QTest::mousePress(button.get(), mouseButton, {}, QPoint(10, 10));
    QVERIFY(shows(button, whileHeld));
    QCOMPARE(mAction->count(), int(whileHeld == cTracking && !flags.contains('d')));
    advance(holdMs);
    QEvent leave(QEvent::Leave);
    if (end == Leave)
        QCoreApplication::sendEvent(button.get(), &leave);
    else
        QTest::mouseRelease(button.get(), mouseButton, {}, QPoint(end == Out ? -5 : 10, 10));
    QVERIFY(shows(button, after));
    QCOMPARE(mAction->times, runs);
}

void tst_ImmediateActionButton::disabledByModel()
{
    auto button = makeButton("er");
    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), false);
    QVERIFY(canStep.Publish()); // the waiting listener connects by itself
    QVERIFY(!button->isEnabled());
    QVERIFY(shows(button, cDisabled));
    canStep.setValue(true);
    QVERIFY(shows(button, cNormal));

    // Disabled while held: no release will come, so the repeat stops.
    QTest::mousePress(button.get(), Qt::LeftButton);
    advance(1200);
    canStep.setValue(false);
    advance(2000);
    QCOMPARE(mAction->times, Times({ 0, 1000 }));
}

namespace {
// A context menu built in code, as generated source builds one: one item running the script.
Mnu_QtManager *buttonMenu(Mnu_QtManager *iManager)
{
    auto *item = new Mnu_CommandSegment;
    item->setName("Act");
    item->setItemText("Act");
    item->setActionScript("Test.act()");
    iManager->getMenu()->addSegment(item);
    return iManager;
}
} // namespace

// The context-menu model names a menu description; the button pops that menu up, connected in
// the button's environment, unless the button is disabled.
void tst_ImmediateActionButton::contextMenuFromItsDescription()
{
    int key = 0;
    Mnu_QtManager::registerMenuFactory("ButtonMenu", &key, buttonMenu);
    Bnde_SimpleValue<QString> menuName(QStringLiteral("M"), QStringLiteral("Menus/ButtonMenu"));
    Bnde_SimpleValue<bool> canStep(QStringLiteral("Test.canStep"), true);
    QVERIFY(menuName.Publish() && canStep.Publish());
    auto button = makeButton("me");
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(100, 100));
    QCoreApplication::sendEvent(button.get(), &event);
    QVERIFY(event.isAccepted());
    const auto shownMenu = [] {
        for (QWidget *w : QApplication::topLevelWidgets())
            if (qobject_cast<QMenu *>(w) && w->isVisible())
                return static_cast<QMenu *>(w);
        return static_cast<QMenu *>(nullptr);
    };
    QMenu *menu = shownMenu();
    QVERIFY(menu);
    menu->actions().first()->trigger();
    menu->hide();
    QTRY_COMPARE(mAction->count(), 1); // after the menu closed

    canStep.setValue(false); // disabled: no menu
    QContextMenuEvent again(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(100, 100));
    QCoreApplication::sendEvent(button.get(), &again);
    QVERIFY(!shownMenu());
    Mnu_QtManager::unregisterMenuFactory("ButtonMenu", &key);
}

QTEST_MAIN(tst_ImmediateActionButton)
#include "tst_immediateactionbutton.moc"
