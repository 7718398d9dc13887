// Variable replacement in connection environments.

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"

#include <QtTest>

class tst_Environment : public QObject
{
    Q_OBJECT

private slots:
    void replacesVariables_data();
    void replacesVariables();
    void assignmentListsBindVariables_data();
    void assignmentListsBindVariables();
    void needsEnvironment_data();
    void needsEnvironment();
};

void tst_Environment::replacesVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("allBound");

    QTest::newRow("no variable") << "A.B"
                                 << "A.B" << true;
    QTest::newRow("leading") << "$Tab.TabData.id["
                             << "Clips.TabData.id[" << true;
    QTest::newRow("in subscript") << "List.name[$Row]"
                                  << "List.name[Cursor_7]" << true;
    QTest::newRow("two") << "$Tab.$Row"
                         << "Clips.Cursor_7" << true;
    QTest::newRow("inner scope wins") << "$Mode"
                                      << "inner" << true;
    QTest::newRow("from the parent") << "$Outer.x"
                                     << "P.x" << true;
    QTest::newRow("unbound stays") << "$Nope.x"
                                   << "$Nope.x" << false;
    QTest::newRow("bound and unbound") << "$Tab.$Nope"
                                       << "Clips.$Nope" << false;
    QTest::newRow("dollar inside a word is text") << "1f3a$Window.Sel"
                                                  << "1f3a$Window.Sel" << true;
    QTest::newRow("lone dollar") << "A.$"
                                 << "A.$" << true;
    QTest::newRow("digit after dollar") << "$1"
                                        << "$1" << true;
    QTest::newRow("name ends at non-word") << "$Row:x"
                                           << "Cursor_7:x" << true;
}

void tst_Environment::replacesVariables()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QFETCH(bool, allBound);

    auto *outer
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    outer->set("Outer", "P");
    outer->set("Mode", "outer");
    Bnd_ConnectionEnvironmentPtr outerPtr(outer);
    Bnd_ConnectionEnvironment inner(outerPtr, &Bnd_ConnectionDict::Singleton());
    inner.set("Tab", "Clips");
    inner.set("Row", "Cursor_7");
    inner.set("Mode", "inner");

    bool bound = !allBound;
    QCOMPARE(inner.replaceVariableNames(text, &bound), expected);
    QCOMPARE(bound, allBound);
}

void tst_Environment::assignmentListsBindVariables_data()
{
    QTest::addColumn<QString>("assignments");
    QTest::addColumn<long>("count");
    QTest::addColumn<QString>("valueOfA");

    QTest::newRow("one") << "A=x" << 1L << "x";
    QTest::newRow("two with blanks") << " A = x ; B=y" << 2L << "x";
    QTest::newRow("dollar name") << "$A=z" << 1L << "z";
    QTest::newRow("later wins") << "A=1;A=2" << 2L << "2";
    QTest::newRow("no equals skipped") << "A;B=y" << 1L << QString();
    QTest::newRow("bad name skipped") << "1A=x;B=y" << 1L << QString();
    QTest::newRow("empty") << "" << 0L << QString();
}

void tst_Environment::assignmentListsBindVariables()
{
    QFETCH(QString, assignments);
    QFETCH(long, count);
    QFETCH(QString, valueOfA);
    Bnd_ConnectionEnvironment env(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    QCOMPARE(env.set(assignments), count);
    QCOMPARE(env.get("A"), valueOfA);
    QCOMPARE(env.isBound("A"), !valueOfA.isNull());
}

void tst_Environment::needsEnvironment_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("needs");
    QTest::newRow("plain") << "A.B" << false;
    QTest::newRow("variable") << "$A.B" << true;
    QTest::newRow("relative") << " .B" << true;
    QTest::newRow("window token") << "1f3a$Window.B" << false;
}

void tst_Environment::needsEnvironment()
{
    QFETCH(QString, name);
    QFETCH(bool, needs);
    QCOMPARE(Bnd_ConnectionEnvironment::needsEnvironment(name), needs);
}

QTEST_GUILESS_MAIN(tst_Environment)
#include "tst_environment.moc"
