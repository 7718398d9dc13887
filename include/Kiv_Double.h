#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QLabel>
#include <QString>

#include <string>

/// A label that shows a double model in two steps: the number through the printf-style double
/// format ("%.2f", "%g" by default; see Kiv_FormatPrintf), then that text through the "%1"-style
/// format ("%1 dB", "%1" by default). A double format that is not one real conversion is
/// refused with a warning and the previous one kept. Until a connection is given the label
/// shows the host's text; bound, it shows nothing while no model is reached. A "publish"
/// connection makes the label hold the value.
class KIVCORE_EXPORT Kiv_Double : public QLabel, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QString connectionSpec READ connectionSpec WRITE setConnectionSpec)
    Q_PROPERTY(QString doubleFormat READ doubleFormat WRITE setDoubleFormat)
    Q_PROPERTY(QString format READ format WRITE SetFormat)

public:
    explicit Kiv_Double(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_Double() override;

    void setConnectionSpec(const QString &iConnection);
    QString connectionSpec() const { return QString::fromUtf8(mValue.connectionString()); }
    void setDoubleFormat(const QString &iFormat);
    QString doubleFormat() const { return QString::fromStdString(mDoubleFormat); }
    void SetFormat(QString iFormat);
    QString format() const { return mFormat; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

private:
    void refresh();

    Kiv_DisplayBinding<double> mValue;
    std::string mDoubleFormat;
    QString mFormat;
};
