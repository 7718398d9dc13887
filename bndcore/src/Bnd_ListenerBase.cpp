#include "Bnd_ListenerBase.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ModelInterface.h"
#include "Bnd_Private.h"
#include "Bnd_Utils.h"
#include "Bndt_Root_Notifications.h"

Bnd_ListenerBase::Bnd_ListenerBase(const QString &iName, const EnvPtr &iEnv, const Bndt_Type &iType)
    : Bnd_ListenerRealBase(iType)
{
    mName = iName;
    if (!iName.isEmpty() && (iEnv || !Bnd_ConnectionEnvironment::needsEnvironment(iName)))
        connect(iEnv);
}

Bnd_ListenerBase::~Bnd_ListenerBase()
{
    stopWaiting();
    releaseModel();
}

void Bnd_ListenerBase::SetConnectionName(const QString &iName)
{
    if (iName == mName)
        return;
    mName = iName;
    if (!iName.isEmpty() && !Bnd_ConnectionEnvironment::needsEnvironment(iName)) {
        connect(EnvPtr());
        return;
    }
    // Wait for an environment; the old binding no longer applies.
    const bool wasConnected = isConnectedToModel();
    stopWaiting();
    releaseModel();
    mResolvedName.clear();
    if (wasConnected)
        notifyConnected(false);
}

bool Bnd_ListenerBase::connect(const EnvPtr &iEnv)
{
    const EnvPtr env = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    QString resolved;
    bool ok = !mName.isEmpty();
    bool isStatic = false;
    if (ok && mName.startsWith(Bnd_Utils::staticConnectionPrefixWord())) {
        resolved = Bnd_Utils::stripStaticConnectionSpec(mName);
        isStatic = true;
        ok = !resolved.isEmpty();
    } else if (ok) {
        const QString trimmed = mName.trimmed();
        resolved = env->replaceVariableNames(
            trimmed.startsWith(QLatin1Char('.')) ? QStringLiteral("$Base") + trimmed : trimmed,
            &ok);
    }

    if (ok && resolved == mResolvedName && mService == env->service()
        && (isConnectedToModel() || mWaiting))
        return isConnectedToModel(); // same target: keep the binding as it is

    const bool wasConnected = isConnectedToModel();
    stopWaiting();
    releaseModel();
    mService = env->service();
    mStatic = isStatic;
    if (!ok) {
        mResolvedName.clear();
        if (wasConnected)
            notifyConnected(false);
        return false;
    }
    mResolvedName = resolved;
    if (tryAttach())
        return true;
    if (wasConnected)
        notifyConnected(false);
    return false;
}

bool Bnd_ListenerBase::tryAttach()
{
    Bnd_ConnectionServiceInterface::Resolution r = mService->resolve(mResolvedName);
    if (r.model && !getListenerType().accepts(r.model->getModelType())) {
        qCWarning(lcBnd).noquote().nospace()
            << "Bnd_ListenerBase::connect, type mismatch for '" << mResolvedName
            << "': the listener takes " << getListenerType().describe() << ", the model holds "
            << r.model->getModelType().describe();
        if (r.modelIsOwned)
            delete r.model;
        r.waitKey = Bnd_ConnectionDict::rootOf(mResolvedName);
        r.model = nullptr;
    }
    if (!r.model) {
        mWaiting = true;
        mService->addWaitingListener(this, r.waitKey);
        return false;
    }
    setOwnsModel(r.modelIsOwned);
    mModel = r.model;
    r.model->modelInterface_attachListener(this);
    if (mStatic)
        r.model->modelInterface_switchToStaticConnection();
    notifyConnected(true);
    return true;
}

void Bnd_ListenerBase::ClearConnection()
{
    const bool wasConnected = isConnectedToModel();
    stopWaiting();
    releaseModel();
    mName.clear();
    mResolvedName.clear();
    if (wasConnected)
        notifyConnected(false);
}

void Bnd_ListenerBase::stopWaiting()
{
    if (mService && (mWaiting || mInRetryBatch))
        mService->removeWaitingListener(this, mWaitKey);
    mWaiting = false;
}

void Bnd_ListenerBase::modelWentAway()
{
    if (mService && !mResolvedName.isEmpty()) {
        mWaiting = true;
        mService->addWaitingListener(this, Bnd_ConnectionDict::rootOf(mResolvedName));
    }
    notifyConnected(false);
}

void Bnd_ListenerBase::notifyConnected(bool iConnected)
{
    mCallback.call(Bndt_Root_Notifications::MsgConnectedChanged(iConnected));
}

bool Bnd_ListenerBase::SendMessageToModel(const Bnd_MessageInterface &iMsg,
                                          bool iEchoToSender) const
{
    Bnd_ModelInterface *model = mModel;
    if (!model) {
        iMsg.setStatus(Bnd_Status::NotConnected);
        return false;
    }
    Bnd_Private::EchoScope scope(iEchoToSender ? nullptr : const_cast<Bnd_ListenerBase *>(this));
    return model->modelInterface_receiveMessage(iMsg);
}

void Bnd_ListenerBase::receive(const Bnd_MessageInterface &iMsg)
{
    mCallback.call(iMsg);
}
