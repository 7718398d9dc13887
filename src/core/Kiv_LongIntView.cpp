#include "Kiv_LongIntView.h"

#include "Kiv_TextFormat.h"
#include "Kiv_ViewText.h"

#include <QDebug>

Kiv_LongIntView::Kiv_LongIntView()
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
}

Kiv_LongIntView::Kiv_LongIntView(const Kiv_LongIntView &iOther)
    : Kiv_ViewBase(iOther)
    , mFormat(iOther.mFormat)
{
    mValue.onChanged([this] { sendAllBitsChanged(); });
    mValue.copyConnection(iOther.mValue);
}

Kiv_LongIntView::~Kiv_LongIntView() = default;

void Kiv_LongIntView::setConnectionName(const QString &iConnection)
{
    mValue.setConnectionString(iConnection.toUtf8());
}

void Kiv_LongIntView::setPrintfFormat(const std::string &iFormat)
{
    if (!Kiv_IsPrintfFormat(iFormat, Kiv_PrintfKind::Integer)) {
        qWarning().noquote().nospace()
            << "Kiv_LongIntView::setPrintfFormat, '" << QString::fromStdString(iFormat)
            << "' is not a format of one integer; keeping '" << QString::fromStdString(mFormat)
            << "'";
        return;
    }
    mFormat = iFormat;
    sendAllBitsChanged();
}

QString Kiv_LongIntView::text() const
{
    return mValue.hasValue() ? Kiv_FormatPrintf(mFormat, mValue.value()) : QString();
}

void Kiv_LongIntView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mValue.connect(iEnv, bridgeWidget());
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_LongIntView::drawContents(QPainter *iPainter, const QRect &)
{
    Kiv_DrawViewText(iPainter, getLocalDrawingRect(), text(), Qt::AlignRight | Qt::AlignVCenter);
}

std::unique_ptr<Kiv_ViewInterface> Kiv_LongIntView::clone() const
{
    return std::unique_ptr<Kiv_ViewInterface>(new Kiv_LongIntView(*this));
}
