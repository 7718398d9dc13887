// Message round trips through listeners for every kind of ready-made model.

#include "Bnd_ConnectionToListener.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnd_MessageDispatcher.h"
#include "Bnde_ActionModel.h"
#include "Bnde_Array.h"
#include "Bnde_ComputedArray.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"

#include <QtTest>

Q_DECLARE_METATYPE(Bnd_Variant)

namespace {
using Changed = Bndt_SimpleValue_Notifications::MsgValueChanged;

int gNextName = 0;
QString uniqueName()
{
    return QStringLiteral("Models.m%1").arg(++gNextName);
}

// Counts the notifications of type M the listener hears.
template<class M> void countInto(Bnd_ListenerBase &iListener, int &oCount)
{
    iListener.setReceiveMessageCB(
        [&oCount](const Bnd_MessageInterface &m) { oCount += m.is<M>(); });
}

// Publishes a simple value of T, writes `b` through a listener and reads it back, both typed
// and as a variant; answers "<type>: <first mismatch>", or "" when all went well.
template<class T> QString roundTrip(const T &a, const T &b)
{
    Bnde_SimpleValue<T> model(uniqueName(), a);
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<T>> l(model.GetConnectionName());
    int changes = 0;
    countInto<Changed>(l, changes);
    const QString type = Bnd_ValueTraits::typeName(typeid(T)) + ": ";
    if (!Bnd_ValueTraits::equals(l.getValue(), a))
        return type + "typed get";
    if (l.setValue(b) != Bnd_Status::Ok || !Bnd_ValueTraits::equals(model.getValue(), b))
        return type + "typed set";
    Bnd_Variant v;
    if (!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)) || !v.get<T>()
        || !Bnd_ValueTraits::equals(*v.get<T>(), b))
        return type + "variant get";
    if (!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgSetVariant(Bnd_Variant(a)))
        || !Bnd_ValueTraits::equals(model.getValue(), a))
        return type + "variant set";
    return changes == 2 ? QString() : type + QString::number(changes) + " change notifications";
}

// An action of the signature that calls iFunction and counts the calls in oCalls.
template<class Signature, class F>
std::unique_ptr<Bnde_ActionModel> makeAction(int &oCalls, const F &iFunction)
{
    return std::make_unique<Bnde_ActionModelWithType<Bndt_Action<Signature>>>(
        uniqueName(), [&oCalls, iFunction](const auto &...iArgs) {
            ++oCalls;
            return iFunction(iArgs...);
        });
}

// A widget-like object that publishes its text through a dispatcher.
struct TextOwner
{
    typedef Bndt_SimpleValue_API<QString> API;
    explicit TextOwner(const QString &iName)
        : model(iName)
    {
        dispatcher.add<API::MsgGet>(&TextOwner::handleGet).add<API::MsgSet>(&TextOwner::handleSet);
        model.setReceiveMessageCB(dispatcher.callback());
    }
    void handleGet(const API::MsgGet &m) { *m.value = text; }
    void handleSet(const API::MsgSet &m) { text = m.value, model.notifyValueChanged(); }

    QString text = "own";
    Bnd_SimpleMessageDispatcher<API, TextOwner> dispatcher { this }; // outlives the model
    Bnd_ConnectionToListener<Bndt_SimpleValue<QString>> model;
};
} // namespace

class tst_Models : public QObject
{
    Q_OBJECT

private slots:
    void init() { Kib_Assert::clearReports(); }

    void simpleValueRoundTrips();
    void simpleValueRules();
    void actionVariants_data();
    void actionVariants();
    void actionEnabledStateAndMisfits();
    void arrayMessagesAndNotifications();
    void computedArrayReadsThroughItsFunctions();
    void actionArrayPerformsByIndex();
    void containerSizeAndChildren();
    void publishedWidgetModelThroughDispatcher();
};

void tst_Models::simpleValueRoundTrips()
{
    QStringList faults;
    // Scalars, shared Qt values, a pixmap (compared by cache key) and the runtime's own types.
    faults << roundTrip<long>(-1, 123456789L) << roundTrip<double>(0.5, 2.25)
           << roundTrip<QString>("a", "b") << roundTrip(QPixmap(2, 2), QPixmap(3, 3))
           << roundTrip<QColor>(Qt::red, Qt::green)
           << roundTrip(Bnd_Timecode(0, 0, 1, 2), Bnd_Timecode(1, 2, 3, 4, true))
           << roundTrip<SortedValueList<long>>({ 1, 3 }, { 2 })
           << roundTrip(QFont("DejaVu Sans", 9), QFont("DejaVu Sans", 12))
           << roundTrip<QStringList>({ "a" }, { "b", "c" });
    faults.removeAll(QString());
    QCOMPARE(faults, QStringList());
}

void tst_Models::simpleValueRules()
{
    Bnde_SimpleValue<long> model(uniqueName(), 0);
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> sender(model.GetConnectionName());
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> other(model.GetConnectionName());
    int senderHeard = 0, otherHeard = 0;
    countInto<Changed>(sender, senderHeard);
    countInto<Changed>(other, otherHeard);
    QVERIFY(!model.setValue(0)); // the host's setter notifies only on a change
    QVERIFY(model.setValue(1));
    sender.setValue(1); // a set message always notifies...
    sender.setValue(2, false); // ...but may leave its sender out
    QCOMPARE(QList<int>({ senderHeard, otherHeard }), QList<int>({ 2, 3 }));

    // A variant of another type is reported and ignored.
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("handleMsgSetVariant - Value for variant"));
    QVERIFY(!other.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgSetVariant(Bnd_Variant("x"))));
    QCOMPARE(Kib_Assert::reportCount(), 1);
    QVERIFY(Kib_Assert::reports().at(0).endsWith("(coresw/UIF/Bnd/Bnde_SimpleValue:271)"));

    // Read-only, typed and variant sets answer status 3 and change nothing.
    model.SetReadOnly(true);
    QVERIFY(other.isReadOnly());
    Bndt_SimpleValue_BaseAPI::MsgSetVariant setVariant(Bnd_Variant(9L));
    other.SendMessageToModel(setVariant);
    QCOMPARE(QList<int>({ other.setValue(9), setVariant.status() }),
             QList<int>(2, Bnd_Status::ReadOnly));
    QCOMPARE(model.getValue(), 2L);
    QCOMPARE(senderHeard + otherHeard, 5);
}

void tst_Models::actionVariants_data()
{
    // The signatures: void(), void(const QColor &), long(long), QString().
    QTest::addColumn<int>("signature");
    QTest::addColumn<Bnd_Variant>("argument"); // empty: no argument
    QTest::addColumn<bool>("performed");
    QTest::addColumn<QString>("result");

    QTest::newRow("void() no arg") << 0 << Bnd_Variant() << true << "";
    QTest::newRow("void() with arg") << 0 << Bnd_Variant(true) << false << "";
    QTest::newRow("argument by reference") << 1 << Bnd_Variant(QColor(Qt::red)) << true << "";
    QTest::newRow("argument of another type") << 1 << Bnd_Variant("red") << false << "";
    QTest::newRow("long(long)") << 2 << Bnd_Variant(7L) << true << "14";
    QTest::newRow("QString()") << 3 << Bnd_Variant() << true << "\"done\"";
}

void tst_Models::actionVariants()
{
    QFETCH(int, signature);
    QFETCH(Bnd_Variant, argument);
    QFETCH(bool, performed);
    QFETCH(QString, result);

    int calls = 0;
    const std::unique_ptr<Bnde_ActionModel> models[] = {
        makeAction<void()>(calls, [] {}),
        makeAction<void(const QColor &)>(calls, [](const QColor &) {}),
        makeAction<long(long)>(calls, [](long i) { return 2 * i; }),
        makeAction<QString()>(calls, [] { return QString("done"); }),
    };
    models[signature]->Publish();
    Bnd_ConnectionToModel<Bndt_Action<void()>> l(models[signature]->GetConnectionName());
    const Bnd_ArgList args = argument.isEmpty() ? Bnd_ArgList() : Bnd_ArgList { argument };
    const QString warning = "^Bnde_ActionModel::convertMessageAndDoAction, '.+' takes %1 "
                            "argument\\(s\\) of its type, the message carries %2 that do not fit$";
    if (!performed)
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(warning.arg(signature ? 1 : 0).arg(int(args.size()))));
    Bnd_Variant out;
    QCOMPARE(l.invoke(args, &out), performed);
    QCOMPARE(calls, performed ? 1 : 0);
    QCOMPARE(out.toString(), result);
}

void tst_Models::actionEnabledStateAndMisfits()
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
    countInto<Bndt_Action_Notifications::MsgEnabledChanged>(l, notices);
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

    // A message of another kind is reported and ignored.
    Bnd_Variant v;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("Message type is not the action message type"));
    QVERIFY(!l.SendMessageToModel(Bndt_SimpleValue_BaseAPI::MsgGetVariant(&v)));
    QCOMPARE(Kib_Assert::reportCount(), 1);
    QVERIFY(Kib_Assert::reports().at(0).endsWith("(coresw/UIF/Bnd/Bnde_ActionModel:111)"));
}

void tst_Models::arrayMessagesAndNotifications()
{
    Bnde_Array<long> a(uniqueName(), { 0, 1, 2, 3 });
    a.Publish();
    Bnd_ConnectionToModel<Bndt_Array<long>> l(a.GetConnectionName());
    QStringList got; // "first end count newSize" of each replacement
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (const auto *r = m.as<Bndt_Array_Notifications::MsgElementsReplaced>())
            got << QString::asprintf("%ld %ld %ld %ld", r->first, r->end, r->count, r->newSize);
    });
    QCOMPARE(l.size(), 4L);
    QCOMPARE(l.at(1), 1L);
    QCOMPARE(l.setAt(1, 10), int(Bnd_Status::Ok));
    QCOMPARE(l.setAt(4, 9), int(Bnd_Status::OutOfRange));
    QVERIFY(a.set(1, 11));
    QVERIFY(!a.set(1, 11)); // unchanged: not announced
    a.insert(2, 9);
    a.append(4);
    a.remove(1, 2);
    QCOMPARE(a.values(), (std::vector<long> { 0, 2, 3, 4 }));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("^Bnde_Array::replace, index 5 is outside "
                                            "'Models\\.m\\d+' of size 4$"));
    a.insert(5, 9);
    QVERIFY(l.moveElement(0, 3));
    QVERIFY(!l.moveElement(0, 4));
    QCOMPARE(a.values(), (std::vector<long> { 2, 3, 4, 0 }));
    a.setValues({ 7, 8 });
    // Read-only, element sets and moves answer status 3 and change nothing.
    a.SetReadOnly(true);
    Bndt_Array_API::MsgMoveElement move(0, 1);
    l.SendMessageToModel(move);
    QCOMPARE(QList<int>({ l.setAt(0, 9), move.status() }), QList<int>(2, Bnd_Status::ReadOnly));
    QCOMPARE(a.values(), (std::vector<long> { 7, 8 }));
    QCOMPARE(got,
             QStringList({ "1 2 1 4", "1 2 1 4", "2 2 1 5", "5 5 1 6", "1 3 0 4", "0 4 2 2" }));
}

void tst_Models::computedArrayReadsThroughItsFunctions()
{
    long count = 3;
    int calls = 0;
    Bnde_ComputedArray<long> squares(
        "CA.squares", [&] { return count; },
        [&](long i) {
            ++calls;
            return i * i;
        });
    squares.Publish();
    Bnd_ConnectionToModel<Bndt_Array<long>> all("CA.squares");
    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> third("CA.squares[2]");
    int changes = 0;
    third.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    QCOMPARE(all.size(), 3L);
    QCOMPARE(third.getValue(), 4L);
    QCOMPARE(all.at(3, -1), -1L); // past the end: the function is not asked
    QCOMPARE(calls, 1);
    QCOMPARE(all.setAt(1, 7), int(Bnd_Status::ReadOnly));
    QVERIFY(!all.moveElement(0, 1));
    count = 10; // the host's data grew: it tells the listeners
    squares.notifyReplaced(3, 3, 7);
    QCOMPARE(all.size(), 10L);
    QCOMPARE(changes, 0); // element 2 is not among the new ones
    squares.notifyReplaced(0, 10, 10);
    QCOMPARE(changes, 1);
}

void tst_Models::actionArrayPerformsByIndex()
{
    QList<long> performed;
    Bnde_ActionArray hide(
        uniqueName(), 3, [&](long i, const Bnd_ArgList &, Bnd_Variant *) { performed << i; },
        [](long i) { return i != 1; });
    hide.Publish();
    Bnd_ConnectionToModel<Bndt_Array<Bndt_Action<void()>>> l(hide.GetConnectionName());
    Bnd_ConnectionToModel<Bndt_Action<void()>> element(hide.GetConnectionName() + "[0]");
    QCOMPARE(l.size(), 3L);
    // Enabled 0, 1; performed 2, 3 (outside); the element's enabled state and performing.
    QCOMPARE(QList<bool>({ l.isEnabledAt(0), l.isEnabledAt(1), l.invokeAt(2), l.invokeAt(3),
                           element.isEnabled(), element.invoke() }),
             QList<bool>({ true, false, true, false, true, true }));
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
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable("Bnde_Container::addChild, cannot add 'name' to '"
                                    + c.GetConnectionName() + "'"));
    QVERIFY(!c.add<Bnde_SimpleValue<long>>("name"));
}

void tst_Models::publishedWidgetModelThroughDispatcher()
{
    const QString name = uniqueName();
    TextOwner owner(name);
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> l(name);
    int changes = 0;
    countInto<Changed>(l, changes);
    QCOMPARE(l.getValue(), QString("own"));
    l.setValue("new");
    QCOMPARE(owner.text, QString("new"));
    QCOMPARE(changes, 1);
    // A message the owner has no route for.
    Bndt_SimpleValue_BaseAPI::MsgGetVariant m(nullptr);
    QVERIFY(!l.SendMessageToModel(m));
    QCOMPARE(m.status(), int(Bnd_Status::NotHandled));
}

QTEST_MAIN(tst_Models)
#include "tst_models.moc"
