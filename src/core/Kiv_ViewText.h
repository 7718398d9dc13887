#pragma once

#include <QString>
#include <Qt>

class QPainter;
class QRect;

/// Draws a view's one-line text into its rectangle with the painter's font and pen, shortened
/// with "…" at the end when it is too wide.
void Kiv_DrawViewText(QPainter *iPainter, const QRect &iRect, const QString &iText,
                      Qt::Alignment iAlignment);
