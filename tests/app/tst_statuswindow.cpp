#include "Kiv_FontManager.h"
#include "Kiv_StatusWindow.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include <memory>

namespace {

int gCallbackCalls = 0;
void countCall()
{
    ++gCallbackCalls;
}

QLabel *label(const QWidget &iWindow, const char *iName)
{
    return iWindow.findChild<QLabel *>(QLatin1String(iName), Qt::FindDirectChildrenOnly);
}
QProgressBar *progressBar(const QWidget &iWindow)
{
    return iWindow.findChild<QProgressBar *>(QStringLiteral("KivThermProgressBar"),
                                             Qt::FindDirectChildrenOnly);
}

// The geometries of the four children: message, bar, time, cancel.
QList<QRect> childRects(const QWidget &iWindow)
{
    QList<QRect> rects;
    for (const char *name : { "KivThermMessage", "KivThermTimeMessage", "KivThermCancelMessage" }) {
        const QLabel *child = label(iWindow, name);
        rects << (child ? child->geometry() : QRect(-1, -1, -1, -1));
    }
    rects.insert(1, progressBar(iWindow)->geometry());
    return rects;
}

// Counts the keys and the other posted events that reach a window.
class EventCounter : public QObject
{
public:
    int mKeys = 0;
    int mOthers = 0;
    bool eventFilter(QObject *, QEvent *iEvent) override
    {
        if (iEvent->type() == QEvent::KeyPress || iEvent->type() == QEvent::KeyRelease)
            ++mKeys;
        else if (iEvent->type() == QEvent::User)
            ++mOthers;
        return false;
    }
};

// A window of the given size, laid out with or without the bar and shown.
std::unique_ptr<Kiv_StatusWindow> shownWindow(QSize iSize, bool iWithProgress)
{
    auto window = std::make_unique<Kiv_StatusWindow>(nullptr, QStringLiteral("status"));
    window->setGeometry(100, 100, iSize.width(), iSize.height());
    window->showWindow(iWithProgress);
    return window;
}

} // namespace

class tst_StatusWindow : public QObject
{
    Q_OBJECT

private slots:
    void children();
    void layout_data();
    void layout();
    void progress_data();
    void progress();
    void callbackOnceOnDestruction();
    void hideDiscardsTypedKeys();
};

void tst_StatusWindow::children()
{
    const QFont font(QStringLiteral("Status Sans"), 13);
    Kiv_FontManager::setFont(QStringLiteral("FontSettings.Kiv_StatusWindow.Font"), font);
    QWidget parent;
    Kiv_StatusWindow window(&parent, QStringLiteral("thermometer"), Qt::Tool);

    QCOMPARE(window.objectName(), QStringLiteral("thermometer"));
    QCOMPARE(window.parentWidget(), &parent);
    QCOMPARE(window.windowFlags() & Qt::WindowType_Mask, Qt::Tool);
    QCOMPARE(window.font().family(), font.family());
    QCOMPARE(window.font().pointSize(), 13);

    QStringList names;
    for (const QObject *child : window.children()) {
        if (child->isWidgetType())
            names << QString::fromLatin1(child->metaObject()->className()) + ' '
                    + child->objectName();
    }
    QCOMPARE(names,
             QStringList({ "QLabel KivThermMessage", "QProgressBar KivThermProgressBar",
                           "QLabel KivThermTimeMessage", "QLabel KivThermCancelMessage" }));
    QCOMPARE(label(window, "KivThermMessage")->alignment(), Qt::AlignLeft | Qt::AlignTop);
}

void tst_StatusWindow::layout_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("withProgress");
    QTest::addColumn<QList<QRect>>("rects"); // message, bar, time, cancel

    QTest::newRow("208 x 68 with the bar")
        << QSize(208, 68) << true
        << QList<QRect> {
               { 4, 4, 200, 20 }, { 4, 24, 200, 20 }, { 4, 44, 100, 20 }, { 104, 44, 100, 20 }
           };
    QTest::newRow("208 x 68 without the bar")
        << QSize(208, 68) << false
        << QList<QRect> {
               { 4, 4, 200, 40 }, { 0, 0, 0, 0 }, { 4, 44, 100, 20 }, { 104, 44, 100, 20 }
           };
    QTest::newRow("odd sizes round down")
        << QSize(301, 102) << true
        << QList<QRect> {
               { 4, 4, 293, 31 }, { 4, 35, 293, 31 }, { 4, 66, 146, 31 }, { 150, 66, 146, 31 }
           };
}

void tst_StatusWindow::layout()
{
    QFETCH(QSize, size);
    QFETCH(bool, withProgress);
    QFETCH(QList<QRect>, rects);

    const auto window = shownWindow(size, withProgress);
    QVERIFY(window->isVisible());
    QCOMPARE(window->size(), size);
    QCOMPARE(childRects(*window), rects);
}

void tst_StatusWindow::progress_data()
{
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("withProgress");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("barHeight"); // afterwards
    QTest::addColumn<int>("messageHeight");
    QTest::addColumn<int>("barValue"); // -1: the bar's reset value
    QTest::addColumn<int>("barMaximum");

    // 208 x 68: lines of 20. A bar laid out afresh is reset: value -1 of 0 ... 100.
    QTest::newRow("bar removed") << true << true << 5 << 0 << 0 << 40 << -1 << 100;
    QTest::newRow("bar brought back") << true << false << 5 << 10 << 20 << 20 << 5 << 10;
    QTest::newRow("bar updated") << true << true << 7 << 9 << 20 << 20 << 7 << 9;
    QTest::newRow("without the bar, maximum 0") << true << false << 5 << 0 << 0 << 40 << -1 << 100;
    QTest::newRow("negative maximum") << true << true << 5 << -1 << 20 << 20 << -1 << 100;
    QTest::newRow("hidden, with the bar") << false << true << 5 << 10 << 20 << 20 << -1 << 100;
    QTest::newRow("hidden, without the bar") << false << false << 5 << 10 << 0 << 40 << -1 << 100;
}

void tst_StatusWindow::progress()
{
    QFETCH(bool, shown);
    QFETCH(bool, withProgress);
    QFETCH(int, value);
    QFETCH(int, maximum);
    QFETCH(int, barHeight);
    QFETCH(int, messageHeight);
    QFETCH(int, barValue);
    QFETCH(int, barMaximum);

    const auto window = shownWindow(QSize(208, 68), withProgress);
    if (!shown)
        window->hideWindow();

    window->setProgress(value, maximum);

    QCOMPARE(window->isVisible(), shown);
    const QProgressBar *bar = progressBar(*window);
    QCOMPARE(bar->height(), barHeight);
    QCOMPARE(label(*window, "KivThermMessage")->height(), messageHeight);
    QCOMPARE(bar->value(), barValue);
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), barMaximum);
}

void tst_StatusWindow::callbackOnceOnDestruction()
{
    gCallbackCalls = 0;
    {
        const auto window = shownWindow(QSize(208, 68), true);
        auto *withCallback
            = new Kiv_StatusWindow(window.get(), QString(), Qt::WindowFlags(), &countCall);
        withCallback->showWindow(false);
        withCallback->hideWindow();
        QCOMPARE(gCallbackCalls, 0);
    } // the parent takes the window with it
    QCOMPARE(gCallbackCalls, 1);

    delete new Kiv_StatusWindow; // no callback: nothing to call
    QCOMPARE(gCallbackCalls, 1);
}

void tst_StatusWindow::hideDiscardsTypedKeys()
{
    const auto window = shownWindow(QSize(208, 68), true);
    EventCounter counter;
    window->installEventFilter(&counter);

    // Typed while the operation ran, not delivered yet.
    QCoreApplication::postEvent(window.get(),
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    QCoreApplication::postEvent(window.get(),
                                new QKeyEvent(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier));
    QCoreApplication::postEvent(window.get(), new QEvent(QEvent::User));

    window->hideWindow();
    QCoreApplication::sendPostedEvents();

    QVERIFY(!window->isVisible());
    QCOMPARE(counter.mKeys, 0);
    QCOMPARE(counter.mOthers, 1);

    // Keys typed afterwards arrive.
    QCoreApplication::postEvent(window.get(),
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(counter.mKeys, 1);
    window->removeEventFilter(&counter);
}

QTEST_MAIN(tst_StatusWindow)
#include "tst_statuswindow.moc"
