#include "Kiv_DragAutoScroll.h"

#include <algorithm>

void Kiv_DragAutoScroll::start()
{
    mTicksLeft = cTicksPerAcceleration;
    mInterval = cInitialInterval;
}

int Kiv_DragAutoScroll::step() const
{
    return std::max(1, cInitialInterval - mInterval);
}

QPoint Kiv_DragAutoScroll::tick(const QPoint &iCursor, const QSize &iViewport)
{
    const int before = mTicksLeft;
    if (before < 1 && mInterval > 0) {
        mTicksLeft = cTicksPerAcceleration;
        --mInterval;
    } else if (before > 0) {
        --mTicksLeft; // at full speed the count rests at 0
    }

    const int s = step();
    auto along = [s](int iPos, int iExtent) {
        if (iPos < cMargin)
            return -s;
        if (iPos > iExtent - cMargin)
            return s;
        return 0;
    };
    return QPoint(along(iCursor.x(), iViewport.width()), along(iCursor.y(), iViewport.height()));
}
