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

/// The models the scripts talk to, published under "T."; performed actions go to `log`.
struct Models
{
    Models()
    {
        go.setFunction([this] { log << "Go"; });
        setName.setFunction([this](const QString &s) { log << "SetName(" + s + ")"; });
        answer.setFunction([this] {
            log << "Answer";
            return QStringLiteral("42");
        });
        disabled.setFunction([this] { log << "Disabled"; });
        readOnly.SetReadOnly(true);
        for (Bnd_ModelBase *m : std::initializer_list<Bnd_ModelBase *> {
                 &name, &flag, &other, &readOnly, &names, &go, &setName, &answer, &disabled })
            QVERIFY(m->Publish());
    }

    QStringList log;
    Bnde_SimpleValue<QString> name { "T.Name", "old" };
    Bnde_SimpleValue<bool> flag { "T.Flag", false };
    Bnde_SimpleValue<bool> other { "T.Other", true };
    Bnde_SimpleValue<QString> readOnly { "T.ReadOnly", "fixed" };
    Bnde_Array<QString> names { "T.Names", { "a", "b", "c" } };
    Bnde_ActionModelWithType<Bndt_Action<void()>> go { "T.Go" };
    Bnde_ActionModelWithType<Bndt_Action<void(QString)>> setName { "T.SetName" };
    Bnde_ActionModelWithType<Bndt_Action<QString()>> answer { "T.Answer" };
    Bnde_ActionModelWithType<Bndt_Action<void()>> disabled { "T.Disabled", {}, false };
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

std::unique_ptr<Uip_ParseNode> parseAndConnect(const QString &iScript, bool *oConnected = nullptr)
{
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(iScript, nullptr);
    const bool connected = node && node->ConnectAndTypeCheck({}, nullptr);
    if (oConnected)
        *oConnected = connected;
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

void addShape(const char *iName, const QString &iScript, const QString &iShape)
{
    QTest::newRow(iName) << iScript << QString() << iShape;
}

void addError(const char *iName, const QString &iScript, const QString &iError)
{
    QTest::newRow(iName) << iScript << iError << QStringLiteral("-");
}

void addEval(const char *iName, const QString &iScript, bool iConnects, bool iReady,
             bool iEvaluates, const QStringList &iLog = {})
{
    QTest::newRow(iName) << iScript << iConnects << iReady << iEvaluates << iLog;
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
    void connectingAndReadiness();
    void assignmentChainGivesTheOuterTargetAnEmptyVariant();
    void windowNames_data();
    void windowNames();
    void reconnectFollowsTheNewEnvironment();
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
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("shape");

    addError("open paren", "A.B(", "Unmatched open paren");
    addError("literal eats the close paren", "T.SetFlag(true)", "Unmatched open paren");
    addError("close paren", "A)", "Unmatched close paren");
    addError("nested parens", "A((B))", "Unknown token in parenthesis");
    addError("comma", "A(B, C)", "Unknown token in parenthesis");
    addError("two arguments", "A(B C)", "Multiple arguments not supported yet");
    addError("no left side", "= A", "No expression on left side of assignment");
    addError("no right side", "A =", "No expression on right side of assignment");
    addError("parens alone", "(A)", "No function before argument list");
    addError("two argument lists", "F(A)(B)", "No function before argument list");
    addError("two names", "A B", "unexpected");
    addError("unterminated string", "A = \"abc", "unexpected");
    addError("name starts with digit", "1A", "unexpected");
    addError("hash", "#", "unexpected");
    addError("nested call", "F(G())", "Unknown token in parenthesis");
    addError("left side missing inside a chain", "A = = B",
             "No expression on left side of assignment");
    addError("error after a good statement", "A.go(); B C", "unexpected");
    addShape("blanks and empty statements", " \t ;; A.b  ;  C ;", "Id(A.b);Id(C)");
    addShape("chain nests right", "A = B = C", "Assign(Id(A),Assign(Id(B),Id(C)))");
    addShape("literal swallows the rest", "Flag = true; Other.Go()", "Assign(Id(Flag),Bool(true))");
    addShape("newline ends the literal", "A = true\n; B()", "Assign(Id(A),Bool(true));Call(Id(B))");
    addShape("false prefix", "A = falsehood", "Assign(Id(A),Bool(false))");
    addShape("literal is case-sensitive", "True = X", "Assign(Id(True),Id(X))");
    addShape("string kept whole", "A=\"x; y  (z) = w\"", "Assign(Id(A),Str(x; y  (z) = w))");
    addShape("empty string", "A = \"\"", "Assign(Id(A),Str())");
    addShape("name characters", "$W.Play(static:L[3].N)", "Call(Id($W.Play),Id(static:L[3].N))");
    addShape("call on right side", "A = F(B)", "Assign(Id(A),Call(Id(F),Id(B)))");
    addShape("string as callee", "\"x\"(A)", "Call(Str(x),Id(A))");
    addShape("names end at punctuation", "A=B;C(D)", "Assign(Id(A),Id(B));Call(Id(C),Id(D))");
}

void tst_ParseScript::parse()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QFETCH(QString, shape);

    Uip_ParseError outcome("left over from before", 7, 8);
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, &outcome);
    QCOMPARE(outcome.GetMessage(), error);
    QCOMPARE(outcome.IsError(), !error.isEmpty());
    QCOMPARE(outcome.GetFirstPosition() | outcome.GetSecondPosition(), 0L);
    QCOMPARE(::shape(node.get()), shape);
    QCOMPARE(!Uip_ParseScript(script, nullptr), !error.isEmpty()); // silent, same outcome
}

void tst_ParseScript::evaluation_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("connects");
    QTest::addColumn<bool>("ready"); // isConnected() after connecting
    QTest::addColumn<bool>("evaluates");
    QTest::addColumn<QStringList>("log"); // actions, "=result", then changed models

    addEval("empty script", " ;; ", true, true, true);
    addEval("model argument", "T.SetName(T.Name)", true, true, true, { "SetName(old)" });
    addEval("action result", "T.Answer()", true, true, true, { "Answer", "=\"42\"" });
    addEval("name reads its model", "T.Name", true, true, true, { "=\"old\"" });
    addEval("assign string", "T.Name = \"A; B\"; T.Go()", true, true, true, { "Go", "Name=A; B" });
    addEval("assign literal, rest dropped", "T.Flag = true; T.Go()", true, true, true, { "Flag" });
    addEval("assign model", "T.Flag = T.Other", true, true, true, { "Flag" });
    addEval("subscript", "T.Names[1] = \"B\"; T.SetName(T.Names[2])", true, true, true,
            { "SetName(c)", "Names=a,B,c" });
    addEval("wrong type refused", "T.Name = T.Flag", true, true, false);
    addEval("read-only refused", "T.ReadOnly = \"x\"; T.Go()", true, true, false);
    addEval("literal not assignable", "\"x\" = T.Name", true, true, false);
    addEval("assignment to missing", "T.Missing = \"x\"", false, false, false);
    addEval("unconnected callee", "T.Missing()", false, false, false);
    addEval("stops at a failure", "T.Go(); T.Missing(); T.Go()", false, false, false, { "Go" });
    addEval("string callee", "\"x\"(T.Name)", true, false, false);
    addEval("argument without value", "T.SetName(T.Go)", true, true, false);
    addEval("unconnected argument", "T.SetName(T.Missing)", false, false, false);
    addEval("argument of wrong type", "T.SetName(T.Flag)", true, true, false);
    addEval("argument not taken", "T.Go(T.Name)", true, true, false);
    addEval("argument missing", "T.SetName()", true, true, false);
    addEval("call of a value", "T.Name()", true, false, false);
    addEval("disabled: runs, not ready", "T.Disabled()", true, false, true, { "Disabled" });
    addEval("disabled later", "T.Go(); T.Disabled()", true, false, true, { "Go", "Disabled" });
}

void tst_ParseScript::evaluation()
{
    QFETCH(QString, script);
    QFETCH(bool, connects);
    QFETCH(bool, ready);
    QFETCH(bool, evaluates);
    QFETCH(QStringList, log);

    Models models;
    bool connected = !connects;
    const std::unique_ptr<Uip_ParseNode> node = parseAndConnect(script, &connected);
    QCOMPARE(connected, connects);
    QCOMPARE(node->isConnected(), ready);
    QVERIFY(models.log.isEmpty()); // connecting performs nothing
    Bnd_Variant result;
    QCOMPARE(node->Evaluate(&result), evaluates);
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

void tst_ParseScript::connectingAndReadiness()
{
    Models models;
    const auto node = parseAndConnect("T.Missing(); T.Go(); T.Name = T.Flag");
    QVERIFY(!statement(node, 0)->isConnected());
    QVERIFY(statement(node, 1)->isConnected());
    QVERIFY(statement(node, 2)->isConnected());

    // Readiness follows the action's enabled state.
    const std::unique_ptr<Uip_ParseNode> disabled = parseAndConnect("T.Disabled()");
    QVERIFY(!disabled->isConnected());
    models.disabled.setIsEnabledDefault(true);
    QVERIFY(disabled->isConnected());
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
    QCOMPARE(models.other.getValue(), false);
    QCOMPARE(models.flag.getValue(), false);
    QCOMPARE(Kib_Assert::reportCount(), reports + 1);
}

void tst_ParseScript::windowNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("withWidget");
    QTest::addColumn<bool>("prefixed");

    QTest::newRow("window name, no widget") << "$Window.X" << false << false;
    QTest::newRow("window name, widget") << "$Window.X" << true << true;
    QTest::newRow("case matters") << "$window.X" << true << false;
    QTest::newRow("other name, widget") << "T.X" << true << false;
}

void tst_ParseScript::windowNames()
{
    QFETCH(QString, name);
    QFETCH(bool, withWidget);
    QFETCH(bool, prefixed);

    QWidget window;
    QWidget *child = new QWidget(new QWidget(&window));
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(name + "()", nullptr);
    auto *id = static_cast<Uip_Identifier_ParseNode *>(
        static_cast<Uip_FunctionCall_ParseNode *>(statement(node, 0))->GetFunction());
    const QString expected = prefixed ? QString::number(quintptr(&window), 16) + name : name;
    const bool reachable = prefixed || !name.contains('$'); // "$X": an unbound variable
    int performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> action(expected, [&performed] { ++performed; });
    QVERIFY(action.Publish());
    QCOMPARE(node->ConnectAndTypeCheck({}, withWidget ? child : nullptr), reachable);
    QCOMPARE(id->GetListener().GetConnectionName(), expected);
    QCOMPARE(node->Evaluate(nullptr), reachable);
    QCOMPARE(performed, int(reachable));
}

void tst_ParseScript::reconnectFollowsTheNewEnvironment()
{
    Models models;
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript("$Target()", nullptr);
    QVERIFY(node->ConnectAndTypeCheck(environment("Target=T.Go"), nullptr));
    QVERIFY(node->Evaluate(nullptr));
    QVERIFY(node->ConnectAndTypeCheck(environment("Target=T.Answer"), nullptr));
    QVERIFY(node->Evaluate(nullptr));
    QVERIFY(!node->ConnectAndTypeCheck(environment("Other=T.Go"), nullptr)); // unbound
    QVERIFY(!node->Evaluate(nullptr));
    QCOMPARE(models.log, QStringList({ "Go", "Answer" }));
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

    const int pairs = 1 << 19; // a megabyte of "A="
    QTest::newRow("chain of a megabyte") << QString("A=").repeated(pairs) + "B" << QString() << 1;
    QTest::newRow("chain without an end")
        << QString("A=").repeated(pairs) << "No expression on right side of assignment" << 0;
    QTest::newRow("left side missing deep inside")
        << QString("A=").repeated(pairs / 2) + "=" + QString("A=").repeated(pairs / 2) + "B"
        << "No expression on left side of assignment" << 0;
    QTest::newRow("statements") << QString("T.Go();").repeated(pairs / 4) << QString() << pairs / 4;
    QTest::newRow("open parens") << QString("(").repeated(pairs) << "Unknown token in parenthesis"
                                 << 0;
    QTest::newRow("unterminated string after a chain")
        << QString("A=").repeated(pairs) + "\"" + QString("x").repeated(pairs) << "unexpected" << 0;
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
    QCOMPARE(static_cast<Uip_StatementBlock_ParseNode *>(node.get())->GetStatementCount(),
             statements);
    QVERIFY(!node->ConnectAndTypeCheck({}, nullptr)); // nothing is published under these names
    QVERIFY(!node->isConnected());
    QVERIFY(!node->Evaluate(nullptr));
}

QTEST_MAIN(tst_ParseScript)
#include "tst_parsescript.moc"
