#pragma once

#include "kivcore_export.h"

#include <QString>
#include <QStringList>

#include <string>

/// The text forms of the values that the bound labels and views show. They are plain functions
/// so that a widget only picks the format and the value, and so that they can be checked
/// without a window.

/// Fills "%1"-style placeholders in one pass: "%" followed by one or two digits names the
/// argument of that number (counting from 1). Two digits are read when an argument of that
/// number exists, else one. A placeholder that names no argument stays as written, and text
/// coming from an argument is never searched again, so a value holding "%2" stays "%2".
KIVCORE_EXPORT QString Kiv_FormatArgs(const QString &iFormat, const QStringList &iArgs);

/// The kind of value a printf-style format is written for.
enum class Kiv_PrintfKind {
    Integer, ///< one of d i o u x X, with no length modifier, "l" or "ll"
    Real ///< one of f F e E g G, with no length modifier or "l"
};

/// Whether a printf-style format holds exactly one conversion of the given kind, with optional
/// flags ("-+ #0"), a width and a precision of at most three digits each, and any text around
/// it ("%%" for a percent sign). "*" widths, "%n", strings and characters are refused.
KIVCORE_EXPORT bool Kiv_IsPrintfFormat(const std::string &iFormat, Kiv_PrintfKind iKind);

/// A long through a printf-style integer format ("Frame %ld", "%08lX"); whatever the length
/// modifier, the whole long is formatted. A format that Kiv_IsPrintfFormat refuses gives the
/// plain decimal number. The output does not depend on the locale.
KIVCORE_EXPORT QString Kiv_FormatPrintf(const std::string &iFormat, long iValue);
/// A double through a printf-style real format ("%.2f dB"); a refused format gives "%g".
/// The decimal point is always ".".
KIVCORE_EXPORT QString Kiv_FormatPrintf(const std::string &iFormat, double iValue);

/// A count in words: `iFormat1` for the value 1 when it is not empty (the singular,
/// "%1 clip"), else `iFormat` ("%1 clips"); an empty `iFormat` stands for "%1". %1 is the
/// decimal number.
KIVCORE_EXPORT QString Kiv_FormatCount(long iValue, const QString &iFormat,
                                       const QString &iFormat1);

/// The text of a bound label: `iEmptyText` when the value is empty, else the value through
/// `iFormat` ("Clip: %1"); an empty format shows the value as it is.
KIVCORE_EXPORT QString Kiv_FormatLabelText(const QString &iValue, const QString &iFormat,
                                           const QString &iEmptyText);

/// A tool tip made of several values: through `iFormat` ("%1 (%2)") when it is not empty, else
/// the non-empty values one per line.
KIVCORE_EXPORT QString Kiv_FormatToolTip(const QString &iFormat, const QStringList &iValues);
