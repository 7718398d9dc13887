// Lifetime safety: models and listeners that go away while attached, callbacks that destroy
// what is calling them, and re-entrant sends. Under AddressSanitizer, nothing may dangle.

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"

#include <QtTest>

#include <memory>
#include <utility>
#include <vector>

namespace {
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<long>> LongListener;
typedef Bnde_SimpleValue<long> LongModel;
typedef Bndt_SimpleValue_Notifications::MsgValueChanged ValueChanged;
typedef Bndt_Root_Notifications::MsgConnectedChanged ConnectedChanged;

// Makes `iListener` run `iDo` on each notification of type Msg.
template<class Msg, class F> void on(Bnd_ListenerBase &iListener, F iDo)
{
    iListener.setReceiveMessageCB([iDo](const Bnd_MessageInterface &m) {
        if (m.is<Msg>())
            iDo();
    });
}
} // namespace

class tst_Lifetime : public QObject
{
    Q_OBJECT

private slots:
    void modelAndListenersDestroyedWhileAttached();
    void callbackDestroysAListener_data();
    void callbackDestroysAListener();
    void callbackDestroysTheModel();
    void callbackAttachesAndPublishes();
    void reentrantSendsFromCallbacks();
    void connectedChangedCallbackDestroysTheNextListener_data();
    void connectedChangedCallbackDestroysTheNextListener();
    void listenersOutliveTheModelsTheyGoThrough();
};

void tst_Lifetime::modelAndListenersDestroyedWhileAttached()
{
    auto model = std::make_unique<LongModel>("LT.A", 1);
    model->Publish();
    std::vector<std::unique_ptr<LongListener>> listeners;
    QList<bool> events;
    for (int i = 0; i < 5; ++i) {
        listeners.push_back(std::make_unique<LongListener>("LT.A"));
        listeners.back()->setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
            if (const auto *c = m.as<ConnectedChanged>())
                events << c->connected;
        });
    }
    listeners.erase(listeners.begin()); // leaves a hole in the model's list
    QCOMPARE(model->listenerCount(), 4);
    QVERIFY(model->setValue(2)); // skips the hole, touches nothing freed

    model.reset();
    QCOMPARE(events, QList<bool>(4, false));
    QCOMPARE(listeners.front()->setValue(3), int(Bnd_Status::NotConnected));
    LongModel again("LT.A", 9); // they come back by themselves
    again.Publish();
    QCOMPARE(again.listenerCount(), 4);
}

void tst_Lifetime::callbackDestroysAListener_data()
{
    QTest::addColumn<int>("victim"); // which of three listeners the second one destroys
    QTest::addColumn<QList<int>>("heard"); // value changes each one heard, over two changes

    QTest::newRow("an earlier one") << 0 << QList<int> { 1, 2, 2 };
    QTest::newRow("itself") << 1 << QList<int> { 2, 1, 2 };
    QTest::newRow("a later one, before its turn") << 2 << QList<int> { 2, 2, 0 };
}

void tst_Lifetime::callbackDestroysAListener()
{
    QFETCH(int, victim);
    QFETCH(QList<int>, heard);
    LongModel model("LT.D", 0);
    model.Publish();
    std::vector<std::unique_ptr<LongListener>> ls;
    QList<int> counts(3, 0);
    for (int i = 0; i < 3; ++i) {
        ls.push_back(std::make_unique<LongListener>("LT.D"));
        on<ValueChanged>(*ls.back(), [&, i] {
            if (++counts[i] == 1 && i == 1)
                ls[size_t(victim)].reset();
        });
    }
    model.setValue(1);
    QCOMPARE(model.listenerCount(), 2);
    model.setValue(2);
    QCOMPARE(counts, heard);
}

void tst_Lifetime::callbackDestroysTheModel()
{
    auto *model = new LongModel("LT.E", 0);
    model->Publish();
    LongListener a("LT.E"), b("LT.E");
    int bHeard = 0;
    on<ValueChanged>(a, [&] { delete std::exchange(model, nullptr); });
    on<ValueChanged>(b, [&] { ++bHeard; });
    // A set message: the model notifies from inside its own message handler.
    QCOMPARE(a.setValue(5), int(Bnd_Status::Ok));
    QVERIFY(!model);
    QCOMPARE(bHeard, 0);
    QVERIFY(!a.isConnectedToModel() && !b.isConnectedToModel());
}

void tst_Lifetime::callbackAttachesAndPublishes()
{
    LongModel trigger("LT.F", 0), created("LT.G", 7);
    trigger.Publish();
    LongListener watcher("LT.G"), l("LT.F");
    int lateHeard = 0;
    std::unique_ptr<LongListener> late;
    on<ValueChanged>(l, [&] {
        if (late) {
            created.UnPublish();
            return;
        }
        created.Publish();
        late = std::make_unique<LongListener>("LT.F");
        on<ValueChanged>(*late, [&] { ++lateHeard; });
    });
    trigger.setValue(1);
    QCOMPARE(watcher.getValue(), 7L);
    QCOMPARE(lateHeard, 0); // attached during a delivery: it hears the next one
    trigger.setValue(2);
    QCOMPARE(lateHeard, 1);
    QVERIFY(!watcher.isConnectedToModel());
}

void tst_Lifetime::reentrantSendsFromCallbacks()
{
    // Two models kept in step by their listeners, each set setting the other until they settle.
    LongModel a("LT.I", 0), b("LT.J", 0);
    a.Publish();
    b.Publish();
    LongListener la("LT.I"), lb("LT.J");
    on<ValueChanged>(la, [&] {
        if (lb.getValue() != la.getValue())
            lb.setValue(la.getValue());
    });
    on<ValueChanged>(lb, [&] {
        if (la.getValue() != lb.getValue() + 1 && lb.getValue() < 5)
            la.setValue(lb.getValue() + 1);
    });
    la.setValue(1);
    QCOMPARE(a.getValue(), 5L);
    QCOMPARE(b.getValue(), 5L);
}

void tst_Lifetime::connectedChangedCallbackDestroysTheNextListener_data()
{
    QTest::addColumn<bool>("connecting"); // while a retry connects them, or the model goes away
    QTest::newRow("model destroyed") << false;
    QTest::newRow("late binding") << true;
}

void tst_Lifetime::connectedChangedCallbackDestroysTheNextListener()
{
    QFETCH(bool, connecting);
    Bnd_ConnectionDict &dict = Bnd_ConnectionDict::Singleton();
    const int waitingBefore = dict.waitingCount();
    auto model = std::make_unique<LongModel>("LT.K.v", 0);
    if (!connecting)
        model->Publish();
    LongListener first("LT.K.v");
    auto *second = new LongListener("LT.K.v");
    int secondHeard = 0;
    on<ConnectedChanged>(first, [&] { delete std::exchange(second, nullptr); });
    second->setReceiveMessageCB([&](const Bnd_MessageInterface &) { ++secondHeard; });
    if (connecting)
        model->Publish();
    else
        model.reset();
    QVERIFY(!second);
    QCOMPARE(secondHeard, 0);
    QCOMPARE(first.isConnectedToModel(), connecting);
    QCOMPARE(dict.waitingCount(), waitingBefore + (connecting ? 0 : 1));
}

void tst_Lifetime::listenersOutliveTheModelsTheyGoThrough()
{
    auto array = std::make_unique<Bnde_Array<long>>("LT.Arr", std::vector<long> { 1, 2 });
    array->Publish();
    auto row = std::make_unique<Bnde_Index<long>>("LT.Row", 1);
    row->Publish();
    LongListener literal("LT.Arr[1]"), indexed("LT.Arr[LT.Row]");
    QCOMPARE(indexed.getValue(), 2L);
    row.reset();
    QVERIFY(!indexed.isConnectedToModel());
    QCOMPARE(array->listenerCount(), 1); // the element model of `indexed` went with the index
    array->set(1, 3);
    QCOMPARE(literal.getValue(), 3L);
    array.reset();
    QVERIFY(!literal.isConnectedToModel() && literal.isWaitingForModel());
    Bnde_Array<long> again("LT.Arr", { 5, 6 });
    again.Publish();
    QCOMPARE(literal.getValue(), 6L);

    auto box = std::make_unique<Bnde_Container>("LT.Box");
    box->add<Bnde_SimpleValue<long>>("v", 4L);
    box->Publish();
    LongListener child("LT.Box.v");
    Bnd_ConnectionToModel<Bndt_ArrayContainer> whole("LT.Box");
    QCOMPARE(child.getValue(), 4L);
    box->UnPublish();
    QVERIFY(!child.isConnectedToModel() && !whole.isConnectedToModel());
    box->Publish();
    QVERIFY(child.isConnectedToModel());
    box.reset();
    QVERIFY(!child.isConnectedToModel() && !whole.isConnectedToModel());
}

QTEST_GUILESS_MAIN(tst_Lifetime)
#include "tst_lifetime.moc"
