#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <QString>

/// A view that shows a QString model as a multi-line text: wrapped at word boundaries to the
/// view's width, from the top-left corner. Without a model it shows nothing. A "publish"
/// connection makes the view hold the text.
class KIVCORE_EXPORT Kiv_TextView : public Kiv_ViewBase
{
public:
    Kiv_TextView();
    ~Kiv_TextView() override;

    void SetNameConnection(QString iConnection);
    QString nameConnection() const { return QString::fromUtf8(mValue.connectionString()); }
    /// Drops the binding (un-publishes the own model, disconnects the listener) and keeps the
    /// connection string (so setting the same string again changes nothing).
    void ClearConnection();
    /// The text binding.
    Kiv_DisplayBinding<QString> &getConnection() { return mValue; }
    /// The text the view shows now.
    QString text() const;

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;

protected:
    /// A copy has the same connection, bound again by makeConnections().
    Kiv_TextView(const Kiv_TextView &iOther);

private:
    Kiv_DisplayBinding<QString> mValue { nullptr, "Kiv_TextView::SetNameConnection",
                                         Kiv_DisplayBinding<QString>::MayPublish };
};
