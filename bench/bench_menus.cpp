// Opening a menu of 500 items in one binary with its Qt equivalent:
// - a popup rebuilt from its models as it is about to show (every item's script asked whether
//   it can run, its text and accelerator applied), as every opening does;
// - the same 500 actions built into a plain QMenu (text, data, shortcut, enabled state).
// The rebuild must stay under one 60 Hz frame and within 1.5 times the plain build.

#include "BenchRatio.h"

#include "Bnde_ActionModel.h"
#include "Mnu_CommandSegment.h"
#include "Mnu_QtManager.h"
#include "Mnu_SeparatorSegment.h"

#include <QApplication>
#include <QMenu>

namespace {

constexpr int cItems = 500;

QString label(int i)
{
    return QStringLiteral("Clip %1").arg(i);
}

QString accelerator(int i)
{
    return i < 9 ? QStringLiteral("Ctrl+%1").arg(i + 1) : QString();
}

void BM_Menu_RebuildOnOpening(benchmark::State &state)
{
    Bnde_ActionModelWithType<Bndt_Action<void()>> open("Bench.Actions.open", [] {});
    open.Publish();
    Mnu_QtManager manager;
    Mnu_Menu *menu = manager.getMenu();
    menu->setName(QStringLiteral("Clips"));
    for (int i = 0; i < cItems; ++i) {
        if (i % 50 == 49)
            menu->addSegment(new Mnu_SeparatorSegment);
        auto *item = new Mnu_CommandSegment;
        item->setName(label(i));
        item->setItemText(label(i));
        item->setAccelerator(accelerator(i));
        item->setActionScript(QStringLiteral("Bench.Actions.open()"));
        menu->addSegment(item);
    }
    manager.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    manager.instantiateMenus();
    for (auto _ : state)
        manager.aboutToShow();
    if (manager.getPopupMenu()->actions().size() < cItems)
        state.SkipWithError("the menu was not built");
}
BENCHMARK(BM_Menu_RebuildOnOpening)->Unit(benchmark::kMicrosecond);

void BM_QMenu_Build(benchmark::State &state)
{
    QMenu menu;
    for (auto _ : state) {
        menu.clear();
        for (int i = 0; i < cItems; ++i) {
            if (i % 50 == 49)
                menu.addSeparator();
            QAction *action = menu.addAction(label(i));
            action->setData(label(i));
            if (!accelerator(i).isEmpty())
                action->setShortcut(QKeySequence(accelerator(i)));
            action->setEnabled(true);
        }
    }
}
BENCHMARK(BM_QMenu_Build)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return BenchRatio::runAndCompare(argc, argv,
                                     { { "BM_Menu_RebuildOnOpening", "BM_QMenu_Build", 1.5 } });
}
