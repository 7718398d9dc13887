// The key map against the nearest Qt equivalents, in one binary:
// - reading a keymap of 10,000 entries (target: under 50 ms), against parsing the same text
//   into a QDomDocument (the keymap reader streams instead, and should not be slower);
// - one key press dispatched by handleAction() to an action model (target: under 2 us),
//   against a shortcut-style lookup of the key sequence in an ordered map of QKeySequence and
//   a call of the function found.

#include "BenchRatio.h"

#include "Bnde_ActionModel.h"
#include "Kiv_KeymapMgr.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QKeyEvent>

#include <functional>
#include <map>

namespace {

constexpr int cEntries = 10000;

// Keys F1..F12 with the 16 modifier combinations, in contexts C0, C1, ...
QKeySequence keyOf(int i)
{
    const Qt::KeyboardModifiers modifiers = Qt::KeyboardModifiers::fromInt(((i / 12) % 16) << 25);
    return QKeySequence(QKeyCombination(modifiers, Qt::Key(Qt::Key_F1 + i % 12)));
}

QString contextOf(int i)
{
    return QStringLiteral("C%1").arg(i / 192);
}

const QString &bigKeymap()
{
    static const QString xml = [] {
        QString text = QStringLiteral("<KeyMappings>");
        for (int i = 0; i < cEntries; ++i)
            text += QStringLiteral("<Entries Context=\"%1\"><Entry id=\"A%2\" key=\"%3\">"
                                   "<Action>Bench.Go</Action><Description>Entry %2"
                                   "</Description></Entry></Entries>")
                        .arg(contextOf(i))
                        .arg(i)
                        .arg(keyOf(i).toString(QKeySequence::NativeText));
        return text + QStringLiteral("</KeyMappings>");
    }();
    return xml;
}

void BM_Keymap_Load10000(benchmark::State &state)
{
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    for (auto _ : state) {
        keymap.setupCurrentLang(0);
        keymap.clearMgr();
        keymap.loadFromXMLString(bigKeymap(), 0);
    }
    if (keymap.KeyMap(0).size() != cEntries)
        state.SkipWithError("not every entry was read");
}
BENCHMARK(BM_Keymap_Load10000)->Unit(benchmark::kMillisecond);

void BM_QDom_Parse10000(benchmark::State &state)
{
    for (auto _ : state) {
        QDomDocument document;
        benchmark::DoNotOptimize(document.setContent(bigKeymap()));
    }
}
BENCHMARK(BM_QDom_Parse10000)->Unit(benchmark::kMillisecond);

void BM_Keymap_HandleAction(benchmark::State &state)
{
    long performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> go("Bench.Go", [&] { ++performed; });
    go.Publish();
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    keymap.setupCurrentLang(0);
    keymap.clearMgr();
    keymap.loadFromXMLString(bigKeymap(), 0);
    const int i = cEntries / 2;
    QKeyEvent press(QEvent::KeyPress, keyOf(i)[0].key(), keyOf(i)[0].keyboardModifiers());
    const QString context = contextOf(i);
    const Bnd_ConnectionEnvironmentPtr env = Bnd_ConnectionEnvironment::blankEnvironment();
    for (auto _ : state)
        benchmark::DoNotOptimize(keymap.handleAction(&press, context, env, 0));
    if (performed != long(state.iterations()))
        state.SkipWithError("the action did not run");
}
BENCHMARK(BM_Keymap_HandleAction);

void BM_QKeySequenceMap_Dispatch(benchmark::State &state)
{
    long performed = 0;
    std::map<std::pair<QString, QKeySequence>, std::function<void()>> shortcuts;
    for (int i = 0; i < cEntries; ++i)
        shortcuts[{ contextOf(i), keyOf(i) }] = [&] {
            ++performed;
        };
    const int i = cEntries / 2;
    QKeyEvent press(QEvent::KeyPress, keyOf(i)[0].key(), keyOf(i)[0].keyboardModifiers());
    const QString context = contextOf(i);
    for (auto _ : state) {
        const auto found = shortcuts.find({ context, QKeySequence(press.keyCombination()) });
        if (found != shortcuts.end())
            found->second();
    }
    benchmark::DoNotOptimize(performed);
}
BENCHMARK(BM_QKeySequenceMap_Dispatch);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return BenchRatio::runAndCompare(
        argc, argv,
        { { "BM_Keymap_Load10000", "BM_QDom_Parse10000", 1.5 },
          { "BM_Keymap_HandleAction", "BM_QKeySequenceMap_Dispatch", 0 } });
}
