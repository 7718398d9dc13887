#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "bndcore_export.h"

#include <QString>
#include <boost/function.hpp>

/// Name helpers and the delayed-action queue.
class BNDCORE_EXPORT Bnd_Utils
{
public:
    /// The prefix of a static connection spec, "staticConnection: " (with the blank).
    static const QString &staticConnectionPrefix();
    /// "staticConnection:", the part every static spec starts with (the blank is optional).
    static const QString &staticConnectionPrefixWord();

    /// A connection string that binds to exactly `iName`, with no variable replacement and no
    /// environment lookup.
    static QString Bnd_MakeStaticConnectionSpec(const QString &iName);
    /// Whether the string is a static spec, and the name it binds to.
    static bool isStaticConnectionSpec(const QString &iSpec);
    static QString stripStaticConnectionSpec(const QString &iSpec);

    /// A name no published model has and no earlier call returned: `iBase` followed by "_" and a
    /// process-wide counter.
    static QString Bnd_UniqueConnString(QString iBase);

    /// Runs a script on a later turn of the event loop: answers true when it was queued. The
    /// runtime does not interpret scripts itself; it answers false while no runner is
    /// installed (Bnd_SetDelayedActionRunner) or no application object exists.
    static bool Bnd_AddDelayedAction(const Bnd_ConnectionEnvironmentPtr &iEnv,
                                     const QString &iScript);

    typedef boost::function<bool(const Bnd_ConnectionEnvironmentPtr &, const QString &)>
        DelayedActionRunner;
    /// Installs the interpreter of delayed scripts (an empty function removes it).
    static void Bnd_SetDelayedActionRunner(const DelayedActionRunner &iRunner);
    static bool hasDelayedActionRunner();
};
