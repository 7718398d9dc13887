// Bridges hosting a view tree: sizing, painting, events, names, POIs and drag auto-scroll.
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

int gDeaths = 0;

// Paints a blue spot, logs its events and counts its deaths.
struct ProbeView : Kiv_ViewBase
{
    explicit ProbeView(const QSize &iSize, const QRect &iSpot = QRect(15, 10, 10, 10),
                       const QString &iName = QStringLiteral("V"))
        : spot(iSpot)
    {
        setName(iName);
        setSize(iSize);
    }
    ~ProbeView() override { ++gDeaths; }
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
};

// "Top" holding "Item", a blue 20x10 probe, at iItemAt.
Kiv_ContainerViewBase *makeTopWithItem(const QSize &iSize, const QPoint &iItemAt = QPoint(10, 5))
{
    auto *top = new Kiv_ContainerViewBase;
    top->setName(QStringLiteral("Top"));
    top->setRectInParent(QRect(QPoint(), iSize));
    top->setMinSize(iSize);
    auto *item = new ProbeView(QSize(20, 10), QRect(0, 0, 20, 10), QStringLiteral("Item"));
    item->setOrigin(iItemAt);
    top->AddSubView(item);
    return top;
}

// A shown scroll bridge whose viewport (100x80) is the whole widget.
class ScrollBridge : public Kiv_BridgeQScrollArea
{
public:
    explicit ScrollBridge(const QSize &iMinSize)
        : view(new ProbeView(QSize(1, 1)))
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
    ProbeView *view;
};

QImage render(QWidget *iWidget)
{
    QImage image(iWidget->size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    iWidget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
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
    void widgetBridgeNamesPointsAndPresses();
    void autoScrollArithmetic_data();
    void autoScrollArithmetic();
    void scrollBridgeFitsViewAndShowsRects();
    void scrollBridgeWorksInContentsCoordinates();
    void dragNearEdgeScrollsUntilItLeaves();
};

void tst_Bridge::setChildSizingAndOwnership()
{
    gDeaths = 0;
    {
        Kiv_BridgeQWidget bridge;
        bridge.setChild(new ProbeView(QSize(40, 30)));
        auto *view = new ProbeView(QSize(3, 4)); // below the minimum size hint
        view->setOrigin(QPoint(5, 6));
        bridge.setChild(view);
        QCOMPARE(gDeaths, 1); // the replaced view
        QCOMPARE(bridge.size(), QSize(3, 4));
        QCOMPARE(view->getOrigin(), QPoint(0, 0));
        view->setSizeAndNotifyParent(QSize(60, 20));
        QCOMPARE(bridge.size(), QSize(60, 20));
        view->setSize(QSize(60, 12));
        bridge.childDeletedRow(view, 4, 8);
        QCOMPARE(bridge.size(), QSize(60, 12));

        bridge.setChild(nullptr);
        QCOMPARE(gDeaths, 2);
        QCOMPARE(bridge.size(), QSize(60, 12)); // a null child leaves the size alone

        bridge.setChild(new ProbeView(QSize(10, 10)));
        std::unique_ptr<Kiv_ViewInterface> taken = bridge.takeChild();
        QVERIFY(!bridge.getChild() && !taken->getParent());
        bridge.setChild(taken.release());

        // A view that a container owns is refused: it would be deleted twice.
        Kiv_ContainerViewBase group;
        auto *member = new ProbeView(QSize(5, 5));
        group.AddSubView(member);
        for (Kiv_BridgeBase *other : std::initializer_list<Kiv_BridgeBase *> {
                 new Kiv_BridgeQWidget(&bridge), new Kiv_BridgeQScrollArea(&bridge) }) {
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression("::setChild, view '.*' belongs to a container"));
            other->setChild(member);
            QVERIFY(!other->getChild());
        }
        QCOMPARE(member->getParent(), static_cast<Kiv_ViewContainerInterface *>(&group));
    }
    QCOMPARE(gDeaths, 4); // once each: the last child by the bridge, the member by its group
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
    QTest::newRow("tiled pixmap") << true << 2 << true << QList<QColor> { g, r, g, b };
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
    QImage halfGreen(2, 1, QImage::Format_ARGB32); // a green and a transparent pixel
    halfGreen.fill(Qt::transparent);
    halfGreen.setPixelColor(0, 0, Qt::green);
    if (pixmap)
        bridge.setBridgeBackgroundPixmap(QPixmap::fromImage(halfGreen), pixmap == 2);
    if (child)
        bridge.setChild(new ProbeView(QSize(40, 30)));
    const QImage image = render(&bridge);
    const QList<QPoint> points { { 2, 2 }, { 7, 2 }, { 38, 2 }, { 20, 15 } };
    for (int i = 0; i < points.size(); ++i)
        QCOMPARE(image.pixelColor(points[i]), at[i]);
}

void tst_Bridge::widgetBridgeNamesPointsAndPresses()
{
    auto bridge = std::make_unique<Kiv_BridgeQWidget>();
    QVERIFY(!bridge->findPoi(QStringLiteral("Top.Item")).isValid()); // no view
    bridge->setChild(makeTopWithItem(QSize(40, 30)));
    bridge->resize(200, 200); // the view keeps to its own area
    bridge->getChild()->setSize(QSize(40, 30));
    QCOMPARE(bridge->findUiName(QPoint(15, 8)), QString("Top.Item")); // no leading dot
    bridge->setObjectName(QStringLiteral("Bridge"));
    QCOMPARE(bridge->findUiName(QPoint(15, 8)), QString("Bridge.Top.Item"));
    QCOMPARE(bridge->findUiName(QPoint(100, 100)), QString("Bridge"));

    auto *item = static_cast<ProbeView *>(
        static_cast<Kiv_ContainerViewBase *>(bridge->getChild())->getViewByName("Item"));
    for (const bool accepts : { true, false }) {
        item->acceptPress = accepts;
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(12, 7), QPointF(12, 7), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(bridge.get(), &press);
        QCOMPARE(press.isAccepted(), accepts); // an ignored press goes on
    }
    QCOMPARE(item->log, QStringList({ "press 2,2", "press 2,2" }));

    const Kiv_PointOfInterest poi = bridge->findPoi(QStringLiteral("Top.Item"));
    QCOMPARE(poi.widget(), static_cast<QWidget *>(bridge.get()));
    QCOMPARE(poi.point(), QPoint(19, 9)); // the item's centre
    QCOMPARE(poi.globalPoint(), bridge->mapToGlobal(QPoint(19, 9)));
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
    QTest::newRow("15 px, tick 5: first speed") << QPoint(100, 15) << 5 << 30 << QPoint(0, -1);
    QTest::newRow("tick 6: interval 29") << QPoint(100, 15) << 6 << 29 << QPoint(0, -1);
    QTest::newRow("tick 12: step 2") << QPoint(100, 15) << 12 << 28 << QPoint(0, -2);
    QTest::newRow("tick 180: interval 0, step 30") << QPoint(100, 0) << 180 << 0 << QPoint(0, -30);
    QTest::newRow("15 px from right and bottom") << QPoint(185, 85) << 1 << 30 << QPoint(1, 1);
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
        QPoint last;
        for (int i = 0; i < ticks; ++i)
            last = scroll.tick(cursor, QSize(200, 100));
        QCOMPARE(scroll.interval(), interval);
        QCOMPARE(last, delta);
    }
}

void tst_Bridge::scrollBridgeFitsViewAndShowsRects()
{
    ScrollBridge area(QSize(300, 10));
    QCOMPARE(area.view->getSize(), QSize(300, 80)); // each extent grown to the viewport's
    QCOMPARE(area.horizontalScrollBar()->maximum(), 200);
    QCOMPARE(area.verticalScrollBar()->maximum(), 0);
    area.view->setSizeAndNotifyParent(QSize(300, 400)); // the scroll bars follow the view
    const auto ensure = [&](const QRect &iRect) {
        area.ensureRectVisible(iRect);
        return area.contentsOffset();
    };
    QCOMPARE(ensure(QRect(10, 10, 20, 20)), QPoint(0, 0)); // already visible
    QCOMPARE(ensure(QRect(150, 300, 20, 20)), QPoint(70, 240)); // just enough
    QCOMPARE(ensure(QRect(50, 50, 200, 200)), QPoint(50, 50)); // too large: top-left
    area.resize(400, 500); // a larger viewport grows the view again
    QCOMPARE(area.view->getSize(), QSize(400, 500));
    QCOMPARE(area.verticalScrollBar()->maximum(), 0);
}

void tst_Bridge::scrollBridgeWorksInContentsCoordinates()
{
    ScrollBridge area(QSize(1, 1));
    auto *top = makeTopWithItem(QSize(100, 400), QPoint(0, 150));
    area.setChild(top);
    area.setBridgeBackgroundColor(Qt::yellow);
    area.verticalScrollBar()->setValue(120);
    const QImage image = render(area.viewport());
    QCOMPARE(image.pixelColor(5, 35), QColor(Qt::blue)); // contents y 155: the item
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::yellow));
    QCOMPARE(area.findUiName(QPoint(5, 35)), QString("Top.Item"));
    const Kiv_PointOfInterest poi = area.findPoi(QStringLiteral("Top.Item"));
    QCOMPARE(poi.widget(), area.viewport());
    QCOMPARE(poi.point(), QPoint(9, 150 + 4 - 120));
    QTest::mousePress(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 35));
    QCOMPARE(static_cast<ProbeView *>(top->getViewByName("Item"))->log,
             QStringList { "press 5,5" });
    QTest::mouseRelease(area.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 35));
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
    sendDrag<QDragMoveEvent>(port, QPoint(50, 79)); // near the other edge: on again
    QDragLeaveEvent leave; // leaving stops it at once
    QCoreApplication::sendEvent(port, &leave);
    QVERIFY(!area.isDragAutoScrolling());
    sendDrag<QDragEnterEvent>(port, QPoint(50, 79)); // a new drag
    QVERIFY(area.isDragAutoScrolling());
    area.setDragAutoScroll(false); // switching it off stops it at once, and for good
    QVERIFY(!area.isDragAutoScrolling());
    sendDrag<QDragMoveEvent>(port, QPoint(50, 79));
    QVERIFY(!area.isDragAutoScrolling());
}

QTEST_MAIN(tst_Bridge)
#include "tst_bridge.moc"
