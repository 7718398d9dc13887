#include "Kiv_ViewText.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRect>

void Kiv_DrawViewText(QPainter *iPainter, const QRect &iRect, const QString &iText,
                      Qt::Alignment iAlignment)
{
    if (!iPainter || iText.isEmpty())
        return;
    const QString shown = iPainter->fontMetrics().elidedText(iText, Qt::ElideRight, iRect.width());
    iPainter->drawText(iRect, int(iAlignment | Qt::TextSingleLine), shown);
}
