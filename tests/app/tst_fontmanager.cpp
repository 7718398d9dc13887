#include "Kiv_FontManager.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_FontManager : public QObject
{
    Q_OBJECT

private slots:
    void description_data();
    void description();
    void loadingTwiceReplacesAndKeeps();

private:
    // Loads a settings file with the given fonts under "FontSettings.", and one elsewhere.
    void load(const QList<QPair<QString, QString>> &iFonts)
    {
        QString xml = "<Settings><Windows><FontSettings>";
        for (const auto &[name, value] : iFonts)
            xml += QString("<Param name=\"%1\" value=\"%2\"/>").arg(name, value.toHtmlEscaped());
        xml += "</FontSettings></Windows><Application><FontSettings><Elsewhere>Serif,30"
               "</Elsewhere></FontSettings></Application></Settings>";
        QFile file(mDirectory.filePath("settings.xml"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(xml.toUtf8()) > 0 && file.flush());
        Kiv_FontManager::loadSettingsFile(file.fileName());
    }
    QTemporaryDir mDirectory;
};

void tst_FontManager::description_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("pointSize"); // -1: left unset
    QTest::addColumn<int>("weight"); // -1: left unset
    QTest::addColumn<QString>("family");

    QTest::newRow("empty: a default font") << "" << -1 << -1 << QFont().family();
    QTest::newRow("family only") << "Liberation Serif" << -1 << -1 << "Liberation Serif";
    QTest::newRow("family and size") << "Liberation Serif,12" << 12 << -1 << "Liberation Serif";
    QTest::newRow("three parts, blanks") << " Mono , 9 , 75 " << 9 << int(QFont::Bold) << "Mono";
    QTest::newRow("further parts ignored") << "Mono,9,61,italic" << 9 << 600 << "Mono";
    QTest::newRow("size not a number") << "Mono,0x10" << -1 << -1 << "Mono";
    QTest::newRow("weight not a number") << "Mono,9,bold" << 9 << int(QFont::Thin) << "Mono";
}

void tst_FontManager::description()
{
    QFETCH(QString, value);
    QFETCH(int, pointSize);
    QFETCH(int, weight);
    QFETCH(QString, family);

    load({ { "Test.Font", value } });
    const QFont font = Kiv_FontManager::getFont("FontSettings.Test.Font");
    QCOMPARE(font.family(), family);
    QCOMPARE(font.resolveMask() & QFont::SizeResolved ? font.pointSize() : -1, pointSize);
    QCOMPARE(font.resolveMask() & QFont::WeightResolved ? int(font.weight()) : -1, weight);
}

void tst_FontManager::loadingTwiceReplacesAndKeeps()
{
    load({ { "Again.A", "Alpha,10" }, { "Again.B", "Beta,11" } });
    load({ { "Again.B", "Gamma,12" } });
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.A").family(), QStringLiteral("Alpha"));
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.B"), QFont("Gamma", 12));
    // Only "Windows" is read; a name never loaded gets the default font once asked for.
    QVERIFY(!Kiv_FontManager::hasFont("FontSettings.Elsewhere"));
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Elsewhere"), QFont());
    QVERIFY(Kiv_FontManager::hasFont("FontSettings.Elsewhere"));
}

QTEST_MAIN(tst_FontManager)
#include "tst_fontmanager.moc"
