#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QLabel>
#include <QString>

/// A label that shows one of two texts as a bool model is true or false ("Yes" and "No" unless
/// set otherwise). Until a connection is given it shows the host's text; bound, it shows
/// nothing while no model is reached. A "publish" connection makes the label hold the value.
class KIVCORE_EXPORT Kiv_BoolLabel : public QLabel, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray connectionSpec READ connectionSpec WRITE setConnectionSpec)

public:
    explicit Kiv_BoolLabel(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_BoolLabel() override;

    void setConnectionSpec(const QByteArray &iConnection);
    QByteArray connectionSpec() const { return mValue.connectionString(); }
    void setTexts(const QString &iTrueText, const QString &iFalseText);
    QString trueText() const { return mTrueText; }
    QString falseText() const { return mFalseText; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

private:
    void refresh();

    Kiv_DisplayBinding<bool> mValue;
    QString mTrueText;
    QString mFalseText;
};
