#pragma once

// Runtime-internal state shared by the model and listener implementations.

#include <QLoggingCategory>

class Bnd_ListenerInterface;

Q_DECLARE_LOGGING_CATEGORY(lcBnd)

namespace Bnd_Private {

/// The listener whose send asked for no echo of the notifications it causes; null otherwise.
extern Bnd_ListenerInterface *gEchoExclude;

/// Sets gEchoExclude for the duration of one send and restores it afterwards. It touches no
/// listener, so it is safe when a callback destroys the sender.
class EchoScope
{
public:
    explicit EchoScope(Bnd_ListenerInterface *iExclude)
        : mSaved(gEchoExclude)
    {
        gEchoExclude = iExclude;
    }
    ~EchoScope() { gEchoExclude = mSaved; }
    EchoScope(const EchoScope &) = delete;
    EchoScope &operator=(const EchoScope &) = delete;

private:
    Bnd_ListenerInterface *mSaved;
};

} // namespace Bnd_Private
