// The bridges that host a view tree in a widget: sizing, painting order, event routing, names
// and points of interest, and the drag auto-scroll of the scroll bridge.

#include "Bnd_ConnectionEnvironment.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_BridgeQWidget.h"
#include "Kiv_ConnectionUtils.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_DragAutoScroll.h"
#include "Kiv_WhatsThis.h"

#include <QImage>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QtTest>

#include <memory>

namespace {

// A view that paints a blue 10x10 spot at (15, 10) (or bands: red above y 100, blue below),
// logs the events it gets and counts its destruction.
class ProbeView : public Kiv_ViewBase
{
public:
    enum Paint { Spot, Bands };
    ProbeView(const QString &iName, const QSize &iSize, int *ioDeaths = nullptr,
              Paint iPaint = Spot)
        : mPaint(iPaint)
        , mDeathsP(ioDeaths)
    {
        setName(iName);
        setSize(iSize);
    }
    ~ProbeView() override
    {
        if (mDeathsP)
            ++*mDeathsP;
    }
    void drawContents(QPainter *iPainter, const QRect &) override
    {
        if (mPaint == Spot) {
            iPainter->fillRect(QRect(15, 10, 10, 10), Qt::blue);
        } else {
            iPainter->fillRect(QRect(0, 0, getWidth(), 100), Qt::red);
            iPainter->fillRect(QRect(0, 100, getWidth(), getHeight() - 100), Qt::blue);
        }
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override
    {
        log << QStringLiteral("press %1,%2").arg(iPos.x()).arg(iPos.y());
        if (!mAcceptPress)
            iEvent->ignore();
    }
    void dragEnterEvent(QDragEnterEvent *iEvent, const QPoint &) override
    {
        iEvent->acceptProposedAction();
    }
    void dragMoveEvent(QDragMoveEvent *, const QPoint &iPos) override
    {
        log << QStringLiteral("drag %1,%2").arg(iPos.x()).arg(iPos.y());
    }

    QStringList log;
    bool mAcceptPress = true;

private:
    Paint mPaint;
    int *mDeathsP;
};

class Container : public Kiv_ContainerViewBase
{
public:
    Container(const QString &iName, const QRect &iRect)
    {
        setName(iName);
        setRectInParent(iRect);
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
};

// "Top" (size given) holding "Item" at (10, 5), 20x10.
Container *makeTopWithItem(const QSize &iSize, const QPoint &iItemAt = QPoint(10, 5))
{
    auto *top = new Container(QStringLiteral("Top"), QRect(QPoint(), iSize));
    auto *item = new Kiv_BlankView(QSize(20, 10));
    item->setName(QStringLiteral("Item"));
    item->setOrigin(iItemAt);
    top->AddSubView(item);
    return top;
}

// A scroll bridge whose viewport is the whole widget, shown so that it has its geometry.
class ScrollBridge : public Kiv_BridgeQScrollArea
{
public:
    explicit ScrollBridge(const QSize &iViewport)
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        resize(iViewport);
        show();
    }
    using Kiv_BridgeQScrollArea::setDragAutoScroll;
    using Kiv_BridgeQScrollArea::viewableArea;
};

// A widget that records the mouse presses that reach it.
class PressRecorder : public QWidget
{
public:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
    int presses = 0;
};

QImage render(QWidget *iWidget)
{
    QImage image(iWidget->size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    iWidget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

// A 2x1 (stretched) or 10x10 (tiled) pixmap: green left half, transparent right half.
QPixmap halfGreen(bool iTiled)
{
    QImage image(iTiled ? QSize(10, 10) : QSize(2, 1), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(QRect(0, 0, image.width() / 2, image.height()), Qt::green);
    return QPixmap::fromImage(image);
}

void sendDrag(QWidget *iTarget, QEvent::Type iType, const QPoint &iPos, const QMimeData &iData)
{
    if (iType == QEvent::DragLeave) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(iTarget, &leave);
    } else if (iType == QEvent::DragEnter) {
        QDragEnterEvent enter(iPos, Qt::CopyAction, &iData, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(iTarget, &enter);
    } else {
        QDragMoveEvent move(iPos, Qt::CopyAction, &iData, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(iTarget, &move);
    }
}

} // namespace

class tst_Bridge : public QObject
{
    Q_OBJECT

private slots:
    void whatsThisName_data();
    void whatsThisName();
    void whatsThisNameRejectsBadInput();

    void setChildFitsTheWidget_data();
    void setChildFitsTheWidget();
    void bridgeOwnsItsChild();
    void childChangesResizeTheWidget();
    void painting_data();
    void painting();
    void pressesReachTheViewOrGoOn_data();
    void pressesReachTheViewOrGoOn();
    void acceptsDropsSwitchesTheBridgeWidget_data();
    void acceptsDropsSwitchesTheBridgeWidget();
    void connectionWalkReachesTheHostedViews();

    void findUiName_data();
    void findUiName();
    void findPoi_data();
    void findPoi();
    void pointOfInterestForgetsDestroyedWidget();

    void autoScrollArithmetic_data();
    void autoScrollArithmetic();
    void autoScrollStartsOver();
    void scrollBridgeFitsViewToViewport_data();
    void scrollBridgeFitsViewToViewport();
    void scrollBridgePaintsAndFindsInContentsCoordinates();
    void ensureRectVisible_data();
    void ensureRectVisible();
    void dragNearEdgeScrollsUntilItLeaves();
    void dragAutoScrollCanBeSwitchedOff();
};

void tst_Bridge::whatsThisName_data()
{
    QTest::addColumn<QString>("preset");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");

    QTest::newRow("a fresh widget shows the name")
        << "" << QStringList { "Kiv_BridgeQWidget" } << "Kiv_BridgeQWidget"
        << "Kiv_BridgeQWidget";
    QTest::newRow("the most derived class wins")
        << "" << QStringList { "Kiv_BridgeQWidget", "Kiv_Derived" } << "Kiv_Derived"
        << "Kiv_Derived";
    QTest::newRow("a text of the host is kept")
        << "Drop clips here" << QStringList { "Kiv_BridgeQWidget", "Kiv_Derived" }
        << "Drop clips here"
        << "Kiv_Derived";
}

void tst_Bridge::whatsThisName()
{
    QFETCH(QString, preset);
    QFETCH(QStringList, calls);
    QFETCH(QString, text);
    QFETCH(QString, name);

    QWidget w;
    w.setWhatsThis(preset);
    for (const QString &className : calls)
        Kiv_WhatsThis::setBestWhatsThisName(&w, className);
    QCOMPARE(w.whatsThis(), text);
    QCOMPARE(Kiv_WhatsThis::whatsThisName(&w), name);
}

void tst_Bridge::whatsThisNameRejectsBadInput()
{
    QTest::ignoreMessage(QtWarningMsg, "Kiv_WhatsThis::setBestWhatsThisName, null widget; ignored");
    Kiv_WhatsThis::setBestWhatsThisName(nullptr, QStringLiteral("Kiv_X"));
    QWidget w;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("^Kiv_WhatsThis::setBestWhatsThisName, empty"));
    Kiv_WhatsThis::setBestWhatsThisName(&w, QString());
    QVERIFY(w.whatsThis().isEmpty());

    // The bridges name themselves.
    QCOMPARE(Kiv_WhatsThis::whatsThisName(std::make_unique<Kiv_BridgeQWidget>().get()),
             QString("Kiv_BridgeQWidget"));
    QCOMPARE(Kiv_WhatsThis::whatsThisName(std::make_unique<Kiv_BridgeQScrollArea>().get()),
             QString("Kiv_BridgeQScrollArea"));
}

void tst_Bridge::setChildFitsTheWidget_data()
{
    QTest::addColumn<QSize>("viewSize");
    QTest::addColumn<QPoint>("viewOrigin");

    QTest::newRow("40x30 at the origin") << QSize(40, 30) << QPoint(0, 0);
    QTest::newRow("a view placed elsewhere moves to the origin") << QSize(25, 70) << QPoint(5, 6);
    QTest::newRow("smaller than the minimum size hint") << QSize(3, 4) << QPoint(0, 0);
}

void tst_Bridge::setChildFitsTheWidget()
{
    QFETCH(QSize, viewSize);
    QFETCH(QPoint, viewOrigin);

    Kiv_BridgeQWidget bridge(nullptr, "Bridge");
    QCOMPARE(bridge.objectName(), QString("Bridge"));
    auto *view = new ProbeView(QStringLiteral("V"), viewSize);
    view->setOrigin(viewOrigin);
    bridge.setChild(view);
    QCOMPARE(bridge.size(), viewSize);
    QCOMPARE(bridge.getChild(), static_cast<Kiv_ViewInterface *>(view));
    QCOMPARE(view->getParent(), static_cast<Kiv_ViewContainerInterface *>(&bridge));
    QCOMPARE(view->getOrigin(), QPoint(0, 0));
}

void tst_Bridge::bridgeOwnsItsChild()
{
    int deaths = 0;
    {
        Kiv_BridgeQWidget bridge;
        bridge.setChild(new ProbeView(QStringLiteral("First"), QSize(40, 30), &deaths));
        bridge.setChild(new ProbeView(QStringLiteral("Second"), QSize(50, 20), &deaths));
        QCOMPARE(deaths, 1); // the replaced view
        QCOMPARE(bridge.size(), QSize(50, 20));

        bridge.setChild(nullptr);
        QCOMPARE(deaths, 2);
        QVERIFY(!bridge.getChild());
        QCOMPARE(bridge.size(), QSize(50, 20)); // a null child leaves the size alone

        bridge.setChild(new ProbeView(QStringLiteral("Third"), QSize(10, 10), &deaths));
        std::unique_ptr<Kiv_ViewInterface> taken = bridge.takeChild();
        QVERIFY(!bridge.getChild());
        QVERIFY(!taken->getParent());
        QCOMPARE(deaths, 2);
        bridge.setChild(taken.release());
    }
    QCOMPARE(deaths, 3); // the destructor deleted the last one
}

void tst_Bridge::childChangesResizeTheWidget()
{
    Kiv_BridgeQWidget bridge;
    auto *view = new ProbeView(QStringLiteral("V"), QSize(40, 30));
    bridge.setChild(view);
    view->setSizeAndNotifyParent(QSize(60, 20));
    QCOMPARE(bridge.size(), QSize(60, 20));

    view->setSize(QSize(60, 12)); // a row went away
    bridge.childDeletedRow(view, 4, 8);
    QCOMPARE(bridge.size(), QSize(60, 12));

    auto *editor = new QWidget(&bridge);
    bridge.overlayChildEditWidget(view, editor, 7, 3);
    QCOMPARE(editor->pos(), QPoint(7, 3));
    QCOMPARE(bridge.minimumSizeHint(), QSize(10, 10));
}

void tst_Bridge::painting_data()
{
    QTest::addColumn<bool>("colour");
    QTest::addColumn<int>("pixmap"); // 0 none, 1 stretched, 2 tiled
    QTest::addColumn<bool>("child");
    QTest::addColumn<QColor>("at2_2");
    QTest::addColumn<QColor>("at7_2");
    QTest::addColumn<QColor>("at38_2");
    QTest::addColumn<QColor>("at20_15");

    const QColor red(Qt::red), green(Qt::green), blue(Qt::blue), white(Qt::white);
    QTest::newRow("colour, then the view") << true << 0 << true << red << red << red << blue;
    QTest::newRow("stretched pixmap over the colour")
        << true << 1 << true << green << green << red << blue;
    QTest::newRow("tiled pixmap over the colour")
        << true << 2 << true << green << red << red << blue;
    QTest::newRow("pixmap without colour") << false << 1 << true << green << green << white << blue;
    QTest::newRow("nothing without a view")
        << true << 1 << false << white << white << white << white;
}

void tst_Bridge::painting()
{
    QFETCH(bool, colour);
    QFETCH(int, pixmap);
    QFETCH(bool, child);
    QFETCH(QColor, at2_2);
    QFETCH(QColor, at7_2);
    QFETCH(QColor, at38_2);
    QFETCH(QColor, at20_15);

    Kiv_BridgeQWidget bridge;
    bridge.resize(40, 30);
    if (colour)
        bridge.setBridgeBackgroundColor(Qt::red);
    if (pixmap)
        bridge.setBridgeBackgroundPixmap(halfGreen(pixmap == 2), pixmap == 2);
    if (child)
        bridge.setChild(new ProbeView(QStringLiteral("V"), QSize(40, 30)));

    const QImage image = render(&bridge);
    QCOMPARE(image.pixelColor(2, 2), at2_2);
    QCOMPARE(image.pixelColor(7, 2), at7_2);
    QCOMPARE(image.pixelColor(38, 2), at38_2);
    QCOMPARE(image.pixelColor(20, 15), at20_15);
}

void tst_Bridge::pressesReachTheViewOrGoOn_data()
{
    QTest::addColumn<bool>("viewAccepts");
    QTest::addColumn<int>("parentPresses");

    QTest::newRow("the view takes the press") << true << 0;
    QTest::newRow("an ignored press goes on to the parent widget") << false << 1;
}

void tst_Bridge::pressesReachTheViewOrGoOn()
{
    QFETCH(bool, viewAccepts);
    QFETCH(int, parentPresses);

    PressRecorder parent;
    parent.resize(100, 100);
    auto *bridge = new Kiv_BridgeQWidget(&parent);
    bridge->move(10, 10);
    auto *view = new ProbeView(QStringLiteral("V"), QSize(40, 30));
    view->mAcceptPress = viewAccepts;
    bridge->setChild(view);
    parent.show();

    QTest::mousePress(bridge, Qt::LeftButton, Qt::NoModifier, QPoint(12, 7));
    QCOMPARE(view->log, QStringList { "press 12,7" });
    QCOMPARE(parent.presses, parentPresses);
    QTest::mouseRelease(bridge, Qt::LeftButton, Qt::NoModifier, QPoint(12, 7));
}

void tst_Bridge::acceptsDropsSwitchesTheBridgeWidget_data()
{
    QTest::addColumn<bool>("scrolling");
    QTest::addColumn<bool>("flag");

    QTest::newRow("plain bridge") << false << true;
    QTest::newRow("plain bridge, flag off still switches the widget") << false << false;
    QTest::newRow("scroll bridge: the viewport takes drops") << true << true;
}

void tst_Bridge::acceptsDropsSwitchesTheBridgeWidget()
{
    QFETCH(bool, scrolling);
    QFETCH(bool, flag);

    std::unique_ptr<QWidget> bridge;
    auto *view = new ProbeView(QStringLiteral("V"), QSize(40, 30));
    QWidget *expected = nullptr;
    if (scrolling) {
        auto *area = new Kiv_BridgeQScrollArea;
        bridge.reset(area);
        area->setChild(view);
        expected = area->viewport();
        QCOMPARE(expected->objectName(), QString("ViewportWidget"));
    } else {
        auto *plain = new Kiv_BridgeQWidget;
        bridge.reset(plain);
        plain->setChild(view);
        expected = plain;
    }
    QVERIFY(!expected->acceptDrops());
    view->setAcceptsDrops(flag);
    QVERIFY(expected->acceptDrops());
    QCOMPARE(view->acceptsDrops(), flag);

    // Without a container there is no widget to switch: reported, no crash.
    ProbeView loose(QStringLiteral("Loose"), QSize(1, 1));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_ViewBase::setAcceptsDrops, view"));
    loose.setAcceptsDrops(true);
}

void tst_Bridge::connectionWalkReachesTheHostedViews()
{
    Bnde_SimpleValue<QString> tip(QStringLiteral("BridgeTest.Tip"),
                                  QStringLiteral("Ripple delete"));
    QVERIFY(tip.Publish());
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set(QStringLiteral("Pane"), QStringLiteral("BridgeTest"));
    const Bnd_ConnectionEnvironmentPtr envPtr(env);

    QWidget root;
    auto *plain = new QWidget(&root);
    auto *bridge = new Kiv_BridgeQWidget(plain);
    auto *top = makeTopWithItem(QSize(40, 30));
    static_cast<Kiv_ViewBase *>(top->getViewByName(QStringLiteral("Item")))
        ->setToolTipConnectionID(QStringLiteral("$Pane.Tip"));
    bridge->setChild(top);
    new Kiv_BridgeQScrollArea(plain); // a bridge without a view connects nothing

    Kiv_ConnectionUtils::recursiveConnect(&root, envPtr);
    QRect rect;
    QString text;
    QVERIFY(top->getToolTip(QPoint(12, 7), &rect, &text));
    QCOMPARE(text, QString("Ripple delete"));
    QCOMPARE(rect, QRect(10, 5, 20, 10));
}

void tst_Bridge::findUiName_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QString>("name");

    QTest::newRow("named bridge, on the item") << "Bridge" << QPoint(15, 8) << "Bridge.Top.Item";
    QTest::newRow("unnamed bridge: no leading dot") << "" << QPoint(15, 8) << "Top.Item";
    QTest::newRow("unnamed bridge, on the top view only") << "" << QPoint(2, 2) << "Top";
    QTest::newRow("named bridge, off the view") << "Bridge" << QPoint(100, 100) << "Bridge";
    QTest::newRow("unnamed bridge, off the view") << "" << QPoint(100, 100) << "";
}

void tst_Bridge::findUiName()
{
    QFETCH(QString, objectName);
    QFETCH(QPoint, point);
    QFETCH(QString, name);

    Kiv_BridgeQWidget bridge;
    bridge.setObjectName(objectName);
    bridge.setChild(makeTopWithItem(QSize(40, 30)));
    bridge.resize(200, 200); // the view keeps to its own area
    bridge.getChild()->setSize(QSize(40, 30));
    QCOMPARE(bridge.findUiName(point), name);
}

void tst_Bridge::findPoi_data()
{
    QTest::addColumn<bool>("child");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QPoint>("point");

    QTest::newRow("an item: its centre in the widget")
        << true << "Top.Item" << true << QPoint(19, 9);
    QTest::newRow("the top view") << true << "Top" << true << QPoint(19, 14);
    QTest::newRow("a name without the top view's") << true << "Item" << false << QPoint();
    QTest::newRow("a missing item") << true << "Top.Nothing" << false << QPoint();
    QTest::newRow("no view") << false << "Top.Item" << false << QPoint();
}

void tst_Bridge::findPoi()
{
    QFETCH(bool, child);
    QFETCH(QString, name);
    QFETCH(bool, found);
    QFETCH(QPoint, point);

    Kiv_BridgeQWidget bridge(nullptr, "Bridge");
    if (child)
        bridge.setChild(makeTopWithItem(QSize(40, 30)));
    const Kiv_PointOfInterest poi = bridge.findPoi(name);
    QCOMPARE(poi.isValid(), found);
    if (found) {
        QCOMPARE(poi.widget(), static_cast<QWidget *>(&bridge));
        QCOMPARE(poi.point(), point);
        QCOMPARE(poi.globalPoint(), bridge.mapToGlobal(point));
    }
}

void tst_Bridge::pointOfInterestForgetsDestroyedWidget()
{
    auto bridge = std::make_unique<Kiv_BridgeQWidget>();
    bridge->setChild(makeTopWithItem(QSize(40, 30)));
    const Kiv_PointOfInterest poi = bridge->findPoi(QStringLiteral("Top.Item"));
    QVERIFY(poi.isValid());
    bridge.reset();
    QVERIFY(!poi.isValid());
    QVERIFY(!poi.widget());
    QCOMPARE(poi.globalPoint(), QPoint());
}

void tst_Bridge::autoScrollArithmetic_data()
{
    QTest::addColumn<QPoint>("cursor");
    QTest::addColumn<int>("ticks");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QPoint>("delta"); // of the last tick

    // A viewport of 200x100.
    QTest::newRow("16 px from the top does not scroll")
        << QPoint(100, 16) << 1 << 30 << QPoint(0, 0);
    QTest::newRow("15 px from the top scrolls up by 1")
        << QPoint(100, 15) << 1 << 30 << QPoint(0, -1);
    QTest::newRow("fifth tick still at the first speed")
        << QPoint(100, 15) << 5 << 30 << QPoint(0, -1);
    QTest::newRow("sixth tick accelerates, step still 1")
        << QPoint(100, 15) << 6 << 29 << QPoint(0, -1);
    QTest::newRow("twelfth tick: step 2") << QPoint(100, 15) << 12 << 28 << QPoint(0, -2);
    QTest::newRow("179 ticks: one step short of full speed")
        << QPoint(100, 0) << 179 << 1 << QPoint(0, -29);
    QTest::newRow("180 ticks: interval 0, step 30") << QPoint(100, 0) << 180 << 0 << QPoint(0, -30);
    QTest::newRow("full speed stays") << QPoint(100, 0) << 5000 << 0 << QPoint(0, -30);
    QTest::newRow("16 px from the bottom does not scroll")
        << QPoint(100, 84) << 1 << 30 << QPoint(0, 0);
    QTest::newRow("15 px from the bottom scrolls down")
        << QPoint(100, 85) << 1 << 30 << QPoint(0, 1);
    QTest::newRow("left edge") << QPoint(15, 50) << 1 << 30 << QPoint(-1, 0);
    QTest::newRow("16 px from the right does not scroll")
        << QPoint(184, 50) << 1 << 30 << QPoint(0, 0);
    QTest::newRow("right edge") << QPoint(185, 50) << 1 << 30 << QPoint(1, 0);
    QTest::newRow("a corner scrolls both ways") << QPoint(3, 97) << 12 << 28 << QPoint(-2, 2);
    QTest::newRow("outside the viewport above") << QPoint(100, -40) << 1 << 30 << QPoint(0, -1);
}

void tst_Bridge::autoScrollArithmetic()
{
    QFETCH(QPoint, cursor);
    QFETCH(int, ticks);
    QFETCH(int, interval);
    QFETCH(QPoint, delta);

    Kiv_DragAutoScroll scroll;
    scroll.start();
    QCOMPARE(scroll.interval(), Kiv_BridgeQScrollArea::initialScrollTime);
    QPoint last;
    for (int i = 0; i < ticks; ++i)
        last = scroll.tick(cursor, QSize(200, 100));
    QCOMPARE(scroll.interval(), interval);
    QCOMPARE(last, delta);
}

void tst_Bridge::autoScrollStartsOver()
{
    Kiv_DragAutoScroll scroll;
    scroll.start();
    for (int i = 0; i < 100; ++i)
        scroll.tick(QPoint(0, 0), QSize(200, 100));
    QVERIFY(scroll.interval() < 30);
    scroll.start();
    QCOMPARE(scroll.tick(QPoint(0, 0), QSize(200, 100)), QPoint(-1, -1));
    QCOMPARE(scroll.interval(), 30);
    QCOMPARE(Kiv_BridgeQScrollArea::autoscroll_margin, 16);
    QCOMPARE(Kiv_BridgeQScrollArea::initialScrollAccel, 5);
}

void tst_Bridge::scrollBridgeFitsViewToViewport_data()
{
    QTest::addColumn<QSize>("minSize");
    QTest::addColumn<QSize>("viewSize");
    QTest::addColumn<int>("hMax");
    QTest::addColumn<int>("vMax");

    // A viewport of 100x80.
    QTest::newRow("contents larger than the viewport")
        << QSize(300, 400) << QSize(300, 400) << 200 << 320;
    QTest::newRow("contents smaller: the view fills the viewport")
        << QSize(50, 20) << QSize(100, 80) << 0 << 0;
    QTest::newRow("wider only") << QSize(300, 10) << QSize(300, 80) << 200 << 0;
}

void tst_Bridge::scrollBridgeFitsViewToViewport()
{
    QFETCH(QSize, minSize);
    QFETCH(QSize, viewSize);
    QFETCH(int, hMax);
    QFETCH(int, vMax);

    ScrollBridge area(QSize(100, 80));
    QCOMPARE(area.viewport()->size(), QSize(100, 80));
    auto *view = new ProbeView(QStringLiteral("V"), QSize(1, 1));
    view->setMinSize(minSize);
    area.setChild(view);
    QCOMPARE(view->getSize(), viewSize);
    QCOMPARE(area.horizontalScrollBar()->maximum(), hMax);
    QCOMPARE(area.verticalScrollBar()->maximum(), vMax);
    QCOMPARE(area.getBridgeWidget(), area.viewport());

    // A larger viewport grows the view again.
    area.resize(400, 500);
    QCOMPARE(view->getSize(), minSize.expandedTo(QSize(400, 500)));
    QCOMPARE(area.verticalScrollBar()->maximum(), 0);
}

void tst_Bridge::scrollBridgePaintsAndFindsInContentsCoordinates()
{
    ScrollBridge area(QSize(100, 80));
    auto *top = makeTopWithItem(QSize(100, 400), QPoint(0, 150));
    top->setMinSize(QSize(100, 400));
    auto *bands
        = new ProbeView(QStringLiteral("Bands"), QSize(100, 400), nullptr, ProbeView::Bands);
    bands->setZOrder(-1); // under the item
    top->AddSubView(bands);
    area.setChild(top);
    area.setBridgeBackgroundColor(Qt::yellow);

    QCOMPARE(render(area.viewport()).pixelColor(5, 5), QColor(Qt::red));
    area.verticalScrollBar()->setValue(120);
    QCOMPARE(area.viewableArea(), QRect(0, 120, 100, 80));
    QCOMPARE(render(area.viewport()).pixelColor(5, 5), QColor(Qt::blue));

    QCOMPARE(area.findUiName(QPoint(5, 35)), QString("Top.Item")); // contents y 155
    QCOMPARE(area.findUiName(QPoint(5, 5)), QString("Top.Bands"));
    const Kiv_PointOfInterest poi = area.findPoi(QStringLiteral("Top.Item"));
    QCOMPARE(poi.widget(), area.viewport());
    QCOMPARE(poi.point(), QPoint(9, 150 + 4 - 120)); // the item's centre, scrolled

    // A press on the viewport reaches the view in contents coordinates.
    QTest::mousePress(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QCOMPARE(bands->log, QStringList { "press 5,125" });
    QTest::mouseRelease(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
}

void tst_Bridge::ensureRectVisible_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QPoint>("offset");

    // A viewport of 100x80 on contents of 300x400.
    QTest::newRow("already visible") << QPoint(0, 0) << QRect(10, 10, 20, 20) << QPoint(0, 0);
    QTest::newRow("below and right: just enough")
        << QPoint(0, 0) << QRect(150, 300, 20, 20) << QPoint(70, 240);
    QTest::newRow("above and left: to its corner")
        << QPoint(70, 240) << QRect(0, 0, 10, 10) << QPoint(0, 0);
    QTest::newRow("larger than the viewport: its top-left")
        << QPoint(0, 0) << QRect(50, 50, 200, 200) << QPoint(50, 50);
}

void tst_Bridge::ensureRectVisible()
{
    QFETCH(QPoint, start);
    QFETCH(QRect, rect);
    QFETCH(QPoint, offset);

    ScrollBridge area(QSize(100, 80));
    auto *view = new ProbeView(QStringLiteral("V"), QSize(1, 1));
    view->setMinSize(QSize(300, 400));
    area.setChild(view);
    area.horizontalScrollBar()->setValue(start.x());
    area.verticalScrollBar()->setValue(start.y());
    area.ensureRectVisible(rect);
    QCOMPARE(area.contentsOffset(), offset);
}

void tst_Bridge::dragNearEdgeScrollsUntilItLeaves()
{
    ScrollBridge area(QSize(100, 80));
    auto *view = new ProbeView(QStringLiteral("V"), QSize(1, 1));
    view->setMinSize(QSize(100, 1000));
    area.setChild(view);
    view->setAcceptsDrops(true);
    area.verticalScrollBar()->setValue(500);
    QMimeData data;
    QWidget *port = area.viewport();

    sendDrag(port, QEvent::DragEnter, QPoint(50, 40), data);
    sendDrag(port, QEvent::DragMove, QPoint(50, 5), data);
    QCOMPARE(view->log, QStringList { "drag 50,505" }); // contents coordinates
    QVERIFY(area.isDragAutoScrolling());
    QTRY_VERIFY(area.verticalScrollBar()->value() < 500);

    // Back in the middle: the next tick stops the timer.
    sendDrag(port, QEvent::DragMove, QPoint(50, 40), data);
    QTRY_VERIFY(!area.isDragAutoScrolling());
    const int stoppedAt = area.verticalScrollBar()->value();

    // Near the bottom it scrolls down; leaving stops it at once.
    sendDrag(port, QEvent::DragMove, QPoint(50, 79), data);
    QTRY_VERIFY(area.verticalScrollBar()->value() > stoppedAt);
    sendDrag(port, QEvent::DragLeave, QPoint(), data);
    QVERIFY(!area.isDragAutoScrolling());
}

void tst_Bridge::dragAutoScrollCanBeSwitchedOff()
{
    ScrollBridge area(QSize(100, 80));
    auto *view = new ProbeView(QStringLiteral("V"), QSize(1, 1));
    view->setMinSize(QSize(100, 1000));
    area.setChild(view);
    view->setAcceptsDrops(true);
    QMimeData data;

    sendDrag(area.viewport(), QEvent::DragEnter, QPoint(50, 79), data);
    QVERIFY(area.isDragAutoScrolling());
    area.setDragAutoScroll(false);
    QVERIFY(!area.isDragAutoScrolling());
    sendDrag(area.viewport(), QEvent::DragMove, QPoint(50, 79), data);
    QVERIFY(!area.isDragAutoScrolling());
    QCOMPARE(view->log, QStringList { "drag 50,79" }); // the view still hears of the drag
}

QTEST_MAIN(tst_Bridge)
#include "tst_bridge.moc"
