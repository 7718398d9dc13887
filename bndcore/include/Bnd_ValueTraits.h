#pragma once

#include "Bnd_Timecode.h"
#include "SortedValueList.h"
#include "bndcore_export.h"

#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>

#include <type_traits>
#include <typeinfo>

/// Per-type helpers the runtime needs for every value type a model can hold:
/// equality (so setters notify only on a real change) and a short display text
/// (for listings and log lines). Unknown types compare with operator== and show their type.
namespace Bnd_ValueTraits {

BNDCORE_EXPORT QString typeName(const std::type_info &iType);

inline QString toDisplayString(bool v)
{
    return v ? QStringLiteral("true") : QStringLiteral("false");
}
inline QString toDisplayString(int v)
{
    return QString::number(v);
}
inline QString toDisplayString(unsigned int v)
{
    return QString::number(v);
}
inline QString toDisplayString(long v)
{
    return QString::number(v);
}
inline QString toDisplayString(double v)
{
    return QString::number(v);
}
inline QString toDisplayString(const QString &v)
{
    return QLatin1Char('"') + v + QLatin1Char('"');
}
inline QString toDisplayString(const QStringList &v)
{
    return QLatin1Char('[') + v.join(QLatin1String(", ")) + QLatin1Char(']');
}
inline QString toDisplayString(const QPoint &v)
{
    return QStringLiteral("(%1, %2)").arg(v.x()).arg(v.y());
}
inline QString toDisplayString(const QRect &v)
{
    return QStringLiteral("(%1, %2 %3x%4)").arg(v.x()).arg(v.y()).arg(v.width()).arg(v.height());
}
inline QString toDisplayString(const QDateTime &v)
{
    return v.toString(Qt::ISODate);
}
inline QString toDisplayString(const QColor &v)
{
    return v.name(QColor::HexArgb);
}
inline QString toDisplayString(const QFont &v)
{
    return v.toString();
}
inline QString toDisplayString(const QPixmap &v)
{
    return v.isNull() ? QStringLiteral("<null pixmap>")
                      : QStringLiteral("<pixmap %1x%2>").arg(v.width()).arg(v.height());
}
inline QString toDisplayString(const Bnd_Timecode &v)
{
    return v.toString();
}
/// "{1, 3-7}": runs of consecutive values are shown as ranges, so a selection of every row of
/// a huge list is a short text; after 50 runs the rest is counted ("... (+12 runs)").
template<class T> QString toDisplayString(const SortedValueList<T> &v)
{
    QStringList parts;
    long runs = 0;
    v.forEachRun([&](const T &iFirst, const T &iLast) {
        if (++runs > 50)
            return;
        parts << (iFirst == iLast ? QString::number(iFirst)
                                  : QString::number(iFirst) + QLatin1Char('-')
                                   + QString::number(iLast));
    });
    if (runs > 50)
        parts << QStringLiteral("... (+%1 runs)").arg(runs - 50);
    return QLatin1Char('{') + parts.join(QLatin1String(", ")) + QLatin1Char('}');
}
template<class T> QString toDisplayString(T *const &v)
{
    return v ? QStringLiteral("<%1 %2>").arg(typeName(typeid(T))).arg(quintptr(v), 0, 16)
             : QStringLiteral("<null>");
}
template<class T>
auto toDisplayString(const T &) -> std::enable_if_t<!std::is_pointer<T>::value, QString>
{
    return QLatin1Char('<') + typeName(typeid(T)) + QLatin1Char('>');
}

template<class T> bool equals(const T &a, const T &b)
{
    return a == b;
}
inline bool equals(const QPixmap &a, const QPixmap &b)
{
    return a.cacheKey() == b.cacheKey();
}

} // namespace Bnd_ValueTraits
