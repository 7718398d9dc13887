// Action scripts against the typed listeners they stand in for, in one binary:
// - a typical three-statement script parsed, connected and evaluated from its text (what a
//   delayed action or a key mapping does for each trigger), reported as scripts per second;
// - the same script evaluated only, connected once beforehand (what a button does per click);
// - the same three model writes sent directly through typed listeners.
//
// The literal `true` ends its line, so the assignment of it comes last.

#include "BenchRatio.h"

#include "Bnd_ConnectionToModel.h"
#include "Bnde_ActionModel.h"
#include "Bnde_SimpleValue.h"
#include "Uip_ParseScript.h"

#include <QCoreApplication>

namespace {

const QString cScript
    = QStringLiteral("Clip.Name = \"Intro\"; Transport.Actions.play(); Transport.Loop = true");

struct Models
{
    Models()
    {
        name.Publish();
        loop.Publish();
        play.Publish();
    }
    Bnde_SimpleValue<QString> name { "Clip.Name", "Untitled" };
    Bnde_SimpleValue<bool> loop { "Transport.Loop", false };
    long played = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> play { "Transport.Actions.play", [this] {
                                                            ++played;
                                                        } };
};

void BM_Script_ParseConnectEvaluate(benchmark::State &state)
{
    Models models;
    const Bnd_ConnectionEnvironmentPtr env = Bnd_ConnectionEnvironment::blankEnvironment();
    for (auto _ : state) {
        std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(cScript, nullptr);
        node->ConnectAndTypeCheck(env, nullptr);
        Bnd_Variant result;
        benchmark::DoNotOptimize(node->Evaluate(&result));
    }
    state.SetItemsProcessed(state.iterations());
    if (models.played != long(state.iterations()))
        state.SkipWithError("the script did not run");
}
BENCHMARK(BM_Script_ParseConnectEvaluate);

void BM_Script_Evaluate(benchmark::State &state)
{
    Models models;
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(cScript, nullptr);
    if (!node->ConnectAndTypeCheck(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr))
        state.SkipWithError("the script did not connect");
    for (auto _ : state) {
        Bnd_Variant result;
        benchmark::DoNotOptimize(node->Evaluate(&result));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Script_Evaluate);

void BM_Listener_DirectWrites(benchmark::State &state)
{
    Models models;
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> name("Clip.Name");
    Bnd_ConnectionToModel<Bndt_Action<void()>> play("Transport.Actions.play");
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> loop("Transport.Loop");
    const QString intro = QStringLiteral("Intro");
    for (auto _ : state) {
        name.setValue(intro);
        benchmark::DoNotOptimize(play.invoke());
        loop.setValue(true);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Listener_DirectWrites);

// A chain of assignments "A=A=...=B" as one hostile file line: parsing must stay linear, so the
// 64 times longer chain takes about 64 times as long (compared in main()).
void BM_Script_ParseChain(benchmark::State &state)
{
    const QString script = QString(QStringLiteral("A=")).repeated(int(state.range(0))) + 'B';
    for (auto _ : state)
        benchmark::DoNotOptimize(Uip_ParseScript(script, nullptr));
    state.SetBytesProcessed(state.iterations() * script.size() * qsizetype(sizeof(QChar)));
}
BENCHMARK(BM_Script_ParseChain)->Arg(1 << 10)->Arg(1 << 16);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return BenchRatio::runAndCompare(
        argc, argv,
        { { "BM_Script_Evaluate", "BM_Listener_DirectWrites", 5.0 },
          { "BM_Script_ParseConnectEvaluate", "BM_Listener_DirectWrites", 100.0 },
          { "BM_Script_ParseChain/65536", "BM_Script_ParseChain/1024", 96.0 } });
}
