#include "Kiv_BridgeQScrollArea.h"

#include "Kiv_WhatsThis.h"

#include <QDropEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

/// The viewport of the scroll bridge: it draws the view and fits it to its size.
class Kiv_BridgeViewport : public QWidget
{
public:
    explicit Kiv_BridgeViewport(Kiv_BridgeQScrollArea *iArea)
        : mAreaP(iArea)
    {
        setObjectName(QStringLiteral("ViewportWidget"));
    }
    /// The scroll bridge is going away: from now on the viewport is a plain widget.
    void detach() { mAreaP = nullptr; }

protected:
    void paintEvent(QPaintEvent *iEvent) override
    {
        if (!mAreaP)
            return;
        QPainter painter(this);
        mAreaP->paintViewport(painter, iEvent->rect());
    }
    void resizeEvent(QResizeEvent *iEvent) override
    {
        QWidget::resizeEvent(iEvent);
        if (mAreaP)
            mAreaP->adjustChildToPortSize();
    }
    bool event(QEvent *iEvent) override
    {
        if (mAreaP && iEvent->type() == QEvent::ToolTip) {
            auto *help = static_cast<QHelpEvent *>(iEvent);
            mAreaP->showToolTip(help->pos(), help->globalPos());
            return true;
        }
        // Tab and Shift+Tab move the focus on, unless the view uses them (to go from cell to
        // cell): it is asked first.
        if (mAreaP && iEvent->type() == QEvent::KeyPress) {
            auto *key = static_cast<QKeyEvent *>(iEvent);
            if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab)
                && mAreaP->offerKeyToChild(key))
                return true;
        }
        return QWidget::event(iEvent);
    }

private:
    Kiv_BridgeQScrollArea *mAreaP;
};

Kiv_BridgeQScrollArea::Kiv_BridgeQScrollArea(QWidget *iParent)
    : QScrollArea(iParent)
    , Kiv_BridgeBase(this)
    , mViewportP(new Kiv_BridgeViewport(this))
{
    setViewport(mViewportP); // the scroll area takes it as its child
    mViewportP->installEventFilter(this);
    mAutoScrollTimer.setSingleShot(false);
    connect(&mAutoScrollTimer, &QTimer::timeout, this, &Kiv_BridgeQScrollArea::doDragAutoScroll);
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_BridgeQScrollArea"));
}

Kiv_BridgeQScrollArea::~Kiv_BridgeQScrollArea()
{
    mAutoScrollTimer.stop();
    mViewportP->removeEventFilter(this);
    mViewportP->detach();
    deleteChild(); // while the widget is whole
}

void Kiv_BridgeQScrollArea::setChild(Kiv_ViewInterface *iView)
{
    if (acceptChild(iView, "Kiv_BridgeQScrollArea::setChild")) {
        iView->setParent(this);
        iView->setOrigin(QPoint(0, 0));
    } else if (iView) {
        return; // refused
    }
    adjustChildToPortSize();
}

QString Kiv_BridgeQScrollArea::findUiName(const QPoint &iPoint)
{
    return Kiv_BridgeBase::findUiName(iPoint + contentsOffset());
}

Kiv_PointOfInterest Kiv_BridgeQScrollArea::findPoi(const QString &iName)
{
    const Kiv_PointOfInterest inContents = Kiv_BridgeBase::findPoi(iName);
    if (!inContents.isValid())
        return inContents;
    return Kiv_PointOfInterest(viewport(), inContents.point() - contentsOffset());
}

void Kiv_BridgeQScrollArea::childSizeChanged(Kiv_ViewInterface *, QSize, QSize)
{
    updateScrollBars();
    viewport()->update();
}

void Kiv_BridgeQScrollArea::childInsertedRow(Kiv_ViewInterface *, int iY, int)
{
    updateScrollBars();
    // The rows below have moved: redraw from the row down.
    viewport()->update(
        QRect(0, iY - contentsOffset().y(), viewport()->width(), viewport()->height()));
}

void Kiv_BridgeQScrollArea::childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight)
{
    childInsertedRow(iChild, iY, iHeight);
}

void Kiv_BridgeQScrollArea::childInsertedColumn(Kiv_ViewInterface *)
{
    updateScrollBars();
    viewport()->update();
}

void Kiv_BridgeQScrollArea::childBitsChanged(Kiv_ViewInterface *, const QRect &iRect,
                                             bool iImmediate)
{
    const QRect onViewport = iRect.translated(-contentsOffset());
    if (iImmediate)
        viewport()->repaint(onViewport);
    else
        viewport()->update(onViewport);
}

QWidget *Kiv_BridgeQScrollArea::getBridgeWidget()
{
    return viewport();
}

void Kiv_BridgeQScrollArea::overlayChildEditWidget(Kiv_ViewInterface *, QWidget *iEditor, int iX,
                                                   int iY)
{
    if (iEditor)
        iEditor->move(QPoint(iX, iY) - contentsOffset());
}

void Kiv_BridgeQScrollArea::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (Kiv_ViewInterface *child = getChild())
        child->makeConnections(iEnv);
}

int Kiv_BridgeQScrollArea::visibleWidth() const
{
    return viewport()->width();
}

int Kiv_BridgeQScrollArea::visibleHeight() const
{
    return viewport()->height();
}

QPoint Kiv_BridgeQScrollArea::contentsOffset() const
{
    return QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

QRect Kiv_BridgeQScrollArea::viewableArea() const
{
    return QRect(contentsOffset(), viewport()->size());
}

void Kiv_BridgeQScrollArea::adjustChildToPortSize()
{
    if (Kiv_ViewInterface *child = getChild()) {
        const QSize target = child->getMinSize().expandedTo(viewport()->size());
        if (child->getSize() != target)
            child->setSize(target);
    }
    updateScrollBars();
    viewport()->update();
}

void Kiv_BridgeQScrollArea::updateScrollBars()
{
    const Kiv_ViewInterface *child = getChild();
    const QSize contents = child ? child->getSize() : QSize(0, 0);
    const QSize port = viewport()->size();
    QScrollBar *h = horizontalScrollBar();
    h->setRange(0, qMax(0, contents.width() - port.width()));
    h->setPageStep(qMax(1, port.width()));
    h->setSingleStep(20);
    QScrollBar *v = verticalScrollBar();
    v->setRange(0, qMax(0, contents.height() - port.height()));
    v->setPageStep(qMax(1, port.height()));
    v->setSingleStep(20);
}

void Kiv_BridgeQScrollArea::ensureRectVisible(const QRect &iRect)
{
    const QRect view = viewableArea();
    auto scrollTo = [](int iStart, int iEnd, int iViewStart, int iViewExtent) {
        int start = iViewStart;
        if (iEnd > iViewStart + iViewExtent - 1)
            start = iEnd - iViewExtent + 1;
        if (iStart < start)
            start = iStart;
        return start;
    };
    horizontalScrollBar()->setValue(
        scrollTo(iRect.left(), iRect.right(), view.left(), view.width()));
    verticalScrollBar()->setValue(scrollTo(iRect.top(), iRect.bottom(), view.top(), view.height()));
}

void Kiv_BridgeQScrollArea::drawContents(QPainter *iPainter, const QRect &iRect)
{
    if (Kiv_ViewInterface *child = getChild())
        child->drawContents(iPainter, iRect);
}

void Kiv_BridgeQScrollArea::paintViewport(QPainter &iPainter, const QRect &iViewportRect)
{
    if (!paintBackground(iPainter, viewport()->rect()))
        return;
    const QPoint offset = contentsOffset();
    iPainter.translate(-offset);
    drawContents(&iPainter, iViewportRect.translated(offset));
}

bool Kiv_BridgeQScrollArea::showToolTip(const QPoint &iViewportPos, const QPoint &iGlobalPos)
{
    QRect rect;
    QString text;
    if (!childToolTip(iViewportPos + contentsOffset(), &rect, &text)) {
        QToolTip::hideText();
        return false;
    }
    QToolTip::showText(iGlobalPos, text, viewport(), rect.translated(-contentsOffset()));
    return true;
}

bool Kiv_BridgeQScrollArea::eventFilter(QObject *iObject, QEvent *iEvent)
{
    if (iObject == mViewportP) {
        switch (iEvent->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
            mLastDragPos = static_cast<QDropEvent *>(iEvent)->position().toPoint();
            if (mDragAutoScroll)
                startDragAutoScroll();
            break;
        case QEvent::DragLeave:
        case QEvent::Drop:
            stopDragAutoScroll();
            break;
        default:
            break;
        }
    }
    return QScrollArea::eventFilter(iObject, iEvent);
}

void Kiv_BridgeQScrollArea::setDragAutoScroll(bool iOn)
{
    mDragAutoScroll = iOn;
    if (!iOn)
        stopDragAutoScroll();
}

bool Kiv_BridgeQScrollArea::viewportEvent(QEvent *iEvent)
{
    switch (iEvent->type()) {
    case QEvent::Paint:
    case QEvent::Resize:
        return false; // the viewport draws the view and fits it itself
    default:
        return QScrollArea::viewportEvent(iEvent);
    }
}

void Kiv_BridgeQScrollArea::resizeEvent(QResizeEvent *iEvent)
{
    QScrollArea::resizeEvent(iEvent);
    updateScrollBars();
}

void Kiv_BridgeQScrollArea::scrollContentsBy(int iDx, int iDy)
{
    viewport()->scroll(iDx, iDy); // moves the overlaid editors along
}

bool Kiv_BridgeQScrollArea::focusNextPrevChild(bool iNext)
{
    // Not QScrollArea's version, which expects a scrolled widget.
    if (!QWidget::focusNextPrevChild(iNext))
        return false;
    QWidget *focus = focusWidget();
    if (focus && focus != viewport() && viewport()->isAncestorOf(focus)) {
        const QRect onViewport(focus->mapTo(viewport(), QPoint(0, 0)), focus->size());
        ensureRectVisible(onViewport.translated(contentsOffset()));
    }
    return true;
}

bool Kiv_BridgeQScrollArea::offerKeyToChild(QKeyEvent *iEvent)
{
    Kiv_ViewInterface *child = getChild();
    if (!child)
        return false;
    iEvent->accept();
    child->keyPressEvent(iEvent);
    return iEvent->isAccepted();
}

void Kiv_BridgeQScrollArea::keyPressEvent(QKeyEvent *iEvent)
{
    if (!offerKeyToChild(iEvent))
        QScrollArea::keyPressEvent(iEvent);
}

namespace {
// Offers a mouse event from the viewport to the view in contents coordinates; answers whether
// the view took it.
bool offerToView(Kiv_ViewInterface *iView, QMouseEvent *iEvent, const QPoint &iOffset,
                 void (Kiv_ViewInterface::*iHandler)(QMouseEvent *, const QPoint &))
{
    if (!iView)
        return false;
    iEvent->accept();
    (iView->*iHandler)(iEvent, iEvent->position().toPoint() + iOffset);
    return iEvent->isAccepted();
}
} // namespace

void Kiv_BridgeQScrollArea::mousePressEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, contentsOffset(), &Kiv_ViewInterface::mousePressEvent))
        QScrollArea::mousePressEvent(iEvent);
}

void Kiv_BridgeQScrollArea::mouseReleaseEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, contentsOffset(), &Kiv_ViewInterface::mouseReleaseEvent))
        QScrollArea::mouseReleaseEvent(iEvent);
}

void Kiv_BridgeQScrollArea::mouseMoveEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, contentsOffset(), &Kiv_ViewInterface::mouseMoveEvent))
        QScrollArea::mouseMoveEvent(iEvent);
}

void Kiv_BridgeQScrollArea::mouseDoubleClickEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, contentsOffset(),
                     &Kiv_ViewInterface::mouseDoubleClickEvent))
        QScrollArea::mouseDoubleClickEvent(iEvent);
}

void Kiv_BridgeQScrollArea::dragEnterEvent(QDragEnterEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild())
        child->dragEnterEvent(iEvent, iEvent->position().toPoint() + contentsOffset());
}

void Kiv_BridgeQScrollArea::dragMoveEvent(QDragMoveEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild())
        child->dragMoveEvent(iEvent, iEvent->position().toPoint() + contentsOffset());
}

void Kiv_BridgeQScrollArea::dragLeaveEvent(QDragLeaveEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild())
        child->dragLeaveEvent(iEvent, mLastDragPos + contentsOffset());
}

void Kiv_BridgeQScrollArea::dropEvent(QDropEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild())
        child->dropEvent(iEvent, iEvent->position().toPoint() + contentsOffset());
}

void Kiv_BridgeQScrollArea::startDragAutoScroll()
{
    if (mAutoScrollTimer.isActive())
        return;
    mAutoScroll.start();
    mAutoScrollTimer.start(mAutoScroll.interval());
}

void Kiv_BridgeQScrollArea::doDragAutoScroll()
{
    const int before = mAutoScroll.interval();
    const QPoint delta = mAutoScroll.tick(mLastDragPos, viewport()->size());
    if (delta.isNull()) {
        stopDragAutoScroll();
        return;
    }
    if (mAutoScroll.interval() != before)
        mAutoScrollTimer.start(mAutoScroll.interval());
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + delta.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + delta.y());
}

void Kiv_BridgeQScrollArea::stopDragAutoScroll()
{
    mAutoScrollTimer.stop();
}
