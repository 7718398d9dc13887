#pragma once

#include "Kiv_DisplayBinding.h"
#include "Kiv_FontConnection.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QLabel>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

/// A label that shows a QString model through a format, with a bound font and a tool tip made
/// of further QString models.
///
/// Text: until a text connection is given, the label shows what the host sets. Bound, it shows
/// the model's text through the label format (Kiv_FormatLabelText: "%1" stands for the text,
/// the empty text replaces an empty value), and nothing while no model is reached. The text
/// connection may be a "publish" string: the label then holds the text itself and others set
/// it by that name.
///
/// Tool tip: with tool-tip connections, the tool tip is their texts through the tool-tip
/// format ("%1" the first, "%2" the second...), or, without a format, the non-empty texts one
/// per line (Kiv_FormatToolTip). Without tool-tip connections the tool tip is the host's.
class KIVCORE_EXPORT Kiv_Label : public QLabel, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray textConnectionSpec READ textConnectionSpec WRITE setTextConnectionSpec)
    Q_PROPERTY(QByteArray fontConnectionSpec READ fontConnectionSpec WRITE setFontConnectionSpec)
    Q_PROPERTY(QString toolTipFormat READ toolTipFormat WRITE setToolTipFormat)
    Q_PROPERTY(QString labelFormat READ labelFormat WRITE setLabelFormat)
    Q_PROPERTY(QString emptyText READ emptyText WRITE setEmptyText)

public:
    explicit Kiv_Label(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_Label() override;

    void setTextConnectionSpec(const QByteArray &iConnection);
    QByteArray textConnectionSpec() const { return mText.connectionString(); }
    void setFontConnectionSpec(const QByteArray &iConnection);
    QByteArray fontConnectionSpec() const { return mFont.connectionString(); }
    void setToolTipConnections(const QList<QString> &iConnections);
    QList<QString> toolTipConnections() const { return mToolTipConnections; }
    void setToolTipFormat(const QString &iFormat);
    QString toolTipFormat() const { return mToolTipFormat; }
    /// `iFormat` ("Clip: %1", "" for the text as it is) and the text shown for an empty value.
    void setLabelFormat(const QString &iFormat, const QString &iEmptyText);
    void setLabelFormat(const QString &iFormat) { setLabelFormat(iFormat, mEmptyText); }
    QString labelFormat() const { return mLabelFormat; }
    void setEmptyText(const QString &iEmptyText) { setLabelFormat(mLabelFormat, iEmptyText); }
    QString emptyText() const { return mEmptyText; }

    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

private:
    typedef Kiv_DisplayBinding<QString> TextBinding;

    void refreshText();
    void refreshToolTip();

    TextBinding mText;
    Kiv_FontConnection mFont;
    QList<QString> mToolTipConnections;
    /// One binding per tool-tip connection; bindings beyond their number are unbound and kept
    /// for later use.
    std::vector<std::unique_ptr<TextBinding>> mToolTipParts;
    QString mToolTipFormat;
    QString mLabelFormat;
    QString mEmptyText;
};
