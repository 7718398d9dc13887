// The binding runtime against the nearest Qt equivalent, in one binary:
// - a get and a set of a value through a connected listener, against a QProperty-backed
//   QObject property read and written through its meta-property (and, for scale, through its
//   C++ accessors);
// - one value change notified to 10,000 listeners, against a signal with 10,000 slots;
// - connecting a listener by name with 100,000 models published, against a hash lookup plus a
//   signal connection;
// - an element get through an index-model subscript, against a plain element get.

#include "BenchRatio.h"

#include "Bnd_ConnectionToModel.h"
#include "Bnde_Array.h"
#include "Bnde_SimpleValue.h"

#include <QCoreApplication>
#include <QHash>
#include <QMetaProperty>
#include <QObject>
#include <QProperty>

#include <memory>
#include <vector>

namespace {

class QtValue : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged BINDABLE bindableValue)
public:
    int value() const { return mValue; }
    void setValue(int v) { mValue = v; }
    QBindable<int> bindableValue() { return &mValue; }
signals:
    void valueChanged();

private:
    Q_OBJECT_BINDABLE_PROPERTY(QtValue, int, mValue, &QtValue::valueChanged)
};

void BM_Bnd_GetSet(benchmark::State &state)
{
    Bnde_SimpleValue<int> model("Bench.Value", 0);
    model.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<int>> l("Bench.Value");
    int i = 0;
    for (auto _ : state) {
        l.setValue(++i);
        benchmark::DoNotOptimize(l.getValue());
    }
}
BENCHMARK(BM_Bnd_GetSet);

void BM_Qt_MetaPropertyGetSet(benchmark::State &state)
{
    QtValue object;
    const QMetaProperty p
        = object.metaObject()->property(object.metaObject()->indexOfProperty("value"));
    int i = 0;
    for (auto _ : state) {
        p.write(&object, ++i);
        benchmark::DoNotOptimize(p.read(&object).toInt());
    }
}
BENCHMARK(BM_Qt_MetaPropertyGetSet);

void BM_Qt_AccessorGetSet(benchmark::State &state)
{
    QtValue object;
    int i = 0;
    for (auto _ : state) {
        object.setValue(++i);
        benchmark::DoNotOptimize(object.value());
    }
}
BENCHMARK(BM_Qt_AccessorGetSet);

constexpr int cListeners = 10000;

void BM_Bnd_Notify10k(benchmark::State &state)
{
    Bnde_SimpleValue<int> model("Bench.Notified", 0);
    model.Publish();
    std::vector<std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<int>>>> listeners;
    long received = 0;
    for (int i = 0; i < cListeners; ++i) {
        listeners.push_back(
            std::make_unique<Bnd_ConnectionToModel<Bndt_SimpleValue<int>>>("Bench.Notified"));
        listeners.back()->setReceiveMessageCB(
            [&received](const Bnd_MessageInterface &) { ++received; });
    }
    int v = 0;
    for (auto _ : state)
        model.setValue(++v);
    benchmark::DoNotOptimize(received);
    state.SetItemsProcessed(state.iterations() * cListeners);
}
BENCHMARK(BM_Bnd_Notify10k);

void BM_Qt_Signal10k(benchmark::State &state)
{
    QtValue object;
    long received = 0;
    for (int i = 0; i < cListeners; ++i)
        QObject::connect(&object, &QtValue::valueChanged, [&received] { ++received; });
    for (auto _ : state)
        emit object.valueChanged();
    benchmark::DoNotOptimize(received);
    state.SetItemsProcessed(state.iterations() * cListeners);
}
BENCHMARK(BM_Qt_Signal10k);

constexpr int cModels = 100000;

struct ManyModels
{
    ManyModels()
    {
        for (int i = 0; i < cModels; ++i) {
            names.push_back(QStringLiteral("Bench.Many.m%1").arg(i));
            models.push_back(std::make_unique<Bnde_SimpleValue<int>>(names.back(), i));
            models.back()->Publish();
        }
    }
    std::vector<QString> names;
    std::vector<std::unique_ptr<Bnde_SimpleValue<int>>> models;
};

void BM_Bnd_ConnectByName(benchmark::State &state)
{
    static ManyModels many;
    Bnd_ConnectionToModel<Bndt_SimpleValue<int>> l;
    l.setReceiveMessageCB([](const Bnd_MessageInterface &) {});
    size_t i = 0;
    for (auto _ : state) {
        l.SetConnectionName(many.names[i]); // detaches from the previous model, attaches
        i = (i + 7919) % many.names.size();
    }
    benchmark::DoNotOptimize(l.isConnectedToModel());
}
BENCHMARK(BM_Bnd_ConnectByName);

void BM_Qt_HashLookupAndConnect(benchmark::State &state)
{
    std::vector<std::unique_ptr<QtValue>> objects;
    QHash<QString, QtValue *> byName;
    std::vector<QString> names;
    for (int i = 0; i < cModels; ++i) {
        names.push_back(QStringLiteral("Bench.Many.m%1").arg(i));
        objects.push_back(std::make_unique<QtValue>());
        byName.insert(names.back(), objects.back().get());
    }
    QObject receiver;
    QMetaObject::Connection c;
    size_t i = 0;
    for (auto _ : state) {
        QObject::disconnect(c);
        c = QObject::connect(byName.value(names[i]), &QtValue::valueChanged, &receiver, [] {});
        i = (i + 7919) % names.size();
    }
}
BENCHMARK(BM_Qt_HashLookupAndConnect);

void BM_Bnd_ElementGetByIndexModel(benchmark::State &state)
{
    Bnde_Array<int> array("Bench.Array", std::vector<int>(1000, 3));
    array.Publish();
    Bnde_Index<long> row("Bench.Row", 0);
    row.Publish();
    Bnd_ConnectionToModel<Bndt_SimpleValue<int>> element("Bench.Array[Bench.Row]");
    long i = 0;
    for (auto _ : state) {
        row.setValueQuietly(i = (i + 1) % 1000); // what a list does before it draws a row
        benchmark::DoNotOptimize(element.getValue());
    }
}
BENCHMARK(BM_Bnd_ElementGetByIndexModel);

void BM_Bnd_ElementGetPlain(benchmark::State &state)
{
    Bnde_Array<int> array("Bench.Array2", std::vector<int>(1000, 3));
    array.Publish();
    Bnde_Index<long> row("Bench.Row2", 0);
    row.Publish();
    Bnd_ConnectionToModel<Bndt_Array<int>> l("Bench.Array2");
    long i = 0;
    for (auto _ : state) {
        row.setValueQuietly(i = (i + 1) % 1000); // the same index bookkeeping, read directly
        benchmark::DoNotOptimize(l.at(i));
    }
}
BENCHMARK(BM_Bnd_ElementGetPlain);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    return BenchRatio::runAndCompare(
        argc, argv,
        { { "BM_Bnd_GetSet", "BM_Qt_MetaPropertyGetSet", 1.0 },
          { "BM_Bnd_GetSet", "BM_Qt_AccessorGetSet", 0 },
          { "BM_Bnd_Notify10k", "BM_Qt_Signal10k", 1.0 },
          { "BM_Bnd_ConnectByName", "BM_Qt_HashLookupAndConnect", 0 },
          { "BM_Bnd_ElementGetByIndexModel", "BM_Bnd_ElementGetPlain", 2.0 } });
}

#include "bench_bndcore.moc"
