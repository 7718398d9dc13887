#include "Kiv_DescriptionFile.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>

int Kiv_XmlElementDepth(const QByteArray &iXml, int iLimit)
{
    QXmlStreamReader reader(iXml);
    int depth = 0;
    int deepest = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            deepest = std::max(deepest, ++depth);
            if (deepest > iLimit)
                return deepest; // deep enough to refuse; no need to read on
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return reader.hasError() ? -1 : deepest;
}

bool Kiv_OpenDescriptionFile(QFile &oFile, const QStringList &iPaths)
{
    for (const QString &path : iPaths) {
        const QFileInfo info(path);
        if (path.isEmpty() || !info.isFile() || info.size() > cKivMaxDescriptionSize)
            continue;
        oFile.setFileName(path);
        if (oFile.open(QIODevice::ReadOnly))
            return true;
    }
    return false;
}

namespace {
// No description format needs more attributes on one element.
constexpr int cMaxAttributes = 64;

template<class Char> bool tagsAreSane(const Char *iText, qsizetype iSize, const QString &iWho)
{
    bool inTag = false;
    Char quote = 0;
    int attributes = 0;
    for (qsizetype i = 0; i < iSize; ++i) {
        const Char c = iText[i];
        if (quote) {
            if (c == quote)
                quote = 0;
        } else if (!inTag) {
            if (c == '<') {
                inTag = true;
                attributes = 0;
            }
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '=' && ++attributes > cMaxAttributes) {
            qWarning("%s parse error a tag with more than %d attributes", qPrintable(iWho),
                     cMaxAttributes);
            return false;
        } else if (c == '>') {
            inTag = false;
        }
    }
    return true;
}
} // namespace

bool Kiv_XmlTagsAreSane(const QByteArray &iXml, const QString &iWho)
{
    return tagsAreSane(iXml.constData(), iXml.size(), iWho);
}

bool Kiv_XmlTagsAreSane(const QString &iXml, const QString &iWho)
{
    return tagsAreSane(reinterpret_cast<const char16_t *>(iXml.constData()), iXml.size(), iWho);
}
