// Variable replacement in connection environments.

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
};

void tst_Environment::replacesVariables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("allBound");
    QTest::addColumn<bool>("needsEnvironment");
    const auto row
        = [](const char *tag, const char *text, const char *expected, bool allBound, bool needs) {
              QTest::newRow(tag) << QString(text) << QString(expected) << allBound << needs;
          };

    row("no variable", "A.B", "A.B", true, false);
    row("in subscript", "List.name[$Row]", "List.name[Cursor_7]", true, true);
    row("two", "$Tab.$Row", "Clips.Cursor_7", true, true);
    row("inner scope wins", "$Mode", "inner", true, true);
    row("from the parent", "$Outer.x", "P.x", true, true);
    row("bound and unbound", "$Tab.$Nope", "Clips.$Nope", false, true);
    row("dollar inside a word is text", "1f3a$Window.Sel", "1f3a$Window.Sel", true, false);
    row("lone dollar", "A.$", "A.$", true, false);
    row("digit after dollar", "$1", "$1", true, false);
    row("relative", " .B", " .B", true, true); // the listener puts "$Base" in front
}

void tst_Environment::replacesVariables()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QFETCH(bool, allBound);
    QFETCH(bool, needsEnvironment);

    auto *outer
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    outer->set("Outer=P; Mode=outer");
    Bnd_ConnectionEnvironment inner(Bnd_ConnectionEnvironmentPtr(outer), nullptr);
    inner.set("Tab=Clips; Row=Cursor_7; Mode=inner");

    bool bound = !allBound; // must be written either way
    QCOMPARE(inner.replaceVariableNames(text, &bound), expected);
    QCOMPARE(bound, allBound);
    QCOMPARE(Bnd_ConnectionEnvironment::needsEnvironment(text), needsEnvironment);
}

void tst_Environment::assignmentListsBindVariables_data()
{
    QTest::addColumn<QString>("assignments");
    QTest::addColumn<long>("count");
    QTest::addColumn<QString>("valueOfA");

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

QTEST_GUILESS_MAIN(tst_Environment)
#include "tst_environment.moc"
