// Kiv_Script, the script holder of buttons, menus, key bindings, dialogs and lists.

#include "Bnde_ActionModel.h"
#include "Kiv_Script.h"

#include <QWidget>
#include <QtTest>

#include <memory>

using Action = Bnde_ActionModelWithType<Bndt_Action<void()>>;

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    void setText_data();
    void setText();
    void connectAndRun();
    void actionMayReplaceOrDestroyTheRunningScript_data();
    void actionMayReplaceOrDestroyTheRunningScript();
};

void tst_Script::setText_data()
{
    QTest::addColumn<QString>("text"); // replaces "S.Go()"
    QTest::addColumn<bool>("changed");
    QTest::addColumn<bool>("hasScript");

    QTest::newRow("same") << "S.Go()" << false << true;
    QTest::newRow("blank differs") << "S.Go() " << true << true;
    QTest::newRow("faulty") << "S.Go() S.Go()" << true << false;
    QTest::newRow("empty") << "" << true << false;
    QTest::newRow("only separators") << ";" << true << true;
}

void tst_Script::setText()
{
    QFETCH(QString, text);
    QFETCH(bool, changed);
    QFETCH(bool, hasScript);

    Kiv_Script script;
    QVERIFY(script.setText("S.Go()"));
    QCOMPARE(script.setText(text), changed);
    QCOMPARE(script.hasScript(), hasScript);
    QVERIFY(!script.setText(text)); // the same text again, faulty or not
}

void tst_Script::connectAndRun()
{
    QWidget window; // "$Window." names take the window of the widget given to connect
    QWidget *const widget = new QWidget(&window);
    Kiv_Script script;
    QVERIFY(!script.connect({}, widget)); // no tree
    QVERIFY(!script.run());
    script.setText("$Window.Go()");
    QVERIFY(!script.connect({}, widget)); // no model: the tree goes, the text stays
    QVERIFY(!script.hasScript());
    QCOMPARE(script.text(), QString("$Window.Go()"));

    int performed = 0;
    Action go(QString::number(quintptr(&window), 16) + "$Window.Go", [&] { ++performed; });
    QVERIFY(go.Publish());
    QVERIFY(!script.connect({}, widget)); // the dropped tree does not come back,
    QVERIFY(!script.setText("$Window.Go()")); // not even with the same text
    QVERIFY(script.setText("$Window.Go();"));
    QVERIFY(script.connect({}, widget));
    QVERIFY(!script.setText("$Window.Go();")); // keeps the connected tree
    QVERIFY(script.run());
    QVERIFY(script.setText("$Window.Go()"));
    QVERIFY(!script.run()); // a new text needs a new connection
    QCOMPARE(performed, 1);
}

void tst_Script::actionMayReplaceOrDestroyTheRunningScript_data()
{
    QTest::addColumn<bool>("destroy"); // a "close" action deletes the owner, else a new text
    QTest::newRow("replaced") << false;
    QTest::newRow("owner destroyed") << true;
}

// The rest of the statements still run on the tree, which lives until the run ends.
void tst_Script::actionMayReplaceOrDestroyTheRunningScript()
{
    QFETCH(bool, destroy);
    auto owner = std::make_unique<Kiv_Script>();
    QStringList log;
    Action self("S.Self", [&] {
        log << "Self";
        if (destroy)
            owner.reset();
        else if (owner->setText("S.Missing()"))
            owner->connect({}, nullptr);
    });
    Action after("S.After", [&] { log << "After"; });
    QVERIFY(self.Publish() && after.Publish());
    owner->setText("S.Self(); S.After()");
    QVERIFY(owner->connect({}, nullptr));
    QVERIFY(owner->run());
    QCOMPARE(log, QStringList({ "Self", "After" }));
    QCOMPARE(!owner, destroy);
    QVERIFY(!owner || !owner->hasScript());
}

QTEST_MAIN(tst_Script)
#include "tst_script.moc"
