#include "Kib_Resource.h"

#include "Kib_DirPaths.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QGuiApplication>
#include <QPixmapCache>
#include <QThread>

namespace {
QString &storedPath()
{
    static QString path;
    return path;
}
} // namespace

void Kib_Resource::setResourcePath(QString iPath)
{
    iPath = QDir::fromNativeSeparators(iPath);
    if (!iPath.isEmpty() && !iPath.endsWith(QLatin1Char('/')))
        iPath += QLatin1Char('/');
    storedPath() = iPath;
}

QString Kib_Resource::getResourcePath()
{
    return storedPath();
}

QString Kib_Resource::resourceFile(const QString &iRelative)
{
    const QString &dir = storedPath();
    return (dir.isEmpty() ? Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir) : dir) + iRelative;
}

QPixmap Kib_Resource::loadPixmap(const QString &iRelativeName)
{
    const QString path = resourceFile(iRelativeName);
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())
        || QThread::currentThread() != QCoreApplication::instance()->thread()) {
        qWarning().noquote() << "Kib_Resource::loadPixmap, cannot load" << path
                             << "outside the GUI thread of a QGuiApplication";
        return QPixmap();
    }

    const QString key = QLatin1String("Kib_Resource:") + path;
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    if (iRelativeName.isEmpty() || !pixmap.load(path)) {
        qWarning().noquote() << "Kib_Resource::loadPixmap, cannot load" << path;
        return QPixmap();
    }
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}
