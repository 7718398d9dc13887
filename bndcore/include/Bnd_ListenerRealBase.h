#pragma once

#include "Bnd_ListenerInterface.h"
#include "Bndt_Type.h"
#include "bndcore_export.h"

/// Attachment to one model: the model pointer, the type check, and ownership of a model that
/// exists only for this listener (an array element reached through a subscript).
class BNDCORE_EXPORT Bnd_ListenerRealBase : public Bnd_ListenerInterface
{
public:
    explicit Bnd_ListenerRealBase(const Bndt_Type &iType = Bndt_Type::any());
    ~Bnd_ListenerRealBase() override;
    Bnd_ListenerRealBase(const Bnd_ListenerRealBase &) = delete;
    Bnd_ListenerRealBase &operator=(const Bnd_ListenerRealBase &) = delete;

    const Bndt_Type &getListenerType() const override { return *mType; }
    /// When set, the attached model is deleted when the listener lets go of it.
    void setOwnsModel(bool iOwns) { mOwnsModel = iOwns; }
    bool ownsModel() const { return mOwnsModel; }

    bool listenerInterface_isRealListenerOrIsConnectedToOne() const override { return true; }
    void listenerInterface_detachModel() override;
    bool listenerInterface_attachModel(Bnd_ModelInterface *iModel) override;
    void listenerInterface_receiveMessage(const Bnd_MessageInterface &iMsg) override;

    Bnd_ModelInterface *attachedModel() const { return mModel; }

protected:
    /// Lets go of the model without telling anyone (detaches from it, deletes it when owned).
    void releaseModel();
    /// Called after the model went away on its own (listenerInterface_detachModel).
    virtual void modelWentAway();
    /// Called with every notification of the model.
    virtual void receive(const Bnd_MessageInterface &iMsg);

    Bnd_ModelInterface *mModel = nullptr;

private:
    const Bndt_Type *mType;
    bool mOwnsModel = false;
};
