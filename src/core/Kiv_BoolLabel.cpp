#include "Kiv_BoolLabel.h"

#include "Kiv_WhatsThis.h"

Kiv_BoolLabel::Kiv_BoolLabel(QWidget *iParent, const char *iName)
    : QLabel(iParent)
    , mValue(this, "Kiv_BoolLabel::setConnectionSpec", Kiv_DisplayBinding<bool>::MayPublish, false)
    , mTrueText(tr("Yes"))
    , mFalseText(tr("No"))
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_BoolLabel"));
    mValue.onChanged([this] { refresh(); });
}

Kiv_BoolLabel::~Kiv_BoolLabel() = default;

void Kiv_BoolLabel::setConnectionSpec(const QByteArray &iConnection)
{
    mValue.setConnectionString(iConnection);
}

void Kiv_BoolLabel::setTexts(const QString &iTrueText, const QString &iFalseText)
{
    mTrueText = iTrueText;
    mFalseText = iFalseText;
    refresh();
}

void Kiv_BoolLabel::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv);
}

void Kiv_BoolLabel::refresh()
{
    if (!mValue.wasGiven())
        return; // the host's text
    setText(!mValue.hasValue() ? QString() : mValue.value() ? mTrueText : mFalseText);
}
