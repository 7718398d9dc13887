#include "Kib_Assert.h"

#include <QDebug>

namespace {
QStringList &reportList()
{
    static QStringList list;
    return list;
}
} // namespace

bool Kib_Assert::handleFailedAssert(const char *iExpression, const char *iFile, int iLine)
{
    const QString text = QStringLiteral("%1 (%2:%3)")
                             .arg(QString::fromUtf8(iExpression ? iExpression : "?"),
                                  QString::fromUtf8(iFile ? iFile : "?"))
                             .arg(iLine);
    qWarning().noquote() << "Kib_Assert::handleFailedAssert, assertion failed:" << text;
    QStringList &list = reportList();
    list << text;
    if (list.size() > 1000) // keep the record bounded in long sessions
        list.removeFirst();
    return false;
}

int Kib_Assert::reportCount()
{
    return int(reportList().size());
}

QStringList Kib_Assert::reports()
{
    return reportList();
}

void Kib_Assert::clearReports()
{
    reportList().clear();
}
