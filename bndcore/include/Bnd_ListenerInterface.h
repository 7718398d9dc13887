#pragma once

#include "bndcore_export.h"

class Bnd_ModelInterface;
class Bnd_MessageInterface;
class Bndt_Type;
class Bnd_ModelBase;

/// What a model sees of a listener.
class BNDCORE_EXPORT Bnd_ListenerInterface
{
public:
    virtual ~Bnd_ListenerInterface();

    virtual const Bndt_Type &getListenerType() const = 0;
    virtual bool listenerInterface_isRealListenerOrIsConnectedToOne() const = 0;
    /// The model goes away (it is destroyed or un-published); the listener must forget it.
    /// The model has already removed the listener from its list.
    virtual void listenerInterface_detachModel() = 0;
    /// Attaches to the model; answers false when the listener cannot take that model.
    virtual bool listenerInterface_attachModel(Bnd_ModelInterface *iModel) = 0;
    /// A notification of the model.
    virtual void listenerInterface_receiveMessage(const Bnd_MessageInterface &iMsg) = 0;

private:
    friend class Bnd_ModelBase;
    int mModelSlot = -1; // position in the attached model's listener list
};
