#include "Kib_DirPaths.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#ifndef KIV_SOURCE_RESOURCE_DIR
#define KIV_SOURCE_RESOURCE_DIR ""
#endif

namespace {

struct DirPathsState
{
    // What Initialize() was told, made absolute; empty means "the running executable".
    QString mExeDir; // with a trailing "/"
    QString mExeName; // empty when the seed was a directory
    bool mSeeded = false;
    QString mProductName;
};

DirPathsState &state()
{
    static DirPathsState s;
    return s;
}

QString withSlash(const QString &iPath)
{
    if (iPath.isEmpty())
        return iPath;
    QString path = QDir::cleanPath(QDir::fromNativeSeparators(iPath));
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path;
}

QString runningExecutable()
{
    return QCoreApplication::instance() ? QCoreApplication::applicationFilePath() : QString();
}

QString exeDir()
{
    const DirPathsState &s = state();
    if (s.mSeeded)
        return s.mExeDir;
    const QString exe = runningExecutable();
    return exe.isEmpty() ? QString() : withSlash(QFileInfo(exe).absolutePath());
}

bool isDirectory(const QString &iPath)
{
    return !iPath.isEmpty() && QFileInfo(iPath).isDir();
}

QString resourceDir()
{
    const QString fromEnvironment = qEnvironmentVariable("KIV_RESOURCE_DIR");
    if (isDirectory(fromEnvironment))
        return withSlash(QFileInfo(fromEnvironment).absoluteFilePath());

    const QString dir = exeDir();
    if (!dir.isEmpty()) {
        for (const char *relative : { "resources/", "../share/kivcore/resources/" }) {
            const QString candidate = dir + QLatin1String(relative);
            if (isDirectory(candidate))
                return withSlash(candidate);
        }
    }
    return withSlash(QStringLiteral(KIV_SOURCE_RESOURCE_DIR));
}

QString standardLocation(QStandardPaths::StandardLocation iLocation)
{
    QString path = QStandardPaths::writableLocation(iLocation);
    if (path.isEmpty()) // no home directory: keep the data somewhere rather than nowhere
        path = QDir::tempPath() + QLatin1Char('/') + Kib_DirPaths::GetProductName();
    return withSlash(path);
}

} // namespace

void Kib_DirPaths::Initialize(const char *iSeed)
{
    DirPathsState &s = state();
    const QString seed = QString::fromLocal8Bit(iSeed ? iSeed : "");
    if (seed.isEmpty()) {
        s.mSeeded = false;
        s.mExeDir.clear();
        s.mExeName.clear();
        return;
    }
    const QFileInfo info(seed);
    const bool looksLikePath
        = info.exists() || seed.contains(QLatin1Char('/')) || seed.contains(QLatin1Char('\\'));
    if (!looksLikePath) {
        // A bare name that is no file here: the product's name, not a place.
        if (s.mProductName.isEmpty())
            s.mProductName = seed;
        s.mSeeded = false;
        s.mExeDir.clear();
        s.mExeName.clear();
        return;
    }
    s.mSeeded = true;
    if (info.isDir() || seed.endsWith(QLatin1Char('/'))) {
        s.mExeDir = withSlash(info.absoluteFilePath());
        s.mExeName.clear();
    } else {
        s.mExeDir = withSlash(info.absolutePath());
        s.mExeName = info.fileName();
    }
}

QString Kib_DirPaths::GetPath(DirPath_t iKind, bool iCreate)
{
    QString path;
    bool writable = true;
    switch (iKind) {
    case ApplicationDir:
        path = exeDir();
        writable = false;
        break;
    case UserDataDir:
        path = standardLocation(QStandardPaths::AppLocalDataLocation);
        break;
    case SettingsDir:
        path = standardLocation(QStandardPaths::AppConfigLocation);
        break;
    case ResourceDir:
        path = resourceDir();
        writable = false;
        break;
    case KeymapDir:
        path = standardLocation(QStandardPaths::AppLocalDataLocation) + QLatin1String("Keymaps/");
        break;
    case TranslationsDir:
        path = resourceDir() + QLatin1String("Translations/");
        writable = false;
        break;
    default:
        qWarning().noquote() << "Kib_DirPaths::GetPath, unknown directory kind" << int(iKind);
        return QString();
    }
    if (iCreate && writable && !path.isEmpty() && !QFileInfo(path).isDir() && !QDir().mkpath(path))
        qWarning().noquote() << "Kib_DirPaths::GetPath, cannot create directory" << path;
    return path;
}

QString Kib_DirPaths::GetApplicationExeName()
{
    const DirPathsState &s = state();
    if (s.mSeeded && !s.mExeName.isEmpty())
        return s.mExeName;
    return QFileInfo(runningExecutable()).fileName();
}

QString Kib_DirPaths::GetProductName()
{
    const DirPathsState &s = state();
    if (!s.mProductName.isEmpty())
        return s.mProductName;
    if (QCoreApplication::instance() && !QCoreApplication::applicationName().isEmpty())
        return QCoreApplication::applicationName();
    return QStringLiteral("KivCore");
}

void Kib_DirPaths::setProductName(const QString &iName)
{
    state().mProductName = iName;
}
