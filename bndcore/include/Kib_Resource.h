#pragma once

#include "bndcore_export.h"

#include <QPixmap>
#include <QString>

/// Access to the files shipped in the resource directory: images, forms, menus, settings.
///
/// Every widget loads its images through loadPixmap(), so they are read once and shared through
/// QPixmapCache. GUI thread only.
class BNDCORE_EXPORT Kib_Resource
{
public:
    /// Sets the resource directory. The stored path always ends with "/" (one is added when
    /// missing; native separators are turned into "/"). An empty path stays empty and means
    /// "the default", Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir).
    static void setResourcePath(QString iPath);
    /// The path given to setResourcePath(), normalised; empty when none was given.
    static QString getResourcePath();

    /// The full path of a file in the resource directory: the path set with setResourcePath()
    /// (or the default directory when none is set) followed by `iRelative`.
    static QString resourceFile(const QString &iRelative);

    /// Loads an image from the resource directory, e.g. "Images/Play.png". Answers a null
    /// pixmap, and logs the path, when the file is missing or not an image. Loaded images are
    /// kept in QPixmapCache under their full path, so changing the resource directory never
    /// answers an image of the old one. Needs a QGuiApplication.
    static QPixmap loadPixmap(const QString &iRelativeName);
};
