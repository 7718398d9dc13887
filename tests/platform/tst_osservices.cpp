#include "KivPlatform.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

class tst_OsServices : public QObject
{
    Q_OBJECT

private slots:
    void languageName_data();
    void languageName();
    void languageIdForName_data();
    void languageIdForName();
    void languageTableRoundTrip();
    void languageIdForLocale_data();
    void languageIdForLocale();
    void keyboardLanguageOverride_data();
    void keyboardLanguageOverride();
    void discardTypedAheadKeys_data();
    void discardTypedAheadKeys();
};

void tst_OsServices::languageName_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("name");

    QTest::newRow("1") << 1 << "Arabic";
    QTest::newRow("7") << 7 << "German";
    QTest::newRow("9") << 9 << "English";
    QTest::newRow("12") << 12 << "French";
    QTest::newRow("26, shared with Serbian and Bosnian") << 26 << "Croatian";
    QTest::newRow("41") << 41 << "Persian";
    QTest::newRow("47") << 47 << "Macedonian";
    QTest::newRow("91") << 91 << "Sinhala";
    QTest::newRow("106") << 106 << "Yoruba";
    QTest::newRow("126, the last one") << 126 << "Breton";
    QTest::newRow("0, neutral") << 0 << "";
    QTest::newRow("negative") << -9 << "";
    QTest::newRow("48, a gap") << 48 << "";
    QTest::newRow("127, out of range") << 127 << "";
    QTest::newRow("136, Wolof, out of range") << 136 << "";
    QTest::newRow("a full language id (English US)") << 0x409 << "";
}

void tst_OsServices::languageName()
{
    QFETCH(int, id);
    QFETCH(QString, name);

    QCOMPARE(KivPlatform::languageName(id), name);
}

void tst_OsServices::languageIdForName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("id");

    QTest::newRow("exact") << "German" << 7;
    QTest::newRow("lower case") << "english" << 9;
    QTest::newRow("upper case") << "CROATIAN" << 26;
    QTest::newRow("surrounding spaces") << "  French " << 12;
    QTest::newRow("two words") << "northern sotho" << 108;
    QTest::newRow("unknown") << "Klingon" << 0;
    QTest::newRow("prefix only") << "Germ" << 0;
    QTest::newRow("empty") << "" << 0;
}

void tst_OsServices::languageIdForName()
{
    QFETCH(QString, name);
    QFETCH(int, id);

    QCOMPARE(KivPlatform::languageIdForName(name), id);
}

void tst_OsServices::languageTableRoundTrip()
{
    const QList<int> ids = KivPlatform::supportedLanguageIds();
    QVERIFY(ids.size() > 100);
    int previous = 0;
    for (int id : ids) {
        QVERIFY2(id > previous && id <= 126, qPrintable(QString::number(id)));
        previous = id;
        const QString name = KivPlatform::languageName(id);
        QVERIFY2(!name.isEmpty(), qPrintable(QString::number(id)));
        QCOMPARE(KivPlatform::languageIdForName(name), id);
    }
}

void tst_OsServices::languageIdForLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<int>("id");

    QTest::newRow("German, Austria") << QLocale(QLocale::German, QLocale::Austria) << 7;
    QTest::newRow("English, US") << QLocale(QLocale::English, QLocale::UnitedStates) << 9;
    QTest::newRow("Portuguese, Brazil") << QLocale(QLocale::Portuguese, QLocale::Brazil) << 22;
    QTest::newRow("Chinese, Taiwan") << QLocale(QLocale::Chinese, QLocale::Taiwan) << 4;
    QTest::newRow("Serbian") << QLocale(QLocale::Serbian) << 26;
    QTest::newRow("Bosnian") << QLocale(QLocale::Bosnian) << 26;
    QTest::newRow("Norwegian Bokmal") << QLocale(QLocale::NorwegianBokmal) << 20;
    QTest::newRow("Norwegian Nynorsk") << QLocale(QLocale::NorwegianNynorsk) << 20;
    QTest::newRow("Lower Sorbian") << QLocale(QLocale::LowerSorbian) << 46;
    QTest::newRow("Bengali") << QLocale(QLocale::Bengali) << 69;
    QTest::newRow("C") << QLocale::c() << 9;
    QTest::newRow("Esperanto, no identifier") << QLocale(QLocale::Esperanto) << 0;
}

void tst_OsServices::languageIdForLocale()
{
    QFETCH(QLocale, locale);
    QFETCH(int, id);

    QCOMPARE(KivPlatform::languageIdForLocale(locale), id);
}

void tst_OsServices::keyboardLanguageOverride_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("expected"); // -1: the system's answer
    QTest::addColumn<bool>("logged");

    QTest::newRow("German") << QByteArray("7") << 7 << false;
    QTest::newRow("spaces") << QByteArray(" 12 ") << 12 << false;
    QTest::newRow("zero") << QByteArray("0") << 0 << false;
    QTest::newRow("unknown identifier") << QByteArray("200") << 200 << false;
    QTest::newRow("a name") << QByteArray("german") << -1 << true;
    QTest::newRow("hexadecimal") << QByteArray("0x07") << -1 << true;
    QTest::newRow("empty") << QByteArray() << -1 << false;
}

void tst_OsServices::keyboardLanguageOverride()
{
    QFETCH(QByteArray, value);
    QFETCH(int, expected);
    QFETCH(bool, logged);

    qunsetenv("KIV_KEYBOARD_LANGUAGE");
    const int system = KivPlatform::keyboardLanguage();
    qputenv("KIV_KEYBOARD_LANGUAGE", value);
    const auto restore = qScopeGuard([] { qunsetenv("KIV_KEYBOARD_LANGUAGE"); });
    if (logged)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("KIV_KEYBOARD_LANGUAGE.*ignored"));

    QCOMPARE(KivPlatform::keyboardLanguage(), expected < 0 ? system : expected);
}

namespace {
// Records the key events and counts the other events it receives.
class KeyRecorder : public QObject
{
public:
    QStringList keys;
    int otherEvents = 0;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
            const char *kind = event->type() == QEvent::KeyPress ? "press" : "release";
            keys << QStringLiteral("%1@%2").arg(kind).arg(
                static_cast<QKeyEvent *>(event)->timestamp());
            return true;
        }
        if (event->type() == QEvent::User)
            ++otherEvents;
        return QObject::event(event);
    }
};

void postKey(QObject *receiver, QEvent::Type type, quint64 timestamp)
{
    auto *event = new QKeyEvent(type, Qt::Key_A, Qt::NoModifier, QStringLiteral("a"));
    event->setTimestamp(timestamp);
    QCoreApplication::postEvent(receiver, event);
}
} // namespace

void tst_OsServices::discardTypedAheadKeys_data()
{
    QTest::addColumn<QList<quint64>>("typed"); // a press and a release at each timestamp
    QTest::addColumn<quint64>("cutoff"); // 0: discard everything typed so far
    QTest::addColumn<QStringList>("delivered");

    QTest::newRow("older keys go") << QList<quint64> { 100, 200, 300 } << quint64(250)
                                   << QStringList { "press@300", "release@300" };
    QTest::newRow("the cutoff itself stays") << QList<quint64> { 100, 250 } << quint64(250)
                                             << QStringList { "press@250", "release@250" };
    QTest::newRow("nothing older")
        << QList<quint64> { 300, 400 } << quint64(100)
        << QStringList { "press@300", "release@300", "press@400", "release@400" };
    QTest::newRow("everything") << QList<quint64> { 100, 4000000000 } << quint64(0)
                                << QStringList {};
}

void tst_OsServices::discardTypedAheadKeys()
{
    QFETCH(QList<quint64>, typed);
    QFETCH(quint64, cutoff);
    QFETCH(QStringList, delivered);

    KeyRecorder recorder;
    for (quint64 timestamp : typed) {
        postKey(&recorder, QEvent::KeyPress, timestamp);
        postKey(&recorder, QEvent::KeyRelease, timestamp);
    }
    QCoreApplication::postEvent(&recorder, new QEvent(QEvent::User));

    if (cutoff == 0)
        KivPlatform::discardTypedAheadKeys();
    else
        KivPlatform::discardTypedAheadKeys(cutoff);

    QCOMPARE(recorder.keys, delivered);
    QCOMPARE(recorder.otherEvents, 1);

    // Keys typed afterwards are not affected, however old their timestamp.
    recorder.keys.clear();
    postKey(&recorder, QEvent::KeyPress, 1);
    QCoreApplication::sendPostedEvents(&recorder);
    QCOMPARE(recorder.keys, QStringList { "press@1" });
}

QTEST_MAIN(tst_OsServices)
#include "tst_osservices.moc"
