#pragma once

#include "Bnd_ConnectionToListener.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Bndt_Root_Notifications.h"
#include "Kiv_ConnectionUtils.h"
#include "Kiv_RetireLater.h"

#include <QByteArray>
#include <QDebug>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class QWidget;

/// One bound value of a widget, with the connection-string grammar every single-value widget
/// shares:
///
/// - the same string again changes nothing (the listener object stays), also after clear();
/// - an empty string leaves the value unbound;
/// - "publish" (case-sensitive, after trimming), optional blanks and a name: the widget offers
///   its own model under that name, answering gets with its value and taking sets (unless the
///   binding refuses publishing: see refusePublishing());
/// - anything else names a model; the listener connects when an environment reaches it
///   (connect()), or at once when the name needs none.
///
/// A name beginning with "$Window" is made unique to the top-level window of the widget
/// (Kiv_SubscriptionIdentifierSubstitution), as a script's names are. A widget gives itself to
/// the constructor: a name it publishes is resolved when it is set. A view has no widget of its
/// own: it passes null and gives its bridge widget to connect(); a name it publishes that needs
/// a window waits until then. A listened-to name is resolved anew at every connect().
///
/// Dropping a binding detaches the listener or un-publishes the own model at once and deletes
/// it later (Kiv_RetireLater), so a callback still running on it stays safe.
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
    ~Kiv_ValueBinding() { dropBinding(); }
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
    /// Makes "publish" strings an error for a value that is only ever read from a model: such a
    /// string is logged, naming `iOperation` ("Kiv_CheckBox::setCheckedStateConnectionSpec"),
    /// and leaves the value unbound; nothing is published.
    void refusePublishing(const char *iOperation) { mRefusingOperation = iOperation; }

    /// Accepts a connection string; answers false when it changes nothing.
    bool setConnectionString(const QByteArray &iString)
    {
        if (iString == mString && (mHasString || iString.isEmpty()))
            return false;
        mString = iString;
        mHasString = true;
        dropBinding();
        const QString text = QString::fromUtf8(iString);
        const QString trimmed = text.trimmed();
        if (trimmed.startsWith(QLatin1String("publish"))) {
            if (mRefusingOperation) {
                qWarning().noquote().nospace()
                    << mRefusingOperation << ", this value is only read from a model; '" << text
                    << "' left unbound";
                return true;
            }
            mPublishName = trimmed.mid(7).trimmed();
            if (mOwner || !mPublishName.startsWith(QLatin1String("$Window")))
                publish(mOwner);
        } else if (!trimmed.isEmpty()) {
            mListenName = text;
            mListener = std::make_unique<Listener>(QString(),
                                                   Bnd_ConnectionEnvironment::blankEnvironment());
            mListener->setReceiveMessageCB([this](const Bnd_MessageInterface &m) { receive(m); });
            mListener->SetConnectionName(listenName(mOwner));
        }
        return true;
    }
    const QByteArray &connectionString() const { return mString; }
    /// The connection string for a copy of the widget or view: the same string, except that a
    /// copy of a publishing one listens to the original's model instead of publishing the name
    /// a second time (bound to exactly that model once the original has published it).
    QByteArray connectionStringForCopy() const
    {
        if (mOwnModel && mOwnModel->isPublished())
            return Bnd_Utils::Bnd_MakeStaticConnectionSpec(mOwnModel->publishedName()).toUtf8();
        if (!mPublishName.isNull())
            return mPublishName.toUtf8();
        return mString;
    }

    /// Drops the present binding (un-publishes the own model, clears the listener) but keeps
    /// the connection string.
    void clear() { dropBinding(); }

    /// Binds the listener in the environment; `iWindowOf` (or else the owner widget) tells the
    /// window of "$Window" names. A view's value that waited for its window is published.
    void connect(const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWindowOf = nullptr)
    {
        QWidget *widget = iWindowOf ? iWindowOf : mOwner;
        if (!mPublishName.isNull() && !mOwner
            && (iWindowOf || !mPublishName.startsWith(QLatin1String("$Window"))))
            publish(iWindowOf);
        if (mListener) {
            mListener->SetConnectionName(listenName(widget));
            mListener->connect(iEnv);
        }
    }

    bool isBound() const { return mListener || mOwnModel; }
    bool isConnected() const { return mListener && mListener->isConnectedToModel(); }
    /// Whether the widget holds the value itself ("publish"), found by its name or not.
    bool holdsValue() const { return mOwnModel != nullptr; }
    /// Whether the widget's own model is findable under its name (publishing a name that is
    /// taken fails).
    bool isPublished() const { return mOwnModel && mOwnModel->isPublished(); }
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

    QString listenName(QWidget *iWidget) const
    {
        return mListenName.trimmed().startsWith(QLatin1String("$Window"))
            ? Kiv_SubscriptionIdentifierSubstitution(mListenName, iWidget)
            : mListenName;
    }

    // Publishes (or re-publishes, when the window changed) the own model under the name.
    void publish(QWidget *iWidget)
    {
        const QString name = Kiv_SubscriptionIdentifierSubstitution(mPublishName, iWidget);
        if (!mOwnModel) {
            mOwnModel = std::make_unique<OwnModel>(name);
            mOwnModel->setReceiveMessageCB(
                [this](const Bnd_MessageInterface &m) { receiveOwn(m); });
        } else if (mOwnModel->GetConnectionName() != name) {
            mOwnModel->SetConnectionName(name);
            mOwnModel->Publish(&Bnd_ConnectionDict::Singleton());
        }
    }

    void dropBinding()
    {
        mPublishName = QString();
        mListenName.clear();
        Kiv_RetireLater::model(std::move(mOwnModel));
        Kiv_RetireLater::listener(std::move(mListener));
    }

    QWidget *mOwner;
    QByteArray mString;
    QString mPublishName; // null unless publishing
    QString mListenName; // as given
    std::unique_ptr<Listener> mListener;
    std::unique_ptr<OwnModel> mOwnModel;
    std::function<void()> mOnChanged;
    std::function<T()> mGet;
    std::function<bool(const T &)> mSet;
    const char *mRefusingOperation = nullptr;
    bool mHasString = false;
    bool mEchoGuard = false;
};
