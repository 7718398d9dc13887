// Views and containers: stacking, mouse and keys, names, removal, tool tips and selection.
#include "Bnd_ConnectionEnvironment.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_BlankView.h"
#include "Kiv_BridgeQWidget.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_SelectableView.h"
#include "Kiv_TextView.h"

#include <QPainter>
#include <QtTest>

namespace {

QStringList gLog; // "<name> <event> x,y" or "<name> dies"

// Fills far beyond its area with a colour; logs its events and its death.
struct ColourView : Kiv_ViewBase
{
    ColourView(const QString &iName, const QRect &iRect, QColor iColour = Qt::red)
        : colour(iColour)
    {
        setName(iName);
        setRectInParent(iRect);
    }
    ~ColourView() override { gLog << getName() + " dies"; }
    void drawContents(QPainter *iPainter, const QRect &iRect) override
    {
        lastDrawRect = iRect;
        iPainter->fillRect(QRect(-1000, -1000, 3000, 3000), colour); // the container clips
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

// The top of a view tree: records the areas the views ask to have redrawn.
struct Host : Container
{
    void childBitsChanged(Kiv_ViewInterface *, const QRect &r, bool) override { dirty << r; }
    QList<QRect> dirty;
};

// Sends a press, move or release; returns whether it was accepted.
bool mouse(Kiv_ContainerViewBase &ioView, QEvent::Type iType, const QPoint &iPos)
{
    const bool down = iType == QEvent::MouseButtonPress;
    QMouseEvent event(iType, QPointF(iPos), QPointF(iPos), Qt::LeftButton,
                      down ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    const auto handler = down        ? &Kiv_ViewInterface::mousePressEvent
        : iType == QEvent::MouseMove ? &Kiv_ViewInterface::mouseMoveEvent
                                     : &Kiv_ViewInterface::mouseReleaseEvent;
    (ioView.*handler)(&event, iPos);
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

} // namespace

class tst_Views : public QObject
{
    Q_OBJECT

private slots:
    void init() { gLog.clear(); }
    void newViewAndAspect();
    void stackingOfViewsAndTheirCopies_data();
    void stackingOfViewsAndTheirCopies();
    void pressFallsThroughViewsThatIgnoreIt_data();
    void pressFallsThroughViewsThatIgnoreIt();
    void mouseGrabAndKeyFocus();
    void findItem_data();
    void findItem();
    void changesTravelUpInParentCoordinates();
    void removeView_data();
    void removeView();
    void viewsHaveOneOwner();
    void windowNamesAndCopiesOfPublishingViews();
    void toolTip();
    void selection_data();
    void selection();
};

void tst_Views::newViewAndAspect()
{
    Kiv_BlankView v; // read-only, 0 by 0 (not the invalid size), no fixed aspect
    QVERIFY(v.getReadOnly() && v.getSize() == QSize(0, 0) && !v.isFixedAspect());
    for (const float refused : { 0.0f, float(qQNaN()) }) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_ViewBase::setAspect, "));
        v.setAspect(refused);
    }
    QVERIFY(!v.isFixedAspect() && v.getAspect() == 0.0f);
    v.setAspect(1.5f);
    QVERIFY(v.isFixedAspect() && v.getAspect() == 1.5f);
}

void tst_Views::stackingOfViewsAndTheirCopies_data()
{
    QTest::addColumn<int>("zA");
    QTest::addColumn<int>("zB");
    QTest::addColumn<QString>("top");
    QTest::newRow("equal z-order: the later added is on top") << 0 << 0 << "B";
    QTest::newRow("lower z-order of the later is below") << 0 << -1 << "A";
}

void tst_Views::stackingOfViewsAndTheirCopies()
{
    QFETCH(int, zA);
    QFETCH(int, zB);
    QFETCH(QString, top);
    Container c(QRect(0, 0, 60, 40));
    c.add("A", QRect(0, 0, 40, 40), Qt::red, zA);
    ColourView *b = c.add("B", QRect(20, 0, 40, 40), Qt::green, zB);
    const std::unique_ptr<Kiv_ViewInterface> copy = c.clone(); // a plain container's own clone
    auto &copied = static_cast<Kiv_ContainerViewBase &>(*copy);
    for (const auto &entry : copied.subViews()) // copies of their own, not shared views
        QCOMPARE(entry.second->getParent(), static_cast<Kiv_ViewContainerInterface *>(&copied));
    QImage image(c.getSize(), QImage::Format_ARGB32);
    QPainter painter(&image);
    copied.drawContents(&painter, c.getLocalDrawingRect()); // each view clipped to its area
    QCOMPARE(image.pixelColor(30, 20), QColor(top == "A" ? Qt::red : Qt::green));
    QCOMPARE(image.pixelColor(5, 20), QColor(Qt::red));
    QCOMPARE(image.pixelColor(55, 20), QColor(Qt::green));
    c.drawContents(&painter, QRect(25, 0, 10, 40));
    QCOMPARE(b->lastDrawRect, QRect(5, 0, 10, 40)); // its own part, in its own coordinates
    QVERIFY(mouse(c, QEvent::MouseButtonPress, { 30, 20 }));
    QCOMPARE(gLog, QStringList { top == "A" ? "A press 30,20" : "B press 10,20" });
}

void tst_Views::pressFallsThroughViewsThatIgnoreIt_data()
{
    QTest::addColumn<bool>("topAccepts");
    QTest::addColumn<bool>("bottomAccepts");
    QTest::addColumn<bool>("topQuits"); // removes itself on the press
    QTest::addColumn<QString>("grab"); // "" = none
    QTest::newRow("top takes it") << true << true << false << "T";
    QTest::newRow("nobody takes it") << false << false << false << "";
    QTest::newRow("top ignores it and removes itself") << false << true << true << "B";
    QTest::newRow("top takes it and removes itself") << true << true << true << "";
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
    QCOMPARE(mouse(c, QEvent::MouseButtonPress, { 5, 5 }), topAccepts || bottomAccepts);
    QCOMPARE(gLog.filter("press"),
             QStringList({ "T press 5,5", "B press 5,5" }).mid(0, 2 - topAccepts));
    QCOMPARE(gLog.contains("T dies"), topQuits);
    QCOMPARE(c.subViewForMouseEvents() ? c.subViewForMouseEvents()->getName() : QString(), grab);
}

void tst_Views::mouseGrabAndKeyFocus()
{
    Container c;
    c.add("A", QRect(0, 0, 20, 20));
    ColourView *b = c.add("B", QRect(50, 0, 20, 20));
    b->setAcceptsFocus(true);
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    c.keyPressEvent(&key);
    QVERIFY(!key.isAccepted()); // no focus view yet
    mouse(c, QEvent::MouseButtonPress, { 55, 5 }); // B takes the focus
    mouse(c, QEvent::MouseButtonRelease, { 55, 5 });
    mouse(c, QEvent::MouseButtonPress, { 5, 5 }); // A takes the mouse, not the focus
    for (const auto type : { QEvent::MouseMove, QEvent::MouseButtonRelease, QEvent::MouseMove })
        mouse(c, type, { 55, 5 }); // over B, but A holds the mouse until the release
    c.keyPressEvent(&key);
    c.setSubViewForMouseEvents(b); // an explicit grab outlasts a release
    for (const auto type : { QEvent::MouseButtonRelease, QEvent::MouseMove })
        mouse(c, type, { 5, 5 });
    QCOMPARE(gLog,
             (QStringList { "B press 5,5", "B release 5,5", "A press 5,5", "A move 55,5",
                            "A release 55,5", "B move 5,5", "B key 0,0", "B release -45,5",
                            "B move -45,5" }));
}

void tst_Views::findItem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QPoint>("where"); // null: not found
    QTest::addColumn<QPoint>("uiPoint"); // findUiName(uiPoint) == name
    QTest::newRow("three levels") << "A.B.C" << QPoint(14 + 5 + 10, 9 + 7 + 20) << QPoint(16, 28);
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
    c->sendAllBitsChanged(); // in A's coordinates
    c->setSizeAndNotifyParent(QSize(40, 10)); // old and new area both need redrawing
    QCOMPARE(host.dirty, (QList<QRect> { QRect(15, 27, 30, 20), QRect(15, 27, 40, 20) }));
}

void tst_Views::removeView_data()
{
    QTest::addColumn<QString>("which");
    QTest::newRow("own view") << "own";
    QTest::newRow("z-order changed after adding") << "moved";
    QTest::newRow("the view holding the mouse") << "grab";
}

void tst_Views::removeView()
{
    QFETCH(QString, which);
    Host c;
    ColourView *own = c.add("O", QRect(30, 40, 20, 10));
    if (which == "moved")
        own->setZOrder(42);
    if (which == "grab")
        QVERIFY(mouse(c, QEvent::MouseButtonPress, { 35, 45 }));
    c.removeView(own);
    QVERIFY(gLog.endsWith(QStringLiteral("O dies")));
    QVERIFY(c.subViews().empty());
    QCOMPARE(c.dirty, QList<QRect> { QRect(0, 0, 20, 10) }); // its whole area
    QVERIFY(!c.subViewForMouseEvents()); // no grab left on a deleted view
}

// A view has one owner: a container neither takes nor removes what another one owns.
void tst_Views::viewsHaveOneOwner()
{
    {
        Container other, c;
        ColourView *mine = c.add("M", QRect(0, 0, 5, 5));
        ColourView *foreign = other.add("F", QRect(0, 0, 5, 5));
        for (Kiv_ViewInterface *candidate :
             std::initializer_list<Kiv_ViewInterface *> { nullptr, &c, mine, foreign }) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("::AddSubView, "));
            QVERIFY(!c.AddSubView(candidate));
        }
        c.removeView(foreign);
    }
    QCOMPARE(gLog, (QStringList { "M dies", "F dies" })); // each deleted once, by its owner
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

void tst_Views::toolTip()
{
    Bnde_SimpleValue<QString> tip(QStringLiteral("TipViews.Tip"), QString());
    Bnde_SimpleValue<QString> sub(QStringLiteral("TipViews.Sub"), QStringLiteral("sub"));
    QVERIFY(tip.Publish() && sub.Publish());
    boost::shared_ptr<Bnd_ConnectionEnvironment> env(
        new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr));
    env->set(QStringLiteral("Pane"), QStringLiteral("TipViews"));
    Container c;
    c.setToolTipConnectionID(QStringLiteral("$Pane.Tip"));
    c.add("V", QRect(10, 20, 30, 5))->setToolTipConnectionID(QStringLiteral("TipViews.Sub"));
    c.makeConnections(env);
    QRect rect;
    QString text;
    QVERIFY(!c.getToolTip({ 80, 80 }, &rect, &text)); // an empty text is no tip
    tip.setValue(QStringLiteral("Trim")); // read when asked, never cached
    QVERIFY(c.getToolTip({ 80, 80 }, &rect, &text));
    QCOMPARE(text, QString("Trim"));
    QCOMPARE(rect, QRect(0, 0, 100, 100));
    QVERIFY(c.getToolTip({ 15, 22 }, &rect, &text)); // the topmost sub-view's own
    QCOMPARE(text, QString("sub"));
    QCOMPARE(rect, QRect(10, 20, 30, 5));

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("oTipRect && oTipString"));
    QVERIFY(c.getToolTip({ 80, 80 }, nullptr, &text)); // reported, and carried on
    for (const QString &name : { QStringLiteral("TipViews.Missing"), QString() }) {
        c.setToolTipConnectionID(name); // a name taken away unbinds the tip
        c.makeConnections(env);
        QVERIFY(!c.getToolTip({ 80, 80 }, &rect, &text));
    }
}

void tst_Views::selection_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<bool>("bound"); // the model holds the state
    QTest::addColumn<bool>("selected"); // after setSelected(true)
    QTest::newRow("local flag") << "" << false << true;
    QTest::newRow("bound to a model") << "SelViews.Selected" << true << true;
    QTest::newRow("model not reachable") << "SelViews.Missing" << false << false;
}

void tst_Views::selection()
{
    QFETCH(QString, connection);
    QFETCH(bool, bound);
    QFETCH(bool, selected);
    Bnde_SimpleValue<bool> model(QStringLiteral("SelViews.Selected"), false);
    QVERIFY(model.Publish());
    Host host;
    Selectable v;
    v.setParent(&host);
    v.setIsSelectedConnectionSpec(connection);
    v.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    host.dirty.clear();
    v.setSelected(true);
    QCOMPARE(v.isSelected(), selected);
    QCOMPARE(model.getValue(), bound);
    QCOMPARE(host.dirty.size(), selected ? 1 : 0); // redrawn only when it changed
    model.setValue(false);
    QCOMPARE(v.isSelected(), selected && !bound);
}

QTEST_MAIN(tst_Views)
#include "tst_views.moc"
