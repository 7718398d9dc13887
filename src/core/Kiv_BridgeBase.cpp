#include "Kiv_BridgeBase.h"

#include "Kiv_ViewContainerInterface.h"

#include <QDebug>
#include <QPainter>
#include <QWidget>

Kiv_BridgeBase::Kiv_BridgeBase(QWidget *iOwner)
    : mOwnerP(iOwner)
{ }

Kiv_BridgeBase::~Kiv_BridgeBase()
{
    deleteChild();
}

void Kiv_BridgeBase::deleteChild()
{
    mChildP.reset();
}

Kiv_PointOfInterest Kiv_BridgeBase::findPoi(const QString &iName)
{
    QPoint where(0, 0);
    if (mChildP && mChildP->findItem(iName, &where))
        return Kiv_PointOfInterest(mOwnerP, where);
    return Kiv_PointOfInterest();
}

QString Kiv_BridgeBase::findUiName(const QPoint &iPoint)
{
    QString name = mOwnerP ? mOwnerP->objectName() : QString();
    if (mChildP && mChildP->getLocalDrawingRect().contains(iPoint)) {
        if (!name.isEmpty())
            name += QLatin1Char('.');
        name += mChildP->findUiName(iPoint);
    }
    return name;
}

void Kiv_BridgeBase::setChild(Kiv_ViewInterface *iView)
{
    acceptChild(iView, "Kiv_BridgeBase::setChild");
}

bool Kiv_BridgeBase::acceptChild(Kiv_ViewInterface *iView, const char *iOperation)
{
    if (iView == mChildP.get())
        return iView != nullptr; // hooked up and fitted again
    if (iView && iView->getParent()) {
        // Its container owns it: taking it too would delete it twice.
        qWarning().noquote().nospace() << iOperation << ", view '" << iView->getName()
                                       << "' belongs to a container; not taken";
        return false;
    }
    mChildP.reset(iView);
    return iView != nullptr;
}

Kiv_ViewInterface *Kiv_BridgeBase::getChild() const
{
    return mChildP.get();
}

std::unique_ptr<Kiv_ViewInterface> Kiv_BridgeBase::takeChild()
{
    if (mChildP)
        mChildP->setParent(nullptr);
    return std::move(mChildP);
}

void Kiv_BridgeBase::setBridgeBackgroundColor(const QColor &iColor)
{
    mBackgroundColor = iColor;
    mBackgroundColorSet = true;
    if (mOwnerP)
        mOwnerP->update();
}

void Kiv_BridgeBase::setBridgeBackgroundPixmap(const QPixmap &iPixmap, bool iTiled)
{
    mBackgroundPixmap = iPixmap;
    mPixmapTiled = iTiled;
    if (mOwnerP)
        mOwnerP->update();
}

bool Kiv_BridgeBase::paintBackground(QPainter &iPainter, const QRect &iArea) const
{
    if (!mChildP)
        return false;
    if (mBackgroundColorSet)
        iPainter.fillRect(iArea, mBackgroundColor);
    if (!mBackgroundPixmap.isNull()) {
        if (mPixmapTiled)
            iPainter.drawTiledPixmap(iArea, mBackgroundPixmap, iArea.topLeft());
        else
            iPainter.drawPixmap(iArea, mBackgroundPixmap);
    }
    return true;
}

bool Kiv_BridgeBase::childToolTip(const QPoint &iPos, QRect *oRect, QString *oText) const
{
    return mChildP && mChildP->getToolTip(iPos, oRect, oText);
}
