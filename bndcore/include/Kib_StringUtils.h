#pragma once

#include "bndcore_export.h"

#include <QFontMetrics>
#include <QString>

/// Text helpers shared by the widgets.
class BNDCORE_EXPORT Kib_StringUtils
{
public:
    /// The ellipsis the shortened texts end with, "…" (U+2026).
    static QString ellipsis();

    /// Shortens `ioText` so that it fits `iWidth` pixels in the font of `iMetrics`: as many
    /// leading characters as fit are kept (never splitting a character made of several code
    /// points), blanks at their end are dropped, and "…" is appended. When not even the
    /// ellipsis fits, the text becomes empty, so the result always fits. Answers true when the
    /// text was shortened; a text that fits already is left as it is and answers false.
    /// Widths are measured with QFontMetrics::horizontalAdvance.
    static bool computeEllipsisText(QString &ioText, const QFontMetrics &iMetrics, int iWidth);
};
