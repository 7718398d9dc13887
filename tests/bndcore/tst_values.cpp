// The value types of the runtime: variants, timecodes and sorted value lists.

#include "Bnd_Timecode.h"
#include "Bnd_Variant.h"
#include "SortedValueList.h"

#include <QtTest>

class tst_Values : public QObject
{
    Q_OBJECT

private slots:
    void variantHoldsAndCopies();
    void variantCastChecksTheType();
    void timecodeFrameCounts_data();
    void timecodeFrameCounts();
    void timecodeText_data();
    void timecodeText();
    void sortedListStaysSortedAndUnique();
};

void tst_Values::variantHoldsAndCopies()
{
    Bnd_Variant empty;
    QVERIFY(empty.isEmpty());
    QVERIFY(empty.Type() == typeid(void));

    Bnd_Variant text("abc"); // a C string becomes a QString
    QVERIFY(text.Type() == typeid(QString));
    Bnd_Variant copy(text);
    *copy.get<QString>() = "changed";
    QCOMPARE(*text.get<QString>(), QString("abc"));
    QVERIFY(copy != text);

    copy.swap(empty);
    QVERIFY(copy.isEmpty());
    QCOMPARE(*empty.get<QString>(), QString("changed"));
    QVERIFY(Bnd_Variant(5L) == Bnd_Variant(5L));
    QVERIFY(Bnd_Variant(5L) != Bnd_Variant(5)); // long and int are different types
}

void tst_Values::variantCastChecksTheType()
{
    const Bnd_Variant v(true);
    QCOMPARE(bnd_variant_cast<bool>(v), true);
    bool threw = false;
    try {
        bnd_variant_cast<long>(v);
    } catch (const bad_Bnd_Variant_cast &) {
        threw = true;
    }
    QVERIFY(threw);
    QVERIFY(!v.get<long>());
}

void tst_Values::timecodeFrameCounts_data()
{
    QTest::addColumn<long>("frames");
    QTest::addColumn<int>("fps");
    QTest::addColumn<bool>("drop");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0L << 25 << false << "00:00:00:00";
    QTest::newRow("one hour at 25") << 90000L << 25 << false << "01:00:00:00";
    QTest::newRow("last frame of a second") << 24L << 25 << false << "00:00:00:24";
    QTest::newRow("drop: first minute boundary") << 1800L << 30 << true << "00;01;00;02";
    QTest::newRow("drop: tenth minute keeps 0") << 17982L << 30 << true << "00;10;00;00";
    QTest::newRow("drop: one hour") << 107892L << 30 << true << "01;00;00;00";
}

void tst_Values::timecodeFrameCounts()
{
    QFETCH(long, frames);
    QFETCH(int, fps);
    QFETCH(bool, drop);
    QFETCH(QString, text);
    const Bnd_Timecode tc = Bnd_Timecode::fromFrameCount(frames, fps, drop);
    QCOMPARE(tc.toString(), text);
    QCOMPARE(tc.toFrameCount(fps), frames);
}

void tst_Values::timecodeText_data()
{
    QTest::addColumn<bool>("showFrames");
    QTest::addColumn<QString>("text");
    QTest::newRow("with frames") << true << "10:02:03:04";
    QTest::newRow("without frames") << false << "10:02:03";
}

void tst_Values::timecodeText()
{
    QFETCH(bool, showFrames);
    QFETCH(QString, text);
    QCOMPARE(Bnd_Timecode(10, 2, 3, 4).toString(showFrames), text);
}

void tst_Values::sortedListStaysSortedAndUnique()
{
    SortedValueList<long> list { 5, 1, 3 };
    QVERIFY(!list.insert(3));
    QVERIFY(list.insert(4));
    QCOMPARE(list.values(), (std::vector<long> { 1, 3, 4, 5 }));
    QVERIFY(list.contains(4));
    QCOMPARE(list.removeFrom(4), 2);
    QCOMPARE(list.values(), (std::vector<long> { 1, 3 }));
    QVERIFY(!list.remove(7));
    QVERIFY(list.remove(1));
    QCOMPARE(list.first(), 3L);
}

QTEST_GUILESS_MAIN(tst_Values)
#include "tst_values.moc"
