// Kiv_Script, the script holder of buttons, menus, key bindings, dialogs and lists: when the
// text is parsed, what a faulty script or a failed connection leaves, readiness and running.

#include "Bnde_ActionModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_Script.h"
#include "Uip_ParseNode.h"

#include <QWidget>
#include <QtTest>

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    void setText_data();
    void setText();
    void unchangedTextKeepsTheConnectedTree();
    void failedConnectDropsTheTree();
    void readinessFollowsTheAction();
    void runReportsTheOutcome();
    void windowNamesUseTheGivenWidget();
    void scriptMayReplaceItselfWhileRunning();
    void scriptMayDestroyItsOwnerWhileRunning();
};

void tst_Script::setText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<bool>("hasScript");

    QTest::newRow("empty to empty") << ""
                                    << "" << false << false;
    QTest::newRow("empty to script") << ""
                                     << "S.Go()" << true << true;
    QTest::newRow("script to other script") << "S.Go()"
                                            << "S.Go(); S.Go()" << true << true;
    QTest::newRow("same script") << "S.Go()"
                                 << "S.Go()" << false << true;
    QTest::newRow("blank differs") << "S.Go()"
                                   << "S.Go() " << true << true;
    QTest::newRow("script to faulty") << "S.Go()"
                                      << "S.Go() S.Go()" << true << false;
    QTest::newRow("same faulty") << "S.Go("
                                 << "S.Go(" << false << false;
    QTest::newRow("faulty to script") << "S.Go("
                                      << "S.Go()" << true << true;
    QTest::newRow("script to empty") << "S.Go()"
                                     << "" << true << false;
    QTest::newRow("only separators") << ""
                                     << ";" << true << true;
}

void tst_Script::setText()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(bool, changed);
    QFETCH(bool, hasScript);

    Kiv_Script script;
    script.setText(before);
    QCOMPARE(script.setText(after), changed);
    QCOMPARE(script.text(), after);
    QCOMPARE(script.hasScript(), hasScript);
    QCOMPARE(script.node() != nullptr, hasScript);
}

void tst_Script::unchangedTextKeepsTheConnectedTree()
{
    int performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> go("S.Go", [&performed] { ++performed; });
    QVERIFY(go.Publish());

    Kiv_Script script;
    script.setText("S.Go()");
    QVERIFY(script.connect({}, nullptr));
    Uip_ParseNode *node = script.node();
    QVERIFY(!script.setText("S.Go()"));
    QCOMPARE(script.node(), node);
    QVERIFY(script.isConnected());
    QVERIFY(script.run());
    QCOMPARE(performed, 1);

    // A new text needs a new connection.
    QVERIFY(script.setText("S.Go();"));
    QVERIFY(!script.isConnected());
    QVERIFY(!script.run());
    QCOMPARE(performed, 1);
}

void tst_Script::failedConnectDropsTheTree()
{
    Kiv_Script script;
    QVERIFY(!script.connect({}, nullptr)); // no tree
    script.setText("S.Later()");
    QVERIFY(script.hasScript());
    QVERIFY(!script.connect({}, nullptr));
    QVERIFY(!script.hasScript());
    QVERIFY(!script.node());
    QCOMPARE(script.text(), QString("S.Later()")); // the text stays

    // The dropped tree does not come back when the model appears later ...
    int performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> later("S.Later", [&performed] { ++performed; });
    QVERIFY(later.Publish());
    QVERIFY(!script.connect({}, nullptr));
    QVERIFY(!script.isConnected());
    QVERIFY(!script.run());
    QVERIFY(!script.setText("S.Later()"));
    QVERIFY(!script.hasScript());
    // ... only a new text brings a tree.
    QVERIFY(script.setText(""));
    QVERIFY(script.setText("S.Later()"));
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(script.run());
    QCOMPARE(performed, 1);
}

void tst_Script::readinessFollowsTheAction()
{
    Bnde_ActionModelWithType<Bndt_Action<void(QString)>> open("S.Open", {}, false);
    Bnde_SimpleValue<QString> file("S.File", "a.mov");
    QVERIFY(open.Publish());
    QVERIFY(file.Publish());

    Kiv_Script script;
    script.setText("S.Open(S.File)");
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(!script.isConnected());
    open.setIsEnabledDefault(true);
    QVERIFY(script.isConnected());
    file.UnPublish();
    QVERIFY(!script.isConnected());
}

void tst_Script::runReportsTheOutcome()
{
    QStringList opened;
    Bnde_ActionModelWithType<Bndt_Action<void(QString)>> open(
        "S.Open", [&opened](const QString &s) { opened << s; });
    Bnde_SimpleValue<QString> file("S.File", "a.mov");
    Bnde_SimpleValue<bool> busy("S.Busy", false);
    busy.SetReadOnly(true);
    for (Bnd_ModelBase *m : std::initializer_list<Bnd_ModelBase *> { &open, &file, &busy })
        QVERIFY(m->Publish());

    Kiv_Script script;
    QVERIFY(!script.run()); // no tree

    script.setText("S.Open(S.File); S.File = \"b.mov\"; S.Open(S.File)");
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(script.run());
    QCOMPARE(opened, QStringList({ "a.mov", "b.mov" }));

    script.setText("S.Open(\"c.mov\"); S.Busy = S.Busy; S.Open(\"d.mov\")");
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(!script.run()); // the read-only model refuses, the rest does not run
    QCOMPARE(opened, QStringList({ "a.mov", "b.mov", "c.mov" }));
}

void tst_Script::windowNamesUseTheGivenWidget()
{
    QWidget window;
    auto *button = new QWidget(&window);
    int performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> play(
        QString::number(quintptr(&window), 16) + "$Window.Play", [&performed] { ++performed; });
    QVERIFY(play.Publish());

    Kiv_Script script;
    script.setText("$Window.Play()");
    QVERIFY(script.connect({}, button));
    QVERIFY(script.run());
    QCOMPARE(performed, 1);
}

void tst_Script::scriptMayReplaceItselfWhileRunning()
{
    // An action of the script changes the script's text, and later reconnects it with a
    // failing name: the running tree must stay alive until the run is over.
    Kiv_Script script;
    QStringList log;
    Bnde_ActionModelWithType<Bndt_Action<void()>> replace("S.Replace", [&] {
        log << "Replace";
        script.setText("S.Missing()");
        script.connect({}, nullptr);
    });
    Bnde_ActionModelWithType<Bndt_Action<void()>> after("S.After", [&] { log << "After"; });
    QVERIFY(replace.Publish());
    QVERIFY(after.Publish());

    script.setText("S.Replace(); S.After()");
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(script.run());
    QCOMPARE(log, QStringList({ "Replace", "After" }));
    QCOMPARE(script.text(), QString("S.Missing()"));
    QVERIFY(!script.hasScript());
}

void tst_Script::scriptMayDestroyItsOwnerWhileRunning()
{
    // A "close" action deletes the owner (and its script) in the middle of the script; the rest
    // of the statements still run on the tree, which lives until the run ends.
    auto *owner = new Kiv_Script;
    QStringList log;
    Bnde_ActionModelWithType<Bndt_Action<void()>> close("S.Close", [&] {
        log << "Close";
        delete owner;
        owner = nullptr;
    });
    Bnde_ActionModelWithType<Bndt_Action<void()>> after("S.AfterClose", [&] { log << "After"; });
    QVERIFY(close.Publish());
    QVERIFY(after.Publish());
    owner->setText("S.Close(); S.AfterClose()");
    QVERIFY(owner->connect({}, nullptr));
    QVERIFY(owner->run());
    QVERIFY(!owner);
    QCOMPARE(log, QStringList({ "Close", "After" }));
}

QTEST_MAIN(tst_Script)
#include "tst_script.moc"
