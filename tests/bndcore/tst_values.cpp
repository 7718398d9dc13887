// The value types of the runtime: variants, timecodes and sorted value lists.

#include "Bnd_Timecode.h"
#include "Bnd_Variant.h"
#include "SortedValueList.h"

#include <QtTest>

class tst_Values : public QObject
{
    Q_OBJECT

private slots:
    void variantHoldsCopiesAndCasts();
    void timecode_data();
    void timecode();
    void sortedListStaysSortedAndUnique();
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
    QCOMPARE(list.values(), (std::vector<long> { 1, 3, 4, 5 }));
    QCOMPARE(list.removeFrom(4), 2);
    QVERIFY(!list.remove(7) && list.remove(1));
    QCOMPARE(list.values(), (std::vector<long> { 3 }));
}

QTEST_GUILESS_MAIN(tst_Values)
#include "tst_values.moc"
