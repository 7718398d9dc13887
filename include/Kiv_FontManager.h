#pragma once

#include "kivcore_export.h"

#include <QFont>
#include <QString>

/// The process-wide table of named fonts.
///
/// A settings file (read with Kib_Setting, start root "Windows", prefix "FontSettings") maps font
/// names to descriptions; widgets with a configurable font ask the table by name. Names are
/// "FontSettings." + class + "." + role + ".Font", e.g. "FontSettings.Kiv_StatusWindow.Font".
///
/// A description is "family,point size,weight". The weight is on the 0 to 99 scale of the
/// settings files (50 normal, 75 bold); values of 100 and above are taken as QFont::Weight
/// values. A missing size or weight stays unset, so the font takes it from where it is used.
/// All operations are static; GUI thread only.
class KIVCORE_EXPORT Kiv_FontManager
{
public:
    /// The prefix of the font names in the settings files.
    static const char *const cPrefix;

    /// Whether a font is stored under the name.
    static bool hasFont(const QString &iName);
    /// The font stored under the name. An unknown name is entered with a default QFont, which
    /// is answered.
    static QFont getFont(const QString &iName);
    /// Stores the font under the name, replacing an earlier one.
    static void setFont(const QString &iName, const QFont &iFont);

    /// Reads the fonts of a settings file and stores each under its name; fonts of other names
    /// stay. A file that cannot be read is logged and changes nothing.
    static void loadSettingsFile(const QString &iPath);

    /// The font of a description:
    /// - "" (no parts): a default QFont;
    /// - "family": that family, size and weight unset, not italic;
    /// - "family,size": with that point size;
    /// - "family,size,weight": with that weight too; further parts are ignored.
    /// Sizes and weights are decimal integers; one that is not a number counts as 0 (a size of 0
    /// is unset as well, a weight of 0 the thinnest).
    static QFont fontFromDescription(const QString &iDescription);
};
