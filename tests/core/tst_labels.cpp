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

#include <QtTest>

#include <functional>
#include <memory>

namespace {

const QByteArray kNames = "TstLabels."; // the models' names start with it

/// A model published under kNames + iLeaf.
template<class T> std::unique_ptr<Bnde_SimpleValue<T>> publish(const char *iLeaf, const T &iValue)
{
    auto model = std::make_unique<Bnde_SimpleValue<T>>(kNames + iLeaf, iValue);
    model->Publish();
    return model;
}

typedef std::function<QString()> TextFactory;

QString args(const char *iFormat, int iCount = 12)
{
    const QStringList values = QStringLiteral("a b %2 v4 v5 v6 v7 v8 v9 v10 v11 v12").split(' ');
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
        const QString name = w->metaObject()->className();
        QCOMPARE(Kiv_WhatsThis::whatsThisName(w.get()) + '|' + w->whatsThis(), name + '|' + name);
    }
}

/// Binds a widget's font to models of either kind, bad ones too, and lets them go. The widget
/// sits in a parent with another font and may have a font of its own.
template<class W> void checkFontConnection(bool iOwnFont)
{
    QWidget parent;
    parent.setFont(QFont(QStringLiteral("ParentFamily"), 8));
    auto *w = new W(&parent);
    if (iOwnFont)
        w->setFont(QFont(QStringLiteral("OwnFamily"), 10));
    const QString before = iOwnFont ? "OwnFamily/10/400" : "ParentFamily/8/400";
    const auto shown = [w] {
        const QFont f = w->font();
        return f.family() + '/' + QString::number(f.pointSize()) + '/'
            + QString::number(f.weight());
    };
    const QString cls = W::staticMetaObject.className();
    const auto expectWarning = [&](const QString &iText) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^" + cls + "::" + iText));
    };
    w->setFontConnectionSpec(kNames + "Font");
    auto font = publish("Font", QFont(QStringLiteral("Courier"), 17, QFont::Bold));
    QCOMPARE(shown(), "Courier/17/700");
    font->setValue(QFont(QStringLiteral("Courier"), 11));
    QCOMPARE(shown(), "Courier/11/400");
    font.reset(); // no model: the font from before comes back
    QCOMPARE(shown(), before);
    const auto text = publish("Font", QStringLiteral("Courier,17,75"));
    QCOMPARE(shown(), "Courier/17/700");
    // A value that is no font is reported, naming the class, and the present font stays.
    expectWarning("applyFont, 'Courier,huge' is no font description");
    text->setValue(QStringLiteral("Courier,huge"));
    QCOMPARE(shown(), "Courier/17/700");
    const auto number = publish("Long", 12L);
    expectWarning("applyFont, '.*' holds a long");
    w->setFontConnectionSpec(kNames + "Long");
    // A font is never published: the widget is left unbound.
    expectWarning("setFontConnectionSpec, .*left unbound$");
    w->setFontConnectionSpec("publish " + kNames + "Font");
    QCOMPARE(shown(), before);
    QCOMPARE(w->testAttribute(Qt::WA_SetFont), iOwnFont);
}

} // namespace

Q_DECLARE_METATYPE(TextFactory)

class tst_Labels : public QObject
{
    Q_OBJECT

private slots:
    void format_data();
    void format();
    void labelTextAndToolTip();
    void valueLabels();
    void fontConnection();
    void whatsThisNames();
};

void tst_Labels::format_data()
{
    QTest::addColumn<TextFactory>("make");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QByteArray &tag, const char *expected, TextFactory make) {
        QTest::newRow(tag.constData()) << make << QString::fromUtf8(expected);
    };
    // Reordered, repeated; a value holding "%2"; lone "%"; two digits only for such an argument.
    row("args", "b-aa %2 100% a% v12/b0", [] { return args("%2-%1%1 %3 100% %1% %12/%20"); });
    row("args no such argument, %0", "a %3 %0", [] { return args("%1 %3 %0", 2); });
    row("count one", "1 clip", [] { return Kiv_FormatCount(1, "%1 clips", "%1 clip"); });
    row("count no singular", "1 clips", [] { return Kiv_FormatCount(1, "%1 clips", ""); });
    row("count no format", "12", [] { return Kiv_FormatCount(12, "", ""); });
    row("count singular without number", "one", [] { return Kiv_FormatCount(1, "", "one"); });
    row("tip lines", "a\nb", [] { return Kiv_FormatToolTip("", { "a", "", "b" }); });
    row("tip format keeps empty", "a ()", [] { return Kiv_FormatToolTip("%1 (%2)", { "a", "" }); });
    row("font family", "Arial/-/-", [] { return fontText("Arial"); });
    row("font blanks", "DejaVu Sans/9/-", [] { return fontText(" DejaVu Sans , 9 "); });
    row("font QFont weight from 100", "Arial/12/100", [] { return fontText("Arial,12,100"); });
    row("font settings below 100", "Arial/12/900", [] { return fontText("Arial,12,99"); });
    row("font settings halfway", "Arial/12/600", [] { return fontText("Arial,12,69"); });
    row("font long form", "Courier/14/700",
        [] { return fontText(QFont("Courier", 14, 700).toString().toLatin1()); });
    for (const char *bad :
         { "", ",12", "Arial,big", "Arial,0", "Arial,12,heavy", "Arial,12,1001", "Arial,x,y,z" })
        row(QByteArray("font refuses ") + bad, "refused", [bad] { return fontText(bad); });
    row("%d takes the whole long", "ok 5000000000", [] { return pf("%d", 5000000000L); });
    row("int width, text", "ok Frame 00042|% \xc2\xb0",
        [] { return pf("Frame %05ld|%% \xc2\xb0", 42L); });
    row("int left aligned", "ok +42 |", [] { return pf("%+-4ld|", 42L); });
    row("int upper hex", "ok 0XFF", [] { return pf("%#llX", 255L); });
    for (const char *bad :
         { "%s", "%f", "%ld/%ld", "frames", "%n", "%*d", "%1000d", "%hd", "%ld %", "" })
        row(QByteArray("int refuses ") + bad, "refused 42", [bad] { return pf(bad, 42L); });
    row("real width and unit", "ok   -3.2 dB", [] { return pf("%6.1f dB", -3.24); });
    row("real exponent", "ok 1.2e+04", [] { return pf("%.1le", 12345.0); });
    for (const char *bad : { "%d", "%Lf", "%f %f" })
        row(QByteArray("real refuses ") + bad, "refused 2.5", [bad] { return pf(bad, 2.5); });
}

void tst_Labels::format()
{
    QFETCH(TextFactory, make);
    QFETCH(QString, expected);
    QCOMPARE(make(), expected);
}

void tst_Labels::labelTextAndToolTip()
{
    Kiv_Label label;
    label.setText(QStringLiteral("host text"));
    label.setLabelFormat(QStringLiteral("Clip: %1"), QStringLiteral("(none)"));
    label.setTextConnectionSpec(kNames + "Text");
    QCOMPARE(label.text(), QString()); // no model yet
    const auto model = publish("Text", QStringLiteral("Intro"));
    QCOMPARE(label.text(), QStringLiteral("Clip: Intro"));
    label.setTextConnectionSpec(QByteArray());
    QCOMPARE(label.text(), QString());
    // Published, the label holds the text itself, empty at first.
    label.setTextConnectionSpec("publish " + kNames + "Status");
    QCOMPARE(label.text(), QStringLiteral("(none)"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> client(kNames + "Status");
    QCOMPARE(client.setValue(QStringLiteral("rendering")), int(Bnd_Status::Ok));
    QCOMPARE(label.text(), QStringLiteral("Clip: rendering"));

    // The tool tip: its models' texts through the tool-tip format, else one per line.
    const auto duration = publish("Duration", QStringLiteral("00:01:02"));
    label.setToolTip(QStringLiteral("host tip"));
    label.setToolTipFormat(QStringLiteral("%1 [%3]"));
    QCOMPARE(label.toolTip(), QStringLiteral("host tip"));
    label.setToolTipConnections({ kNames + "Text", kNames + "Duration", kNames + "No" });
    QCOMPARE(label.toolTip(), QStringLiteral("Intro []")); // no model: an empty value
    label.setToolTipFormat(QString());
    model->setValue(QStringLiteral("Outro"));
    QCOMPARE(label.toolTip(), QStringLiteral("Outro\n00:01:02"));
    label.setToolTipConnections({ kNames + "Duration" });
    model->setValue(QStringLiteral("dropped"));
    QCOMPARE(label.toolTip(), QStringLiteral("00:01:02"));
    label.setToolTipConnections({});
    QCOMPARE(label.toolTip(), QString());
}

void tst_Labels::valueLabels()
{
    Kiv_LongLabel counted;
    counted.setFormat(QStringLiteral("%1 clips"));
    counted.setFormat1(QStringLiteral("%1 clip"));
    counted.SetConnectionName(kNames + "Count");
    QCOMPARE(counted.text(), QString()); // no model yet
    const auto count = publish("Count", 1L);
    QCOMPARE(counted.text(), QStringLiteral("1 clip"));
    count->setValue(3);
    QCOMPARE(counted.text(), QStringLiteral("3 clips"));

    const auto rate = publish("Rate", 29.97);
    Kiv_Double real;
    real.setConnectionSpec(kNames + "Rate");
    QCOMPARE(real.text(), QStringLiteral("29.97"));
    real.setDoubleFormat(QStringLiteral("%.1f"));
    real.SetFormat(QStringLiteral("%1 fps"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kiv_Double::setDoubleFormat, '%s'"));
    real.setDoubleFormat(QStringLiteral("%s"));
    QCOMPARE(real.text(), QStringLiteral("30.0 fps"));

    const QByteArray on = "Images/Buttons/PlayNormal.png", off = "Images/Buttons/StopNormal.png";
    Kiv_BoolLabel label;
    label.setTexts(QStringLiteral("Locked"), QStringLiteral("Open"));
    label.setConnectionSpec(kNames + "Locked");
    Kiv_BoolIcon icon;
    icon.setImageNames(on, off);
    icon.setConnectionSpec(kNames + "Locked");
    // The text and the image shown: 0 none, 1 the true one, 2 the false one.
    const QList<QImage> images { QImage(), Kib_Resource::loadPixmap(on).toImage(),
                                 Kib_Resource::loadPixmap(off).toImage() };
    const auto shown = [&] {
        return label.text() + '|' + QString::number(images.indexOf(icon.pixmap().toImage()));
    };
    QCOMPARE(shown(), QStringLiteral("|0")); // no model: neither text nor image
    const auto locked = publish("Locked", true);
    QCOMPARE(shown(), QStringLiteral("Locked|1"));
    locked->setValue(false);
    QCOMPARE(shown(), QStringLiteral("Open|2"));
    icon.setImageNames(on, QByteArray()); // no image named for the value
    QCOMPARE(shown(), QStringLiteral("Open|0"));
}

void tst_Labels::fontConnection()
{
    checkFontConnection<Kiv_Label>(true);
    checkFontConnection<Kiv_LongLabel>(false);
    checkFontConnection<Kiv_CheckBox>(false);
}

void tst_Labels::whatsThisNames()
{
    checkWhatsThis<Kiv_AutoAlignLineEdit, Kiv_LineEdit, Kiv_TextEdit, Kiv_CheckBox, Kiv_Label,
                   Kiv_LongLabel, Kiv_Double, Kiv_BoolLabel, Kiv_BoolIcon>();
}

QTEST_MAIN(tst_Labels)
#include "tst_labels.moc"
