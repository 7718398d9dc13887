#include "Kiv_FontManager.h"

#include "Kib_Setting.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QStringList>

#include <cstdlib>

namespace {

typedef QHash<QString, QFont> FontTable;

FontTable &fontTable()
{
    static FontTable table;
    return table;
}

// Settings files give weights on the 0 to 99 scale (50 normal, 75 bold); a weight there is
// taken as the nearest named weight of QFont.
const int cLegacyWeights[][2] = {
    { 0, QFont::Thin },    { 12, QFont::ExtraLight }, { 25, QFont::Light },
    { 50, QFont::Normal }, { 57, QFont::Medium },     { 63, QFont::DemiBold },
    { 75, QFont::Bold },   { 81, QFont::ExtraBold },  { 87, QFont::Black },
};
const int cFirstFontWeight = QFont::Thin; // 100: from here on the weight is QFont's own
const int cMaxFontWeight = 1000;

// Keeps a negative weight negative, which QFont reads as "not set".
int fontWeight(int iWeight)
{
    if (iWeight < 0)
        return iWeight;
    if (iWeight >= cFirstFontWeight)
        return qMin(iWeight, cMaxFontWeight);
    int nearest = cLegacyWeights[0][1];
    int distance = iWeight - cLegacyWeights[0][0];
    for (const auto &mapping : cLegacyWeights) {
        if (std::abs(iWeight - mapping[0]) < distance) {
            distance = std::abs(iWeight - mapping[0]);
            nearest = mapping[1];
        }
    }
    return nearest;
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
    const int weight = parts.size() >= 3 ? fontWeight(toInteger(parts.at(2))) : -1;
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
