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
    return QStringLiteral("TstLabels_%1_%2.%3")
        .arg(QLatin1String(QTest::currentTestFunction()))
        .arg(qHash(QByteArray(QTest::currentDataTag())))
        .arg(QLatin1String(iLeaf));
}

/// A model published under a name of its own for the running test row, or none.
template<class T>
std::unique_ptr<Bnde_SimpleValue<T>> publish(const char *iLeaf, const T &iValue, bool iThere = true)
{
    if (!iThere)
        return nullptr;
    auto model = std::make_unique<Bnde_SimpleValue<T>>(uniqueName(iLeaf), iValue);
    model->Publish();
    return model;
}

QByteArray nameOf(const char *iLeaf)
{
    return uniqueName(iLeaf).toUtf8();
}

typedef std::function<QString()> TextFactory;

QString args(const char *iFormat, int iCount = 12)
{
    QStringList values { QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("%2") };
    for (int i = 4; i <= 12; ++i)
        values << QStringLiteral("v%1").arg(i);
    return Kiv_FormatArgs(QString::fromLatin1(iFormat), values.mid(0, iCount));
}

/// The font a description gives as "family/points/weight", "-" for what stays unset.
QString fontText(const char *iText)
{
    const QFont untouched(QStringLiteral("Untouched"), 33);
    QFont f = untouched;
    if (QByteArray(iText).count(',') == 3)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^QFont::fromString"));
    if (!Kiv_FontFromDescription(QString::fromLatin1(iText), &f))
        return QString::fromLatin1(f == untouched ? "refused" : "refused, changed");
    const auto unset = [&](QFont::ResolveProperties p, int v) {
        return (f.resolveMask() & p) ? QString::number(v) : QStringLiteral("-");
    };
    return f.family() + '/' + unset(QFont::SizeResolved, f.pointSize()) + '/'
        + unset(QFont::WeightResolved, f.weight());
}

template<class T> QString pf(const char *iFormat, T iValue)
{
    const auto kind = std::is_same_v<T, double> ? Kiv_PrintfKind::Real : Kiv_PrintfKind::Integer;
    return (Kiv_IsPrintfFormat(iFormat, kind) ? "ok " : "refused ")
        + Kiv_FormatPrintf(iFormat, iValue);
}

template<class... W> void checkWhatsThis(const std::vector<const char *> &iNames)
{
    std::vector<std::unique_ptr<QWidget>> widgets;
    (widgets.emplace_back(new W), ...);
    for (size_t i = 0; i < widgets.size(); ++i) {
        QCOMPARE(Kiv_WhatsThis::whatsThisName(widgets[i].get()), QLatin1String(iNames[i]));
        QCOMPARE(widgets[i]->whatsThis(), QLatin1String(iNames[i]));
    }
}

template<class W> void checkFontConnection(bool iAsText)
{
    QWidget parent;
    parent.setFont(QFont(QStringLiteral("ParentFamily"), 8));
    auto *w = new W;
    w->setParent(&parent);
    const auto text = publish("Font", QStringLiteral("Courier,17,75"), iAsText);
    const auto font = publish("Font", QFont(QStringLiteral("Courier"), 17, QFont::Bold), !iAsText);
    Bnd_ModelBase *model = iAsText ? static_cast<Bnd_ModelBase *>(text.get()) : font.get();
    w->setFontConnectionSpec(nameOf("Font"));
    QCOMPARE(w->font().family(), QStringLiteral("Courier"));
    QCOMPARE(w->font().pointSize(), 17);
    QCOMPARE(w->font().weight(), QFont::Bold);
    if (iAsText)
        text->setValue(QStringLiteral("Courier,11"));
    else
        font->setValue(QFont(QStringLiteral("Courier"), 11));
    QCOMPARE(w->font().pointSize(), 11);
    // No model: the widget takes its parent's font again.
    model->UnPublish();
    QCOMPARE(w->font().family(), QStringLiteral("ParentFamily"));
    model->Publish();
    QCOMPARE(w->font().pointSize(), 11);
    w->setFontConnectionSpec(QByteArray());
    QCOMPARE(w->font().family(), QStringLiteral("ParentFamily"));
    QVERIFY(!w->testAttribute(Qt::WA_SetFont));
}

} // namespace

Q_DECLARE_METATYPE(TextFactory)

class tst_Labels : public QObject
{
    Q_OBJECT

private slots:
    void format_data();
    void format();
    void labelText_data();
    void labelText();
    void publishedLabelHoldsText();
    void labelToolTip_data();
    void labelToolTip();
    void numberLabels();
    void boolLabelAndIcon_data();
    void boolLabelAndIcon();
    void fontConnection_data();
    void fontConnection();
    void fontConnectionRefusesBadValues_data();
    void fontConnectionRefusesBadValues();
    void whatsThisNames();
};

void tst_Labels::format_data()
{
    QTest::addColumn<TextFactory>("make");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QByteArray &tag, const char *expected, TextFactory make) {
        QTest::newRow(tag.constData()) << make << QString::fromUtf8(expected);
    };
    row("args reordered, repeated", "b-aa", [] { return args("%2-%1%1"); });
    row("args value holding a placeholder", "%2 b", [] { return args("%3 %2"); });
    row("args no such argument", "a %3", [] { return args("%1 %3", 2); });
    row("args percent signs", "100% a%", [] { return args("100% %1%"); });
    row("args two digits", "v12/a", [] { return args("%12/%1"); });
    row("args digit after a placeholder", "b0", [] { return args("%20"); });
    row("args %0 is text", "%0", [] { return args("%0"); });
    row("count one", "1 clip", [] { return Kiv_FormatCount(1, "%1 clips", "%1 clip"); });
    row("count minus one", "-1 clips", [] { return Kiv_FormatCount(-1, "%1 clips", "%1 clip"); });
    row("count no singular", "1 clips", [] { return Kiv_FormatCount(1, "%1 clips", ""); });
    row("count no format", "12", [] { return Kiv_FormatCount(12, "", ""); });
    row("count singular without number", "one", [] { return Kiv_FormatCount(1, "", "one"); });
    row("tip lines", "a\nb", [] { return Kiv_FormatToolTip("", { "a", "b" }); });
    row("tip lines skip empty values", "b", [] { return Kiv_FormatToolTip("", { "", "b" }); });
    row("tip format keeps empty", "a ()", [] { return Kiv_FormatToolTip("%1 (%2)", { "a", "" }); });
    row("font family", "Arial/-/-", [] { return fontText("Arial"); });
    row("font blanks", "DejaVu Sans/9/-", [] { return fontText(" DejaVu Sans , 9 "); });
    row("font QFont weight", "Arial/12/600", [] { return fontText("Arial,12,600"); });
    row("font settings bold", "Arial/12/700", [] { return fontText("Arial,12,75"); });
    row("font settings between", "Arial/12/600", [] { return fontText("Arial,12,69"); });
    row("font settings thinnest", "Arial/12/100", [] { return fontText("Arial,12,0"); });
    row("font settings heaviest", "Arial/12/900", [] { return fontText("Arial,12,99"); });
    row("font QFont::toString", "Courier/14/700",
        [] { return fontText(QFont("Courier", 14, 700).toString().toLatin1()); });
    for (const char *bad :
         { "", ",12", "Arial,big", "Arial,0", "Arial,12,heavy", "Arial,12,1001", "Arial,x,y,z" })
        row(QByteArray("font refuses ") + bad, "refused", [bad] { return fontText(bad); });
    row("%d takes the whole long", "ok 5000000000", [] { return pf("%d", 5000000000L); });
    row("int width, percent", "ok Frame 00042|%", [] { return pf("Frame %05ld|%%", 42L); });
    row("int left aligned", "ok +42 |", [] { return pf("%+-4ld|", 42L); });
    row("int hex", "ok 0xff", [] { return pf("%#lx", 255L); });
    row("int upper hex", "ok FF", [] { return pf("%llX", 255L); });
    row("int UTF-8", "ok 90 \xc2\xb0", [] { return pf("%ld \xc2\xb0", 90L); });
    for (const char *bad :
         { "%s", "%f", "%ld/%ld", "frames", "%n", "%*d", "%1000d", "%hd", "%ld %", "" })
        row(QByteArray("int refuses ") + bad, "refused 42", [bad] { return pf(bad, 42L); });
    row("real width and unit", "ok   -3.2 dB", [] { return pf("%6.1f dB", -3.24); });
    row("real exponent", "ok 1.2e+04", [] { return pf("%.1le", 12345.0); });
    row("real %g", "ok 0.25", [] { return pf("%g", 0.25); });
    for (const char *bad : { "%d", "%Lf", "%f %f" })
        row(QByteArray("real refuses ") + bad, "refused 2.5", [bad] { return pf(bad, 2.5); });
}

void tst_Labels::format()
{
    QFETCH(TextFactory, make);
    QFETCH(QString, expected);
    QCOMPARE(make(), expected);
}

void tst_Labels::labelText_data()
{
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("format") << true << QStringLiteral("Intro") << QStringLiteral("Clip: Intro");
    QTest::newRow("empty value") << true << QString() << QStringLiteral("(none)");
    QTest::newRow("no model shows nothing") << false << QString() << QString();
}

void tst_Labels::labelText()
{
    QFETCH(bool, modelThere);
    QFETCH(QString, value);
    QFETCH(QString, expected);
    const auto model = publish("Text", value, modelThere);
    Kiv_Label label;
    label.setText(QStringLiteral("host text"));
    label.setLabelFormat(QStringLiteral("Clip: %1"), QStringLiteral("(none)"));
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QStringLiteral("host text"));
    label.setTextConnectionSpec(nameOf("Text"));
    QCOMPARE(label.text(), expected);
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QString());
}

void tst_Labels::publishedLabelHoldsText()
{
    Kiv_Label label;
    label.setLabelFormat(QStringLiteral("Status: %1"), QStringLiteral("idle"));
    label.setTextConnectionSpec("publish " + nameOf("Status"));
    QCOMPARE(label.text(), QStringLiteral("idle"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> client(uniqueName("Status"));
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
    const auto second = publish("Duration", QStringLiteral("00:01:02"), secondThere);
    Kiv_Label label;
    label.setToolTip(QStringLiteral("host tip"));
    label.setToolTipFormat(format);
    label.setToolTipConnections({ uniqueName("Name"), uniqueName("Duration") });
    QCOMPARE(label.toolTip(), expected);
    first->setValue(QStringLiteral("Outro"));
    QVERIFY(label.toolTip().startsWith(QLatin1String("Outro")));
    label.setToolTipFormat(QString());
    label.setToolTipConnections({ uniqueName("Duration") });
    first->setValue(QStringLiteral("dropped"));
    QCOMPARE(label.toolTip(), secondThere ? QStringLiteral("00:01:02") : QString());
    label.setToolTipConnections({});
    QCOMPARE(label.toolTip(), QString());
}

void tst_Labels::numberLabels()
{
    Kiv_LongLabel plain, counted, unbound;
    counted.setFormat(QStringLiteral("%1 clips"));
    counted.setFormat1(QStringLiteral("%1 clip"));
    unbound.SetConnectionName(nameOf("Count"));
    QCOMPARE(unbound.text(), QString());
    const auto count = publish("Count", 1L);
    plain.SetConnectionName(nameOf("Count"));
    counted.SetConnectionName(nameOf("Count"));
    QCOMPARE(counted.text(), QStringLiteral("1 clip"));
    count->setValue(3);
    QCOMPARE(plain.text(), QStringLiteral("3"));
    QCOMPARE(counted.text(), QStringLiteral("3 clips"));

    const auto rate = publish("Rate", 29.97);
    Kiv_Double real;
    real.setConnectionSpec(uniqueName("Rate"));
    QCOMPARE(real.text(), QStringLiteral("29.97"));
    real.setDoubleFormat(QStringLiteral("%.1f"));
    real.SetFormat(QStringLiteral("%1 fps"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_Double::setDoubleFormat, '%s'"));
    real.setDoubleFormat(QStringLiteral("%s"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));
}

void tst_Labels::boolLabelAndIcon_data()
{
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<bool>("value");
    QTest::addColumn<QByteArray>("trueImage");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QColor>("color"); // invalid: no image
    const QByteArray on("On.png");
    QTest::newRow("true") << true << true << on << QStringLiteral("Locked") << QColor(Qt::red);
    QTest::newRow("false") << true << false << on << QStringLiteral("Open") << QColor(Qt::blue);
    QTest::newRow("no model") << false << true << on << QString() << QColor();
    QTest::newRow("no image named")
        << true << true << QByteArray() << QStringLiteral("Locked") << QColor();
}

void tst_Labels::boolLabelAndIcon()
{
    QFETCH(bool, modelThere);
    QFETCH(bool, value);
    QFETCH(QByteArray, trueImage);
    QFETCH(QString, text);
    QFETCH(QColor, color);
    QTemporaryDir resources;
    for (const auto &[file, fill] :
         { std::pair("On.png", Qt::red), std::pair("Off.png", Qt::blue) }) {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(fill);
        QVERIFY(image.save(resources.filePath(QString::fromLatin1(file))));
    }
    const QString oldPath = Kib_Resource::getResourcePath();
    Kib_Resource::setResourcePath(resources.path());
    const auto model = publish("Locked", value, modelThere);
    Kiv_BoolLabel label;
    label.setTexts(QStringLiteral("Locked"), QStringLiteral("Open"));
    label.setConnectionSpec(nameOf("Locked"));
    Kiv_BoolIcon icon;
    icon.setImageNames(trueImage, "Off.png");
    icon.setConnectionSpec(nameOf("Locked"));
    QCOMPARE(label.text(), text);
    QCOMPARE(icon.pixmap().isNull(), !color.isValid());
    if (color.isValid())
        QCOMPARE(icon.pixmap().toImage().pixelColor(1, 1), color);
    if (model) {
        model->setValue(!value);
        QCOMPARE(label.text(), value ? QStringLiteral("Open") : QStringLiteral("Locked"));
    }
    Kib_Resource::setResourcePath(oldPath);
}

void tst_Labels::fontConnection_data()
{
    QTest::addColumn<bool>("asText");
    QTest::newRow("QFont model") << false;
    QTest::newRow("description model") << true;
}

void tst_Labels::fontConnection()
{
    QFETCH(bool, asText);
    checkFontConnection<Kiv_Label>(asText);
    checkFontConnection<Kiv_LongLabel>(asText);
    checkFontConnection<Kiv_CheckBox>(asText);
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
    const auto text = publish("Font", QStringLiteral("Courier,huge"), kind == "text");
    const auto number = publish("Font", 12L, kind == "long");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    label.setFontConnectionSpec((kind == "publish" ? "publish " : "") + nameOf("Font"));
    QCOMPARE(label.font(), own);
}

void tst_Labels::whatsThisNames()
{
    checkWhatsThis<Kiv_AutoAlignLineEdit, Kiv_LineEdit, Kiv_TextEdit, Kiv_CheckBox, Kiv_Label,
                   Kiv_LongLabel, Kiv_Double, Kiv_BoolLabel, Kiv_BoolIcon>(
        { "Kiv_AutoAlignLineEdit", "Kiv_LineEdit", "Kiv_TextEdit", "Kiv_CheckBox", "Kiv_Label",
          "Kiv_LongLabel", "Kiv_Double", "Kiv_BoolLabel", "Kiv_BoolIcon" });
}

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
