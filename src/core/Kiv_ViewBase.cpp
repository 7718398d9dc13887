#include "Kiv_ViewBase.h"

#include "Kib_Assert.h"
#include "Kiv_ViewContainerInterface.h"

#include <QDebug>
#include <QKeyEvent>
#include <QPixmap>
#include <QWidget>

#include <cmath>

Kiv_ViewInterface::~Kiv_ViewInterface() = default;

Kiv_ViewBase::Kiv_ViewBase()
    : mToolTipListenerP(
        std::make_unique<StringListener>(QString(), Bnd_ConnectionEnvironment::blankEnvironment()))
{ }

Kiv_ViewBase::Kiv_ViewBase(const Kiv_ViewBase &iOther)
    : Kiv_ViewInterface(iOther)
    , mAcceptsFocus(iOther.mAcceptsFocus)
    , mCanDrag(iOther.mCanDrag)
    , mAcceptsDrops(iOther.mAcceptsDrops)
    , mDragType(iOther.mDragType)
    , mOrigin(iOther.mOrigin)
    , mName(iOther.mName)
    , mFixedAspect(iOther.mFixedAspect)
    , mAspect(iOther.mAspect)
    , mReadOnly(iOther.mReadOnly)
    , mSize(iOther.mSize)
    , mMinSize(iOther.mMinSize)
    , mZOrder(iOther.mZOrder)
    , mToolTipConnectionName(iOther.mToolTipConnectionName)
    , mToolTipListenerP(std::make_unique<StringListener>(
          QString(), Bnd_ConnectionEnvironment::blankEnvironment()))
{ }

Kiv_ViewBase::~Kiv_ViewBase() = default;

void Kiv_ViewBase::setParent(Kiv_ViewContainerInterface *iParent)
{
    mParentP = iParent;
}

Kiv_ViewContainerInterface *Kiv_ViewBase::getParent() const
{
    return mParentP;
}

void Kiv_ViewBase::setName(const QString &iName)
{
    mName = iName;
}

QString Kiv_ViewBase::getName() const
{
    return mName;
}

void Kiv_ViewBase::setOrigin(const QPoint &iOrigin)
{
    mOrigin = iOrigin;
}

QPoint Kiv_ViewBase::getOrigin() const
{
    return mOrigin;
}

int Kiv_ViewBase::getWidth() const
{
    return getSize().width();
}

int Kiv_ViewBase::getHeight() const
{
    return getSize().height();
}

QRect Kiv_ViewBase::getLocalDrawingRect() const
{
    return QRect(QPoint(0, 0), getSize());
}

QRect Kiv_ViewBase::getRectInParent() const
{
    return QRect(getOrigin(), getSize());
}

void Kiv_ViewBase::setRectInParent(const QRect &iRect)
{
    setOrigin(iRect.topLeft());
    setSize(iRect.size());
}

QSize Kiv_ViewBase::getSize() const
{
    return mSize;
}

void Kiv_ViewBase::setSize(const QSize &iSize)
{
    if (iSize.width() < 0 || iSize.height() < 0) {
        qWarning().noquote().nospace()
            << "Kiv_ViewBase::setSize, negative size " << iSize.width() << "x" << iSize.height()
            << " for view '" << mName << "'; taken as 0";
    }
    mSize = iSize.expandedTo(QSize(0, 0));
}

QSize Kiv_ViewBase::getMinSize() const
{
    return mMinSize;
}

void Kiv_ViewBase::setMinSize(const QSize &iSize)
{
    mMinSize = iSize.expandedTo(QSize(0, 0));
}

long Kiv_ViewBase::getZOrder() const
{
    return mZOrder;
}

void Kiv_ViewBase::setZOrder(long iZOrder)
{
    mZOrder = iZOrder;
}

void Kiv_ViewBase::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (mToolTipConnectionName.isEmpty()) {
        mToolTipListenerP->ClearConnection(); // a name taken away unbinds the tool tip
        return;
    }
    mToolTipListenerP->SetConnectionName(mToolTipConnectionName);
    mToolTipListenerP->connect(iEnv);
}

bool Kiv_ViewBase::isFixedAspect() const
{
    return mFixedAspect;
}

void Kiv_ViewBase::setIsFixedAspect(bool iFixed)
{
    mFixedAspect = iFixed;
}

void Kiv_ViewBase::setAspect(float iAspect)
{
    if (!std::isfinite(iAspect) || iAspect <= 0.0f) {
        qWarning().noquote().nospace()
            << "Kiv_ViewBase::setAspect, aspect " << iAspect << " of view '" << mName
            << "' is not a positive number; ignored";
        return;
    }
    mAspect = iAspect;
    mFixedAspect = true;
}

float Kiv_ViewBase::getAspect() const
{
    return mAspect;
}

void Kiv_ViewBase::setReadOnly(bool iReadOnly)
{
    mReadOnly = iReadOnly;
}

bool Kiv_ViewBase::getReadOnly() const
{
    return mReadOnly;
}

bool Kiv_ViewBase::acceptsFocus() const
{
    return mAcceptsFocus;
}

void Kiv_ViewBase::setAcceptsFocus(bool iAccepts)
{
    mAcceptsFocus = iAccepts;
}

void Kiv_ViewBase::mousePressEvent(QMouseEvent *, const QPoint &) { }

void Kiv_ViewBase::mouseReleaseEvent(QMouseEvent *, const QPoint &) { }

void Kiv_ViewBase::mouseMoveEvent(QMouseEvent *, const QPoint &) { }

void Kiv_ViewBase::mouseDoubleClickEvent(QMouseEvent *, const QPoint &) { }

void Kiv_ViewBase::dragEnterEvent(QDragEnterEvent *, const QPoint &) { }

void Kiv_ViewBase::dragMoveEvent(QDragMoveEvent *, const QPoint &) { }

void Kiv_ViewBase::dragLeaveEvent(QDragLeaveEvent *, const QPoint &) { }

void Kiv_ViewBase::dropEvent(QDropEvent *, const QPoint &) { }

bool Kiv_ViewBase::canDrag(const QPoint &)
{
    return mCanDrag && mDragType != eDragNone;
}

void Kiv_ViewBase::startDrag(const QPoint &) { }

bool Kiv_ViewBase::getToolTip(const QPoint &, QRect *oTipRect, QString *oTipString)
{
    if (!(oTipRect && oTipString))
        Kib_Assert::handleFailedAssert("oTipRect && oTipString", "coresw/UIF/Kiv/Kiv_ViewBase",
                                       277);
    if (!mToolTipListenerP->isConnectedToModel())
        return false;
    const QString tip = mToolTipListenerP->getValue();
    if (tip.isEmpty())
        return false;
    if (oTipRect)
        *oTipRect = getLocalDrawingRect();
    if (oTipString)
        *oTipString = tip;
    return true;
}

QDomElement Kiv_ViewBase::getDragData(QPoint, QDomDocument &, QPixmap &)
{
    return QDomElement();
}

QDomElement Kiv_ViewBase::getDragElement(QPoint iPos, QDomDocument &ioDocument)
{
    QPixmap unused;
    return getDragData(iPos, ioDocument, unused);
}

void Kiv_ViewBase::keyPressEvent(QKeyEvent *iEvent)
{
    if (iEvent)
        iEvent->ignore();
}

bool Kiv_ViewBase::event(QEvent *)
{
    return false;
}

bool Kiv_ViewBase::findItem(const QString &iName, QPoint *oWhere)
{
    if (iName != getName())
        return false;
    if (oWhere)
        *oWhere = getLocalDrawingRect().center();
    return true;
}

QString Kiv_ViewBase::findUiName(const QPoint &)
{
    return getName();
}

void Kiv_ViewBase::sendAllBitsChanged()
{
    if (mParentP)
        mParentP->childBitsChanged(this, getLocalDrawingRect(), false);
}

void Kiv_ViewBase::sendAllBitsChangedImmediate()
{
    if (mParentP)
        mParentP->childBitsChanged(this, getLocalDrawingRect(), true);
}

void Kiv_ViewBase::setSizeAndNotifyParent(const QSize &iSize)
{
    const QSize oldSize = getSize();
    setSize(iSize);
    if (mParentP)
        mParentP->childSizeChanged(this, getSize(), oldSize);
}

void Kiv_ViewBase::setToolTipConnectionID(const QString &iName)
{
    mToolTipConnectionName = iName;
}

void Kiv_ViewBase::setAcceptsDrops(bool iAccepts)
{
    QWidget *bridge = bridgeWidget();
    if (bridge)
        bridge->setAcceptDrops(true);
    else
        qWarning().noquote().nospace() << "Kiv_ViewBase::setAcceptsDrops, view '" << mName
                                       << "' is not hosted in a widget yet; drops cannot reach it";
    mAcceptsDrops = iAccepts;
}

void Kiv_ViewBase::setCanDrag(bool iCanDrag)
{
    mCanDrag = iCanDrag;
}

EDragType Kiv_ViewBase::getDragType() const
{
    return mDragType;
}

void Kiv_ViewBase::setDragType(EDragType iType)
{
    if (iType < eDragNone || iType > eDragMove) {
        qWarning().noquote().nospace() << "Kiv_ViewBase::setDragType, unknown drag type "
                                       << int(iType) << " for view '" << mName << "'; ignored";
        return;
    }
    mDragType = iType;
}

Qt::DropActions Kiv_ViewBase::dropActionsFor(EDragType iType)
{
    switch (iType) {
    case eDragCopy:
        return Qt::CopyAction;
    case eDragReference:
        return Qt::LinkAction;
    case eDragMove:
        return Qt::MoveAction;
    case eDragNone:
        break;
    }
    return Qt::IgnoreAction;
}

QWidget *Kiv_ViewBase::bridgeWidget() const
{
    return mParentP ? mParentP->getBridgeWidget() : nullptr;
}
