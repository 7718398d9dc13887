// Name resolution: exact names, container descent, subscripts, variables, static specs,
// relative names, late binding and un-publishing.

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"

#include <QtTest>

#include <memory>

namespace {
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<long>> LongListener;

Bnd_ConnectionEnvironmentPtr envWith(const QList<QPair<QString, QString>> &iVars,
                                     const Bnd_ConnectionEnvironmentPtr &iParent
                                     = Bnd_ConnectionEnvironment::blankEnvironment())
{
    auto *env = new Bnd_ConnectionEnvironment(iParent, &Bnd_ConnectionDict::Singleton());
    for (const auto &v : iVars)
        env->set(v.first, v.second);
    return Bnd_ConnectionEnvironmentPtr(env);
}

// Counts the connected-changed notifications a listener receives.
struct ConnectionLog
{
    void attach(Bnd_ListenerBase &iListener)
    {
        iListener.setReceiveMessageCB([this](const Bnd_MessageInterface &m) {
            if (const auto *c = m.as<Bndt_Root_Notifications::MsgConnectedChanged>())
                events << c->connected;
            else if (m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
                ++valueChanges;
        });
    }
    QList<bool> events;
    int valueChanges = 0;
};
} // namespace

class tst_ConnectionDict : public QObject
{
    Q_OBJECT

private slots:
    void resolvesNames_data();
    void resolvesNames();
    void exactNameWinsOverContainerDescent();
    void literalSubscriptReadsAndWritesOneElement();
    void indexModelSubscriptFollowsTheIndexAtEachMessage();
    void elementListenerHearsOnlyChangesThatConcernIt_data();
    void elementListenerHearsOnlyChangesThatConcernIt();
    void staticSpecFreezesTheIndex();
    void variablesResolveThroughTheNearestScope();
    void unboundVariableLeavesListenerUnconnectedAndNotWaiting();
    void lateBindingConnectsWhenPublished();
    void lateBindingThroughContainerChild();
    void unpublishDisconnectsAndRebindsOnRepublish();
    void typeMismatchStaysUnconnected();
    void duplicatePublishIsRefused();
    void sameNameTwiceKeepsTheBinding();
    void uniqueConnStringIsUnique();
    void lookupScalesToManyModels();
};

void tst_ConnectionDict::resolvesNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected"); // value read through the listener, "" = unconnected

    QTest::newRow("flat name") << "RD.Flat.Title"
                               << "flat";
    QTest::newRow("container child") << "RD.Clip.label"
                                     << "child";
    QTest::newRow("nested container child") << "RD.Clip.Meta.author"
                                            << "nested";
    QTest::newRow("missing child") << "RD.Clip.nothing"
                                   << "";
    QTest::newRow("missing root") << "RD.Nothing.label"
                                  << "";
    QTest::newRow("static spec with blank") << "staticConnection: RD.Flat.Title"
                                            << "flat";
    QTest::newRow("static spec without blank") << "staticConnection:RD.Flat.Title"
                                               << "flat";
    QTest::newRow("literal subscript") << "RD.Names[1]"
                                       << "b";
    QTest::newRow("subscript out of range") << "RD.Names[7]"
                                            << "";
    QTest::newRow("subscript on a value") << "RD.Flat.Title[0]"
                                          << "";
    QTest::newRow("malformed subscript") << "RD.Names[1"
                                         << "";
}

void tst_ConnectionDict::resolvesNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);

    Bnde_SimpleValue<QString> flat("RD.Flat.Title", "flat");
    flat.Publish();
    Bnde_Container clip("RD.Clip");
    clip.add<Bnde_SimpleValue<QString>>("label", QString("child"));
    clip.add<Bnde_Container>("Meta")->add<Bnde_SimpleValue<QString>>("author", QString("nested"));
    clip.Publish();
    Bnde_Array<QString> names("RD.Names", { "a", "b", "c" });
    names.Publish();

    StringListener l(name);
    QCOMPARE(l.getValue(), expected);
}

void tst_ConnectionDict::exactNameWinsOverContainerDescent()
{
    Bnde_Container c("EX");
    c.add<Bnde_SimpleValue<QString>>("v", QString("from container"));
    c.Publish();
    Bnde_SimpleValue<QString> exact("EX.v", "exact");
    exact.Publish();
    StringListener l("EX.v");
    QCOMPARE(l.getValue(), QString("exact"));
}

void tst_ConnectionDict::literalSubscriptReadsAndWritesOneElement()
{
    Bnde_Array<QString> names("LS.Names", { "a", "b", "c" });
    names.Publish();
    StringListener l("LS.Names[2]");
    QVERIFY(l.isConnectedToModel());
    QCOMPARE(l.setValue("z"), int(Bnd_Status::Ok));
    QCOMPARE(names.values(), (std::vector<QString> { "a", "b", "z" }));

    Bnd_Variant v;
    QVERIFY(l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)));
    QCOMPARE(v.toString(), QString("\"z\""));
}

void tst_ConnectionDict::indexModelSubscriptFollowsTheIndexAtEachMessage()
{
    Bnde_Array<QString> names("IM.Names", { "a", "b", "c" });
    names.Publish();
    Bnde_Index<long> row("IM.Row", 0);
    row.Publish();

    StringListener l("IM.Names[IM.Row]");
    QVERIFY(l.isConnectedToModel());
    QStringList seen;
    for (long i = 0; i < 3; ++i) {
        row.setValue(i);
        seen << l.getValue();
    }
    QCOMPARE(seen, QStringList({ "a", "b", "c" }));

    row.setValue(1);
    l.setValue("B");
    QCOMPARE(names.at(1), QString("B"));

    row.setValue(-1); // no row: the element does not exist
    QString out = "untouched";
    QVERIFY(!l.readValue(out));
    QCOMPARE(out, QString("untouched"));

    // Moving the index tells the element's listeners; a quiet move (a painter's cursor) does not.
    int changes = 0;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    row.setValue(2);
    QCOMPARE(changes, 1);
    row.setValueQuietly(0);
    QCOMPARE(changes, 1);
    QCOMPARE(l.getValue(), QString("a"));
}

void tst_ConnectionDict::elementListenerHearsOnlyChangesThatConcernIt_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<bool>("heard"); // by a listener of element 2 of a 5-element array

    QTest::newRow("set element 2") << 0 << true;
    QTest::newRow("set element 4") << 1 << false;
    QTest::newRow("insert before") << 2 << true;
    QTest::newRow("insert after") << 3 << false;
    QTest::newRow("remove before") << 4 << true;
    QTest::newRow("move across") << 5 << true;
    QTest::newRow("move beyond") << 6 << false;
}

void tst_ConnectionDict::elementListenerHearsOnlyChangesThatConcernIt()
{
    QFETCH(int, change);
    QFETCH(bool, heard);

    Bnde_Array<long> values("EL.Values", { 0, 1, 2, 3, 4 });
    values.Publish();
    LongListener l("EL.Values[2]");
    ConnectionLog log;
    log.attach(l);

    switch (change) {
    case 0:
        values.set(2, 20);
        break;
    case 1:
        values.set(4, 40);
        break;
    case 2:
        values.insert(0, -1);
        break;
    case 3:
        values.insert(4, 99);
        break;
    case 4:
        values.remove(1);
        break;
    case 5:
        values.move(0, 3);
        break;
    case 6:
        values.move(3, 4);
        break;
    }
    QCOMPARE(log.valueChanges > 0, heard);
}

void tst_ConnectionDict::staticSpecFreezesTheIndex()
{
    Bnde_Array<QString> names("SF.Names", { "a", "b", "c" });
    names.Publish();
    Bnde_Index<long> row("SF.Row", 1);
    row.Publish();

    StringListener following("SF.Names[SF.Row]");
    StringListener frozen(Bnd_Utils::Bnd_MakeStaticConnectionSpec("SF.Names[SF.Row]"));
    row.setValue(2);
    QCOMPARE(following.getValue(), QString("c"));
    QCOMPARE(frozen.getValue(), QString("b"));
}

void tst_ConnectionDict::variablesResolveThroughTheNearestScope()
{
    Bnde_SimpleValue<QString> a("VR.A.Title", "A");
    a.Publish();
    Bnde_SimpleValue<QString> b("VR.B.Title", "B");
    b.Publish();

    const auto outer = envWith({ { "Tab", "VR.A" }, { "Base", "VR.B" } });
    const auto inner = envWith({ { "Tab", "VR.B" } }, outer);

    StringListener l("$Tab.Title");
    QVERIFY(!l.isConnectedToModel()); // waits for an environment
    l.connect(outer);
    QCOMPARE(l.getValue(), QString("A"));
    l.connect(inner);
    QCOMPARE(l.getValue(), QString("B"));

    StringListener relative(".Title");
    relative.connect(outer);
    QCOMPARE(relative.getValue(), QString("B"));
}

void tst_ConnectionDict::unboundVariableLeavesListenerUnconnectedAndNotWaiting()
{
    StringListener l("$Nowhere.Title");
    QVERIFY(!l.connect(Bnd_ConnectionEnvironment::blankEnvironment()));
    QVERIFY(!l.isConnectedToModel());
    QVERIFY(!l.isWaitingForModel());
}

void tst_ConnectionDict::lateBindingConnectsWhenPublished()
{
    StringListener l("LB.Later.Title");
    ConnectionLog log;
    log.attach(l);
    QVERIFY(l.isWaitingForModel());

    Bnde_SimpleValue<QString> other("LB.Other", "x");
    other.Publish(); // same root: a retry that finds nothing yet
    QVERIFY(!l.isConnectedToModel());

    {
        Bnde_SimpleValue<QString> m("LB.Later.Title", "here");
        m.Publish();
        QVERIFY(l.isConnectedToModel());
        QCOMPARE(l.getValue(), QString("here"));
    }
    QVERIFY(!l.isConnectedToModel());
    QVERIFY(l.isWaitingForModel());
    QCOMPARE(log.events, QList<bool>({ true, false }));
}

void tst_ConnectionDict::lateBindingThroughContainerChild()
{
    Bnde_Container c("LC");
    c.Publish();
    StringListener l("LC.Inner.name");
    QVERIFY(!l.isConnectedToModel());
    auto *inner = c.add<Bnde_Container>("Inner");
    QVERIFY(!l.isConnectedToModel());
    inner->add<Bnde_SimpleValue<QString>>("name", QString("found"));
    QCOMPARE(l.getValue(), QString("found"));

    c.removeChild("Inner");
    QVERIFY(!l.isConnectedToModel());
    QVERIFY(l.isWaitingForModel());
}

void tst_ConnectionDict::unpublishDisconnectsAndRebindsOnRepublish()
{
    Bnde_SimpleValue<QString> m("UP.Title", "one");
    m.Publish();
    StringListener direct("UP.Title");
    Bnde_Array<QString> arr("UP.Arr", { "x" });
    arr.Publish();
    StringListener element("UP.Arr[0]");
    QVERIFY(direct.isConnectedToModel() && element.isConnectedToModel());

    m.UnPublish();
    arr.UnPublish();
    QVERIFY(!direct.isConnectedToModel());
    QVERIFY(!element.isConnectedToModel());

    m.Publish();
    arr.Publish();
    QCOMPARE(direct.getValue(), QString("one"));
    QCOMPARE(element.getValue(), QString("x"));
}

void tst_ConnectionDict::typeMismatchStaysUnconnected()
{
    Bnde_SimpleValue<long> m("TM.Count", 3);
    m.Publish();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("type mismatch for 'TM.Count'"));
    StringListener wrong("TM.Count");
    QVERIFY(!wrong.isConnectedToModel());
    Bnd_ListenerBase any("TM.Count"); // an untyped listener takes any model
    QVERIFY(any.isConnectedToModel());
}

void tst_ConnectionDict::duplicatePublishIsRefused()
{
    Bnde_SimpleValue<QString> first("DP.Name", "first");
    Bnde_SimpleValue<QString> second("DP.Name", "second");
    QVERIFY(first.Publish());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("already published"));
    QVERIFY(!second.Publish());
    QCOMPARE(StringListener("DP.Name").getValue(), QString("first"));
}

void tst_ConnectionDict::sameNameTwiceKeepsTheBinding()
{
    Bnde_SimpleValue<QString> m("SN.Title", "t");
    m.Publish();
    StringListener l;
    ConnectionLog log;
    log.attach(l);
    l.SetConnectionName("SN.Title");
    l.SetConnectionName("SN.Title");
    l.connect(Bnd_ConnectionEnvironment::blankEnvironment());
    QCOMPARE(log.events, QList<bool>({ true }));
    QCOMPARE(m.listenerCount(), 1);
}

void tst_ConnectionDict::uniqueConnStringIsUnique()
{
    const QString a = Bnd_Utils::Bnd_UniqueConnString("List");
    Bnde_SimpleValue<long> m(a + "x"); // a published name close by does not matter
    QVERIFY(a.startsWith("List_"));
    QVERIFY(a != Bnd_Utils::Bnd_UniqueConnString("List"));
}

void tst_ConnectionDict::lookupScalesToManyModels()
{
    // 20,000 published models: every name still resolves to its own model.
    std::vector<std::unique_ptr<Bnde_SimpleValue<long>>> models;
    for (long i = 0; i < 20000; ++i) {
        models.push_back(std::make_unique<Bnde_SimpleValue<long>>(QString("SC.m%1").arg(i), i));
        models.back()->Publish();
    }
    for (long i = 0; i < 20000; i += 997)
        QCOMPARE(LongListener(QString("SC.m%1").arg(i)).getValue(-1), i);
}

QTEST_GUILESS_MAIN(tst_ConnectionDict)
#include "tst_connectiondict.moc"
