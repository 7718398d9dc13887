#pragma once

#include "Kiv_BridgeBase.h"
#include "Kiv_DragAutoScroll.h"
#include "Kiv_ViewContainerInterface.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QScrollArea>
#include <QTimer>

class Kiv_BridgeViewport;

/// A scrolling widget that hosts one top view.
///
/// The view is drawn in a private viewport widget (object name "ViewportWidget"), shifted by the
/// scroll position; the view's coordinates are "contents" coordinates. The view states how much
/// room its contents need as its minimum size: the bridge sizes it to that, grown to fill the
/// viewport, and sets the scroll bars from the view's size. Mouse, key and drag events reach the
/// view in contents coordinates; events it leaves not accepted go on to QScrollArea (so the
/// arrow keys and the wheel scroll). While something is dragged near an edge of the viewport
/// the bridge scrolls towards that edge, faster the longer the drag stays there.
class KIVCORE_EXPORT Kiv_BridgeQScrollArea : public QScrollArea,
                                             public Kiv_ViewContainerInterface,
                                             public Kiv_BridgeBase,
                                             public Kiv_WidgetConnectInterface
{
    Q_OBJECT

public:
    /// Pixels from a viewport edge within which dragging scrolls.
    static constexpr int autoscroll_margin = Kiv_DragAutoScroll::cMargin;
    /// The first auto-scroll interval in milliseconds, also the base of the step size.
    static constexpr int initialScrollTime = Kiv_DragAutoScroll::cInitialInterval;
    /// Auto-scroll timer ticks between two accelerations.
    static constexpr int initialScrollAccel = Kiv_DragAutoScroll::cTicksPerAcceleration;

    explicit Kiv_BridgeQScrollArea(QWidget *iParent = nullptr);
    ~Kiv_BridgeQScrollArea() override;

    /// Hosts the view at the contents origin and fits it to the viewport. Null deletes the
    /// present view.
    void setChild(Kiv_ViewInterface *iView) override;
    /// The point is in viewport coordinates.
    QString findUiName(const QPoint &iPoint) override;
    /// The point of interest is in the viewport's coordinates; it lies outside the viewport
    /// when the item is scrolled out of sight.
    Kiv_PointOfInterest findPoi(const QString &iName) override;

    void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) override;
    void childInsertedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childInsertedColumn(Kiv_ViewInterface *iChild) override;
    void childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate) override;
    /// The viewport: views draw, take drops and place editors there.
    QWidget *getBridgeWidget() override;
    /// Moves the editor (a child of the viewport) to (x, y) of the contents.
    void overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX,
                                int iY) override;

    /// Binds the hosted view (nothing without one).
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    int visibleWidth() const;
    int visibleHeight() const;
    /// The scroll position: the contents point shown at the viewport's top-left corner.
    QPoint contentsOffset() const;
    /// Sizes the view to its minimum size grown to the viewport, and updates the scroll bars.
    void adjustChildToPortSize();
    /// Scrolls as little as possible to show the rectangle (contents coordinates); a rectangle
    /// larger than the viewport shows its top-left part.
    virtual void ensureRectVisible(const QRect &iRect);
    /// Draws the view's part of the rectangle (contents coordinates; the painter is set up in
    /// contents coordinates too).
    void drawContents(QPainter *iPainter, const QRect &iRect);
    /// Whether the drag auto-scroll timer runs.
    bool isDragAutoScrolling() const { return mAutoScrollTimer.isActive(); }

protected:
    /// The part of the contents the viewport shows.
    QRect viewableArea() const;
    /// Watches drags over the viewport for the auto-scroll.
    bool eventFilter(QObject *iObject, QEvent *iEvent) override;
    /// On by default.
    void setDragAutoScroll(bool iOn);
    bool dragAutoScroll() const { return mDragAutoScroll; }

    bool viewportEvent(QEvent *iEvent) override;
    void resizeEvent(QResizeEvent *iEvent) override;
    void scrollContentsBy(int iDx, int iDy) override;
    bool focusNextPrevChild(bool iNext) override;
    void keyPressEvent(QKeyEvent *iEvent) override;
    void mousePressEvent(QMouseEvent *iEvent) override;
    void mouseReleaseEvent(QMouseEvent *iEvent) override;
    void mouseMoveEvent(QMouseEvent *iEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *iEvent) override;
    void dragEnterEvent(QDragEnterEvent *iEvent) override;
    void dragMoveEvent(QDragMoveEvent *iEvent) override;
    void dragLeaveEvent(QDragLeaveEvent *iEvent) override;
    void dropEvent(QDropEvent *iEvent) override;

private:
    friend class Kiv_BridgeViewport;
    void paintViewport(QPainter &iPainter, const QRect &iViewportRect);
    bool showToolTip(const QPoint &iViewportPos, const QPoint &iGlobalPos);
    /// Gives the key to the view; answers whether it took it.
    bool offerKeyToChild(QKeyEvent *iEvent);
    void updateScrollBars();
    void startDragAutoScroll();
    void doDragAutoScroll();
    void stopDragAutoScroll();

    Kiv_BridgeViewport *mViewportP; // owned by Qt (a child of this widget)
    bool mDragAutoScroll = true;
    QTimer mAutoScrollTimer;
    Kiv_DragAutoScroll mAutoScroll; // the interval and the ticks before the next acceleration
    QPoint mLastDragPos; // viewport coordinates
};
