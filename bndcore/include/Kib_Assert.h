#pragma once

#include "bndcore_export.h"

#include <QString>
#include <QStringList>

/// Reporting of failed internal consistency checks.
///
/// A failed check is logged as one warning line naming the expression, the file and the line,
/// and the program carries on. Tests can look at how many reports were made and at their texts.
class BNDCORE_EXPORT Kib_Assert
{
public:
    /// Logs the failed check and returns false, so callers can write
    /// `if (!ok) return Kib_Assert::handleFailedAssert(...)`.
    static bool handleFailedAssert(const char *iExpression, const char *iFile, int iLine);

    /// Number of reports since start-up or the last clearReports().
    static int reportCount();
    /// The texts of those reports, oldest first ("<expression> (<file>:<line>)").
    static QStringList reports();
    static void clearReports();
};
