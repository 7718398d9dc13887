#include "Kiv_ActionButton.h"

#include "Bndt_Root_Notifications.h"
#include "Bndt_SimpleValue_API.h"
#include "Kiv_ControlsSupport.h"
#include "Kiv_WhatsThis.h"

#include <QKeyEvent>
#include <QPointer>

Kiv_ActionButton::Kiv_ActionButton(QWidget *iParentP, const char *iName, const QString &iText,
                                   const QString &iActionScript,
                                   const QString &iEnabledStateConnectionSpec,
                                   bool iDefaultEnabledState)
    : QPushButton(iText, iParentP)
    , mEnabledStateConnectionSpec(iEnabledStateConnectionSpec)
    , mEnabledStateListener(QString(), Bnd_ListenerBase::EnvPtr())
    , mRepeat(QStringLiteral("ActionButtonAutoRepeatTask"), [this] { repeatHandler(); })
    , mDefaultEnabledState(iDefaultEnabledState)
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_ActionButton"));
    SetActionScript(iActionScript.toUtf8());
    connect(this, &QPushButton::clicked, this, &Kiv_ActionButton::slotClicked);
    connect(this, &QPushButton::pressed, this, &Kiv_ActionButton::slotPressed);
    connect(this, &QPushButton::released, this, &Kiv_ActionButton::slotReleased);
    mEnabledStateListener.setReceiveMessageCB(
        [this](const Bnd_MessageInterface &iMsg) { receiveEnabledState(iMsg); });
    updateEnabledAppearance();
}

Kiv_ActionButton::~Kiv_ActionButton()
{
    mRepeat.stop();
    // Detaching must not call back into a button that is going away.
    mEnabledStateListener.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
}

void Kiv_ActionButton::SetActionScript(const QByteArray &iScript)
{
    Kiv_ControlsSupport::setScript(mScript, QString::fromUtf8(iScript),
                                   "Kiv_ActionButton::SetActionScript");
}

void Kiv_ActionButton::setEnabledStateConnectionSpec(const QByteArray &iSpec)
{
    const QString spec = QString::fromUtf8(iSpec);
    if (spec == mEnabledStateConnectionSpec)
        return;
    mEnabledStateConnectionSpec = spec;
    if (mEnabledStateListener.isConnectedToModel() || mEnabledStateListener.isWaitingForModel()) {
        mEnabledStateListener.ClearConnection();
        updateEnabledAppearance();
    }
}

void Kiv_ActionButton::SetKorvexAutoRepeat(bool iAutoRepeat)
{
    mAutoRepeat = iAutoRepeat;
    if (!mAutoRepeat)
        mRepeat.stop();
}

void Kiv_ActionButton::SetDefaultEnabledState(bool iEnabled)
{
    mDefaultEnabledState = iEnabled;
    updateEnabledAppearance();
}

void Kiv_ActionButton::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Kiv_ControlsSupport::connectScript(mScript, iEnv, this, "Kiv_ActionButton::makeConnections");
    if (!mEnabledStateConnectionSpec.isEmpty()) {
        mEnabledStateListener.SetConnectionName(mEnabledStateConnectionSpec);
        mEnabledStateListener.connect(iEnv);
    }
}

void Kiv_ActionButton::slotClicked()
{
    QPointer<Kiv_ActionButton> self(this);
    mScript.run();
    if (self)
        afterClickAction();
}

void Kiv_ActionButton::slotPressed()
{
    if (mAutoRepeat)
        mRepeat.start();
}

void Kiv_ActionButton::slotReleased()
{
    mRepeat.stop();
}

void Kiv_ActionButton::keyPressEvent(QKeyEvent *iEvent)
{
    if (iEvent->key() == Qt::Key_Return || iEvent->key() == Qt::Key_Enter) {
        iEvent->accept();
        slotClicked();
        return;
    }
    QPushButton::keyPressEvent(iEvent);
}

void Kiv_ActionButton::afterClickAction() { }

void Kiv_ActionButton::repeatHandler()
{
    mScript.run();
}

void Kiv_ActionButton::updateEnabledAppearance()
{
    bool enabled = mDefaultEnabledState;
    if (mEnabledStateListener.isConnectedToModel()) {
        Bnd_Variant value;
        const bool *modelEnabled = nullptr;
        if (mEnabledStateListener.SendMessageToModel(
                Bndt_SimpleValue_BaseAPI::MsgGetVariant(&value)))
            modelEnabled = value.get<bool>();
        if (modelEnabled)
            enabled = *modelEnabled;
        else
            qCWarning(lcKivControls).noquote()
                << QLatin1String("Kiv_ActionButton::updateEnabledAppearance, the model \"")
                    + mEnabledStateListener.GetResolvedConnectionName()
                    + QLatin1String("\" holds no bool; the default enabled state is used");
    }
    setEnabled(enabled);
}

void Kiv_ActionButton::handleEnabledStateConnectedChanged()
{
    updateEnabledAppearance();
}

void Kiv_ActionButton::handleEnabledStateValueChanged()
{
    updateEnabledAppearance();
}

void Kiv_ActionButton::receiveEnabledState(const Bnd_MessageInterface &iMsg)
{
    if (iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        handleEnabledStateConnectedChanged();
    else if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
        handleEnabledStateValueChanged();
}
