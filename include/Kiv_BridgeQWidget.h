#pragma once

#include "Kiv_BridgeBase.h"
#include "Kiv_ViewContainerInterface.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QWidget>

/// A widget that hosts one top view at its top-left corner.
///
/// The widget takes the size of its view (and follows it when the view changes size), draws
/// its background and then the view, and hands the view every mouse, key and drag event in the
/// view's coordinates. Events the view leaves not accepted go on to QWidget. Tool tips come
/// from the view's getToolTip().
class KIVCORE_EXPORT Kiv_BridgeQWidget : public QWidget,
                                         public Kiv_ViewContainerInterface,
                                         public Kiv_BridgeBase,
                                         public Kiv_WidgetConnectInterface
{
    Q_OBJECT

public:
    explicit Kiv_BridgeQWidget(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_BridgeQWidget() override;

    /// Hosts the view at (0, 0) and resizes the widget to the view's size. Null deletes the
    /// present view and leaves the widget's size alone.
    void setChild(Kiv_ViewInterface *iView) override;

    void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) override;
    void childInsertedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) override;
    void childInsertedColumn(Kiv_ViewInterface *iChild) override;
    void childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate) override;
    QWidget *getBridgeWidget() override;
    /// Moves the editor to (x, y).
    void overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX,
                                int iY) override;

    /// Binds the hosted view (nothing without one).
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *iEvent) override;
    void resizeEvent(QResizeEvent *iEvent) override;
    void paintEvent(QPaintEvent *iEvent) override;
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
    QPoint mLastDragPos; // a drag leave carries no position: the last one seen
};
