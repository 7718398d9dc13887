// The value types of the runtime: variants, timecodes and sorted value lists.

#include "Bnd_Timecode.h"
#include "Bnd_ValueTraits.h"
#include "Bnd_Variant.h"
#include "SortedValueList.h"

#include <QRandomGenerator>
#include <QtTest>

#include <set>

class tst_Values : public QObject
{
    Q_OBJECT

private slots:
    void variantHoldsCopiesAndCasts();
    void timecode_data();
    void timecode();
    void sortedListStaysSortedAndUnique();
    void sortedListMatchesASet_data();
    void sortedListMatchesASet();
    void sortedListOfHugeRuns();
};

void tst_Values::variantHoldsCopiesAndCasts()
{
    Bnd_Variant empty;
    QVERIFY(empty.isEmpty() && empty.Type() == typeid(void));
    Bnd_Variant text("abc"); // a C string becomes a QString
    QVERIFY(text.Type() == typeid(QString));
    Bnd_Variant copy(text);
    *copy.get<QString>() = "changed";
    QCOMPARE(*text.get<QString>(), QString("abc"));
    QVERIFY(copy != text);
    copy.swap(empty);
    QVERIFY(copy.isEmpty());
    QCOMPARE(bnd_variant_cast<QString>(empty), QString("changed"));
    QVERIFY_THROWS_EXCEPTION(bad_Bnd_Variant_cast, bnd_variant_cast<long>(empty));
    QVERIFY(!empty.get<long>());
    QVERIFY(Bnd_Variant(5L) == Bnd_Variant(5L));
    QVERIFY(Bnd_Variant(5L) != Bnd_Variant(5)); // long and int are different types
}

void tst_Values::timecode_data()
{
    QTest::addColumn<long>("frames");
    QTest::addColumn<int>("fps");
    QTest::addColumn<QString>("text"); // drop-frame timecodes are separated by ";"

    QTest::newRow("one hour at 25") << 90000L << 25 << "01:00:00:00";
    QTest::newRow("last frame of a second") << 24L << 25 << "00:00:00:24";
    QTest::newRow("drop: first minute boundary") << 1800L << 30 << "00;01;00;02";
    QTest::newRow("drop: tenth minute keeps 0") << 17982L << 30 << "00;10;00;00";
    QTest::newRow("drop: one hour") << 107892L << 30 << "01;00;00;00";
    QTest::newRow("drop at 60 skips four") << 3600L << 60 << "00;01;00;04";
}

void tst_Values::timecode()
{
    QFETCH(long, frames);
    QFETCH(int, fps);
    QFETCH(QString, text);
    const Bnd_Timecode tc = Bnd_Timecode::fromFrameCount(frames, fps, text.contains(';'));
    QCOMPARE(tc.toString(), text);
    QCOMPARE(tc.toString(false), text.chopped(3));
    QCOMPARE(tc.toFrameCount(fps), frames);
}

void tst_Values::sortedListStaysSortedAndUnique()
{
    SortedValueList<long> list { 5, 1, 3 };
    QVERIFY(!list.insert(3) && list.insert(4) && list.contains(4) && !list.contains(2));
    QCOMPARE(std::vector<long>(list.begin(), list.end()), (std::vector<long> { 1, 3, 4, 5 }));
    QCOMPARE(list.runCount(), 2L);
    QCOMPARE(Bnd_ValueTraits::toDisplayString(list), QString("{1, 3-5}"));
    QCOMPARE(list.removeFrom(4), 2L);
    QVERIFY(!list.remove(7) && list.remove(1));
    QCOMPARE(list.first(), 3L);
    QCOMPARE(list.nextAfter(3), -1L);
}

// Random inserts and removals of values and ranges, checked against std::set after each step.
void tst_Values::sortedListMatchesASet_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<long>("span"); // values lie in [0, span)
    QTest::newRow("dense") << 1u << 40L;
    QTest::newRow("sparse") << 2u << 5000L;
    QTest::newRow("mixed") << 3u << 300L;
}

void tst_Values::sortedListMatchesASet()
{
    QFETCH(quint32, seed);
    QFETCH(long, span);
    QRandomGenerator random(seed);
    SortedValueList<long> list;
    std::set<long> expected;
    for (int step = 0; step < 3000; ++step) {
        const long a = random.bounded(int(span));
        const long b = std::min(span - 1, a + long(random.bounded(int(span / 4 + 1))));
        long changed = 0;
        switch (random.bounded(5)) {
        case 0:
            changed = list.insert(a);
            changed -= expected.insert(a).second;
            break;
        case 1:
            changed = list.remove(a);
            changed -= long(expected.erase(a));
            break;
        case 2:
            changed = list.insertRange(a, b);
            for (long v = a; v <= b; ++v)
                changed -= expected.insert(v).second;
            break;
        case 3:
            changed = list.removeRange(a, b);
            for (long v = a; v <= b; ++v)
                changed -= long(expected.erase(v));
            break;
        default:
            if (random.bounded(8) == 0) {
                changed = list.removeFrom(a);
                changed -= long(std::distance(expected.lower_bound(a), expected.end()));
                expected.erase(expected.lower_bound(a), expected.end());
            }
        }
        QCOMPARE(changed, 0L); // each operation answered how many values it really changed
        QCOMPARE(list.size(), long(expected.size()));
        QVERIFY(std::equal(list.begin(), list.end(), expected.begin(), expected.end()));
        // Runs are disjoint and never touch, so equal sets compare equal.
        long previousLast = -10;
        list.forEachRun([&](long iFirst, long iLast) {
            QVERIFY(iFirst <= iLast && iFirst > previousLast + 1);
            previousLast = iLast;
        });
        const long probe = random.bounded(int(span));
        QCOMPARE(list.contains(probe), expected.count(probe) == 1);
        const auto next = expected.upper_bound(probe);
        QCOMPARE(list.nextAfter(probe), next == expected.end() ? -1L : *next);
    }
    SortedValueList<long> rebuilt;
    for (long v : expected)
        rebuilt.insert(v);
    QVERIFY(rebuilt == list);
}

void tst_Values::sortedListOfHugeRuns()
{
    SortedValueList<long> all;
    QCOMPARE(all.insertRange(0, 99999999), 100000000L);
    QCOMPARE(all.runCount(), 1L);
    QVERIFY(all.remove(50000000) && all.contains(49999999) && !all.contains(50000000));
    QCOMPARE(all.nextAfter(49999999), 50000001L);
    QCOMPARE(all.size(), 99999999L);
    QCOMPARE(all.removeFrom(1000), 99998999L);
    QCOMPARE(all.last(), 999L);
    QCOMPARE(Bnd_ValueTraits::toDisplayString(all), QString("{0-999}"));
}

QTEST_GUILESS_MAIN(tst_Values)
#include "tst_values.moc"
