#include "Kiv_StatusWindow.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include <memory>

namespace {
int gCallbackCalls = 0;

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
    void layout_data();
    void layout();
    void callbackOnceOnDestruction();
    void hideDeliversNothing();
};

void tst_StatusWindow::layout_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("withProgress");
    QTest::addColumn<int>("maximum"); // of setProgress(5, maximum) afterwards; -2: not called
    QTest::addColumn<QList<QRect>>("rects"); // message, bar, time, cancel

    const QRect time(4, 44, 100, 20), cancel(104, 44, 100, 20), noBar(0, 0, 0, 0);
    const QList<QRect> withBar { { 4, 4, 200, 20 }, { 4, 24, 200, 20 }, time, cancel };
    const QList<QRect> withoutBar { { 4, 4, 200, 40 }, noBar, time, cancel };
    QTest::newRow("208 x 68 with the bar") << QSize(208, 68) << true << -2 << withBar;
    QTest::newRow("208 x 68 without the bar") << QSize(208, 68) << false << -2 << withoutBar;
    QTest::newRow("odd sizes round down")
        << QSize(301, 102) << true << -2
        << QList<QRect> {
               { 4, 4, 293, 31 }, { 4, 35, 293, 31 }, { 4, 66, 146, 31 }, { 150, 66, 146, 31 }
           };
    QTest::newRow("bar disappears") << QSize(208, 68) << true << 0 << withoutBar;
    QTest::newRow("bar appears") << QSize(208, 68) << false << 10 << withBar;
    QTest::newRow("negative maximum keeps the bar") << QSize(208, 68) << true << -1 << withBar;
}

void tst_StatusWindow::layout()
{
    QFETCH(QSize, size);
    QFETCH(bool, withProgress);
    QFETCH(int, maximum);
    QFETCH(QList<QRect>, rects);

    const auto window = shownWindow(size, withProgress);
    if (maximum != -2)
        window->setProgress(5, maximum);
    QList<QRect> shown;
    for (const char *name : { "KivThermMessage", "KivThermProgressBar", "KivThermTimeMessage",
                              "KivThermCancelMessage" })
        shown << window->findChild<QWidget *>(name, Qt::FindDirectChildrenOnly)->geometry();
    QCOMPARE(shown, rects);
    const auto *bar = window->findChild<QProgressBar *>();
    QCOMPARE(bar->value(), maximum > 0 ? 5 : -1); // a bar laid out afresh is reset
    QCOMPARE(bar->maximum(), maximum > 0 ? maximum : 100);
}

void tst_StatusWindow::callbackOnceOnDestruction()
{
    gCallbackCalls = 0;
    {
        const auto window = shownWindow(QSize(208, 68), true);
        auto *withCallback = new Kiv_StatusWindow(window.get(), QString(), Qt::WindowFlags(),
                                                  [] { ++gCallbackCalls; });
        withCallback->showWindow(false);
        withCallback->hideWindow();
        QCOMPARE(gCallbackCalls, 0);
    } // the parent takes the window with it
    QCOMPARE(gCallbackCalls, 1);
}

// Hiding discards the keys typed meanwhile and delivers no other event: a pending event that
// destroys the window must not run inside hideWindow().
void tst_StatusWindow::hideDeliversNothing()
{
    auto window = shownWindow(QSize(208, 68), true);
    QCoreApplication::postEvent(window.get(), new QKeyEvent(QEvent::KeyPress, Qt::Key_A, {}));
    struct Destroyer : QObject
    {
        std::unique_ptr<Kiv_StatusWindow> *window;
        bool event(QEvent *) override
        {
            window->reset();
            return true;
        }
    } destroyer;
    destroyer.window = &window;
    QCoreApplication::postEvent(&destroyer, new QEvent(QEvent::User));
    window->hideWindow();
    QVERIFY(window && !window->isVisible());
    QCoreApplication::sendPostedEvents();
    QVERIFY(!window);
}

QTEST_MAIN(tst_StatusWindow)
#include "tst_statuswindow.moc"
