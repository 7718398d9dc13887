#pragma once

#include "kivcore_export.h"

#include <QPoint>
#include <QSize>

/// The arithmetic of scrolling while something is dragged near the edge of a viewport.
///
/// The owner runs a timer at interval() and calls tick() at each timeout with the cursor
/// position in viewport coordinates. Inside the margin of an edge the viewport scrolls towards
/// that edge, by a step that grows as the timer speeds up: the interval starts at 30 ms and
/// drops by 1 ms every sixth tick, down to 0; the step is 30 minus the interval, at least 1
/// pixel. A tick answers the scroll delta; a null delta means the cursor left the margins and
/// the owner stops its timer.
class KIVCORE_EXPORT Kiv_DragAutoScroll
{
public:
    /// Pixels from an edge within which dragging scrolls.
    static constexpr int cMargin = 16;
    /// The first timer interval in milliseconds, also the base of the step.
    static constexpr int cInitialInterval = 30;
    /// Timer ticks between two accelerations.
    static constexpr int cTicksPerAcceleration = 5;

    /// Starts over at the initial interval.
    void start();
    /// One timer tick: speeds up when it is time, then answers how far to scroll (x and y).
    QPoint tick(const QPoint &iCursor, const QSize &iViewport);

    /// The timer interval in milliseconds to use from now on.
    int interval() const { return mInterval; }
    /// Pixels scrolled per tick at the present interval.
    int step() const;
    int ticksLeft() const { return mTicksLeft; }

private:
    int mInterval = cInitialInterval;
    int mTicksLeft = cTicksPerAcceleration;
};
