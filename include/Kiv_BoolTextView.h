#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

#include <QString>

/// A view that shows one of two texts as a bool model is true or false ("Yes" and "No" unless
/// set otherwise), left-aligned. Without a model it shows nothing. A "publish" connection makes
/// the view hold the value.
class KIVCORE_EXPORT Kiv_BoolTextView : public Kiv_ViewBase
{
public:
    Kiv_BoolTextView();
    ~Kiv_BoolTextView() override;

    void setConnectionName(const QString &iConnection);
    QString connectionName() const { return QString::fromUtf8(mValue.connectionString()); }
    void setTexts(const QString &iTrueText, const QString &iFalseText);
    /// The text the view shows now.
    QString text() const;

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;

protected:
    /// A copy has the same connection and texts, bound again by makeConnections().
    Kiv_BoolTextView(const Kiv_BoolTextView &iOther);

private:
    Kiv_DisplayBinding<bool> mValue { nullptr, "Kiv_BoolTextView::setConnectionName",
                                      Kiv_DisplayBinding<bool>::MayPublish, false };
    QString mTrueText;
    QString mFalseText;
};
