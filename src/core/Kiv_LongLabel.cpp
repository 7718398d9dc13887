#include "Kiv_LongLabel.h"

#include "Kiv_TextFormat.h"
#include "Kiv_WhatsThis.h"

Kiv_LongLabel::Kiv_LongLabel(QWidget *iParent, const char *iName)
    : QLabel(iParent)
    , mValue(this, "Kiv_LongLabel::SetConnectionName", Kiv_DisplayBinding<long>::MayPublish, 0)
    , mFont(this)
    , mFormat(QStringLiteral("%1"))
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_LongLabel"));
    mValue.onChanged([this] { refresh(); });
}

Kiv_LongLabel::~Kiv_LongLabel() = default;

void Kiv_LongLabel::SetConnectionName(const QByteArray &iConnection)
{
    mValue.setConnectionString(iConnection);
}

void Kiv_LongLabel::setFontConnectionSpec(const QByteArray &iConnection)
{
    mFont.setConnectionString(iConnection);
}

void Kiv_LongLabel::setFormat(QString iFormat)
{
    mFormat = std::move(iFormat);
    refresh();
}

void Kiv_LongLabel::setFormat1(QString iFormat)
{
    mFormat1 = std::move(iFormat);
    refresh();
}

void Kiv_LongLabel::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv);
    mFont.connect(iEnv);
}

void Kiv_LongLabel::refresh()
{
    if (!mValue.wasGiven())
        return; // the host's text
    setText(mValue.hasValue() ? Kiv_FormatCount(mValue.value(), mFormat, mFormat1) : QString());
}
