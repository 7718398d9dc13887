// Name resolution: exact names, container descent, subscripts, variables, static specs,
// relative names, late binding and un-publishing.

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"

#include <QtTest>
#include <boost/make_shared.hpp>

namespace {
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<long>> LongListener;

// What a listener hears: its connected-changed notifications and the number of value changes.
struct ConnectionLog
{
    explicit ConnectionLog(Bnd_ListenerBase &iListener)
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
    void subscriptsAddressOneElement();
    void elementListenerHearsOnlyChangesThatConcernIt_data();
    void elementListenerHearsOnlyChangesThatConcernIt();
    void variablesResolveThroughTheNearestScope();
    void listenersFollowPublishing();
    void refusedBindingsAreLogged();
    void uniqueConnStringSkipsPublishedNames();
};

void tst_ConnectionDict::resolvesNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected"); // value read through the listener, "" = unconnected
    const auto row = [](const char *tag, const char *name, const char *expected) {
        QTest::newRow(tag) << QString(name) << QString(expected);
    };

    row("nested container child", "RD.Clip.Meta.author", "nested");
    row("exact name before container child", "RD.Clip.shadowed", "exact");
    row("missing child", "RD.Clip.nothing", "");
    row("missing root", "RD.Nothing.label", "");
    row("static spec", "staticConnection:RD.Clip.shadowed", "exact");
    row("subscript out of range", "RD.Names[7]", "");
    row("subscript on a value", "RD.Clip.shadowed[0]", "");
    row("malformed subscript", "RD.Names[1", "");
}

void tst_ConnectionDict::resolvesNames()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);

    Bnde_Container clip("RD.Clip");
    clip.add<Bnde_SimpleValue<QString>>("shadowed", QString("child"));
    clip.add<Bnde_Container>("Meta")->add<Bnde_SimpleValue<QString>>("author", QString("nested"));
    clip.Publish();
    Bnde_SimpleValue<QString> exact("RD.Clip.shadowed", "exact");
    exact.Publish();
    Bnde_Array<QString> names("RD.Names", { "a", "b", "c" });
    names.Publish();

    QCOMPARE(StringListener(name).getValue(), expected);
}

void tst_ConnectionDict::subscriptsAddressOneElement()
{
    Bnde_Array<QString> names("SB.Names", { "a", "b", "c" });
    names.Publish();
    Bnde_Index<long> row("SB.Row", 1);
    row.Publish();
    StringListener literal("SB.Names[2]");
    StringListener indexed("SB.Names[SB.Row]");
    StringListener frozen(Bnd_Utils::Bnd_MakeStaticConnectionSpec("SB.Names[SB.Row]"));

    QCOMPARE(literal.setValue("z"), int(Bnd_Status::Ok));
    QCOMPARE(names.values(), (std::vector<QString> { "a", "b", "z" }));
    Bnd_Variant v;
    QVERIFY(literal.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)));
    QCOMPARE(v.toString(), QString("\"z\""));

    // The index is read at each message; a static spec keeps the element it found.
    row.setValue(-1); // no row: the element does not exist
    QCOMPARE(indexed.getValue("none"), QString("none"));
    QCOMPARE(frozen.getValue(), QString("b"));

    // Moving the index tells the element's listeners; a quiet move (a painter's cursor) does not.
    ConnectionLog log(indexed);
    row.setValue(2);
    QCOMPARE(log.valueChanges, 1);
    row.setValueQuietly(0);
    QCOMPARE(log.valueChanges, 1);
    QCOMPARE(indexed.getValue(), QString("a"));

    // "Array.arrayMetaData" follows the array's changes; it means nothing for other models.
    Bnd_ListenerBase changes("SB.Names.arrayMetaData");
    Bnd_ListenerBase notAnArray("SB.Row.arrayMetaData");
    QVERIFY(changes.isConnectedToModel() && !notAnArray.isConnectedToModel());
}

void tst_ConnectionDict::elementListenerHearsOnlyChangesThatConcernIt_data()
{
    QTest::addColumn<QString>("change"); // "set i value", "insert i value" or "move from to"
    QTest::addColumn<bool>("heard"); // by a listener of element 2 of { 0, 1, 2, 3, 4 }

    QTest::newRow("set element 2") << "set 2 20" << true;
    QTest::newRow("set element 4") << "set 4 40" << false;
    QTest::newRow("insert before") << "insert 0 -1" << true;
    QTest::newRow("insert after") << "insert 4 99" << false;
    QTest::newRow("move across") << "move 0 3" << true;
    QTest::newRow("move beyond") << "move 3 4" << false;
}

void tst_ConnectionDict::elementListenerHearsOnlyChangesThatConcernIt()
{
    QFETCH(QString, change);
    QFETCH(bool, heard);
    const long a = change.section(' ', 1, 1).toLong(), b = change.section(' ', 2).toLong();

    Bnde_Array<long> values("EL.Values", { 0, 1, 2, 3, 4 });
    values.Publish();
    LongListener l("EL.Values[2]");
    ConnectionLog log(l);
    if (change.startsWith("set"))
        values.set(a, b);
    else if (change.startsWith("insert"))
        values.insert(a, b);
    else
        values.move(a, b);
    QCOMPARE(log.valueChanges > 0, heard);
}

void tst_ConnectionDict::variablesResolveThroughTheNearestScope()
{
    Bnde_SimpleValue<QString> a("VR.A.Title", "A");
    a.Publish();
    Bnde_SimpleValue<QString> b("VR.B.Title", "B");
    b.Publish();
    const auto outer = boost::make_shared<Bnd_ConnectionEnvironment>(
        Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    outer->set("Tab=VR.A; Base=VR.B");
    const auto inner = boost::make_shared<Bnd_ConnectionEnvironment>(outer, nullptr);
    inner->set("Tab=VR.B");

    StringListener l("$Tab.Title");
    QVERIFY(!l.isConnectedToModel()); // waits for an environment
    l.connect(outer);
    QCOMPARE(l.getValue(), QString("A"));
    l.connect(inner);
    QCOMPARE(l.getValue(), QString("B"));
    StringListener relative(".Title");
    relative.connect(outer);
    QCOMPARE(relative.getValue(), QString("B"));

    // An unbound variable disconnects, and there is no name to wait for.
    QVERIFY(!l.connect(Bnd_ConnectionEnvironment::blankEnvironment()));
    QVERIFY(!l.isConnectedToModel() && !l.isWaitingForModel());
}

void tst_ConnectionDict::listenersFollowPublishing()
{
    StringListener l("LB.Title"), element("LB.Arr[0]");
    ConnectionLog log(l);
    QVERIFY(l.isWaitingForModel());
    Bnde_SimpleValue<QString> other("LB.Other", "x");
    other.Publish(); // same root: a retry that finds nothing yet
    QVERIFY(!l.isConnectedToModel());
    Bnde_Array<QString> arr("LB.Arr", { "x" });
    arr.Publish();
    {
        Bnde_SimpleValue<QString> m("LB.Title", "here");
        m.Publish();
        QCOMPARE(QStringList({ l.getValue(), element.getValue() }), QStringList({ "here", "x" }));
        l.SetConnectionName("LB.Title"); // the same target again: the binding stays
        l.connect(Bnd_ConnectionEnvironment::blankEnvironment());
        QCOMPARE(m.listenerCount(), 1);

        m.UnPublish();
        arr.UnPublish();
        QVERIFY(!l.isConnectedToModel() && !element.isConnectedToModel());
        m.Publish();
        arr.Publish();
        QCOMPARE(QStringList({ l.getValue(), element.getValue() }), QStringList({ "here", "x" }));
    }
    QVERIFY(!l.isConnectedToModel() && l.isWaitingForModel());
    QCOMPARE(log.events, QList<bool>({ true, false, true, false }));

    // The same through a child that a published container gains and loses later.
    Bnde_Container c("LC");
    c.Publish();
    StringListener child("LC.Inner.name");
    c.add<Bnde_Container>("Inner")->add<Bnde_SimpleValue<QString>>("name", QString("found"));
    QCOMPARE(child.getValue(), QString("found"));
    c.removeChild("Inner");
    QVERIFY(!child.isConnectedToModel() && child.isWaitingForModel());
}

void tst_ConnectionDict::refusedBindingsAreLogged()
{
    Bnde_SimpleValue<long> m("RB.Count", 3);
    m.Publish();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("type mismatch for 'RB.Count'"));
    QVERIFY(!StringListener("RB.Count").isConnectedToModel());
    QVERIFY(Bnd_ListenerBase("RB.Count").isConnectedToModel()); // an untyped one takes any model

    Bnde_SimpleValue<long> second("RB.Count", 4);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("'RB.Count' is already published"));
    QVERIFY(!second.Publish());
    QCOMPARE(LongListener("RB.Count").getValue(), 3L);
}

void tst_ConnectionDict::uniqueConnStringSkipsPublishedNames()
{
    const QString a = Bnd_Utils::Bnd_UniqueConnString("List");
    Bnde_SimpleValue<long> next("List_" + QString::number(a.mid(5).toULongLong() + 1));
    QVERIFY(a.startsWith("List_") && next.Publish());
    const QString b = Bnd_Utils::Bnd_UniqueConnString("List");
    QVERIFY(b != a && b != next.GetConnectionName());
}

QTEST_GUILESS_MAIN(tst_ConnectionDict)
#include "tst_connectiondict.moc"
