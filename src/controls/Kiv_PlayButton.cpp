#include "Kiv_PlayButton.h"

#include "Bndt_Root_Notifications.h"
#include "Bndt_SimpleValue_API.h"
#include "Kiv_ControlsSupport.h"
#include "Kiv_WhatsThis.h"

#include <QMouseEvent>
#include <QPainter>

namespace {
bool isConnectedNotification(const Bnd_MessageInterface &iMsg)
{
    const auto *connected = iMsg.as<Bndt_Root_Notifications::MsgConnectedChanged>();
    return connected && connected->connected;
}
} // namespace

Kiv_PlayButton::Kiv_PlayButton(QWidget *iParentP, const char *iName, const QString &iActionScript,
                               const QString &iPlayStateConnSpec)
    : QWidget(iParentP)
    , mPlayStateConnSpec(iPlayStateConnSpec.toUtf8())
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_PlayButton"));
    setActionScript(iActionScript.toUtf8());
    // A model that goes away leaves the state as it is.
    mPlayStateListener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (isConnectedNotification(iMsg))
            showModelState();
        else if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            handleMsgPlayStateDefault();
    });
    mEnabledStateListener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (isConnectedNotification(iMsg))
            showModelState();
        else if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            handleMsgEnabledStateDefault();
    });
}

Kiv_PlayButton::~Kiv_PlayButton()
{
    // Detaching must not call back into a button that is going away.
    mPlayStateListener.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
    mEnabledStateListener.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
}

void Kiv_PlayButton::setActionScript(const QByteArray &iScript)
{
    Kiv_ControlsSupport::setScript(mScript, QString::fromUtf8(iScript),
                                   "Kiv_PlayButton::setActionScript");
}

void Kiv_PlayButton::setPlayStateConnSpec(const QByteArray &iSpec)
{
    if (iSpec == mPlayStateConnSpec)
        return;
    mPlayStateConnSpec = iSpec;
    mPlayStateListener.ClearConnection();
}

void Kiv_PlayButton::setEnabledStateConnSpec(const QByteArray &iSpec)
{
    if (iSpec == mEnabledStateConnSpec)
        return;
    mEnabledStateConnSpec = iSpec;
    mEnabledStateListener.ClearConnection();
}

void Kiv_PlayButton::setImageReversed(bool iReversed)
{
    if (iReversed == mImageReversed)
        return;
    mImageReversed = iReversed;
    // Mirror what is shown (a name that failed to load left an older image in place).
    for (QPixmap &image : mImages)
        image = Kiv_ControlsSupport::mirrored(image);
    update();
}

void Kiv_PlayButton::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Kiv_ControlsSupport::connectScript(mScript, iEnv, this, "Kiv_PlayButton::makeConnections");
    if (!mPlayStateConnSpec.isEmpty()) {
        mPlayStateListener.SetConnectionName(QString::fromUtf8(mPlayStateConnSpec));
        mPlayStateListener.connect(iEnv);
    }
    if (!mEnabledStateConnSpec.isEmpty()) {
        mEnabledStateListener.SetConnectionName(QString::fromUtf8(mEnabledStateConnSpec));
        mEnabledStateListener.connect(iEnv);
    }
}

QSize Kiv_PlayButton::sizeHint() const
{
    return Kiv_ControlsSupport::imageSizeHint(mImages[mVisualState]);
}

void Kiv_PlayButton::mousePressEvent(QMouseEvent *)
{
    if (mVisualState != disabled)
        mScript.run();
}

void Kiv_PlayButton::paintEvent(QPaintEvent *)
{
    const QPixmap &image = mImages[mVisualState];
    if (image.isNull())
        return;
    QPainter painter(this);
    painter.drawPixmap(0, 0, image);
}

void Kiv_PlayButton::setImage(visualState iState, const QString &iName)
{
    mImageNames[iState] = iName;
    const QPixmap image
        = Kiv_ControlsSupport::loadImage(iName, devicePixelRatioF(), mImageReversed);
    if (image.isNull())
        return; // the image shown before stays
    mImages[iState] = image;
    updateGeometry();
    update();
}

void Kiv_PlayButton::handleMsgPlayStateDefault()
{
    QString playState;
    if (!mPlayStateListener.readValue(playState))
        return;
    if (playState == QLatin1String("playing"))
        setVisualState(playing);
    else if (playState == QLatin1String("cueing"))
        setVisualState(cueing);
    else
        setVisualState(normal);
}

void Kiv_PlayButton::handleMsgEnabledStateDefault()
{
    bool enabled = true;
    if (!mEnabledStateListener.readValue(enabled))
        return;
    // Enabling shows the normal image whatever the play state; the next play-state change
    // brings that back.
    setVisualState(enabled ? normal : disabled);
}

void Kiv_PlayButton::showModelState()
{
    handleMsgPlayStateDefault();
    bool enabled = true;
    if (mEnabledStateListener.readValue(enabled) && !enabled)
        setVisualState(disabled);
}

void Kiv_PlayButton::setVisualState(visualState iState)
{
    if (iState == mVisualState)
        return;
    mVisualState = iState;
    update();
}
