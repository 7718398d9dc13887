// libFuzzer target: the bytes are an action script. A script that parses is connected and
// evaluated against a few published models (and its readiness asked), so the parser, the nodes
// and the messages they send all run on arbitrary input.

#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_SimpleValue.h"
#include "Uip_ParseScript.h"

#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace {

// Names taken from the seed scripts, so that mutations of them reach real models.
struct Models
{
    Models()
    {
        locked.SetReadOnly(true);
        for (Bnd_ModelBase *m :
             std::initializer_list<Bnd_ModelBase *> { &text, &flag, &setFlag, &go, &locked, &list })
            m->Publish();
    }
    Bnde_SimpleValue<QString> text { "A", "text" };
    Bnde_SimpleValue<bool> flag { "Flag", false };
    Bnde_ActionModelWithType<Bndt_Action<void(bool)>> setFlag { "F", [this](bool b) {
                                                                   flag.setValue(b);
                                                               } };
    Bnde_ActionModelWithType<Bndt_Action<void()>> go { "Other.Go", [this] {
                                                          ++count;
                                                      } };
    Bnde_SimpleValue<QString> locked { "B", "fixed" };
    Bnde_Array<QString> list { "List", { "a", "b", "c", "d" } };
    long count = 0;
};

void quiet(QtMsgType, const QMessageLogContext &, const QString &) { }

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(quiet); // refused values and bad names are logged; keep the run fast
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *iData, size_t iSize)
{
    static Models models;
    const QString script
        = QString::fromUtf8(reinterpret_cast<const char *>(iData), qsizetype(iSize));
    Uip_ParseError error;
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, &error);
    if (!node) {
        if (!error.IsError() || error.GetMessage().isEmpty())
            __builtin_trap(); // a failed parse always says why
        return 0;
    }
    if (error.IsError())
        __builtin_trap();
    node->ConnectAndTypeCheck(Bnd_ConnectionEnvironmentPtr(), nullptr);
    node->isConnected();
    Bnd_Variant result;
    node->Evaluate(&result);
    return 0;
}
