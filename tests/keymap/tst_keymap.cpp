// The key map: reading keymap files and their faults, languages, changes and their one
// notification, dispatch to scripts, actions and menu items, saving custom mappings, the
// conflict report; the key-sequence editor; keys in a line edit.

#include "Bnde_ActionModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_Initialize.h"
#include "Kiv_KeyEdit.h"
#include "Kiv_KeymapMgr.h"
#include "Kiv_LineEdit.h"
#include "Kiv_MenuBar.h"
#include "TaskScheduler.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

Kiv_KeymapMgr &keymap()
{
    return *Kiv_KeymapMgr::getInstance();
}

QString entries(const QString &iContext, const QString &iBody)
{
    return QString("<KeyMappings><Entries Context=\"%1\">%2</Entries></KeyMappings>")
        .arg(iContext, iBody);
}

// The current table as "key=action" lines.
QStringList table()
{
    QStringList lines;
    const Kiv_KeymapMgr::KeyMapping &map = keymap().KeyMap(keymap().currentLang());
    for (auto it = map.constBegin(); it != map.constEnd(); ++it)
        lines << it.key() + '=' + it->action + (it->actionScript.isEmpty() ? "" : "!")
                + it->actionScript;
    return lines;
}

QKeyEvent press(Qt::Key iKey, Qt::KeyboardModifiers iModifiers = {}, const QString &iText = {})
{
    return QKeyEvent(QEvent::KeyPress, iKey, iModifiers, iText);
}

void write(const QString &iPath, const QString &iText)
{
    QFile file(iPath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(iText.toUtf8());
}

struct Actions
{
    Actions()
    {
        disabled.setIsEnabledDefault(false);
        for (Bnd_ModelBase *m :
             std::initializer_list<Bnd_ModelBase *> { &go, &disabled, &changed, &flag })
            m->Publish();
    }
    QStringList log;
    Bnde_ActionModelWithType<Bndt_Action<void()>> go { "K.Go", [this] {
                                                          log << "Go";
                                                      } };
    Bnde_ActionModelWithType<Bndt_Action<void()>> disabled { "K.Disabled", [this] {
                                                                log << "Disabled";
                                                            } };
    int changes = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> changed { "KeymapsChanged.Action", [this] {
                                                               ++changes;
                                                           } };
    Bnde_SimpleValue<bool> flag { "K.Flag", false };
};

} // namespace

class tst_Keymap : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void reading_data();
    void reading();
    void includesEndWithoutCycles();
    void languages();
    void changesAreAnnouncedOnce();
    void handleAction();
    void customMappingsRoundTrip();
    void conflicts();
    void keyEdit();
    void lineEditKeys();
};

void tst_Keymap::initTestCase()
{
    Kiv_Initialize(QCoreApplication::applicationFilePath().toLocal8Bit().constData());
    TaskScheduler::instance().setManualClock(true);
}

void tst_Keymap::init()
{
    keymap().setupCurrentLang(0);
    keymap().clearMgr();
    keymap().setMenuBar(nullptr);
}

void tst_Keymap::reading_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("log"); // "" for none
    QTest::addColumn<QStringList>("table");

    const QString go = "<Action>K.Go</Action>";
    QTest::newRow("key attribute, no element")
        << entries("C", "<Entry id=\"A\" key=\"Ctrl+S\">" + go + "</Entry>") << ""
        << QStringList { "C::Ctrl+S=K.Go" };
    QTest::newRow("elements override attributes; comments and text skipped")
        << entries("C",
                   "<!-- c --> text <Entry id=\"A\" key=\"X\"><KeySequence>Shift+F1"
                   "</KeySequence><Context>D</Context><ActionScript>K.Go()</ActionScript>"
                   "<Unknown/></Entry>")
        << "" << QStringList { "D::Shift+F1=!K.Go()" };
    QTest::newRow("the later duplicate wins")
        << entries("C",
                   "<Entry key=\"F2\">" + go
                       + "</Entry><Entry key=\"F2\"><Action>K.Other"
                         "</Action></Entry>")
        << "" << QStringList { "C::F2=K.Other" };
    QTest::newRow("no key: the file fails from there")
        << entries("C",
                   "<Entry key=\"F3\">" + go + "</Entry><Entry id=\"B\">" + go
                       + "</Entry><Entry key=\"F4\">" + go + "</Entry>")
        << "^Kiv_KeymapMgr::parseEntry, missing tag KeySequence$" << QStringList { "C::F3=K.Go" };
    QTest::newRow("no context") << entries("", "<Entry key=\"F3\"/>")
                                << "^Kiv_KeymapMgr::parseEntry, missing tag Context$"
                                << QStringList {};
    QTest::newRow("wrong root") << QString("<Keys/>")
                                << "^Kiv_KeymapMgr::xmlDocParser, unexpected top-level tag <Keys>$"
                                << QStringList {};
    QTest::newRow("stranger under the root")
        << QString("<KeyMappings><Entry/></KeyMappings>")
        << "^Kiv_KeymapMgr::xmlParser, unexpected tag <Entry>$" << QStringList {};
    QTest::newRow("stranger among entries")
        << entries("C", "<Keys/>") << "^Kiv_KeymapMgr::xmlParser, unexpected tag <Keys>$"
        << QStringList {};
    QTest::newRow("stranger among includes")
        << QString("<KeyMappings><Includes><Path/></Includes></KeyMappings>")
        << "^Kiv_KeymapMgr::parseIncludes, unexpected tag <Path>$" << QStringList {};
    QTest::newRow("prefixed root") << QString("<x:KeyMappings xmlns:x=\"u\"/>")
                                   << "unexpected top-level tag <x:KeyMappings>$" << QStringList {};
    QTest::newRow("a tag with too many attributes")
        << entries("C", "<Entry key=\"F1\"" + QString(" a%1=\"\"").repeated(70).arg(0) + "/>")
        << "^Kiv_KeymapMgr load parse error a tag with more than 64 attributes$" << QStringList {};
    QTest::newRow("malformed") << QString("<KeyMappings>")
                               << "^Kiv_KeymapMgr load parse error .* at line 1 column"
                               << QStringList {};
    QTest::newRow("deep and unclosed, after good entries")
        << entries("C", "<Entry key=\"F1\"/>").chopped(14) + QString("<Entries>").repeated(9999)
        << "^Kiv_KeymapMgr load parse error .* at line 1 column" << QStringList {};
}

void tst_Keymap::reading()
{
    QFETCH(QString, xml);
    QFETCH(QString, log);
    QFETCH(QStringList, table);
    if (!log.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(log));
    QCOMPARE(keymap().loadFromXMLString(xml, 0), log.isEmpty());
    QCOMPARE(::table(), table);
}

void tst_Keymap::includesEndWithoutCycles()
{
    QTemporaryDir dir;
    keymap().setKeyMapsDirPath(dir.path() + '/');
    write(dir.filePath("A.xml"), "<KeyMappings><Includes><File>B</File></Includes></KeyMappings>");
    write(dir.filePath("B.xml"),
          "<KeyMappings><Includes><File>A</File></Includes>"
              + entries("C", "<Entry key=\"F1\"/>").mid(13));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("includes itself or includes too many files"));
    QVERIFY(!keymap().load("A", 0));
    QTest::ignoreMessage(QtWarningMsg, "Kiv_KeymapMgr::load cannot open resource Missing");
    QVERIFY(!keymap().load("Missing", 0));
}

void tst_Keymap::languages()
{
    QTemporaryDir dir;
    const auto file = [&](const char *iName, const char *iKey) {
        write(dir.filePath(QString(iName) + ".xml"),
              entries("C",
                      QString("<Entry key=\"%1\"><Action>%2</Action></Entry>").arg(iKey, iName)));
    };
    file("Keys", "F1");
    file("Keys-French", "F2");
    file("Keys-English", "F3"); // English is the default table, never its own
    file("Keys-Klingon", "F4"); // a language the system does not know
    file("Other-German", "F5"); // not this base name
    file("Keys-german", "F6"); // a language name is written as the system writes it
    keymap().loadAll(dir.path() + '/', "Keys");
    QVERIFY(keymap().loaded(12));
    QVERIFY(!keymap().loaded(7));
    QCOMPARE(keymap().lookup(QKeySequence("F2"), "C", 12), QString("Keys-French"));
    QCOMPARE(keymap().lookup(QKeySequence("F1"), "C", 12), QString()); // French has its own
    QCOMPARE(keymap().lookup(QKeySequence("F1"), "C", 7), QString("Keys")); // German: default
    QCOMPARE(keymap().lookup(QKeySequence("F3"), "C", 9), QString());
    for (const auto &[layout, expected] : { std::pair { "12", "Keys-French" }, { "9", "" } }) {
        qputenv("KIV_KEYBOARD_LANGUAGE", layout);
        QCOMPARE(keymap().lookup(QKeySequence("F2"), "C"), QString(expected));
    }
    qunsetenv("KIV_KEYBOARD_LANGUAGE");
    QCOMPARE(keymap().setupCurrentLang(9), 0);

    // A language without a table of its own reads and changes the default one: a change never
    // makes an empty table that would hide it.
    keymap().setupCurrentLang(10);
    keymap().removeKeysOfContext("X");
    QVERIFY(!keymap().loaded(10));
    QCOMPARE(keymap().lookup(QKeySequence("F1"), "C", 10), QString("Keys"));
}

void tst_Keymap::changesAreAnnouncedOnce()
{
    Actions actions;
    TaskScheduler::instance().advance(1); // what earlier steps announced
    actions.changes = 0;
    for (int i = 0; i < 10; ++i)
        keymap().add(QKeySequence(Qt::Key_F1 + i), "K.Go", "C::Go", "", "C", "", false);
    QVERIFY(!keymap().add(QKeySequence(), "K.Go", "C::Go", "", "C", "", false));
    QCOMPARE(actions.changes, 0); // not at once
    TaskScheduler::instance().advance(1);
    QCOMPARE(actions.changes, 1);
    QVERIFY(keymap().actionSetup("C::Go", "K.Flag = true", "Flags", true));
    keymap().removeKeysOfContext("C");
    TaskScheduler::instance().advance(1);
    QCOMPARE(actions.changes, 2);
    QVERIFY(table().isEmpty());
}

void tst_Keymap::handleAction()
{
    Actions actions;
    QVERIFY(keymap().loadFromXMLString(
        entries("C",
                "<Entry key=\"F1\"><ActionScript>K.Flag = true</ActionScript></Entry>"
                "<Entry key=\"F2\"><Action>K.Go</Action></Entry>"
                "<Entry key=\"F3\"><Action>K.Disabled</Action></Entry>"
                "<Entry key=\"F4\"><ActionScript>K.Missing()</ActionScript>"
                "<Action>K.Go</Action></Entry>"
                "<Entry key=\"Ctrl+A\"><Action>K.Go</Action></Entry>"),
        0));
    const auto handled
        = [](Qt::Key iKey, Qt::KeyboardModifiers iModifiers = {}, const char *iContext = "C") {
              QKeyEvent event = press(iKey, iModifiers);
              return keymap().handleAction(&event, iContext, Bnd_ConnectionEnvironmentPtr());
          };
    QVERIFY(handled(Qt::Key_F1));
    QVERIFY(actions.flag.getValue());
    QVERIFY(handled(Qt::Key_F2));
    QVERIFY(!handled(Qt::Key_F3)); // disabled: the key goes on
    QVERIFY(!handled(Qt::Key_F4)); // the script does not connect: its action does not stand in
    QVERIFY(handled(Qt::Key_A, Qt::ControlModifier | Qt::KeypadModifier)); // keypad bit dropped
    QVERIFY(!handled(Qt::Key_F2, {}, "Other")); // only the exact context
    QCOMPARE(actions.log, QStringList({ "Go", "Go" }));

    // A menu action runs the enabled command of the menu bar with that accelerator.
    Kiv_MenuBar bar(nullptr, QFINDTESTDATA("../menu/Menus/TestMenuBar.xml").toLocal8Bit());
    bar.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    keymap().setMenuBar(&bar);
    Bnde_ActionModelWithType<Bndt_Action<void()>> tGo("T.Go", [&] { actions.log << "Menu"; });
    QVERIFY(tGo.Publish());
    bar.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    keymap().add(QKeySequence("Ctrl+U"), "", "W::MenuAction::Ctrl+O", "", "W", "", false);
    keymap().add(QKeySequence("M"), "", "W::MenuAction", "", "W", "", false);
    QVERIFY(handled(Qt::Key_U, Qt::ControlModifier, "W"));
    QVERIFY(handled(Qt::Key_M, {}, "W"));
    QTRY_COMPARE(actions.log, QStringList({ "Go", "Go", "Menu", "Menu" }));
    const Kiv_KeymapMgr::KeyMappingInfo *info = keymap().lookupInfo(QKeySequence("Ctrl+U"), "W");
    QCOMPARE(keymap().getMenuActionLabel(QKeySequence("Ctrl+U"), *info), QString("Open..."));
    tGo.setIsEnabledDefault(false); // a disabled command is not run, the key is used all the same
    QVERIFY(handled(Qt::Key_M, {}, "W"));
    QCoreApplication::processEvents();
    QCOMPARE(actions.log.size(), 4);
}

void tst_Keymap::customMappingsRoundTrip()
{
    keymap().add(QKeySequence("Ctrl+J"), "K.Go", "C::Jump", "K.Flag = true", "C", "Jump", true);
    keymap().add(QKeySequence("Ctrl+K"), "K.Go", "C::Kept", "", "C", "Shipped", false);
    const QString xml = keymap().customKeyMappingsToXml();
    QVERIFY(xml.contains("<CustomKeyMapping/>"));
    keymap().clearMgr();
    QVERIFY(keymap().loadFromXMLString(xml, 0));
    // Key, context and action come back; script, identifier and description do not.
    QCOMPARE(table(), QStringList { "C::Ctrl+J=K.Go" });
    const Kiv_KeymapMgr::KeyMappingInfo *info = keymap().lookupInfo(QKeySequence("Ctrl+J"), "C");
    QVERIFY(info->custom && info->description.isEmpty() && info->actionID == "C::");
}

void tst_Keymap::conflicts()
{
    Actions actions;
    Kiv_MenuBar bar(nullptr, QFINDTESTDATA("../menu/Menus/TestMenuBar.xml").toLocal8Bit());
    bar.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    keymap().setMenuBar(&bar);
    QVERIFY(keymap().loadFromXMLString(
        entries("C",
                "<Entry key=\"Ctrl+O\"><Action>K.Go</Action></Entry>"
                "<Entry key=\"F1\"><Action>K.Missing</Action></Entry>"
                "<Entry key=\"F2\"><ActionScript>K.Flag = K.Nothing</ActionScript></Entry>"
                "<Entry id=\"MenuAction\" key=\"Ctrl+F9\"/>"
                "<Entry id=\"MenuAction\" key=\"M\"/>"
                "<Entry id=\"MenuAction\" key=\"L\"/>"
                "<Entry key=\"F3\"><Action>K.Go</Action></Entry>"),
        0));
    QCOMPARE(keymap().conflicts("C"),
             QStringList({ "C::Ctrl+F9: the menu action finds no menu item",
                           "C::Ctrl+O: also the accelerator of the menu item \"&Open...\"",
                           "C::F1: the action \"K.Missing\" resolves to nothing",
                           "C::F2: the script \"K.Flag = K.Nothing\" does not connect",
                           "C::L: the menu item \"Loop\" is no command" }));
    QVERIFY(keymap().conflicts("Other").isEmpty());
}

void tst_Keymap::keyEdit()
{
    Bnde_SimpleValue<QString> model(QStringLiteral("K.Key"), QStringLiteral("F1"));
    QVERIFY(model.Publish());
    int writes = 0;
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> observer("K.Key");
    observer.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        writes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    Kiv_KeyEdit edit(nullptr, "edit", "K.Key");
    edit.makeConnections(Bnd_ConnectionEnvironmentPtr());
    QCOMPARE(edit.text(), QString("F1"));
    QTest::keyClick(&edit, Qt::Key_Shift); // a bare modifier changes nothing
    QCOMPARE(edit.text(), QString("F1"));
    QTest::keyClick(&edit, Qt::Key_A, Qt::ShiftModifier);
    QCOMPARE(edit.text(), QString("Shift+A"));
    QCOMPARE(model.getValue(), QString("Shift+A"));
    QCOMPARE(writes, 1);
    model.setValue("Ctrl+B"); // shown, not written back
    QCOMPARE(edit.text(), QString("Ctrl+B"));
    QCOMPARE(writes, 2);
    QCOMPARE(edit.getInitialValue(), QString("F1"));
    edit.SetTextConnection(""); // changes nothing
    QCOMPARE(edit.getTextConnection(), QByteArray("K.Key"));

    Kiv_KeyEdit published(nullptr, "published", "publish K.Published");
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> reader("K.Published");
    QTest::keyClick(&published, Qt::Key_F3, Qt::ControlModifier | Qt::KeypadModifier);
    QCOMPARE(reader.getValue(), QString("Ctrl+F3"));
}

void tst_Keymap::lineEditKeys()
{
    Actions actions;
    QVERIFY(keymap().loadFromXMLString(
        "<KeyMappings>"
            + entries("Hotkey", "<Entry key=\"F5\"><Action>Name|typed</Action></Entry>")
                  .mid(13)
                  .chopped(14)
            + entries("LineEdit", "<Entry key=\"F6\"><Action>K.Go</Action></Entry>")
                  .mid(13)
                  .chopped(14)
            + entries("MainWindow", "<Entry key=\"F7\"><Action>K.Go</Action></Entry>")
                  .mid(13)
                  .chopped(14)
            + "</KeyMappings>",
        0));
    QWidget window;
    auto *edit = new Kiv_LineEdit(&window, "edit");
    edit->makeConnections(Bnd_ConnectionEnvironmentPtr());
    QTest::keyClick(edit, Qt::Key_F5); // hot keys are off
    QCOMPARE(edit->text(), QString());
    edit->setAllowHotKeys(true);
    QTest::keyClicks(edit, "ab");
    QTest::keyClick(edit, Qt::Key_Left);
    QTest::keyClick(edit, Qt::Key_F5);
    QCOMPARE(edit->text(), QString("atypedb"));
    QTest::keyClick(edit, Qt::Key_F6);
    QCOMPARE(actions.log, QStringList { "Go" });
    QKeyEvent windowKey = press(Qt::Key_F7);
    QCoreApplication::sendEvent(edit, &windowKey);
    QVERIFY(!windowKey.isAccepted()); // on to the window
    QCOMPARE(actions.log, QStringList { "Go" });
}

QTEST_MAIN(tst_Keymap)
#include "tst_keymap.moc"
