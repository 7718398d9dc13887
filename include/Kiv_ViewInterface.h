#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "kivcore_export.h"

#include <QDomDocument>
#include <QDomElement>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <memory>

class Kiv_ViewContainerInterface;
class QDragEnterEvent;
class QDragLeaveEvent;
class QDragMoveEvent;
class QDropEvent;
class QEvent;
class QKeyEvent;
class QMouseEvent;
class QPainter;
class QPixmap;

/// A window-less view: it draws into a painter it is handed, takes mouse, key and drag events
/// in its own coordinates (its top-left corner is (0, 0)) and tells its container when it
/// changes. A tree of views is hosted in one widget by a bridge (Kiv_BridgeQWidget,
/// Kiv_BridgeQScrollArea). Kiv_ViewBase supplies the usual behaviour of every operation.
class KIVCORE_EXPORT Kiv_ViewInterface
{
public:
    virtual ~Kiv_ViewInterface();

    virtual void setParent(Kiv_ViewContainerInterface *iParent) = 0;
    virtual Kiv_ViewContainerInterface *getParent() const = 0;
    virtual void setName(const QString &iName) = 0;
    virtual QString getName() const = 0;
    /// The top-left corner in the parent's coordinates.
    virtual void setOrigin(const QPoint &iOrigin) = 0;
    virtual QPoint getOrigin() const = 0;
    /// Draws the part of the view inside the rectangle (local coordinates).
    virtual void drawContents(QPainter *iPainter, const QRect &iRect) = 0;
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    /// The rectangle at (0, 0) with the view's size.
    virtual QRect getLocalDrawingRect() const = 0;
    /// The rectangle at the origin with the view's size.
    virtual QRect getRectInParent() const = 0;
    virtual void setRectInParent(const QRect &iRect) = 0;
    virtual QSize getSize() const = 0;
    /// Stores the size without telling the parent (see Kiv_ViewBase::setSizeAndNotifyParent).
    virtual void setSize(const QSize &iSize) = 0;
    virtual QSize getMinSize() const = 0;
    virtual void setMinSize(const QSize &iSize) = 0;
    virtual long getZOrder() const = 0;
    virtual void setZOrder(long iZOrder) = 0;
    /// Binds the view's listeners (and those of its sub-views) in the environment.
    virtual void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) = 0;
    /// A new copy of the view, without a parent.
    virtual std::unique_ptr<Kiv_ViewInterface> clone() const = 0;
    virtual bool isFixedAspect() const = 0;
    virtual void setIsFixedAspect(bool iFixed) = 0;
    /// Stores the aspect (width / height) and makes the aspect fixed.
    virtual void setAspect(float iAspect) = 0;
    virtual float getAspect() const = 0;
    virtual void setReadOnly(bool iReadOnly) = 0;
    virtual bool getReadOnly() const = 0;
    virtual bool acceptsFocus() const = 0;
    virtual void setAcceptsFocus(bool iAccepts) = 0;

    /// Mouse events, with the position in local coordinates. A press that the view leaves
    /// accepted makes it the container's mouse-grab view.
    virtual void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) = 0;
    virtual void mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos) = 0;
    virtual void mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos) = 0;
    virtual void mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos) = 0;
    /// Drag events, with the position in local coordinates.
    virtual void dragEnterEvent(QDragEnterEvent *iEvent, const QPoint &iPos) = 0;
    virtual void dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos) = 0;
    virtual void dragLeaveEvent(QDragLeaveEvent *iEvent, const QPoint &iPos) = 0;
    virtual void dropEvent(QDropEvent *iEvent, const QPoint &iPos) = 0;
    virtual bool canDrag(const QPoint &iPos) = 0;
    virtual void startDrag(const QPoint &iPos) = 0;
    /// The tool tip at the point: answers true and fills both outputs when there is one.
    virtual bool getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString) = 0;
    /// The drag payload at the point: an element of the document and an image to drag.
    virtual QDomElement getDragData(QPoint iPos, QDomDocument &ioDocument, QPixmap &oPixmap) = 0;
    /// The drag element at the point without its image: what a list asks of the dragged rows
    /// whose images it does not show.
    virtual QDomElement getDragElement(QPoint iPos, QDomDocument &ioDocument) = 0;
    virtual void keyPressEvent(QKeyEvent *iEvent) = 0;
    /// Any other event; answers whether the view handled it.
    virtual bool event(QEvent *iEvent) = 0;
    /// Finds the item of a dotted name ("Container.Sub.Item", starting with this view's name)
    /// and answers its centre in this view's coordinates through `oWhere`.
    virtual bool findItem(const QString &iName, QPoint *oWhere) = 0;
    /// The dotted name of what is drawn at the point (local coordinates).
    virtual QString findUiName(const QPoint &iPos) = 0;
};
