#include "Kib_StringUtils.h"

#include <QTextBoundaryFinder>
#include <QVector>

QString Kib_StringUtils::ellipsis()
{
    return QString(QChar(0x2026));
}

bool Kib_StringUtils::computeEllipsisText(QString &ioText, const QFontMetrics &iMetrics, int iWidth)
{
    if (ioText.isEmpty() || iMetrics.horizontalAdvance(ioText) <= iWidth)
        return false;

    const QString dots = ellipsis();
    if (iMetrics.horizontalAdvance(dots) > iWidth) {
        ioText.clear();
        return true;
    }

    // The places the text may be cut: grapheme boundaries, so surrogate pairs and combining
    // marks stay whole. The end of the text is not one of them, since the whole text is too
    // wide.
    QVector<int> cuts;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, ioText);
    for (int pos = int(finder.toNextBoundary()); pos > 0 && pos < ioText.size();
         pos = int(finder.toNextBoundary()))
        cuts << pos;

    auto candidate = [&](int iLength) {
        QString head = ioText.left(iLength);
        while (!head.isEmpty() && head.back().isSpace())
            head.chop(1);
        return head + dots;
    };

    // The longest head that fits; widths grow with the length, so a binary search finds it.
    int low = 0; // number of cuts known to fit (0: the ellipsis alone, which fits)
    int high = int(cuts.size());
    while (low < high) {
        const int mid = (low + high + 1) / 2;
        if (iMetrics.horizontalAdvance(candidate(cuts.at(mid - 1))) <= iWidth)
            low = mid;
        else
            high = mid - 1;
    }
    ioText = low == 0 ? dots : candidate(cuts.at(low - 1));
    return true;
}
