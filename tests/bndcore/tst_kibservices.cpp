#include "Kib_DirPaths.h"
#include "Kib_Setting.h"
#include "Kib_StringUtils.h"
#include "Kib_UIDialog.h"
#include "Kic_EditMenu.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBoundaryFinder>
#include <QValidator>

#include <map>
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

// A text widget stand-in.
struct FakeCommander : Kic_EditMenuCommander
{
    bool findCommandStatus(unsigned int, bool &, QString &) override { return false; }
    bool obeyCommand(unsigned int) override { return false; }
};

// Answers every dialog with @p iReply and keeps the requests.
QList<Kib_UIDialog::Request> *respondWith(const QVariant &iReply)
{
    static QList<Kib_UIDialog::Request> requests;
    requests.clear();
    Kib_UIDialog::setResponder([iReply](const Kib_UIDialog::Request &iRequest) {
        requests << iRequest;
        return iReply;
    });
    return &requests;
}

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
    void settingMalformed_data();
    void settingMalformed();
    void ellipsis_data();
    void ellipsis();
    void messageButtons_data();
    void messageButtons();
    void userInput_data();
    void userInput();
    void editMenuFocus_data();
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
    QTest::addColumn<QString>("environment"); // below the temporary directory; null: unset
    QTest::addColumn<bool>("besideExe");
    QTest::addColumn<bool>("inShare");
    QTest::addColumn<QString>("expected"); // below the temporary directory; null: source tree

    const QString unset, beside = "/app/bin/resources/", share = "/app/share/kivcore/resources/";
    QTest::newRow("variable wins") << "/envres/" << true << true << "/envres/";
    QTest::newRow("variable, separator added") << "/envres" << false << false << "/envres/";
    QTest::newRow("variable naming a file") << "/plain.txt" << false << true << share;
    QTest::newRow("beside before share") << unset << true << true << beside;
    QTest::newRow("share") << unset << false << true << share;
    QTest::newRow("source tree last") << unset << false << false << QString();
}

void tst_KibServices::resourceDirLookup()
{
    QFETCH(QString, environment);
    QFETCH(bool, besideExe);
    QFETCH(bool, inShare);
    QFETCH(QString, expected);

    QTemporaryDir tmp;
    const QString root = tmp.path();
    QVERIFY(QDir().mkpath(root + "/app/bin") && QDir().mkpath(root + "/envres"));
    QVERIFY(!besideExe || QDir().mkpath(root + "/app/bin/resources"));
    QVERIFY(!inShare || QDir().mkpath(root + "/app/share/kivcore/resources"));
    QFile file(root + "/plain.txt");
    QVERIFY(file.open(QIODevice::WriteOnly));
    environment.isNull() ? qunsetenv("KIV_RESOURCE_DIR")
                         : qputenv("KIV_RESOURCE_DIR", QFile::encodeName(root + environment));

    Kib_DirPaths::Initialize(QFile::encodeName(root + "/app/bin/kivapp").constData());
    const QString path = Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir, true);
    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::TranslationsDir), path + "Translations/");
    if (expected.isNull())
        QVERIFY2(QFileInfo::exists(path + "Settings/KivSettings.xml"), qPrintable(path));
    else
        QCOMPARE(path, root + expected);
}

void tst_KibServices::applicationSeed_data()
{
    // "seed | directory | executable name": "<tmp>" is a temporary directory, "<cwd>" the
    // current one, "<app>" the running test's directory or name; "<null>" a null pointer.
    QTest::addColumn<QString>("row");

    QTest::newRow("executable") << "<tmp>/bin/../bin/./kivapp | <tmp>/bin/ | kivapp";
    QTest::newRow("existing directory") << "<tmp>/bin | <tmp>/bin/ | <app>";
    QTest::newRow("directory with separator") << "<tmp>/nowhere/ | <tmp>/nowhere/ | <app>";
    QTest::newRow("relative executable") << "bin/kivapp | <cwd>/bin/ | kivapp";
    QTest::newRow("null seed") << "<null> | <app>/ | <app>";
    QTest::newRow("product name") << "Harbour Editor | <app>/ | <app>";
}

void tst_KibServices::applicationSeed()
{
    QFETCH(QString, row);
    const QString seed = row.section(" | ", 0, 0), dir = row.section(" | ", 1, 1);
    const QString exeName = row.section(" | ", 2);

    QTemporaryDir tmp;
    QVERIFY(QDir().mkpath(tmp.path() + "/bin"));
    const auto expand = [&](QString iText) {
        return iText.replace("<tmp>", tmp.path())
            .replace("<cwd>", QDir::currentPath())
            .replace("<app>", QCoreApplication::applicationDirPath());
    };
    // Start from another seed, so that a seed that changes nothing shows.
    Kib_DirPaths::Initialize(QFile::encodeName(tmp.path() + "/other/exe").constData());
    const QByteArray encoded = QFile::encodeName(expand(seed));
    Kib_DirPaths::Initialize(seed == "<null>" ? nullptr : encoded.constData());

    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir, true), expand(dir));
    QVERIFY(!QFileInfo::exists(tmp.path() + "/nowhere")); // a read-only kind is never created
    QCOMPARE(Kib_DirPaths::GetApplicationExeName(),
             exeName == "<app>" ? QFileInfo(QCoreApplication::applicationFilePath()).fileName()
                                : exeName);
}

void tst_KibServices::settingParams_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("selection"); // "start root | prefix"
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("warning"); // logged once when errors are logged

    using L = QStringList;
    const QString windows = kWindowsDoc, none;
    const L fonts
        = { "FontSettings.Kiv_Header.Font=Arial,12", "FontSettings.Kiv_Placard.TopLine.Font=A,9",
            "FontSettings.Kiv_Placard.BottomLine.Font=B,8" };
    const L background = { "Colors.Background=#000" };

    QTest::newRow("prefix selects a group") << windows << "Windows | FontSettings" << fonts << none;
    QTest::newRow("no prefix: the start root")
        << windows << "Windows | " << fonts + background + L { "Top=1" } << none;
    QTest::newRow("dotted prefix")
        << windows << "Windows | FontSettings.Kiv_Placard" << fonts.mid(1) << none;
    QTest::newRow("blanks around") << windows << " Windows  |  Colors " << background << none;
    QTest::newRow("prefix of another start root")
        << windows << "Application | FontSettings" << L() << none;
    QTest::newRow("no start root: the document element")
        << windows << " | Windows.Colors" << L { "Windows.Colors.Background=#000" } << none;
    QTest::newRow("element and attribute forms, nested, in document order")
        << QString(kFormsDoc) << "W | P"
        << L { "P.A=1", "P.B.C=2", "P.D.E=3", "P.F=text form", "P.G=", "P.H.I=v", "P.J=a<b" }
        << none;
    QTest::newRow("Param without a name")
        << QString("<S><W><P><Param value='lost'/><K>kept</K></P></W></S>") << "W | P"
        << L { "P.K=kept" } << "Kib_Setting::SetXML, Param without a name at line 1 is ignored";
    QTest::newRow("repeated start roots and prefixes, the later value wins")
        << QString("<S><W><P><A>1</A></P></W><X><P><A>0</A></P></X><W><P><A>3</A></P></W></S>")
        << "W | P" << L { "P.A=1", "P.A=3" } << none;
}

void tst_KibServices::settingParams()
{
    QFETCH(QString, xml);
    QFETCH(QString, selection);
    QFETCH(QStringList, expected);
    QFETCH(QString, warning);
    const QString startRoot = selection.section('|', 0, 0), prefix = selection.section('|', 1);

    QTest::failOnWarning(QRegularExpression(".*"));
    Kib_Setting before; // the selection first, then the document
    before.SetStartRoot(startRoot);
    before.SetPrefix(prefix);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
    QVERIFY(before.SetXML(xml));
    QCOMPARE(paramsOf(before), expected);
    Kib_Setting after; // the document first, quietly, then a selection changed afterwards
    after.SetStartRoot("Bogus");
    QVERIFY(after.SetXML(xml, false));
    after.SetPrefix(prefix);
    after.SetStartRoot(startRoot);
    QCOMPARE(paramsOf(after), expected);
    const QString last = expected.isEmpty() ? "Missing=d" : expected.last(); // the later one wins
    QCOMPARE(after.value(last.section('=', 0, 0), "d"), last.section('=', 1));
}

void tst_KibServices::settingMalformed_data()
{
    QTest::addColumn<bool>("logErrors");
    QTest::newRow("logged") << true;
    QTest::newRow("quiet") << false;
}

void tst_KibServices::settingMalformed()
{
    QFETCH(bool, logErrors);
    const QString xml = "<S>\n<W>\n<P>x</W>\n</S>"; // the tags do not match on line 3
    QTemporaryDir tmp;
    QFile file(tmp.path() + "/bad.xml");
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(xml.toUtf8()) >= 0 && file.flush());
    const QString missing = tmp.path() + "/missing.xml";

    QTest::failOnWarning(QRegularExpression(".*"));
    if (logErrors) {
        const QString malformed = "^Kib_Setting::SetXML%1, malformed XML at line 3: .+";
        const QString where = "File, " + QRegularExpression::escape(file.fileName());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(malformed.arg("")));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(malformed.arg(where)));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kib_Setting::SetXMLFile, cannot open "
                                                + QRegularExpression::escape(missing) + " : .+"));
    }
    Kib_Setting setting;
    QVERIFY(setting.SetXML(kWindowsDoc) && setting.count() > 0);
    QVERIFY(!setting.SetXML(xml, logErrors));
    QCOMPARE(setting.count(), 0); // nothing of the earlier document is left
    QVERIFY(!setting.SetXMLFile(file.fileName(), logErrors));
    QVERIFY(!setting.SetXMLFile(missing, logErrors));
}

void tst_KibServices::ellipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("width"); // "full", "full-1", "half", "dots", "dots-1" or a number
    QTest::addColumn<bool>("shortened");

    const QString latin = "The quick brown fox jumps";
    QTest::newRow("fits exactly") << latin << "full" << false;
    QTest::newRow("one pixel short") << latin << "full-1" << true;
    QTest::newRow("ellipsis alone") << latin << "dots" << true;
    QTest::newRow("not even the ellipsis") << latin << "dots-1" << true;
    QTest::newRow("empty text") << QString() << "0" << false;
    const QString emoji = QString::fromUtf8("ab\U0001F600\U0001F600\U0001F600\U0001F600cd");
    const QString combining = QString::fromUtf8("e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301");
    QTest::newRow("surrogate pairs") << emoji << "half" << true;
    QTest::newRow("combining marks") << combining << "half" << true;
    QTest::newRow("blank before the cut") << QString("ab             cdefgh") << "half" << true;
}

void tst_KibServices::ellipsis()
{
    QFETCH(QString, text);
    QFETCH(QString, width);
    QFETCH(bool, shortened);

    const QFontMetrics metrics(QFont("DejaVu Sans", 10));
    const QString dots = Kib_StringUtils::ellipsis();
    const int full = metrics.horizontalAdvance(text), dotsWidth = metrics.horizontalAdvance(dots);
    const int base = width.startsWith("full") ? full : width.startsWith("dots") ? dotsWidth : 0;
    const int pixels = (width == "half" ? full / 2 : base) - width.section('-', 1).toInt();

    QString result = text;
    QCOMPARE(Kib_StringUtils::computeEllipsisText(result, metrics, pixels), shortened);
    if (!shortened || result.isEmpty()) {
        QVERIFY(shortened ? dotsWidth > pixels : result == text);
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
    int next = int(head.size());
    while (next < text.size() && (next == head.size() || text.at(next - 1).isSpace())) {
        finder.setPosition(next);
        next = int(finder.toNextBoundary());
    }
    if (next < text.size())
        QVERIFY(metrics.horizontalAdvance(text.left(next).trimmed() + dots) > pixels);
}

void tst_KibServices::messageButtons_data()
{
    QTest::addColumn<QString>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<QString>("expected"); // "shown > default > result", -1: 0 and a warning

    QTest::newRow("no buttons means OK") << QString() << 0 << QVariant(1) << "OK > 1 > 1";
    QTest::newRow("blanks and empty entries dropped")
        << " A | |B|" << 2 << QVariant(2) << "A|B > 2 > 2";
    QTest::newRow("default past the end") << "A|B" << 5 << QVariant(2) << "A|B > 1 > 2";
    QTest::newRow("closed without a button") << "A|B" << 1 << QVariant(0) << "A|B > 1 > 0";
    QTest::newRow("answer past the buttons") << "A|B" << 1 << QVariant(3) << "A|B > 1 > -1";
    QTest::newRow("answer not a number") << "A|B" << 1 << QVariant("B") << "A|B > 1 > -1";
    QTest::newRow("answer as a map")
        << "A|B" << 1 << QVariant(QVariantMap { { "button", 2 } }) << "A|B > 1 > 2";
}

void tst_KibServices::messageButtons()
{
    QFETCH(QString, buttons);
    QFETCH(int, defaultButton);
    QFETCH(QVariant, reply);
    QFETCH(QString, expected);

    const auto *requests = respondWith(reply);
    const short result = short(expected.section(" > ", 2).toInt());
    if (result < 0)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kib_UIDialog::UIdialog, the responder answered"));
    QCOMPARE(Kib_UIDialog::UIdialog("Save?", buttons, short(defaultButton),
                                    Kib_UIDialog::UIicon_Caution, QString(), true, QString()),
             std::max(result, short(0)));
    QCOMPARE(requests->size(), 1);
    const Kib_UIDialog::Request &request = requests->first();
    QCOMPARE(request.buttonList.join('|') + " > " + QString::number(request.defaultButton),
             expected.section(" > ", 0, 1));
}

void tst_KibServices::userInput_data()
{
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<int>("minimum"); // of the validator, up to 99; -1: none
    QTest::addColumn<QString>("text"); // afterwards; "Scene 1" when not accepted
    QTest::addColumn<QString>("warning");

    const QString none;
    QTest::newRow("accepted") << QVariant("Scene 2") << -1 << "Scene 2" << none;
    QTest::newRow("cancelled") << QVariant() << -1 << "Scene 1" << none;
    QTest::newRow("validator accepts") << QVariant("42") << 0 << "42" << none;
    QTest::newRow("intermediate is not acceptable") << QVariant("5") << 10 << "Scene 1"
                                                    << "is not acceptable";
    QTest::newRow("answer not a text") << QVariant(7) << -1 << "Scene 1"
                                       << "instead of a text";
}

void tst_KibServices::userInput()
{
    QFETCH(QVariant, reply);
    QFETCH(int, minimum);
    QFETCH(QString, text);
    QFETCH(QString, warning);

    QIntValidator validator(minimum, 99);
    const auto *requests = respondWith(reply);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kib_UIDialog::GetUserInput, .*" + warning));
    QString line = "Scene 1";
    QCOMPARE(Kib_UIDialog::GetUserInput("Name:", line, "Rename", nullptr,
                                        minimum < 0 ? nullptr : &validator),
             text != "Scene 1");
    QCOMPARE(line, text);
    QCOMPARE(requests->first().validator, minimum < 0 ? nullptr : &validator);
}

void tst_KibServices::editMenuFocus_data()
{
    // "steps | current | answers | changes". Steps on commanders A and B: "in", "out" (focus to
    // another widget), "popup" (focus to a popup), "del" (destroyed), each followed by the
    // commander. The answers of the focus-out steps: "+" true.
    QTest::addColumn<QString>("row");

    QTest::newRow("focus moves") << "inA inB | B |  | 2";
    QTest::newRow("focus in twice") << "inA inA | A |  | 1";
    QTest::newRow("popup keeps") << "inA popupA | A | - | 1";
    QTest::newRow("popup, then elsewhere") << "inA popupA outA |  | -+ | 2";
    QTest::newRow("late focus out of the previous one") << "inA inB outA | B | + | 2";
    QTest::newRow("current destroyed") << "inA delA |  |  | 2";
    QTest::newRow("other destroyed") << "inA inB delA | B |  | 2";
}

void tst_KibServices::editMenuFocus()
{
    QFETCH(QString, row);
    const QStringList part = row.split(" | "); // steps, current, answers, changes
    const int changes = part[3].toInt();

    Kic_EditMenu &menu = Kic_EditMenu::instance();
    std::map<QChar, std::unique_ptr<FakeCommander>> commanders;
    commanders['A'] = std::make_unique<FakeCommander>();
    commanders['B'] = std::make_unique<FakeCommander>();
    QSignalSpy spy(&menu, &Kic_EditMenu::currentCommanderChanged);
    QString given;
    for (const QString &step : part[0].split(' ')) {
        const QString verb = step.chopped(1);
        Kic_Commander *commander = commanders[step.back()].get();
        if (verb == "in")
            menu.focusInEvent(commander);
        else if (verb == "del")
            commanders[step.back()].reset();
        else
            given += menu.isFocusOutEvent(commander, verb == "popup") ? '+' : '-';
    }
    QCOMPARE(given, part[2]);
    Kic_Commander *expected = part[1].isEmpty() ? nullptr : commanders[part[1].front()].get();
    QCOMPARE(menu.currentCommander(), expected);
    QCOMPARE(spy.size(), changes);
    if (changes > 0)
        QCOMPARE(spy.last().first().value<Kic_Commander *>(), expected);
}

QTEST_MAIN(tst_KibServices)
#include "tst_kibservices.moc"
