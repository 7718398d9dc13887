#include "Bnd_ArrayElementModel.h"

#include "Bnd_ModelInterface.h"
#include "Bndt_Action_API.h"
#include "Bndt_Array_API.h"
#include "Bndt_SimpleValue_API.h"

#include <algorithm>

Bnd_ArrayElementModel::Bnd_ArrayElementModel(Bnd_ModelInterface *iArray, long iIndex)
    : Bnd_ModelBase(iArray->getModelType().elementType())
    , mIndex(iIndex)
    , mActions(iArray->getModelType().kind() == Bndt_Type::ActionArray)
{
    mArrayWatch.attach(iArray);
}

Bnd_ArrayElementModel::Bnd_ArrayElementModel(Bnd_ModelInterface *iArray,
                                             Bnd_ModelInterface *iIndexModel)
    : Bnd_ArrayElementModel(iArray, -1L)
{
    mIndexWatch.attach(iIndexModel);
}

Bnd_ArrayElementModel::~Bnd_ArrayElementModel() = default;

long Bnd_ArrayElementModel::currentIndex() const
{
    if (!mIndexWatch.model)
        return mIndex;
    long index = -1;
    mIndexWatch.model->modelInterface_receiveMessage(Bndt_SimpleValue_API<long>::MsgGet(&index));
    return index;
}

bool Bnd_ArrayElementModel::modelInterface_switchToStaticConnection()
{
    if (mIndexWatch.model) {
        mIndex = currentIndex();
        mIndexWatch.detach();
    }
    return true;
}

bool Bnd_ArrayElementModel::modelInterface_isRealModelOrisConnectedToOne() const
{
    return mArrayWatch.model;
}

QString Bnd_ArrayElementModel::describeValue() const
{
    Bnd_Variant v;
    const_cast<Bnd_ArrayElementModel *>(this)->handleMessage(
        Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v));
    return v.toString();
}

void Bnd_ArrayElementModel::handleMessage(const Bnd_MessageInterface &iMsg)
{
    if (!mArrayWatch.model) {
        iMsg.setStatus(Bnd_Status::NotConnected);
        return;
    }
    Bndt_Array_API::MsgWithIndex forward(currentIndex(), iMsg);
    mArrayWatch.model->modelInterface_receiveMessage(forward);
    iMsg.setStatus(forward.status());
}

void Bnd_ArrayElementModel::arrayChanged(const Bnd_MessageInterface &iMsg)
{
    const long index = currentIndex();
    bool affected = false;
    if (const auto *r = iMsg.as<Bndt_Array_Notifications::MsgElementsReplaced>()) {
        const bool sizeChanged = r->count != r->end - r->first;
        affected = index >= r->first && (index < r->end || sizeChanged);
    } else if (const auto *m = iMsg.as<Bndt_Array_Notifications::MsgElementsMoved>()) {
        affected = index >= std::min(m->from, m->to) && index <= std::max(m->from, m->to);
    } else if (iMsg.is<Bndt_SimpleValue_Notifications::MsgReadOnlyChanged>()) {
        SendToListeners(iMsg);
        return;
    }
    if (affected)
        notifyElementChanged();
}

void Bnd_ArrayElementModel::indexChanged(const Bnd_MessageInterface &iMsg)
{
    // The element now stands for another one. (A painter that moves a cursor model per row
    // sets it quietly, so its listeners are not told every row.)
    if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
        notifyElementChanged();
}

void Bnd_ArrayElementModel::notifyElementChanged()
{
    if (mActions)
        SendToListeners(Bndt_Action_Notifications::MsgEnabledChanged());
    else
        SendToListeners(Bndt_SimpleValue_Notifications::MsgValueChanged());
}

void Bnd_ArrayElementModel::sourceGone()
{
    // The owning listener lets go of this model (and deletes it) from inside this call.
    detachAllListeners();
}

Bnd_ArrayElementModel::Watch::~Watch()
{
    detach();
}

void Bnd_ArrayElementModel::Watch::attach(Bnd_ModelInterface *iModel)
{
    model = iModel;
    iModel->modelInterface_attachListener(this);
}

void Bnd_ArrayElementModel::Watch::detach()
{
    if (Bnd_ModelInterface *m = model) {
        model = nullptr;
        m->modelInterface_detachListener(this);
    }
}

const Bndt_Type &Bnd_ArrayElementModel::Watch::getListenerType() const
{
    return Bndt_Type::any();
}

void Bnd_ArrayElementModel::Watch::listenerInterface_detachModel()
{
    model = nullptr;
    mOwner->sourceGone(); // may delete the owner and this watch: nothing may follow
}

void Bnd_ArrayElementModel::Watch::listenerInterface_receiveMessage(
    const Bnd_MessageInterface &iMsg)
{
    if (mIsIndex)
        mOwner->indexChanged(iMsg);
    else
        mOwner->arrayChanged(iMsg);
}
