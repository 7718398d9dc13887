#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_FontConnection.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QLabel>
#include <QString>

/// A label that shows a long model as a count: through the format ("%1 clips", "%1" by
/// default), or through the singular format ("%1 clip") when the value is 1 and that format is
/// set (Kiv_FormatCount). Until a connection is given it shows the host's text; bound, it shows
/// nothing while no model is reached. A "publish" connection makes the label hold the value.
class KIVCORE_EXPORT Kiv_LongLabel : public QLabel, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray connectionName READ GetConnectionName WRITE SetConnectionName)
    Q_PROPERTY(QByteArray fontConnectionSpec READ fontConnectionSpec WRITE setFontConnectionSpec)
    Q_PROPERTY(QString format READ format WRITE setFormat)
    Q_PROPERTY(QString format1 READ format1 WRITE setFormat1)

public:
    explicit Kiv_LongLabel(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_LongLabel() override;

    void SetConnectionName(const QByteArray &iConnection);
    QByteArray GetConnectionName() const { return mValue.connectionString(); }
    void setFontConnectionSpec(const QByteArray &iConnection);
    QByteArray fontConnectionSpec() const { return mFont.connectionString(); }
    void setFormat(QString iFormat);
    QString format() const { return mFormat; }
    void setFormat1(QString iFormat);
    QString format1() const { return mFormat1; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

private:
    void refresh();

    Kiv_DisplayBinding<long> mValue;
    Kiv_FontConnection mFont;
    QString mFormat;
    QString mFormat1;
};
