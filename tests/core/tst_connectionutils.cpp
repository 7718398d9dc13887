// Start-up, window-unique names, the connection walk and the value-binding grammar.
#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnde_SimpleValue.h"
#include "Kib_Assert.h"
#include "Kib_DirPaths.h"
#include "Kib_Resource.h"
#include "Kiv_ConnectionUtils.h"
#include "Kiv_Initialize.h"
#include "Kiv_ValueBinding.h"
#include "Kiv_WidgetConnectInterface.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

QStringList gReportsBeforeApp;
bool gInitializedBeforeApp = false;

// A bound widget that counts how often the walk reaches it.
struct BoundProbe : QWidget, Kiv_WidgetConnectInterface
{
    using QWidget::QWidget;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override
    {
        ++calls;
        env = iEnv;
        if (onConnect)
            onConnect();
    }
    int calls = 0;
    Bnd_ConnectionEnvironmentPtr env;
    std::function<void()> onConnect;
};

Bnd_ConnectionEnvironmentPtr makeEnv()
{
    return Bnd_ConnectionEnvironmentPtr(
        new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr));
}

typedef Kiv_ValueBinding<QString> StringBinding;

} // namespace

class tst_ConnectionUtils : public QObject
{
    Q_OBJECT

private slots:
    void initializeOnceOnly();

    void substitution_data();
    void substitution();

    void recursiveConnect_data();
    void recursiveConnect();
    void walkSkipsChildrenAddedOrDeletedMeanwhile();

    void connectionString_data();
    void connectionString();
    void sameStringKeepsTheBinding_data();
    void sameStringKeepsTheBinding();
    void publishedValue();
    void ownSendsDoNotComeBack();
};

void tst_ConnectionUtils::initializeOnceOnly()
{
    // Before the application object: reported, and start-up carried on.
    QCOMPARE(gReportsBeforeApp, QStringList { "qApp (coresw/UIF/Kiv/Kiv_Initialize:38)" });
    QVERIFY(gInitializedBeforeApp);
    const QString resources = Kib_Resource::getResourcePath();
    QCOMPARE(resources, Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir));
    const QString appDir = Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir);

    QTemporaryDir other; // a seed and resource directory a new start-up would take
    QVERIFY(QDir(other.path()).mkpath(QStringLiteral("resources")));
    const QByteArray oldEnv = qgetenv("KIV_RESOURCE_DIR");
    qputenv("KIV_RESOURCE_DIR", QFile::encodeName(other.path() + QStringLiteral("/resources")));
    Kiv_Initialize(QFile::encodeName(other.path()).constData());
    const QString resourcesAfter = Kib_Resource::getResourcePath();
    const QString appDirAfter = Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir);
    oldEnv.isNull() ? qunsetenv("KIV_RESOURCE_DIR") : qputenv("KIV_RESOURCE_DIR", oldEnv);
    QCOMPARE(resourcesAfter, resources);
    QCOMPARE(appDirAfter, appDir);
}

void tst_ConnectionUtils::substitution_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("where"); // 0 none, 1 plain window's grandchild, 2 editor in a dialog
    QTest::addColumn<QString>("expected"); // "<token>": the outermost window's token
    QTest::newRow("null widget: trimmed only") << "  $Window.Sel  " << 0 << "$Window.Sel";
    QTest::newRow("lower-case $window") << "$window.Sel" << 1 << "$window.Sel";
    QTest::newRow("$Window later: trimmed only") << " Clips.$Window " << 1 << "Clips.$Window";
    QTest::newRow("plain widget") << " $Window.Sel" << 1 << "<token>$Window.Sel";
    QTest::newRow("dialog in a main window") << "$Window.Sel" << 2 << "<token>$Window.Sel";
}

void tst_ConnectionUtils::substitution()
{
    QFETCH(QString, name);
    QFETCH(int, where);
    QFETCH(QString, expected);
    QWidget plainWindow;
    QMainWindow mainWindow;
    QWidget *const widgets[] = { nullptr, new QWidget(new QWidget(&plainWindow)),
                                 new QLineEdit(new QDialog(&mainWindow)) };
    QWidget *const window = where == 2 ? &mainWindow : &plainWindow;
    expected.replace("<token>", QString::number(quintptr(window), 16));
    QCOMPARE(Kiv_SubscriptionIdentifierSubstitution(name, widgets[where]), expected);
}

void tst_ConnectionUtils::recursiveConnect_data()
{
    // Only the outermost bound widget is reached: 0 the root, 1 its child, 2 the grandchild.
    QTest::addColumn<int>("bound");
    QTest::newRow("bound grandchild through plain widgets") << 2;
    QTest::newRow("bound child connects its own children") << 1;
    QTest::newRow("bound root: the walk stops there") << 0;
}

void tst_ConnectionUtils::recursiveConnect()
{
    QFETCH(int, bound);
    const std::unique_ptr<QWidget> root(bound == 0 ? new BoundProbe : new QWidget);
    QWidget *middle = bound == 1 ? new BoundProbe(root.get()) : new QWidget(root.get());
    QWidget *const levels[] = { root.get(), middle, new BoundProbe(middle) };
    new QObject(root.get()); // a plain object on the way is walked through too

    const Bnd_ConnectionEnvironmentPtr env = makeEnv();
    Kiv_ConnectionUtils::recursiveConnect(root.get(), env);
    for (int level = 0; level < 3; ++level) {
        const auto *probe = dynamic_cast<BoundProbe *>(levels[level]);
        QCOMPARE(probe ? probe->calls : 0, level == bound ? 1 : 0);
        if (level == bound)
            QCOMPARE(probe->env, env); // the very environment, not a copy
    }
    Kiv_ConnectionUtils::recursiveConnect(nullptr, env); // no crash
}

void tst_ConnectionUtils::walkSkipsChildrenAddedOrDeletedMeanwhile()
{
    QWidget root;
    auto *first = new BoundProbe(&root);
    QPointer<BoundProbe> second = new BoundProbe(&root);
    BoundProbe *added = nullptr;
    first->onConnect = [&] {
        delete second.data();
        added = new BoundProbe(&root);
    };
    Kiv_ConnectionUtils::recursiveConnect(&root, makeEnv());
    QCOMPARE(first->calls, 1);
    QVERIFY(second.isNull());
    QVERIFY(added);
    QCOMPARE(added->calls, 0);
}

void tst_ConnectionUtils::connectionString_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<bool>("published");
    QTest::addColumn<bool>("listening");
    QTest::addColumn<QString>("name"); // "<token>": the window token of the owner

    QTest::newRow("blanks") << "   publish   VBGrammar.B" << true << false << "VBGrammar.B";
    QTest::newRow("capital: a name")
        << "Publish VBGrammar.D" << false << true << "Publish VBGrammar.D";
    QTest::newRow("name as written") << " VBGrammar.E " << false << true << " VBGrammar.E ";
    QTest::newRow("window-unique") << "publish $Window.F" << true << false << "<token>$Window.F";
    QTest::newRow("blanks only: unbound") << "   " << false << false << "";
}

void tst_ConnectionUtils::connectionString()
{
    QFETCH(QString, string);
    QFETCH(bool, published);
    QFETCH(bool, listening);
    QFETCH(QString, name);

    QWidget window;
    auto *widget = new QWidget(&window);
    name.replace(QLatin1String("<token>"), QString::number(quintptr(&window), 16));
    {
        StringBinding binding(widget);
        binding.setConnectionString(string.toUtf8());
        QCOMPARE(binding.isPublished(), published);
        QCOMPARE(binding.listener() != nullptr, listening);
        if (published) {
            QCOMPARE(binding.ownModel()->publishedName(), name);
            QVERIFY(Bnd_ConnectionDict::Singleton().contains(name));
        }
        if (listening)
            QCOMPARE(binding.listener()->GetConnectionName(), name);
    }
    if (published) // the binding's own model goes with it
        QVERIFY(!Bnd_ConnectionDict::Singleton().contains(name));
}

void tst_ConnectionUtils::sameStringKeepsTheBinding_data()
{
    QTest::addColumn<QByteArray>("string");

    QTest::newRow("listener") << QByteArray("VBSame.Value");
    QTest::newRow("own model") << QByteArray("publish VBSame.Own");
}

void tst_ConnectionUtils::sameStringKeepsTheBinding()
{
    QFETCH(QByteArray, string);

    Bnde_SimpleValue<QString> model(QStringLiteral("VBSame.Value"), QStringLiteral("v"));
    QVERIFY(model.Publish());
    int changes = 0;
    StringBinding binding;
    binding.onChanged([&] { ++changes; });
    QVERIFY(binding.setConnectionString(string));
    StringBinding::Listener *listener = binding.listener();
    StringBinding::OwnModel *own = binding.ownModel();
    if (listener)
        QVERIFY(binding.isConnected());
    const int changesBefore = changes;

    QVERIFY(!binding.setConnectionString(QByteArray(string)));
    QCOMPARE(binding.listener(), listener);
    QCOMPARE(binding.ownModel(), own);
    QCOMPARE(changes, changesBefore); // no detach and attach again
    if (own)
        QVERIFY(own->isPublished());

    QVERIFY(binding.setConnectionString(string + "X"));
    QVERIFY(binding.listener() != listener || binding.ownModel() != own);
    if (own)
        QVERIFY(!own->isPublished()); // dropped, not deleted
}

void tst_ConnectionUtils::publishedValue()
{
    QString value = QStringLiteral("first"); // the widget's own value
    StringBinding binding;
    binding.onPublishedGet([&] { return value; });
    binding.onPublishedSet(
        [&](const QString &v) { return v != value ? (value = v, true) : false; });
    binding.setConnectionString("publish VBPublished.Value");
    StringBinding::Listener reader(QStringLiteral("VBPublished.Value"));
    int changes = 0;
    reader.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        changes += m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>();
    });
    QCOMPARE(reader.getValue(), QString("first"));
    QVERIFY(!reader.isReadOnly());
    QCOMPARE(reader.setValue(QStringLiteral("first")), int(Bnd_Status::Ok));
    QCOMPARE(changes, 0); // the same value: no notification
    QCOMPARE(reader.setValue(QStringLiteral("second")), int(Bnd_Status::Ok));
    QCOMPARE(changes, 1);
    QCOMPARE(value, QString("second"));
}

void tst_ConnectionUtils::ownSendsDoNotComeBack()
{
    Bnde_SimpleValue<QString> model(QStringLiteral("VBEcho.Value"), QStringLiteral("a"));
    QVERIFY(model.Publish());
    int changes = 0;
    StringBinding binding;
    binding.onChanged([&] { ++changes; });

    QCOMPARE(binding.send(QStringLiteral("x")), int(Bnd_Status::NotConnected));
    binding.setConnectionString("VBEcho.Value");
    QVERIFY(binding.isConnected());
    QCOMPARE(binding.value(), QString("a"));
    changes = 0;

    QCOMPARE(binding.send(QStringLiteral("b")), int(Bnd_Status::Ok));
    QCOMPARE(model.getValue(), QString("b"));
    QCOMPARE(changes, 0); // the echo of the widget's own send
    QVERIFY(!binding.echoGuard());

    model.setValue(QStringLiteral("c")); // a change from elsewhere
    QCOMPARE(changes, 1);
    QCOMPARE(binding.value(), QString("c"));

    model.SetReadOnly(true);
    QCOMPARE(binding.send(QStringLiteral("d")), int(Bnd_Status::ReadOnly));
    QCOMPARE(model.getValue(), QString("c"));
}

int main(int argc, char **argv)
{
    // Start-up before the application object exists: reported, and carried on.
    Kib_Assert::clearReports();
    Kiv_Initialize(argv[0]);
    gReportsBeforeApp = Kib_Assert::reports();
    gInitializedBeforeApp = Kiv_IsInitialized();

    QApplication app(argc, argv);
    tst_ConnectionUtils test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_connectionutils.moc"
