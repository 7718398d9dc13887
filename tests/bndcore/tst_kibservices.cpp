#include "Kib_DirPaths.h"
#include "Kib_Setting.h"
#include "Kib_StringUtils.h"
#include "Kib_UIDialog.h"
#include "Kic_EditMenu.h"

#include <QTemporaryDir>
#include <QTest>
#include <QTextBoundaryFinder>
#include <QValidator>

#include <memory>

namespace {

// The parameters of a reader as "name=value", in order.
QStringList paramsOf(const Kib_Setting &iSetting)
{
    QStringList list;
    QString name, value;
    for (int n = 0; iSetting.GetNthParam(n, name, value); ++n)
        list << name + '=' + value;
    return list;
}

// GCC 12 takes the addresses the edit-menu test records (and compares after the commanders
// are gone) for uses of the deleted objects.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif

// A text widget stand-in.
struct FakeCommander : Kic_EditMenuCommander
{
    bool findCommandStatus(unsigned int, bool &, QString &) override { return false; }
    bool obeyCommand(unsigned int) override { return false; }
};

const char *const kWindowsDoc = R"(<?xml version="1.0"?><Settings><Windows><FontSettings>
    <Kiv_Header><Font>Arial,12</Font></Kiv_Header><Kiv_Placard><TopLine><Font>
      A,9
    </Font></TopLine><BottomLine><Font>B,8</Font></BottomLine></Kiv_Placard></FontSettings>
  <Colors><Background>#000</Background></Colors><Param name="Top" value="1"/></Windows>
  <Application><General><Language>en</Language></General></Application></Settings>)";

const char *const kFormsDoc = R"(<S><W><P><A>1</A><Param name="B.C" value="2"/>
  <D><Param name="E" value="3"/></D><Param name="F">  text form </Param><G/>
  <H>ignored beside children<I>v</I></H><!-- a comment --><J><![CDATA[a<b]]></J></P></W></S>)";

} // namespace

class tst_KibServices : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void resourceDirLookup_data();
    void resourceDirLookup();
    void applicationSeed_data();
    void applicationSeed();
    void settingParams_data();
    void settingParams();
    void ellipsis_data();
    void ellipsis();
    void dialogs_data();
    void dialogs();
    void editMenuFocus();
};

void tst_KibServices::cleanup()
{
    Kib_DirPaths::Initialize(nullptr);
    Kib_UIDialog::setResponder({});
    Kic_EditMenu::instance().focusInEvent(nullptr);
}

void tst_KibServices::resourceDirLookup_data()
{
    // "KIV_RESOURCE_DIR | directories made | answer", paths below a temporary directory with
    // the executable in /app/bin; "-": the variable unset, or the source tree's directory.
    QTest::addColumn<QString>("row");

    QTest::newRow("variable first, separator added") << "/env | /env /bin/resources /share | /env/";
    QTest::newRow("variable naming a file") << "/plain.txt | /share | /share/";
    QTest::newRow("beside before share") << "- | /bin/resources /share | /bin/resources/";
    QTest::newRow("share") << "- | /share | /share/";
    QTest::newRow("source tree last") << "- |  | -";
}

void tst_KibServices::resourceDirLookup()
{
    QFETCH(QString, row);
    const QStringList part = row.split(" | ");

    QTemporaryDir tmp;
    const QString root = tmp.path() + "/app";
    const auto path = [&](QString iPath) {
        return root + iPath.replace("/share", "/share/kivcore/resources");
    };
    QVERIFY(QDir().mkpath(root + "/bin") && QFile(root + "/plain.txt").open(QIODevice::WriteOnly));
    for (const QString &dir : part[1].split(' ', Qt::SkipEmptyParts))
        QVERIFY(QDir().mkpath(path(dir)));
    part[0] == "-" ? qunsetenv("KIV_RESOURCE_DIR")
                   : qputenv("KIV_RESOURCE_DIR", QFile::encodeName(path(part[0])));

    Kib_DirPaths::Initialize(QFile::encodeName(root + "/bin/kivapp").constData());
    const QString found = Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir, true);
    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::TranslationsDir), found + "Translations/");
    if (part[2] == "-")
        QVERIFY2(QFileInfo::exists(found + "Settings/KivSettings.xml"), qPrintable(found));
    else
        QCOMPARE(found, path(part[2]));
}

void tst_KibServices::applicationSeed_data()
{
    // "seed | directory | executable name": <tmp> is a temporary directory, <cwd> the current
    // one, <app> and <exe> the running test's directory and name, <null> a null pointer.
    QTest::addColumn<QString>("row");

    QTest::newRow("executable") << "<tmp>/bin/../bin/./kivapp | <tmp>/bin/ | kivapp";
    QTest::newRow("existing directory") << "<tmp>/bin | <tmp>/bin/ | <exe>";
    QTest::newRow("directory with separator") << "<tmp>/nowhere/ | <tmp>/nowhere/ | <exe>";
    QTest::newRow("relative executable") << "bin/kivapp | <cwd>/bin/ | kivapp";
    QTest::newRow("null seed") << "<null> | <app>/ | <exe>";
    QTest::newRow("product name") << "Harbour Editor | <app>/ | <exe>";
}

void tst_KibServices::applicationSeed()
{
    QFETCH(QString, row);
    QTemporaryDir tmp;
    QVERIFY(QDir().mkpath(tmp.path() + "/bin"));
    const QStringList part
        = row.replace("<tmp>", tmp.path())
              .replace("<cwd>", QDir::currentPath())
              .replace("<app>", QCoreApplication::applicationDirPath())
              .replace("<exe>", QFileInfo(QCoreApplication::applicationFilePath()).fileName())
              .split(" | ");
    // Start from another seed, so that a seed that changes nothing shows.
    Kib_DirPaths::Initialize(QFile::encodeName(tmp.path() + "/other/exe").constData());
    const QByteArray seed = QFile::encodeName(part[0]);
    Kib_DirPaths::Initialize(part[0] == "<null>" ? nullptr : seed.constData());

    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir, true), part[1]);
    QVERIFY(!QFileInfo::exists(tmp.path() + "/nowhere")); // a read-only kind is never created
    QCOMPARE(Kib_DirPaths::GetApplicationExeName(), part[2]);
}

void tst_KibServices::settingParams_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("selection"); // "start root | prefix"
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("warning"); // logged once per read; <file>: the file's part
    const auto row = [](const char *iTag, const QString &iXml, const char *iSelection,
                        const QStringList &iExpected, const char *iWarning = "") {
        QTest::newRow(iTag) << iXml << iSelection << iExpected << iWarning;
    };

    using L = QStringList;
    const QString w = kWindowsDoc;
    const L fonts
        = { "FontSettings.Kiv_Header.Font=Arial,12", "FontSettings.Kiv_Placard.TopLine.Font=A,9",
            "FontSettings.Kiv_Placard.BottomLine.Font=B,8" };
    const L background = { "Colors.Background=#000" };

    row("no prefix: the start root", w, "Windows | ", fonts + background + L { "Top=1" });
    row("dotted prefix, blanks around", w, " Windows  | FontSettings.Kiv_Placard ", fonts.mid(1));
    row("prefix of another start root", w, "Application | FontSettings", L());
    row("no start root: the document element", w, " | Windows.Colors",
        L { "Windows.Colors.Background=#000" });
    row("element and attribute forms, nested, in document order", kFormsDoc, "W | P",
        L { "P.A=1", "P.B.C=2", "P.D.E=3", "P.F=text form", "P.G=", "P.H.I=v", "P.J=a<b" });
    row("Param without a name", "<S><W><P><Param value='lost'/><K>kept</K></P></W></S>", "W | P",
        L { "P.K=kept" }, "^Kib_Setting::SetXML, Param without a name at line 1 is ignored$");
    row("repeated start roots and prefixes, the later value wins",
        "<S><W><P><A>1</A></P></W><X><P><A>0</A></P></X><W><P><A>3</A></P></W></S>", "W | P",
        L { "P.A=1", "P.A=3" });
    row("malformed: nothing is left", "<S>\n<W>\n<P>x</W>\n</S>", "Windows | Colors", L(),
        "^Kib_Setting::SetXML<file>, malformed XML at line 3: .+");
}

void tst_KibServices::settingParams()
{
    QFETCH(QString, xml);
    QFETCH(QString, selection);
    QFETCH(QStringList, expected);
    QFETCH(QString, warning);
    const QString startRoot = selection.section('|', 0, 0), prefix = selection.section('|', 1);
    const bool wellFormed = !warning.contains("malformed");
    QTemporaryDir tmp;
    QFile file(tmp.filePath("settings.xml"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(xml.toUtf8()) > 0 && file.flush());

    QTest::failOnWarning(QRegularExpression(".*"));
    Kib_Setting before; // the selection first, then the document, as a text and as a file
    before.SetStartRoot(startRoot);
    before.SetPrefix(prefix);
    for (const QString &where :
         { QString(), "File, " + QRegularExpression::escape(file.fileName()) }) {
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(QString(warning).replace("<file>", where)));
        QCOMPARE(where.isEmpty() ? before.SetXML(xml) : before.SetXMLFile(file.fileName()),
                 wellFormed);
        QCOMPARE(paramsOf(before), expected);
    }
    Kib_Setting after; // an earlier document replaced quietly, then the selection changed
    QVERIFY(after.SetXML(kWindowsDoc) && after.count() > 0);
    QCOMPARE(after.SetXML(xml, false), wellFormed);
    after.SetPrefix(prefix);
    after.SetStartRoot(startRoot);
    QCOMPARE(paramsOf(after), expected);
    const QString last = expected.isEmpty() ? "Missing=d" : expected.last(); // the later one wins
    QCOMPARE(after.value(last.section('=', 0, 0), "d"), last.section('=', 1));
    // A file that cannot be read leaves nothing either.
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("^Kib_Setting::SetXMLFile, cannot open .+/gone : .+"));
    QVERIFY(!after.SetXMLFile(tmp.filePath("gone")) && after.count() == 0);
}

void tst_KibServices::ellipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("width"); // "full", "full-1", "half", "dots", "dots-1"

    const QString latin = "The quick brown fox jumps";
    QTest::newRow("fits exactly") << latin << "full";
    QTest::newRow("one pixel short") << latin << "full-1";
    QTest::newRow("ellipsis alone") << latin << "dots";
    QTest::newRow("not even the ellipsis") << latin << "dots-1";
    QTest::newRow("surrogate pairs") << QStringLiteral("ab\U0001F600\U0001F600cd") << "half";
    QTest::newRow("combining marks") << QStringLiteral("e\u0301e\u0301e\u0301e\u0301") << "half";
    QTest::newRow("blank before the cut") << QString("ab             cdefgh") << "half";
}

void tst_KibServices::ellipsis()
{
    QFETCH(QString, text);
    QFETCH(QString, width);

    const QFontMetrics metrics(QFont("DejaVu Sans", 10));
    const QString dots = Kib_StringUtils::ellipsis();
    const int full = metrics.horizontalAdvance(text), dotsWidth = metrics.horizontalAdvance(dots);
    const int base = width.startsWith("full") ? full : width == "half" ? full / 2 : dotsWidth;
    const int pixels = base - width.section('-', 1).toInt();

    QString result = text;
    QCOMPARE(Kib_StringUtils::computeEllipsisText(result, metrics, pixels), width != "full");
    if (width == "full" || result.isEmpty()) {
        QCOMPARE(result, width == "full" ? text : QString());
        QCOMPARE(dotsWidth > pixels, result.isEmpty());
        return;
    }
    // What is kept is the start of the text, cut between graphemes, without blanks at its end...
    const QString head = result.chopped(dots.size());
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(int(head.size()));
    QVERIFY2(metrics.horizontalAdvance(result) <= pixels && result.endsWith(dots)
                 && text.startsWith(head) && finder.isAtBoundary()
                 && (head.isEmpty() || !head.back().isSpace()),
             qPrintable(result));
    // ...and it is the longest such start: one grapheme more would not fit.
    int next = int(finder.toNextBoundary());
    while (next > 0 && next < text.size() && text.at(next - 1).isSpace())
        next = int(finder.toNextBoundary());
    QVERIFY(next < 0 || metrics.horizontalAdvance(text.left(next).trimmed() + dots) > pixels);
}

void tst_KibServices::dialogs_data()
{
    // A message box: "buttons @ default button", answering "shown > default > result". An input
    // line: "input", or "input N" with a validator of N to 99, answering the text afterwards.
    QTest::addColumn<QString>("call");
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("warning");
    const auto row = [](const char *iTag, const char *iCall, const QVariant &iReply,
                        const char *iExpected, const char *iWarning = "") {
        QTest::newRow(iTag) << iCall << iReply << iExpected << iWarning;
    };

    row("no buttons means OK", "@0", 1, "OK > 1 > 1");
    row("blanks and empty entries dropped", " A | |B|@2", 2, "A|B > 2 > 2");
    row("default past the end", "A|B@5", 2, "A|B > 1 > 2");
    row("closed without a button", "A|B@1", 0, "A|B > 1 > 0");
    row("answer past the buttons", "A|B@1", 3, "A|B > 1 > 0",
        "UIdialog, the responder answered .+ which is no button");
    row("answer as a map", "A|B@1", QVariantMap { { "button", 2 } }, "A|B > 1 > 2");
    row("input accepted", "input", "Scene 2", "Scene 2");
    row("input cancelled", "input", QVariant(), "Scene 1");
    row("validator accepts", "input 0", "42", "42");
    row("intermediate is not acceptable", "input 10", "5", "Scene 1",
        "GetUserInput, .+ is not acceptable");
    row("answer not a text", "input", 7, "Scene 1", "GetUserInput, .+ instead of a text");
}

void tst_KibServices::dialogs()
{
    QFETCH(QString, call);
    QFETCH(QVariant, reply);
    QFETCH(QString, expected);
    QFETCH(QString, warning);

    QList<Kib_UIDialog::Request> requests;
    Kib_UIDialog::setResponder([&](const Kib_UIDialog::Request &iRequest) {
        requests << iRequest;
        return reply;
    });
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kib_UIDialog::" + warning));
    QString answer = "Scene 1";
    QIntValidator validator(call.section(' ', 1).toInt(), 99);
    QValidator *const given = call.contains(' ') ? &validator : nullptr;
    if (call.startsWith("input")) {
        const bool accepted = Kib_UIDialog::GetUserInput("Name:", answer, "Rename", nullptr, given);
        QCOMPARE(accepted, answer != "Scene 1");
        QCOMPARE(requests.value(0).validator, given);
    } else {
        const short result = Kib_UIDialog::UIdialog(
            "Save?", call.section('@', 0, 0), short(call.section('@', 1).toInt()),
            Kib_UIDialog::UIicon_Caution, QString(), true, QString());
        const Kib_UIDialog::Request request = requests.value(0);
        answer = request.buttonList.join('|') + " > " + QString::number(request.defaultButton)
            + " > " + QString::number(result);
    }
    QCOMPARE(requests.size(), 1);
    QCOMPARE(answer, expected);
}

void tst_KibServices::editMenuFocus()
{
    Kic_EditMenu &menu = Kic_EditMenu::instance();
    auto a = std::make_unique<FakeCommander>(), b = std::make_unique<FakeCommander>();
    const quintptr commanderA = quintptr(a.get()), commanderB = quintptr(b.get());
    QList<quintptr> heard; // what currentCommanderChanged told
    QObject context;
    connect(&menu, &Kic_EditMenu::currentCommanderChanged, &context,
            [&](Kic_Commander *iCommander) { heard << quintptr(iCommander); });
    menu.focusInEvent(a.get());
    menu.focusInEvent(a.get()); // already current: not told again
    QVERIFY(!menu.isFocusOutEvent(a.get(), true)); // to a popup: stays current
    menu.focusInEvent(b.get());
    QVERIFY(menu.isFocusOutEvent(a.get(), false)); // late, from the previous one: B stays
    a.reset(); // so does the end of another one
    QVERIFY(menu.isFocusOutEvent(b.get(), false));
    menu.focusInEvent(b.get());
    b.reset(); // the end of the current one leaves none
    QCOMPARE(heard, (QList<quintptr> { commanderA, commanderB, 0, commanderB, 0 }));
    QCOMPARE(menu.currentCommander(), nullptr);
}

QTEST_MAIN(tst_KibServices)
#include "tst_kibservices.moc"
