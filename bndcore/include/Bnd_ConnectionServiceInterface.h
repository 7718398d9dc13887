#pragma once

#include "bndcore_export.h"

#include <QString>

class Bnd_ListenerBase;
class Bnd_ModelInterface;

/// Where names are published and looked up. Bnd_ConnectionDict is the implementation; an
/// environment names the service its listeners use.
class BNDCORE_EXPORT Bnd_ConnectionServiceInterface
{
public:
    /// Outcome of looking a name up for a listener.
    struct Resolution
    {
        Bnd_ModelInterface *model = nullptr; ///< the model found, null when none
        bool modelIsOwned = false; ///< the model was made for this listener (a subscript)
        QString waitKey; ///< when not found: the root name whose publication may change that
    };

    virtual ~Bnd_ConnectionServiceInterface();

    virtual bool publishModel(const QString &iName, Bnd_ModelInterface *iModel) = 0;
    virtual void unpublishModel(const QString &iName, Bnd_ModelInterface *iModel) = 0;
    /// The model of that name: published exactly, or reached from the longest published
    /// container prefix. Subscripts are not resolved here.
    virtual Bnd_ModelInterface *findModel(const QString &iName) const = 0;
    /// Resolves a full connection name, subscripts included.
    virtual Resolution resolve(const QString &iName) = 0;

    virtual void addWaitingListener(Bnd_ListenerBase *iListener, const QString &iKey) = 0;
    virtual void removeWaitingListener(Bnd_ListenerBase *iListener, const QString &iKey) = 0;
};
