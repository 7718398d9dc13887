// Bridges hosting a view tree: sizing, painting, events, names, POIs and drag auto-scroll.
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQScrollArea.h"
#include "Kiv_BridgeQWidget.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_DragAutoScroll.h"

#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QtTest>

namespace {

// Paints a blue spot, logs its events and counts its deaths.
struct ProbeView : Kiv_ViewBase
{
    explicit ProbeView(const QSize &iSize, const QRect &iSpot = QRect(15, 10, 10, 10))
        : spot(iSpot)
    {
        setName(QStringLiteral("V"));
        setSize(iSize);
    }
    ~ProbeView() override { ++*deaths; }
    void drawContents(QPainter *p, const QRect &) override { p->fillRect(spot, Qt::blue); }
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
    void mousePressEvent(QMouseEvent *e, const QPoint &iPos) override
    {
        log << QStringLiteral("press %1,%2").arg(iPos.x()).arg(iPos.y());
        e->setAccepted(acceptPress);
    }
    void dragEnterEvent(QDragEnterEvent *e, const QPoint &) override { e->acceptProposedAction(); }
    void dragMoveEvent(QDragMoveEvent *, const QPoint &iPos) override
    {
        log << QStringLiteral("drag %1,%2").arg(iPos.x()).arg(iPos.y());
    }
    QRect spot;
    QStringList log;
    bool acceptPress = true;
    int sink = 0;
    int *deaths = &sink;
};

struct Container : Kiv_ContainerViewBase
{
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
};

// "Top" holding "Item" (20x10) at iItemAt.
Container *makeTopWithItem(const QSize &iSize, const QPoint &iItemAt = QPoint(10, 5))
{
    auto *top = new Container;
    top->setName(QStringLiteral("Top"));
    top->setRectInParent(QRect(QPoint(), iSize));
    auto *item = new Kiv_BlankView(QSize(20, 10));
    item->setName(QStringLiteral("Item"));
    item->setOrigin(iItemAt);
    top->AddSubView(item);
    return top;
}

// A shown scroll bridge whose viewport is the whole widget.
class ScrollBridge : public Kiv_BridgeQScrollArea
{
public:
    explicit ScrollBridge(const QSize &iMinSize, ProbeView *iView = new ProbeView(QSize(1, 1)))
        : view(iView)
    {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        resize(100, 80);
        show();
        view->setMinSize(iMinSize);
        setChild(view);
    }
    using Kiv_BridgeQScrollArea::setDragAutoScroll;
    using Kiv_BridgeQScrollArea::viewableArea;
    ProbeView *view;
};

struct PressRecorder : QWidget
{
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

// Green left half, transparent right half: 2x1 (stretched) or 10x10 (tiled).
QPixmap halfGreen(bool iTiled)
{
    QImage image(iTiled ? QSize(10, 10) : QSize(2, 1), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(QRect(0, 0, image.width() / 2, image.height()), Qt::green);
    return QPixmap::fromImage(image);
}

template<class Event> void sendDrag(QWidget *iTarget, const QPoint &iPos)
{
    static QMimeData data;
    Event event(iPos, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(iTarget, &event);
}

} // namespace

class tst_Bridge : public QObject
{
    Q_OBJECT

private slots:
    void setChildSizingAndOwnership();
    void painting_data();
    void painting();
    void pressesReachTheViewOrGoOn();
    void findUiName();
    void findPoi_data();
    void findPoi();
    void autoScrollArithmetic_data();
    void autoScrollArithmetic();
    void scrollBridgeFitsViewToViewport_data();
    void scrollBridgeFitsViewToViewport();
    void scrollBridgePaintsAndFindsInContentsCoordinates();
    void ensureRectVisible();
    void dragNearEdgeScrollsUntilItLeaves();
};

void tst_Bridge::setChildSizingAndOwnership()
{
    int deaths = 0;
    {
        Kiv_BridgeQWidget bridge;
        const auto counted = [&](const QSize &iSize) {
            auto *view = new ProbeView(iSize);
            view->deaths = &deaths;
            return view;
        };
        bridge.setChild(counted(QSize(40, 30)));
        auto *view = counted(QSize(3, 4)); // below the minimum size hint
        view->setOrigin(QPoint(5, 6));
        bridge.setChild(view);
        QCOMPARE(deaths, 1); // the replaced view
        QCOMPARE(bridge.size(), QSize(3, 4));
        QCOMPARE(view->getOrigin(), QPoint(0, 0));
        view->setSizeAndNotifyParent(QSize(60, 20));
        QCOMPARE(bridge.size(), QSize(60, 20));
        view->setSize(QSize(60, 12));
        bridge.childDeletedRow(view, 4, 8);
        QCOMPARE(bridge.size(), QSize(60, 12));

        bridge.setChild(nullptr);
        QCOMPARE(deaths, 2);
        QCOMPARE(bridge.size(), QSize(60, 12)); // a null child leaves the size alone

        bridge.setChild(counted(QSize(10, 10)));
        std::unique_ptr<Kiv_ViewInterface> taken = bridge.takeChild();
        QVERIFY(!bridge.getChild() && !taken->getParent());
        bridge.setChild(taken.release());

        // A view that a container owns is refused: it would be deleted twice.
        Kiv_ContainerViewBase group;
        auto *member = counted(QSize(5, 5));
        group.AddSubView(member);
        for (Kiv_BridgeBase *other :
             { static_cast<Kiv_BridgeBase *>(new Kiv_BridgeQWidget(&bridge)),
               static_cast<Kiv_BridgeBase *>(new Kiv_BridgeQScrollArea(&bridge)) }) {
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression("::setChild, view '.*' belongs to a container"));
            other->setChild(member);
            QVERIFY(!other->getChild());
        }
        QCOMPARE(member->getParent(), static_cast<Kiv_ViewContainerInterface *>(&group));
    }
    QCOMPARE(deaths, 4); // each deleted once: the last child by the bridge, the member by its group
}

void tst_Bridge::painting_data()
{
    QTest::addColumn<bool>("colour");
    QTest::addColumn<int>("pixmap"); // 0 none, 1 stretched, 2 tiled
    QTest::addColumn<bool>("child");
    QTest::addColumn<QList<QColor>>("at"); // (2,2) (7,2) (38,2) (20,15)

    const QColor r(Qt::red), g(Qt::green), b(Qt::blue), w(Qt::white);
    QTest::newRow("colour, then view") << true << 0 << true << QList<QColor> { r, r, r, b };
    QTest::newRow("stretched pixmap") << true << 1 << true << QList<QColor> { g, g, r, b };
    QTest::newRow("tiled pixmap") << true << 2 << true << QList<QColor> { g, r, r, b };
    QTest::newRow("pixmap, no colour") << false << 1 << true << QList<QColor> { g, g, w, b };
    QTest::newRow("nothing without a view") << true << 1 << false << QList<QColor> { w, w, w, w };
}

void tst_Bridge::painting()
{
    QFETCH(bool, colour);
    QFETCH(int, pixmap);
    QFETCH(bool, child);
    QFETCH(QList<QColor>, at);

    Kiv_BridgeQWidget bridge;
    bridge.resize(40, 30);
    if (colour)
        bridge.setBridgeBackgroundColor(Qt::red);
    if (pixmap)
        bridge.setBridgeBackgroundPixmap(halfGreen(pixmap == 2), pixmap == 2);
    if (child)
        bridge.setChild(new ProbeView(QSize(40, 30)));
    const QImage image = render(&bridge);
    const QList<QPoint> points { { 2, 2 }, { 7, 2 }, { 38, 2 }, { 20, 15 } };
    for (int i = 0; i < points.size(); ++i)
        QCOMPARE(image.pixelColor(points[i]), at[i]);
}

void tst_Bridge::pressesReachTheViewOrGoOn()
{
    for (const bool viewAccepts : { true, false }) {
        PressRecorder parent;
        auto *bridge = new Kiv_BridgeQWidget(&parent);
        auto *view = new ProbeView(QSize(40, 30));
        view->acceptPress = viewAccepts;
        bridge->setChild(view);
        parent.show();
        QTest::mousePress(bridge, Qt::LeftButton, Qt::NoModifier, QPoint(12, 7));
        QCOMPARE(view->log, QStringList { "press 12,7" });
        QCOMPARE(parent.presses, viewAccepts ? 0 : 1); // an ignored press goes on
        QTest::mouseRelease(bridge, Qt::LeftButton, Qt::NoModifier, QPoint(12, 7));
    }
}

void tst_Bridge::findUiName()
{
    Kiv_BridgeQWidget bridge;
    bridge.setChild(makeTopWithItem(QSize(40, 30)));
    bridge.resize(200, 200); // the view keeps to its own area
    bridge.getChild()->setSize(QSize(40, 30));
    QCOMPARE(bridge.findUiName(QPoint(15, 8)), QString("Top.Item")); // no leading dot
    QCOMPARE(bridge.findUiName(QPoint(2, 2)), QString("Top"));
    bridge.setObjectName(QStringLiteral("Bridge"));
    QCOMPARE(bridge.findUiName(QPoint(15, 8)), QString("Bridge.Top.Item"));
    QCOMPARE(bridge.findUiName(QPoint(100, 100)), QString("Bridge"));
}

void tst_Bridge::findPoi_data()
{
    QTest::addColumn<bool>("child");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QPoint>("point"); // null: not found
    QTest::newRow("an item: its centre") << true << "Top.Item" << QPoint(19, 9);
    QTest::newRow("the top view") << true << "Top" << QPoint(19, 14);
    QTest::newRow("without the top view's name") << true << "Item" << QPoint();
    QTest::newRow("no view") << false << "Top.Item" << QPoint();
}

void tst_Bridge::findPoi()
{
    QFETCH(bool, child);
    QFETCH(QString, name);
    QFETCH(QPoint, point);
    auto bridge = std::make_unique<Kiv_BridgeQWidget>();
    if (child)
        bridge->setChild(makeTopWithItem(QSize(40, 30)));
    const Kiv_PointOfInterest poi = bridge->findPoi(name);
    QCOMPARE(poi.isValid(), !point.isNull());
    if (point.isNull())
        return;
    QCOMPARE(poi.widget(), static_cast<QWidget *>(bridge.get()));
    QCOMPARE(poi.point(), point);
    QCOMPARE(poi.globalPoint(), bridge->mapToGlobal(point));
    bridge.reset();
    QVERIFY(!poi.isValid() && !poi.widget()); // forgets the destroyed widget
}

void tst_Bridge::autoScrollArithmetic_data()
{
    QTest::addColumn<QPoint>("cursor"); // in a viewport of 200x100
    QTest::addColumn<int>("ticks");
    QTest::addColumn<int>("interval");
    QTest::addColumn<QPoint>("delta"); // of the last tick

    QTest::newRow("16 px: no scroll") << QPoint(100, 16) << 1 << 30 << QPoint(0, 0);
    QTest::newRow("15 px: step 1") << QPoint(100, 15) << 1 << 30 << QPoint(0, -1);
    QTest::newRow("tick 5: first speed") << QPoint(100, 15) << 5 << 30 << QPoint(0, -1);
    QTest::newRow("tick 6: interval 29") << QPoint(100, 15) << 6 << 29 << QPoint(0, -1);
    QTest::newRow("tick 12: step 2") << QPoint(100, 15) << 12 << 28 << QPoint(0, -2);
    QTest::newRow("tick 180: interval 0, step 30") << QPoint(100, 0) << 180 << 0 << QPoint(0, -30);
    QTest::newRow("bottom, 15 px") << QPoint(100, 85) << 1 << 30 << QPoint(0, 1);
    QTest::newRow("right edge") << QPoint(185, 50) << 1 << 30 << QPoint(1, 0);
    QTest::newRow("corner, both ways") << QPoint(3, 97) << 12 << 28 << QPoint(-2, 2);
}

void tst_Bridge::autoScrollArithmetic()
{
    QFETCH(QPoint, cursor);
    QFETCH(int, ticks);
    QFETCH(int, interval);
    QFETCH(QPoint, delta);

    Kiv_DragAutoScroll scroll;
    for (int pass = 0; pass < 2; ++pass) { // a restart starts over
        scroll.start();
        QCOMPARE(scroll.interval(), Kiv_BridgeQScrollArea::initialScrollTime);
        QPoint last;
        for (int i = 0; i < ticks; ++i)
            last = scroll.tick(cursor, QSize(200, 100));
        QCOMPARE(scroll.interval(), interval);
        QCOMPARE(last, delta);
    }
}

void tst_Bridge::scrollBridgeFitsViewToViewport_data()
{
    QTest::addColumn<QSize>("minSize"); // the viewport is 100x80
    QTest::addColumn<QSize>("viewSize");
    QTest::addColumn<int>("hMax");
    QTest::addColumn<int>("vMax");
    QTest::newRow("larger") << QSize(300, 400) << QSize(300, 400) << 200 << 320;
    QTest::newRow("smaller: fills the viewport") << QSize(50, 20) << QSize(100, 80) << 0 << 0;
    QTest::newRow("wider only") << QSize(300, 10) << QSize(300, 80) << 200 << 0;
}

void tst_Bridge::scrollBridgeFitsViewToViewport()
{
    QFETCH(QSize, minSize);
    QFETCH(QSize, viewSize);
    QFETCH(int, hMax);
    QFETCH(int, vMax);
    ScrollBridge area(minSize);
    QCOMPARE(area.view->getSize(), viewSize);
    QCOMPARE(area.horizontalScrollBar()->maximum(), hMax);
    QCOMPARE(area.verticalScrollBar()->maximum(), vMax);
    area.resize(400, 500); // a larger viewport grows the view again
    QCOMPARE(area.view->getSize(), minSize.expandedTo(QSize(400, 500)));
    QCOMPARE(area.verticalScrollBar()->maximum(), 0);
}

void tst_Bridge::scrollBridgePaintsAndFindsInContentsCoordinates()
{
    ScrollBridge area(QSize(100, 400), new ProbeView(QSize(100, 400), QRect(0, 100, 100, 300)));
    auto *top = makeTopWithItem(QSize(100, 400), QPoint(0, 150));
    top->setMinSize(QSize(100, 400));
    ProbeView *bands = static_cast<ProbeView *>(area.takeChild().release());
    bands->setName(QStringLiteral("Bands"));
    bands->setZOrder(-1); // under the item
    top->AddSubView(bands);
    area.setChild(top);
    area.setBridgeBackgroundColor(Qt::yellow);

    QCOMPARE(render(area.viewport()).pixelColor(5, 5), QColor(Qt::yellow));
    area.verticalScrollBar()->setValue(120);
    QCOMPARE(area.viewableArea(), QRect(0, 120, 100, 80));
    QCOMPARE(render(area.viewport()).pixelColor(5, 5), QColor(Qt::blue));
    QCOMPARE(area.findUiName(QPoint(5, 35)), QString("Top.Item")); // contents y 155
    QCOMPARE(area.findUiName(QPoint(5, 5)), QString("Top.Bands"));
    const Kiv_PointOfInterest poi = area.findPoi(QStringLiteral("Top.Item"));
    QCOMPARE(poi.widget(), area.viewport());
    QCOMPARE(poi.point(), QPoint(9, 150 + 4 - 120));
    QTest::mousePress(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QCOMPARE(bands->log, QStringList { "press 5,125" });
    QTest::mouseRelease(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
}

void tst_Bridge::ensureRectVisible()
{
    ScrollBridge area(QSize(300, 400));
    const auto ensure = [&](const QRect &iRect) {
        area.ensureRectVisible(iRect);
        return area.contentsOffset();
    };
    QCOMPARE(ensure(QRect(10, 10, 20, 20)), QPoint(0, 0)); // already visible
    QCOMPARE(ensure(QRect(150, 300, 20, 20)), QPoint(70, 240)); // just enough
    QCOMPARE(ensure(QRect(0, 0, 10, 10)), QPoint(0, 0)); // back to its corner
    QCOMPARE(ensure(QRect(50, 50, 200, 200)), QPoint(50, 50)); // too large: top-left
}

void tst_Bridge::dragNearEdgeScrollsUntilItLeaves()
{
    ScrollBridge area(QSize(100, 1000));
    area.view->setAcceptsDrops(true);
    area.verticalScrollBar()->setValue(500);
    QWidget *port = area.viewport();

    sendDrag<QDragEnterEvent>(port, QPoint(50, 40));
    sendDrag<QDragMoveEvent>(port, QPoint(50, 5));
    QCOMPARE(area.view->log, QStringList { "drag 50,505" }); // contents coordinates
    QTRY_VERIFY(area.verticalScrollBar()->value() < 500);
    sendDrag<QDragMoveEvent>(port, QPoint(50, 40)); // the next tick stops the timer
    QTRY_VERIFY(!area.isDragAutoScrolling());
    const int stoppedAt = area.verticalScrollBar()->value();
    sendDrag<QDragMoveEvent>(port, QPoint(50, 79));
    QTRY_VERIFY(area.verticalScrollBar()->value() > stoppedAt);
    QDragLeaveEvent leave; // leaving stops at once
    QCoreApplication::sendEvent(port, &leave);
    QVERIFY(!area.isDragAutoScrolling());

    sendDrag<QDragEnterEvent>(port, QPoint(50, 79));
    QVERIFY(area.isDragAutoScrolling());
    area.setDragAutoScroll(false);
    QVERIFY(!area.isDragAutoScrolling());
    sendDrag<QDragMoveEvent>(port, QPoint(50, 79));
    QVERIFY(!area.isDragAutoScrolling());
}

QTEST_MAIN(tst_Bridge)
#include "tst_bridge.moc"
