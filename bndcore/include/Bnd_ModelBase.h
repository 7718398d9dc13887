#pragma once

#include "Bnd_CallbackSlot.h"
#include "Bnd_ModelInterface.h"
#include "Bndt_Type.h"
#include "bndcore_export.h"

#include <QString>
#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <vector>

class Bnd_ConnectionDict;
class Bnd_ConnectionEnvironment;
class Bnd_ConnectionServiceInterface;
class Bnd_ListenerInterface;
class Bnd_MessageInterface;

/// Base of every model: a name, publication in a dictionary, the attached listeners and the
/// delivery of notifications to them.
///
/// Lifetime rules, all safe: destroying or un-publishing a model detaches every listener (each
/// gets a connected-changed notification and waits for a new model of its name); a listener
/// callback may destroy listeners, this model, or publish and un-publish models while a
/// notification is being delivered.
class BNDCORE_EXPORT Bnd_ModelBase : public Bnd_ModelInterface
{
public:
    typedef boost::function<void(const Bnd_MessageInterface &)> ReceiveCallback;

    explicit Bnd_ModelBase(const Bndt_Type &iType = Bndt_Type::any());
    ~Bnd_ModelBase() override;
    Bnd_ModelBase(const Bnd_ModelBase &) = delete;
    Bnd_ModelBase &operator=(const Bnd_ModelBase &) = delete;

    void SetConnectionName(const QString &iName);
    const QString &GetConnectionName() const { return mName; }

    /// Publishes the model under its connection name. Answers false when the name is empty or
    /// already taken by another model (the model then stays unpublished).
    bool Publish(Bnd_ConnectionDict *iDict);
    bool Publish();
    /// Publishes under the connection name with the environment's variables replaced, in the
    /// environment's dictionary.
    bool publish(const boost::shared_ptr<const Bnd_ConnectionEnvironment> &iEnv);
    void UnPublish();
    bool isPublished() const { return mService != nullptr; }
    /// The name under which the model is published (empty when it is not).
    const QString &publishedName() const { return mPublishedName; }

    /// Delivers a notification to every attached listener (except the one whose send caused it,
    /// when that send asked for no echo).
    void SendToListeners(const Bnd_MessageInterface &iMsg);
    /// Installs the handler of messages sent to this model (used by models whose data lives
    /// elsewhere, e.g. in a widget that publishes its value). The handler may destroy the model.
    void setReceiveMessageCB(const ReceiveCallback &iCallback);

    virtual bool IsReadOnly() const { return mReadOnly; }
    /// Changes the read-only state; listeners hear of a change through MsgReadOnlyChanged.
    virtual void SetReadOnly(bool iReadOnly);

    int listenerCount() const { return mListenerCount; }
    /// Detaches every listener as if the model went away.
    virtual void detachAllListeners();
    /// A short text of the current value, for listings ("" for models without a value).
    virtual QString describeValue() const;

    const Bndt_Type &getModelType() const override { return *mType; }
    bool modelInterface_switchToStaticConnection() override { return true; }
    bool modelInterface_isRealModelOrisConnectedToOne() const override { return true; }
    void modelInterface_attachListener(Bnd_ListenerInterface *iListener) override;
    void modelInterface_detachListener(Bnd_ListenerInterface *iListener) override;
    bool modelInterface_receiveMessage(const Bnd_MessageInterface &iMsg) override;

protected:
    /// Handles a message sent to the model and sets its status. The default answers the
    /// read-only query and hands everything else to the receive callback, or answers
    /// Bnd_Status::NotHandled without one. Overrides must not touch the model after a
    /// notification they send, since a listener may have destroyed it.
    virtual void handleMessage(const Bnd_MessageInterface &iMsg);

private:
    struct Frame
    {
        Frame *outer;
        bool destroyed;
    };
    void compact();

    QString mName;
    QString mPublishedName;
    Bnd_CallbackSlot<Bnd_MessageInterface> mCallback;
    std::vector<Bnd_ListenerInterface *> mListeners;
    const Bndt_Type *mType;
    Bnd_ConnectionServiceInterface *mService = nullptr;
    Frame *mFrames = nullptr;
    int mListenerCount = 0;
    bool mReadOnly = false;
    bool mDying = false;
};
