// Lifetime safety: models and listeners that go away while attached, callbacks that destroy
// what is calling them, and re-entrant sends. Run under AddressSanitizer, these prove that no
// pointer is left dangling.

#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_Array.h"
#include "Bnde_Container.h"
#include "Bnde_SimpleValue.h"
#include "Bndt_Root_Notifications.h"

#include <QtTest>

#include <memory>
#include <vector>

namespace {
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<long>> LongListener;
typedef Bnde_SimpleValue<long> LongModel;

bool isValueChanged(const Bnd_MessageInterface &m)
{
    return m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
}
} // namespace

class tst_Lifetime : public QObject
{
    Q_OBJECT

private slots:
    void modelDestroyedWhileListenersAttached();
    void listenerDestroyedWhileAttached();
    void callbackDestroysItsOwnListener();
    void callbackDestroysOtherListeners_data();
    void callbackDestroysOtherListeners();
    void callbackDestroysTheModel();
    void callbackPublishesAndUnpublishes();
    void listenerAttachedDuringDeliveryWaitsForTheNext();
    void reentrantSendsFromCallbacks();
    void connectedChangedCallbackDestroysListenerDuringModelDestruction();
    void elementListenerOutlivesItsArray();
    void elementListenerOutlivesItsIndexModel();
    void waitingListenerDestroyedDuringRetry();
    void containerDestroyedWithListenersOnChildren();
};

void tst_Lifetime::modelDestroyedWhileListenersAttached()
{
    auto model = std::make_unique<LongModel>("LT.A", 1);
    model->Publish();
    std::vector<std::unique_ptr<LongListener>> listeners;
    QList<bool> events;
    for (int i = 0; i < 5; ++i) {
        listeners.push_back(std::make_unique<LongListener>("LT.A"));
        listeners.back()->setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
            if (const auto *c = m.as<Bndt_Root_Notifications::MsgConnectedChanged>())
                events << c->connected;
        });
    }
    model.reset();
    QCOMPARE(events, QList<bool>(5, false));
    for (auto &l : listeners) {
        QVERIFY(!l->isConnectedToModel());
        QCOMPARE(l->setValue(3), int(Bnd_Status::NotConnected));
    }
    LongModel again("LT.A", 9); // they come back by themselves
    again.Publish();
    QCOMPARE(listeners.front()->getValue(), 9L);
}

void tst_Lifetime::listenerDestroyedWhileAttached()
{
    LongModel model("LT.B", 1);
    model.Publish();
    {
        LongListener a("LT.B"), b("LT.B");
        QCOMPARE(model.listenerCount(), 2);
    }
    QCOMPARE(model.listenerCount(), 0);
    QVERIFY(model.setValue(2)); // delivers to nobody, touches nothing freed
}

void tst_Lifetime::callbackDestroysItsOwnListener()
{
    LongModel model("LT.C", 0);
    model.Publish();
    auto *self = new LongListener("LT.C");
    int after = 0;
    LongListener later("LT.C");
    later.setReceiveMessageCB([&](const Bnd_MessageInterface &m) { after += isValueChanged(m); });
    self->setReceiveMessageCB([&self](const Bnd_MessageInterface &m) {
        if (isValueChanged(m)) {
            delete self;
            self = nullptr;
        }
    });
    model.setValue(1);
    QVERIFY(!self);
    QCOMPARE(after, 1); // the delivery went on to the others
    QCOMPARE(model.listenerCount(), 1);
}

void tst_Lifetime::callbackDestroysOtherListeners_data()
{
    QTest::addColumn<int>("victim"); // position of the destroyed listener relative to the killer
    QTest::newRow("earlier") << -1;
    QTest::newRow("later") << 1;
}

void tst_Lifetime::callbackDestroysOtherListeners()
{
    QFETCH(int, victim);
    LongModel model("LT.D", 0);
    model.Publish();
    std::vector<std::unique_ptr<LongListener>> ls;
    for (int i = 0; i < 3; ++i)
        ls.push_back(std::make_unique<LongListener>("LT.D"));
    std::vector<int> heard(3, 0);
    for (int i = 0; i < 3; ++i)
        ls[size_t(i)]->setReceiveMessageCB([&, i](const Bnd_MessageInterface &m) {
            if (!isValueChanged(m))
                return;
            ++heard[size_t(i)];
            if (i == 1)
                ls[size_t(1 + victim)].reset();
        });
    model.setValue(1);
    QCOMPARE(heard[1], 1);
    if (victim > 0)
        QCOMPARE(heard[2], 0); // destroyed before its turn
    QCOMPARE(model.listenerCount(), 2);
    model.setValue(2);
    QCOMPARE(heard[1], 2);
}

void tst_Lifetime::callbackDestroysTheModel()
{
    auto *model = new LongModel("LT.E", 0);
    model->Publish();
    LongListener a("LT.E"), b("LT.E");
    int bHeard = 0;
    a.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (isValueChanged(m)) {
            delete model;
            model = nullptr;
        }
    });
    b.setReceiveMessageCB([&](const Bnd_MessageInterface &m) { bHeard += isValueChanged(m); });
    // A set message: the model notifies from inside its own message handler.
    QVERIFY(a.setValue(5) == Bnd_Status::Ok);
    QVERIFY(!model);
    QCOMPARE(bHeard, 0);
    QVERIFY(!a.isConnectedToModel() && !b.isConnectedToModel());
}

void tst_Lifetime::callbackPublishesAndUnpublishes()
{
    LongModel trigger("LT.F", 0);
    trigger.Publish();
    auto created = std::make_unique<LongModel>("LT.G", 7);
    LongListener watcher("LT.G");
    LongListener l("LT.F");
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (!isValueChanged(m))
            return;
        if (trigger.getValue() == 1)
            created->Publish();
        else
            created->UnPublish();
    });
    trigger.setValue(1);
    QCOMPARE(watcher.getValue(), 7L);
    trigger.setValue(2);
    QVERIFY(!watcher.isConnectedToModel());
}

void tst_Lifetime::listenerAttachedDuringDeliveryWaitsForTheNext()
{
    LongModel model("LT.H", 0);
    model.Publish();
    std::unique_ptr<LongListener> late;
    int lateHeard = 0;
    LongListener l("LT.H");
    l.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (isValueChanged(m) && !late) {
            late = std::make_unique<LongListener>("LT.H");
            late->setReceiveMessageCB(
                [&](const Bnd_MessageInterface &mm) { lateHeard += isValueChanged(mm); });
        }
    });
    model.setValue(1);
    QCOMPARE(lateHeard, 0);
    model.setValue(2);
    QCOMPARE(lateHeard, 1);
}

void tst_Lifetime::reentrantSendsFromCallbacks()
{
    // Two models kept in step by their listeners: a set of one sets the other, which sets the
    // first again; the loop ends because values settle.
    LongModel a("LT.I", 0), b("LT.J", 0);
    a.Publish();
    b.Publish();
    LongListener la("LT.I"), lb("LT.J");
    la.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (isValueChanged(m) && lb.getValue() != la.getValue())
            lb.setValue(la.getValue());
    });
    lb.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (isValueChanged(m) && la.getValue() != lb.getValue() + 1 && lb.getValue() < 5)
            la.setValue(lb.getValue() + 1);
    });
    la.setValue(1);
    QCOMPARE(a.getValue(), 5L);
    QCOMPARE(b.getValue(), 5L);
}

void tst_Lifetime::connectedChangedCallbackDestroysListenerDuringModelDestruction()
{
    auto model = std::make_unique<LongModel>("LT.K", 0);
    model->Publish();
    auto *first = new LongListener("LT.K");
    auto *second = new LongListener("LT.K");
    int secondNotified = 0;
    first->setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (m.is<Bndt_Root_Notifications::MsgConnectedChanged>()) {
            delete second; // later in the model's list
            second = nullptr;
        }
    });
    second->setReceiveMessageCB([&](const Bnd_MessageInterface &) { ++secondNotified; });
    model.reset();
    QVERIFY(!second);
    QCOMPARE(secondNotified, 0);
    delete first;
}

void tst_Lifetime::elementListenerOutlivesItsArray()
{
    auto array = std::make_unique<Bnde_Array<long>>("LT.Arr", std::vector<long> { 1, 2 });
    array->Publish();
    LongListener element("LT.Arr[1]");
    QCOMPARE(element.getValue(), 2L);
    array.reset();
    QVERIFY(!element.isConnectedToModel());
    QVERIFY(element.isWaitingForModel());
    Bnde_Array<long> again("LT.Arr", { 5, 6 });
    again.Publish();
    QCOMPARE(element.getValue(), 6L);
}

void tst_Lifetime::elementListenerOutlivesItsIndexModel()
{
    Bnde_Array<long> array("LT.Arr2", { 1, 2 });
    array.Publish();
    auto row = std::make_unique<Bnde_Index<long>>("LT.Row2", 1);
    row->Publish();
    LongListener element("LT.Arr2[LT.Row2]");
    QCOMPARE(element.getValue(), 2L);
    row.reset();
    QVERIFY(!element.isConnectedToModel());
    array.set(1, 3); // no element model left to notify
    QCOMPARE(array.listenerCount(), 0);
}

void tst_Lifetime::waitingListenerDestroyedDuringRetry()
{
    // Both wait for the same root; connecting the first destroys the second.
    auto *first = new LongListener("LT.W.v");
    auto *second = new LongListener("LT.W.v");
    first->setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (m.is<Bndt_Root_Notifications::MsgConnectedChanged>() && second) {
            delete second;
            second = nullptr;
        }
    });
    LongModel m("LT.W.v", 1);
    m.Publish();
    QVERIFY(first->isConnectedToModel());
    QVERIFY(!second);
    QCOMPARE(Bnd_ConnectionDict::Singleton().waitingCount() >= 0, true);
    delete first;
}

void tst_Lifetime::containerDestroyedWithListenersOnChildren()
{
    auto c = std::make_unique<Bnde_Container>("LT.Box");
    c->add<Bnde_SimpleValue<long>>("v", 4L);
    c->Publish();
    LongListener child("LT.Box.v");
    Bnd_ConnectionToModel<Bndt_ArrayContainer> whole("LT.Box");
    QCOMPARE(child.getValue(), 4L);
    c->UnPublish();
    QVERIFY(!child.isConnectedToModel());
    QVERIFY(!whole.isConnectedToModel());
    c->Publish();
    QVERIFY(child.isConnectedToModel());
    c.reset();
    QVERIFY(!child.isConnectedToModel() && !whole.isConnectedToModel());
}

QTEST_GUILESS_MAIN(tst_Lifetime)
#include "tst_lifetime.moc"
