// Start-up, window-unique names, the connection walk over a widget tree, and the grammar of
// connection strings shared by the single-value widgets.

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

// What the start-up did before the application object existed (see main()).
QStringList gReportsBeforeApp;
bool gInitializedBeforeApp = false;

// A bound widget that counts how often the walk reaches it.
class BoundProbe : public QWidget, public Kiv_WidgetConnectInterface
{
public:
    explicit BoundProbe(QWidget *iParent = nullptr)
        : QWidget(iParent)
    { }
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

QString windowToken(QWidget *iWindow)
{
    return QString::number(quintptr(iWindow), 16);
}

Bnd_ConnectionEnvironmentPtr makeEnv()
{
    return Bnd_ConnectionEnvironmentPtr(
        new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr));
}

typedef Kiv_ValueBinding<QString> StringBinding;
typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;

} // namespace

class tst_ConnectionUtils : public QObject
{
    Q_OBJECT

private slots:
    void initializeWithoutApplicationReportsAndCarriesOn();
    void secondInitializeChangesNothing();

    void substitution_data();
    void substitution();

    void recursiveConnect_data();
    void recursiveConnect();
    void walkSkipsChildrenAddedOrDeletedMeanwhile();

    void connectionString_data();
    void connectionString();
    void sameStringKeepsTheBinding_data();
    void sameStringKeepsTheBinding();
    void publishedValue_data();
    void publishedValue();
    void ownSendsDoNotComeBack();
};

void tst_ConnectionUtils::initializeWithoutApplicationReportsAndCarriesOn()
{
    QCOMPARE(gReportsBeforeApp, QStringList { "qApp (coresw/UIF/Kiv/Kiv_Initialize:38)" });
    QVERIFY(gInitializedBeforeApp);
    QVERIFY(Kiv_IsInitialized());
    // Start-up went on after the report: the resource directory is set.
    QCOMPARE(Kib_Resource::getResourcePath(), Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir));
}

void tst_ConnectionUtils::secondInitializeChangesNothing()
{
    const QString resources = Kib_Resource::getResourcePath();
    const QString appDir = Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir);
    QVERIFY(!resources.isEmpty());

    // Another seed and another resource directory, both of which a new start-up would take.
    QTemporaryDir other;
    QVERIFY(QDir(other.path()).mkpath(QStringLiteral("resources")));
    const QByteArray oldEnv = qgetenv("KIV_RESOURCE_DIR");
    qputenv("KIV_RESOURCE_DIR", QFile::encodeName(other.path() + QStringLiteral("/resources")));
    QVERIFY(Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir) != resources);

    Kib_Assert::clearReports();
    Kiv_Initialize(QFile::encodeName(other.path()).constData());
    const QString resourcesAfter = Kib_Resource::getResourcePath();
    const QString appDirAfter = Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir);
    if (oldEnv.isNull())
        qunsetenv("KIV_RESOURCE_DIR");
    else
        qputenv("KIV_RESOURCE_DIR", oldEnv);

    QCOMPARE(resourcesAfter, resources);
    QCOMPARE(appDirAfter, appDir);
    QCOMPARE(Kib_Assert::reportCount(), 0); // and no "qApp" report now either
}

void tst_ConnectionUtils::substitution_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("where"); // none, child of a plain window, editor in a dialog
    QTest::addColumn<QString>("expected"); // "<token>" stands for the outermost window's token

    QTest::newRow("null widget: trimmed only") << "  $Window.Sel  "
                                               << "none"
                                               << "$Window.Sel";
    QTest::newRow("other name: trimmed only") << " Clips.Sel "
                                              << "plain"
                                              << "Clips.Sel";
    QTest::newRow("lower-case $window is no token") << "$window.Sel"
                                                    << "plain"
                                                    << "$window.Sel";
    QTest::newRow("$Window later in the name is no token") << "Clips.$Window"
                                                           << "plain"
                                                           << "Clips.$Window";
    QTest::newRow("window of a plain widget") << " $Window.Sel"
                                              << "plain"
                                              << "<token>$Window.Sel";
    QTest::newRow("dialog in a main window: the outermost window") << "$Window.Sel"
                                                                   << "dialog"
                                                                   << "<token>$Window.Sel";
}

void tst_ConnectionUtils::substitution()
{
    QFETCH(QString, name);
    QFETCH(QString, where);
    QFETCH(QString, expected);

    QWidget plainWindow;
    auto *plainChild = new QWidget(new QWidget(&plainWindow));
    QMainWindow mainWindow;
    auto *dialog = new QDialog(&mainWindow);
    auto *editor = new QLineEdit(dialog);

    QWidget *widget = nullptr;
    QWidget *outermost = nullptr;
    if (where == "plain") {
        widget = plainChild;
        outermost = &plainWindow;
    } else if (where == "dialog") {
        widget = editor;
        outermost = &mainWindow;
    }
    const QString got = Kiv_SubscriptionIdentifierSubstitution(name, widget);
    if (outermost)
        expected.replace(QLatin1String("<token>"), windowToken(outermost));
    QCOMPARE(got, expected);
    if (where == "dialog") {
        QVERIFY(!got.startsWith(windowToken(dialog)));
        QVERIFY(QRegularExpression("^[0-9a-f]+\\$Window\\.Sel$").match(got).hasMatch());
    }
}

void tst_ConnectionUtils::recursiveConnect_data()
{
    QTest::addColumn<bool>("rootBound");
    QTest::addColumn<bool>("middleBound");
    QTest::addColumn<int>("rootCalls");
    QTest::addColumn<int>("middleCalls");
    QTest::addColumn<int>("leafCalls"); // the leaf is always bound

    QTest::newRow("bound grandchild through plain widgets") << false << false << 0 << 0 << 1;
    QTest::newRow("bound child connects its own children") << false << true << 0 << 1 << 0;
    QTest::newRow("bound root: the walk stops there") << true << false << 1 << 0 << 0;
    QTest::newRow("bound all the way") << true << true << 1 << 0 << 0;
}

void tst_ConnectionUtils::recursiveConnect()
{
    QFETCH(bool, rootBound);
    QFETCH(bool, middleBound);
    QFETCH(int, rootCalls);
    QFETCH(int, middleCalls);
    QFETCH(int, leafCalls);

    QWidget *root = rootBound ? new BoundProbe : new QWidget;
    std::unique_ptr<QWidget> owner(root);
    QWidget *middle = middleBound ? new BoundProbe(root) : new QWidget(root);
    auto *leaf = new BoundProbe(middle);
    new QObject(root); // a plain object on the way is walked through too

    const Bnd_ConnectionEnvironmentPtr env = makeEnv();
    Kiv_ConnectionUtils::recursiveConnect(root, env);
    auto callsOf = [](QWidget *w) {
        auto *p = dynamic_cast<BoundProbe *>(w);
        return p ? p->calls : 0;
    };
    QCOMPARE(callsOf(root), rootCalls);
    QCOMPARE(callsOf(middle), middleCalls);
    QCOMPARE(leaf->calls, leafCalls);
    if (leafCalls)
        QCOMPARE(leaf->env, env); // the very environment, not a copy

    Kiv_ConnectionUtils::recursiveConnect(nullptr, env);
    Kiv_ConnectionUtils::recursiveConnectChildren(nullptr, env);
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
    QTest::addColumn<QByteArray>("string");
    QTest::addColumn<bool>("published");
    QTest::addColumn<bool>("listening");
    QTest::addColumn<QString>("name"); // "<token>": the window token of the owner

    QTest::newRow("publish and a name")
        << QByteArray("publish VBGrammar.A") << true << false << "VBGrammar.A";
    QTest::newRow("publish, three blanks, a name")
        << QByteArray("publish   VBGrammar.B") << true << false << "VBGrammar.B";
    QTest::newRow("blanks before publish")
        << QByteArray("   publish VBGrammar.C") << true << false << "VBGrammar.C";
    QTest::newRow("capital Publish is a plain name")
        << QByteArray("Publish VBGrammar.D") << false << true << "Publish VBGrammar.D";
    QTest::newRow("a plain name is given as written")
        << QByteArray(" VBGrammar.E ") << false << true << " VBGrammar.E ";
    QTest::newRow("publish under a window-unique name")
        << QByteArray("publish $Window.F") << true << false << "<token>$Window.F";
    QTest::newRow("empty: unbound") << QByteArray() << false << false << "";
    QTest::newRow("blanks only: unbound") << QByteArray("   ") << false << false << "";
}

void tst_ConnectionUtils::connectionString()
{
    QFETCH(QByteArray, string);
    QFETCH(bool, published);
    QFETCH(bool, listening);
    QFETCH(QString, name);

    QWidget window;
    auto *widget = new QWidget(&window);
    name.replace(QLatin1String("<token>"), windowToken(&window));
    {
        StringBinding binding(widget);
        binding.setConnectionString(string);
        QCOMPARE(binding.isPublished(), published);
        QCOMPARE(binding.listener() != nullptr, listening);
        QCOMPARE(binding.connectionString(), string);
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
    QVERIFY(listener || own);
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

void tst_ConnectionUtils::publishedValue_data()
{
    QTest::addColumn<QString>("sent");
    QTest::addColumn<int>("notifications");
    QTest::addColumn<QString>("widgetValue");

    QTest::newRow("the same value: no change notification") << "first" << 0 << "first";
    QTest::newRow("a new value: one notification") << "second" << 1 << "second";
}

void tst_ConnectionUtils::publishedValue()
{
    QFETCH(QString, sent);
    QFETCH(int, notifications);
    QFETCH(QString, widgetValue);

    QString value = QStringLiteral("first"); // the widget's own value
    StringBinding binding;
    binding.onPublishedGet([&] { return value; });
    binding.onPublishedSet([&](const QString &v) {
        if (v == value)
            return false;
        value = v;
        return true;
    });
    binding.setConnectionString("publish VBPublished.Value");

    StringListener reader(QStringLiteral("VBPublished.Value"));
    int changes = 0;
    reader.setReceiveMessageCB([&](const Bnd_MessageInterface &m) {
        if (m.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            ++changes;
    });
    QVERIFY(reader.isConnectedToModel());
    QCOMPARE(reader.getValue(), QString("first"));
    QVERIFY(!reader.isReadOnly());

    QCOMPARE(reader.setValue(sent), int(Bnd_Status::Ok));
    QCOMPARE(changes, notifications);
    QCOMPARE(value, widgetValue);
    QCOMPARE(reader.getValue(), widgetValue);
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
