#pragma once

#include "kivcore_export.h"

#include <QPoint>

#include <vector>

/// The layout of Kiv_Header and the decisions its pointer handling makes, as plain functions.
///
/// Columns are laid out in display order from an origin x, the header's left margin minus its
/// scroll offset. A column of width w that starts at x shows its label from x to x + w, has its
/// divider at x + w + 2, and the next column starts at x + w + 5.
namespace Kiv_HeaderGeometry {

/// Pixels from the end of one label to the start of the next.
constexpr long cColumnGap = 5;
/// Where a divider stands after the end of its label.
constexpr long cDividerOffset = 2;
/// A point closer than this to a divider is on it.
constexpr long cDividerGrip = 3;
/// How far above and below the header a divider drag still resizes.
constexpr int cResizeBand = 80;
/// How far beside and above or below the header a column drag is cancelled.
constexpr int cCancelDistanceX = 150;
constexpr int cCancelDistanceY = 50;
/// The drag image of a column reaches this far into each gap that has a neighbour behind it.
constexpr long cOverlayMargin = 3;

struct Layout
{
    /// The widths of the visible columns, in display order.
    std::vector<long> widths;
    long origin = 0;

    long count() const { return long(widths.size()); }
};

/// The left edge of the column at a display index; an index of count() gives where a column
/// after the last would start.
KIVCORE_EXPORT long columnLeft(const Layout &iLayout, long iIndex);
KIVCORE_EXPORT long centerOfColumn(const Layout &iLayout, long iIndex);
/// The x positions of the dividers, one after each column.
KIVCORE_EXPORT std::vector<long> dividerPositions(const Layout &iLayout);
/// The display index of the label that strictly contains x, -1 when none does.
KIVCORE_EXPORT long columnIndexForPos(const Layout &iLayout, long iX);
/// The first divider closer than cDividerGrip to x, -1 when none is.
KIVCORE_EXPORT long dividerIndexForPos(const std::vector<long> &iDividers, long iX);

/// The width a divider drag gives its column. The drag started at `iPressX` on a column of
/// width `iStartWidth`; the pointer is at `iPos` in a header whose last row is `iHeaderBottom`.
/// Within cResizeBand above and below the header the width follows the pointer, never below
/// the minimum; outside that band the drag is undone (the start width, at least the minimum).
KIVCORE_EXPORT long dividerDragWidth(long iStartWidth, long iMinWidth, long iPressX,
                                     const QPoint &iPos, int iHeaderBottom);

/// The width of a column's drag image: the column plus cOverlayMargin on each side that has a
/// neighbour.
KIVCORE_EXPORT long dragOverlayWidth(const Layout &iLayout, long iIndex);
/// Whether a column drag is cancelled with the pointer at `iPos` (header coordinates): more than
/// cCancelDistanceX beside the header or more than cCancelDistanceY above or below the drag
/// image.
KIVCORE_EXPORT bool shouldCancelColumnDrag(const QPoint &iPos, int iHeaderRight,
                                           int iOverlayHeight);
/// Where the column dragged from display index `iCurrent` goes while its image spans `iLeft` to
/// `iRight`; -1 means it stays where it is.
///
/// Moving left (the image's left edge on a column before it): behind that column once the edge
/// has passed its centre, else in its place. Moving right (its right edge on a column from it
/// on): in that column's place once the edge has passed its centre, else just before it. In
/// every other case (the leading edge in a gap or off the columns, or the image over columns on
/// both sides of its place) the column stays.
KIVCORE_EXPORT long computeIndexForDraggingColumn(const Layout &iLayout, long iCurrent, long iLeft,
                                                  long iRight);

} // namespace Kiv_HeaderGeometry
