// kivdemo: the KivCore showcase. A small editing screen built from a form of KivCore widgets,
// bound to an in-process project published as models.
//
//   kivdemo                      opens the main window
//   kivdemo --screenshot F.png   renders the main window offscreen into F.png and exits
//   kivdemo --list-models        prints every published model with its type and value
//   kivdemo --language de_DE     loads the library's translations for that locale
//   kivdemo --large-bin          starts with a million generated clips in the bin

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "ClipBin.h"
#include "DemoProject.h"
#include "Kib_DirPaths.h"
#include "Kib_Resource.h"
#include "Kiv_Application.h"
#include "Kiv_ConnectionUtils.h"
#include "Kiv_CreateWidgetFromUILayout.h"
#include "Kiv_FontManager.h"
#include "Kiv_KeymapMgr.h"
#include "Kiv_ListWithColumns.h"
#include "Kiv_MenuBar.h"
#include "Kiv_Script.h"
#include "Kiv_StatusWindow.h"
#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"
#include "ShortcutsDialog.h"

#include <QCommandLineParser>
#include <QDir>
#include <QDomDocument>
#include <QDropEvent>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QLayout>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QSet>
#include <QStandardPaths>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// The screenshot and the listing need no display: choose the offscreen platform before the
// application object exists, unless the caller chose one.
void preferOffscreenWhenHeadless(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const bool headless = !std::strcmp(argv[i], "--screenshot")
            || !std::strcmp(argv[i], "--list-models") || !std::strcmp(argv[i], "--check-keys");
        if (headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

// Shows the progress of the project's long operations in a status window.
class ProgressWindow
{
public:
    explicit ProgressWindow(QWidget *iParent)
        : mParent(iParent)
    { }
    void report(const QString &iMessage, int iPercent)
    {
        if (iPercent < 0) {
            mWindow.reset();
            return;
        }
        if (!mWindow) {
            mWindow
                = std::make_unique<Kiv_StatusWindow>(mParent, QStringLiteral("KivDemoProgress"));
            mWindow->setMsgText(iMessage);
            mWindow->setTMsgText(QStringLiteral("About 3 seconds left"));
            mWindow->setCMsgText(QStringLiteral("Simulated export"));
            mWindow->showWindow(true);
        }
        mWindow->setProgress(iPercent, 100);
    }

private:
    QWidget *mParent;
    std::unique_ptr<Kiv_StatusWindow> mWindow;
};

// Shows or hides the panels as the View menu's models say.
class PanelVisibility
{
public:
    explicit PanelVisibility(QWidget *iWindow)
    {
        const std::pair<const char *, const char *> panels[]
            = { { "View.ShowClips", "clipBox" },
                { "View.ShowBin", "binBox" },
                { "View.ShowInspector", "inspectorBox" },
                { "View.ShowActivity", "activityBox" } };
        for (const auto &[model, panel] : panels) {
            QWidget *widget = iWindow->findChild<QWidget *>(QString::fromLatin1(panel));
            auto listener = std::make_unique<Bnd_ConnectionToModel<Bndt_SimpleValue<bool>>>(
                QString::fromLatin1(model));
            auto *raw = listener.get();
            listener->setReceiveMessageCB([raw, widget](const Bnd_MessageInterface &) {
                if (widget)
                    widget->setVisible(raw->getValue(true));
            });
            mListeners.push_back(std::move(listener));
        }
    }

private:
    std::vector<std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<bool>>>> mListeners;
};

// The keys that reach the window (no field took them): the monitor's transport keys, then the
// window's own (menu actions among them).
class WindowKeys : public QObject
{
public:
    explicit WindowKeys(QWidget *iWindow) { iWindow->installEventFilter(this); }

protected:
    bool eventFilter(QObject *iObject, QEvent *iEvent) override
    {
        if (iEvent->type() != QEvent::KeyPress)
            return QObject::eventFilter(iObject, iEvent);
        auto *key = static_cast<QKeyEvent *>(iEvent);
        Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
        const Bnd_ConnectionEnvironmentPtr env = Bnd_ConnectionEnvironment::blankEnvironment();
        if (keymap.handleAction(key, QStringLiteral("MainMonitor"), env)
            || keymap.handleAction(key, QStringLiteral("MainWindow"), env)) {
            key->accept();
            return true;
        }
        return false;
    }
};

// The monitor opens the first clip dropped on it from the bin.
class MonitorDrops : public QObject
{
public:
    MonitorDrops(QWidget *iMonitor, ClipBin &iBin)
        : mBin(iBin)
    {
        iMonitor->setAcceptDrops(true);
        iMonitor->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *iObject, QEvent *iEvent) override
    {
        if (iEvent->type() == QEvent::DragEnter || iEvent->type() == QEvent::DragMove) {
            auto *drag = static_cast<QDropEvent *>(iEvent);
            if (firstRow(drag->mimeData()) >= 0) {
                drag->acceptProposedAction();
                return true;
            }
        } else if (iEvent->type() == QEvent::Drop) {
            auto *drop = static_cast<QDropEvent *>(iEvent);
            const long row = firstRow(drop->mimeData());
            if (row >= 0) {
                drop->acceptProposedAction();
                mBin.openRow(row);
                return true;
            }
        }
        return QObject::eventFilter(iObject, iEvent);
    }

private:
    // The row of the first clip of a bin drag ("mobIDDragObjectList"), -1 for anything else.
    static long firstRow(const QMimeData *iData)
    {
        QDomDocument document;
        if (!iData || !iData->hasText() || !document.setContent(iData->text())
            || document.documentElement().tagName() != QLatin1String("mobIDDragObjectList"))
            return -1;
        bool ok = false;
        const long row
            = document.documentElement().firstChildElement().attribute("row").toLong(&ok);
        return ok ? row : -1;
    }

    ClipBin &mBin;
};

// Draws one opened menu of the bar into the window's picture, where it would drop down.
void drawOpenMenu(QImage &ioImage, Kiv_MenuBar *iBar, QWidget *iWindow, const char *iMenu)
{
    Mnu_QtManager *manager = nullptr;
    const auto bar = iBar->getMenuBarManager();
    for (int i = 0; bar && i < bar->getMenuCount(); ++i)
        if (bar->getMenuAt(i)->getMenu()->getName() == QLatin1String(iMenu))
            manager = bar->getMenuAt(i);
    QAction *entry = iBar->findAction(QVariant(QString::fromLatin1(iMenu)));
    if (!manager || !entry)
        return;
    manager->aboutToShow(); // built from the models as an opening builds it
    QMenu *popup = manager->getPopupMenu();
    popup->ensurePolished();
    popup->resize(popup->sizeHint());
    const QPoint at = iBar->mapTo(iWindow, iBar->actionGeometry(entry).bottomLeft());
    QPainter(&ioImage).drawImage(at, popup->grab().toImage());
}

// How many distinct colours the image has, counting up to iEnough.
int distinctColours(const QImage &iImage, int iEnough)
{
    QSet<QRgb> seen;
    for (int y = 0; y < iImage.height() && seen.size() < iEnough; y += 3)
        for (int x = 0; x < iImage.width() && seen.size() < iEnough; x += 3)
            seen.insert(iImage.pixel(x, y));
    return int(seen.size());
}

} // namespace

int main(int argc, char **argv)
{
    preferOffscreenWhenHeadless(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("KivCore"));
    QCoreApplication::setApplicationName(QStringLiteral("kivdemo"));
    Kib_DirPaths::setProductName(QStringLiteral("KivCore showcase"));
    Kiv_Application app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The KivCore showcase"));
    parser.addHelpOption();
    const QCommandLineOption screenshot(
        QStringLiteral("screenshot"),
        QStringLiteral("Render the main window into <file> and exit."), QStringLiteral("file"));
    const QCommandLineOption listModels(QStringLiteral("list-models"),
                                        QStringLiteral("Print every published model and exit."));
    const QCommandLineOption checkKeys(
        QStringLiteral("check-keys"),
        QStringLiteral(
            "Report keys that clash with menu accelerators or reach nothing, and exit."));
    const QCommandLineOption language(QStringLiteral("language"),
                                      QStringLiteral("Load the translations for <locale>."),
                                      QStringLiteral("locale"));
    const QCommandLineOption largeBin(QStringLiteral("large-bin"),
                                      QStringLiteral("Start with a million generated clips."));
    parser.addOptions({ screenshot, listModels, checkKeys, language, largeBin });
    parser.process(app);

    if (parser.isSet(language)) {
        QString locale = parser.value(language);
        const QString dir
            = QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
        app.initTranslations(dir, Kib_DirPaths::GetPath(Kib_DirPaths::TranslationsDir), locale);
    }
    Kiv_FontManager::loadSettingsFile(Kib_Resource::getResourcePath()
                                      + QStringLiteral("Settings/KivSettings.xml"));

    DemoProject project;
    if (parser.isSet(listModels)) {
        QTextStream out(stdout);
        for (const QString &line : project.describeModels())
            out << line << '\n';
        return 0;
    }

    std::unique_ptr<QWidget> window(
        Kiv_CreateWidgetFromUILayout(QStringLiteral("KivDemoMain"), nullptr, "main", false));
    if (!window) {
        std::fprintf(stderr, "kivdemo: cannot load the form %sForms/KivDemoMain.ui\n",
                     qPrintable(Kib_Resource::getResourcePath()));
        return 1;
    }
    app.setMainWidget(window.get());
    // Menus open as windows of their own: their look is set for the whole application.
    app.setStyleSheet(QStringLiteral(
        "QMenuBar { background: #2e3440; color: #d8dee9; font-family: \"DejaVu Sans\"; "
        "font-size: 9pt; }"
        "QMenuBar::item { padding: 3px 8px; background: transparent; }"
        "QMenuBar::item:selected { background: #434c5e; }"
        "QMenu { background: #2e3440; color: #d8dee9; border: 1px solid #4c566a; "
        "font-family: \"DejaVu Sans\"; font-size: 9pt; }"
        "QMenu::item { padding: 4px 24px 4px 24px; }"
        "QMenu::item:selected { background: #5e81ac; color: #eceff4; }"
        "QMenu::item:disabled { color: #6b7385; }"
        "QMenu::separator { height: 1px; background: #4c566a; margin: 3px 8px; }"));
    // The menu bar comes from its description; connecting the window fills it.
    auto *menuBar = new Kiv_MenuBar(window.get(), "Menus/KivDemoMenuBar");
    window->layout()->setMenuBar(menuBar);

    // Keys: the shipped keymaps (a table per keyboard language), then the user's own.
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    keymap.setMenuBar(menuBar);
    const bool keymapsRead = keymap.loadAll(
        Kib_Resource::getResourcePath() + QStringLiteral("Keymaps/"), QStringLiteral("Keymap"));
    const QString customKeys = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
        + QStringLiteral("/Keymap-custom.xml");
    ShortcutsDialog::loadCustomKeys(customKeys);
    WindowKeys windowKeys(window.get());
    if (parser.isSet(checkKeys)) {
        // Every language's table, every context the showcase uses.
        int problems = keymapsRead ? 0 : 1;
        for (const int lang : { 0, 7, 12 })
            for (const char *context : { "MainWindow", "MainMonitor", "LineEdit", "Hotkey" })
                for (const QString &line :
                     keymap.conflicts(QString::fromLatin1(context),
                                      Bnd_ConnectionEnvironment::blankEnvironment(), lang)) {
                    std::fprintf(stderr, "kivdemo: language %d: %s\n", lang, qPrintable(line));
                    ++problems;
                }
        std::printf("kivdemo: %d key problems\n", problems);
        return problems ? 1 : 0;
    }
    // The bin goes into its place in the form before the window is connected.
    ClipBin bin(project);
    if (QWidget *binArea = window->findChild<QWidget *>(QStringLiteral("binArea")))
        bin.install(binArea);
    project.setShortcutsOpener([&] {
        ShortcutsDialog dialog(window.get(), menuBar, customKeys);
        if (dialog.exec() == QDialog::Accepted)
            project.say(QStringLiteral("Keyboard shortcuts saved to %1").arg(customKeys));
    });
    Kiv_ConnectionUtils::recursiveConnect(window.get(),
                                          Bnd_ConnectionEnvironment::blankEnvironment());
    PanelVisibility panels(window.get());

    // The monitor's context menu, from its own description.
    Mnu_QtManager monitorMenu(nullptr, "Menus/MonitorContext");
    if (QWidget *monitor = window->findChild<QWidget *>(QStringLiteral("monitor"))) {
        monitor->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(monitor, &QWidget::customContextMenuRequested, monitor,
                         [&monitorMenu, monitor](const QPoint &iPos) {
                             monitorMenu.popup(monitor->mapToGlobal(iPos),
                                               Bnd_ConnectionEnvironment::blankEnvironment());
                         });
    }

    if (parser.isSet(largeBin))
        Bnd_ConnectionToModel<Bndt_SimpleValue<bool>>(QStringLiteral("View.LargeBin"))
            .setValue(true);
    std::unique_ptr<MonitorDrops> monitorDrops;
    if (QWidget *monitor = window->findChild<QWidget *>(QStringLiteral("monitor")))
        monitorDrops = std::make_unique<MonitorDrops>(monitor, bin);

    ProgressWindow progress(window.get());
    project.setProgressSink([&progress](const QString &iMessage, int iPercent) {
        progress.report(iMessage, iPercent);
    });

    if (parser.isSet(screenshot)) {
        // A moment of editing, played through the same scripts buttons and keys run.
        Kiv_Script scene;
        scene.setText(
            QStringLiteral("Project.Actions.nextClip(); Transport.Actions.fastForward(); "
                           "Transport.Actions.addMarker(); Transport.Actions.fastForward(); "
                           "Transport.Actions.stepForward(); Transport.Actions.addMarker(); "
                           "BinColumns.sortByColumn[1](); Transport.Loop = true"));
        if (!scene.connect(Bnd_ConnectionEnvironment::blankEnvironment(), window.get())
            || !scene.run())
            std::fprintf(stderr, "kivdemo: the screenshot scene did not run\n");
        window->show();
        QCoreApplication::processEvents();
        // Three clips selected in the bin, as a Shift-click selects them.
        if (Kiv_ListWithColumns *list = bin.list()) {
            list->SetSelected(2);
            list->SetSelected(4, false, Qt::ShiftModifier);
            QCoreApplication::processEvents();
        }
        const QString file = parser.value(screenshot);
        QImage image = window->grab().toImage();
        drawOpenMenu(image, menuBar, window.get(), "Playback");
        if (distinctColours(image, 64) < 64) {
            std::fprintf(stderr,
                         "kivdemo: the window rendered with almost no colours; not saved\n");
            return 1;
        }
        if (!image.save(file)) {
            std::fprintf(stderr, "kivdemo: cannot write %s\n", qPrintable(file));
            return 1;
        }
        std::printf("kivdemo: wrote %s\n", qPrintable(QDir(file).absolutePath()));
        return 0;
    }

    window->show();
    return app.exec();
}
