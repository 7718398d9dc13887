#include "Kiv_PointOfInterest.h"
#include "Kiv_IPointOfInterestFinder.h"

Kiv_IPointOfInterestFinder::~Kiv_IPointOfInterestFinder() = default;

Kiv_PointOfInterest::Kiv_PointOfInterest(QWidget *iWidget, const QPoint &iPoint)
    : mWidgetP(iWidget)
    , mPoint(iPoint)
{ }

QPoint Kiv_PointOfInterest::globalPoint() const
{
    return mWidgetP ? mWidgetP->mapToGlobal(mPoint) : QPoint();
}
