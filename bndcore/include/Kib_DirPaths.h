#pragma once

#include "bndcore_export.h"

#include <QString>

/// The directories the application reads from and writes to.
///
/// Every path answered ends with "/". The application tells where it runs from once at start-up
/// with Initialize(); until then (or after Initialize(nullptr)) the running executable is used.
/// All functions are meant for the GUI thread, like the rest of the application services.
class BNDCORE_EXPORT Kib_DirPaths
{
public:
    enum DirPath_t : int {
        /// The directory of the executable (from the Initialize() seed). Never created.
        ApplicationDir = 0,
        /// Per-user data the application writes (QStandardPaths::AppLocalDataLocation).
        UserDataDir = 1,
        /// Per-user configuration (QStandardPaths::AppConfigLocation).
        SettingsDir = 2,
        /// The read-only resources shipped with the application: images, forms, menus, keymaps,
        /// settings. Looked up in this order:
        ///  1. the environment variable KIV_RESOURCE_DIR, when it names an existing directory;
        ///  2. `<exedir>/resources/`, then `<exedir>/../share/kivcore/resources/` (installed);
        ///  3. the `resources/` directory of the source tree the library was built from.
        /// The last one is answered even when it does not exist. Never created.
        ResourceDir = 3,
        /// The user's own keyboard layouts: UserDataDir + "Keymaps/".
        KeymapDir = 4,
        /// The shipped translations: ResourceDir + "Translations/". Part of the resources, so
        /// never created either.
        TranslationsDir = 5
    };

    /// Remembers where the application runs from. `iSeed` is the path of the executable or of
    /// the directory holding it (a relative path is taken from the current directory). A bare
    /// name that is no existing file (the product name, as the application object passes it)
    /// becomes the product name unless one was set, and the running executable is used. A null
    /// or empty seed means the running executable, QCoreApplication::applicationFilePath(),
    /// which is looked up when a path is asked for, so this may be called before the
    /// application object exists.
    static void Initialize(const char *iSeed);

    /// The directory of the given kind, always ending with "/". With `iCreate` a missing
    /// directory is made (with its parents), except for the read-only kinds ApplicationDir,
    /// ResourceDir and TranslationsDir; a failure to make it is logged and the path still
    /// answered. An unknown kind is logged and answers an empty string.
    static QString GetPath(DirPath_t iKind, bool iCreate = false);

    /// The file name of the executable, without its directory. When Initialize() was given a
    /// directory, the name of the running executable (empty without an application object).
    static QString GetApplicationExeName();

    /// The product name shown in captions: the one set with setProductName(), else
    /// QCoreApplication::applicationName(), else "KivCore".
    static QString GetProductName();
    /// Lets a host name its product; an empty name goes back to the default.
    static void setProductName(const QString &iName);
};
