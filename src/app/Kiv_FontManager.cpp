#include "Kiv_FontManager.h"

#include "Kiv_FontConnection.h"

#include "Kib_Setting.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QStringList>

namespace {

typedef QHash<QString, QFont> FontTable;

FontTable &fontTable()
{
    static FontTable table;
    return table;
}

// A decimal integer; what is not one counts as 0.
int toInteger(const QString &iText)
{
    bool ok = false;
    const int value = iText.trimmed().toInt(&ok, 10);
    return ok ? value : 0;
}

} // namespace

const char *const Kiv_FontManager::cPrefix = "FontSettings";

bool Kiv_FontManager::hasFont(const QString &iName)
{
    return fontTable().contains(iName);
}

QFont Kiv_FontManager::getFont(const QString &iName)
{
    FontTable &table = fontTable();
    auto found = table.find(iName);
    if (found == table.end())
        found = table.insert(iName, QFont());
    return found.value();
}

void Kiv_FontManager::setFont(const QString &iName, const QFont &iFont)
{
    fontTable().insert(iName, iFont);
}

QFont Kiv_FontManager::fontFromDescription(const QString &iDescription)
{
    if (iDescription.isEmpty())
        return QFont();
    const QStringList parts = iDescription.split(QLatin1Char(','));
    const QString family = parts.at(0).trimmed();
    // QFont's constructor takes -1 (or any size below 1, any negative weight) as "not set"
    // and leaves those fields unresolved, unlike setPointSize(-1), which would complain.
    const int pointSize = parts.size() >= 2 ? toInteger(parts.at(1)) : -1;
    const int weight = parts.size() >= 3 ? Kiv_FontWeightFromSetting(toInteger(parts.at(2))) : -1;
    return QFont(family, pointSize, weight, false);
}

void Kiv_FontManager::loadSettingsFile(const QString &iPath)
{
    QString text;
    QFile file(iPath);
    if (file.open(QIODevice::ReadOnly))
        text = QString::fromUtf8(file.readAll());
    else
        qWarning().noquote() << "Kiv_FontManager::loadSettingsFile, cannot open" << iPath << ":"
                             << file.errorString();

    Kib_Setting settings;
    settings.SetPrefix(QLatin1String(cPrefix));
    settings.SetStartRoot(QStringLiteral("Windows"));
    if (!text.isEmpty() && !settings.SetXML(text)) // the reader names the line
        qWarning().noquote() << "Kiv_FontManager::loadSettingsFile, no fonts read from" << iPath;

    QString name;
    QString value;
    for (int n = 0; settings.GetNthParam(n, name, value); ++n)
        setFont(name, fontFromDescription(value));
}
