#include "Kiv_FontManager.h"

#include "Kib_DirPaths.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

// A settings file with the given font descriptions, each under "FontSettings." + its name.
bool writeSettings(const QString &iPath, const QList<QPair<QString, QString>> &iFonts)
{
    QString xml = QStringLiteral("<Settings>\n  <Windows>\n    <FontSettings>\n");
    for (const auto &[name, value] : iFonts) {
        xml += QStringLiteral("      <Param name=\"%1\" value=\"%2\"/>\n")
                   .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
    }
    xml += QStringLiteral("    </FontSettings>\n  </Windows>\n"
                          "  <Application><FontSettings><Elsewhere>Serif,30</Elsewhere>"
                          "</FontSettings></Application>\n</Settings>\n");
    QFile file(iPath);
    return file.open(QIODevice::WriteOnly) && file.write(xml.toUtf8()) > 0;
}

bool sizeIsSet(const QFont &iFont)
{
    return iFont.resolveMask() & QFont::SizeResolved;
}
bool weightIsSet(const QFont &iFont)
{
    return iFont.resolveMask() & QFont::WeightResolved;
}

} // namespace

class tst_FontManager : public QObject
{
    Q_OBJECT

private slots:
    void description_data();
    void description();
    void unknownNameEntersDefault();
    void loadingAgainReplacesAndKeeps();
    void unreadableFiles_data();
    void unreadableFiles();
    void shippedSettings();

private:
    QTemporaryDir mDirectory;
};

void tst_FontManager::description_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("isDefault"); // a default QFont, nothing else checked
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("pointSize"); // -1: left unset
    QTest::addColumn<int>("weight"); // -1: left unset

    QTest::newRow("empty") << "" << true << "" << -1 << -1;
    QTest::newRow("family only") << "Liberation Serif" << false << "Liberation Serif" << -1 << -1;
    QTest::newRow("family and size")
        << "Liberation Serif,12" << false << "Liberation Serif" << 12 << -1;
    QTest::newRow("family, size, bold") << "Mono,9,75" << false << "Mono" << 9 << int(QFont::Bold);
    QTest::newRow("family, size, normal")
        << "Mono,9,50" << false << "Mono" << 9 << int(QFont::Normal);
    QTest::newRow("weight nearer to a name")
        << "Mono,9,61" << false << "Mono" << 9 << int(QFont::DemiBold);
    QTest::newRow("weight halfway: the lighter")
        << "Mono,9,60" << false << "Mono" << 9 << int(QFont::Medium);
    QTest::newRow("weight on QFont's own scale")
        << "Mono,9,600" << false << "Mono" << 9 << int(QFont::DemiBold);
    QTest::newRow("weight beyond QFont's scale") << "Mono,9,2000" << false << "Mono" << 9 << 1000;
    QTest::newRow("further parts ignored")
        << "Mono,9,75,italic,x" << false << "Mono" << 9 << int(QFont::Bold);
    QTest::newRow("blanks around the parts")
        << " Mono , 14 , 50 " << false << "Mono" << 14 << int(QFont::Normal);
    QTest::newRow("size not a number") << "Mono,large" << false << "Mono" << -1 << -1;
    QTest::newRow("weight not a number")
        << "Mono,9,bold" << false << "Mono" << 9 << int(QFont::Thin);
    QTest::newRow("hexadecimal is not a number") << "Mono,0x10" << false << "Mono" << -1 << -1;
}

void tst_FontManager::description()
{
    QFETCH(QString, value);
    QFETCH(bool, isDefault);
    QFETCH(QString, family);
    QFETCH(int, pointSize);
    QFETCH(int, weight);

    const QString path = mDirectory.filePath(QStringLiteral("description.xml"));
    QVERIFY(writeSettings(path, { { "Test.Font", value } }));
    Kiv_FontManager::loadSettingsFile(path);
    QVERIFY(Kiv_FontManager::hasFont("FontSettings.Test.Font"));
    const QFont font = Kiv_FontManager::getFont("FontSettings.Test.Font");
    QCOMPARE(font, Kiv_FontManager::fontFromDescription(value));

    if (isDefault) {
        QCOMPARE(font, QFont());
        return;
    }
    QCOMPARE(font.family(), family);
    QCOMPARE(sizeIsSet(font), pointSize != -1);
    if (pointSize != -1)
        QCOMPARE(font.pointSize(), pointSize);
    QCOMPARE(weightIsSet(font), weight != -1);
    QCOMPARE(font.weight(), weight == -1 ? QFont::Normal : QFont::Weight(weight));
    QVERIFY(!font.italic());
}

void tst_FontManager::unknownNameEntersDefault()
{
    const QString name = QStringLiteral("FontSettings.Nobody.Font");
    QVERIFY(!Kiv_FontManager::hasFont(name));
    QCOMPARE(Kiv_FontManager::getFont(name), QFont());
    QVERIFY(Kiv_FontManager::hasFont(name));

    // Once entered, it is a font like any other.
    const QFont mono(QStringLiteral("Mono"), 20);
    Kiv_FontManager::setFont(name, mono);
    QCOMPARE(Kiv_FontManager::getFont(name), mono);
}

void tst_FontManager::loadingAgainReplacesAndKeeps()
{
    const QString first = mDirectory.filePath(QStringLiteral("first.xml"));
    const QString second = mDirectory.filePath(QStringLiteral("second.xml"));
    QVERIFY(writeSettings(first, { { "Again.A", "Alpha,10" }, { "Again.B", "Beta,11" } }));
    QVERIFY(writeSettings(second, { { "Again.B", "Gamma,12" }, { "Again.C", "Delta,13" } }));

    Kiv_FontManager::loadSettingsFile(first);
    Kiv_FontManager::loadSettingsFile(second);

    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.A").family(), QStringLiteral("Alpha"));
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.B").family(), QStringLiteral("Gamma"));
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.B").pointSize(), 12);
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Again.C").family(), QStringLiteral("Delta"));
    // Only the "Windows" root is read.
    QVERIFY(!Kiv_FontManager::hasFont("FontSettings.Elsewhere"));
}

void tst_FontManager::unreadableFiles_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file

    QTest::newRow("missing") << QByteArray();
    QTest::newRow("malformed") << QByteArray("<Settings><Windows><FontSettings><X>A,1</X>");
}

void tst_FontManager::unreadableFiles()
{
    QFETCH(QByteArray, content);

    const QString path = mDirectory.filePath(QStringLiteral("unreadable.xml"));
    QFile file(path);
    QVERIFY(content.isNull() ? !file.exists() : file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    Kiv_FontManager::setFont("FontSettings.Kept.Font", QFont(QStringLiteral("Kept"), 7));
    if (!content.isNull())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Kib_Setting::SetXML, malformed"));
    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression("^Kiv_FontManager::loadSettingsFile, .*unreadable.xml"));

    Kiv_FontManager::loadSettingsFile(path);
    file.remove();

    QVERIFY(!Kiv_FontManager::hasFont("FontSettings.X"));
    QCOMPARE(Kiv_FontManager::getFont("FontSettings.Kept.Font").family(), QStringLiteral("Kept"));
}

void tst_FontManager::shippedSettings()
{
    const QString path = Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir)
        + QStringLiteral("Settings/KivSettings.xml");
    QVERIFY2(QFile::exists(path), qPrintable(path));
    Kiv_FontManager::loadSettingsFile(path);

    const struct
    {
        const char *name;
        int pointSize;
        QFont::Weight weight;
    } expected[] = {
        { "FontSettings.Kiv_Header.Font", 9, QFont::Bold },
        { "FontSettings.Kiv_Placard.TopLine.Font", 10, QFont::Bold },
        { "FontSettings.Kiv_Placard.BottomLine.Font", 8, QFont::Normal },
        { "FontSettings.Kiv_StatusWindow.Font", 8, QFont::Normal },
    };
    for (const auto &font : expected) {
        QVERIFY2(Kiv_FontManager::hasFont(font.name), font.name);
        const QFont loaded = Kiv_FontManager::getFont(font.name);
        QCOMPARE(loaded.family(), QStringLiteral("DejaVu Sans"));
        QCOMPARE(loaded.pointSize(), font.pointSize);
        QCOMPARE(loaded.weight(), font.weight);
    }
    QVERIFY(!Kiv_FontManager::hasFont("General.Language"));
    QVERIFY(!Kiv_FontManager::hasFont("Application.General.Language"));
}

QTEST_MAIN(tst_FontManager)
#include "tst_fontmanager.moc"
