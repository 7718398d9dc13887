#pragma once

#include "Bnd_ConnectionToListener.h"
#include "Bnd_ConnectionToModel.h"
#include "Bndt_Root_Notifications.h"
#include "Kiv_ConnectionUtils.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QWidget;

/// One bound value of a widget, with the connection-string grammar every single-value widget
/// shares:
///
/// - the same string again changes nothing (the listener object stays);
/// - an empty string leaves the value unbound;
/// - "publish" (case-sensitive, after trimming), optional blanks and a name: the widget offers
///   its own model under that name (after "$Window" substitution), answering gets with its
///   value and taking sets;
/// - anything else names a model; the listener connects when an environment reaches it
///   (connect()), or at once when the name needs none.
///
/// Dropping a binding un-publishes the own model and clears the listener; both are kept (not
/// deleted) until the widget goes away, so a callback still running on them stays safe.
///
/// The widget supplies what to do on a change (onChanged) and, if it can be published, how to
/// read and write its value (onPublishedGet, onPublishedSet). Values it sends with send() are
/// sent with an echo guard raised, so the model's change notification does not come back.
template<class T> class Kiv_ValueBinding
{
public:
    typedef Bnd_ConnectionToModel<Bndt_SimpleValue<T>> Listener;
    typedef Bnd_ConnectionToListener<Bndt_SimpleValue<T>> OwnModel;
    typedef Bndt_SimpleValue_API<T> API;

    explicit Kiv_ValueBinding(QWidget *iOwner = nullptr)
        : mOwner(iOwner)
    { }
    Kiv_ValueBinding(const Kiv_ValueBinding &) = delete;
    Kiv_ValueBinding &operator=(const Kiv_ValueBinding &) = delete;

    /// Called when the bound value may have changed (a model notification or a connection
    /// change), but not for the echo of the widget's own send().
    void onChanged(std::function<void()> iCallback) { mOnChanged = std::move(iCallback); }
    /// For a published value: the widget's current value.
    void onPublishedGet(std::function<T()> iGet) { mGet = std::move(iGet); }
    /// For a published value: take a value set by a listener; answer whether the widget's value
    /// changed (the binding then tells the model's listeners).
    void onPublishedSet(std::function<bool(const T &)> iSet) { mSet = std::move(iSet); }

    /// Accepts a connection string; answers false when it equals the stored one.
    bool setConnectionString(const QByteArray &iString)
    {
        if (iString == mString && (mHasString || iString.isEmpty()))
            return false;
        mString = iString;
        mHasString = true;
        clear();
        const QString text = QString::fromUtf8(iString);
        const QString trimmed = text.trimmed();
        if (trimmed.startsWith(QLatin1String("publish"))) {
            const QString name
                = Kiv_SubscriptionIdentifierSubstitution(trimmed.mid(7).trimmed(), mOwner);
            mOwnModel = std::make_unique<OwnModel>(name);
            mOwnModel->setReceiveMessageCB(
                [this](const Bnd_MessageInterface &m) { receiveOwn(m); });
        } else if (!trimmed.isEmpty()) {
            mListener = std::make_unique<Listener>(QString(),
                                                   Bnd_ConnectionEnvironment::blankEnvironment());
            mListener->setReceiveMessageCB([this](const Bnd_MessageInterface &m) { receive(m); });
            mListener->SetConnectionName(text);
        }
        return true;
    }
    const QByteArray &connectionString() const { return mString; }

    /// Drops the present binding (un-publishes the own model, clears the listener).
    void clear()
    {
        if (mOwnModel) {
            mOwnModel->UnPublish();
            mOwnModel->setReceiveMessageCB(Bnd_ModelBase::ReceiveCallback());
            mRetiredModels.push_back(std::move(mOwnModel));
        }
        if (mListener) {
            mListener->ClearConnection();
            mListener->setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
            mRetiredListeners.push_back(std::move(mListener));
        }
    }

    /// Binds the listener in the environment (a published value needs nothing).
    void connect(const Bnd_ConnectionEnvironmentPtr &iEnv)
    {
        if (mListener)
            mListener->connect(iEnv);
    }

    bool isBound() const { return mListener || mOwnModel; }
    bool isConnected() const { return mListener && mListener->isConnectedToModel(); }
    bool isPublished() const { return mOwnModel != nullptr; }
    Listener *listener() const { return mListener.get(); }
    OwnModel *ownModel() const { return mOwnModel.get(); }
    bool echoGuard() const { return mEchoGuard; }

    /// The bound model's value, or `iDefault` when there is none to read.
    T value(const T &iDefault = T()) const
    {
        return isConnected() ? mListener->getValue(iDefault) : iDefault;
    }
    /// Sends a value to the bound model; answers the status (Bnd_Status::NotConnected when
    /// there is no connected model, ReadOnly when it refuses).
    int send(const T &iValue)
    {
        if (!isConnected())
            return Bnd_Status::NotConnected;
        mEchoGuard = true;
        const int status = mListener->setValue(iValue);
        mEchoGuard = false;
        return status;
    }
    /// The widget's value changed by itself: tells the listeners of the published model.
    void notifyPublishedChanged()
    {
        if (mOwnModel)
            mOwnModel->notifyValueChanged();
    }

private:
    void receive(const Bnd_MessageInterface &iMsg)
    {
        if (mEchoGuard || !mOnChanged)
            return;
        if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
            || iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>()
            || iMsg.is<Bndt_SimpleValue_Notifications::MsgReadOnlyChanged>())
            mOnChanged();
    }

    void receiveOwn(const Bnd_MessageInterface &iMsg)
    {
        if (const auto *get = iMsg.as<typename API::MsgGet>()) {
            if (get->value && mGet)
                *get->value = mGet();
        } else if (const auto *getVariant = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgGetVariant>()) {
            if (getVariant->value && mGet)
                *getVariant->value = Bnd_Variant(mGet());
        } else if (const auto *set = iMsg.as<typename API::MsgSet>()) {
            take(set->value);
        } else if (const auto *setVariant = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgSetVariant>()) {
            if (const T *v = setVariant->value.template get<T>())
                take(*v);
            else
                iMsg.setStatus(Bnd_Status::WrongType);
        } else if (const auto *ro = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgIsReadOnly>()) {
            if (ro->readOnly)
                *ro->readOnly = !mSet;
        } else {
            iMsg.setStatus(Bnd_Status::NotHandled);
        }
    }

    void take(const T &iValue)
    {
        if (mSet && mSet(iValue))
            notifyPublishedChanged();
    }

    QWidget *mOwner;
    QByteArray mString;
    std::unique_ptr<Listener> mListener;
    std::unique_ptr<OwnModel> mOwnModel;
    std::vector<std::unique_ptr<Listener>> mRetiredListeners;
    std::vector<std::unique_ptr<OwnModel>> mRetiredModels;
    std::function<void()> mOnChanged;
    std::function<T()> mGet;
    std::function<bool(const T &)> mSet;
    bool mHasString = false;
    bool mEchoGuard = false;
};
