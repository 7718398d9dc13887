// The action-script parser and evaluator: parse outcomes and error texts, the shape of the
// trees, connecting, readiness and evaluation against published models, "$Window" names and
// the runner of the runtime's delayed-action queue.

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

/// The models the scripts of this suite talk to, published under "T." while the object lives.
/// Every performed action is written to `log`.
struct Models
{
    Models()
    {
        go.setFunction([this] { log << "Go"; });
        setName.setFunction([this](const QString &s) { log << "SetName(" + s + ")"; });
        setFlag.setFunction([this](bool b) { log << (b ? "SetFlag(true)" : "SetFlag(false)"); });
        answer.setFunction([this] {
            log << "Answer";
            return QStringLiteral("42");
        });
        disabled.setFunction([this] { log << "Disabled"; });
        readOnly.SetReadOnly(true);
        for (Bnd_ModelBase *m :
             std::initializer_list<Bnd_ModelBase *> { &name, &flag, &other, &readOnly, &names, &go,
                                                      &setName, &setFlag, &answer, &disabled })
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
    Bnde_ActionModelWithType<Bndt_Action<void(bool)>> setFlag { "T.SetFlag" };
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

std::unique_ptr<Uip_ParseNode> parseAndConnect(const QString &iScript, bool *oConnected = nullptr,
                                               QWidget *iWidget = nullptr,
                                               const Bnd_ConnectionEnvironmentPtr &iEnv = {})
{
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(iScript, nullptr);
    if (node) {
        const bool connected = node->ConnectAndTypeCheck(iEnv, iWidget);
        if (oConnected)
            *oConnected = connected;
    }
    return node;
}

Bnd_ConnectionEnvironmentPtr environment(const QString &iAssignments)
{
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set(iAssignments);
    return Bnd_ConnectionEnvironmentPtr(env);
}

} // namespace

class tst_ParseScript : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void parseOutcome_data();
    void parseOutcome();
    void treeShape_data();
    void treeShape();
    void evaluation_data();
    void evaluation();
    void readiness_data();
    void readiness();
    void disabledActionFollowsItsModel();
    void connectGoesOnAfterAFailedStatement();
    void assignmentChainGivesTheOuterTargetAnEmptyVariant();
    void callPutsTheActionResultInTheResult();
    void subscriptNameReachesOneElement();
    void windowNames_data();
    void windowNames();
    void reconnectFollowsTheNewEnvironment();
    void delayedActionsRunThroughTheParser();
};

void tst_ParseScript::initTestCase()
{
    // Kiv_Initialize is what installs the runner of delayed scripts.
    Bnd_Utils::Bnd_SetDelayedActionRunner(Bnd_Utils::DelayedActionRunner());
    Kiv_Initialize(QCoreApplication::applicationFilePath().toLocal8Bit().constData());
    QVERIFY(Bnd_Utils::hasDelayedActionRunner());
}

void tst_ParseScript::parseOutcome_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error"); // empty: the script parses
    QTest::addColumn<int>("statements");

    QTest::newRow("empty") << ""
                           << "" << 0;
    QTest::newRow("blanks") << " \t "
                            << "" << 0;
    QTest::newRow("only semicolons") << ";;"
                                     << "" << 0;
    QTest::newRow("call") << "Timeline.Actions.addMarker()"
                          << "" << 1;
    QTest::newRow("assign string") << "MainMonitor.PlayState = \"playing\""
                                   << "" << 1;
    QTest::newRow("two statements")
        << "Project.Actions.open(Browser.SelectedName); Browser.Visible = false"
        << "" << 2;
    QTest::newRow("trailing semicolon") << "A.go();"
                                        << "" << 1;
    QTest::newRow("chain") << "A = B = C"
                           << "" << 1;
    QTest::newRow("string called") << "\"x\"(A)"
                                   << "" << 1;
    QTest::newRow("call on right side") << "A = F(B)"
                                        << "" << 1;
    QTest::newRow("literal ends the line") << "A = true; #((("
                                           << "" << 1;
    QTest::newRow("newline ends the literal") << "A = true\n; B.go()"
                                              << "" << 2;

    QTest::newRow("open paren") << "A.B("
                                << "Unmatched open paren" << -1;
    QTest::newRow("semicolon in parens") << "A(;)"
                                         << "Unmatched open paren" << -1;
    QTest::newRow("literal eats the close paren") << "T.SetFlag(true)"
                                                  << "Unmatched open paren" << -1;
    QTest::newRow("close paren") << "A)"
                                 << "Unmatched close paren" << -1;
    QTest::newRow("close paren, second statement") << "A.go(); B)"
                                                   << "Unmatched close paren" << -1;
    QTest::newRow("nested parens") << "A((B))"
                                   << "Unknown token in parenthesis" << -1;
    QTest::newRow("comma") << "A(B, C)"
                           << "Unknown token in parenthesis" << -1;
    QTest::newRow("nested call") << "F(G())"
                                 << "Unknown token in parenthesis" << -1;
    QTest::newRow("assign in parens") << "F(A = B)"
                                      << "Unknown token in parenthesis" << -1;
    QTest::newRow("two arguments") << "A(B C)"
                                   << "Multiple arguments not supported yet" << -1;
    QTest::newRow("no left side") << "= A"
                                  << "No expression on left side of assignment" << -1;
    QTest::newRow("no right side") << "A ="
                                   << "No expression on right side of assignment" << -1;
    QTest::newRow("parens alone") << "(A)"
                                  << "No function before argument list" << -1;
    QTest::newRow("empty parens alone") << "()"
                                        << "No function before argument list" << -1;
    QTest::newRow("two argument lists") << "F(A)(B)"
                                        << "No function before argument list" << -1;
    QTest::newRow("parens on right side") << "A = (B)"
                                          << "No function before argument list" << -1;
    QTest::newRow("two names") << "A B"
                               << "unexpected" << -1;
    QTest::newRow("unknown character") << "#"
                                       << "unexpected" << -1;
    QTest::newRow("unterminated string") << "A = \"abc"
                                         << "unexpected" << -1;
    QTest::newRow("name starts with digit") << "1A"
                                            << "unexpected" << -1;
    QTest::newRow("name starts with underscore") << "_A"
                                                 << "unexpected" << -1;
    QTest::newRow("error after a good statement") << "A.go(); B C"
                                                  << "unexpected" << -1;
}

void tst_ParseScript::parseOutcome()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QFETCH(int, statements);

    Uip_ParseError outcome("left over from before", 7, 8);
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, &outcome);
    QCOMPARE(outcome.IsError(), !error.isEmpty());
    QCOMPARE(outcome.GetMessage(), error);
    QCOMPARE(outcome.GetFirstPosition(), 0L);
    QCOMPARE(outcome.GetSecondPosition(), 0L);
    if (error.isEmpty()) {
        auto *block = dynamic_cast<Uip_StatementBlock_ParseNode *>(node.get());
        QVERIFY(block);
        QCOMPARE(block->GetStatementCount(), statements);
    } else {
        QVERIFY(!node);
    }
    // Without an error record the outcome is the same, only silent.
    QCOMPARE(Uip_ParseScript(script, nullptr) == nullptr, !error.isEmpty());
}

void tst_ParseScript::treeShape_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("shape");

    QTest::newRow("chain nests right") << "A = B = C"
                                       << "Assign(Id(A),Assign(Id(B),Id(C)))";
    QTest::newRow("literal swallows the rest") << "Flag = true; Other.Go()"
                                               << "Assign(Id(Flag),Bool(true))";
    QTest::newRow("name read as literal") << "trueColor.Value = X"
                                          << "Bool(true)";
    QTest::newRow("false prefix") << "A = falsehood"
                                  << "Assign(Id(A),Bool(false))";
    QTest::newRow("literal is case-sensitive") << "True = X"
                                               << "Assign(Id(True),Id(X))";
    QTest::newRow("string kept whole") << "A=\"x; y  (z) = w\""
                                       << "Assign(Id(A),Str(x; y  (z) = w))";
    QTest::newRow("empty string") << "A = \"\""
                                  << "Assign(Id(A),Str())";
    QTest::newRow("call without argument") << "F()"
                                           << "Call(Id(F))";
    QTest::newRow("call with string") << "F( \"a b\" )"
                                      << "Call(Id(F),Str(a b))";
    QTest::newRow("name characters") << "$Window.Transport.Play(List[3].Name)"
                                     << "Call(Id($Window.Transport.Play),Id(List[3].Name))";
    QTest::newRow("static name") << "staticConnection:Foo.Bar"
                                 << "Id(staticConnection:Foo.Bar)";
    QTest::newRow("blanks around") << "  A.b  ;  C  "
                                   << "Id(A.b);Id(C)";
    QTest::newRow("call on right side") << "A = F(B)"
                                        << "Assign(Id(A),Call(Id(F),Id(B)))";
    QTest::newRow("string as callee") << "\"x\"(A)"
                                      << "Call(Str(x),Id(A))";
    QTest::newRow("names end at punctuation") << "A=B;C(D)"
                                              << "Assign(Id(A),Id(B));Call(Id(C),Id(D))";
}

void tst_ParseScript::treeShape()
{
    QFETCH(QString, script);
    QFETCH(QString, shape);
    const std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript(script, nullptr);
    QVERIFY(node);
    QCOMPARE(::shape(node.get()), shape);
}

void tst_ParseScript::evaluation_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("connects");
    QTest::addColumn<bool>("evaluates");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("flag");

    const QStringList none;
    QTest::newRow("empty") << "" << true << true << none << "old" << false;
    QTest::newRow("call") << "T.Go()" << true << true << QStringList { "Go" } << "old" << false;
    QTest::newRow("string argument") << "T.SetName(\"Intro\")" << true << true
                                     << QStringList { "SetName(Intro)" } << "old" << false;
    QTest::newRow("model argument")
        << "T.SetName(T.Name)" << true << true << QStringList { "SetName(old)" } << "old" << false;
    QTest::newRow("bool argument") << "T.SetFlag(T.Other)" << true << true
                                   << QStringList { "SetFlag(true)" } << "old" << false;
    QTest::newRow("assign string")
        << "T.Name = \"Intro; Outro\"" << true << true << none << "Intro; Outro" << false;
    QTest::newRow("assign literal, rest dropped")
        << "T.Flag = true; T.Go()" << true << true << none << "old" << true;
    QTest::newRow("assign model") << "T.Flag = T.Other" << true << true << none << "old" << true;
    QTest::newRow("two statements")
        << "T.Name = \"x\"; T.Go()" << true << true << QStringList { "Go" } << "x" << false;
    QTest::newRow("wrong type refused")
        << "T.Name = T.Flag" << true << false << none << "old" << false;
    QTest::newRow("read-only refused")
        << "T.ReadOnly = \"x\"; T.Go()" << true << false << none << "old" << false;
    QTest::newRow("literal not assignable")
        << "\"x\" = T.Name" << true << false << none << "old" << false;
    QTest::newRow("unconnected callee")
        << "T.Missing()" << false << false << none << "old" << false;
    QTest::newRow("block stops at first failure") << "T.Go(); T.Missing(); T.Go()" << false << false
                                                  << QStringList { "Go" } << "old" << false;
    QTest::newRow("string callee") << "\"x\"(T.Name)" << true << false << none << "old" << false;
    QTest::newRow("argument without value")
        << "T.SetName(T.Go)" << true << false << none << "old" << false;
    QTest::newRow("unconnected argument")
        << "T.SetName(T.Missing)" << false << false << none << "old" << false;
    QTest::newRow("argument of wrong type")
        << "T.SetName(T.Flag)" << true << false << none << "old" << false;
    QTest::newRow("argument not taken")
        << "T.Go(T.Name)" << true << false << none << "old" << false;
    QTest::newRow("argument missing") << "T.SetName()" << true << false << none << "old" << false;
    QTest::newRow("call of a value") << "T.Name()" << true << false << none << "old" << false;
    QTest::newRow("disabled still runs")
        << "T.Disabled()" << true << true << QStringList { "Disabled" } << "old" << false;
}

void tst_ParseScript::evaluation()
{
    QFETCH(QString, script);
    QFETCH(bool, connects);
    QFETCH(bool, evaluates);
    QFETCH(QStringList, log);
    QFETCH(QString, name);
    QFETCH(bool, flag);

    Models models;
    bool connected = !connects;
    const std::unique_ptr<Uip_ParseNode> node = parseAndConnect(script, &connected);
    QVERIFY(node);
    QCOMPARE(connected, connects);
    QVERIFY(models.log.isEmpty()); // connecting performs nothing
    Bnd_Variant result;
    QCOMPARE(node->Evaluate(&result), evaluates);
    QCOMPARE(models.log, log);
    QCOMPARE(models.name.getValue(), name);
    QCOMPARE(models.flag.getValue(), flag);
}

void tst_ParseScript::readiness_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("ready");

    QTest::newRow("empty") << "" << true;
    QTest::newRow("name") << "T.Name" << true;
    QTest::newRow("enabled call") << "T.Go()" << true;
    QTest::newRow("disabled call") << "T.Disabled()" << false;
    QTest::newRow("disabled call later in block") << "T.Go(); T.Disabled()" << false;
    QTest::newRow("connected argument") << "T.SetName(T.Name)" << true;
    QTest::newRow("unconnected argument") << "T.SetName(T.Missing)" << false;
    QTest::newRow("unconnected callee") << "T.Missing()" << false;
    QTest::newRow("callee without enabled state") << "T.Name()" << false;
    QTest::newRow("string callee") << "\"x\"()" << false;
    QTest::newRow("assignment") << "T.Name = \"x\"" << true;
    QTest::newRow("assignment to missing") << "T.Missing = \"x\"" << false;
    QTest::newRow("assignment from missing") << "T.Name = T.Missing" << false;
}

void tst_ParseScript::readiness()
{
    QFETCH(QString, script);
    QFETCH(bool, ready);
    Models models;
    const std::unique_ptr<Uip_ParseNode> node = parseAndConnect(script);
    QVERIFY(node);
    QCOMPARE(node->isConnected(), ready);
    QVERIFY(models.log.isEmpty());
}

void tst_ParseScript::disabledActionFollowsItsModel()
{
    Models models;
    const std::unique_ptr<Uip_ParseNode> node = parseAndConnect("T.Disabled()");
    QVERIFY(!node->isConnected());
    models.disabled.setIsEnabledDefault(true);
    QVERIFY(node->isConnected());
    bool enabled = false;
    models.disabled.setIsEnabledCB([&enabled] { return enabled; });
    QVERIFY(!node->isConnected());
    enabled = true;
    QVERIFY(node->isConnected());
}

void tst_ParseScript::connectGoesOnAfterAFailedStatement()
{
    Models models;
    bool connected = true;
    const std::unique_ptr<Uip_ParseNode> node
        = parseAndConnect("T.Missing(); T.Go(); T.Name = T.Flag", &connected);
    QVERIFY(!connected);
    auto *block = static_cast<Uip_StatementBlock_ParseNode *>(node.get());
    QVERIFY(!block->GetStatement(0)->isConnected());
    QVERIFY(block->GetStatement(1)->isConnected());
    QVERIFY(block->GetStatement(2)->isConnected());
    QVERIFY(!block->isConnected());

    // An assignment does not connect its source when its target failed, nor a call its
    // argument when its function failed.
    const std::unique_ptr<Uip_ParseNode> other
        = parseAndConnect("T.Missing = T.Name; T.Missing(T.Name)");
    block = static_cast<Uip_StatementBlock_ParseNode *>(other.get());
    QVERIFY(
        !dynamic_cast<Uip_Assign_ParseNode *>(block->GetStatement(0))->GetSource()->isConnected());
    QVERIFY(!dynamic_cast<Uip_FunctionCall_ParseNode *>(block->GetStatement(1))
                 ->GetArgument()
                 ->isConnected());
}

void tst_ParseScript::assignmentChainGivesTheOuterTargetAnEmptyVariant()
{
    Models models;
    // A model that takes any message and records the values written to it.
    QList<Bnd_Variant> written;
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
    QCOMPARE(written.size(), 1);
    QVERIFY(written.front().isEmpty());
    QCOMPARE(result, Bnd_Variant("untouched"));

    // A typed model refuses the empty variant: the statement fails after the inner assignment.
    const int reports = Kib_Assert::reportCount();
    node = parseAndConnect("T.Flag = T.Other = false\n; T.Go()");
    QVERIFY(!node->Evaluate(&result));
    QCOMPARE(models.other.getValue(), false);
    QCOMPARE(models.flag.getValue(), false);
    QVERIFY(models.log.isEmpty());
    QCOMPARE(Kib_Assert::reportCount(), reports + 1);
}

void tst_ParseScript::callPutsTheActionResultInTheResult()
{
    Models models;
    const std::unique_ptr<Uip_ParseNode> node = parseAndConnect("T.Answer()");
    Bnd_Variant result;
    QVERIFY(node->Evaluate(&result));
    QCOMPARE(result, Bnd_Variant(QStringLiteral("42")));
    QVERIFY(node->Evaluate(nullptr)); // a caller may not want the result
    QCOMPARE(models.log, QStringList({ "Answer", "Answer" }));

    // Evaluating a name reads its model.
    const std::unique_ptr<Uip_ParseNode> name = parseAndConnect("T.Name");
    QVERIFY(name->Evaluate(&result));
    QCOMPARE(result, Bnd_Variant(QStringLiteral("old")));
}

void tst_ParseScript::subscriptNameReachesOneElement()
{
    Models models;
    const std::unique_ptr<Uip_ParseNode> node
        = parseAndConnect("T.Names[1] = \"B\"; T.SetName(T.Names[2])");
    QVERIFY(node->isConnected());
    QVERIFY(node->Evaluate(nullptr));
    QCOMPARE(models.names.values(), std::vector<QString>({ "a", "B", "c" }));
    QCOMPARE(models.log, QStringList({ "SetName(c)" }));
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
    auto *call = dynamic_cast<Uip_FunctionCall_ParseNode *>(
        static_cast<Uip_StatementBlock_ParseNode *>(node.get())->GetStatement(0));
    auto *id = dynamic_cast<Uip_Identifier_ParseNode *>(call->GetFunction());
    QVERIFY(id);

    // The prefixed form is plain text to the runtime ("$" inside a word); an unprefixed "$"
    // name is a variable that no environment binds here.
    const QString expected = prefixed ? QString::number(quintptr(&window), 16) + name : name;
    const bool reachable = prefixed || !name.contains('$');
    int performed = 0;
    Bnde_ActionModelWithType<Bndt_Action<void()>> action(expected, [&performed] { ++performed; });
    QVERIFY(action.Publish());
    QCOMPARE(node->ConnectAndTypeCheck({}, withWidget ? child : nullptr), reachable);
    QCOMPARE(id->GetListener().GetConnectionName(), expected);
    QCOMPARE(node->isConnected(), reachable);
    QCOMPARE(node->Evaluate(nullptr), reachable);
    QCOMPARE(performed, reachable ? 1 : 0);
}

void tst_ParseScript::reconnectFollowsTheNewEnvironment()
{
    Models models;
    std::unique_ptr<Uip_ParseNode> node = Uip_ParseScript("$Target()", nullptr);
    QVERIFY(node->ConnectAndTypeCheck(environment("Target=T.Go"), nullptr));
    QVERIFY(node->Evaluate(nullptr));
    QVERIFY(node->ConnectAndTypeCheck(environment("Target=T.Answer"), nullptr));
    QVERIFY(node->Evaluate(nullptr));
    QVERIFY(!node->ConnectAndTypeCheck(environment("Other=T.Go"), nullptr)); // unbound: unconnected
    QVERIFY(!node->isConnected());
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

QTEST_MAIN(tst_ParseScript)
#include "tst_parsescript.moc"
