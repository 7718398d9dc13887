// Publishes a small sample project the way a host application would, then describes what the
// runtime holds: every published model with its type and value, and how a few names resolve.

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {
void listModels(QTextStream &out, const QString &iName, const Bnd_ModelInterface *iModel,
                int iDepth)
{
    const auto *model = dynamic_cast<const Bnd_ModelBase *>(iModel);
    out << QString(iDepth * 3, QLatin1Char(' ')) << iName << "  ["
        << iModel->getModelType().describe() << "]";
    if (model && !model->describeValue().isEmpty())
        out << " = " << model->describeValue();
    out << "\n";
    if (const auto *container = dynamic_cast<const Bnde_Container *>(iModel))
        for (const QString &child : container->childNames())
            listModels(out, child, container->child(child), iDepth + 1);
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    // The host's data.
    Bnde_Container clips(QStringLiteral("Project.Clips"));
    clips.add<Bnde_Array<QString>>(QStringLiteral("name"),
                                   std::vector<QString> { "Intro", "Interview", "B-roll" });
    clips.add<Bnde_Array<long>>(QStringLiteral("duration"), std::vector<long> { 250, 4210, 980 });
    auto *actions = clips.add<Bnde_Container>(QStringLiteral("Actions"));
    actions->add<Bnde_ActionModelWithType<Bndt_Action<void(long)>>>(
        QStringLiteral("open"), [&out](long i) { out << "   (open clip " << i << ")\n"; });
    clips.Publish();
    Bnde_Index<long> selection(QStringLiteral("Project.Selection"), 1);
    selection.Publish();
    Bnde_SimpleValue<QString> playState(QStringLiteral("MainMonitor.PlayState"),
                                        QStringLiteral("stopped"));
    playState.Publish();

    out << "Published models:\n";
    for (const QString &name : Bnd_ConnectionDict::Singleton().names())
        listModels(out, name, Bnd_ConnectionDict::Singleton().findModel(name), 1);

    out << "\nResolving names:\n";
    const QStringList names = { "MainMonitor.PlayState",
                                "Project.Clips.name[0]",
                                "Project.Clips.name[Project.Selection]",
                                "Project.Clips.duration[2]",
                                "Project.Clips.Actions.open",
                                "Project.Missing" };
    for (const QString &name : names) {
        Bnd_ListenerBase l(name);
        Bnd_Variant v;
        const bool hasValue = l.isConnectedToModel()
            && l.attachedModel()->getModelType().kind() == Bndt_Type::Atomic
            && l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v));
        out << "   " << name << " -> "
            << (!l.isConnectedToModel()
                    ? QStringLiteral("(waits for a model)")
                    : QStringLiteral("[%1] %2").arg(l.attachedModel()->getModelType().describe(),
                                                    hasValue ? v.toString() : QString()))
            << "\n";
    }
    out.flush();
    return 0;
}
