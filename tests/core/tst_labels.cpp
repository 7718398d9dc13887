#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Resource.h"
#include "Kiv_AutoAlignLineEdit.h"
#include "Kiv_BoolIcon.h"
#include "Kiv_BoolLabel.h"
#include "Kiv_CheckBox.h"
#include "Kiv_Double.h"
#include "Kiv_FontConnection.h"
#include "Kiv_Label.h"
#include "Kiv_LineEdit.h"
#include "Kiv_LongLabel.h"
#include "Kiv_TextEdit.h"
#include "Kiv_TextFormat.h"
#include "Kiv_WhatsThis.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

QString uniqueName(const char *iLeaf)
{
    QString name = QStringLiteral("TstLabels_%1_%2")
                       .arg(QLatin1String(QTest::currentTestFunction()),
                            QLatin1String(QTest::currentDataTag()));
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    }
    return name + QLatin1Char('.') + QLatin1String(iLeaf);
}

/// A model published under a name of its own for the running test row.
template<class T> std::unique_ptr<Bnde_SimpleValue<T>> publish(const char *iLeaf, const T &iValue)
{
    auto model = std::make_unique<Bnde_SimpleValue<T>>(uniqueName(iLeaf), iValue);
    model->Publish();
    return model;
}

QByteArray nameOf(const Bnd_ModelBase &iModel)
{
    return iModel.GetConnectionName().toUtf8();
}

typedef std::function<QWidget *()> WidgetFactory;

} // namespace

Q_DECLARE_METATYPE(WidgetFactory)

class tst_Labels : public QObject
{
    Q_OBJECT

private slots:
    // The format functions.
    void formatArgs_data();
    void formatArgs();
    void printfInteger_data();
    void printfInteger();
    void printfReal_data();
    void printfReal();
    void formatCount_data();
    void formatCount();
    void formatLabelText_data();
    void formatLabelText();
    void formatToolTip_data();
    void formatToolTip();
    void fontFromDescription_data();
    void fontFromDescription();

    // The widgets.
    void labelText_data();
    void labelText();
    void labelKeepsHostTextUntilBound();
    void publishedLabelHoldsText();
    void labelToolTip_data();
    void labelToolTip();
    void labelToolTipConnectionsChange();
    void longLabel_data();
    void longLabel();
    void doubleLabel_data();
    void doubleLabel();
    void doubleRefusesBadFormat();
    void boolLabel_data();
    void boolLabel();
    void boolIcon_data();
    void boolIcon();
    void fontConnection_data();
    void fontConnection();
    void fontConnectionRefusesBadValues_data();
    void fontConnectionRefusesBadValues();
    void whatsThisNames_data();
    void whatsThisNames();
};

void tst_Labels::formatArgs_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("expected");
    const QStringList ab { QStringLiteral("a"), QStringLiteral("b") };
    QStringList twelve;
    for (int i = 1; i <= 12; ++i)
        twelve << QStringLiteral("v%1").arg(i);
    QTest::newRow("one") << QStringLiteral("%1 clips") << QStringList { QStringLiteral("3") }
                         << QStringLiteral("3 clips");
    QTest::newRow("reordered") << QStringLiteral("%2-%1") << ab << QStringLiteral("b-a");
    QTest::newRow("repeated") << QStringLiteral("%1%1") << ab << QStringLiteral("aa");
    QTest::newRow("value holding a placeholder")
        << QStringLiteral("%1 %2") << QStringList { QStringLiteral("%2"), QStringLiteral("x") }
        << QStringLiteral("%2 x");
    QTest::newRow("no such argument") << QStringLiteral("%1 %3") << ab << QStringLiteral("a %3");
    QTest::newRow("percent sign") << QStringLiteral("100% %1") << ab << QStringLiteral("100% a");
    QTest::newRow("trailing percent") << QStringLiteral("%1%") << ab << QStringLiteral("a%");
    QTest::newRow("two digits") << QStringLiteral("%12/%1") << twelve << QStringLiteral("v12/v1");
    QTest::newRow("digit after a placeholder")
        << QStringLiteral("%10") << ab << QStringLiteral("a0");
    QTest::newRow("%0 is text") << QStringLiteral("%0") << ab << QStringLiteral("%0");
    QTest::newRow("empty format") << QString() << ab << QString();
}

void tst_Labels::formatArgs()
{
    QFETCH(QString, format);
    QFETCH(QStringList, args);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_FormatArgs(format, args), expected);
}

void tst_Labels::printfInteger_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<long>("value");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("expected");
    QTest::newRow("%ld") << QByteArray("%ld") << 42L << true << QStringLiteral("42");
    QTest::newRow("%d takes the whole long")
        << QByteArray("%d") << 5000000000L << true << QStringLiteral("5000000000");
    QTest::newRow("text around") << QByteArray("Frame %ld of 9") << 7L << true
                                 << QStringLiteral("Frame 7 of 9");
    QTest::newRow("zero padded") << QByteArray("%05ld") << 42L << true << QStringLiteral("00042");
    QTest::newRow("left aligned") << QByteArray("%-4ld|") << 42L << true << QStringLiteral("42  |");
    QTest::newRow("sign") << QByteArray("%+ld") << 42L << true << QStringLiteral("+42");
    QTest::newRow("hex") << QByteArray("%#lx") << 255L << true << QStringLiteral("0xff");
    QTest::newRow("upper hex, ll") << QByteArray("%llX") << 255L << true << QStringLiteral("FF");
    QTest::newRow("negative") << QByteArray("%i") << -3L << true << QStringLiteral("-3");
    QTest::newRow("escaped percent") << QByteArray("%ld%%") << 50L << true << QStringLiteral("50%");
    QTest::newRow("UTF-8 text") << QByteArray("%ld \xc2\xb0") << 90L << true
                                << QString::fromUtf8("90 \xc2\xb0");
    QTest::newRow("string conversion") << QByteArray("%s") << 42L << false << QStringLiteral("42");
    QTest::newRow("real conversion") << QByteArray("%f") << 42L << false << QStringLiteral("42");
    QTest::newRow("two conversions")
        << QByteArray("%ld/%ld") << 42L << false << QStringLiteral("42");
    QTest::newRow("no conversion") << QByteArray("frames") << 42L << false << QStringLiteral("42");
    QTest::newRow("%n") << QByteArray("%n") << 42L << false << QStringLiteral("42");
    QTest::newRow("star width") << QByteArray("%*d") << 42L << false << QStringLiteral("42");
    QTest::newRow("huge width") << QByteArray("%1000d") << 42L << false << QStringLiteral("42");
    QTest::newRow("short length") << QByteArray("%hd") << 42L << false << QStringLiteral("42");
    QTest::newRow("dangling percent")
        << QByteArray("%ld %") << 42L << false << QStringLiteral("42");
    QTest::newRow("empty") << QByteArray() << 42L << false << QStringLiteral("42");
}

void tst_Labels::printfInteger()
{
    QFETCH(QByteArray, format);
    QFETCH(long, value);
    QFETCH(bool, valid);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_IsPrintfFormat(format.toStdString(), Kiv_PrintfKind::Integer), valid);
    QCOMPARE(Kiv_FormatPrintf(format.toStdString(), value), expected);
}

void tst_Labels::printfReal_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QString>("expected");
    QTest::newRow("%.2f") << QByteArray("%.2f") << 3.14159 << true << QStringLiteral("3.14");
    QTest::newRow("%lf") << QByteArray("%lf") << 0.5 << true << QStringLiteral("0.500000");
    QTest::newRow("width and unit")
        << QByteArray("%6.1f dB") << -3.24 << true << QStringLiteral("  -3.2 dB");
    QTest::newRow("exponent") << QByteArray("%.1e") << 12345.0 << true << QStringLiteral("1.2e+04");
    QTest::newRow("%g") << QByteArray("%g") << 0.25 << true << QStringLiteral("0.25");
    QTest::newRow("integer conversion")
        << QByteArray("%d") << 2.5 << false << QStringLiteral("2.5");
    QTest::newRow("long double") << QByteArray("%Lf") << 2.5 << false << QStringLiteral("2.5");
    QTest::newRow("two conversions")
        << QByteArray("%f %f") << 2.5 << false << QStringLiteral("2.5");
}

void tst_Labels::printfReal()
{
    QFETCH(QByteArray, format);
    QFETCH(double, value);
    QFETCH(bool, valid);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_IsPrintfFormat(format.toStdString(), Kiv_PrintfKind::Real), valid);
    QCOMPARE(Kiv_FormatPrintf(format.toStdString(), value), expected);
}

void tst_Labels::formatCount_data()
{
    QTest::addColumn<long>("value");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("format1");
    QTest::addColumn<QString>("expected");
    const QString clips = QStringLiteral("%1 clips");
    const QString clip = QStringLiteral("%1 clip");
    QTest::newRow("one, singular") << 1L << clips << clip << QStringLiteral("1 clip");
    QTest::newRow("two") << 2L << clips << clip << QStringLiteral("2 clips");
    QTest::newRow("zero") << 0L << clips << clip << QStringLiteral("0 clips");
    QTest::newRow("minus one") << -1L << clips << clip << QStringLiteral("-1 clips");
    QTest::newRow("one without singular") << 1L << clips << QString() << QStringLiteral("1 clips");
    QTest::newRow("no format") << 12L << QString() << QString() << QStringLiteral("12");
    QTest::newRow("singular without number")
        << 1L << clips << QStringLiteral("one clip") << QStringLiteral("one clip");
}

void tst_Labels::formatCount()
{
    QFETCH(long, value);
    QFETCH(QString, format);
    QFETCH(QString, format1);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_FormatCount(value, format, format1), expected);
}

void tst_Labels::formatLabelText_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("emptyText");
    QTest::addColumn<QString>("expected");
    QTest::newRow("value as it is")
        << QStringLiteral("Intro") << QString() << QStringLiteral("-") << QStringLiteral("Intro");
    QTest::newRow("formatted") << QStringLiteral("Intro") << QStringLiteral("Clip: %1") << QString()
                               << QStringLiteral("Clip: Intro");
    QTest::newRow("empty value") << QString() << QStringLiteral("Clip: %1")
                                 << QStringLiteral("(no clip)") << QStringLiteral("(no clip)");
    QTest::newRow("empty value, no empty text")
        << QString() << QStringLiteral("Clip: %1") << QString() << QString();
}

void tst_Labels::formatLabelText()
{
    QFETCH(QString, value);
    QFETCH(QString, format);
    QFETCH(QString, emptyText);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_FormatLabelText(value, format, emptyText), expected);
}

void tst_Labels::formatToolTip_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("expected");
    const QStringList ab { QStringLiteral("a"), QStringLiteral("b") };
    QTest::newRow("lines") << QString() << ab << QStringLiteral("a\nb");
    QTest::newRow("lines skip empty values")
        << QString() << QStringList { QString(), QStringLiteral("b") } << QStringLiteral("b");
    QTest::newRow("format") << QStringLiteral("%1 (%2)") << ab << QStringLiteral("a (b)");
    QTest::newRow("format keeps empty values")
        << QStringLiteral("%1 (%2)") << QStringList { QStringLiteral("a"), QString() }
        << QStringLiteral("a ()");
}

void tst_Labels::formatToolTip()
{
    QFETCH(QString, format);
    QFETCH(QStringList, values);
    QFETCH(QString, expected);
    QCOMPARE(Kiv_FormatToolTip(format, values), expected);
}

void tst_Labels::fontFromDescription_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("points"); // 0: left unset
    QTest::addColumn<int>("weight"); // 0: left unset
    QTest::newRow("family") << QStringLiteral("Arial") << true << QStringLiteral("Arial") << 0 << 0;
    QTest::newRow("family, points")
        << QStringLiteral("Arial,12") << true << QStringLiteral("Arial") << 12 << 0;
    QTest::newRow("blanks") << QStringLiteral(" DejaVu Sans , 9 ") << true
                            << QStringLiteral("DejaVu Sans") << 9 << 0;
    QTest::newRow("QFont weight") << QStringLiteral("Arial,12,600") << true
                                  << QStringLiteral("Arial") << 12 << 600;
    QTest::newRow("settings bold")
        << QStringLiteral("Arial,12,75") << true << QStringLiteral("Arial") << 12 << 700;
    QTest::newRow("settings normal")
        << QStringLiteral("Arial,12,50") << true << QStringLiteral("Arial") << 12 << 400;
    QTest::newRow("settings between")
        << QStringLiteral("Arial,12,69") << true << QStringLiteral("Arial") << 12 << 600;
    QTest::newRow("settings thinnest")
        << QStringLiteral("Arial,12,0") << true << QStringLiteral("Arial") << 12 << 100;
    QTest::newRow("settings heaviest")
        << QStringLiteral("Arial,12,99") << true << QStringLiteral("Arial") << 12 << 900;
    QTest::newRow("QFont::toString") << QFont(QStringLiteral("Courier"), 14, 700).toString() << true
                                     << QStringLiteral("Courier") << 14 << 700;
    QTest::newRow("empty") << QString() << false << QString() << 0 << 0;
    QTest::newRow("no family") << QStringLiteral(",12") << false << QString() << 0 << 0;
    QTest::newRow("points not a number")
        << QStringLiteral("Arial,big") << false << QString() << 0 << 0;
    QTest::newRow("zero points") << QStringLiteral("Arial,0") << false << QString() << 0 << 0;
    QTest::newRow("weight not a number")
        << QStringLiteral("Arial,12,heavy") << false << QString() << 0 << 0;
    QTest::newRow("weight too heavy")
        << QStringLiteral("Arial,12,1001") << false << QString() << 0 << 0;
    QTest::newRow("long form QFont refuses")
        << QStringLiteral("Arial,x,y,z") << false << QString() << 0 << 0;
}

void tst_Labels::fontFromDescription()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(QString, family);
    QFETCH(int, points);
    QFETCH(int, weight);

    const QFont untouched(QStringLiteral("Untouched"), 33);
    QFont font = untouched;
    if (!ok && text.count(QLatin1Char(',')) > 2)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^QFont::fromString")));
    QCOMPARE(Kiv_FontFromDescription(text, &font), ok);
    if (!ok) {
        QCOMPARE(font, untouched);
        return;
    }
    QCOMPARE(font.family(), family);
    QCOMPARE(bool(font.resolveMask() & QFont::SizeResolved), points != 0);
    if (points)
        QCOMPARE(font.pointSize(), points);
    QCOMPARE(bool(font.resolveMask() & QFont::WeightResolved), weight != 0);
    if (weight)
        QCOMPARE(int(font.weight()), weight);
}

void tst_Labels::labelText_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("emptyText");
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("value") << QString() << QString() << true << QStringLiteral("Intro")
                           << QStringLiteral("Intro");
    QTest::newRow("format") << QStringLiteral("Clip: %1") << QString() << true
                            << QStringLiteral("Intro") << QStringLiteral("Clip: Intro");
    QTest::newRow("empty value") << QStringLiteral("Clip: %1") << QStringLiteral("(none)") << true
                                 << QString() << QStringLiteral("(none)");
    QTest::newRow("no model shows nothing")
        << QStringLiteral("Clip: %1") << QStringLiteral("(none)") << false << QString()
        << QString();
}

void tst_Labels::labelText()
{
    QFETCH(QString, format);
    QFETCH(QString, emptyText);
    QFETCH(bool, modelThere);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    Kiv_Label label;
    label.setText(QStringLiteral("host text"));
    label.setLabelFormat(format, emptyText);
    std::unique_ptr<Bnde_SimpleValue<QString>> model;
    if (modelThere)
        model = publish("Text", value);
    label.setTextConnectionSpec(uniqueName("Text").toUtf8());
    QCOMPARE(label.text(), expected);
}

void tst_Labels::labelKeepsHostTextUntilBound()
{
    const auto model = publish("Text", QStringLiteral("bound"));
    Kiv_Label label;
    label.setText(QStringLiteral("host text"));
    label.setLabelFormat(QStringLiteral("<%1>"), QString());
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QStringLiteral("host text"));

    label.setTextConnectionSpec(nameOf(*model));
    QCOMPARE(label.text(), QStringLiteral("<bound>"));
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QString());
}

void tst_Labels::publishedLabelHoldsText()
{
    const QString name = uniqueName("Status");
    Kiv_Label label;
    label.setLabelFormat(QStringLiteral("Status: %1"), QStringLiteral("idle"));
    label.setTextConnectionSpec("publish " + name.toUtf8());
    QCOMPARE(label.text(), QStringLiteral("idle"));

    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> client(name);
    QVERIFY(client.isConnectedToModel());
    QCOMPARE(client.setValue(QStringLiteral("rendering")), int(Bnd_Status::Ok));
    QCOMPARE(label.text(), QStringLiteral("Status: rendering"));
    QCOMPARE(client.getValue(), QStringLiteral("rendering"));
}

void tst_Labels::labelToolTip_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("secondThere");
    QTest::addColumn<QString>("expected");
    QTest::newRow("lines") << QString() << true << QStringLiteral("Intro\n00:01:02");
    QTest::newRow("format") << QStringLiteral("%1 (%2)") << true
                            << QStringLiteral("Intro (00:01:02)");
    QTest::newRow("second missing, lines") << QString() << false << QStringLiteral("Intro");
    QTest::newRow("second missing, format")
        << QStringLiteral("%1 (%2)") << false << QStringLiteral("Intro ()");
}

void tst_Labels::labelToolTip()
{
    QFETCH(QString, format);
    QFETCH(bool, secondThere);
    QFETCH(QString, expected);

    const auto first = publish("Name", QStringLiteral("Intro"));
    std::unique_ptr<Bnde_SimpleValue<QString>> second;
    if (secondThere)
        second = publish("Duration", QStringLiteral("00:01:02"));
    Kiv_Label label;
    label.setToolTipFormat(format);
    label.setToolTipConnections({ uniqueName("Name"), uniqueName("Duration") });
    QCOMPARE(label.toolTip(), expected);

    first->setValue(QStringLiteral("Outro"));
    QVERIFY(label.toolTip().startsWith(QLatin1String("Outro")));
}

void tst_Labels::labelToolTipConnectionsChange()
{
    const auto first = publish("Name", QStringLiteral("Intro"));
    const auto second = publish("Duration", QStringLiteral("00:01:02"));
    Kiv_Label label;
    label.setToolTip(QStringLiteral("host tip"));
    label.setToolTipConnections({ uniqueName("Name"), uniqueName("Duration") });
    QCOMPARE(label.toolTip(), QStringLiteral("Intro\n00:01:02"));

    label.setToolTipConnections({ uniqueName("Duration") });
    QCOMPARE(label.toolTip(), QStringLiteral("00:01:02"));
    first->setValue(QStringLiteral("dropped")); // no longer part of the tip
    QCOMPARE(label.toolTip(), QStringLiteral("00:01:02"));

    label.setToolTipConnections({});
    QCOMPARE(label.toolTip(), QString());
}

void tst_Labels::longLabel_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("format1");
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<long>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("default format")
        << QString() << QString() << true << 12L << QStringLiteral("12");
    QTest::newRow("one, singular") << QStringLiteral("%1 clips") << QStringLiteral("%1 clip")
                                   << true << 1L << QStringLiteral("1 clip");
    QTest::newRow("several") << QStringLiteral("%1 clips") << QStringLiteral("%1 clip") << true
                             << 3L << QStringLiteral("3 clips");
    QTest::newRow("no model") << QStringLiteral("%1 clips") << QStringLiteral("%1 clip") << false
                              << 0L << QString();
}

void tst_Labels::longLabel()
{
    QFETCH(QString, format);
    QFETCH(QString, format1);
    QFETCH(bool, modelThere);
    QFETCH(long, value);
    QFETCH(QString, expected);

    std::unique_ptr<Bnde_SimpleValue<long>> model;
    if (modelThere)
        model = publish("Count", value);
    Kiv_LongLabel label;
    if (!format.isEmpty())
        label.setFormat(format);
    label.setFormat1(format1);
    label.SetConnectionName(uniqueName("Count").toUtf8());
    QCOMPARE(label.text(), expected);
    if (model) {
        model->setValue(value + 1);
        QCOMPARE(label.text(), Kiv_FormatCount(value + 1, label.format(), format1));
    }
}

void tst_Labels::doubleLabel_data()
{
    QTest::addColumn<QString>("doubleFormat");
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("defaults") << QString() << QString() << 0.25 << QStringLiteral("0.25");
    QTest::newRow("decimals") << QStringLiteral("%.1f") << QString() << 29.97
                              << QStringLiteral("30.0");
    QTest::newRow("decimals and unit") << QStringLiteral("%.2f") << QStringLiteral("%1 fps")
                                       << 29.97 << QStringLiteral("29.97 fps");
}

void tst_Labels::doubleLabel()
{
    QFETCH(QString, doubleFormat);
    QFETCH(QString, format);
    QFETCH(double, value);
    QFETCH(QString, expected);

    const auto model = publish("Rate", value);
    Kiv_Double label;
    if (!doubleFormat.isEmpty())
        label.setDoubleFormat(doubleFormat);
    if (!format.isEmpty())
        label.SetFormat(format);
    label.setConnectionSpec(QString::fromUtf8(nameOf(*model)));
    QCOMPARE(label.text(), expected);
}

void tst_Labels::doubleRefusesBadFormat()
{
    const auto model = publish("Rate", 2.5);
    Kiv_Double label;
    label.setDoubleFormat(QStringLiteral("%.3f"));
    label.setConnectionSpec(QString::fromUtf8(nameOf(*model)));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^Kiv_Double::setDoubleFormat, '%s'")));
    label.setDoubleFormat(QStringLiteral("%s"));
    QCOMPARE(label.doubleFormat(), QStringLiteral("%.3f"));
    QCOMPARE(label.text(), QStringLiteral("2.500"));
}

void tst_Labels::boolLabel_data()
{
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<bool>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("true") << true << true << QStringLiteral("Locked");
    QTest::newRow("false") << true << false << QStringLiteral("Open");
    QTest::newRow("no model") << false << false << QString();
}

void tst_Labels::boolLabel()
{
    QFETCH(bool, modelThere);
    QFETCH(bool, value);
    QFETCH(QString, expected);

    std::unique_ptr<Bnde_SimpleValue<bool>> model;
    if (modelThere)
        model = publish("Locked", value);
    Kiv_BoolLabel label;
    label.setTexts(QStringLiteral("Locked"), QStringLiteral("Open"));
    label.setConnectionSpec(uniqueName("Locked").toUtf8());
    QCOMPARE(label.text(), expected);
    if (model) {
        model->setValue(!value);
        QCOMPARE(label.text(), value ? QStringLiteral("Open") : QStringLiteral("Locked"));
    }
}

void tst_Labels::boolIcon_data()
{
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<bool>("value");
    QTest::addColumn<QByteArray>("trueImage");
    QTest::addColumn<QColor>("expected"); // invalid: no image
    const QByteArray on("Images/On.png");
    QTest::newRow("true") << true << true << on << QColor(Qt::red);
    QTest::newRow("false") << true << false << on << QColor(Qt::blue);
    QTest::newRow("no model") << false << true << on << QColor();
    QTest::newRow("no image named") << true << true << QByteArray() << QColor();
}

void tst_Labels::boolIcon()
{
    QFETCH(bool, modelThere);
    QFETCH(bool, value);
    QFETCH(QByteArray, trueImage);
    QFETCH(QColor, expected);

    QTemporaryDir resources;
    QVERIFY(QDir(resources.path()).mkpath(QStringLiteral("Images")));
    for (const auto &[file, color] :
         { std::make_pair("Images/On.png", Qt::red), std::make_pair("Images/Off.png", Qt::blue) }) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(color);
        QVERIFY(image.save(resources.filePath(QString::fromLatin1(file))));
    }
    const QString oldPath = Kib_Resource::getResourcePath();
    Kib_Resource::setResourcePath(resources.path());

    std::unique_ptr<Bnde_SimpleValue<bool>> model;
    if (modelThere)
        model = publish("Enabled", value);
    Kiv_BoolIcon icon;
    icon.setImageNames(trueImage, "Images/Off.png");
    icon.setConnectionSpec(uniqueName("Enabled").toUtf8());
    const QPixmap shown = icon.pixmap();
    QCOMPARE(shown.isNull(), !expected.isValid());
    if (expected.isValid())
        QCOMPARE(shown.toImage().pixelColor(1, 1), expected);
    Kib_Resource::setResourcePath(oldPath);
}

void tst_Labels::fontConnection_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<bool>("asText");
    for (const char *widget : { "Kiv_Label", "Kiv_LongLabel", "Kiv_CheckBox" }) {
        QTest::addRow("%s, QFont model", widget) << QString::fromLatin1(widget) << false;
        QTest::addRow("%s, description model", widget) << QString::fromLatin1(widget) << true;
    }
}

namespace {
/// A widget with a font connection, and its setter.
std::pair<std::unique_ptr<QWidget>, std::function<void(const QByteArray &)>>
fontWidget(const QString &iKind)
{
    if (iKind == QLatin1String("Kiv_Label")) {
        auto *w = new Kiv_Label;
        return { std::unique_ptr<QWidget>(w), [w](const QByteArray &s) {
                    w->setFontConnectionSpec(s);
                } };
    }
    if (iKind == QLatin1String("Kiv_LongLabel")) {
        auto *w = new Kiv_LongLabel;
        return { std::unique_ptr<QWidget>(w), [w](const QByteArray &s) {
                    w->setFontConnectionSpec(s);
                } };
    }
    auto *w = new Kiv_CheckBox;
    return { std::unique_ptr<QWidget>(w), [w](const QByteArray &s) {
                w->setFontConnectionSpec(s);
            } };
}
} // namespace

void tst_Labels::fontConnection()
{
    QFETCH(QString, widget);
    QFETCH(bool, asText);

    QWidget parent;
    parent.setFont(QFont(QStringLiteral("ParentFamily"), 8));
    auto [owned, setFont] = fontWidget(widget);
    QWidget *w = owned.get();
    w->setParent(&parent);
    QCOMPARE(w->font().family(), QStringLiteral("ParentFamily"));

    std::unique_ptr<Bnd_ModelBase> model;
    if (asText)
        model = publish("Font", QStringLiteral("Courier,17,75"));
    else
        model = publish("Font", QFont(QStringLiteral("Courier"), 17, QFont::Bold));
    setFont(nameOf(*model));
    QCOMPARE(w->font().family(), QStringLiteral("Courier"));
    QCOMPARE(w->font().pointSize(), 17);
    QCOMPARE(w->font().weight(), QFont::Bold);

    if (asText)
        static_cast<Bnde_SimpleValue<QString> &>(*model).setValue(QStringLiteral("Courier,11"));
    else
        static_cast<Bnde_SimpleValue<QFont> &>(*model).setValue(
            QFont(QStringLiteral("Courier"), 11));
    QCOMPARE(w->font().pointSize(), 11);

    // No model: the widget takes its parent's font again.
    model->UnPublish();
    QCOMPARE(w->font().family(), QStringLiteral("ParentFamily"));
    model->Publish();
    QCOMPARE(w->font().pointSize(), 11);
    setFont(QByteArray());
    QCOMPARE(w->font().family(), QStringLiteral("ParentFamily"));
    QVERIFY(!w->testAttribute(Qt::WA_SetFont));
}

void tst_Labels::fontConnectionRefusesBadValues_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("warning");
    QTest::newRow("bad description")
        << QStringLiteral("text")
        << QStringLiteral("^Kiv_Label::applyFont, 'Courier,huge' is no font description");
    QTest::newRow("not a font") << QStringLiteral("long")
                                << QStringLiteral("^Kiv_Label::applyFont, '.*' holds a long");
    QTest::newRow("publish") << QStringLiteral(
        "publish") << QStringLiteral("^Kiv_Label::setFontConnectionSpec, .*left unbound$");
}

void tst_Labels::fontConnectionRefusesBadValues()
{
    QFETCH(QString, kind);
    QFETCH(QString, warning);

    Kiv_Label label;
    const QFont own(QStringLiteral("OwnFamily"), 10);
    label.setFont(own);
    std::unique_ptr<Bnd_ModelBase> model;
    QByteArray connection = uniqueName("Font").toUtf8();
    if (kind == QLatin1String("text"))
        model = publish("Font", QStringLiteral("Courier,huge"));
    else if (kind == QLatin1String("long"))
        model = publish("Font", 12L);
    else
        connection = "publish " + connection;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    label.setFontConnectionSpec(connection);
    QCOMPARE(label.font(), own);
}

void tst_Labels::whatsThisNames_data()
{
    QTest::addColumn<QString>("expected");
    QTest::addColumn<WidgetFactory>("make");
    auto row = [](const char *name, WidgetFactory make) {
        QTest::newRow(name) << QString::fromLatin1(name) << make;
    };
    row("Kiv_AutoAlignLineEdit", [] { return new Kiv_AutoAlignLineEdit; });
    row("Kiv_LineEdit", [] { return new Kiv_LineEdit; });
    row("Kiv_TextEdit", [] { return new Kiv_TextEdit; });
    row("Kiv_CheckBox", [] { return new Kiv_CheckBox; });
    row("Kiv_Label", [] { return new Kiv_Label; });
    row("Kiv_LongLabel", [] { return new Kiv_LongLabel; });
    row("Kiv_Double", [] { return new Kiv_Double; });
    row("Kiv_BoolLabel", [] { return new Kiv_BoolLabel; });
    row("Kiv_BoolIcon", [] { return new Kiv_BoolIcon; });
}

void tst_Labels::whatsThisNames()
{
    QFETCH(QString, expected);
    QFETCH(WidgetFactory, make);
    const std::unique_ptr<QWidget> widget(make());
    QCOMPARE(Kiv_WhatsThis::whatsThisName(widget.get()), expected);
    QCOMPARE(widget->whatsThis(), expected);
}

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
