#include "Kib_Setting.h"

#include <QDebug>
#include <QFile>
#include <QStringList>

namespace {
const QString kParamTag = QStringLiteral("Param");

QString joined(const QString &iPath, const QString &iName)
{
    return iPath.isEmpty() ? iName : iPath + QLatin1Char('.') + iName;
}

QList<QDomElement> childElements(const QDomElement &iParent, const QString &iTag = QString())
{
    QList<QDomElement> children;
    for (QDomElement child = iParent.firstChildElement(iTag); !child.isNull();
         child = child.nextSiblingElement(iTag))
        children << child;
    return children;
}
} // namespace

Kib_Setting::Kib_Setting() = default;

void Kib_Setting::SetPrefix(QString iPrefix)
{
    mPrefix = iPrefix.trimmed();
    rebuild();
}

void Kib_Setting::SetStartRoot(QString iStartRoot)
{
    mStartRoot = iStartRoot.trimmed();
    rebuild();
}

template<class Text>
bool Kib_Setting::parse(const Text &iXml, bool iLogErrors, const QString &iWhere)
{
    mLogErrors = iLogErrors;
    QString message;
    int line = 0;
    int column = 0;
    QDomDocument document;
    mHasDocument = document.setContent(iXml, &message, &line, &column);
    mDocument = mHasDocument ? document : QDomDocument();
    if (!mHasDocument && iLogErrors)
        qWarning().noquote() << QStringLiteral("%1, malformed XML at line %2: %3 (column %4)")
                                    .arg(iWhere, QString::number(line), message,
                                         QString::number(column));
    rebuild();
    return mHasDocument;
}

bool Kib_Setting::SetXML(const QString &iXml, bool iLogErrors)
{
    return parse(iXml, iLogErrors, QStringLiteral("Kib_Setting::SetXML"));
}

bool Kib_Setting::SetXMLFile(const QString &iPath, bool iLogErrors)
{
    QFile file(iPath);
    if (!file.open(QIODevice::ReadOnly)) {
        if (iLogErrors)
            qWarning().noquote() << "Kib_Setting::SetXMLFile, cannot open" << iPath << ":"
                                 << file.errorString();
        mHasDocument = false;
        mDocument = QDomDocument();
        rebuild();
        return false;
    }
    // The bytes go to the parser as they are, so the encoding declaration is honoured.
    return parse(file.readAll(), iLogErrors, QLatin1String("Kib_Setting::SetXMLFile, ") + iPath);
}

void Kib_Setting::rebuild()
{
    mParams.clear();
    if (!mHasDocument)
        return;
    const QDomElement root = mDocument.documentElement();
    const QList<QDomElement> startRoots
        = mStartRoot.isEmpty() ? QList<QDomElement> { root } : childElements(root, mStartRoot);
    const QStringList prefix = mPrefix.split(QLatin1Char('.'), Qt::SkipEmptyParts);

    for (const QDomElement &startRoot : startRoots) {
        if (prefix.isEmpty()) {
            for (const QDomElement &child : childElements(startRoot))
                collect(child, QString());
            continue;
        }
        // Walk down the prefix; the elements it ends on are read with their own names.
        QList<QDomElement> level { startRoot };
        for (const QString &segment : prefix) {
            QList<QDomElement> next;
            for (const QDomElement &element : level)
                next << childElements(element, segment);
            level = next;
        }
        const QString parentPath = prefix.mid(0, prefix.size() - 1).join(QLatin1Char('.'));
        for (const QDomElement &element : level)
            collect(element, parentPath);
    }
}

void Kib_Setting::collect(const QDomElement &iElement, const QString &iPath)
{
    if (iElement.tagName() == kParamTag) {
        const QString name = iElement.attribute(QStringLiteral("name")).trimmed();
        if (name.isEmpty()) {
            if (mLogErrors)
                qWarning().noquote() << "Kib_Setting::SetXML, Param without a name at line"
                                     << iElement.lineNumber() << "is ignored";
            return;
        }
        const QString value = iElement.hasAttribute(QStringLiteral("value"))
            ? iElement.attribute(QStringLiteral("value"))
            : iElement.text().trimmed();
        mParams.append({ joined(iPath, name), value });
        return;
    }

    const QString path = joined(iPath, iElement.tagName());
    const QList<QDomElement> children = childElements(iElement);
    if (children.isEmpty()) {
        mParams.append({ path, iElement.text().trimmed() });
        return;
    }
    for (const QDomElement &child : children)
        collect(child, path);
}

bool Kib_Setting::GetNthParam(int n, QString &oName, QString &oValue) const
{
    if (n < 0 || n >= mParams.size())
        return false;
    oName = mParams.at(n).first;
    oValue = mParams.at(n).second;
    return true;
}

int Kib_Setting::count() const
{
    return int(mParams.size());
}

QString Kib_Setting::value(const QString &iName, const QString &iDefault) const
{
    for (auto it = mParams.crbegin(); it != mParams.crend(); ++it) {
        if (it->first == iName)
            return it->second;
    }
    return iDefault;
}
