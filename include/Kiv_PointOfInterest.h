#pragma once

#include "kivcore_export.h"

#include <QPoint>
#include <QPointer>
#include <QWidget>

/// A point of interest: a point in the coordinates of a widget, found by user-interface name
/// (a dotted path such as "Bin.Items.Clip3"). Test drivers and guided tours use it to click on,
/// or point at, something drawn by a view that has no widget of its own.
///
/// The widget is watched: a point of interest whose widget was destroyed becomes empty.
class KIVCORE_EXPORT Kiv_PointOfInterest
{
public:
    /// The empty point of interest (nothing was found).
    Kiv_PointOfInterest() = default;
    Kiv_PointOfInterest(QWidget *iWidget, const QPoint &iPoint);

    /// Whether something was found and its widget still exists.
    bool isValid() const { return !mWidgetP.isNull(); }
    QWidget *widget() const { return mWidgetP.data(); }
    /// The point in the widget's coordinates.
    const QPoint &point() const { return mPoint; }
    /// The point in screen coordinates; (0, 0) for an empty point of interest.
    QPoint globalPoint() const;

private:
    QPointer<QWidget> mWidgetP;
    QPoint mPoint;
};
