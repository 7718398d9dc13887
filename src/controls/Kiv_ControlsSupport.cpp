#include "Kiv_ControlsSupport.h"

#include "Kib_Resource.h"
#include "Kiv_Script.h"

#include <QFileInfo>
#include <QImage>

Q_LOGGING_CATEGORY(lcKivControls, "kiv.controls")

namespace {
constexpr int cDefaultImageSide = 32;

// "Images/Buttons/PlayNormal.png" -> "Images/Buttons/PlayNormal@2x.png".
QString doubleDensityName(const QString &iName)
{
    const int slash = iName.lastIndexOf(QLatin1Char('/'));
    const int dot = iName.lastIndexOf(QLatin1Char('.'));
    const int at = dot > slash ? dot : iName.size();
    return iName.left(at) + QLatin1String("@2x") + iName.mid(at);
}
} // namespace

namespace Kiv_ControlsSupport {

void setScript(Kiv_Script &ioScript, const QString &iText, const char *iWhere)
{
    if (ioScript.setText(iText) && !iText.isEmpty() && !ioScript.hasScript())
        qCWarning(lcKivControls).noquote() << QLatin1String(iWhere)
                + QLatin1String(", cannot parse the action script \"") + iText
                + QLatin1String("\"; the button has no script");
}

void connectScript(Kiv_Script &ioScript, const Bnd_ConnectionEnvironmentPtr &iEnv, QWidget *iWidget,
                   const char *iWhere)
{
    if (ioScript.hasScript() && !ioScript.connect(iEnv, iWidget))
        qCWarning(lcKivControls).noquote() << QLatin1String(iWhere)
                + QLatin1String(", the action script \"") + ioScript.text()
                + QLatin1String("\" does not connect; the button has no script");
}

QPixmap loadImage(const QString &iName, qreal iDevicePixelRatio, bool iMirrored)
{
    if (iName.isEmpty())
        return QPixmap();
    QPixmap pixmap;
    if (iDevicePixelRatio > 1.0) {
        const QString name2x = doubleDensityName(iName);
        if (QFileInfo::exists(Kib_Resource::resourceFile(name2x))) {
            pixmap = Kib_Resource::loadPixmap(name2x);
            if (!pixmap.isNull())
                pixmap.setDevicePixelRatio(2.0);
        }
    }
    if (pixmap.isNull())
        pixmap = Kib_Resource::loadPixmap(iName);
    return iMirrored ? mirrored(pixmap) : pixmap;
}

QPixmap mirrored(const QPixmap &iPixmap)
{
    if (iPixmap.isNull())
        return iPixmap;
    QImage image = iPixmap.toImage().mirrored(true, false);
    image.setDevicePixelRatio(iPixmap.devicePixelRatio());
    return QPixmap::fromImage(image);
}

QSize imageSizeHint(const QPixmap &iPixmap)
{
    if (iPixmap.isNull())
        return QSize(cDefaultImageSide, cDefaultImageSide);
    return iPixmap.deviceIndependentSize().toSize();
}

} // namespace Kiv_ControlsSupport
