#pragma once

#include "Kiv_ViewBase.h"
#include "Kiv_ViewContainerInterface.h"
#include "kivcore_export.h"

#include <map>
#include <memory>

/// A view made of sub-views, stacked by z-order.
///
/// The sub-views are kept in a multimap keyed by their z-order when added: higher z-orders are
/// drawn over lower ones and get mouse events first; of equal z-orders the one added later is
/// on top. The container owns its sub-views and deletes them when they are removed or when it
/// is destroyed. It routes mouse events to the sub-view under the cursor, or to the mouse-grab
/// view (the sub-view that accepted the last press, or the one set explicitly), and key events
/// to the focus view.
///
/// A plain container is a view of its own (a group of layered views, say); drawContents() draws
/// the sub-views, and clone() gives a container with the same settings and a clone of each
/// sub-view. Containers that draw more derive from it.
class KIVCORE_EXPORT Kiv_ContainerViewBase : public Kiv_ViewBase, public Kiv_ViewContainerInterface
{
public:
    typedef std::multimap<long, Kiv_ViewInterface *> SubViewMap;

    Kiv_ContainerViewBase();
    ~Kiv_ContainerViewBase() override;

    /// Adds a sub-view under its present z-order and becomes its parent and owner. Changing a
    /// view's z-order after adding it does not move it in the stack. A null view, the container
    /// itself, a view already in the container and a view that has a container are refused:
    /// reported, answered false, and the caller keeps ownership.
    bool AddSubView(Kiv_ViewInterface *iView);
    /// Removes and deletes a sub-view after asking for its area to be redrawn. A view that is
    /// not a sub-view of this container is left alone.
    void removeView(Kiv_ViewInterface *iView) override;
    /// Deletes every sub-view; clears the mouse-grab and focus views.
    void removeAllSubViews();
    /// The first sub-view (lowest z-order first) with exactly that name; null when none.
    Kiv_ViewInterface *getViewByName(const QString &iName) const;
    bool hasSubView(const Kiv_ViewInterface *iView) const;
    const SubViewMap &subViews() const { return mSubViews; }
    /// Sends the mouse events to one sub-view whatever the cursor position (null to stop).
    /// Unlike the grab a press takes, it lasts until changed.
    void setSubViewForMouseEvents(Kiv_ViewInterface *iView);
    Kiv_ViewInterface *subViewForMouseEvents() const { return mMouseGrabP; }
    /// The sub-view that gets key events: the last one that accepted a press and accepts focus.
    Kiv_ViewInterface *focusView() const { return mFocusP; }

    // The view.
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;
    /// Binds every sub-view (lowest z-order first), then the container's own tool tip.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void dragEnterEvent(QDragEnterEvent *iEvent, const QPoint &iPos) override;
    void dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos) override;
    void dragLeaveEvent(QDragLeaveEvent *iEvent, const QPoint &iPos) override;
    void dropEvent(QDropEvent *iEvent, const QPoint &iPos) override;
    void keyPressEvent(QKeyEvent *iEvent) override;
    /// The tool tip of the topmost sub-view under the point (in this container's coordinates),
    /// else the container's own.
    bool getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString) override;
    /// "Name" answers the container's centre; "Name.Sub..." asks the sub-view called Sub.
    bool findItem(const QString &iName, QPoint *oWhere) override;
    /// The container's name, then "." and the name the topmost sub-view under the point gives.
    QString findUiName(const QPoint &iPos) override;

    // The container of the sub-views.
    /// Asks for the union of the old and the new area to be redrawn.
    void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) override;
    /// Asks for the band from `iY` to the bottom of the child to be redrawn.
    void childInsertedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    /// Asks for the whole child to be redrawn.
    void childInsertedColumn(Kiv_ViewInterface *iChild) override;
    /// Passes the rectangle up in this container's coordinates.
    void childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate) override;
    QWidget *getBridgeWidget() override;
    void overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX,
                                int iY) override;

protected:
    /// Copies the container's settings and a clone of every sub-view, in the same stacking
    /// order; the copy has no mouse-grab or focus view.
    Kiv_ContainerViewBase(const Kiv_ContainerViewBase &iOther);

    /// Draws one sub-view: the painter is moved to the sub-view's origin and clipped to it, and
    /// the sub-view draws the part of `iRect` (container coordinates) that it covers.
    void paintSubView(Kiv_ViewInterface *iView, QPainter *iPainter, const QRect &iRect);
    /// The sub-views whose rectangle contains the point (container coordinates).
    SubViewMap subViewsContaining(const QPoint &iPos) const;
    /// The sub-views whose rectangle intersects the rectangle (container coordinates).
    SubViewMap subViewsIntersecting(const QRect &iRect) const;

private:
    template<class Event>
    bool dispatchTopDown(Event *iEvent, const QPoint &iPos,
                         void (Kiv_ViewInterface::*iHandler)(Event *, const QPoint &),
                         bool iEventStartsAccepted);
    template<class Event>
    void dispatchMouse(QMouseEvent *iEvent, const QPoint &iPos,
                       void (Kiv_ViewInterface::*iHandler)(Event *, const QPoint &));
    SubViewMap::iterator locate(const Kiv_ViewInterface *iView);

    SubViewMap mSubViews;
    Kiv_ViewInterface *mMouseGrabP = nullptr;
    Kiv_ViewInterface *mFocusP = nullptr;
    bool mGrabFromPress = false; // the grab ends with the release of the last button
};
