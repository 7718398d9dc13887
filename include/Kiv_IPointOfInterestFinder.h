#pragma once

#include "Kiv_PointOfInterest.h"
#include "kivcore_export.h"

#include <QPoint>
#include <QString>

/// Something that can name what is drawn at a point and find a point by name. User-interface
/// names are dotted paths from a widget's object name down the tree of views ("Bin.Items.Clip3").
class KIVCORE_EXPORT Kiv_IPointOfInterestFinder
{
public:
    virtual ~Kiv_IPointOfInterestFinder();

    /// The point of interest of that name; an empty one when nothing has it.
    virtual Kiv_PointOfInterest findPoi(const QString &iName) = 0;
    /// The user-interface name of what is drawn at the point.
    virtual QString findUiName(const QPoint &iPoint) = 0;
};
