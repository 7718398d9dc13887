#include "Kiv_ScriptRunner.h"

#include "Bnd_Utils.h"
#include "Uip_ParseScript.h"

#include <QDebug>

namespace {
bool runDelayedScript(const Bnd_ConnectionEnvironmentPtr &iEnv, const QString &iScript)
{
    Uip_ParseError error;
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(iScript, &error);
    if (!node) {
        qDebug().noquote().nospace() << "Kiv_InstallScriptRunner, delayed script '" << iScript
                                     << "' does not parse: " << error.GetMessage();
        return false;
    }
    if (!node->ConnectAndTypeCheck(iEnv, nullptr))
        return false;
    Bnd_Variant result;
    return node->Evaluate(&result);
}
} // namespace

void Kiv_InstallScriptRunner()
{
    Bnd_Utils::Bnd_SetDelayedActionRunner(&runDelayedScript);
}
