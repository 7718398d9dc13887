#include "views/Kiv_HeaderGeometry.h"

#include <algorithm>
#include <cstdlib>

namespace Kiv_HeaderGeometry {

long columnLeft(const Layout &iLayout, long iIndex)
{
    long x = iLayout.origin;
    for (long i = 0; i < iIndex && i < iLayout.count(); ++i)
        x += iLayout.widths[size_t(i)] + cColumnGap;
    return x;
}

long centerOfColumn(const Layout &iLayout, long iIndex)
{
    if (iIndex < 0 || iIndex >= iLayout.count())
        return -1;
    return columnLeft(iLayout, iIndex) + iLayout.widths[size_t(iIndex)] / 2;
}

std::vector<long> dividerPositions(const Layout &iLayout)
{
    std::vector<long> dividers;
    dividers.reserve(iLayout.widths.size());
    long x = iLayout.origin;
    for (long w : iLayout.widths) {
        dividers.push_back(x + w + cDividerOffset);
        x += w + cColumnGap;
    }
    return dividers;
}

long columnIndexForPos(const Layout &iLayout, long iX)
{
    long left = iLayout.origin;
    for (long i = 0; i < iLayout.count(); ++i) {
        const long w = iLayout.widths[size_t(i)];
        if (iX > left && iX < left + w)
            return i;
        left += w + cColumnGap;
    }
    return -1;
}

long dividerIndexForPos(const std::vector<long> &iDividers, long iX)
{
    for (size_t i = 0; i < iDividers.size(); ++i)
        if (std::labs(iX - iDividers[i]) < cDividerGrip)
            return long(i);
    return -1;
}

long dividerDragWidth(long iStartWidth, long iMinWidth, long iPressX, const QPoint &iPos,
                      int iHeaderBottom)
{
    const long start = std::max(iStartWidth, iMinWidth);
    if (iPos.y() < -cResizeBand || iPos.y() > iHeaderBottom + cResizeBand)
        return start;
    return std::max(start + (iPos.x() - iPressX), iMinWidth);
}

long dragOverlayWidth(const Layout &iLayout, long iIndex)
{
    if (iIndex < 0 || iIndex >= iLayout.count())
        return 0;
    long width = iLayout.widths[size_t(iIndex)];
    if (iIndex > 0)
        width += cOverlayMargin;
    if (iIndex < iLayout.count() - 1)
        width += cOverlayMargin;
    return width;
}

bool shouldCancelColumnDrag(const QPoint &iPos, int iHeaderRight, int iOverlayHeight)
{
    return iPos.x() < -cCancelDistanceX || iPos.x() > iHeaderRight + cCancelDistanceX
        || iPos.y() < -cCancelDistanceY || iPos.y() > iOverlayHeight + cCancelDistanceY;
}

long computeIndexForDraggingColumn(const Layout &iLayout, long iCurrent, long iLeft, long iRight)
{
    const long a = columnIndexForPos(iLayout, iLeft);
    const long b = columnIndexForPos(iLayout, iRight);
    const long n = iLayout.count();
    if (a >= 0 && a < n - 1 && a <= iCurrent && b <= iCurrent)
        return iLeft >= centerOfColumn(iLayout, a) ? a + 1 : a;
    if (b < 0 || b >= n)
        return -1;
    if (a < iCurrent || b < iCurrent)
        return -1;
    return iRight <= centerOfColumn(iLayout, b) ? b - 1 : b;
}

} // namespace Kiv_HeaderGeometry
