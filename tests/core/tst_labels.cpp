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

QByteArray nameOf(const char *iLeaf)
{
    return QByteArray("TstLabels.") + iLeaf;
}

/// A model published under nameOf(iLeaf), or none.
template<class T>
std::unique_ptr<Bnde_SimpleValue<T>> publish(const char *iLeaf, const T &iValue, bool iThere = true)
{
    if (!iThere)
        return nullptr;
    auto model = std::make_unique<Bnde_SimpleValue<T>>(nameOf(iLeaf), iValue);
    model->Publish();
    return model;
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

/// Each widget is named after its own class, never one of its bases.
template<class... W> void checkWhatsThis()
{
    const std::unique_ptr<QWidget> widgets[] = { std::unique_ptr<QWidget>(new W)... };
    for (const auto &w : widgets) {
        const QLatin1String name(w->metaObject()->className());
        QCOMPARE(Kiv_WhatsThis::whatsThisName(w.get()), name);
        QCOMPARE(w->whatsThis(), name);
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
    void labelText();
    void labelToolTip();
    void numberLabels();
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
    row("args no such argument, %0", "a %3 %0", [] { return args("%1 %3 %0", 2); });
    row("args percent signs", "100% a%", [] { return args("100% %1%"); });
    row("args two digits", "v12/a", [] { return args("%12/%1"); });
    row("args digit after a placeholder", "b0", [] { return args("%20"); });
    row("count one", "1 clip", [] { return Kiv_FormatCount(1, "%1 clips", "%1 clip"); });
    row("count minus one", "-1 clips", [] { return Kiv_FormatCount(-1, "%1 clips", "%1 clip"); });
    row("count no singular", "1 clips", [] { return Kiv_FormatCount(1, "%1 clips", ""); });
    row("count no format", "12", [] { return Kiv_FormatCount(12, "", ""); });
    row("count singular without number", "one", [] { return Kiv_FormatCount(1, "", "one"); });
    row("tip lines", "a\nb", [] { return Kiv_FormatToolTip("", { "a", "", "b" }); });
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

void tst_Labels::labelText()
{
    Kiv_Label label;
    label.setText(QStringLiteral("host text"));
    label.setLabelFormat(QStringLiteral("Clip: %1"), QStringLiteral("(none)"));
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QStringLiteral("host text"));
    label.setTextConnectionSpec(nameOf("Text"));
    QCOMPARE(label.text(), QString()); // no model yet
    const auto model = publish("Text", QStringLiteral("Intro"));
    QCOMPARE(label.text(), QStringLiteral("Clip: Intro"));
    model->setValue(QString());
    QCOMPARE(label.text(), QStringLiteral("(none)"));
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QString());
    // Published, the label holds the text itself.
    label.setTextConnectionSpec("publish " + nameOf("Status"));
    QCOMPARE(label.text(), QStringLiteral("(none)"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> client(nameOf("Status"));
    QCOMPARE(client.setValue(QStringLiteral("rendering")), int(Bnd_Status::Ok));
    QCOMPARE(label.text(), QStringLiteral("Clip: rendering"));
    QCOMPARE(client.getValue(), QStringLiteral("rendering"));
}

void tst_Labels::labelToolTip()
{
    const auto first = publish("Name", QStringLiteral("Intro"));
    const auto second = publish("Duration", QStringLiteral("00:01:02"));
    Kiv_Label label;
    label.setToolTip(QStringLiteral("host tip"));
    label.setToolTipFormat(QStringLiteral("%1 [%3]"));
    QCOMPARE(label.toolTip(), QStringLiteral("host tip"));
    label.setToolTipConnections({ nameOf("Name"), nameOf("Duration"), nameOf("No") });
    QCOMPARE(label.toolTip(), QStringLiteral("Intro []")); // no model: an empty value
    label.setToolTipFormat(QString());
    first->setValue(QStringLiteral("Outro"));
    QCOMPARE(label.toolTip(), QStringLiteral("Outro\n00:01:02"));
    label.setToolTipConnections({ nameOf("Duration") });
    first->setValue(QStringLiteral("dropped"));
    QCOMPARE(label.toolTip(), QStringLiteral("00:01:02"));
    label.setToolTipConnections({});
    QCOMPARE(label.toolTip(), QString());
}

void tst_Labels::numberLabels()
{
    Kiv_LongLabel plain, counted;
    counted.setFormat(QStringLiteral("%1 clips"));
    counted.setFormat1(QStringLiteral("%1 clip"));
    plain.SetConnectionName(nameOf("Count"));
    QCOMPARE(plain.text(), QString()); // no model yet
    const auto count = publish("Count", 1L);
    counted.SetConnectionName(nameOf("Count"));
    QCOMPARE(counted.text(), QStringLiteral("1 clip"));
    count->setValue(3);
    QCOMPARE(plain.text(), QStringLiteral("3"));
    QCOMPARE(counted.text(), QStringLiteral("3 clips"));

    const auto rate = publish("Rate", 29.97);
    Kiv_Double real;
    real.setConnectionSpec(nameOf("Rate"));
    QCOMPARE(real.text(), QStringLiteral("29.97"));
    real.setDoubleFormat(QStringLiteral("%.1f"));
    real.SetFormat(QStringLiteral("%1 fps"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_Double::setDoubleFormat, '%s'"));
    real.setDoubleFormat(QStringLiteral("%s"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));
}

void tst_Labels::boolLabelAndIcon()
{
    QTemporaryDir resources;
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(resources.filePath(QStringLiteral("On.png"))));
    image.fill(Qt::blue);
    QVERIFY(image.save(resources.filePath(QStringLiteral("Off.png"))));
    const QString oldPath = Kib_Resource::getResourcePath();
    Kib_Resource::setResourcePath(resources.path());
    Kiv_BoolLabel label;
    label.setTexts(QStringLiteral("Locked"), QStringLiteral("Open"));
    label.setConnectionSpec(nameOf("Locked"));
    Kiv_BoolIcon icon;
    icon.setImageNames("On.png", "Off.png");
    icon.setConnectionSpec(nameOf("Locked"));
    QCOMPARE(label.text(), QString()); // no model: neither text nor image
    QVERIFY(icon.pixmap().isNull());
    const auto model = publish("Locked", true);
    QCOMPARE(label.text(), QStringLiteral("Locked"));
    QCOMPARE(icon.pixmap().toImage().pixelColor(1, 1), QColor(Qt::red));
    model->setValue(false);
    QCOMPARE(label.text(), QStringLiteral("Open"));
    QCOMPARE(icon.pixmap().toImage().pixelColor(1, 1), QColor(Qt::blue));
    icon.setImageNames("On.png", QByteArray()); // no image named for the value
    QVERIFY(icon.pixmap().isNull());
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
    QTest::addColumn<QByteArray>("spec");
    QTest::addColumn<QString>("warning");
    QTest::newRow("bad description")
        << nameOf("BadText") << "applyFont, 'Courier,huge' is no font description";
    QTest::newRow("not a font") << nameOf("Long") << "applyFont, '.*' holds a long";
    QTest::newRow("publish") << "publish " + nameOf("BadText")
                             << "setFontConnectionSpec, .*left unbound$";
}

void tst_Labels::fontConnectionRefusesBadValues()
{
    QFETCH(QByteArray, spec);
    QFETCH(QString, warning);
    const auto text = publish("BadText", QStringLiteral("Courier,huge"));
    const auto number = publish("Long", 12L);
    Kiv_Label label;
    const QFont own(QStringLiteral("OwnFamily"), 10);
    label.setFont(own);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_Label::" + warning));
    label.setFontConnectionSpec(spec);
    QCOMPARE(label.font(), own);
}

void tst_Labels::whatsThisNames()
{
    checkWhatsThis<Kiv_AutoAlignLineEdit, Kiv_LineEdit, Kiv_TextEdit, Kiv_CheckBox, Kiv_Label,
                   Kiv_LongLabel, Kiv_Double, Kiv_BoolLabel, Kiv_BoolIcon>();
}

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
