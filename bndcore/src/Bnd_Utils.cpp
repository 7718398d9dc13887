#include "Bnd_Utils.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_Private.h"

#include <QCoreApplication>
#include <QTimer>

namespace {
Bnd_Utils::DelayedActionRunner &runner()
{
    static Bnd_Utils::DelayedActionRunner r;
    return r;
}
} // namespace

const QString &Bnd_Utils::staticConnectionPrefix()
{
    static const QString prefix = QStringLiteral("staticConnection: ");
    return prefix;
}

const QString &Bnd_Utils::staticConnectionPrefixWord()
{
    static const QString word = QStringLiteral("staticConnection:");
    return word;
}

QString Bnd_Utils::Bnd_MakeStaticConnectionSpec(const QString &iName)
{
    return staticConnectionPrefix() + iName;
}

bool Bnd_Utils::isStaticConnectionSpec(const QString &iSpec)
{
    return iSpec.startsWith(staticConnectionPrefixWord());
}

QString Bnd_Utils::stripStaticConnectionSpec(const QString &iSpec)
{
    return isStaticConnectionSpec(iSpec) ? iSpec.mid(staticConnectionPrefixWord().size()).trimmed()
                                         : iSpec;
}

QString Bnd_Utils::Bnd_UniqueConnString(QString iBase)
{
    static quint64 counter = 0;
    const Bnd_ConnectionDict &dict = Bnd_ConnectionDict::Singleton();
    QString name;
    do {
        name = iBase + QLatin1Char('_') + QString::number(++counter);
    } while (dict.contains(name));
    return name;
}

bool Bnd_Utils::Bnd_AddDelayedAction(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                     const QString &iScript)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!runner() || !app)
        return false;
    const Bnd_ConnectionEnvironmentPtr env
        = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    QTimer::singleShot(0, app, [env, iScript]() {
        if (!runner()) {
            qCWarning(lcBnd).noquote() << "Bnd_Utils::Bnd_AddDelayedAction, the runner was removed"
                                          " before the script ran:"
                                       << iScript;
            return;
        }
        if (!runner()(env, iScript))
            qCWarning(lcBnd).noquote()
                << "Bnd_Utils::Bnd_AddDelayedAction, the script failed:" << iScript;
    });
    return true;
}

void Bnd_Utils::Bnd_SetDelayedActionRunner(const DelayedActionRunner &iRunner)
{
    runner() = iRunner;
}

bool Bnd_Utils::hasDelayedActionRunner()
{
    return !runner().empty();
}
