// The action-script parser and evaluator, "$Window" names and the delayed-action runner.

#include "Bnd_Utils.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"
#include "Kiv_Initialize.h"
#include "Kiv_ScriptRunner.h"
#include "Uip_ParseScript.h"

#include <QWidget>
#include <QtTest>

namespace {

template<class Signature> using Action = Bnde_ActionModelWithType<Bndt_Action<Signature>>;

/// The models the scripts talk to, published under "T."; performed actions go to `log`.
struct Models
{
    Models()
    {
        readOnly.SetReadOnly(true);
        for (Bnd_ModelBase *m :
             std::initializer_list<Bnd_ModelBase *> { &name, &flag, &other, &readOnly, &names, &go,
                                                      &setName, &answer, &disabled, &windowGo })
            QVERIFY(m->Publish());
    }

    QStringList log;
    Bnde_SimpleValue<QString> name { "T.Name", "old" };
    Bnde_SimpleValue<bool> flag { "T.Flag", false };
    Bnde_SimpleValue<bool> other { "T.Other", true };
    Bnde_SimpleValue<QString> readOnly { "T.ReadOnly", "fixed" };
    Bnde_Array<QString> names { "T.Names", { "a", "b", "c" } };
    // The last argument is whether the action is enabled.
    Action<void()> go { "T.Go", [this] { log << "Go"; }, true };
    Action<void(QString)> setName { "T.SetName", [this](QString s) { log << "SetName(" + s + ")"; },
                                    true };
    Action<QString()> answer { "T.Answer", [] { return QStringLiteral("42"); }, true };
    Action<void()> disabled { "T.Disabled", [this] { log << "Disabled"; }, false };
    // "$Window." names are made unique to the top-level window of the widget they connect with.
    QWidget window;
    Action<void()> windowGo { QString::number(quintptr(&window), 16) + "$Window.Go",
                              [this] { log << "Window"; }, true };
};

/// A tree as text: Id(name), Str(text), Bool(value), Call(f[,arg]), Assign(target,source);
/// statements joined by ";".
QString shape(Uip_ParseNode *iNode)
{
    if (!iNode)
        return "-";
    if (auto *b = dynamic_cast<Uip_StatementBlock_ParseNode *>(iNode)) {
        QStringList statements;
        for (int i = 0; i < b->GetStatementCount(); ++i)
            statements << shape(b->GetStatement(i));
        return statements.join(';');
    }
    if (auto *id = dynamic_cast<Uip_Identifier_ParseNode *>(iNode))
        return "Id(" + id->GetName() + ")";
    if (auto *s = dynamic_cast<Uip_StringLiteral_ParseNode *>(iNode))
        return "Str(" + s->GetValue() + ")";
    if (auto *l = dynamic_cast<Uip_BooleanLiteral_ParseNode *>(iNode))
        return l->GetValue() ? "Bool(true)" : "Bool(false)";
    if (auto *c = dynamic_cast<Uip_FunctionCall_ParseNode *>(iNode))
        return "Call(" + shape(c->GetFunction())
            + (c->GetArgument() ? "," + shape(c->GetArgument()) : QString()) + ")";
    if (auto *a = dynamic_cast<Uip_Assign_ParseNode *>(iNode))
        return "Assign(" + shape(a->GetTarget()) + "," + shape(a->GetSource()) + ")";
    return "?";
}

std::unique_ptr<Uip_ParseNode> parseAndConnect(const QString &iScript)
{
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(iScript, nullptr);
    node->ConnectAndTypeCheck({}, nullptr);
    return node;
}

Uip_ParseNode *statement(const std::unique_ptr<Uip_ParseNode> &iBlock, int iIndex)
{
    return static_cast<Uip_StatementBlock_ParseNode *>(iBlock.get())->GetStatement(iIndex);
}

Bnd_ConnectionEnvironmentPtr environment(const QString &iAssignments)
{
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set(iAssignments);
    return Bnd_ConnectionEnvironmentPtr(env);
}

/// A row of parse(): the shape of the tree, or the error message when the script is faulty.
void addParse(const char *iName, const QString &iScript, const QString &iOutcome)
{
    QTest::newRow(iName) << iScript << iOutcome;
}

} // namespace

class tst_ParseScript : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void parse_data();
    void parse();
    void evaluation_data();
    void evaluation();
    void connecting();
    void assignmentChainGivesTheOuterTargetAnEmptyVariant();
    void delayedActionsRunThroughTheParser();
    void hugeScripts_data();
    void hugeScripts();
};

void tst_ParseScript::initTestCase()
{
    // Kiv_Initialize installs the runner of delayed scripts.
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
    Kiv_Initialize(QCoreApplication::applicationFilePath().toLocal8Bit().constData());
    QVERIFY(Bnd_Utils::hasDelayedActionRunner());
}

void tst_ParseScript::parse_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("outcome");

    addParse("open paren", "A.B(", "Unmatched open paren");
    addParse("literal eats the close paren", "T.SetFlag(true)", "Unmatched open paren");
    addParse("close paren", "A)", "Unmatched close paren");
    addParse("comma", "A(B, C)", "Unknown token in parenthesis");
    addParse("two arguments", "A(B C)", "Multiple arguments not supported yet");
    addParse("no left side", "= A", "No expression on left side of assignment");
    addParse("no right side", "A =", "No expression on right side of assignment");
    addParse("two argument lists", "F(A)(B)", "No function before argument list");
    addParse("name starts with digit", "1A", "unexpected");
    addParse("hash", "#", "unexpected");
    addParse("nested call", "F(G())", "Unknown token in parenthesis");
    addParse("left side missing inside a chain", "A = = B",
             "No expression on left side of assignment");
    addParse("error after a good statement", "A.go(); B C", "unexpected");
    addParse("text that is no UTF-16 ahead", "A = \"x\"; B" + QString(QChar(0xD800)), "unexpected");
    addParse("blanks and empty statements", " \t ;; A.b  ;  C ;", "Id(A.b);Id(C)");
    addParse("chain nests right", "A = B = C", "Assign(Id(A),Assign(Id(B),Id(C)))");
    addParse("literal swallows the rest", "Flag = true; Other.Go()", "Assign(Id(Flag),Bool(true))");
    addParse("newline ends the literal", "A = true\n; B()", "Assign(Id(A),Bool(true));Call(Id(B))");
    addParse("false prefix", "A = falsehood", "Assign(Id(A),Bool(false))");
    addParse("literal is case-sensitive", "True = X", "Assign(Id(True),Id(X))");
    addParse("string kept whole", "A=\"x; y  (z) = w\"", "Assign(Id(A),Str(x; y  (z) = w))");
    addParse("empty string", "A = \"\"", "Assign(Id(A),Str())");
    addParse("name characters", "$W.Play(static:L[3].N)", "Call(Id($W.Play),Id(static:L[3].N))");
    addParse("call on right side", "A = F(B)", "Assign(Id(A),Call(Id(F),Id(B)))");
    addParse("string as callee", "\"x\"(A)", "Call(Str(x),Id(A))");
    addParse("names end at punctuation", "A=B;C(D)", "Assign(Id(A),Id(B));Call(Id(C),Id(D))");
}

void tst_ParseScript::parse()
{
    QFETCH(QString, script);
    QFETCH(QString, outcome);

    Uip_ParseError error("left over from before", 7, 8);
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, &error);
    QCOMPARE(node ? shape(node.get()) : error.GetMessage(), outcome);
    QCOMPARE(error.GetMessage().isEmpty(), bool(node)); // cleared on success
    QCOMPARE(error.IsError(), !node);
    QCOMPARE(error.GetFirstPosition() | error.GetSecondPosition(), 0L);
    QCOMPARE(!Uip_ParseScript(script, nullptr), !node); // silent, same outcome
}

void tst_ParseScript::evaluation_data()
{
    QTest::addColumn<QString>("script");
    // "!connect" (ConnectAndTypeCheck failed), "!ready" (isConnected() false), the actions,
    // "!run" (Evaluate failed), "=result", then the models changed.
    QTest::addColumn<QStringList>("log");

    using L = QStringList;
    QTest::newRow("empty script") << " ;; " << L {};
    QTest::newRow("model argument") << "T.SetName(T.Name)" << L { "SetName(old)" };
    QTest::newRow("action result") << "T.Answer()" << L { "=\"42\"" };
    QTest::newRow("name reads its model") << "T.Name" << L { "=\"old\"" };
    QTest::newRow("assign string") << "T.Name = \"A; B\"; T.Go()" << L { "Go", "Name=A; B" };
    QTest::newRow("assign literal, rest dropped") << "T.Flag = true; T.Go()" << L { "Flag" };
    QTest::newRow("assign model") << "T.Flag = T.Other" << L { "Flag" };
    QTest::newRow("subscript") << "T.Names[1] = \"B\"; T.SetName(T.Names[2])"
                               << L { "SetName(c)", "Names=a,B,c" };
    QTest::newRow("wrong type refused") << "T.Name = T.Flag" << L { "!run" };
    QTest::newRow("read-only refused") << "T.ReadOnly = \"x\"; T.Go()" << L { "!run" };
    QTest::newRow("literal not assignable") << "\"x\" = T.Name" << L { "!run" };
    const L unconnected { "!connect", "!ready", "!run" };
    QTest::newRow("assignment to missing") << "T.Missing = \"x\"" << unconnected;
    QTest::newRow("unconnected callee") << "T.Missing()" << unconnected;
    QTest::newRow("stops at a failure")
        << "T.Go(); T.Missing(); T.Go()" << L { "!connect", "!ready", "Go", "!run" };
    QTest::newRow("string callee") << "\"x\"(T.Name)" << L { "!ready", "!run" };
    QTest::newRow("argument without value") << "T.SetName(T.Go)" << L { "!run" };
    QTest::newRow("unconnected argument") << "T.SetName(T.Missing)" << unconnected;
    QTest::newRow("argument of wrong type") << "T.SetName(T.Flag)" << L { "!run" };
    QTest::newRow("call of a value") << "T.Name()" << L { "!ready", "!run" };
    QTest::newRow("disabled: runs, not ready") << "T.Disabled()" << L { "!ready", "Disabled" };
    QTest::newRow("disabled later") << "T.Go(); T.Disabled()" << L { "!ready", "Go", "Disabled" };
    QTest::newRow("window name") << "$Window.Go()" << L { "Window" };
    QTest::newRow("window name, case matters") << "$window.Go()" << unconnected; // a variable
}

void tst_ParseScript::evaluation()
{
    QFETCH(QString, script);
    QFETCH(QStringList, log);

    Models models;
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, nullptr);
    const bool connected = node->ConnectAndTypeCheck({}, new QWidget(new QWidget(&models.window)));
    QVERIFY(models.log.isEmpty()); // connecting performs nothing
    if (!connected)
        models.log << "!connect";
    if (!node->isConnected())
        models.log << "!ready";
    Bnd_Variant result;
    if (!node->Evaluate(&result))
        models.log << "!run";
    if (!result.isEmpty())
        models.log << "=" + result.toString();
    if (models.name.getValue() != "old")
        models.log << "Name=" + models.name.getValue();
    if (models.flag.getValue())
        models.log << "Flag";
    const std::vector<QString> names = models.names.values();
    if (names != std::vector<QString>({ "a", "b", "c" }))
        models.log << "Names=" + QStringList(names.begin(), names.end()).join(',');
    QCOMPARE(models.log, log);
}

// Every statement is connected, also after one failed; readiness follows the enabled state; a
// tree connected again follows the new environment.
void tst_ParseScript::connecting()
{
    Models models;
    const auto node = parseAndConnect("T.Missing(); T.Go(); T.Disabled()");
    const auto ready = [&] {
        return QList<bool>({ statement(node, 0)->isConnected(), statement(node, 1)->isConnected(),
                             statement(node, 2)->isConnected() });
    };
    QCOMPARE(ready(), QList<bool>({ false, true, false }));
    models.disabled.setIsEnabledDefault(true);
    QCOMPARE(ready(), QList<bool>({ false, true, true }));

    const std::unique_ptr<Uip_ParseNode> call = Uip_ParseScript("$Target()", nullptr);
    QVERIFY(call->ConnectAndTypeCheck(environment("Target=T.Go"), nullptr));
    QVERIFY(call->Evaluate(nullptr));
    QVERIFY(call->ConnectAndTypeCheck(environment("Target=T.Disabled"), nullptr));
    QVERIFY(call->Evaluate(nullptr));
    QVERIFY(!call->ConnectAndTypeCheck(environment("Other=T.Go"), nullptr)); // unbound
    QVERIFY(!call->Evaluate(nullptr));
    QCOMPARE(models.log, QStringList({ "Go", "Disabled" }));
}

void tst_ParseScript::assignmentChainGivesTheOuterTargetAnEmptyVariant()
{
    Models models;
    QList<Bnd_Variant> written; // what a model that takes any message is sent
    Bnd_ModelBase recorder;
    recorder.SetConnectionName("T.Recorder");
    recorder.setReceiveMessageCB([&written](const Bnd_MessageInterface &iMsg) {
        if (const auto *set = iMsg.as<Bndt_SimpleValue_BaseAPI::MsgSetVariant>())
            written << set->value;
    });
    QVERIFY(recorder.Publish());

    std::unique_ptr<Uip_ParseNode> node = parseAndConnect("T.Recorder = T.Name = \"new\"");
    Bnd_Variant result("untouched");
    QVERIFY(node->Evaluate(&result));
    QCOMPARE(models.name.getValue(), QString("new"));
    QCOMPARE(written, QList<Bnd_Variant>({ Bnd_Variant() }));
    QCOMPARE(result, Bnd_Variant("untouched"));

    // A typed model refuses the empty variant: the statement fails after the inner assignment.
    const int reports = Kib_Assert::reportCount();
    node = parseAndConnect("T.Flag = T.Other = false\n; T.Go()");
    QVERIFY(!node->Evaluate(&result));
    QVERIFY(!models.other.getValue() && !models.flag.getValue());
    QCOMPARE(Kib_Assert::reportCount(), reports + 1);
}

void tst_ParseScript::delayedActionsRunThroughTheParser()
{
    Models models;
    QVERIFY(
        Bnd_Utils::Bnd_AddDelayedAction(environment("Obj=T"), "$Obj.Go(); $Obj.Name = \"later\""));
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction({}, "T.Go() T.Go()")); // faulty: runs nothing
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction({}, "T.Missing(); T.Go()")); // stops at the failure
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction({}, "$Window.X = \"y\"; T.SetName(\"last\")"));
    QVERIFY(models.log.isEmpty()); // never at once
    QTRY_COMPARE(models.log, QStringList({ "Go" }));
    QCOMPARE(models.name.getValue(), QString("later"));

    Kiv_InstallScriptRunner(); // installing again keeps it working
    QVERIFY(Bnd_Utils::Bnd_AddDelayedAction({}, "T.SetName(\"again\")"));
    QTRY_COMPARE(models.log, QStringList({ "Go", "SetName(again)" }));
}

void tst_ParseScript::hugeScripts_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("statements");
    const auto row = [](const char *iName, const QString &iScript, const char *iError, int iCount) {
        QTest::newRow(iName) << iScript << QString(iError) << iCount;
    };

    const int pairs = 1 << 19; // a megabyte of "A="
    const QString chain = QString("A=").repeated(pairs), half = QString("A=").repeated(pairs / 2);
    row("chain of a megabyte", chain + "B", "", 1);
    row("chain without an end", chain, "No expression on right side of assignment", 0);
    row("left side missing deep inside", half + "=" + half + "B",
        "No expression on left side of assignment", 0);
    row("statements", QString("T.Go();").repeated(pairs / 4), "", pairs / 4);
    row("open parens", QString("(").repeated(pairs), "Unknown token in parenthesis", 0);
    row("unterminated string after a chain", chain + "\"" + QString("x").repeated(pairs),
        "unexpected", 0);
}

// Scripts come from files: a huge or deeply nested one is parsed in time linear in its length
// and connected, evaluated and destroyed without deep recursion.
void tst_ParseScript::hugeScripts()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QFETCH(int, statements);

    Uip_ParseError outcome;
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, &outcome);
    QCOMPARE(outcome.GetMessage(), error);
    if (!node)
        return;
    QCOMPARE(static_cast<Uip_StatementBlock_ParseNode &>(*node).GetStatementCount(), statements);
    Bnde_SimpleValue<QString> a("A", "a"); // every link of a chain connects; the end does not
    QVERIFY(a.Publish());
    QVERIFY(!node->ConnectAndTypeCheck({}, nullptr));
    QVERIFY(!node->isConnected());
    QVERIFY(!node->Evaluate(nullptr));
}

QTEST_MAIN(tst_ParseScript)
#include "tst_parsescript.moc"
