// Message round trips through listeners for every kind of ready-made model.

#include "Bnd_ConnectionToListener.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_MessageDispatcher.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"

#include <QtTest>

Q_DECLARE_METATYPE(Bnd_Variant)

namespace {
int gNextName = 0;
QString uniqueName()
{
    return QStringLiteral("Models.m%1").arg(++gNextName);
}

// Publishes a simple value of T, writes `b` through a listener and reads it back, both typed
// and as a variant; answers a description of the first mismatch, or "" when all went well.
template<class T> QString roundTrip(const T &a, const T &b)
{
    Bnde_SimpleValue<T> model(uniqueName(), a);
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<T>> l(model.GetConnectionName());
    int changes = 0;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    if (!Bnd_ValueTraits::equals(l.getValue(), a))
        return "typed get";
    if (l.setValue(b) != Bnd_Status::Ok || !Bnd_ValueTraits::equals(model.getValue(), b))
        return "typed set";
    Bnd_Variant v;
    if (!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)) || !v.get<T>()
        || !Bnd_ValueTraits::equals(*v.get<T>(), b))
        return "variant get";
    if (!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgSetVariant(Bnd_Variant(a)))
        || !Bnd_ValueTraits::equals(model.getValue(), a))
        return "variant set";
    if (changes != 2)
        return QStringLiteral("%1 change notifications").arg(changes);
    return QString();
}
} // namespace

class tst_Models : public QObject
{
    Q_OBJECT

private slots:
    void init() { Kib_Assert::clearReports(); }

    void simpleValueRoundTrips_data();
    void simpleValueRoundTrips();
    void readOnlyRefusesWithStatus3_data();
    void readOnlyRefusesWithStatus3();
    void wrongVariantTypeIsReportedAndIgnored();
    void hostSetterNotifiesOnlyOnChange();
    void actionVariants_data();
    void actionVariants();
    void actionEnabledStateAndNotification();
    void foreignMessageAtActionModelIsReported();
    void arrayMessages();
    void arrayNotificationsCarryTheRange_data();
    void arrayNotificationsCarryTheRange();
    void actionArrayPerformsByIndex();
    void containerSizeAndChildren();
    void publishedWidgetModelThroughDispatcher();
    void echoToSenderCanBeSuppressed();
};

void tst_Models::simpleValueRoundTrips_data()
{
    QTest::addColumn<int>("kind");
    const char *names[] = { "bool",
                            "int",
                            "unsigned",
                            "long",
                            "double",
                            "QString",
                            "QPixmap",
                            "QPoint",
                            "QRect",
                            "QDateTime",
                            "QColor",
                            "Bnd_Timecode",
                            "SortedValueList<long>",
                            "QFont",
                            "QStringList" };
    for (int i = 0; i < int(sizeof(names) / sizeof(*names)); ++i)
        QTest::newRow(names[i]) << i;
}

void tst_Models::simpleValueRoundTrips()
{
    QFETCH(int, kind);
    QPixmap p1(2, 2), p2(3, 3);
    p1.fill(Qt::red);
    p2.fill(Qt::blue);
    QString fault;
    switch (kind) {
    case 0:
        fault = roundTrip<bool>(false, true);
        break;
    case 1:
        fault = roundTrip<int>(1, -7);
        break;
    case 2:
        fault = roundTrip<unsigned int>(1u, 42u);
        break;
    case 3:
        fault = roundTrip<long>(-1, 123456789L);
        break;
    case 4:
        fault = roundTrip<double>(0.5, 2.25);
        break;
    case 5:
        fault = roundTrip<QString>("a", "b");
        break;
    case 6:
        fault = roundTrip<QPixmap>(p1, p2);
        break;
    case 7:
        fault = roundTrip<QPoint>(QPoint(1, 2), QPoint(3, 4));
        break;
    case 8:
        fault = roundTrip<QRect>(QRect(0, 0, 1, 1), QRect(5, 5, 10, 10));
        break;
    case 9:
        fault = roundTrip<QDateTime>(QDateTime::fromSecsSinceEpoch(0),
                                     QDateTime::fromSecsSinceEpoch(86400));
        break;
    case 10:
        fault = roundTrip<QColor>(Qt::red, Qt::green);
        break;
    case 11:
        fault = roundTrip<Bnd_Timecode>(Bnd_Timecode(0, 0, 1, 2), Bnd_Timecode(1, 2, 3, 4, true));
        break;
    case 12:
        fault = roundTrip<SortedValueList<long>>({ 1, 3 }, { 2 });
        break;
    case 13:
        fault = roundTrip<QFont>(QFont("DejaVu Sans", 9), QFont("DejaVu Sans", 12));
        break;
    case 14:
        fault = roundTrip<QStringList>({ "a" }, { "b", "c" });
        break;
    }
    QCOMPARE(fault, QString());
}

void tst_Models::readOnlyRefusesWithStatus3_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("typed set") << 0;
    QTest::newRow("variant set") << 1;
    QTest::newRow("array element set") << 2;
    QTest::newRow("array move") << 3;
}

void tst_Models::readOnlyRefusesWithStatus3()
{
    QFETCH(int, how);
    Bnde_SimpleValue<long> value(uniqueName(), 5);
    Bnde_Array<long> array(uniqueName(), { 1, 2 });
    value.Publish();
    array.Publish();
    value.SetReadOnly(true);
    array.SetReadOnly(true);

    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> vl(value.GetConnectionName());
    Bnd_ConnectionToModel<Bndt_Array<long>> al(array.GetConnectionName());
    QVERIFY(vl.isReadOnly());
    int status = -1;
    switch (how) {
    case 0:
        status = vl.setValue(9);
        break;
    case 1: {
        Bndt_SimpleValue_BaseAPI::MsgSetVariant m(Bnd_Variant(9L));
        vl.SendMessageToModel(m);
        status = m.status();
        break;
    }
    case 2:
        status = al.setAt(0, 9);
        break;
    case 3: {
        Bndt_Array_API::MsgMoveElement m(0, 1);
        al.SendMessageToModel(m);
        status = m.status();
        break;
    }
    }
    QCOMPARE(status, int(Bnd_Status::ReadOnly));
    QCOMPARE(value.getValue(), 5L);
    QCOMPARE(array.values(), (std::vector<long> { 1, 2 }));
}

void tst_Models::wrongVariantTypeIsReportedAndIgnored()
{
    Bnde_SimpleValue<long> model(uniqueName(), 5);
    model.Publish();
    Bnd_ListenerBase l(model.GetConnectionName());
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("handleMsgSetVariant - Value for variant"));
    QVERIFY(!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgSetVariant(Bnd_Variant("text"))));
    QCOMPARE(model.getValue(), 5L);
    QCOMPARE(Kib_Assert::reportCount(), 1);
    QVERIFY(Kib_Assert::reports().first().contains("coresw/UIF/Bnd/Bnde_SimpleValue:271"));
}

void tst_Models::hostSetterNotifiesOnlyOnChange()
{
    Bnde_SimpleValue<QString> model(uniqueName(), "a");
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> l(model.GetConnectionName());
    int changes = 0;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    QVERIFY(!model.setValue("a"));
    QVERIFY(model.setValue("b"));
    QCOMPARE(changes, 1);
    l.setValue("b"); // a set message always notifies
    QCOMPARE(changes, 2);
}

void tst_Models::actionVariants_data()
{
    QTest::addColumn<int>("signature");
    QTest::addColumn<Bnd_Variant>("argument"); // empty: no argument
    QTest::addColumn<bool>("performed");
    QTest::addColumn<QString>("result");

    QTest::newRow("void() no arg") << 0 << Bnd_Variant() << true << "";
    QTest::newRow("void() with arg") << 0 << Bnd_Variant(true) << false << "";
    QTest::newRow("void(bool)") << 1 << Bnd_Variant(true) << true << "";
    QTest::newRow("void(bool) wrong type") << 1 << Bnd_Variant("yes") << false << "";
    QTest::newRow("void(bool) missing") << 1 << Bnd_Variant() << false << "";
    QTest::newRow("void(QColor)") << 2 << Bnd_Variant(QColor(Qt::red)) << true << "";
    QTest::newRow("void(QStringList)") << 3 << Bnd_Variant(QStringList { "a", "b" }) << true << "";
    QTest::newRow("void(long)") << 4 << Bnd_Variant(7L) << true << "";
    QTest::newRow("QString()") << 5 << Bnd_Variant() << true << "\"done\"";
}

void tst_Models::actionVariants()
{
    QFETCH(int, signature);
    QFETCH(Bnd_Variant, argument);
    QFETCH(bool, performed);
    QFETCH(QString, result);

    int calls = 0;
    std::unique_ptr<Bnde_ActionModel> model;
    const QString name = uniqueName();
    switch (signature) {
    case 0:
        model.reset(new Bnde_ActionModelWithType<Bndt_Action<void()>>(name, [&] { ++calls; }));
        break;
    case 1:
        model.reset(
            new Bnde_ActionModelWithType<Bndt_Action<void(bool)>>(name, [&](bool) { ++calls; }));
        break;
    case 2:
        model.reset(new Bnde_ActionModelWithType<Bndt_Action<void(const QColor &)>>(
            name, [&](const QColor &) { ++calls; }));
        break;
    case 3:
        model.reset(new Bnde_ActionModelWithType<Bndt_Action<void(const QStringList &)>>(
            name, [&](const QStringList &) { ++calls; }));
        break;
    case 4:
        model.reset(
            new Bnde_ActionModelWithType<Bndt_Action<void(long)>>(name, [&](long) { ++calls; }));
        break;
    case 5:
        model.reset(new Bnde_ActionModelWithType<Bndt_Action<QString()>>(name, [&] {
            ++calls;
            return QString("done");
        }));
        break;
    }
    model->Publish();
    Bnd_ConnectionToModel<Bndt_Action<void()>> l(name);
    Bnd_ArgList args;
    if (!argument.isEmpty())
        args.push_back(argument);
    if (!performed)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("argument"));
    Bnd_Variant out;
    QCOMPARE(l.invoke(args, &out), performed);
    QCOMPARE(calls, performed ? 1 : 0);
    QCOMPARE(out.toString(), result);
}

void tst_Models::actionEnabledStateAndNotification()
{
    struct Player
    {
        int plays = 0;
        void play() { ++plays; }
    } player;
    Bnde_ActionModelPtmf<void(), Player> play(uniqueName(), &player, &Player::play, false);
    play.Publish();
    Bnd_ConnectionToModel<Bndt_Action<void()>> l(play.GetConnectionName());
    int notices = 0;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        notices += m.is<Bndt_Action_Notifications::MsgEnabledChanged>();
    });
    QVERIFY(!l.isEnabled());
    play.setIsEnabledDefault(true);
    play.setIsEnabledDefault(true);
    QVERIFY(l.isEnabled());
    QCOMPARE(notices, 1);
    bool gate = false;
    play.setIsEnabledCB([&] { return gate; });
    QVERIFY(!l.isEnabled());
    QVERIFY(l.invoke());
    QCOMPARE(player.plays, 1);
}

void tst_Models::foreignMessageAtActionModelIsReported()
{
    Bnde_ActionModelWithType<Bndt_Action<void()>> action(uniqueName(), [] {});
    action.Publish();
    Bnd_ListenerBase l(action.GetConnectionName());
    Bnd_Variant v;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("Message type is not the action message type"));
    QVERIFY(!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)));
    QCOMPARE(Kib_Assert::reportCount(), 1);
    QVERIFY(Kib_Assert::reports().first().endsWith("coresw/UIF/Bnd/Bnde_ActionModel:111)"));
}

void tst_Models::arrayMessages()
{
    Bnde_Array<QString> names(uniqueName(), { "a", "b", "c" });
    names.Publish();
    Bnd_ConnectionToModel<Bndt_Array<QString>> l(names.GetConnectionName());
    QCOMPARE(l.size(), 3L);
    QCOMPARE(l.at(1), QString("b"));
    QCOMPARE(l.setAt(1, "B"), int(Bnd_Status::Ok));
    QCOMPARE(l.setAt(5, "x"), int(Bnd_Status::OutOfRange));
    QVERIFY(l.moveElement(0, 2));
    QCOMPARE(names.values(), (std::vector<QString> { "B", "c", "a" }));
    QVERIFY(!l.moveElement(0, 3));
}

void tst_Models::arrayNotificationsCarryTheRange_data()
{
    QTest::addColumn<int>("op");
    QTest::addColumn<QList<long>>("expected"); // first, end, count, newSize

    QTest::newRow("set") << 0 << QList<long> { 1, 2, 1, 4 };
    QTest::newRow("insert") << 1 << QList<long> { 2, 2, 1, 5 };
    QTest::newRow("append") << 2 << QList<long> { 4, 4, 1, 5 };
    QTest::newRow("remove two") << 3 << QList<long> { 1, 3, 0, 2 };
    QTest::newRow("replace all") << 4 << QList<long> { 0, 4, 2, 2 };
}

void tst_Models::arrayNotificationsCarryTheRange()
{
    QFETCH(int, op);
    QFETCH(QList<long>, expected);
    Bnde_Array<long> a(uniqueName(), { 0, 1, 2, 3 });
    a.Publish();
    Bnd_ConnectionToModel<Bndt_Array<long>> l(a.GetConnectionName());
    QList<long> got;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (const auto *r = m.as<Bndt_Array_Notifications::MsgElementsReplaced>())
            got = { r->first, r->end, r->count, r->newSize };
    });
    switch (op) {
    case 0:
        a.set(1, 10);
        break;
    case 1:
        a.insert(2, 9);
        break;
    case 2:
        a.append(9);
        break;
    case 3:
        a.remove(1, 2);
        break;
    case 4:
        a.setValues({ 7, 8 });
        break;
    }
    QCOMPARE(got, expected);
}

void tst_Models::actionArrayPerformsByIndex()
{
    QList<long> performed;
    Bnde_ActionArray hide(
        uniqueName(), 3, [&](long i, const Bnd_ArgList &, Bnd_Variant *) { performed << i; },
        [](long i) { return i != 1; });
    hide.Publish();
    Bnd_ConnectionToModel<Bndt_Array<Bndt_Action<void()>>> l(hide.GetConnectionName());
    QCOMPARE(l.size(), 3L);
    QVERIFY(l.isEnabledAt(0));
    QVERIFY(!l.isEnabledAt(1));
    QVERIFY(l.invokeAt(2));
    QVERIFY(!l.invokeAt(3));

    Bnd_ConnectionToModel<Bndt_Action<void()>> element(hide.GetConnectionName() + "[0]");
    QVERIFY(element.isEnabled());
    QVERIFY(element.invoke());
    QCOMPARE(performed, QList<long>({ 2, 0 }));
}

void tst_Models::containerSizeAndChildren()
{
    Bnde_Container c(uniqueName());
    c.add<Bnde_Array<QString>>("name", std::vector<QString> { "a", "b" });
    c.add<Bnde_ActionModelWithType<Bndt_Action<void()>>>("open");
    c.Publish();
    Bnd_ConnectionToModel<Bndt_ArrayContainer> l(c.GetConnectionName());
    QCOMPARE(l.size(), 2L);
    c.setSize(7);
    QCOMPARE(l.size(), 7L);
    QCOMPARE(c.childNames(), QStringList({ "name", "open" }));
    QVERIFY(!c.add<Bnde_SimpleValue<long>>("name"));
}

namespace {
// A widget-like object that publishes its text.
class TextOwner
{
public:
    typedef Bndt_SimpleValue_API<QString> API;
    explicit TextOwner(const QString &iName)
        : mModel(iName)
        , mDispatcher(this)
    {
        mDispatcher.add<API::MsgGet>(&TextOwner::handleGet).add<API::MsgSet>(&TextOwner::handleSet);
        mModel.setReceiveMessageCB(mDispatcher.callback());
    }
    void handleGet(const API::MsgGet &m) { *m.value = text; }
    void handleSet(const API::MsgSet &m)
    {
        if (m.value == text)
            return;
        text = m.value;
        mModel.notifyValueChanged();
    }
    QString text = "own";

private:
    Bnd_ConnectionToListener<Bndt_SimpleValue<QString>> mModel;
    Bnd_SimpleMessageDispatcher<API, TextOwner> mDispatcher;
};
} // namespace

void tst_Models::publishedWidgetModelThroughDispatcher()
{
    const QString name = uniqueName();
    TextOwner owner(name);
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> l(name);
    int changes = 0;
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    QCOMPARE(l.getValue(), QString("own"));
    l.setValue("own");
    QCOMPARE(changes, 0);
    l.setValue("new");
    QCOMPARE(owner.text, QString("new"));
    QCOMPARE(changes, 1);
    // A message the owner has no route for.
    Bnd_Variant v;
    Bndt_SimpleValue_BaseAPI::MsgGetVariant m(&v);
    QVERIFY(!l.SendMessageToModel(m));
    QCOMPARE(m.status(), int(Bnd_Status::NotHandled));
}

void tst_Models::echoToSenderCanBeSuppressed()
{
    Bnde_SimpleValue<long> model(uniqueName(), 0);
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> sender(model.GetConnectionName());
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> other(model.GetConnectionName());
    int senderHeard = 0, otherHeard = 0;
    sender.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        senderHeard += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    other.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        otherHeard += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    sender.setValue(1, false);
    sender.setValue(2, true);
    QCOMPARE(senderHeard, 1);
    QCOMPARE(otherHeard, 2);
}

QTEST_MAIN(tst_Models)
#include "tst_models.moc"
