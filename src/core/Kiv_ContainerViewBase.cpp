#include "Kiv_ContainerViewBase.h"

#include <QDebug>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <vector>

Kiv_ContainerViewBase::Kiv_ContainerViewBase() = default;

Kiv_ContainerViewBase::Kiv_ContainerViewBase(const Kiv_ContainerViewBase &iOther)
    : Kiv_ViewBase(iOther)
    , Kiv_ViewContainerInterface(iOther)
{
    for (const auto &entry : iOther.mSubViews) {
        std::unique_ptr<Kiv_ViewInterface> copy = entry.second->clone();
        if (!copy) {
            qWarning().noquote().nospace()
                << "Kiv_ContainerViewBase::Kiv_ContainerViewBase, sub-view '"
                << entry.second->getName() << "' gave no copy; left out";
            continue;
        }
        copy->setParent(this);
        // At the end of its equal range, so views of equal z-order keep their order.
        mSubViews.emplace_hint(mSubViews.end(), entry.first, copy.release());
    }
}

Kiv_ContainerViewBase::~Kiv_ContainerViewBase()
{
    removeAllSubViews();
}

std::unique_ptr<Kiv_ViewInterface> Kiv_ContainerViewBase::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_ContainerViewBase(*this));
}

bool Kiv_ContainerViewBase::AddSubView(Kiv_ViewInterface *iView)
{
    const char *problem = nullptr;
    if (!iView)
        problem = "null view";
    else if (iView == this)
        problem = "a container cannot contain itself";
    else if (hasSubView(iView))
        problem = "view is already a sub-view";
    else if (iView->getParent())
        problem = "view belongs to another container";
    if (problem) {
        qWarning().noquote().nospace() << "Kiv_ContainerViewBase::AddSubView, " << problem
                                       << " (container '" << getName() << "'); not added";
        return false;
    }
    mSubViews.emplace(iView->getZOrder(), iView);
    iView->setParent(this);
    return true;
}

Kiv_ContainerViewBase::SubViewMap::iterator
Kiv_ContainerViewBase::locate(const Kiv_ViewInterface *iView)
{
    // Compare pointers only: a foreign pointer is never dereferenced, and a view whose
    // z-order changed after it was added is still found.
    for (auto it = mSubViews.begin(); it != mSubViews.end(); ++it)
        if (it->second == iView)
            return it;
    return mSubViews.end();
}

bool Kiv_ContainerViewBase::hasSubView(const Kiv_ViewInterface *iView) const
{
    if (!iView)
        return false;
    for (const auto &entry : mSubViews)
        if (entry.second == iView)
            return true;
    return false;
}

void Kiv_ContainerViewBase::removeView(Kiv_ViewInterface *iView)
{
    const auto it = locate(iView);
    if (!iView || it == mSubViews.end())
        return;
    mSubViews.erase(it);
    if (mMouseGrabP == iView) {
        mMouseGrabP = nullptr;
        mGrabFromPress = false;
    }
    if (mFocusP == iView)
        mFocusP = nullptr;
    childBitsChanged(iView, iView->getLocalDrawingRect(), true);
    delete iView;
}

void Kiv_ContainerViewBase::removeAllSubViews()
{
    // Empty the container first, so nothing reaches a view being deleted through it.
    SubViewMap doomed;
    doomed.swap(mSubViews);
    mMouseGrabP = nullptr;
    mFocusP = nullptr;
    mGrabFromPress = false;
    for (auto &entry : doomed)
        delete entry.second;
}

Kiv_ViewInterface *Kiv_ContainerViewBase::getViewByName(const QString &iName) const
{
    for (const auto &entry : mSubViews)
        if (entry.second->getName() == iName)
            return entry.second;
    return nullptr;
}

void Kiv_ContainerViewBase::setSubViewForMouseEvents(Kiv_ViewInterface *iView)
{
    if (iView && !hasSubView(iView)) {
        qWarning().noquote().nospace()
            << "Kiv_ContainerViewBase::setSubViewForMouseEvents, view '" << iView->getName()
            << "' is not a sub-view of '" << getName() << "'; ignored";
        return;
    }
    mMouseGrabP = iView;
    mGrabFromPress = false;
}

Kiv_ContainerViewBase::SubViewMap
Kiv_ContainerViewBase::subViewsContaining(const QPoint &iPos) const
{
    SubViewMap hits;
    for (const auto &entry : mSubViews)
        if (entry.second->getRectInParent().contains(iPos))
            hits.emplace_hint(hits.end(), entry);
    return hits;
}

Kiv_ContainerViewBase::SubViewMap
Kiv_ContainerViewBase::subViewsIntersecting(const QRect &iRect) const
{
    SubViewMap hits;
    for (const auto &entry : mSubViews)
        if (entry.second->getRectInParent().intersects(iRect))
            hits.emplace_hint(hits.end(), entry);
    return hits;
}

void Kiv_ContainerViewBase::paintSubView(Kiv_ViewInterface *iView, QPainter *iPainter,
                                         const QRect &iRect)
{
    if (!iView || !iPainter)
        return;
    const QPoint origin = iView->getOrigin();
    const QRect local = iView->getLocalDrawingRect();
    const QRect part = iRect.translated(-origin).intersected(local);
    if (part.isEmpty())
        return;
    iPainter->save();
    iPainter->translate(origin);
    iPainter->setClipRect(local, iPainter->hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
    iView->drawContents(iPainter, part);
    iPainter->restore();
}

void Kiv_ContainerViewBase::drawContents(QPainter *iPainter, const QRect &iRect)
{
    // Ascending z-order: what comes later is drawn over what came before.
    for (const auto &entry : subViewsIntersecting(iRect))
        if (hasSubView(entry.second))
            paintSubView(entry.second, iPainter, iRect);
}

void Kiv_ContainerViewBase::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    for (const auto &entry : SubViewMap(mSubViews))
        if (hasSubView(entry.second))
            entry.second->makeConnections(iEnv);
    Kiv_ViewBase::makeConnections(iEnv);
}

// Offers the event to the sub-views under the point, topmost first, until one leaves it
// accepted. Each is offered the event in the state it arrived in (accepted for mouse events,
// not accepted for drag events). A view removed by an earlier handler is skipped. Answers
// whether a view took the event; when none did, the event is left not accepted.
template<class Event>
bool Kiv_ContainerViewBase::dispatchTopDown(Event *iEvent, const QPoint &iPos,
                                            void (Kiv_ViewInterface::*iHandler)(Event *,
                                                                                const QPoint &),
                                            bool iEventStartsAccepted)
{
    const SubViewMap hits = subViewsContaining(iPos);
    for (auto it = hits.rbegin(); it != hits.rend(); ++it) {
        Kiv_ViewInterface *view = it->second;
        if (!hasSubView(view))
            continue;
        iEvent->setAccepted(iEventStartsAccepted);
        (view->*iHandler)(iEvent, iPos - view->getOrigin());
        if (iEvent->isAccepted())
            return true;
    }
    iEvent->ignore();
    return false;
}

template<class Event>
void Kiv_ContainerViewBase::dispatchMouse(QMouseEvent *iEvent, const QPoint &iPos,
                                          void (Kiv_ViewInterface::*iHandler)(Event *,
                                                                              const QPoint &))
{
    if (!iEvent)
        return;
    if (mMouseGrabP) {
        (mMouseGrabP->*iHandler)(iEvent, iPos - mMouseGrabP->getOrigin());
        return;
    }
    dispatchTopDown(iEvent, iPos, iHandler, true);
}

void Kiv_ContainerViewBase::mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    if (!iEvent)
        return;
    const SubViewMap hits = subViewsContaining(iPos);
    for (auto it = hits.rbegin(); it != hits.rend(); ++it) {
        Kiv_ViewInterface *view = it->second;
        if (!hasSubView(view))
            continue; // removed by a view pressed before
        iEvent->accept();
        view->mousePressEvent(iEvent, iPos - view->getOrigin());
        if (!iEvent->isAccepted())
            continue;
        if (hasSubView(view)) { // the view may have removed itself
            mMouseGrabP = view;
            mGrabFromPress = true;
            if (view->acceptsFocus())
                mFocusP = view;
        }
        return;
    }
    iEvent->ignore();
}

void Kiv_ContainerViewBase::mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    dispatchMouse(iEvent, iPos, &Kiv_ViewInterface::mouseReleaseEvent);
    if (iEvent && mGrabFromPress && iEvent->buttons() == Qt::NoButton) {
        mMouseGrabP = nullptr;
        mGrabFromPress = false;
    }
}

void Kiv_ContainerViewBase::mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    dispatchMouse(iEvent, iPos, &Kiv_ViewInterface::mouseMoveEvent);
}

void Kiv_ContainerViewBase::mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos)
{
    dispatchMouse(iEvent, iPos, &Kiv_ViewInterface::mouseDoubleClickEvent);
}

void Kiv_ContainerViewBase::dragEnterEvent(QDragEnterEvent *iEvent, const QPoint &iPos)
{
    if (iEvent)
        dispatchTopDown(iEvent, iPos, &Kiv_ViewInterface::dragEnterEvent, false);
}

void Kiv_ContainerViewBase::dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos)
{
    if (iEvent)
        dispatchTopDown(iEvent, iPos, &Kiv_ViewInterface::dragMoveEvent, false);
}

void Kiv_ContainerViewBase::dragLeaveEvent(QDragLeaveEvent *iEvent, const QPoint &iPos)
{
    if (!iEvent)
        return;
    // Any sub-view may have been under the drag: every one hears that it left.
    for (const auto &entry : SubViewMap(mSubViews))
        if (hasSubView(entry.second))
            entry.second->dragLeaveEvent(iEvent, iPos - entry.second->getOrigin());
}

void Kiv_ContainerViewBase::dropEvent(QDropEvent *iEvent, const QPoint &iPos)
{
    if (iEvent)
        dispatchTopDown(iEvent, iPos, &Kiv_ViewInterface::dropEvent, false);
}

void Kiv_ContainerViewBase::keyPressEvent(QKeyEvent *iEvent)
{
    if (mFocusP)
        mFocusP->keyPressEvent(iEvent);
    else
        Kiv_ViewBase::keyPressEvent(iEvent);
}

bool Kiv_ContainerViewBase::getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString)
{
    if (oTipRect && oTipString) {
        const SubViewMap hits = subViewsContaining(iPos);
        for (auto it = hits.rbegin(); it != hits.rend(); ++it) {
            const QPoint origin = it->second->getOrigin();
            if (it->second->getToolTip(iPos - origin, oTipRect, oTipString)) {
                oTipRect->translate(origin);
                return true;
            }
        }
    }
    return Kiv_ViewBase::getToolTip(iPos, oTipRect, oTipString);
}

bool Kiv_ContainerViewBase::findItem(const QString &iName, QPoint *oWhere)
{
    const int dot = iName.indexOf(QLatin1Char('.'));
    const QString head = dot < 0 ? iName : iName.left(dot);
    const QString rest = dot < 0 ? QString() : iName.mid(dot + 1);
    if (head != getName())
        return false;
    if (rest.isEmpty()) {
        if (oWhere)
            *oWhere = getLocalDrawingRect().center();
        return true;
    }
    Kiv_ViewInterface *sub = getViewByName(rest.section(QLatin1Char('.'), 0, 0));
    QPoint where;
    if (!sub || !sub->findItem(rest, &where))
        return false;
    if (oWhere)
        *oWhere = where + sub->getOrigin();
    return true;
}

QString Kiv_ContainerViewBase::findUiName(const QPoint &iPos)
{
    QString name = getName();
    const SubViewMap hits = subViewsContaining(iPos);
    if (!hits.empty()) {
        Kiv_ViewInterface *top = hits.rbegin()->second;
        name += QLatin1Char('.') + top->findUiName(iPos - top->getOrigin());
    }
    return name;
}

void Kiv_ContainerViewBase::childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize,
                                             QSize iOldSize)
{
    if (iChild)
        childBitsChanged(
            iChild, QRect(QPoint(0, 0), iNewSize).united(QRect(QPoint(0, 0), iOldSize)), false);
}

void Kiv_ContainerViewBase::childInsertedRow(Kiv_ViewInterface *iChild, int iY, int)
{
    if (iChild)
        childBitsChanged(iChild, QRect(0, iY, iChild->getWidth(), iChild->getHeight() - iY), false);
}

void Kiv_ContainerViewBase::childDeletedRow(Kiv_ViewInterface *iChild, int iY, int)
{
    if (iChild)
        childBitsChanged(iChild, QRect(0, iY, iChild->getWidth(), iChild->getHeight() - iY), false);
}

void Kiv_ContainerViewBase::childInsertedColumn(Kiv_ViewInterface *iChild)
{
    if (iChild)
        childBitsChanged(iChild, iChild->getLocalDrawingRect(), false);
}

void Kiv_ContainerViewBase::childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect,
                                             bool iImmediate)
{
    if (iChild && getParent())
        getParent()->childBitsChanged(this, iRect.translated(iChild->getOrigin()), iImmediate);
}

QWidget *Kiv_ContainerViewBase::getBridgeWidget()
{
    return getParent() ? getParent()->getBridgeWidget() : nullptr;
}

void Kiv_ContainerViewBase::overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor,
                                                   int iX, int iY)
{
    if (!iChild || !getParent())
        return;
    const QPoint origin = iChild->getOrigin();
    getParent()->overlayChildEditWidget(this, iEditor, iX + origin.x(), iY + origin.y());
}
