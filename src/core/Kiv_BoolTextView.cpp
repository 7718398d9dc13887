#include "Kiv_BoolTextView.h"

#include "Kiv_ViewText.h"

#include <QCoreApplication>

Kiv_BoolTextView::Kiv_BoolTextView()
    : mTrueText(QCoreApplication::translate("Kiv_BoolTextView", "Yes"))
    , mFalseText(QCoreApplication::translate("Kiv_BoolTextView", "No"))
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
}

Kiv_BoolTextView::Kiv_BoolTextView(const Kiv_BoolTextView &iOther)
    : Kiv_ViewBase(iOther)
    , mTrueText(iOther.mTrueText)
    , mFalseText(iOther.mFalseText)
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
    mValue.copyConnection(iOther.mValue);
}

Kiv_BoolTextView::~Kiv_BoolTextView() = default;

void Kiv_BoolTextView::setConnectionName(const QString &iConnection)
{
    mValue.setConnectionString(iConnection.toUtf8());
}

void Kiv_BoolTextView::setTexts(const QString &iTrueText, const QString &iFalseText)
{
    mTrueText = iTrueText;
    mFalseText = iFalseText;
    sendAllBitsChanged();
}

QString Kiv_BoolTextView::text() const
{
    if (!mValue.hasValue())
        return QString();
    return mValue.value() ? mTrueText : mFalseText;
}

void Kiv_BoolTextView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv, bridgeWidget());
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_BoolTextView::drawContents(QPainter *iPainter, const QRect &)
{
    Kiv_DrawViewText(iPainter, getLocalDrawingRect(), text(), Qt::AlignLeft | Qt::AlignVCenter);
}

std::unique_ptr<Kiv_ViewInterface> Kiv_BoolTextView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_BoolTextView(*this));
}
