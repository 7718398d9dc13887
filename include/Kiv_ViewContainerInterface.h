#pragma once

#include "kivcore_export.h"

#include <QRect>
#include <QSize>

class Kiv_ViewInterface;
class QWidget;

/// What a view calls on whoever contains it: a container view, or the bridge widget that hosts
/// the top view. All coordinates are those of the calling child view.
class KIVCORE_EXPORT Kiv_ViewContainerInterface
{
public:
    virtual ~Kiv_ViewContainerInterface();

    /// The child changed its size (new size first).
    virtual void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) = 0;
    /// The child gained a row of `iHeight` pixels at `iY`; what lies below has moved down.
    virtual void childInsertedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) = 0;
    /// The child lost a row of `iHeight` pixels at `iY`; what lies below has moved up.
    virtual void childDeletedRow(Kiv_ViewInterface *iChild, int iY, int iHeight) = 0;
    /// The child gained a column.
    virtual void childInsertedColumn(Kiv_ViewInterface *iChild) = 0;
    /// The rectangle of the child must be redrawn; at once when `iImmediate`, else on the next
    /// paint.
    virtual void childBitsChanged(Kiv_ViewInterface *iChild, const QRect &iRect, bool iImmediate)
        = 0;
    /// The widget that all of this is drawn in (null when the container is not hosted yet).
    virtual QWidget *getBridgeWidget() = 0;
    /// Places an editor widget (a child of the bridge widget) over the child view, at (x, y)
    /// of the child.
    virtual void overlayChildEditWidget(Kiv_ViewInterface *iChild, QWidget *iEditor, int iX, int iY)
        = 0;
    /// Removes and deletes a child the container owns; the default does nothing.
    virtual void removeView(Kiv_ViewInterface *iChild);
};
