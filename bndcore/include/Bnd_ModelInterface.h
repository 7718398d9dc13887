#pragma once

#include "bndcore_export.h"

class QString;

class Bnd_ListenerInterface;
class Bnd_MessageInterface;
class Bndt_Type;

/// What a listener sees of a model.
class BNDCORE_EXPORT Bnd_ModelInterface
{
public:
    virtual ~Bnd_ModelInterface();

    virtual const Bndt_Type &getModelType() const = 0;
    /// Asks the model to stop following anything that could re-target it; a model reached through
    /// a subscript naming an index model freezes the current index. Real models need do nothing.
    virtual bool modelInterface_switchToStaticConnection() = 0;
    /// True for a model that holds its data itself, or stands for one that still exists.
    virtual bool modelInterface_isRealModelOrisConnectedToOne() const = 0;
    virtual void modelInterface_attachListener(Bnd_ListenerInterface *iListener) = 0;
    virtual void modelInterface_detachListener(Bnd_ListenerInterface *iListener) = 0;
    /// Handles a message; answers true when its status is Bnd_Status::Ok.
    virtual bool modelInterface_receiveMessage(const Bnd_MessageInterface &iMsg) = 0;
    /// For containers: the model at a dotted path below this one; null for other models.
    virtual Bnd_ModelInterface *modelInterface_findChild(const QString &iPath) const;
};
