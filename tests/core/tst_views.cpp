// Views and containers: stacking, mouse and keys, names, removal, tool tips and selection.
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQWidget.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_SelectableView.h"
#include "Kiv_TextView.h"

#include <QPainter>
#include <QtTest>

#include <limits>

namespace {

QStringList gLog; // "<name> <event> x,y"
int gDeaths = 0;

// Fills its area (or far beyond it) with a colour, logs its events, counts its deaths.
struct ColourView : Kiv_ViewBase
{
    ColourView(const QString &iName, const QRect &iRect, QColor iColour = Qt::red)
        : colour(iColour)
    {
        setName(iName);
        setRectInParent(iRect);
    }
    ~ColourView() override { ++gDeaths; }
    void drawContents(QPainter *iPainter, const QRect &iRect) override
    {
        lastDrawRect = iRect;
        iPainter->fillRect(overdraw ? QRect(-1000, -1000, 3000, 3000) : getLocalDrawingRect(),
                           colour);
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override
    {
        return std::make_unique<ColourView>(getName(), getRectInParent(), colour);
    }
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override
    {
        log("press", iPos);
        iEvent->setAccepted(acceptPress);
        if (removeSelfOnPress)
            getParent()->removeView(this); // deletes this view
    }
    void mouseMoveEvent(QMouseEvent *, const QPoint &iPos) override { log("move", iPos); }
    void mouseReleaseEvent(QMouseEvent *, const QPoint &iPos) override { log("release", iPos); }
    void keyPressEvent(QKeyEvent *) override { log("key", QPoint()); }
    void log(const char *iWhat, const QPoint &iPos)
    {
        gLog << QStringLiteral("%1 %2 %3,%4").arg(getName(), iWhat).arg(iPos.x()).arg(iPos.y());
    }
    QColor colour;
    bool acceptPress = true;
    bool removeSelfOnPress = false;
    bool overdraw = false;
    QRect lastDrawRect;
};

struct Container : Kiv_ContainerViewBase
{
    explicit Container(const QRect &iRect = QRect(0, 0, 100, 100))
    {
        setName(QStringLiteral("A"));
        setRectInParent(iRect);
    }
    ColourView *add(const QString &iName, const QRect &iRect, QColor iColour = Qt::red, int iZ = 0)
    {
        auto *view = new ColourView(iName, iRect, iColour);
        view->setZOrder(iZ);
        AddSubView(view);
        return view;
    }
};

struct Selectable : Kiv_SelectableView
{
    void drawContents(QPainter *, const QRect &) override { }
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
};

// The top of a view tree: records what the views ask of their container.
struct Host : Kiv_ViewContainerInterface
{
    void childSizeChanged(Kiv_ViewInterface *, QSize, QSize) override { }
    void childInsertedRow(Kiv_ViewInterface *, int, int) override { }
    void childDeletedRow(Kiv_ViewInterface *, int, int) override { }
    void childInsertedColumn(Kiv_ViewInterface *) override { }
    void childBitsChanged(Kiv_ViewInterface *, const QRect &iRect, bool) override
    {
        dirty << iRect;
    }
    QWidget *getBridgeWidget() override { return nullptr; }
    void overlayChildEditWidget(Kiv_ViewInterface *, QWidget *, int iX, int iY) override
    {
        editorAt = QPoint(iX, iY);
    }
    QList<QRect> dirty;
    QPoint editorAt;
};

QImage paint(Kiv_ViewInterface &iView, const QRect &iRect)
{
    QImage image(iView.getSize(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    iView.drawContents(&painter, iRect);
    return image;
}

// Sends a mouse event; returns whether it was accepted.
bool mouse(Kiv_ContainerViewBase &ioView, QEvent::Type iType, const QPoint &iPos)
{
    const bool down = iType != QEvent::MouseButtonRelease && iType != QEvent::MouseMove;
    QMouseEvent event(iType, QPointF(iPos), QPointF(iPos), Qt::LeftButton,
                      down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    if (iType == QEvent::MouseButtonPress)
        ioView.mousePressEvent(&event, iPos);
    else if (iType == QEvent::MouseMove)
        ioView.mouseMoveEvent(&event, iPos);
    else
        ioView.mouseReleaseEvent(&event, iPos);
    return event.isAccepted();
}

// A (100x100) holds B at (10,20), which holds C (30x20) at (5,7).
Container *buildTree(Container &ioA)
{
    auto *b = new Container(QRect(10, 20, 50, 50));
    b->setName(QStringLiteral("B"));
    b->add("C", QRect(5, 7, 30, 20));
    ioA.AddSubView(b);
    return b;
}

Bnd_ConnectionEnvironmentPtr blank()
{
    return Bnd_ConnectionEnvironment::blankEnvironment();
}

} // namespace

class tst_Views : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        gLog.clear();
        gDeaths = 0;
    }
    void newViewAndAspect_data();
    void newViewAndAspect();
    void stacking_data();
    void stacking();
    void pressFallsThroughViewsThatIgnoreIt_data();
    void pressFallsThroughViewsThatIgnoreIt();
    void grabKeepsMouseUntilRelease();
    void keysGoToTheFocusView();
    void subViewPaintingIsClippedAndLocal();
    void findItem_data();
    void findItem();
    void changesTravelUpInParentCoordinates();
    void removeView_data();
    void removeView();
    void addSubViewRefusesWhatItCannotOwn();
    void cloneKeepsZOrder();
    void windowNamesAndCopiesOfPublishingViews();
    void toolTip_data();
    void toolTip();
    void selection_data();
    void selection();
};

void tst_Views::newViewAndAspect_data()
{
    QTest::addColumn<float>("aspect");
    QTest::addColumn<float>("stored"); // 0: refused, not fixed
    QTest::newRow("1.5 fixes the aspect") << 1.5f << 1.5f;
    QTest::newRow("zero is refused") << 0.0f << 0.0f;
    QTest::newRow("negative is refused") << -2.0f << 0.0f;
    QTest::newRow("NaN is refused") << std::numeric_limits<float>::quiet_NaN() << 0.0f;
}

void tst_Views::newViewAndAspect()
{
    QFETCH(float, aspect);
    QFETCH(float, stored);
    Kiv_BlankView v;
    QVERIFY(v.getReadOnly() && !v.isFixedAspect());
    QCOMPARE(v.getSize(), QSize(0, 0)); // 0 by 0, not the invalid size
    if (stored == 0.0f)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_ViewBase::setAspect, "));
    v.setAspect(aspect);
    QCOMPARE(v.isFixedAspect(), stored != 0.0f);
    QCOMPARE(v.getAspect(), stored);
}

void tst_Views::stacking_data()
{
    QTest::addColumn<int>("zA");
    QTest::addColumn<int>("zB");
    QTest::addColumn<QString>("top");
    QTest::newRow("equal z-order: the later added is on top") << 0 << 0 << "B";
    QTest::newRow("higher z-order of the earlier wins") << 1 << 0 << "A";
    QTest::newRow("negative z-order of the later is below") << 0 << -1 << "A";
    QTest::newRow("higher z-order of the later wins") << -3 << 7 << "B";
}

void tst_Views::stacking()
{
    QFETCH(int, zA);
    QFETCH(int, zB);
    QFETCH(QString, top);
    Container c(QRect(0, 0, 60, 40));
    c.add("A", QRect(0, 0, 40, 40), Qt::red, zA);
    c.add("B", QRect(20, 0, 40, 40), Qt::green, zB);
    const QImage image = paint(c, c.getLocalDrawingRect());
    QCOMPARE(image.pixelColor(30, 20), top == "A" ? QColor(Qt::red) : QColor(Qt::green));
    QCOMPARE(image.pixelColor(5, 20), QColor(Qt::red));
    QCOMPARE(image.pixelColor(55, 20), QColor(Qt::green));
    QVERIFY(mouse(c, QEvent::MouseButtonPress, QPoint(30, 20)));
    QCOMPARE(gLog, QStringList { top == "A" ? "A press 30,20" : "B press 10,20" });
    QCOMPARE(c.subViewForMouseEvents()->getName(), top);
}

void tst_Views::pressFallsThroughViewsThatIgnoreIt_data()
{
    QTest::addColumn<bool>("topAccepts");
    QTest::addColumn<bool>("bottomAccepts");
    QTest::addColumn<bool>("topQuits"); // removes itself on the press
    QTest::addColumn<QString>("grab"); // "" = none
    QTest::newRow("top takes it") << true << true << false << "T";
    QTest::newRow("top ignores it") << false << true << false << "B";
    QTest::newRow("nobody takes it") << false << false << false << "";
    QTest::newRow("top removes itself") << false << true << true << "B";
}

void tst_Views::pressFallsThroughViewsThatIgnoreIt()
{
    QFETCH(bool, topAccepts);
    QFETCH(bool, bottomAccepts);
    QFETCH(bool, topQuits);
    QFETCH(QString, grab);
    Container c;
    c.add("B", QRect(0, 0, 20, 20))->acceptPress = bottomAccepts;
    ColourView *topView = c.add("T", QRect(0, 0, 20, 20));
    topView->acceptPress = topAccepts;
    topView->removeSelfOnPress = topQuits;
    QCOMPARE(mouse(c, QEvent::MouseButtonPress, QPoint(5, 5)), !grab.isEmpty());
    QStringList expected { "T press 5,5", "B press 5,5" };
    QCOMPARE(gLog, topAccepts ? expected.mid(0, 1) : expected);
    QCOMPARE(c.subViewForMouseEvents() ? c.subViewForMouseEvents()->getName() : QString(), grab);
    QCOMPARE(gDeaths, topQuits ? 1 : 0);
}

void tst_Views::grabKeepsMouseUntilRelease()
{
    Container c;
    c.add("A", QRect(0, 0, 20, 20));
    ColourView *b = c.add("B", QRect(50, 0, 20, 20));
    mouse(c, QEvent::MouseButtonPress, QPoint(5, 5));
    mouse(c, QEvent::MouseMove, QPoint(55, 5)); // over B, but A holds the mouse
    mouse(c, QEvent::MouseButtonRelease, QPoint(55, 5));
    mouse(c, QEvent::MouseMove, QPoint(55, 5)); // the grab ended with the release
    QCOMPARE(gLog, (QStringList { "A press 5,5", "A move 55,5", "A release 55,5", "B move 5,5" }));
    QVERIFY(!c.subViewForMouseEvents());
    gLog.clear();
    c.setSubViewForMouseEvents(b); // an explicit grab outlasts a release
    mouse(c, QEvent::MouseButtonRelease, QPoint(5, 5));
    mouse(c, QEvent::MouseMove, QPoint(5, 5));
    QCOMPARE(gLog, (QStringList { "B release -45,5", "B move -45,5" }));
}

void tst_Views::keysGoToTheFocusView()
{
    Container c;
    c.add("P", QRect(0, 0, 20, 20));
    ColourView *focusable = c.add("F", QRect(50, 0, 20, 20));
    focusable->setAcceptsFocus(true);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    c.keyPressEvent(&key);
    QVERIFY(!key.isAccepted()); // no focus view yet
    mouse(c, QEvent::MouseButtonPress, QPoint(55, 5));
    mouse(c, QEvent::MouseButtonPress, QPoint(5, 5)); // takes the mouse, not the focus
    gLog.clear();
    c.keyPressEvent(&key);
    QCOMPARE(gLog, QStringList { "F key 0,0" });
}

void tst_Views::subViewPaintingIsClippedAndLocal()
{
    Container c(QRect(0, 0, 60, 40));
    ColourView *v = c.add("V", QRect(20, 10, 10, 10), Qt::blue);
    v->overdraw = true;
    const QImage image = paint(c, QRect(25, 0, 35, 40));
    QCOMPARE(image.pixelColor(27, 15), QColor(Qt::blue));
    for (const QPoint &outside : { QPoint(27, 25), QPoint(35, 15), QPoint(15, 15) })
        QCOMPARE(image.pixelColor(outside), QColor(Qt::white));
    QCOMPARE(v->lastDrawRect, QRect(5, 0, 5, 10)); // its own part, in its own coordinates
    v->lastDrawRect = QRect();
    paint(c, QRect(40, 0, 20, 40)); // misses the view
    QVERIFY(v->lastDrawRect.isNull());
}

void tst_Views::findItem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QPoint>("where"); // null: not found
    QTest::addColumn<QPoint>("uiPoint"); // findUiName(uiPoint) == name
    QTest::newRow("three levels") << "A.B.C" << QPoint(14 + 5 + 10, 9 + 7 + 20) << QPoint(16, 28);
    QTest::newRow("B beside C") << "A.B" << QPoint(34, 44) << QPoint(15, 60);
    QTest::newRow("later of two overlapping") << "A.D" << QPoint(69, 79) << QPoint(55, 65);
    QTest::newRow("the container itself") << "A" << QPoint(49, 49) << QPoint(95, 5);
    QTest::newRow("another root") << "X.B.C" << QPoint() << QPoint();
    QTest::newRow("skipping a level") << "A.C" << QPoint() << QPoint();
}

void tst_Views::findItem()
{
    QFETCH(QString, name);
    QFETCH(QPoint, where);
    QFETCH(QPoint, uiPoint);
    Container a;
    buildTree(a);
    a.add("D", QRect(50, 60, 40, 40));
    QPoint got(-1, -1);
    QCOMPARE(a.findItem(name, &got), !where.isNull());
    if (where.isNull())
        return;
    QCOMPARE(got, where);
    QCOMPARE(a.findUiName(uiPoint), name);
}

void tst_Views::changesTravelUpInParentCoordinates()
{
    Host host;
    Container a(QRect(100, 100, 100, 100));
    a.setParent(&host);
    Container *b = buildTree(a);
    auto *c = static_cast<ColourView *>(b->getViewByName(QStringLiteral("C")));
    c->sendAllBitsChanged();
    QCOMPARE(host.dirty, QList<QRect> { QRect(15, 27, 30, 20) }); // in A's coordinates
    b->overlayChildEditWidget(c, nullptr, 1, 2);
    QCOMPARE(host.editorAt, QPoint(1 + 5 + 10, 2 + 7 + 20));
    host.dirty.clear();
    c->setSizeAndNotifyParent(QSize(40, 10)); // old and new area both need redrawing
    QCOMPARE(host.dirty, QList<QRect> { QRect(15, 27, 40, 20) });
}

void tst_Views::removeView_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<int>("deaths");
    QTest::newRow("own view") << "own" << 1;
    QTest::newRow("view of another container") << "foreign" << 0;
    QTest::newRow("z-order changed after adding") << "moved" << 1;
    QTest::newRow("the view holding the mouse") << "grab" << 1;
}

void tst_Views::removeView()
{
    QFETCH(QString, which);
    QFETCH(int, deaths);
    Host host;
    Container c;
    c.setParent(&host);
    c.add("1", QRect(0, 0, 20, 20));
    ColourView *second = c.add("2", QRect(30, 40, 20, 10));
    Container other;
    ColourView *foreign = other.add("F", QRect(0, 0, 20, 20));
    if (which == "moved")
        second->setZOrder(42);
    if (which == "grab")
        QVERIFY(mouse(c, QEvent::MouseButtonPress, QPoint(35, 45)));

    c.removeView(which == "foreign" ? foreign : second);
    QCOMPARE(gDeaths, deaths);
    QCOMPARE(int(c.subViews().size()), 2 - deaths);
    QVERIFY(other.hasSubView(foreign));
    QCOMPARE(host.dirty, deaths ? QList<QRect> { QRect(30, 40, 20, 10) } : QList<QRect> {});
    QVERIFY(!c.subViewForMouseEvents());
    mouse(c, QEvent::MouseMove, QPoint(35, 45)); // reaches no deleted view
}

void tst_Views::addSubViewRefusesWhatItCannotOwn()
{
    {
        Container other;
        Container c;
        ColourView *mine = c.add("M", QRect(0, 0, 5, 5));
        for (Kiv_ViewInterface *candidate :
             { static_cast<Kiv_ViewInterface *>(nullptr), static_cast<Kiv_ViewInterface *>(&c),
               static_cast<Kiv_ViewInterface *>(mine),
               static_cast<Kiv_ViewInterface *>(other.add("F", QRect(0, 0, 5, 5))) }) {
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression("^Kiv_ContainerViewBase::AddSubView, "));
            QVERIFY(!c.AddSubView(candidate));
        }
        QCOMPARE(c.subViews().size(), size_t(1));
    }
    QCOMPARE(gDeaths, 2); // each view deleted exactly once, by its one owner
}

void tst_Views::cloneKeepsZOrder()
{
    Container c(QRect(0, 0, 60, 40));
    c.add("A", QRect(0, 0, 40, 40), Qt::red, 1);
    c.add("B", QRect(20, 0, 40, 40), Qt::green);
    std::unique_ptr<Kiv_ViewInterface> copy = c.clone(); // a plain container's own clone
    auto *copied = static_cast<Kiv_ContainerViewBase *>(copy.get());
    QCOMPARE(copied->subViews().size(), size_t(2));
    for (const auto &entry : copied->subViews()) {
        QVERIFY(!c.hasSubView(entry.second)); // copies, not shared views
        QCOMPARE(entry.second->getParent(), static_cast<Kiv_ViewContainerInterface *>(copied));
    }
    QCOMPARE(paint(*copied, copied->getLocalDrawingRect()).pixelColor(30, 20), QColor(Qt::red));
}

// "$Window" names in views belong to the window of the bridge, resolved when the views are
// connected; a copy of a view that publishes listens to the original's model.
void tst_Views::windowNamesAndCopiesOfPublishingViews()
{
    QWidget window;
    auto *bridge = new Kiv_BridgeQWidget(new QWidget(&window));
    auto *group = new Kiv_ContainerViewBase;
    auto *published = new Kiv_TextView;
    published->SetNameConnection("publish $Window.Title");
    auto *listening = new Kiv_TextView;
    listening->SetNameConnection("$Window.Title");
    group->AddSubView(published);
    group->AddSubView(listening);
    bridge->setChild(group);
    QVERIFY(!published->getConnection().isPublished()); // waits for its window
    bridge->makeConnections(Bnd_ConnectionEnvironmentPtr());

    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> reader(QString::number(quintptr(&window), 16)
                                                            + "$Window.Title");
    QVERIFY(reader.isConnectedToModel());
    reader.setValue("hello");
    QCOMPARE(published->text(), QString("hello"));
    QCOMPARE(listening->text(), QString("hello"));

    const std::unique_ptr<Kiv_ViewInterface> copy = group->clone();
    copy->makeConnections(Bnd_ConnectionEnvironmentPtr());
    auto *copied = static_cast<Kiv_TextView *>(
        static_cast<Kiv_ContainerViewBase *>(copy.get())->subViews().begin()->second);
    QVERIFY(!copied->getConnection().isPublished());
    reader.setValue("again");
    QCOMPARE(copied->text(), QString("again"));
}

void tst_Views::toolTip_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<QString>("modelText");
    QTest::addColumn<QPoint>("at"); // in a container, on its sub-view (10,20 30x5) or not
    QTest::addColumn<QString>("shown"); // "": none
    QTest::newRow("published text") << "TipViews.Tip"
                                    << "Trim" << QPoint(80, 80) << "Trim";
    QTest::newRow("empty text") << "TipViews.Tip"
                                << "" << QPoint(80, 80) << "";
    QTest::newRow("no such model") << "TipViews.Missing"
                                   << "Trim" << QPoint(80, 80) << "";
    QTest::newRow("no connection name") << ""
                                        << "Trim" << QPoint(80, 80) << "";
    QTest::newRow("environment variable") << "$Pane.Tip"
                                          << "Trim" << QPoint(80, 80) << "Trim";
    QTest::newRow("sub-view's own tip") << "TipViews.Tip"
                                        << "Trim" << QPoint(15, 22) << "sub";
}

void tst_Views::toolTip()
{
    QFETCH(QString, connection);
    QFETCH(QString, modelText);
    QFETCH(QPoint, at);
    QFETCH(QString, shown);
    Bnde_SimpleValue<QString> tip(QStringLiteral("TipViews.Tip"), modelText);
    Bnde_SimpleValue<QString> sub(QStringLiteral("TipViews.Sub"), QStringLiteral("sub"));
    QVERIFY(tip.Publish() && sub.Publish());
    auto *env = new Bnd_ConnectionEnvironment(blank(), nullptr);
    env->set(QStringLiteral("Pane"), QStringLiteral("TipViews"));
    Container c;
    c.setToolTipConnectionID(connection);
    c.add("V", QRect(10, 20, 30, 5))->setToolTipConnectionID(QStringLiteral("TipViews.Sub"));
    c.makeConnections(Bnd_ConnectionEnvironmentPtr(env));
    QRect rect;
    QString text;
    QCOMPARE(c.getToolTip(at, &rect, &text), !shown.isEmpty());
    if (shown.isEmpty())
        return;
    QCOMPARE(text, shown);
    QCOMPARE(rect, at.x() < 50 ? QRect(10, 20, 30, 5) : QRect(0, 0, 100, 100));
    tip.setValue(QStringLiteral("Changed"));
    QVERIFY(c.getToolTip(at, &rect, &text));
    QCOMPARE(text, at.x() < 50 ? shown : QString("Changed")); // read when asked, never cached

    Kib_Assert::clearReports();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("oTipRect && oTipString"));
    QVERIFY(c.getToolTip(at, nullptr, &text)); // reported, and carried on
    QCOMPARE(Kib_Assert::reports().size(), 1);
}

void tst_Views::selection_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<bool>("selectedAfterSet");
    QTest::addColumn<bool>("modelAfterSet");
    QTest::addColumn<bool>("followsModel");
    QTest::newRow("local flag") << "" << true << false << false;
    QTest::newRow("bound to a model") << "SelViews.Selected" << true << true << true;
    QTest::newRow("model not reachable") << "SelViews.Missing" << false << false << false;
}

void tst_Views::selection()
{
    QFETCH(QString, connection);
    QFETCH(bool, selectedAfterSet);
    QFETCH(bool, modelAfterSet);
    QFETCH(bool, followsModel);
    Bnde_SimpleValue<bool> model(QStringLiteral("SelViews.Selected"), false);
    QVERIFY(model.Publish());
    Host host;
    Selectable v;
    v.setSize(QSize(10, 4));
    v.setParent(&host);
    v.setIsSelectedConnectionSpec(connection);
    v.makeConnections(blank());
    QVERIFY(!v.isSelected());
    host.dirty.clear();
    v.setSelected(true);
    QCOMPARE(v.isSelected(), selectedAfterSet);
    QCOMPARE(model.getValue(), modelAfterSet);
    QCOMPARE(host.dirty.size(), selectedAfterSet ? 1 : 0); // redrawn only when it changed
    model.setValue(false);
    QCOMPARE(v.isSelected(), followsModel ? false : selectedAfterSet);
}

QTEST_MAIN(tst_Views)
#include "tst_views.moc"
