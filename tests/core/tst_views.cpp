#include "Bnd_ConnectionEnvironment.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"
#include "Kiv_BlankView.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_SelectableView.h"

#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

namespace {

// Fills its area (or far beyond it) with a colour, logs its events, counts its deaths.
class ColourView : public Kiv_ViewBase
{
public:
    ColourView(const QString &iName, const QRect &iRect, QColor iColour,
               QStringList *ioLog = nullptr, int *ioDeaths = nullptr)
        : mColour(iColour)
        , mLogP(ioLog)
        , mDeathsP(ioDeaths)
    {
        setName(iName);
        setRectInParent(iRect);
    }
    ~ColourView() override
    {
        if (mDeathsP)
            ++*mDeathsP;
    }
    void drawContents(QPainter *iPainter, const QRect &iRect) override
    {
        mLastDrawRect = iRect;
        iPainter->fillRect(mOverdraw ? QRect(-1000, -1000, 3000, 3000) : getLocalDrawingRect(),
                           mColour);
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override
    {
        return std::unique_ptr<Kiv_ViewInterface>(new ColourView(*this));
    }
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override
    {
        log(QStringLiteral("press"), iPos);
        if (!mAcceptPress)
            iEvent->ignore();
        if (mRemoveSelfOnPress)
            getParent()->removeView(this); // deletes this view
    }
    void mouseMoveEvent(QMouseEvent *, const QPoint &iPos) override
    {
        log(QStringLiteral("move"), iPos);
    }
    void mouseReleaseEvent(QMouseEvent *, const QPoint &iPos) override
    {
        log(QStringLiteral("release"), iPos);
    }
    void keyPressEvent(QKeyEvent *) override { log(QStringLiteral("key"), QPoint()); }
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override
    {
        log(QStringLiteral("connect"), QPoint());
        Kiv_ViewBase::makeConnections(iEnv);
    }

    QColor mColour;
    bool mAcceptPress = true;
    bool mRemoveSelfOnPress = false;
    bool mOverdraw = false;
    QRect mLastDrawRect;

private:
    ColourView(const ColourView &) = default;
    void log(const QString &iWhat, const QPoint &iPos)
    {
        if (mLogP)
            *mLogP
                << QStringLiteral("%1 %2 %3,%4").arg(getName(), iWhat).arg(iPos.x()).arg(iPos.y());
    }
    QStringList *mLogP;
    int *mDeathsP;
};

class Container : public Kiv_ContainerViewBase
{
public:
    explicit Container(const QString &iName, const QRect &iRect = QRect(0, 0, 100, 100))
    {
        setName(iName);
        setRectInParent(iRect);
    }
    std::unique_ptr<Kiv_ViewInterface> clone() const override
    {
        return std::unique_ptr<Kiv_ViewInterface>(new Container(*this));
    }
    using Kiv_ContainerViewBase::subViewsContaining;

private:
    Container(const Container &) = default;
};

class Selectable : public Kiv_SelectableView
{
public:
    void drawContents(QPainter *, const QRect &) override { }
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
};

// The top of a view tree in a test: records what the views ask of their container.
class Host : public Kiv_ViewContainerInterface
{
public:
    void childSizeChanged(Kiv_ViewInterface *, QSize iNew, QSize iOld) override
    {
        sizes << iNew << iOld;
    }
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
    QList<QSize> sizes;
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

QMouseEvent mouse(QEvent::Type iType, const QPoint &iPos,
                  Qt::MouseButtons iButtons = Qt::LeftButton)
{
    return QMouseEvent(iType, QPointF(iPos), QPointF(iPos), Qt::LeftButton, iButtons,
                       Qt::NoModifier);
}

// A (100x100) holds B at (10,20), which holds C (30x20) at (5,7).
void buildTree(Container &ioA)
{
    auto *b = new Container(QStringLiteral("B"), QRect(10, 20, 50, 50));
    b->AddSubView(new ColourView("C", QRect(5, 7, 30, 20), Qt::red));
    ioA.AddSubView(b);
}

void press(Kiv_ContainerViewBase &ioView, const QPoint &iPos, bool iAccepted = true)
{
    QMouseEvent event = mouse(QEvent::MouseButtonPress, iPos);
    ioView.mousePressEvent(&event, iPos);
    QCOMPARE(event.isAccepted(), iAccepted);
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
    void newViewIsReadOnlyAndEmpty();
    void setAspect_data();
    void setAspect();

    void stacking_data();
    void stacking();
    void pressFallsThroughViewsThatIgnoreIt_data();
    void pressFallsThroughViewsThatIgnoreIt();
    void grabKeepsMouseUntilRelease();
    void viewRemovingItselfOnPressIsSafe();
    void keysGoToTheFocusView();
    void subViewPaintingIsClippedAndLocal();

    void findItem_data();
    void findItem();
    void findUiName_data();
    void findUiName();
    void getViewByNameTakesLowestZOrder();
    void changesTravelUpInParentCoordinates();

    void removeView_data();
    void removeView();
    void addSubViewRefusesWhatItCannotOwn_data();
    void addSubViewRefusesWhatItCannotOwn();
    void cloneCopiesSubViewsInOrder();
    void connectionsReachSubViewsInZOrder();

    void toolTip_data();
    void toolTip();
    void toolTipWithoutOutputsIsReported();
    void containerToolTipComesFromSubView();

    void selection_data();
    void selection();
};

void tst_Views::newViewIsReadOnlyAndEmpty()
{
    Kiv_BlankView v;
    QVERIFY(v.getReadOnly());
    QCOMPARE(v.getSize(), QSize(0, 0));
    QVERIFY(v.getSize().isValid()); // 0 by 0, not the invalid size
    QVERIFY(!v.isFixedAspect());
}

void tst_Views::setAspect_data()
{
    QTest::addColumn<float>("aspect");
    QTest::addColumn<bool>("fixed");
    QTest::addColumn<float>("stored");

    QTest::newRow("1.5 fixes the aspect") << 1.5f << true << 1.5f;
    QTest::newRow("zero is refused") << 0.0f << false << 0.0f;
    QTest::newRow("negative is refused") << -2.0f << false << 0.0f;
    QTest::newRow("NaN is refused") << std::numeric_limits<float>::quiet_NaN() << false << 0.0f;
}

void tst_Views::setAspect()
{
    QFETCH(float, aspect);
    QFETCH(bool, fixed);
    QFETCH(float, stored);

    Kiv_BlankView v;
    if (!fixed)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_ViewBase::setAspect, "));
    v.setAspect(aspect);
    QCOMPARE(v.isFixedAspect(), fixed);
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

    QStringList log;
    Container c(QStringLiteral("C"), QRect(0, 0, 60, 40));
    auto *a = new ColourView("A", QRect(0, 0, 40, 40), Qt::red, &log);
    auto *b = new ColourView("B", QRect(20, 0, 40, 40), Qt::green, &log);
    a->setZOrder(zA);
    b->setZOrder(zB);
    QVERIFY(c.AddSubView(a));
    QVERIFY(c.AddSubView(b));

    const QImage image = paint(c, c.getLocalDrawingRect());
    QCOMPARE(image.pixelColor(30, 20), top == "A" ? QColor(Qt::red) : QColor(Qt::green));
    QCOMPARE(image.pixelColor(5, 20), QColor(Qt::red));
    QCOMPARE(image.pixelColor(55, 20), QColor(Qt::green));

    press(c, QPoint(30, 20));
    QCOMPARE(log.size(), 1); // the topmost took it, the other never saw it
    QCOMPARE(log.first(), top == "A" ? QString("A press 30,20") : QString("B press 10,20"));
    QCOMPARE(c.subViewForMouseEvents()->getName(), top);
}

void tst_Views::pressFallsThroughViewsThatIgnoreIt_data()
{
    QTest::addColumn<bool>("topAccepts");
    QTest::addColumn<bool>("bottomAccepts");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QString>("grab"); // "" = none

    QTest::newRow("top takes it") << true << true << QStringList { "T press 5,5" } << "T";
    QTest::newRow("top ignores it")
        << false << true << QStringList { "T press 5,5", "B press 5,5" } << "B";
    QTest::newRow("nobody takes it")
        << false << false << QStringList { "T press 5,5", "B press 5,5" } << "";
}

void tst_Views::pressFallsThroughViewsThatIgnoreIt()
{
    QFETCH(bool, topAccepts);
    QFETCH(bool, bottomAccepts);
    QFETCH(QStringList, log);
    QFETCH(QString, grab);

    QStringList got;
    Container c(QStringLiteral("C"));
    auto *bottom = new ColourView("B", QRect(0, 0, 20, 20), Qt::red, &got);
    auto *topView = new ColourView("T", QRect(0, 0, 20, 20), Qt::green, &got);
    bottom->mAcceptPress = bottomAccepts;
    topView->mAcceptPress = topAccepts;
    c.AddSubView(bottom);
    c.AddSubView(topView);

    press(c, QPoint(5, 5), !grab.isEmpty());
    QCOMPARE(got, log);
    QCOMPARE(c.subViewForMouseEvents() ? c.subViewForMouseEvents()->getName() : QString(), grab);
}

void tst_Views::grabKeepsMouseUntilRelease()
{
    QStringList log;
    Container c(QStringLiteral("C"));
    auto *a = new ColourView("A", QRect(0, 0, 20, 20), Qt::red, &log);
    auto *b = new ColourView("B", QRect(50, 0, 20, 20), Qt::green, &log);
    c.AddSubView(a);
    c.AddSubView(b);

    press(c, QPoint(5, 5));
    QMouseEvent move = mouse(QEvent::MouseMove, QPoint(55, 5));
    c.mouseMoveEvent(&move, QPoint(55, 5)); // over B, but A holds the mouse
    QMouseEvent release = mouse(QEvent::MouseButtonRelease, QPoint(55, 5), Qt::NoButton);
    c.mouseReleaseEvent(&release, QPoint(55, 5));
    QMouseEvent after = mouse(QEvent::MouseMove, QPoint(55, 5), Qt::NoButton);
    c.mouseMoveEvent(&after, QPoint(55, 5)); // the grab ended with the release
    QCOMPARE(log, (QStringList { "A press 5,5", "A move 55,5", "A release 55,5", "B move 5,5" }));
    QVERIFY(!c.subViewForMouseEvents());

    // An explicit grab outlasts a release.
    log.clear();
    c.setSubViewForMouseEvents(b);
    c.mouseReleaseEvent(&release, QPoint(5, 5));
    c.mouseMoveEvent(&after, QPoint(5, 5));
    QCOMPARE(log, (QStringList { "B release -45,5", "B move -45,5" }));
}

void tst_Views::viewRemovingItselfOnPressIsSafe()
{
    int deaths = 0;
    QStringList log;
    Container c(QStringLiteral("C"));
    auto *under = new ColourView("U", QRect(0, 0, 20, 20), Qt::red, &log, &deaths);
    auto *quitter = new ColourView("Q", QRect(0, 0, 20, 20), Qt::green, &log, &deaths);
    quitter->mAcceptPress = false;
    quitter->mRemoveSelfOnPress = true;
    c.AddSubView(under);
    c.AddSubView(quitter);

    press(c, QPoint(5, 5));
    QCOMPARE(deaths, 1);
    QCOMPARE(log, (QStringList { "Q press 5,5", "U press 5,5" }));
    QCOMPARE(c.subViewForMouseEvents(), static_cast<Kiv_ViewInterface *>(under));
    QCOMPARE(c.subViews().size(), size_t(1));
}

void tst_Views::keysGoToTheFocusView()
{
    QStringList log;
    Container c(QStringLiteral("C"));
    auto *plain = new ColourView("P", QRect(0, 0, 20, 20), Qt::red, &log);
    auto *focusable = new ColourView("F", QRect(50, 0, 20, 20), Qt::green, &log);
    focusable->setAcceptsFocus(true);
    c.AddSubView(plain);
    c.AddSubView(focusable);

    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    c.keyPressEvent(&key);
    QVERIFY(!key.isAccepted()); // no focus view yet

    press(c, QPoint(55, 5));
    press(c, QPoint(5, 5)); // takes the mouse, not the focus
    log.clear();
    c.keyPressEvent(&key);
    QCOMPARE(log, QStringList { "F key 0,0" });
    QCOMPARE(c.focusView(), static_cast<Kiv_ViewInterface *>(focusable));
}

void tst_Views::subViewPaintingIsClippedAndLocal()
{
    Container c(QStringLiteral("C"), QRect(0, 0, 60, 40));
    auto *v = new ColourView("V", QRect(20, 10, 10, 10), Qt::blue);
    v->mOverdraw = true; // paints far outside its own area
    c.AddSubView(v);

    const QImage image = paint(c, QRect(25, 0, 35, 40));
    QCOMPARE(image.pixelColor(27, 15), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(27, 25), QColor(Qt::white)); // below the view
    QCOMPARE(image.pixelColor(35, 15), QColor(Qt::white)); // right of the view
    QCOMPARE(image.pixelColor(15, 15), QColor(Qt::white)); // left of the view
    // The view was asked for its own part of the rectangle, in its own coordinates.
    QCOMPARE(v->mLastDrawRect, QRect(5, 0, 5, 10));

    v->mLastDrawRect = QRect();
    paint(c, QRect(40, 0, 20, 40)); // misses the view
    QVERIFY(v->mLastDrawRect.isNull());
}

void tst_Views::findItem_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QPoint>("where");

    QTest::newRow("three levels: centre of C plus origins of C and B")
        << "A.B.C" << true << QPoint(14 + 5 + 10, 9 + 7 + 20);
    QTest::newRow("the container itself") << "A" << true << QPoint(49, 49);
    QTest::newRow("another root") << "X.B.C" << false << QPoint();
    QTest::newRow("missing sub-view") << "A.X" << false << QPoint();
    QTest::newRow("skipping a level") << "A.C" << false << QPoint();
}

void tst_Views::findItem()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    QFETCH(QPoint, where);

    Container a(QStringLiteral("A"));
    buildTree(a);

    QPoint got(-1, -1);
    QCOMPARE(a.findItem(name, &got), found);
    if (found)
        QCOMPARE(got, where);
}

void tst_Views::findUiName_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QString>("name");

    QTest::newRow("on C") << QPoint(16, 28) << "A.B.C";
    QTest::newRow("on B beside C") << QPoint(15, 60) << "A.B";
    QTest::newRow("on the later of two overlapping") << QPoint(55, 65) << "A.D";
}

void tst_Views::findUiName()
{
    QFETCH(QPoint, point);
    QFETCH(QString, name);

    Container a(QStringLiteral("A"));
    buildTree(a);
    a.AddSubView(new ColourView("D", QRect(50, 60, 40, 40), Qt::green));

    QCOMPARE(a.findUiName(point), name);
    // What a name is given for is found again by that name.
    QPoint where;
    QVERIFY(a.findItem(name, &where));
}

void tst_Views::getViewByNameTakesLowestZOrder()
{
    Container c(QStringLiteral("C"));
    auto *high = new ColourView("Twin", QRect(0, 0, 5, 5), Qt::red);
    high->setZOrder(5);
    auto *low = new ColourView("Twin", QRect(0, 0, 5, 5), Qt::green);
    low->setZOrder(-5);
    c.AddSubView(high);
    c.AddSubView(low);
    QCOMPARE(c.getViewByName(QStringLiteral("Twin")), static_cast<Kiv_ViewInterface *>(low));
    QVERIFY(!c.getViewByName(QStringLiteral("twin"))); // exact match only
}

void tst_Views::changesTravelUpInParentCoordinates()
{
    Host host;
    Container a(QStringLiteral("A"), QRect(100, 100, 100, 100));
    a.setParent(&host);
    auto *b = new Container(QStringLiteral("B"), QRect(10, 20, 50, 50));
    auto *c = new ColourView("C", QRect(5, 7, 30, 20), Qt::red);
    b->AddSubView(c);
    a.AddSubView(b);

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
    QTest::addColumn<int>("left");

    QTest::newRow("own view") << "own" << 1 << 1;
    QTest::newRow("view of another container") << "foreign" << 0 << 2;
    QTest::newRow("z-order changed after adding") << "moved" << 1 << 1;
    QTest::newRow("the view holding the mouse") << "grab" << 1 << 1;
}

void tst_Views::removeView()
{
    QFETCH(QString, which);
    QFETCH(int, deaths);
    QFETCH(int, left);

    int died = 0;
    Host host;
    Container c(QStringLiteral("C"));
    c.setParent(&host);
    auto *first = new ColourView("1", QRect(0, 0, 20, 20), Qt::red, nullptr, &died);
    auto *second = new ColourView("2", QRect(30, 40, 20, 10), Qt::green, nullptr, &died);
    c.AddSubView(first);
    c.AddSubView(second);
    Container other(QStringLiteral("O"));
    auto *foreign = new ColourView("F", QRect(0, 0, 20, 20), Qt::blue, nullptr, &died);
    other.AddSubView(foreign);

    Kiv_ViewInterface *target = nullptr;
    if (which == "own" || which == "grab") {
        target = second;
    } else if (which == "foreign") {
        target = foreign;
    } else if (which == "moved") {
        second->setZOrder(42);
        target = second;
    }
    if (which == "grab") {
        press(c, QPoint(35, 45));
        QCOMPARE(c.subViewForMouseEvents(), target);
    }

    c.removeView(target);
    QCOMPARE(died, deaths);
    QCOMPARE(int(c.subViews().size()), left);
    QVERIFY(c.hasSubView(first));
    QVERIFY(other.hasSubView(foreign));
    QCOMPARE(host.dirty, deaths ? QList<QRect> { QRect(30, 40, 20, 10) } : QList<QRect> {});
    QVERIFY(!c.subViewForMouseEvents());
    // Mouse events after the removal reach no deleted view.
    QMouseEvent move = mouse(QEvent::MouseMove, QPoint(35, 45));
    c.mouseMoveEvent(&move, QPoint(35, 45));
}

void tst_Views::addSubViewRefusesWhatItCannotOwn_data()
{
    QTest::addColumn<QString>("which");

    QTest::newRow("null") << "null";
    QTest::newRow("itself") << "self";
    QTest::newRow("already a sub-view") << "twice";
    QTest::newRow("a view of another container") << "foreign";
}

void tst_Views::addSubViewRefusesWhatItCannotOwn()
{
    QFETCH(QString, which);

    int died = 0;
    {
        Container other(QStringLiteral("O"));
        auto *foreign = new ColourView("F", QRect(0, 0, 5, 5), Qt::red, nullptr, &died);
        other.AddSubView(foreign);
        Container c(QStringLiteral("C"));
        auto *mine = new ColourView("M", QRect(0, 0, 5, 5), Qt::red, nullptr, &died);
        c.AddSubView(mine);

        Kiv_ViewInterface *candidate = nullptr;
        if (which == "self")
            candidate = &c;
        else if (which == "twice")
            candidate = mine;
        else if (which == "foreign")
            candidate = foreign;
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kiv_ContainerViewBase::AddSubView, "));
        QVERIFY(!c.AddSubView(candidate));
        QCOMPARE(c.subViews().size(), size_t(1));
    }
    QCOMPARE(died, 2); // each view deleted exactly once, by its one owner
}

void tst_Views::cloneCopiesSubViewsInOrder()
{
    Container c(QStringLiteral("C"), QRect(0, 0, 60, 40));
    c.AddSubView(new ColourView("A", QRect(0, 0, 40, 40), Qt::red));
    c.AddSubView(new ColourView("B", QRect(20, 0, 40, 40), Qt::green));

    std::unique_ptr<Kiv_ViewInterface> copy = c.clone();
    auto *copied = static_cast<Container *>(copy.get());
    QVERIFY(!copied->getParent());
    QCOMPARE(copied->getName(), QString("C"));
    QCOMPARE(copied->subViews().size(), size_t(2));
    for (const auto &entry : copied->subViews()) {
        QVERIFY(!c.hasSubView(entry.second)); // copies, not shared views
        QCOMPARE(entry.second->getParent(), static_cast<Kiv_ViewContainerInterface *>(copied));
    }
    // Same stacking: B still over A.
    QCOMPARE(paint(*copied, copied->getLocalDrawingRect()).pixelColor(30, 20), QColor(Qt::green));

    Kiv_BlankView blank(QSize(7, 8));
    blank.setParent(&c);
    std::unique_ptr<Kiv_ViewInterface> blankCopy = blank.clone();
    QCOMPARE(blankCopy->getSize(), QSize(7, 8));
    QVERIFY(!blankCopy->getParent());
}

void tst_Views::connectionsReachSubViewsInZOrder()
{
    QStringList log;
    Container c(QStringLiteral("C"));
    auto *late = new ColourView("Late", QRect(), Qt::red, &log);
    auto *early = new ColourView("Early", QRect(), Qt::red, &log);
    early->setZOrder(-1);
    c.AddSubView(late);
    c.AddSubView(early);
    c.makeConnections(blank());
    QCOMPARE(log, (QStringList { "Early connect 0,0", "Late connect 0,0" }));
}

void tst_Views::toolTip_data()
{
    QTest::addColumn<QString>("connection");
    QTest::addColumn<QString>("modelText");
    QTest::addColumn<bool>("shown");

    const QString text = QStringLiteral("Trim the clip");
    QTest::newRow("published text") << "TipViews.Tip" << text << true;
    QTest::newRow("empty text") << "TipViews.Tip" << QString() << false;
    QTest::newRow("no such model") << "TipViews.Missing" << text << false;
    QTest::newRow("no connection name") << QString() << text << false;
    QTest::newRow("variable bound in the environment") << "$Pane.Tip" << text << true;
}

void tst_Views::toolTip()
{
    QFETCH(QString, connection);
    QFETCH(QString, modelText);
    QFETCH(bool, shown);

    Bnde_SimpleValue<QString> tip(QStringLiteral("TipViews.Tip"), modelText);
    QVERIFY(tip.Publish());
    auto *env = new Bnd_ConnectionEnvironment(blank(), nullptr);
    env->set(QStringLiteral("Pane"), QStringLiteral("TipViews"));
    const Bnd_ConnectionEnvironmentPtr envPtr(env);

    Kiv_BlankView v(QSize(40, 12));
    v.setToolTipConnectionID(connection);
    v.makeConnections(envPtr);
    QRect rect;
    QString text;
    QCOMPARE(v.getToolTip(QPoint(3, 3), &rect, &text), shown);
    if (shown) {
        QCOMPARE(text, modelText);
        QCOMPARE(rect, QRect(0, 0, 40, 12));
        tip.setValue(QStringLiteral("Changed"));
        QVERIFY(v.getToolTip(QPoint(3, 3), &rect, &text));
        QCOMPARE(text, QString("Changed")); // read when asked, never cached
    }
}

void tst_Views::toolTipWithoutOutputsIsReported()
{
    Bnde_SimpleValue<QString> tip(QStringLiteral("TipViews.Null"), QStringLiteral("text"));
    QVERIFY(tip.Publish());
    Kiv_BlankView v(QSize(10, 10));
    v.setToolTipConnectionID(QStringLiteral("TipViews.Null"));
    v.makeConnections(blank());

    Kib_Assert::clearReports();
    QString text;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("oTipRect && oTipString"));
    QVERIFY(v.getToolTip(QPoint(), nullptr, &text)); // reported, and carried on
    QCOMPARE(text, QString("text"));
    QCOMPARE(Kib_Assert::reports(),
             QStringList { "oTipRect && oTipString (coresw/UIF/Kiv/Kiv_ViewBase:277)" });
}

void tst_Views::containerToolTipComesFromSubView()
{
    Bnde_SimpleValue<QString> own(QStringLiteral("TipViews.Own"), QStringLiteral("own"));
    Bnde_SimpleValue<QString> sub(QStringLiteral("TipViews.Sub"), QStringLiteral("sub"));
    QVERIFY(own.Publish() && sub.Publish());
    Container c(QStringLiteral("C"));
    c.setToolTipConnectionID(QStringLiteral("TipViews.Own"));
    auto *v = new ColourView("V", QRect(10, 20, 30, 5), Qt::red);
    v->setToolTipConnectionID(QStringLiteral("TipViews.Sub"));
    c.AddSubView(v);
    c.makeConnections(blank());

    QRect rect;
    QString text;
    QVERIFY(c.getToolTip(QPoint(15, 22), &rect, &text));
    QCOMPARE(text, QString("sub"));
    QCOMPARE(rect, QRect(10, 20, 30, 5)); // in the container's coordinates
    QVERIFY(c.getToolTip(QPoint(80, 80), &rect, &text));
    QCOMPARE(text, QString("own"));
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
