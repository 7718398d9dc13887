#include "KivPlatform.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QTest>

struct EventRecorder : QObject
{
    QList<quint64> events; // the timestamp of each key received, 0 for another event
    bool event(QEvent *e) override
    {
        events << (e->type() == QEvent::User ? 0 : static_cast<QKeyEvent *>(e)->timestamp());
        return true;
    }
};

class tst_OsServices : public QObject
{
    Q_OBJECT

private slots:
    void languageTable_data();
    void languageTable();
    void keyboardLanguageOverride_data();
    void keyboardLanguageOverride();
    void discardTypedAheadKeys();
};

void tst_OsServices::languageTable_data()
{
    QTest::addColumn<int>("id"); // its name is looked up unless 0
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("expected"); // the id of the name and of the locale
    QTest::addColumn<QLocale::Language>("locale"); // AnyLanguage: not looked up

    QTest::newRow("26, shared with Bosnian") << 26 << "Croatian" << 26 << QLocale::Bosnian;
    QTest::newRow("Nynorsk is Norwegian") << 20 << "Norwegian" << 20 << QLocale::NorwegianNynorsk;
    QTest::newRow("126, the last one") << 126 << "Breton" << 126 << QLocale::AnyLanguage;
    QTest::newRow("48, a gap; Esperanto") << 48 << "" << 0 << QLocale::Esperanto;
    QTest::newRow("case and blanks; C") << 0 << "  english " << 9 << QLocale::C;
    QTest::newRow("prefix only") << 0 << "Germ" << 0 << QLocale::AnyLanguage;
}

void tst_OsServices::languageTable()
{
    QFETCH(int, id);
    QFETCH(QString, name);
    QFETCH(int, expected);
    QFETCH(QLocale::Language, locale);

    if (id != 0)
        QCOMPARE(KivPlatform::languageName(id), name);
    QCOMPARE(KivPlatform::languageIdForName(name), expected);
    if (locale != QLocale::AnyLanguage)
        QCOMPARE(KivPlatform::languageIdForLocale(QLocale(locale)), expected);
}

void tst_OsServices::keyboardLanguageOverride_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("expected"); // -1: ignored, the system's answer

    QTest::newRow("spaces") << QByteArray(" 12 ") << 12;
    QTest::newRow("hexadecimal, logged") << QByteArray("0x07") << -1;
    QTest::newRow("empty") << QByteArray() << -1;
}

void tst_OsServices::keyboardLanguageOverride()
{
    QFETCH(QByteArray, value);
    QFETCH(int, expected);

    qputenv("KIV_KEYBOARD_LANGUAGE", value);
    if (expected < 0 && !value.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("KIV_KEYBOARD_LANGUAGE.*ignored"));
    const int overridden = KivPlatform::keyboardLanguage();
    qunsetenv("KIV_KEYBOARD_LANGUAGE");
    QCOMPARE(overridden, expected < 0 ? KivPlatform::keyboardLanguage() : expected);
}

// Only the key events go; nothing is delivered inside the call.
void tst_OsServices::discardTypedAheadKeys()
{
    EventRecorder recorder;
    const auto type = [&](std::initializer_list<quint64> iTimestamps) { // odd ones are releases
        for (quint64 time : iTimestamps) {
            auto *e
                = new QKeyEvent(time % 2 ? QEvent::KeyRelease : QEvent::KeyPress, Qt::Key_A, {});
            e->setTimestamp(time);
            QCoreApplication::postEvent(&recorder, e);
        }
        QCoreApplication::postEvent(&recorder, new QEvent(QEvent::User));
    };
    type({ 100, 101, 250 });
    KivPlatform::discardTypedAheadKeys();
    QVERIFY(recorder.events.isEmpty());
    type({ 300 }); // typed afterwards: kept
    QCoreApplication::sendPostedEvents(&recorder);
    QCOMPARE(recorder.events, (QList<quint64> { 0, 300, 0 }));
}

QTEST_MAIN(tst_OsServices)
#include "tst_osservices.moc"
