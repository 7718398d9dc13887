#include "Kiv_Label.h"

#include "Kiv_TextFormat.h"
#include "Kiv_WhatsThis.h"

#include <QStringList>

Kiv_Label::Kiv_Label(QWidget *iParent, const char *iName)
    : QLabel(iParent)
    , mText(this, "Kiv_Label::setTextConnectionSpec", TextBinding::MayPublish)
    , mFont(this)
{
    setObjectName(QString::fromUtf8(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_Label"));
    mText.onChanged([this] { refreshText(); });
}

Kiv_Label::~Kiv_Label() = default;

void Kiv_Label::setTextConnectionSpec(const QByteArray &iConnection)
{
    mText.setConnectionString(iConnection);
}

void Kiv_Label::setFontConnectionSpec(const QByteArray &iConnection)
{
    mFont.setConnectionString(iConnection);
}

void Kiv_Label::setToolTipConnections(const QList<QString> &iConnections)
{
    if (iConnections == mToolTipConnections)
        return;
    const bool hadConnections = !mToolTipConnections.isEmpty();
    mToolTipConnections = iConnections;
    while (mToolTipParts.size() < std::size_t(iConnections.size())) {
        mToolTipParts.push_back(std::make_unique<TextBinding>(
            this, "Kiv_Label::setToolTipConnections", TextBinding::ListenOnly));
        mToolTipParts.back()->onChanged([this] { refreshToolTip(); });
    }
    for (std::size_t i = 0; i < mToolTipParts.size(); ++i) {
        mToolTipParts[i]->setConnectionString(i < std::size_t(iConnections.size())
                                                  ? iConnections[qsizetype(i)].toUtf8()
                                                  : QByteArray());
    }
    if (iConnections.isEmpty() && hadConnections)
        setToolTip(QString());
    refreshToolTip();
}

void Kiv_Label::setToolTipFormat(const QString &iFormat)
{
    mToolTipFormat = iFormat;
    refreshToolTip();
}

void Kiv_Label::setLabelFormat(const QString &iFormat, const QString &iEmptyText)
{
    mLabelFormat = iFormat;
    mEmptyText = iEmptyText;
    refreshText();
}

void Kiv_Label::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mText.connect(iEnv);
    mFont.connect(iEnv);
    for (const std::unique_ptr<TextBinding> &part : mToolTipParts)
        part->connect(iEnv);
}

void Kiv_Label::refreshText()
{
    if (!mText.wasGiven())
        return; // the host's text
    setText(mText.hasValue() ? Kiv_FormatLabelText(mText.value(), mLabelFormat, mEmptyText)
                             : QString());
}

void Kiv_Label::refreshToolTip()
{
    if (mToolTipConnections.isEmpty())
        return;
    QStringList values;
    for (qsizetype i = 0; i < mToolTipConnections.size(); ++i)
        values << mToolTipParts[std::size_t(i)]->value();
    setToolTip(Kiv_FormatToolTip(mToolTipFormat, values));
}
