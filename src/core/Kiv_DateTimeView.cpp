#include "Kiv_DateTimeView.h"

#include "Kiv_ViewText.h"

Kiv_DateTimeView::Kiv_DateTimeView()
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
}

Kiv_DateTimeView::Kiv_DateTimeView(const Kiv_DateTimeView &iOther)
    : Kiv_ViewBase(iOther)
    , mFormat(iOther.mFormat)
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
    mValue.copyConnection(iOther.mValue);
}

Kiv_DateTimeView::~Kiv_DateTimeView() = default;

void Kiv_DateTimeView::setConnectionSpec(QString iConnection)
{
    mValue.setConnectionString(iConnection.toUtf8());
}

void Kiv_DateTimeView::setDateTimeFormat(const QString &iFormat)
{
    mFormat = iFormat;
    sendAllBitsChanged();
}

QString Kiv_DateTimeView::text() const
{
    const QDateTime value = mValue.value();
    return value.isValid() ? value.toString(mFormat) : QString();
}

void Kiv_DateTimeView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv, bridgeWidget());
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_DateTimeView::drawContents(QPainter *iPainter, const QRect &)
{
    Kiv_DrawViewText(iPainter, getLocalDrawingRect(), text(), Qt::AlignLeft | Qt::AlignVCenter);
}

std::unique_ptr<Kiv_ViewInterface> Kiv_DateTimeView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_DateTimeView(*this));
}
