#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <QDateTime>
#include <QString>

/// A view that shows a QDateTime model through a Qt date-time format ("yyyy-MM-dd hh:mm:ss" by
/// default), left-aligned. An invalid date-time, or no model, shows nothing. A "publish"
/// connection makes the view hold the value.
class KIVCORE_EXPORT Kiv_DateTimeView : public Kiv_ViewBase
{
public:
    Kiv_DateTimeView();
    ~Kiv_DateTimeView() override;

    void setConnectionSpec(QString iConnection);
    QString connectionSpec() const { return QString::fromUtf8(mValue.connectionString()); }
    /// A format of QDateTime::toString ("dd.MM.yyyy", "hh:mm").
    void setDateTimeFormat(const QString &iFormat);
    QString dateTimeFormat() const { return mFormat; }
    /// The text the view shows now.
    QString text() const;

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;

protected:
    /// A copy has the same connection and format, bound again by makeConnections().
    Kiv_DateTimeView(const Kiv_DateTimeView &iOther);

private:
    Kiv_DisplayBinding<QDateTime> mValue { nullptr, "Kiv_DateTimeView::setConnectionSpec",
                                           Kiv_DisplayBinding<QDateTime>::MayPublish };
    QString mFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss");
};
