#include "Kiv_ImmediateActionButton.h"

#include "Bndt_Root_Notifications.h"
#include "Bndt_SimpleValue_API.h"
#include "Kiv_ContextMenuListener.h"
#include "Kiv_ControlsSupport.h"
#include "Kiv_WhatsThis.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace {
bool isStateNotification(const Bnd_MessageInterface &iMsg)
{
    return iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>()
        || iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
}
} // namespace

Kiv_ImmediateActionButton::Kiv_ImmediateActionButton(QWidget *iParentP, const char *iName,
                                                     const QString &iActionScript,
                                                     const QString &iEnabledStateConnSpec)
    : QWidget(iParentP)
    , mContextMenuListenerP(std::make_unique<Kiv_ContextMenuListener>())
    , mEnabledStateConnSpec(iEnabledStateConnSpec.toUtf8())
    , mRepeat(QStringLiteral("ImmediateActionButtonAutoRepeatTask"), [this] { repeatHandler(); })
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_ImmediateActionButton"));
    setActionScript(iActionScript.toUtf8());
    mEnabledStateListener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (isStateNotification(iMsg))
            handleMsgEnabledStateDefault();
    });
    mVisibleStateListener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
        if (isStateNotification(iMsg))
            handleMsgVisibleStateDefault();
    });
}

Kiv_ImmediateActionButton::~Kiv_ImmediateActionButton()
{
    mRepeat.stop();
    // Detaching must not call back into a button that is going away.
    mEnabledStateListener.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
    mVisibleStateListener.setReceiveMessageCB(Bnd_ListenerBase::ReceiveCallback());
}

void Kiv_ImmediateActionButton::setActionScript(const QByteArray &iScript)
{
    Kiv_ControlsSupport::setScript(mScript, QString::fromUtf8(iScript),
                                   "Kiv_ImmediateActionButton::setActionScript");
}

void Kiv_ImmediateActionButton::setEnabledStateConnSpec(const QByteArray &iSpec)
{
    if (iSpec == mEnabledStateConnSpec)
        return;
    mEnabledStateConnSpec = iSpec;
    // The look stays as it is: without an enabled-state model nothing drives it.
    mEnabledStateListener.ClearConnection();
}

void Kiv_ImmediateActionButton::setVisibleStateConnectionSpec(const QByteArray &iSpec)
{
    if (iSpec == mVisibleStateConnSpec)
        return;
    mVisibleStateConnSpec = iSpec;
    mVisibleStateListener.ClearConnection();
    if (mHiddenByModel && mVisibleStateConnSpec.isEmpty())
        handleMsgVisibleStateDefault();
}

void Kiv_ImmediateActionButton::setContextMenuConnectionSpec(const QByteArray &iSpec)
{
    if (iSpec == mContextMenuConnSpec)
        return;
    mContextMenuConnSpec = iSpec;
    mContextMenuListenerP->setConnectionName(QString());
}

void Kiv_ImmediateActionButton::setContextMenuListener(
    std::unique_ptr<Kiv_ContextMenuListener> iListener)
{
    mContextMenuListenerP
        = iListener ? std::move(iListener) : std::make_unique<Kiv_ContextMenuListener>();
}

void Kiv_ImmediateActionButton::setImageReversed(bool iReversed)
{
    if (iReversed == mImageReversed)
        return;
    mImageReversed = iReversed;
    // Mirror what is shown (a name that failed to load left an older image in place).
    for (QPixmap &image : mImages)
        image = Kiv_ControlsSupport::mirrored(image);
    update();
}

void Kiv_ImmediateActionButton::setKorvexAutoRepeat(bool iAutoRepeat)
{
    mAutoRepeat = iAutoRepeat;
    if (!mAutoRepeat)
        mRepeat.stop();
}

void Kiv_ImmediateActionButton::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Kiv_ControlsSupport::connectScript(mScript, iEnv, this,
                                       "Kiv_ImmediateActionButton::makeConnections");
    if (!mEnabledStateConnSpec.isEmpty()) {
        mEnabledStateListener.SetConnectionName(QString::fromUtf8(mEnabledStateConnSpec));
        mEnabledStateListener.connect(iEnv);
    }
    if (!mVisibleStateConnSpec.isEmpty()) {
        mVisibleStateListener.SetConnectionName(QString::fromUtf8(mVisibleStateConnSpec));
        mVisibleStateListener.connect(iEnv);
        // Hidden until a model says otherwise.
        handleMsgVisibleStateDefault();
    }
    if (!mContextMenuConnSpec.isEmpty()) {
        mContextMenuListenerP->setConnectionName(QString::fromUtf8(mContextMenuConnSpec));
        mContextMenuListenerP->connect(iEnv);
    }
}

QSize Kiv_ImmediateActionButton::sizeHint() const
{
    return Kiv_ControlsSupport::imageSizeHint(mImages[mVisualState]);
}

bool Kiv_ImmediateActionButton::isContextMenuPress(const QMouseEvent *iEvent) const
{
    return iEvent->button() == Qt::RightButton && !mContextMenuConnSpec.isEmpty();
}

void Kiv_ImmediateActionButton::mousePressEvent(QMouseEvent *iEvent)
{
    if (isContextMenuPress(iEvent)) {
        iEvent->ignore(); // the context-menu event handles it
        return;
    }
    if (mVisualState == disabled)
        return;
    setVisualState(tracking);
    if (!mActionDelay) {
        QPointer<Kiv_ImmediateActionButton> self(this);
        mScript.run();
        // The script may have disabled the button, or destroyed it.
        if (!self || mVisualState == disabled)
            return;
    }
    if (mAutoRepeat)
        mRepeat.start();
}

void Kiv_ImmediateActionButton::mouseReleaseEvent(QMouseEvent *iEvent)
{
    // The release that ends a context-menu press does not act either.
    if (isContextMenuPress(iEvent)) {
        iEvent->ignore();
        return;
    }
    handleMsgEnabledStateDefault();
    mRepeat.stop();
    if (mActionDelay && mScript.hasScript() && mVisualState != disabled
        && rect().contains(iEvent->position().toPoint()))
        mScript.run();
}

void Kiv_ImmediateActionButton::leaveEvent(QEvent *iEvent)
{
    handleMsgEnabledStateDefault();
    QWidget::leaveEvent(iEvent);
}

void Kiv_ImmediateActionButton::contextMenuEvent(QContextMenuEvent *iEvent)
{
    if (mVisualState != disabled && mContextMenuListenerP->isConnected()
        && mContextMenuListenerP->popup(iEvent->globalPos())) {
        iEvent->accept();
        return;
    }
    iEvent->ignore();
}

void Kiv_ImmediateActionButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // palette() answers the colour group of the widget's current state.
    painter.fillRect(rect(), palette().brush(backgroundRole()));
    const QPixmap &image = mImages[mVisualState];
    if (!image.isNull())
        painter.drawPixmap(0, 0, image);
}

void Kiv_ImmediateActionButton::handleMsgEnabledStateDefault()
{
    bool enabled = true;
    if (!mEnabledStateListener.readValue(enabled))
        return; // no model: the look stays as it is
    if (enabled) {
        setVisualState(normal);
        setEnabled(true);
    } else {
        mRepeat.stop(); // a disabled button does not repeat, and gets no release to stop it
        setVisualState(disabled);
        setEnabled(false);
    }
}

void Kiv_ImmediateActionButton::handleMsgVisibleStateDefault()
{
    bool visible = mVisibleStateConnSpec.isEmpty();
    mVisibleStateListener.readValue(visible);
    if (!visible) {
        mRepeat.stop(); // a hidden button gets no release
        mHiddenByModel = true;
        hide();
    } else if (mHiddenByModel || !isWindow()) {
        // A window the model never hid is left to its owner: showing it would open it.
        mHiddenByModel = false;
        show();
    }
}

void Kiv_ImmediateActionButton::setImage(visualState iState, const QString &iName)
{
    mImageNames[iState] = iName.toUtf8();
    const QPixmap image
        = Kiv_ControlsSupport::loadImage(iName, devicePixelRatioF(), mImageReversed);
    if (image.isNull())
        return; // the image shown before stays
    mImages[iState] = image;
    updateGeometry();
    update();
}

void Kiv_ImmediateActionButton::repeatHandler()
{
    mScript.run();
}

void Kiv_ImmediateActionButton::setVisualState(visualState iState)
{
    if (iState == mVisualState)
        return;
    mVisualState = iState;
    update();
}
