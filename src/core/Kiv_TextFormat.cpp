#include "Kiv_TextFormat.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

/// The one conversion of a printf-style format, split so that it can be rebuilt with a length
/// modifier of our choosing.
struct Conversion
{
    std::string head; ///< "%" with flags, width and precision
    char type = 0; ///< the conversion character
    std::size_t begin = 0; ///< position of the "%"
    std::size_t end = 0; ///< position after the conversion character
};

bool isOneOf(char iChar, const char *iSet)
{
    return iChar != '\0' && std::strchr(iSet, iChar);
}

bool isDigit(char iChar)
{
    return iChar >= '0' && iChar <= '9';
}

bool findConversion(const std::string &iFormat, Kiv_PrintfKind iKind, Conversion &oConversion)
{
    int found = 0;
    const std::size_t n = iFormat.size();
    for (std::size_t i = 0; i < n; ++i) {
        if (iFormat[i] != '%')
            continue;
        if (i + 1 < n && iFormat[i + 1] == '%') {
            ++i;
            continue;
        }
        std::size_t j = i + 1;
        while (j < n && isOneOf(iFormat[j], "-+ #0"))
            ++j;
        std::size_t digits = 0;
        for (; j < n && isDigit(iFormat[j]); ++j)
            ++digits;
        if (digits > 3)
            return false;
        if (j < n && iFormat[j] == '.') {
            digits = 0;
            for (++j; j < n && isDigit(iFormat[j]); ++j)
                ++digits;
            if (digits > 3)
                return false;
        }
        const std::size_t headEnd = j;
        while (j < n && isOneOf(iFormat[j], "hlLqjzt"))
            ++j;
        if (j >= n)
            return false;
        const std::string length = iFormat.substr(headEnd, j - headEnd);
        const char type = iFormat[j];
        const bool integer = iKind == Kiv_PrintfKind::Integer;
        const bool typeOk = isOneOf(type, integer ? "diouxX" : "fFeEgG");
        const bool lengthOk = length.empty() || length == "l" || (integer && length == "ll");
        if (!typeOk || !lengthOk || ++found > 1)
            return false;
        oConversion.head = iFormat.substr(i, headEnd - i);
        oConversion.type = type;
        oConversion.begin = i;
        oConversion.end = j + 1;
        i = j;
    }
    return found == 1;
}

/// The format rebuilt around the conversion, with `iLength` as its length modifier.
std::string rebuild(const std::string &iFormat, const Conversion &iConversion, const char *iLength)
{
    return iFormat.substr(0, iConversion.begin) + iConversion.head + iLength + iConversion.type
        + iFormat.substr(iConversion.end);
}

} // namespace

QString Kiv_FormatArgs(const QString &iFormat, const QStringList &iArgs)
{
    QString out;
    out.reserve(iFormat.size());
    const qsizetype n = iFormat.size();
    for (qsizetype i = 0; i < n;) {
        if (iFormat[i] == QLatin1Char('%') && i + 1 < n && iFormat[i + 1].isDigit()) {
            qsizetype number = iFormat[i + 1].digitValue();
            qsizetype length = 1;
            if (i + 2 < n && iFormat[i + 2].isDigit()) {
                const qsizetype two = number * 10 + iFormat[i + 2].digitValue();
                if (two >= 1 && two <= iArgs.size()) {
                    number = two;
                    length = 2;
                }
            }
            if (number >= 1 && number <= iArgs.size()) {
                out += iArgs[number - 1];
                i += 1 + length;
                continue;
            }
        }
        out += iFormat[i];
        ++i;
    }
    return out;
}

bool Kiv_IsPrintfFormat(const std::string &iFormat, Kiv_PrintfKind iKind)
{
    Conversion conversion;
    return findConversion(iFormat, iKind, conversion);
}

QString Kiv_FormatPrintf(const std::string &iFormat, long iValue)
{
    Conversion conversion;
    if (!findConversion(iFormat, Kiv_PrintfKind::Integer, conversion))
        return QString::number(iValue);
    // The C library's formatting: QString::asprintf writes "%#X" with a lower-case "0x".
    // Integers format alike in every locale (the grouping flag is not accepted).
    const std::string format = rebuild(iFormat, conversion, "ll");
    std::string out(64, '\0');
    int length
        = std::snprintf(out.data(), out.size(), format.c_str(), static_cast<long long>(iValue));
    if (length >= int(out.size())) {
        out.resize(size_t(length) + 1);
        length
            = std::snprintf(out.data(), out.size(), format.c_str(), static_cast<long long>(iValue));
    }
    return length < 0 ? QString::number(iValue) : QString::fromUtf8(out.data(), length);
}

QString Kiv_FormatPrintf(const std::string &iFormat, double iValue)
{
    Conversion conversion;
    if (!findConversion(iFormat, Kiv_PrintfKind::Real, conversion))
        return QString::asprintf("%g", iValue);
    return QString::asprintf(rebuild(iFormat, conversion, "").c_str(), iValue);
}

QString Kiv_FormatCount(long iValue, const QString &iFormat, const QString &iFormat1)
{
    const QString &format = (iValue == 1 && !iFormat1.isEmpty()) ? iFormat1 : iFormat;
    const QString number = QString::number(iValue);
    return format.isEmpty() ? number : Kiv_FormatArgs(format, { number });
}

QString Kiv_FormatLabelText(const QString &iValue, const QString &iFormat,
                            const QString &iEmptyText)
{
    if (iValue.isEmpty())
        return iEmptyText;
    return iFormat.isEmpty() ? iValue : Kiv_FormatArgs(iFormat, { iValue });
}

QString Kiv_FormatToolTip(const QString &iFormat, const QStringList &iValues)
{
    if (!iFormat.isEmpty())
        return Kiv_FormatArgs(iFormat, iValues);
    QStringList parts;
    for (const QString &value : iValues) {
        if (!value.isEmpty())
            parts << value;
    }
    return parts.join(QLatin1Char('\n'));
}
