#include "Bnde_Array.h"

#include "Bnd_Private.h"

bool Bnd_ArrayDetail::clampRange(long iSize, long &ioFirst, long &ioEnd)
{
    if (ioFirst < 0 || ioFirst > iSize || ioEnd < ioFirst)
        return false;
    ioEnd = std::min(ioEnd, iSize);
    return true;
}

void Bnd_ArrayDetail::reportBadIndex(const char *iOperation, const QString &iName, long iIndex,
                                     long iSize)
{
    qCWarning(lcBnd).noquote().nospace() << "Bnde_Array::" << iOperation << ", index " << iIndex
                                         << " is outside '" << iName << "' of size " << iSize;
}

Bnde_ActionArray::Bnde_ActionArray(const QString &iName, long iSize, const Action &iAction,
                                   const EnabledFunction &iEnabled)
    : Bnd_ModelBase(Bndt_Array<Bndt_Action<void()>>::type())
    , mAction(iAction)
    , mEnabled(iEnabled)
    , mSize(std::max(0L, iSize))
{
    SetConnectionName(iName);
}

Bnde_ActionArray::~Bnde_ActionArray() = default;

void Bnde_ActionArray::setSize(long iSize)
{
    iSize = std::max(0L, iSize);
    if (iSize == mSize)
        return;
    const long old = mSize;
    mSize = iSize;
    if (iSize > old)
        SendToListeners(
            Bndt_Array_Notifications::MsgElementsReplaced(old, old, iSize - old, iSize));
    else
        SendToListeners(Bndt_Array_Notifications::MsgElementsReplaced(iSize, old, 0, iSize));
}

bool Bnde_ActionArray::isEnabled(long i) const
{
    return i >= 0 && i < mSize && (mEnabled.empty() || mEnabled(i));
}

void Bnde_ActionArray::notifyEnabledChanged(long iFirst, long iEnd)
{
    SendToListeners(
        Bndt_Array_Notifications::MsgElementsReplaced(iFirst, iEnd, iEnd - iFirst, mSize));
}

void Bnde_ActionArray::handleMessage(const Bnd_MessageInterface &iMsg)
{
    if (const auto *getSize = iMsg.as<Bndt_Array_API::MsgGetSize>()) {
        if (getSize->size)
            *getSize->size = mSize;
        return;
    }
    const auto *indexed = iMsg.as<Bndt_Array_API::MsgWithIndex>();
    if (!indexed) {
        Bnd_ModelBase::handleMessage(iMsg);
        return;
    }
    const long i = indexed->index;
    const Bnd_MessageInterface &inner = indexed->inner;
    inner.setStatus(Bnd_Status::Ok);
    if (i < 0 || i >= mSize) {
        iMsg.setStatus(Bnd_Status::OutOfRange);
    } else if (const auto *enabled = inner.as<Bndt_Action_API::MsgIsEnabled>()) {
        if (enabled->enabled)
            *enabled->enabled = isEnabled(i);
    } else if (const auto *action = inner.as<Bndt_Action_API::MsgAction>()) {
        if (mAction.empty()) {
            iMsg.setStatus(Bnd_Status::NotHandled);
        } else {
            const Action f = mAction; // the action may destroy this model
            inner.setStatus(Bnd_Status::Ok);
            iMsg.setStatus(Bnd_Status::Ok);
            f(i, action->arguments, action->result);
            return;
        }
    } else {
        iMsg.setStatus(Bnd_Status::NotHandled);
    }
    inner.setStatus(iMsg.status());
}
