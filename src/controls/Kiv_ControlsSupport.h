#pragma once

// What the action buttons share besides Kiv_AutoRepeat: their log category, the handling of
// their scripts and the loading of their images. Internal to the library.

#include "Bnd_ConnectionEnvironment.h"

#include <QLoggingCategory>
#include <QPixmap>
#include <QSize>
#include <QString>

class Kiv_Script;
class QWidget;

Q_DECLARE_LOGGING_CATEGORY(lcKivControls)

namespace Kiv_ControlsSupport {

/// Sets the script text; a text that does not parse is logged (naming `iWhere`, the class and
/// operation) and leaves no script.
void setScript(Kiv_Script &ioScript, const QString &iText, const char *iWhere);

/// Connects the script in `iEnv` with `iWidget` as its widget. A script whose names do not
/// connect is dropped and logged.
void connectScript(Kiv_Script &ioScript, const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget,
                   const char *iWhere);

/// Loads a button image from the resource directory for a screen of the given device pixel
/// ratio: above 1, the "@2x" file beside the named one ("Images/Buttons/PlayNormal@2x.png") is
/// taken when it exists. Mirrored left-to-right when `iMirrored`. Null when nothing loads.
QPixmap loadImage(const QString &iName, qreal iDevicePixelRatio, bool iMirrored);
/// The pixmap mirrored left to right (mirroring twice gives the original back).
QPixmap mirrored(const QPixmap &iPixmap);

/// The size a button drawn from `iPixmap` asks for: the pixmap's size in device-independent
/// pixels, or 32 by 32 without a pixmap.
QSize imageSizeHint(const QPixmap &iPixmap);

} // namespace Kiv_ControlsSupport
