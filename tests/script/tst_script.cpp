// Kiv_Script, the script holder of buttons, menus, key bindings, dialogs and lists.

#include "Bnde_ActionModel.h"
#include "Kiv_Script.h"

#include <QWidget>
#include <QtTest>

using Action = Bnde_ActionModelWithType<Bndt_Action<void()>>;

class tst_Script : public QObject
{
    Q_OBJECT

private slots:
    void setText_data();
    void setText();
    void connectAndRun();
    void scriptMayReplaceItselfWhileRunning();
    void scriptMayDestroyItsOwnerWhileRunning();
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
    Kiv_Script script;
    QVERIFY(!script.connect({}, nullptr)); // no tree
    QVERIFY(!script.run());
    script.setText("S.Go()");
    QVERIFY(!script.connect({}, nullptr)); // no model: the tree goes, the text stays
    QVERIFY(!script.hasScript());
    QCOMPARE(script.text(), QString("S.Go()"));

    int performed = 0;
    Action go("S.Go", [&performed] { ++performed; });
    QVERIFY(go.Publish());
    QVERIFY(!script.connect({}, nullptr)); // the dropped tree does not come back,
    QVERIFY(!script.setText("S.Go()")); // not even with the same text
    QVERIFY(script.setText("S.Go();"));
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(!script.setText("S.Go();")); // keeps the connected tree
    QVERIFY(script.run());
    QVERIFY(script.setText("S.Go()"));
    QVERIFY(!script.run()); // a new text needs a new connection
    QCOMPARE(performed, 1);

    // "$Window." names take the window of the given widget.
    QWidget window;
    Action play(QString::number(quintptr(&window), 16) + "$Window.Go", [&] { ++performed; });
    QVERIFY(play.Publish());
    script.setText("$Window.Go()");
    QVERIFY(script.connect({}, new QWidget(&window)));
    QVERIFY(script.run());
    QCOMPARE(performed, 2);
}

void tst_Script::scriptMayReplaceItselfWhileRunning()
{
    Kiv_Script script;
    QStringList log;
    Action replace("S.Replace", [&] {
        log << "Replace";
        script.setText("S.Missing()"); // the running tree must live on
        script.connect({}, nullptr);
    });
    Action after("S.After", [&] { log << "After"; });
    QVERIFY(replace.Publish());
    QVERIFY(after.Publish());

    script.setText("S.Replace(); S.After()");
    QVERIFY(script.connect({}, nullptr));
    QVERIFY(script.run());
    QCOMPARE(log, QStringList({ "Replace", "After" }));
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
