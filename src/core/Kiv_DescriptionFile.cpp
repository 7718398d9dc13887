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
