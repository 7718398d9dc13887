#include "Kiv_BridgeQWidget.h"

#include "Kiv_WhatsThis.h"

#include <QDropEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>

Kiv_BridgeQWidget::Kiv_BridgeQWidget(QWidget *iParent, const char *iName)
    : QWidget(iParent)
    , Kiv_BridgeBase(this)
{
    setObjectName(QString::fromLatin1(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_BridgeQWidget"));
}

Kiv_BridgeQWidget::~Kiv_BridgeQWidget()
{
    // While the widget is whole: the view may still talk to its container as it goes.
    deleteChild();
}

void Kiv_BridgeQWidget::setChild(Kiv_ViewInterface *iView)
{
    if (!acceptChild(iView, "Kiv_BridgeQWidget::setChild"))
        return;
    iView->setParent(this);
    iView->setOrigin(QPoint(0, 0));
    resize(iView->getSize());
    update();
}

void Kiv_BridgeQWidget::childSizeChanged(Kiv_ViewInterface *, QSize iNewSize, QSize)
{
    resize(iNewSize);
    update();
}

void Kiv_BridgeQWidget::childInsertedRow(Kiv_ViewInterface *, int iY, int)
{
    // The rows below have moved: redraw from the row to the bottom of the view.
    if (Kiv_ViewInterface *child = getChild())
        update(QRect(0, iY, child->getWidth(), child->getHeight() - iY));
}

void Kiv_BridgeQWidget::childDeletedRow(Kiv_ViewInterface *, int iY, int)
{
    if (Kiv_ViewInterface *child = getChild()) {
        resize(child->getSize());
        update(QRect(0, iY, child->getWidth(), child->getHeight() - iY));
    }
}

void Kiv_BridgeQWidget::childInsertedColumn(Kiv_ViewInterface *)
{
    update();
}

void Kiv_BridgeQWidget::childBitsChanged(Kiv_ViewInterface *, const QRect &iRect, bool iImmediate)
{
    if (iImmediate)
        repaint(iRect);
    else
        update(iRect);
}

QWidget *Kiv_BridgeQWidget::getBridgeWidget()
{
    return this;
}

void Kiv_BridgeQWidget::overlayChildEditWidget(Kiv_ViewInterface *, QWidget *iEditor, int iX,
                                               int iY)
{
    if (iEditor)
        iEditor->move(iX, iY);
}

void Kiv_BridgeQWidget::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (Kiv_ViewInterface *child = getChild())
        child->makeConnections(iEnv);
}

QSize Kiv_BridgeQWidget::minimumSizeHint() const
{
    return QSize(10, 10);
}

bool Kiv_BridgeQWidget::event(QEvent *iEvent)
{
    Kiv_ViewInterface *child = getChild();
    if (child && iEvent->type() == QEvent::ToolTip) {
        auto *help = static_cast<QHelpEvent *>(iEvent);
        QRect rect;
        QString text;
        if (childToolTip(help->pos(), &rect, &text))
            QToolTip::showText(help->globalPos(), text, this, rect);
        else
            QToolTip::hideText();
        return true;
    }
    if (child && child->event(iEvent))
        return true;
    return QWidget::event(iEvent);
}

void Kiv_BridgeQWidget::resizeEvent(QResizeEvent *iEvent)
{
    // The view fills the widget when a layout sizes it.
    if (Kiv_ViewInterface *child = getChild())
        if (child->getSize() != size())
            child->setSize(size());
    QWidget::resizeEvent(iEvent);
}

void Kiv_BridgeQWidget::paintEvent(QPaintEvent *iEvent)
{
    QPainter painter(this);
    if (paintBackground(painter, rect()))
        getChild()->drawContents(&painter, iEvent->rect());
}

void Kiv_BridgeQWidget::keyPressEvent(QKeyEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild()) {
        iEvent->accept();
        child->keyPressEvent(iEvent);
        if (iEvent->isAccepted())
            return;
    }
    QWidget::keyPressEvent(iEvent);
}

namespace {
// Offers a mouse event to the view (which sits at the widget's origin, so widget positions are
// view positions); answers whether the view took it.
bool offerToView(Kiv_ViewInterface *iView, QMouseEvent *iEvent,
                 void (Kiv_ViewInterface::*iHandler)(QMouseEvent *, const QPoint &))
{
    if (!iView)
        return false;
    iEvent->accept();
    (iView->*iHandler)(iEvent, iEvent->position().toPoint());
    return iEvent->isAccepted();
}
} // namespace

void Kiv_BridgeQWidget::mousePressEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, &Kiv_ViewInterface::mousePressEvent))
        QWidget::mousePressEvent(iEvent);
}

void Kiv_BridgeQWidget::mouseReleaseEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, &Kiv_ViewInterface::mouseReleaseEvent))
        QWidget::mouseReleaseEvent(iEvent);
}

void Kiv_BridgeQWidget::mouseMoveEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, &Kiv_ViewInterface::mouseMoveEvent))
        QWidget::mouseMoveEvent(iEvent);
}

void Kiv_BridgeQWidget::mouseDoubleClickEvent(QMouseEvent *iEvent)
{
    if (!offerToView(getChild(), iEvent, &Kiv_ViewInterface::mouseDoubleClickEvent))
        QWidget::mouseDoubleClickEvent(iEvent);
}

void Kiv_BridgeQWidget::dragEnterEvent(QDragEnterEvent *iEvent)
{
    mLastDragPos = iEvent->position().toPoint();
    if (Kiv_ViewInterface *child = getChild())
        child->dragEnterEvent(iEvent, mLastDragPos);
    QWidget::dragEnterEvent(iEvent);
}

void Kiv_BridgeQWidget::dragMoveEvent(QDragMoveEvent *iEvent)
{
    mLastDragPos = iEvent->position().toPoint();
    if (Kiv_ViewInterface *child = getChild())
        child->dragMoveEvent(iEvent, mLastDragPos);
    QWidget::dragMoveEvent(iEvent);
}

void Kiv_BridgeQWidget::dragLeaveEvent(QDragLeaveEvent *iEvent)
{
    if (Kiv_ViewInterface *child = getChild())
        child->dragLeaveEvent(iEvent, mLastDragPos);
    QWidget::dragLeaveEvent(iEvent);
}

void Kiv_BridgeQWidget::dropEvent(QDropEvent *iEvent)
{
    mLastDragPos = iEvent->position().toPoint();
    if (Kiv_ViewInterface *child = getChild())
        child->dropEvent(iEvent, mLastDragPos);
    QWidget::dropEvent(iEvent);
}
