#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <QString>

#include <string>

/// A view that shows a long model through a printf-style format ("%ld" by default, e.g.
/// "Frame %05ld"; see Kiv_FormatPrintf), right-aligned. A format that is not one integer
/// conversion is refused with a warning and the previous one kept. Without a model it shows
/// nothing. A "publish" connection makes the view hold the value.
class KIVCORE_EXPORT Kiv_LongIntView : public Kiv_ViewBase
{
public:
    Kiv_LongIntView();
    ~Kiv_LongIntView() override;

    void setConnectionName(const QString &iConnection);
    QString connectionName() const { return QString::fromUtf8(mValue.connectionString()); }
    void setPrintfFormat(const std::string &iFormat);
    const std::string &printfFormat() const { return mFormat; }
    /// The text the view shows now.
    QString text() const;

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;

protected:
    /// A copy has the same connection name and format, bound again by makeConnections().
    Kiv_LongIntView(const Kiv_LongIntView &iOther);

private:
    Kiv_DisplayBinding<long> mValue { nullptr, "Kiv_LongIntView::setConnectionName",
                                      Kiv_DisplayBinding<long>::MayPublish, 0 };
    std::string mFormat = "%ld";
};
