// The menu model and its Qt realisation: separators, titles, every segment kind against its
// models, rebuilding on opening, accelerators, factories, faulty descriptions and the writers.

#include "Bnd_Utils.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"
#include "Kib_Resource.h"
#include "Kiv_Initialize.h"
#include "Kiv_MenuBar.h"
#include "Kiv_PopupMenu.h"
#include "Kiv_ScriptRunner.h"
#include "Mnu_CommandSegment.h"
#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"
#include "Mnu_SeparatorSegment.h"

#include <QtTest>

#include <sstream>

namespace {

// The models the test descriptions name, under "T.".
struct Models
{
    Models()
    {
        recent.add<Bnde_Array<QString>>("name", std::vector<QString> { "a.prj", "b.prj" });
        selected = recent.add<Bnde_Array<bool>>("selected", std::vector<bool> { false, false });
        disabled.setIsEnabledDefault(false);
        for (Bnd_ModelBase *m : std::initializer_list<Bnd_ModelBase *> {
                 &title, &flag, &current, &name, &go, &disabled, &recent, &viewVisible })
            m->Publish();
    }
    int runs = 0;
    Bnde_SimpleValue<QString> title { "T.Title", "" };
    Bnde_SimpleValue<bool> flag { "T.Flag", true };
    Bnde_SimpleValue<bool> viewVisible { "T.ViewVisible", true };
    Bnde_SimpleValue<long> current { "T.Current", 169 };
    Bnde_SimpleValue<QString> name { "T.Name", "" };
    Bnde_ActionModelWithType<Bndt_Action<void()>> go { "T.Go", [this] {
                                                          ++runs;
                                                      } };
    Bnde_ActionModelWithType<Bndt_Action<void()>> disabled { "T.Disabled", [] {
                                                            } };
    Bnde_Container recent { "T.Recent" };
    Bnde_Array<bool> *selected = nullptr;
};

QByteArray menu(const QString &iBody, const QString &iOwn = "<Name>M</Name>")
{
    return ("<Menu>" + iOwn + iBody + "</Menu>").toUtf8();
}

// "a" a command "a", "-a" a hidden one, "|" a separator.
QString shorthand(const QString &iSegments)
{
    QString xml;
    for (const QString &s : iSegments.split(' ', Qt::SkipEmptyParts)) {
        if (s == "|")
            xml += "<Separator/>";
        else
            xml += QString("<CommandSegment><Name>%1</Name><Text>%1</Text>%2</CommandSegment>")
                       .arg(s.mid(s.startsWith('-')),
                            s.startsWith('-')
                                ? "<VisibleConnectionName>T.No</VisibleConnectionName>"
                                : "");
    }
    return xml;
}

// What the popup shows: texts, "|" for separators, "(x)" checked, "~" disabled.
QString shown(const QMenu *iMenu)
{
    QStringList items;
    for (const QAction *a : iMenu->actions())
        items << (a->isSeparator() ? QString("|")
                                   : QString(a->isEnabled() ? "" : "~")
                          + (a->isChecked() ? "(" + a->text() + ")" : a->text()));
    return items.join(' ');
}

std::unique_ptr<Mnu_QtManager> opened(const QByteArray &iXml)
{
    auto manager = std::make_unique<Mnu_QtManager>();
    if (!manager->parseDescription(iXml, "test"))
        return nullptr;
    manager->makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    manager->instantiateMenus();
    return manager;
}

QString written(Mnu_QtMenuBarManager &iBar, Mnu_Segment::saveFormat iFormat)
{
    std::ostringstream out;
    iBar.saveMenuBar(out, iFormat == Mnu_Segment::XMLFormat ? "" : "TestMenuBar", iFormat);
    return QString::fromStdString(out.str());
}

const QString cTestBar = QFINDTESTDATA("Menus/TestMenuBar.xml");

} // namespace

class tst_Menus : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void separators_data();
    void separators();
    void titles_data();
    void titles();
    void segmentsFollowTheirModels();
    void triggeringWritesTheModels();
    void commandRunsAfterTheMenuCloses();
    void rebuiltOnEveryOpening();
    void insertSegment_data();
    void insertSegment();
    void accelerators();
    void factories();
    void faultyDescriptions_data();
    void faultyDescriptions();
    void roundTrip_data();
    void roundTrip();
    void generatedSource();
    void widgets();
};

void tst_Menus::initTestCase()
{
    Kiv_Initialize(QCoreApplication::applicationFilePath().toLocal8Bit().constData());
}

void tst_Menus::separators_data()
{
    QTest::addColumn<QString>("segments");
    QTest::addColumn<QString>("expected");
    QTest::newRow("at the start") << "| a"
                                  << "~a";
    QTest::newRow("doubled") << "a | | b"
                             << "~a | ~b";
    QTest::newRow("at the end") << "a |"
                                << "~a";
    QTest::newRow("after hidden segments") << "a | -b -c"
                                           << "~a";
    QTest::newRow("hidden between") << "a | -b | c"
                                    << "~a | ~c";
    QTest::newRow("only separators") << "| |"
                                     << "";
}

void tst_Menus::separators()
{
    QFETCH(QString, segments);
    QFETCH(QString, expected);
    const auto manager = opened(menu(shorthand(segments)));
    QCOMPARE(shown(manager->getPopupMenu()), expected);
    QCOMPARE(int(manager->getMenu()->itemIDs().size()), manager->getPopupMenu()->actions().size());
}

void tst_Menus::titles_data()
{
    QTest::addColumn<QString>("own"); // the menu's own elements
    QTest::addColumn<QString>("model"); // the title model's value
    QTest::addColumn<QString>("expected"); // "-": hidden
    QTest::newRow("name only") << "<Name>N</Name>"
                               << ""
                               << "N";
    QTest::newRow("text") << "<Name>N</Name><Text>T</Text>"
                          << ""
                          << "T";
    QTest::newRow("model") << "<Text>T</Text><TextConnectionName>T.Title</TextConnectionName>"
                           << "From model"
                           << "From model";
    QTest::newRow("empty model: the text")
        << "<Text>T</Text><TextConnectionName>T.Title</TextConnectionName>"
        << ""
        << "T";
    QTest::newRow("visible model unreachable")
        << "<Name>N</Name><VisibleConnectionName>T.No</VisibleConnectionName>"
        << ""
        << "-";
}

void tst_Menus::titles()
{
    QFETCH(QString, own);
    QFETCH(QString, model);
    QFETCH(QString, expected);
    Models models;
    models.title.setValue(model);
    const auto manager = opened(menu(shorthand("a"), own));
    QCOMPARE(manager->isInstantiated(), expected != "-");
    QCOMPARE(manager->isInstantiated() ? manager->getPopupMenu()->title() : "-", expected);
    QCOMPARE(manager->isEmpty(), expected == "-");
}

void tst_Menus::segmentsFollowTheirModels()
{
    Models models;
    Mnu_QtMenuBarManager bar;
    QVERIFY(bar.xmlParser(cTestBar.toLocal8Bit().constData()));
    QCOMPARE(bar.getMenuCount(), 2);
    bar.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    Mnu_QtManager *file = bar.getMenuAt(0);
    Mnu_QtManager *view = bar.getMenuAt(1);
    file->instantiateMenus();
    view->instantiateMenus();
    QCOMPARE(shown(file->getPopupMenu()), "&Open... a.prj b.prj | Rename \"clip\"");
    QCOMPARE(shown(view->getPopupMenu()), "(Loop) 4:3 (16:9) a.prj b.prj Markers & cues");
    // Readiness follows the action's enabled state; a missing model disables the toggle.
    models.go.setIsEnabledDefault(false);
    models.flag.UnPublish();
    file->aboutToShow();
    view->aboutToShow();
    QCOMPARE(shown(file->getPopupMenu()), "~&Open... a.prj b.prj | Rename \"clip\"");
    QCOMPARE(shown(view->getPopupMenu()).section(" ", 0, 1), QString("~Loop 4:3"));
    QVERIFY(!bar.tstGetItemEnabled("View.Loop"));
    QCOMPARE(bar.tstGetItemText("View.Markers.Add"), QString("Add"));
    QVERIFY(bar.tstGetItemChecked("View.Aspect.1"));
    QVERIFY(!bar.tstGetItemVisible("View.Nothing"));
    models.viewVisible.setValue(false);
    QVERIFY(!view->getPopupMenu()->menuAction()->isVisible()); // at once, not on the next opening
}

void tst_Menus::triggeringWritesTheModels()
{
    Models models;
    const auto manager = opened(menu(
        "<BooleanSegment><Name>B</Name><BooleanConnectionName>T.Flag</BooleanConnectionName>"
        "</BooleanSegment>"
        "<ListSegment><Name>L</Name><ItemsConnectionName>T.Recent</ItemsConnectionName>"
        "</ListSegment>"
        "<RadioItemsSegment><Name>R</Name><CurrentItemConnectionName>T.Current"
        "</CurrentItemConnectionName><RadioItem><Text>x</Text><ID>43</ID></RadioItem>"
        "<RadioItem><Text>y</Text><ID>169</ID></RadioItem></RadioItemsSegment>"
        "<RadioListSegment><Name>RL</Name><ItemsConnectionName>T.Recent</ItemsConnectionName>"
        "<CurrentItemConnectionName>T.Current</CurrentItemConnectionName></RadioListSegment>"));
    QList<QAction *> items = manager->getPopupMenu()->actions();
    QCOMPARE(items.size(), 7);
    int writes = 0;
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> observer("T.Current");
    observer.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        writes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    items[0]->trigger(); // the toggle writes its negation
    QCOMPARE(models.flag.getValue(), false);
    items[2]->trigger(); // the second list item toggles only its own ".selected"
    QCOMPARE(models.selected->values(), std::vector<bool>({ false, true }));
    QVERIFY(items[2]->isChecked());
    items[4]->trigger(); // the checked radio item again: nothing is written
    QCOMPARE(writes, 0);
    items[3]->trigger();
    QCOMPARE(models.current.getValue(), 43L);
    QVERIFY(items[3]->isChecked() && !items[4]->isChecked());
    items[5]->trigger(); // radio list: the index
    QCOMPARE(models.current.getValue(), 0L);
    QCOMPARE(writes, 2);
    models.current.setValue(1); // the check follows the model at once
    QVERIFY(items[6]->isChecked() && !items[5]->isChecked());
    manager->getMenu()->itemActivated(Mnu_MenuID(this)); // never made: ignored
}

void tst_Menus::commandRunsAfterTheMenuCloses()
{
    Models models;
    for (bool queue : { true, false }) {
        if (!queue) // the queue refuses: a zero-delay timer runs it
            Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
        const auto manager = opened(menu(shorthand("a").replace("</Name>",
                                                                "</Name><ActionScript>T.Go()"
                                                                "</ActionScript>")));
        const int before = models.runs;
        manager->getPopupMenu()->actions().first()->trigger();
        QCOMPARE(models.runs, before); // not inside the menu's own signal
        QTRY_COMPARE(models.runs, before + 1);
        Kiv_InstallScriptRunner();
    }
}

void tst_Menus::rebuiltOnEveryOpening()
{
    Models models;
    const auto manager
        = opened(menu("<CommandSegment><Name>a</Name><Text>static</Text><TextConnectionName>T.Title"
                      "</TextConnectionName><EnableConnectionName>T.Flag</EnableConnectionName>"
                      "<ActionScript>T.Go()</ActionScript></CommandSegment>"));
    QCOMPARE(shown(manager->getPopupMenu()), "static"); // an empty text model: the static text
    models.title.setValue("live");
    models.flag.setValue(false);
    QCOMPARE(shown(manager->getPopupMenu()), "static");
    emit manager->getPopupMenu()->aboutToShow();
    QCOMPARE(shown(manager->getPopupMenu()), "~live");
    // A name set later reconnects at once, in a blank environment.
    auto *segment = manager->getMenu()->getSegmentAt(0);
    segment->setEnableConnectionName("T.ViewVisible");
    emit manager->getPopupMenu()->aboutToShow();
    QCOMPARE(shown(manager->getPopupMenu()), "live");
}

void tst_Menus::insertSegment_data()
{
    QTest::addColumn<int>("reference"); // -1: none, 9: not in the menu
    QTest::addColumn<bool>("after");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no reference: in front") << -1 << true << "~n ~a ~b";
    QTest::newRow("before the second") << 1 << false << "~a ~n ~b";
    QTest::newRow("after the second") << 1 << true << "~a ~b ~n";
    QTest::newRow("unknown reference: at the end") << 9 << false << "~a ~b ~n";
}

void tst_Menus::insertSegment()
{
    QFETCH(int, reference);
    QFETCH(bool, after);
    QFETCH(QString, expected);
    const auto manager = opened(menu(shorthand("a b")));
    Mnu_Menu *m = manager->getMenu();
    Mnu_CommandSegment stranger;
    auto *segment = new Mnu_CommandSegment;
    segment->setName("n");
    segment->setItemText("n");
    m->insertSegment(segment,
                     reference < 0        ? nullptr
                         : reference == 9 ? &stranger
                                          : m->getSegmentAt(reference),
                     after);
    QCOMPARE(shown(manager->getPopupMenu()), expected); // rebuilt at once
    QVERIFY(m->removeSegment(segment));
    QVERIFY(!m->removeSegment(&stranger));
}

void tst_Menus::accelerators()
{
    Models models;
    const auto manager = opened(
        menu("<CommandSegment><Name>Own</Name><Accelerator>Ctrl+K</Accelerator></CommandSegment>"
             "<SubMenuSegment><Name>Sub</Name><Menu><Name>Sub</Name>"
             "<CommandSegment><Name>Inner</Name><Accelerator>Ctrl+K</Accelerator>"
             "</CommandSegment><CommandSegment><Name>Deep</Name><Accelerator>Ctrl+J"
             "</Accelerator></CommandSegment></Menu></SubMenuSegment>"));
    QCOMPARE(manager->getSegmentByAccelerator("Ctrl+K")->getName(), QString("Own"));
    QCOMPARE(manager->getSegmentByAccelerator("Ctrl+J")->getName(), QString("Deep"));
    QVERIFY(!manager->getSegmentByAccelerator("Ctrl+Q"));
    QVERIFY(manager->findAccel(QKeySequence("Ctrl+J"), false)); // found in the submenu
    QVERIFY(manager->findAccel(Qt::Key_J, Qt::ControlModifier, true)); // and freed
    QVERIFY(!manager->findAccel(QKeySequence("Ctrl+J"), false));
    QVERIFY(manager->findAccel(QKeySequence("Ctrl+K"), false));
}

namespace {
int gFirst = 0;
int gSecond = 0;
Mnu_QtManager *firstFactory(Mnu_QtManager *iManager)
{
    ++gFirst;
    iManager->getMenu()->setName("Made");
    iManager->getMenu()->addSegment(new Mnu_SeparatorSegment);
    return iManager;
}
Mnu_QtManager *secondFactory(Mnu_QtManager *iManager)
{
    ++gSecond;
    return iManager;
}
} // namespace

void tst_Menus::factories()
{
    int keyA = 0, keyB = 0;
    Mnu_QtManager::registerMenuFactory("Context", &keyA, firstFactory);
    Mnu_QtManager::registerMenuFactory("Context", &keyB, secondFactory);
    {
        Mnu_QtManager made(nullptr, "Menus\\Clips/Context"); // back-slashes, a path: the base name
        QCOMPARE(made.getMenu()->getName(), QString("Made"));
    }
    QCOMPARE(gFirst, 1);
    QCOMPARE(gSecond, 0);
    Mnu_QtManager::unregisterMenuFactory("Context", &keyA);
    Mnu_QtManager again(nullptr, "Context");
    QCOMPARE(gSecond, 1);
    Mnu_QtManager::unregisterMenuFactory("Context", &keyB);
    QVERIFY(!Mnu_QtManager::getMenuFactory("Context"));
}

void tst_Menus::faultyDescriptions_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("menuBar");
    QTest::addColumn<bool>("loads");
    QTest::addColumn<QString>("log"); // a regular expression; "" for none
    QTest::addColumn<int>("segments"); // of the first menu

    QTest::newRow("malformed") << QByteArray("<Menu><Name>") << false << false
                               << "^Mnu_Manager xmlParser parse error .* at line 1 column" << 0;
    QTest::newRow("menu bar as a popup") << QByteArray("<MenuBar/>") << false << false
                                         << "xmlDerivedParser unexpected root tag <MenuBar>" << 0;
    QTest::newRow("popup as a menu bar")
        << menu("") << true << false << "unexpected root tag <Menu>" << 0;
    QTest::newRow("stranger in the menu bar")
        << QByteArray("<MenuBar><Menu/><Toolbar/><Menu/></MenuBar>") << true << true
        << "unexpected tag <Toolbar> parsing <MenuBar>, continuing" << 0;
    QTest::newRow("unknown segment skipped")
        << menu("<Slider/>" + shorthand("a")) << false << true
        << "^Mnu_Segment::SegmentFactory - unknown segment tag <Slider>$" << 1;
    const auto radio = [](const char *iItem) {
        return menu(QString("<RadioItemsSegment><Name>R</Name><RadioItem>%1</RadioItem>"
                            "<RadioItem><Text>ok</Text><ID>2</ID></RadioItem></RadioItemsSegment>")
                        .arg(iItem));
    };
    QTest::newRow("radio item without an integer")
        << radio("<Text>x</Text><ID>two</ID>") << false << true << "can't get int from <two>" << 1;
    QTest::newRow("radio item with a stranger")
        << radio("<Text>x</Text><Colour/>") << false << true << "unknown tag <Colour> within" << 1;
    QTest::newRow("radio item without an ID")
        << radio("<Text>x</Text>") << false << true << "incomplete <ID> within <RadioItem>" << 1;
    QString deep = "<Menu><Name>M</Name>";
    for (int i = 0; i < 200; ++i)
        deep += "<SubMenuSegment><Menu>";
    QTest::newRow("nested too deep")
        << deep.toUtf8() << false << false << "nests elements deeper than" << 0;
}

void tst_Menus::faultyDescriptions()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, menuBar);
    QFETCH(bool, loads);
    QFETCH(QString, log);
    QFETCH(int, segments);
    if (!log.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(log));
    std::unique_ptr<Mnu_Manager> manager;
    if (menuBar)
        manager = std::make_unique<Mnu_QtMenuBarManager>();
    else
        manager = std::make_unique<Mnu_QtManager>();
    QCOMPARE(manager->parseDescription(xml, "test"), loads);
    auto *bar = dynamic_cast<Mnu_QtMenuBarManager *>(manager.get());
    Mnu_Menu *first
        = bar ? (bar->getMenuCount() ? bar->getMenuAt(0)->getMenu() : nullptr) : manager->getMenu();
    QCOMPARE(first ? first->getSegmentCount() : 0, segments);
    QVERIFY(!Mnu_QtManager().xmlParser("NoSuchDescription")); // missing: false, silently
}

void tst_Menus::roundTrip_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("TestMenuBar") << cTestBar;
    const QDir shipped(Kib_Resource::resourceFile("Menus"));
    for (const QString &name : shipped.entryList({ "*.xml" }))
        QTest::newRow(qPrintable(name)) << shipped.filePath(name);
}

// Every description reads, writes, reads back and writes the same text; a "&" survives.
void tst_Menus::roundTrip()
{
    QFETCH(QString, file);
    QFile in(file);
    QVERIFY(in.open(QIODevice::ReadOnly));
    const QByteArray xml = in.readAll();
    const bool isBar = xml.contains("<MenuBar>");
    const auto write = [isBar](const QByteArray &iXml) {
        std::ostringstream out;
        if (isBar) {
            Mnu_QtMenuBarManager bar;
            if (bar.parseDescription(iXml, "test"))
                bar.saveMenuBar(out, "", Mnu_Segment::XMLFormat);
        } else {
            Mnu_QtManager popup;
            if (popup.parseDescription(iXml, "test"))
                popup.savePopupMenu(out, "", Mnu_Segment::XMLFormat);
        }
        return QString::fromStdString(out.str());
    };
    const QString once = write(xml);
    QVERIFY(!once.isEmpty());
    QCOMPARE(write(once.toUtf8()), once);
    QCOMPARE(once.count("&amp;"), QString::fromUtf8(xml).count("&amp;"));
}

void tst_Menus::generatedSource()
{
    Mnu_QtMenuBarManager bar;
    QVERIFY(bar.xmlParser(cTestBar.toLocal8Bit().constData()));
    const QStringList lines = written(bar, Mnu_Segment::CodeFormat).split('\n');
    const QStringList expected {
        "/*",
        "\tGenerated code - DO NOT EDIT - all changes will be lost!",
        "\tFile: TestMenuBar.cpp",
    };
    QCOMPARE(lines.mid(0, 3), expected);
    for (const char *line :
         { "#include \"Mnu_QtMenuBarManager.h\"", "class TestMenuBar", "\tTestMenuBar(void);",
           "\tMnu_QtMenuBarManager::registerMenuBarFactory( \"TestMenuBar\", createMenuBarManager "
           ");",
           "\tMnu_QtMenuBarManager::unregisterMenuBarFactory( \"TestMenuBar\" );",
           "\tMnu_QtManager* manager = menubarMgr->createManager();",
           "\tmenu->setMenuText( Mnu_QtManager::tr( \"&File\", \"this is a menu\" ) );",
           "\tsegment->setItemText( Mnu_QtManager::tr(\"Rename \\\"clip\\\"\",\"This is an item in "
           "the File menu.\") );",
           "\tsegment->setActionScript( \"T.Name = \\\"a <quoted> name\\\"\" );",
           "\tMnu_SubmenuSegment* segment = new Mnu_SubmenuSegment(menu);",
           "\tMnu_QtManager* manager = dynamic_cast<Mnu_QtManager*>( "
           "segment->getSubmenuManager() );",
           "\tsegment->addItemToMap( \"16:9\", 169 );", "\tmenubarMgr->addManager( manager );",
           "    return menubarMgr;", "static TestMenuBar menubar;" })
        QVERIFY2(lines.contains(QString(line)), line);
}

void tst_Menus::widgets()
{
    Models models;
    const auto manager
        = opened(menu(shorthand("a") + "<SubMenuSegment><Name>S</Name><Menu><Name>S</Name>"
                      + shorthand("x") + "</Menu></SubMenuSegment>"));
    Kiv_PopupMenu *popup = manager->getPopupMenu();
    QVERIFY(popup->findAction(QVariant("x"), true));
    QVERIFY(!popup->findAction(QVariant("x"), false));
    QCOMPARE(popup->getItemByPath("S.x")->text(), QString("x"));
    QVERIFY(!popup->getItemByPath("a.x")); // a middle part without a submenu
    popup->resize(popup->sizeHint());
    const QPoint onA = popup->actionGeometry(popup->actions().first()).center();
    QVERIFY(popup->QMenu::actionAt(onA));
    QVERIFY(!popup->actionAt(onA)); // disabled: no action
    QVERIFY(popup->findPoi("a").isValid());

    Kiv_MenuBar noFile;
    const int reports = Kib_Assert::reportCount();
    noFile.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    QCOMPARE(Kib_Assert::reportCount(), reports + 1);

    Kiv_MenuBar bar(nullptr, cTestBar.toLocal8Bit().constData());
    bar.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    QCOMPARE(bar.actions().size(), 2);
    QCOMPARE(bar.getItemByPath("View.Markers & cues.Add")->text(), QString("Add"));
    QVERIFY(bar.isDefinedAccelerator(QKeySequence("Ctrl+O")));
    QCOMPARE(bar.getSegmentByAccelerator(QKeySequence("M"))->getName(), QString("Add"));
    QVERIFY(bar.findPoi("File").isValid());
    const auto manager1 = bar.getMenuBarManager();
    bar.setMenuBarFileName(bar.getMenuBarFileName()); // the same name: the same manager
    QCOMPARE(bar.getMenuBarManager(), manager1);
}

QTEST_MAIN(tst_Menus)
#include "tst_menus.moc"
