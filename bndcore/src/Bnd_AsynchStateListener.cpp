#include "Bnd_AsynchStateListener.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_Private.h"
#include "Bnd_Utils.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"

#include <QHash>

#include <memory>

namespace {
// Counts published by the runtime for names no host published; kept until the process ends.
void ensureSharedCount(const QString &iName)
{
    static auto *counts = new QHash<QString, Bnde_SimpleValue<long> *>;
    if (iName.isEmpty() || Bnd_ConnectionDict::Singleton().findModel(iName)
        || counts->contains(iName))
        return;
    auto *count = new Bnde_SimpleValue<long>(iName, 0);
    count->Publish();
    counts->insert(iName, count);
}
} // namespace

Bnd_AsynchStateListener::Bnd_AsynchStateListener(const QString &iStateName,
                                                 const QString &iOwnerName)
{
    mCount.setReceiveMessageCB([this](const Bnd_MessageInterface &m) { receive(m); });
    init(iStateName, iOwnerName, QString());
}

Bnd_AsynchStateListener::~Bnd_AsynchStateListener()
{
    mCount.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
    releaseAsynchStateRef();
}

void Bnd_AsynchStateListener::init(const QString &iStateName, const QString &iOwnerName,
                                   const QString &iDescription)
{
    const bool hadRef = mHaveRef;
    if (iStateName != mStateName)
        releaseAsynchStateRef();
    mStateName = iStateName;
    mOwnerName = iOwnerName;
    mDescription = iDescription;
    ensureSharedCount(iStateName);
    mCount.SetConnectionName(Bnd_Utils::Bnd_MakeStaticConnectionSpec(iStateName));
    if (hadRef && !mHaveRef)
        addAsynchStateRef();
}

void Bnd_AsynchStateListener::addAsynchStateRef()
{
    if (mHaveRef)
        return;
    mHaveRef = true;
    change(+1);
}

void Bnd_AsynchStateListener::releaseAsynchStateRef()
{
    if (!mHaveRef)
        return;
    mHaveRef = false;
    change(-1);
}

long Bnd_AsynchStateListener::refCount() const
{
    return mCount.getValue(0);
}

void Bnd_AsynchStateListener::change(long iDelta)
{
    if (!mCount.isConnectedToModel()) {
        qCWarning(lcBnd).noquote().nospace()
            << "Bnd_AsynchStateListener, '" << mOwnerName << "' cannot reach the busy state '"
            << mStateName << "'";
        return;
    }
    mCount.setValue(std::max(0L, refCount() + iDelta));
}

void Bnd_AsynchStateListener::receive(const Bnd_MessageInterface &iMsg)
{
    if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
        || iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        asynchStateRefCountChanged(refCount());
}

void Bnd_AsynchStateListener::asynchStateRefCountChanged(long) { }
