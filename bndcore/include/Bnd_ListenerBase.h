#pragma once

#include "Bnd_CallbackSlot.h"
#include "Bnd_ListenerRealBase.h"
#include "bndcore_export.h"

#include <QString>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

class Bnd_ConnectionEnvironment;
class Bnd_ConnectionServiceInterface;
class Bnd_MessageInterface;

/// A named reference to a model.
///
/// The connection name may hold `$Variables` that the environment given to connect() replaces,
/// may start with "." (relative to the environment's `$Base`), or may be a static spec
/// ("staticConnection: Name") that binds to exactly that name. A listener whose name finds no
/// model waits and connects by itself when such a model is published; when its model is
/// destroyed or un-published it waits again. Every change reaches the receive callback as
/// Bndt_Root_Notifications::MsgConnectedChanged; the model's notifications reach it as they come.
class BNDCORE_EXPORT Bnd_ListenerBase : public Bnd_ListenerRealBase
{
public:
    typedef boost::function<void(const Bnd_MessageInterface &)> ReceiveCallback;
    typedef boost::shared_ptr<const Bnd_ConnectionEnvironment> EnvPtr;

    explicit Bnd_ListenerBase(const QString &iName = QString(), const EnvPtr &iEnv = EnvPtr(),
                              const Bndt_Type &iType = Bndt_Type::any());
    ~Bnd_ListenerBase() override;

    /// Sets the connection name. A name that needs no environment (no variable, not relative)
    /// connects at once; any other waits for connect(). The same name again changes nothing.
    void SetConnectionName(const QString &iName);
    const QString &GetConnectionName() const { return mName; }
    /// The name after variable replacement, as last looked up (empty when it could not be
    /// resolved).
    const QString &GetResolvedConnectionName() const { return mResolvedName; }

    /// Resolves the name in the environment and attaches to the model of that name. Answers
    /// whether the listener is now connected. An unbound variable leaves it unconnected (and
    /// not waiting); a name that finds no model leaves it waiting for one.
    bool connect(const EnvPtr &iEnv);
    /// Detaches and forgets the name; the listener no longer waits for a model.
    void ClearConnection();
    bool isConnectedToModel() const { return mModel != nullptr; }
    /// Whether the listener waits for a model of its name to be published.
    bool isWaitingForModel() const { return mWaiting; }

    /// Sends a message to the model. Answers true when the model handled it with status Ok; an
    /// unconnected listener sets status Bnd_Status::NotConnected and answers false. With
    /// `iEchoToSender` false, the notifications that this message causes skip this listener.
    bool SendMessageToModel(const Bnd_MessageInterface &iMsg, bool iEchoToSender = true) const;

    /// Installs the callback for notifications. It may destroy this listener or install another
    /// callback while it runs.
    void setReceiveMessageCB(const ReceiveCallback &iCallback) { mCallback.set(iCallback); }

protected:
    void modelWentAway() override;
    void receive(const Bnd_MessageInterface &iMsg) override;

private:
    friend class Bnd_ConnectionDict;
    /// Looks the resolved name up and attaches; on failure waits. Answers whether attached.
    /// May run the callback as its last step.
    bool tryAttach();
    void stopWaiting();
    void notifyConnected(bool iConnected);

    QString mName;
    QString mResolvedName;
    Bnd_CallbackSlot<Bnd_MessageInterface> mCallback;
    Bnd_ConnectionServiceInterface *mService = nullptr;
    QString mWaitKey; // the dictionary's bookkeeping while waiting
    int mWaitSlot = -1;
    bool mInRetryBatch = false;
    bool mStatic = false;
    bool mWaiting = false;
};
