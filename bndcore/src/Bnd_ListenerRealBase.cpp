#include "Bnd_ListenerRealBase.h"

#include "Bnd_ModelInterface.h"

Bnd_ListenerRealBase::Bnd_ListenerRealBase(const Bndt_Type &iType)
    : mType(&iType)
{ }

Bnd_ListenerRealBase::~Bnd_ListenerRealBase()
{
    releaseModel();
}

void Bnd_ListenerRealBase::releaseModel()
{
    Bnd_ModelInterface *model = mModel;
    if (!model)
        return;
    mModel = nullptr;
    model->modelInterface_detachListener(this);
    if (mOwnsModel) {
        mOwnsModel = false;
        delete model;
    }
}

void Bnd_ListenerRealBase::listenerInterface_detachModel()
{
    Bnd_ModelInterface *model = mModel;
    mModel = nullptr;
    if (model && mOwnsModel) {
        // A model made for this listener tells it that what it stood for is gone.
        mOwnsModel = false;
        delete model;
    }
    modelWentAway();
}

bool Bnd_ListenerRealBase::listenerInterface_attachModel(Bnd_ModelInterface *iModel)
{
    if (!iModel || !mType->accepts(iModel->getModelType()))
        return false;
    releaseModel();
    mModel = iModel;
    iModel->modelInterface_attachListener(this);
    return true;
}

void Bnd_ListenerRealBase::listenerInterface_receiveMessage(const Bnd_MessageInterface &iMsg)
{
    receive(iMsg);
}

void Bnd_ListenerRealBase::modelWentAway() { }

void Bnd_ListenerRealBase::receive(const Bnd_MessageInterface &) { }
