#include "Bnd_ModelBase.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ListenerInterface.h"
#include "Bnd_Private.h"
#include "Bndt_SimpleValue_API.h"

Bnd_ModelBase::Bnd_ModelBase(const Bndt_Type &iType)
    : mType(&iType)
{ }

Bnd_ModelBase::~Bnd_ModelBase()
{
    mDying = true;
    for (Frame *f = mFrames; f; f = f->outer)
        f->destroyed = true;
    UnPublish();
    // Detach without the guard frames of a running delivery: this object is going away anyway,
    // and the loop below reads nothing of it after a callback but the vector it owns until the
    // end of this destructor.
    for (size_t i = 0; i < mListeners.size(); ++i) {
        Bnd_ListenerInterface *l = mListeners[i];
        if (!l)
            continue;
        mListeners[i] = nullptr;
        l->mModelSlot = -1;
        --mListenerCount;
        l->listenerInterface_detachModel();
    }
}

void Bnd_ModelBase::SetConnectionName(const QString &iName)
{
    mName = iName;
}

bool Bnd_ModelBase::Publish()
{
    return Publish(&Bnd_ConnectionDict::Singleton());
}

bool Bnd_ModelBase::Publish(Bnd_ConnectionDict *iDict)
{
    if (!iDict)
        return false;
    if (mService && mPublishedName == mName)
        return true;
    UnPublish();
    if (mName.isEmpty())
        return false;
    if (!iDict->publishModel(mName, this))
        return false;
    mService = iDict;
    mPublishedName = mName;
    return true;
}

bool Bnd_ModelBase::publish(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    const Bnd_ConnectionEnvironmentPtr env
        = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    bool allBound = true;
    const QString name = env->replaceVariableNames(mName, &allBound);
    if (!allBound || name.isEmpty()) {
        qCWarning(lcBnd).noquote() << "Bnd_ModelBase::publish, cannot resolve the name" << mName;
        return false;
    }
    UnPublish();
    Bnd_ConnectionServiceInterface *service = env->service();
    if (!service->publishModel(name, this))
        return false;
    mService = service;
    mPublishedName = name;
    return true;
}

void Bnd_ModelBase::UnPublish()
{
    if (!mService)
        return;
    Bnd_ConnectionServiceInterface *service = mService;
    const QString name = mPublishedName;
    mService = nullptr;
    mPublishedName.clear();
    service->unpublishModel(name, this);
    if (!mDying)
        detachAllListeners();
}

void Bnd_ModelBase::detachAllListeners()
{
    Frame frame { mFrames, false };
    mFrames = &frame;
    const size_t n = mListeners.size();
    for (size_t i = 0; i < n && i < mListeners.size(); ++i) {
        Bnd_ListenerInterface *l = mListeners[i];
        if (!l)
            continue;
        mListeners[i] = nullptr;
        l->mModelSlot = -1;
        --mListenerCount;
        l->listenerInterface_detachModel();
        if (frame.destroyed)
            return;
    }
    mFrames = frame.outer;
    if (!mFrames)
        compact();
}

void Bnd_ModelBase::SendToListeners(const Bnd_MessageInterface &iMsg)
{
    Frame frame { mFrames, false };
    mFrames = &frame;
    Bnd_ListenerInterface *const exclude = Bnd_Private::gEchoExclude;
    const size_t n = mListeners.size(); // listeners attached meanwhile wait for the next one
    for (size_t i = 0; i < n; ++i) {
        Bnd_ListenerInterface *l = mListeners[i];
        if (!l || l == exclude)
            continue;
        l->listenerInterface_receiveMessage(iMsg);
        if (frame.destroyed)
            return;
    }
    mFrames = frame.outer;
    if (!mFrames && size_t(mListenerCount) != mListeners.size())
        compact();
}

void Bnd_ModelBase::compact()
{
    size_t out = 0;
    for (size_t i = 0; i < mListeners.size(); ++i) {
        if (Bnd_ListenerInterface *l = mListeners[i]) {
            l->mModelSlot = int(out);
            mListeners[out++] = l;
        }
    }
    mListeners.resize(out);
}

void Bnd_ModelBase::setReceiveMessageCB(const ReceiveCallback &iCallback)
{
    mCallback.set(iCallback);
}

void Bnd_ModelBase::SetReadOnly(bool iReadOnly)
{
    if (mReadOnly == iReadOnly)
        return;
    mReadOnly = iReadOnly;
    SendToListeners(Bndt_SimpleValue_Notifications::MsgReadOnlyChanged(iReadOnly));
}

QString Bnd_ModelBase::describeValue() const
{
    return QString();
}

void Bnd_ModelBase::modelInterface_attachListener(Bnd_ListenerInterface *iListener)
{
    if (!iListener || mDying || iListener->mModelSlot >= 0)
        return;
    iListener->mModelSlot = int(mListeners.size());
    mListeners.push_back(iListener);
    ++mListenerCount;
}

void Bnd_ModelBase::modelInterface_detachListener(Bnd_ListenerInterface *iListener)
{
    if (!iListener)
        return;
    const int slot = iListener->mModelSlot;
    if (slot < 0 || size_t(slot) >= mListeners.size() || mListeners[size_t(slot)] != iListener)
        return;
    mListeners[size_t(slot)] = nullptr;
    iListener->mModelSlot = -1;
    --mListenerCount;
    if (mFrames || mDying)
        return; // a delivery is running over the list; it compacts when done
    if (size_t(slot) + 1 == mListeners.size())
        mListeners.pop_back();
    else if (size_t(mListenerCount) * 2 < mListeners.size())
        compact();
}

bool Bnd_ModelBase::modelInterface_receiveMessage(const Bnd_MessageInterface &iMsg)
{
    if (mDying) {
        iMsg.setStatus(Bnd_Status::NotConnected);
        return false;
    }
    iMsg.setStatus(Bnd_Status::Ok);
    handleMessage(iMsg);
    return iMsg.status() == Bnd_Status::Ok;
}

void Bnd_ModelBase::handleMessage(const Bnd_MessageInterface &iMsg)
{
    if (mCallback.empty()) {
        if (const auto *m = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
            if (m->readOnly)
                *m->readOnly = IsReadOnly();
        } else {
            iMsg.setStatus(Bnd_Status::NotHandled);
        }
        return;
    }
    mCallback.call(iMsg);
}
