#pragma once

#include "kivplatform_export.h"

#include <QList>
#include <QString>

class QLocale;

/// The few operating-system services the widgets need.
///
/// Languages are identified the Windows way, by primary language identifier (the low 10 bits of
/// a language id: English 9, German 7, French 12, ...), since that is what keyboard layouts and
/// stored preferences use; 0 means none/unknown.
namespace KivPlatform {

/// The language of the current keyboard layout. The environment variable KIV_KEYBOARD_LANGUAGE,
/// set to a decimal number, overrides the system (other values are ignored, with a log line).
/// On Windows this is the active keyboard layout; elsewhere the input method's locale when a
/// GUI application exists, else the system locale.
KIVPLATFORM_EXPORT int keyboardLanguage();

/// English name of a language ("German" for 7), empty for an unknown identifier.
/// Identifiers shared by several languages carry one name (26 is "Croatian").
KIVPLATFORM_EXPORT QString languageName(int primaryLanguageId);
/// The identifier of a name as languageName() gives it, ignoring case and surrounding spaces;
/// 0 for an unknown name.
KIVPLATFORM_EXPORT int languageIdForName(const QString &name);
/// Every identifier languageName() knows, ascending.
KIVPLATFORM_EXPORT QList<int> supportedLanguageIds();
/// The identifier of a locale's language; 0 when it has none. The C locale counts as English.
KIVPLATFORM_EXPORT int languageIdForLocale(const QLocale &locale);

/// Throws away the key events typed ahead: those waiting to be delivered to the GUI thread
/// (in the system's message queue on Windows, and those posted to Qt's event queue). Nothing
/// else is dropped, and Qt delivers no event inside the call. Used after a long
/// operation, so that keys hit while the application was busy do not act on what comes next.
/// Where the windowing system hands keys to Qt only as the event loop runs (X11, Wayland),
/// those it still holds are not reached. GUI thread only.
KIVPLATFORM_EXPORT void discardTypedAheadKeys();

} // namespace KivPlatform
