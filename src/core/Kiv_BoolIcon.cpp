#include "Kiv_BoolIcon.h"

#include "Kib_Resource.h"
#include "Kiv_WhatsThis.h"

Kiv_BoolIcon::Kiv_BoolIcon(QWidget *iParent, const char *iName)
    : QLabel(iParent)
    , mValue(this, "Kiv_BoolIcon::setConnectionSpec", Kiv_DisplayBinding<bool>::MayPublish, false)
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_BoolIcon"));
    mValue.onChanged([this] { refresh(); });
}

Kiv_BoolIcon::~Kiv_BoolIcon() = default;

void Kiv_BoolIcon::setConnectionSpec(const QByteArray &iConnection)
{
    mValue.setConnectionString(iConnection);
}

void Kiv_BoolIcon::setImageNames(const QByteArray &iTrueImage, const QByteArray &iFalseImage)
{
    mTrueImage = iTrueImage;
    mFalseImage = iFalseImage;
    refresh();
}

void Kiv_BoolIcon::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv);
}

void Kiv_BoolIcon::refresh()
{
    const QByteArray &name = mValue.value() ? mTrueImage : mFalseImage;
    if (!mValue.hasValue() || name.isEmpty()) {
        setPixmap(QPixmap());
        return;
    }
    setPixmap(Kib_Resource::loadPixmap(QString::fromUtf8(name)));
}
