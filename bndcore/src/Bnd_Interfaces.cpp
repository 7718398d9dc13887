// Out-of-line destructors and defaults of the runtime's interfaces, so that their virtual
// tables live in this library.

#include "Bnd_ConnectionServiceInterface.h"
#include "Bnd_ListenerInterface.h"
#include "Bnd_MessageInterface.h"
#include "Bnd_ModelInterface.h"
#include "Bnd_Private.h"

Q_LOGGING_CATEGORY(lcBnd, "bnd.core")

Bnd_ListenerInterface *Bnd_Private::gEchoExclude = nullptr;

Bnd_MessageInterface::~Bnd_MessageInterface() = default;
Bnd_ModelInterface::~Bnd_ModelInterface() = default;
Bnd_ListenerInterface::~Bnd_ListenerInterface() = default;
Bnd_ConnectionServiceInterface::~Bnd_ConnectionServiceInterface() = default;

Bnd_ModelInterface *Bnd_ModelInterface::modelInterface_findChild(const QString &) const
{
    return nullptr;
}
