#include "Kiv_TextView.h"

#include <QPainter>

Kiv_TextView::Kiv_TextView()
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
}

Kiv_TextView::Kiv_TextView(const Kiv_TextView &iOther)
    : Kiv_ViewBase(iOther)
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
    mValue.copyConnection(iOther.mValue);
}

Kiv_TextView::~Kiv_TextView() = default;

void Kiv_TextView::SetNameConnection(QString iConnection)
{
    mValue.setConnectionString(iConnection.toUtf8());
}

void Kiv_TextView::ClearConnection()
{
    mValue.clear();
}

QString Kiv_TextView::text() const
{
    return mValue.value();
}

void Kiv_TextView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv, bridgeWidget());
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_TextView::drawContents(QPainter *iPainter, const QRect &)
{
    const QString shown = text();
    if (iPainter && !shown.isEmpty())
        iPainter->drawText(getLocalDrawingRect(), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                           shown);
}

std::unique_ptr<Kiv_ViewInterface> Kiv_TextView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_TextView(*this));
}
