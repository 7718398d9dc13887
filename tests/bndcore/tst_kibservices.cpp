#include "Kib_DirPaths.h"
#include "Kib_Resource.h"
#include "Kib_Setting.h"
#include "Kib_StringUtils.h"
#include "Kib_UIDialog.h"
#include "Kic_EditMenu.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QFontInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBoundaryFinder>
#include <QValidator>

#include <map>
#include <memory>

namespace {

// An environment variable as it was, to be put back.
struct SavedVariable
{
    QByteArray mName;
    QByteArray mValue;
    bool mWasSet = false;

    void save(const char *iName)
    {
        mName = iName;
        mWasSet = qEnvironmentVariableIsSet(iName);
        mValue = qgetenv(iName);
    }
    void restore() const
    {
        if (mWasSet)
            qputenv(mName.constData(), mValue);
        else
            qunsetenv(mName.constData());
    }
};

bool makeDir(const QString &iPath)
{
    return QDir().mkpath(iPath);
}

// The parameters of a reader as "name=value", in order.
QStringList paramsOf(const Kib_Setting &iSetting)
{
    QStringList list;
    QString name;
    QString value;
    for (int n = 0; iSetting.GetNthParam(n, name, value); ++n)
        list << name + QLatin1Char('=') + value;
    return list;
}

// A text widget stand-in: knows the seven edit commands, obeys the enabled ones.
class FakeCommander : public Kic_EditMenuCommander
{
public:
    QSet<unsigned int> mEnabled;
    std::map<unsigned int, QString> mTexts;
    QList<unsigned int> mObeyed;

    bool findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText) override
    {
        if (iCommand >= unsigned(Kic_CommandCount)) {
            oEnabled = true; // must not leak out for an unknown command
            return false;
        }
        oEnabled = mEnabled.contains(iCommand);
        const auto text = mTexts.find(iCommand);
        oText = text == mTexts.end() ? QString() : text->second;
        return true;
    }
    bool obeyCommand(unsigned int iCommand) override
    {
        mObeyed << iCommand;
        return mEnabled.contains(iCommand);
    }
};

} // namespace

Q_DECLARE_METATYPE(Kib_DirPaths::DirPath_t)
Q_DECLARE_METATYPE(Kib_UIDialog::UIicon_t)
Q_DECLARE_METATYPE(QMessageBox::Icon)

class tst_KibServices : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void resourceDirLookup_data();
    void resourceDirLookup();
    void dirPaths_data();
    void dirPaths();
    void applicationSeed_data();
    void applicationSeed();

    void resourcePath_data();
    void resourcePath();
    void loadPixmap_data();
    void loadPixmap();
    void loadPixmapCache();

    void settingParams_data();
    void settingParams();
    void settingMalformed_data();
    void settingMalformed();
    void settingValue_data();
    void settingValue();
    void settingSampleFile_data();
    void settingSampleFile();

    void ellipsis_data();
    void ellipsis();

    void messageButtons_data();
    void messageButtons();
    void messageBox_data();
    void messageBox();
    void dontAskAgain_data();
    void dontAskAgain();
    void userInput_data();
    void userInput();
    void inputDialogOk_data();
    void inputDialogOk();

    void editMenuFocus_data();
    void editMenuFocus();
    void editMenuForwarding_data();
    void editMenuForwarding();
    void editMenuActions();

private:
    SavedVariable mResourceVariable;
    SavedVariable mDataHome;
    SavedVariable mConfigHome;
};

void tst_KibServices::initTestCase()
{
    mResourceVariable.save("KIV_RESOURCE_DIR");
    mDataHome.save("XDG_DATA_HOME");
    mConfigHome.save("XDG_CONFIG_HOME");
}

void tst_KibServices::cleanup()
{
    mResourceVariable.restore();
    mDataHome.restore();
    mConfigHome.restore();
    Kib_DirPaths::Initialize(nullptr);
    Kib_Resource::setResourcePath(QString());
    Kib_UIDialog::setResponder({});
    Kib_UIDialog::forgetDontAskAgain();
    Kic_EditMenu::instance().focusInEvent(nullptr);
}

// ---- Kib_DirPaths --------------------------------------------------------------------------

void tst_KibServices::resourceDirLookup_data()
{
    // environment: "unset", "empty", "dir", "dir/" (with a trailing separator), "missing", "file"
    QTest::addColumn<QString>("environment");
    QTest::addColumn<bool>("besideExe");
    QTest::addColumn<bool>("inShare");
    QTest::addColumn<bool>("seedIsDir");
    QTest::addColumn<QString>("expected"); // "env", "beside", "share" or "source"

    QTest::newRow("variable wins over installed") << "dir" << true << true << false << "env";
    QTest::newRow("variable with separator") << "dir/" << true << false << false << "env";
    QTest::newRow("variable naming nothing") << "missing" << true << true << false << "beside";
    QTest::newRow("variable naming a file") << "file" << false << true << false << "share";
    QTest::newRow("empty variable") << "empty" << true << false << false << "beside";
    QTest::newRow("beside before share") << "unset" << true << true << false << "beside";
    QTest::newRow("share") << "unset" << false << true << false << "share";
    QTest::newRow("seed is the directory") << "unset" << true << false << true << "beside";
    QTest::newRow("source tree last") << "unset" << false << false << false << "source";
    QTest::newRow("missing variable, source") << "missing" << false << false << true << "source";
}

void tst_KibServices::resourceDirLookup()
{
    QFETCH(QString, environment);
    QFETCH(bool, besideExe);
    QFETCH(bool, inShare);
    QFETCH(bool, seedIsDir);
    QFETCH(QString, expected);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString root = tmp.path();
    const QString bin = root + "/app/bin";
    QVERIFY(makeDir(bin));
    QVERIFY(makeDir(root + "/envres"));
    QFile file(root + "/plain.txt");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    if (besideExe)
        QVERIFY(makeDir(bin + "/resources"));
    if (inShare)
        QVERIFY(makeDir(root + "/app/share/kivcore/resources"));

    if (environment == "unset")
        qunsetenv("KIV_RESOURCE_DIR");
    else if (environment == "empty")
        qputenv("KIV_RESOURCE_DIR", QByteArray());
    else if (environment == "dir")
        qputenv("KIV_RESOURCE_DIR", QFile::encodeName(root + "/envres"));
    else if (environment == "dir/")
        qputenv("KIV_RESOURCE_DIR", QFile::encodeName(root + "/envres/"));
    else if (environment == "missing")
        qputenv("KIV_RESOURCE_DIR", QFile::encodeName(root + "/nowhere"));
    else if (environment == "file")
        qputenv("KIV_RESOURCE_DIR", QFile::encodeName(root + "/plain.txt"));

    Kib_DirPaths::Initialize(QFile::encodeName(seedIsDir ? bin : bin + "/kivapp").constData());
    const QString path = Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir, true);

    QVERIFY2(path.endsWith('/'), qPrintable(path));
    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::TranslationsDir), path + "Translations/");
    if (expected == "env")
        QCOMPARE(path, root + "/envres/");
    else if (expected == "beside")
        QCOMPARE(path, bin + "/resources/");
    else if (expected == "share")
        QCOMPARE(path, root + "/app/share/kivcore/resources/");
    else {
        QVERIFY2(!path.startsWith(root), qPrintable(path));
        QVERIFY2(QFileInfo::exists(path + "Settings/KivSettings.xml"), qPrintable(path));
    }
    QVERIFY(!QFileInfo::exists(root + "/nowhere")); // a read-only kind is never created
}

void tst_KibServices::dirPaths_data()
{
    QTest::addColumn<Kib_DirPaths::DirPath_t>("kind");
    QTest::addColumn<bool>("create");
    QTest::addColumn<QString>(
        "expected"); // "<data>", "<config>", "<res>" and "<app>" stand for bases
    QTest::addColumn<bool>("exists");

    QTest::newRow("user data") << Kib_DirPaths::UserDataDir << false << "<data>" << false;
    QTest::newRow("user data, created") << Kib_DirPaths::UserDataDir << true << "<data>" << true;
    QTest::newRow("settings") << Kib_DirPaths::SettingsDir << false << "<config>" << false;
    QTest::newRow("settings, created") << Kib_DirPaths::SettingsDir << true << "<config>" << true;
    QTest::newRow("keymaps") << Kib_DirPaths::KeymapDir << false << "<data>Keymaps/" << false;
    QTest::newRow("keymaps, created")
        << Kib_DirPaths::KeymapDir << true << "<data>Keymaps/" << true;
    QTest::newRow("translations are never created")
        << Kib_DirPaths::TranslationsDir << true << "<res>Translations/" << false;
    QTest::newRow("application") << Kib_DirPaths::ApplicationDir << true << "<app>" << true;
    QTest::newRow("unknown kind") << Kib_DirPaths::DirPath_t(6) << true << "" << false;
}

void tst_KibServices::dirPaths()
{
    QFETCH(Kib_DirPaths::DirPath_t, kind);
    QFETCH(bool, create);
    QFETCH(QString, expected);
    QFETCH(bool, exists);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString data = tmp.path() + "/data";
    const QString config = tmp.path() + "/config";
    const QString resources = tmp.path() + "/resources/";
    QVERIFY(makeDir(resources));
    qputenv("XDG_DATA_HOME", QFile::encodeName(data));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(config));
    qputenv("KIV_RESOURCE_DIR", QFile::encodeName(resources));

    if (expected.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, "Kib_DirPaths::GetPath, unknown directory kind 6");
    const QString path = Kib_DirPaths::GetPath(kind, create);

    if (expected.isEmpty()) {
        QCOMPARE(path, QString());
        return;
    }
    QVERIFY2(path.endsWith('/'), qPrintable(path));
    if (expected.startsWith("<data>")) {
        const QString base = Kib_DirPaths::GetPath(Kib_DirPaths::UserDataDir);
        QVERIFY2(base.startsWith(data + '/'), qPrintable(base));
        QCOMPARE(path, base + expected.mid(6));
    } else if (expected.startsWith("<config>")) {
        QVERIFY2(path.startsWith(config + '/'), qPrintable(path));
    } else if (expected.startsWith("<res>")) {
        QCOMPARE(path, resources + expected.mid(5));
    } else {
        QCOMPARE(path, QCoreApplication::applicationDirPath() + '/');
    }
    QCOMPARE(QFileInfo(path).isDir(), exists);
}

void tst_KibServices::applicationSeed_data()
{
    // In the seed and the expectations "<tmp>" is a temporary directory, "<cwd>" the current one
    // and "<app>" the running test's directory; "<null>" passes a null pointer.
    QTest::addColumn<QString>("seed");
    QTest::addColumn<QString>("dir");
    QTest::addColumn<QString>("exeName"); // "<app>": the running test's name

    QTest::newRow("executable") << "<tmp>/bin/kivapp"
                                << "<tmp>/bin/"
                                << "kivapp";
    QTest::newRow("executable, dotted path") << "<tmp>/bin/../bin/./kivapp"
                                             << "<tmp>/bin/"
                                             << "kivapp";
    QTest::newRow("existing directory") << "<tmp>/bin"
                                        << "<tmp>/bin/"
                                        << "<app>";
    QTest::newRow("directory with separator") << "<tmp>/nowhere/"
                                              << "<tmp>/nowhere/"
                                              << "<app>";
    QTest::newRow("relative executable") << "bin/kivapp"
                                         << "<cwd>/bin/"
                                         << "kivapp";
    QTest::newRow("empty seed") << ""
                                << "<app>/"
                                << "<app>";
    QTest::newRow("null seed") << "<null>"
                               << "<app>/"
                               << "<app>";
    QTest::newRow("product name") << "Harbour Editor"
                                  << "<app>/"
                                  << "<app>";
}

void tst_KibServices::applicationSeed()
{
    QFETCH(QString, seed);
    QFETCH(QString, dir);
    QFETCH(QString, exeName);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    QVERIFY(makeDir(tmp.path() + "/bin"));
    auto expand = [&](QString iText) {
        return iText.replace("<tmp>", tmp.path())
            .replace("<cwd>", QDir::currentPath())
            .replace("<app>", QCoreApplication::applicationDirPath());
    };

    // Start from another seed, so that a seed that changes nothing shows.
    Kib_DirPaths::Initialize(QFile::encodeName(tmp.path() + "/other/exe").constData());
    const QByteArray encoded = QFile::encodeName(expand(seed));
    Kib_DirPaths::Initialize(seed == "<null>" ? nullptr : encoded.constData());

    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir), expand(dir));
    QCOMPARE(Kib_DirPaths::GetApplicationExeName(),
             exeName == "<app>" ? QFileInfo(QCoreApplication::applicationFilePath()).fileName()
                                : exeName);
}

// ---- Kib_Resource --------------------------------------------------------------------------

void tst_KibServices::resourcePath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>(
        "file"); // resourceFile("Images/a.png"); "<default>" for the default dir

    QTest::newRow("separator added") << "/opt/res"
                                     << "/opt/res/"
                                     << "/opt/res/Images/a.png";
    QTest::newRow("separator kept") << "/opt/res/"
                                    << "/opt/res/"
                                    << "/opt/res/Images/a.png";
    QTest::newRow("relative") << "res"
                              << "res/"
                              << "res/Images/a.png";
    QTest::newRow("root") << "/"
                          << "/"
                          << "/Images/a.png";
    QTest::newRow("empty means the default") << ""
                                             << ""
                                             << "<default>Images/a.png";
}

void tst_KibServices::resourcePath()
{
    QFETCH(QString, path);
    QFETCH(QString, stored);
    QFETCH(QString, file);

    Kib_Resource::setResourcePath("/somewhere/else"); // replaced, not appended to
    Kib_Resource::setResourcePath(path);
    QCOMPARE(Kib_Resource::getResourcePath(), stored);
    QCOMPARE(Kib_Resource::resourceFile("Images/a.png"),
             file.replace("<default>", Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir)));
}

void tst_KibServices::loadPixmap_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size"); // empty: a null pixmap and a log line

    QTest::newRow("png") << "Images/Good.png" << QSize(7, 3);
    QTest::newRow("missing file") << "Images/Missing.png" << QSize();
    QTest::newRow("not an image") << "Images/Broken.png" << QSize();
    QTest::newRow("directory") << "Images" << QSize();
    QTest::newRow("empty name") << "" << QSize();
}

void tst_KibServices::loadPixmap()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    QVERIFY(makeDir(tmp.path() + "/Images"));
    QImage image(7, 3, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(tmp.path() + "/Images/Good.png"));
    QFile broken(tmp.path() + "/Images/Broken.png");
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("not a png at all");
    broken.close();

    Kib_Resource::setResourcePath(tmp.path());
    if (size.isEmpty())
        QTest::ignoreMessage(
            QtWarningMsg,
            qPrintable("Kib_Resource::loadPixmap, cannot load " + tmp.path() + '/' + name));
    const QPixmap pixmap = Kib_Resource::loadPixmap(name);
    QCOMPARE(pixmap.isNull(), size.isEmpty());
    if (!size.isEmpty())
        QCOMPARE(pixmap.size(), size);
}

void tst_KibServices::loadPixmapCache()
{
    QTemporaryDir first;
    QTemporaryDir second;
    QVERIFY(first.isValid() && second.isValid());
    QVERIFY(QImage(5, 5, QImage::Format_RGB32).save(first.path() + "/Icon.png"));
    QVERIFY(QImage(9, 2, QImage::Format_RGB32).save(second.path() + "/Icon.png"));

    Kib_Resource::setResourcePath(first.path());
    QCOMPARE(Kib_Resource::loadPixmap("Icon.png").size(), QSize(5, 5));
    // Read once: the file is not needed any more.
    QVERIFY(QFile::remove(first.path() + "/Icon.png"));
    QCOMPARE(Kib_Resource::loadPixmap("Icon.png").size(), QSize(5, 5));
    // The same name in another directory is another image.
    Kib_Resource::setResourcePath(second.path());
    QCOMPARE(Kib_Resource::loadPixmap("Icon.png").size(), QSize(9, 2));
}

// ---- Kib_Setting ---------------------------------------------------------------------------

namespace {
const char *const kWindowsDoc = R"(<?xml version="1.0"?>
<Settings>
  <Windows>
    <FontSettings>
      <Kiv_Header><Font>Arial,12</Font></Kiv_Header>
      <Kiv_Placard>
        <TopLine><Font>
          A,9
        </Font></TopLine>
        <BottomLine><Font>B,8</Font></BottomLine>
      </Kiv_Placard>
    </FontSettings>
    <Colors><Background>#000</Background></Colors>
  </Windows>
  <Application><General><Language>en</Language></General></Application>
</Settings>)";

const char *const kFormsDoc = R"(<S><W><P>
  <A>1</A>
  <Param name="B.C" value="2"/>
  <D><Param name="E" value="3"/></D>
  <Param name="F">  text form </Param>
  <G/>
  <H>ignored beside children<I>v</I></H>
  <!-- a comment --><J><![CDATA[a<b]]></J>
</P></W></S>)";
} // namespace

void tst_KibServices::settingParams_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("startRoot");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("warning"); // logged once when errors are logged

    const QString windows = kWindowsDoc;
    const QStringList fonts
        = { "FontSettings.Kiv_Header.Font=Arial,12", "FontSettings.Kiv_Placard.TopLine.Font=A,9",
            "FontSettings.Kiv_Placard.BottomLine.Font=B,8" };

    QTest::newRow("prefix selects a group") << windows << "Windows"
                                            << "FontSettings" << fonts << QString();
    QTest::newRow("empty prefix reads the start root")
        << windows << "Windows"
        << "" << (fonts + QStringList { "Colors.Background=#000" }) << QString();
    QTest::newRow("other start root") << windows << "Application"
                                      << "" << QStringList { "General.Language=en" } << QString();
    QTest::newRow("dotted prefix") << windows << "Windows"
                                   << "FontSettings.Kiv_Placard" << fonts.mid(1) << QString();
    QTest::newRow("prefix naming a parameter")
        << windows << "Windows"
        << "Colors.Background" << QStringList { "Colors.Background=#000" } << QString();
    QTest::newRow("blanks around the prefix")
        << windows << " Windows "
        << " Colors " << QStringList { "Colors.Background=#000" } << QString();
    QTest::newRow("no such start root") << windows << "Nowhere"
                                        << "" << QStringList() << QString();
    QTest::newRow("no such prefix") << windows << "Windows"
                                    << "Nothing" << QStringList() << QString();
    QTest::newRow("prefix of another start root") << windows << "Application"
                                                  << "FontSettings" << QStringList() << QString();
    QTest::newRow("empty start root is the document element")
        << windows << ""
        << "Windows.Colors" << QStringList { "Windows.Colors.Background=#000" } << QString();

    QTest::newRow("element and attribute forms in document order")
        << kFormsDoc << "W"
        << "P" << QStringList { "P.A=1", "P.B.C=2", "P.D.E=3", "P.F=text form",
                                "P.G=",  "P.H.I=v", "P.J=a<b" }
        << QString();
    QTest::newRow("attribute form without a prefix")
        << "<S><W><Param name='Top' value='1'/><X>2</X></W></S>"
        << "W"
        << "" << QStringList { "Top=1", "X=2" } << QString();
    QTest::newRow("Param without a name") << "<S><W><P><Param value='lost'/><K>kept</K></P></W></S>"
                                          << "W"
                                          << "P" << QStringList { "P.K=kept" }
                                          << "Kib_Setting::SetXML, Param without a name at line 1";
    QTest::newRow("repeated start roots and prefixes")
        << "<S><W><P><A>1</A></P><P><A>2</A></P></W><X><P><A>no</A></P></X><W><P><A>3</A></P></W></"
           "S>"
        << "W"
        << "P" << QStringList { "P.A=1", "P.A=2", "P.A=3" } << QString();
}

void tst_KibServices::settingParams()
{
    QFETCH(QString, xml);
    QFETCH(QString, startRoot);
    QFETCH(QString, prefix);
    QFETCH(QStringList, expected);
    QFETCH(QString, warning);

    QTest::failOnWarning(QRegularExpression(".*"));

    // Selection first, then the document.
    Kib_Setting before;
    before.SetStartRoot(startRoot);
    before.SetPrefix(prefix);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression('^' + QRegularExpression::escape(warning)));
    QVERIFY(before.SetXML(xml));
    QCOMPARE(paramsOf(before), expected);
    QCOMPARE(before.count(), expected.size());

    // The document first, quietly, then a selection that is changed afterwards.
    Kib_Setting after;
    after.SetStartRoot("Bogus");
    QVERIFY(after.SetXML(xml, false));
    after.SetPrefix(prefix);
    after.SetStartRoot(startRoot);
    QCOMPARE(paramsOf(after), expected);

    QString name = "untouched";
    QString value = "untouched";
    QVERIFY(!after.GetNthParam(int(expected.size()), name, value));
    QVERIFY(!after.GetNthParam(-1, name, value));
    QCOMPARE(name, QString("untouched"));
    QCOMPARE(value, QString("untouched"));
}

void tst_KibServices::settingMalformed_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<bool>("logErrors");
    QTest::addColumn<int>("line");

    QTest::newRow("tag mismatch") << "<S>\n<W>\n<P>x</W>\n</S>" << true << 3;
    QTest::newRow("unquoted attribute") << "<S>\n\n<W a=1/></S>" << true << 3;
    QTest::newRow("empty text") << "" << true << 1;
    QTest::newRow("not XML") << "settings" << true << 1;
    QTest::newRow("two document elements") << "<a/><b/>" << true << 1;
    QTest::newRow("quiet") << "<S>\n<W>\n<P>x</W>\n</S>" << false << 3;
}

void tst_KibServices::settingMalformed()
{
    QFETCH(QString, xml);
    QFETCH(bool, logErrors);
    QFETCH(int, line);

    QTest::failOnWarning(QRegularExpression(".*"));

    Kib_Setting setting;
    setting.SetStartRoot("Windows");
    QVERIFY(setting.SetXML(kWindowsDoc));
    QVERIFY(setting.count() > 0);

    if (logErrors)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QString("^Kib_Setting::SetXML, malformed XML at "
                                                        "line %1: .+")
                                                    .arg(line)));
    QVERIFY(!setting.SetXML(xml, logErrors));
    // Nothing of the earlier document is left, whatever the selection.
    QCOMPARE(setting.count(), 0);
    setting.SetStartRoot(QString());
    QCOMPARE(setting.count(), 0);

    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString path = tmp.path() + "/bad.xml";
    if (logErrors)
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(QString("^Kib_Setting::SetXMLFile, .*cannot open.*")));
    QVERIFY(!setting.SetXMLFile(path, logErrors));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(xml.toUtf8());
    file.close();
    if (logErrors)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QString("^Kib_Setting::SetXMLFile, %1, malformed "
                                                        "XML at line %2: .+")
                                                    .arg(QRegularExpression::escape(path))
                                                    .arg(line)));
    QVERIFY(!setting.SetXMLFile(path, logErrors));
    QCOMPARE(setting.count(), 0);
}

void tst_KibServices::settingValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fallback");
    QTest::addColumn<QString>("expected");

    QTest::newRow("later entry wins") << "P.A"
                                      << "d"
                                      << "2";
    QTest::newRow("empty value beats the default") << "P.B"
                                                   << "d"
                                                   << "";
    QTest::newRow("missing gives the default") << "P.C"
                                               << "d"
                                               << "d";
    QTest::newRow("name without its prefix") << "A"
                                             << "d"
                                             << "d";
    QTest::newRow("name is case sensitive") << "p.a"
                                            << ""
                                            << "";
}

void tst_KibServices::settingValue()
{
    QFETCH(QString, name);
    QFETCH(QString, fallback);
    QFETCH(QString, expected);

    Kib_Setting setting;
    setting.SetStartRoot("W");
    setting.SetPrefix("P");
    QVERIFY(setting.SetXML("<S><W><P><A>1</A><A>2</A><Param name='B' value=''/></P></W></S>"));
    QCOMPARE(setting.value(name, fallback), expected);
}

void tst_KibServices::settingSampleFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("pointSize");
    QTest::addColumn<int>("weight");

    QTest::newRow("header") << "FontSettings.Kiv_Header.Font" << 9 << 75;
    QTest::newRow("placard top line") << "FontSettings.Kiv_Placard.TopLine.Font" << 10 << 75;
    QTest::newRow("placard bottom line") << "FontSettings.Kiv_Placard.BottomLine.Font" << 8 << 50;
    QTest::newRow("status window") << "FontSettings.Kiv_StatusWindow.Font" << 8 << 50;
}

void tst_KibServices::settingSampleFile()
{
    QFETCH(QString, name);
    QFETCH(int, pointSize);
    QFETCH(int, weight);

    QTest::failOnWarning(QRegularExpression(".*"));
    const QString path
        = Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir) + "Settings/KivSettings.xml";
    Kib_Setting setting;
    setting.SetStartRoot("Windows");
    setting.SetPrefix("FontSettings");
    QVERIFY(setting.SetXMLFile(path));
    QCOMPARE(setting.count(), 4);

    // "family,point size,weight", and the family is one the machine has.
    const QStringList fields = setting.value(name).split(',');
    QCOMPARE(fields.size(), 3);
    QCOMPARE(fields.at(0), QString("DejaVu Sans"));
    QCOMPARE(fields.at(1).toInt(), pointSize);
    QCOMPARE(fields.at(2).toInt(), weight);
    QCOMPARE(QFontInfo(QFont(fields.at(0))).family(), fields.at(0));

    // The other start root holds no fonts.
    setting.SetStartRoot("Application");
    setting.SetPrefix(QString());
    QVERIFY(setting.count() >= 2);
    QCOMPARE(setting.value(name, "none"), QString("none"));
}

// ---- Kib_StringUtils -----------------------------------------------------------------------

void tst_KibServices::ellipsis_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>(
        "width"); // "full", "full+20", "full-1", "half", "dots", "dots-1", or a number
    QTest::addColumn<bool>("shortened");
    QTest::addColumn<QString>("expected"); // exact result where it is known; null otherwise

    const QString latin = "The quick brown fox jumps";
    const QString emoji = QString::fromUtf8("ab\U0001F600\U0001F600\U0001F600\U0001F600cd");
    const QString combining = QString::fromUtf8("e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301");
    const QString dots = Kib_StringUtils::ellipsis();

    QTest::newRow("fits exactly") << latin << "full" << false << latin;
    QTest::newRow("fits with room") << latin << "full+20" << false << latin;
    QTest::newRow("one pixel short") << latin << "full-1" << true << QString();
    QTest::newRow("half") << latin << "half" << true << QString();
    QTest::newRow("ellipsis alone") << latin << "dots" << true << dots;
    QTest::newRow("not even the ellipsis") << latin << "dots-1" << true << "";
    QTest::newRow("zero width") << latin << "0" << true << "";
    QTest::newRow("negative width") << latin << "-5" << true << "";
    QTest::newRow("empty text") << ""
                                << "0" << false << "";
    QTest::newRow("surrogate pairs") << emoji << "half" << true << QString();
    QTest::newRow("surrogate pairs, short") << emoji << "full-1" << true << QString();
    QTest::newRow("combining marks") << combining << "half" << true << QString();
    QTest::newRow("blank before the cut") << "ab                    cdefgh"
                                          << "half" << true << QString();
}

void tst_KibServices::ellipsis()
{
    QFETCH(QString, text);
    QFETCH(QString, width);
    QFETCH(bool, shortened);
    QFETCH(QString, expected);

    const QFontMetrics metrics(QFont("DejaVu Sans", 10));
    const QString dots = Kib_StringUtils::ellipsis();
    const int full = metrics.horizontalAdvance(text);
    const int dotsWidth = metrics.horizontalAdvance(dots);
    const std::map<QString, int> widths
        = { { "full", full },     { "full+20", full + 20 }, { "full-1", full - 1 },
            { "half", full / 2 }, { "dots", dotsWidth },    { "dots-1", dotsWidth - 1 } };
    const auto named = widths.find(width);
    const int pixels = named != widths.end() ? named->second : width.toInt();

    QString result = text;
    QCOMPARE(Kib_StringUtils::computeEllipsisText(result, metrics, pixels), shortened);
    if (!expected.isNull())
        QCOMPARE(result, expected);
    if (!shortened) {
        QCOMPARE(result, text);
        return;
    }
    if (result.isEmpty()) // only when not even the ellipsis fits
        QVERIFY(dotsWidth > pixels);
    if (result.isEmpty())
        return;
    QVERIFY2(metrics.horizontalAdvance(result) <= pixels, qPrintable(result));
    QVERIFY2(result.endsWith(dots), qPrintable(result));

    // What is kept is the start of the text, cut between graphemes, without blanks at its end.
    const QString head = result.chopped(dots.size());
    QVERIFY2(text.startsWith(head), qPrintable(result));
    QVERIFY(head.isEmpty() || !head.back().isSpace());
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(int(head.size()));
    QVERIFY2(finder.isAtBoundary(), qPrintable(result));

    // And it is the longest such start: one grapheme more would not fit.
    int next = int(head.size());
    while (next < text.size() && (next == head.size() || text.at(next - 1).isSpace())) {
        finder.setPosition(next);
        next = int(finder.toNextBoundary());
    }
    if (next < text.size()) {
        QString longer = text.left(next);
        while (longer.back().isSpace())
            longer.chop(1);
        QVERIFY2(metrics.horizontalAdvance(longer + dots) > pixels, qPrintable(longer));
    }
}

// ---- Kib_UIDialog --------------------------------------------------------------------------

void tst_KibServices::messageButtons_data()
{
    QTest::addColumn<QString>("buttons");
    QTest::addColumn<short>("defaultButton");
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<QStringList>("buttonList");
    QTest::addColumn<short>("expectedDefault");
    QTest::addColumn<short>("result");
    QTest::addColumn<bool>("warns");

    const QStringList ync = { "Yes", "No", "Cancel" };
    QTest::newRow("no buttons means OK")
        << "" << short(0) << QVariant(1) << QStringList { "OK" } << short(1) << short(1) << false;
    QTest::newRow("third of three")
        << "Yes|No|Cancel" << short(2) << QVariant(3) << ync << short(2) << short(3) << false;
    QTest::newRow("first of three") << "Yes|No|Cancel" << short(3) << QVariant(short(1)) << ync
                                    << short(3) << short(1) << false;
    QTest::newRow("blanks and empty entries dropped")
        << " Yes | |No|" << short(2) << QVariant(2) << QStringList { "Yes", "No" } << short(2)
        << short(2) << false;
    QTest::newRow("default past the end")
        << "A|B" << short(5) << QVariant(2) << QStringList { "A", "B" } << short(1) << short(2)
        << false;
    QTest::newRow("negative default") << "A|B" << short(-1) << QVariant(1)
                                      << QStringList { "A", "B" } << short(1) << short(1) << false;
    QTest::newRow("closed without a button")
        << "A|B" << short(1) << QVariant(0) << QStringList { "A", "B" } << short(1) << short(0)
        << false;
    QTest::newRow("no answer") << "A|B" << short(1) << QVariant() << QStringList { "A", "B" }
                               << short(1) << short(0) << false;
    QTest::newRow("answer past the buttons")
        << "A|B" << short(1) << QVariant(3) << QStringList { "A", "B" } << short(1) << short(0)
        << true;
    QTest::newRow("negative answer") << "A|B" << short(1) << QVariant(-1)
                                     << QStringList { "A", "B" } << short(1) << short(0) << true;
    QTest::newRow("answer not a number")
        << "A|B" << short(1) << QVariant("B") << QStringList { "A", "B" } << short(1) << short(0)
        << true;
    QTest::newRow("answer as a map")
        << "A|B" << short(1) << QVariant(QVariantMap { { "button", 2 } })
        << QStringList { "A", "B" } << short(1) << short(2) << false;
}

void tst_KibServices::messageButtons()
{
    QFETCH(QString, buttons);
    QFETCH(short, defaultButton);
    QFETCH(QVariant, reply);
    QFETCH(QStringList, buttonList);
    QFETCH(short, expectedDefault);
    QFETCH(short, result);
    QFETCH(bool, warns);

    QList<Kib_UIDialog::Request> requests;
    Kib_UIDialog::setResponder([&](const Kib_UIDialog::Request &iRequest) {
        requests << iRequest;
        return reply;
    });
    const int shown = Kib_UIDialog::shownCount();
    if (warns)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kib_UIDialog::UIdialog, the responder answered"));

    QCOMPARE(Kib_UIDialog::UIdialog("Save the sequence?", buttons, defaultButton,
                                    Kib_UIDialog::UIicon_Caution, QString(), true, QString()),
             result);

    QCOMPARE(requests.size(), 1);
    QCOMPARE(Kib_UIDialog::shownCount(), shown + 1);
    const Kib_UIDialog::Request &request = requests.first();
    QCOMPARE(request.kind, Kib_UIDialog::Request::Message);
    QCOMPARE(request.text, QString("Save the sequence?"));
    QCOMPARE(request.buttons, buttons);
    QCOMPARE(request.buttonList, buttonList);
    QCOMPARE(request.defaultButton, expectedDefault);
    QCOMPARE(request.icon, int(Kib_UIDialog::UIicon_Caution));
    QCOMPARE(request.caption, Kib_DirPaths::GetProductName());
    QVERIFY(request.richText);
    QCOMPARE(Kib_UIDialog::lastRequest().buttonList, buttonList);
}

void tst_KibServices::messageBox_data()
{
    QTest::addColumn<QString>("buttons");
    QTest::addColumn<short>("defaultButton");
    QTest::addColumn<Kib_UIDialog::UIicon_t>("icon");
    QTest::addColumn<bool>("richText");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("texts"); // by button number
    QTest::addColumn<QMessageBox::Icon>("boxIcon");
    QTest::addColumn<int>("escape"); // button number, 0 for none

    QTest::newRow("critical") << "Delete|Cancel" << short(2) << Kib_UIDialog::UIicon_Critical
                              << false << "" << QStringList { "Delete", "Cancel" }
                              << QMessageBox::Critical << 2;
    QTest::newRow("warning") << "Yes|No" << short(1) << Kib_UIDialog::UIicon_Warning << true << ""
                             << QStringList { "Yes", "No" } << QMessageBox::Warning << 0;
    QTest::newRow("caution looks like warning")
        << "A|B|&Cancel" << short(3) << Kib_UIDialog::UIicon_Caution << false << "overwrite"
        << QStringList { "A", "B", "&Cancel" } << QMessageBox::Warning << 3;
    QTest::newRow("information") << "" << short(0) << Kib_UIDialog::UIicon_Information << false
                                 << "" << QStringList { "OK" } << QMessageBox::Information << 1;
    QTest::newRow("question shows information")
        << "Retry|Skip" << short(2) << Kib_UIDialog::UIicon_Question << true << "retry"
        << QStringList { "Retry", "Skip" } << QMessageBox::Information << 0;
    QTest::newRow("none shows information")
        << "OK" << short(1) << Kib_UIDialog::UIicon_None << false << "" << QStringList { "OK" }
        << QMessageBox::Information << 1;
}

void tst_KibServices::messageBox()
{
    QFETCH(QString, buttons);
    QFETCH(short, defaultButton);
    QFETCH(Kib_UIDialog::UIicon_t, icon);
    QFETCH(bool, richText);
    QFETCH(QString, key);
    QFETCH(QStringList, texts);
    QFETCH(QMessageBox::Icon, boxIcon);
    QFETCH(int, escape);

    // What the box would show for the call, built from the request the call makes.
    Kib_UIDialog::Request request;
    Kib_UIDialog::setResponder([&](const Kib_UIDialog::Request &iRequest) {
        request = iRequest;
        return QVariant(0);
    });
    Kib_UIDialog::UIdialog("<b>Render</b> now?", buttons, defaultButton, icon, "Render", richText,
                           key);
    const std::unique_ptr<QMessageBox> box(Kib_UIDialog::createMessageBox(request, nullptr));

    QCOMPARE(box->windowTitle(), QString("Render"));
    QCOMPARE(box->text(), QString("<b>Render</b> now?"));
    QCOMPARE(box->textFormat(), richText ? Qt::RichText : Qt::PlainText);
    QCOMPARE(box->icon(), boxIcon);
    QCOMPARE(box->checkBox() != nullptr, !key.isEmpty());
    if (box->checkBox())
        QVERIFY(!box->checkBox()->isChecked());

    QStringList shown(texts.size());
    for (QAbstractButton *button : box->buttons()) {
        const int number = button->property("kibButtonNumber").toInt();
        QVERIFY2(number >= 1 && number <= texts.size(), qPrintable(button->text()));
        QVERIFY(shown[number - 1].isNull());
        shown[number - 1] = button->text();
    }
    QCOMPARE(shown, texts);
    QVERIFY(box->defaultButton());
    QCOMPARE(box->defaultButton()->property("kibButtonNumber").toInt(), int(request.defaultButton));
    const QAbstractButton *escapeButton = box->escapeButton();
    QCOMPARE(escapeButton ? escapeButton->property("kibButtonNumber").toInt() : 0, escape);
}

void tst_KibServices::dontAskAgain_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("firstReply");
    QTest::addColumn<short>("firstResult");
    QTest::addColumn<bool>("remembered");

    const auto ticked = [](int iButton, bool iTicked) {
        return QVariant(QVariantMap { { "button", iButton }, { "dontAskAgain", iTicked } });
    };
    QTest::newRow("ticked") << "overwrite" << ticked(2, true) << short(2) << true;
    QTest::newRow("not ticked") << "overwrite" << ticked(2, false) << short(2) << false;
    QTest::newRow("plain answer") << "overwrite" << QVariant(2) << short(2) << false;
    QTest::newRow("no key") << "" << ticked(2, true) << short(2) << false;
    QTest::newRow("closed without a button") << "overwrite" << ticked(0, true) << short(0) << false;
}

void tst_KibServices::dontAskAgain()
{
    QFETCH(QString, key);
    QFETCH(QVariant, firstReply);
    QFETCH(short, firstResult);
    QFETCH(bool, remembered);

    int calls = 0;
    Kib_UIDialog::setResponder([&](const Kib_UIDialog::Request &iRequest) {
        // A real box would offer the check box exactly when there is a key.
        if (iRequest.dontAskAgainKey != key)
            return QVariant(-1);
        return ++calls == 1 ? firstReply : QVariant(1);
    });
    auto ask = [](const QString &iKey) {
        return Kib_UIDialog::UIdialog("Overwrite?", "Keep|Overwrite|Cancel", 1,
                                      Kib_UIDialog::UIicon_Question, QString(), false, iKey);
    };

    QCOMPARE(ask(key), firstResult);
    QCOMPARE(ask(key), remembered ? firstResult : short(1));
    QCOMPARE(calls, remembered ? 1 : 2);
    if (!remembered)
        return;

    // Only that key is answered from memory, and only until it is forgotten.
    Kib_UIDialog::setResponder([](const Kib_UIDialog::Request &) { return QVariant(3); });
    QCOMPARE(ask("another key"), short(3));
    QCOMPARE(ask(key), firstResult);
    Kib_UIDialog::forgetDontAskAgain("another key");
    QCOMPARE(ask(key), firstResult);
    Kib_UIDialog::forgetDontAskAgain(key);
    QCOMPARE(ask(key), short(3));
}

void tst_KibServices::userInput_data()
{
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<QString>("validator"); // "", "0-99" or "10-99"
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("warning");

    QTest::newRow("accepted") << QVariant("Scene 2") << "" << true << "Scene 2"
                              << "";
    QTest::newRow("cancelled") << QVariant() << "" << false << "Scene 1"
                               << "";
    QTest::newRow("accepted empty") << QVariant(QString("")) << "" << true << ""
                                    << "";
    QTest::newRow("validator accepts") << QVariant("42") << "0-99" << true << "42"
                                       << "";
    QTest::newRow("validator rejects") << QVariant("abc") << "0-99" << false << "Scene 1"
                                       << "is not acceptable";
    QTest::newRow("intermediate is not acceptable")
        << QVariant("5") << "10-99" << false << "Scene 1"
        << "is not acceptable";
    QTest::newRow("answer not a text") << QVariant(7) << "" << false << "Scene 1"
                                       << "instead of a text";
}

void tst_KibServices::userInput()
{
    QFETCH(QVariant, reply);
    QFETCH(QString, validator);
    QFETCH(bool, accepted);
    QFETCH(QString, text);
    QFETCH(QString, warning);

    std::unique_ptr<QIntValidator> intValidator;
    if (validator == "0-99")
        intValidator = std::make_unique<QIntValidator>(0, 99);
    else if (validator == "10-99")
        intValidator = std::make_unique<QIntValidator>(10, 99);

    QList<Kib_UIDialog::Request> requests;
    Kib_UIDialog::setResponder([&](const Kib_UIDialog::Request &iRequest) {
        requests << iRequest;
        return reply;
    });
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kib_UIDialog::GetUserInput, .*" + warning));

    QString line = "Scene 1";
    QCOMPARE(Kib_UIDialog::GetUserInput("Name of the scene:", line, "Rename", nullptr,
                                        intValidator.get()),
             accepted);
    QCOMPARE(line, text);

    QCOMPARE(requests.size(), 1);
    const Kib_UIDialog::Request &request = requests.first();
    QCOMPARE(request.kind, Kib_UIDialog::Request::Input);
    QCOMPARE(request.prompt, QString("Name of the scene:"));
    QCOMPARE(request.title, QString("Rename"));
    QCOMPARE(request.initialText, QString("Scene 1"));
    QCOMPARE(request.validator, intValidator.get());
}

void tst_KibServices::inputDialogOk_data()
{
    QTest::addColumn<QString>("validator"); // "", "0-99" or "10-99"
    QTest::addColumn<QString>("initial");
    QTest::addColumn<bool>("okAtStart");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("okAfter");

    QTest::newRow("no validator, empty") << ""
                                         << "" << true << "anything" << true;
    QTest::newRow("acceptable to empty") << "0-99"
                                         << "12" << true << "" << false;
    QTest::newRow("empty to acceptable") << "0-99"
                                         << "" << false << "42" << true;
    QTest::newRow("acceptable to intermediate") << "10-99"
                                                << "50" << true << "5" << false;
    QTest::newRow("invalid start") << "10-99"
                                   << "abc" << false << "10" << true;
}

void tst_KibServices::inputDialogOk()
{
    QFETCH(QString, validator);
    QFETCH(QString, initial);
    QFETCH(bool, okAtStart);
    QFETCH(QString, typed);
    QFETCH(bool, okAfter);

    QIntValidator zeroTo99(0, 99);
    QIntValidator tenTo99(10, 99);
    Kib_UIDialog::Request request;
    request.kind = Kib_UIDialog::Request::Input;
    request.prompt = "Frames:";
    request.initialText = initial;
    request.validator = validator == "0-99" ? &zeroTo99 : validator == "10-99" ? &tenTo99 : nullptr;

    QWidget parent;
    const std::unique_ptr<QDialog> dialog(Kib_UIDialog::createInputDialog(request, &parent));
    QCOMPARE(dialog->parentWidget(), &parent);
    QCOMPARE(dialog->windowTitle(), Kib_DirPaths::GetProductName());
    QCOMPARE(dialog->findChildren<QLineEdit *>().size(), 1);
    QLineEdit *line = dialog->findChild<QLineEdit *>();
    const QDialogButtonBox *buttons = dialog->findChild<QDialogButtonBox *>();
    QVERIFY(buttons);
    const QPushButton *ok = buttons->button(QDialogButtonBox::Ok);
    QVERIFY(ok && buttons->button(QDialogButtonBox::Cancel));
    QCOMPARE(line->text(), initial);
    QCOMPARE(dialog->findChild<QLabel *>()->text(), QString("Frames:"));

    QCOMPARE(ok->isEnabled(), okAtStart);
    line->setText(typed);
    QCOMPARE(ok->isEnabled(), okAfter);
}

// ---- Kic_EditMenu --------------------------------------------------------------------------

void tst_KibServices::editMenuFocus_data()
{
    // Steps on commanders A and B: "in", "out" (focus to another widget), "popup" (focus to a
    // popup), "del" (destroyed), each followed by the commander; "in-" makes none current.
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("current"); // "A", "B" or ""
    QTest::addColumn<QList<bool>>("answers"); // of the focus-out steps, in order
    QTest::addColumn<int>("changes");

    using Steps = QStringList;
    using Answers = QList<bool>;
    QTest::newRow("focus in") << Steps { "inA" } << "A" << Answers {} << 1;
    QTest::newRow("focus moves") << Steps { "inA", "inB" } << "B" << Answers {} << 2;
    QTest::newRow("focus in twice") << Steps { "inA", "inA" } << "A" << Answers {} << 1;
    QTest::newRow("focus out") << Steps { "inA", "outA" } << "" << Answers { true } << 2;
    QTest::newRow("popup keeps") << Steps { "inA", "popupA" } << "A" << Answers { false } << 1;
    QTest::newRow("popup and back")
        << Steps { "inA", "popupA", "inA" } << "A" << Answers { false } << 1;
    QTest::newRow("popup, then elsewhere")
        << Steps { "inA", "popupA", "outA" } << "" << Answers { false, true } << 2;
    QTest::newRow("late focus out of the previous one")
        << Steps { "inA", "inB", "outA" } << "B" << Answers { true } << 2;
    QTest::newRow("focus out of a stranger") << Steps { "outA" } << "" << Answers { true } << 0;
    QTest::newRow("current destroyed") << Steps { "inA", "delA" } << "" << Answers {} << 2;
    QTest::newRow("other destroyed") << Steps { "inA", "inB", "delA" } << "B" << Answers {} << 2;
    QTest::newRow("destroyed during a popup")
        << Steps { "inA", "popupA", "delA" } << "" << Answers { false } << 2;
    QTest::newRow("none current") << Steps { "inA", "in-" } << "" << Answers {} << 2;
}

void tst_KibServices::editMenuFocus()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, current);
    QFETCH(QList<bool>, answers);
    QFETCH(int, changes);

    Kic_EditMenu &menu = Kic_EditMenu::instance();
    QCOMPARE(menu.currentCommander(), nullptr);
    std::map<QChar, std::unique_ptr<FakeCommander>> commanders;
    commanders['A'] = std::make_unique<FakeCommander>();
    commanders['B'] = std::make_unique<FakeCommander>();
    QSignalSpy spy(&menu, &Kic_EditMenu::currentCommanderChanged);

    QList<bool> given;
    for (const QString &step : steps) {
        const QString verb = step.chopped(1);
        Kic_Commander *commander = commanders[step.back()].get();
        if (verb == "in")
            menu.focusInEvent(commander);
        else if (verb == "out")
            given << menu.isFocusOutEvent(commander, false);
        else if (verb == "popup")
            given << menu.isFocusOutEvent(commander, true);
        else if (verb == "del")
            commanders[step.back()].reset();
        else
            QFAIL(qPrintable("unknown step " + step));
    }

    QCOMPARE(given, answers);
    Kic_Commander *expected = current.isEmpty() ? nullptr : commanders[current.front()].get();
    QVERIFY(!current.isEmpty() ? expected != nullptr : true);
    QCOMPARE(menu.currentCommander(), expected);
    QCOMPARE(spy.size(), changes);
    if (changes > 0)
        QCOMPARE(spy.last().first().value<Kic_Commander *>(), expected);
}

void tst_KibServices::editMenuForwarding_data()
{
    QTest::addColumn<bool>("withCommander");
    QTest::addColumn<unsigned int>("command");
    QTest::addColumn<bool>("known");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("obeyed");

    QTest::newRow("no commander") << false << unsigned(Kic_Copy) << false << false << "" << false;
    QTest::newRow("enabled") << true << unsigned(Kic_Copy) << true << true << "" << true;
    QTest::newRow("disabled") << true << unsigned(Kic_Paste) << true << false << "" << false;
    QTest::newRow("own text") << true << unsigned(Kic_Undo) << true << true << "Undo Typing"
                              << true;
    QTest::newRow("select all") << true << unsigned(Kic_SelectAll) << true << true << "" << true;
    QTest::newRow("unknown command") << true << 42u << false << false << "" << false;
}

void tst_KibServices::editMenuForwarding()
{
    QFETCH(bool, withCommander);
    QFETCH(unsigned int, command);
    QFETCH(bool, known);
    QFETCH(bool, enabled);
    QFETCH(QString, text);
    QFETCH(bool, obeyed);

    FakeCommander commander;
    commander.mEnabled = { Kic_Undo, Kic_Copy, Kic_SelectAll };
    commander.mTexts[Kic_Undo] = "Undo Typing";
    Kic_EditMenu &menu = Kic_EditMenu::instance();
    if (withCommander)
        menu.focusInEvent(&commander);

    bool isEnabled = true;
    QString menuText = "stale";
    QCOMPARE(menu.commandStatus(command, isEnabled, menuText), known);
    QCOMPARE(isEnabled, enabled);
    QCOMPARE(menuText, text);

    QCOMPARE(menu.obey(command), obeyed);
    QCOMPARE(commander.mObeyed,
             withCommander ? QList<unsigned int> { command } : QList<unsigned int> {});
}

void tst_KibServices::editMenuActions()
{
    Kic_EditMenu &menu = Kic_EditMenu::instance();
    const QList<QAction *> actions = menu.actions();
    QCOMPARE(actions.size(), int(Kic_CommandCount));
    QCOMPARE(menu.action(Kic_Paste), actions.at(Kic_Paste));
    QCOMPARE(menu.action(Kic_CommandCount), nullptr);
    for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
        QVERIFY(!actions.at(command)->isEnabled());
        QCOMPARE(actions.at(command)->text(), Kic_EditMenu::defaultText(command));
    }

    QMenu edit;
    menu.attachToMenu(&edit);
    QCOMPARE(edit.actions().size(), int(Kic_CommandCount) + 2); // with two separators
    QCOMPARE(edit.actions().first(), actions.at(Kic_Undo));
    QCOMPARE(edit.actions().last(), actions.at(Kic_SelectAll));

    // The actions follow the commander as it becomes current...
    auto commander = std::make_unique<FakeCommander>();
    commander->mEnabled = { Kic_Copy, Kic_Undo };
    commander->mTexts[Kic_Undo] = "Undo Trim";
    menu.focusInEvent(commander.get());
    QVERIFY(actions.at(Kic_Copy)->isEnabled());
    QVERIFY(!actions.at(Kic_Cut)->isEnabled());
    QCOMPARE(actions.at(Kic_Undo)->text(), QString("Undo Trim"));

    // ...and when the menu is about to show.
    commander->mEnabled = { Kic_Cut };
    commander->mTexts.clear();
    emit edit.aboutToShow();
    QVERIFY(actions.at(Kic_Cut)->isEnabled());
    QVERIFY(!actions.at(Kic_Copy)->isEnabled());
    QCOMPARE(actions.at(Kic_Undo)->text(), Kic_EditMenu::defaultText(Kic_Undo));

    actions.at(Kic_Cut)->trigger();
    QCOMPARE(commander->mObeyed, QList<unsigned int> { Kic_Cut });
    // An action left enabled from an earlier state does not obey a command that is off now.
    commander->mEnabled.clear();
    actions.at(Kic_Cut)->trigger();
    QCOMPARE(commander->mObeyed, QList<unsigned int> { Kic_Cut });

    // A popup keeps the actions on the commander; its destruction turns them off.
    commander->mEnabled = { Kic_Paste };
    QVERIFY(!menu.isFocusOutEvent(commander.get(),
                                  Kic_EditMenu::isPopupFocusReason(Qt::PopupFocusReason)));
    emit edit.aboutToShow();
    QVERIFY(actions.at(Kic_Paste)->isEnabled());
    commander.reset();
    QCOMPARE(menu.currentCommander(), nullptr);
    for (QAction *action : actions)
        QVERIFY(!action->isEnabled());
    actions.at(Kic_Paste)->trigger(); // nothing to obey, nothing happens
}

QTEST_MAIN(tst_KibServices)
#include "tst_kibservices.moc"
