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
#include <QPointer>
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

typedef Kiv_ValueBinding<QString> StringBinding;

} // namespace

class tst_ConnectionUtils : public QObject
{
    Q_OBJECT

private slots:
    void initializeOnceOnly();
    void substitution_data();
    void substitution();
    void recursiveConnect();
    void connectionString_data();
    void connectionString();
    void sameStringKeepsTheBinding_data();
    void sameStringKeepsTheBinding();
    void sendStatus();
};

void tst_ConnectionUtils::initializeOnceOnly()
{
    QCOMPARE(gReportsBeforeApp, QStringList { "qApp (coresw/UIF/Kiv/Kiv_Initialize:38)" });
    QVERIFY(gInitializedBeforeApp);
    QCOMPARE(Kib_Resource::getResourcePath(), Kib_DirPaths::GetPath(Kib_DirPaths::ResourceDir));
    const QString appDir = Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir);
    Kiv_Initialize("/elsewhere/bin/app"); // a later call does nothing, whatever its argument
    QCOMPARE(Kib_DirPaths::GetPath(Kib_DirPaths::ApplicationDir), appDir);
}

void tst_ConnectionUtils::substitution_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("where"); // 0 none, 1 plain window's grandchild, 2 in a dialog's window
    QTest::addColumn<QString>("expected"); // "<token>": the outermost window's token
    QTest::newRow("null widget: trimmed only") << "  $Window.Sel  " << 0 << "$Window.Sel";
    QTest::newRow("lower-case $window") << "$window.Sel" << 1 << "$window.Sel";
    QTest::newRow("$Window later: trimmed only") << " Clips.$Window " << 1 << "Clips.$Window";
    QTest::newRow("plain widget") << " $Window.Sel" << 1 << "<token>$Window.Sel";
    QTest::newRow("dialog in a window") << "$Window.Sel" << 2 << "<token>$Window.Sel";
}

void tst_ConnectionUtils::substitution()
{
    QFETCH(QString, name);
    QFETCH(int, where);
    QFETCH(QString, expected);
    QWidget plainWindow, outerWindow;
    QWidget *const widgets[] = { nullptr, new QWidget(new QWidget(&plainWindow)),
                                 new QWidget(new QDialog(&outerWindow)) };
    QWidget *const window = where == 2 ? &outerWindow : &plainWindow;
    expected.replace("<token>", QString::number(quintptr(window), 16));
    QCOMPARE(Kiv_SubscriptionIdentifierSubstitution(name, widgets[where]), expected);
}

// Only the outermost bound widgets are reached, each once; children deleted or added by a
// connection on the way are skipped.
void tst_ConnectionUtils::recursiveConnect()
{
    QWidget root;
    auto *plain = new QWidget(&root);
    new QObject(plain); // a plain object on the way is walked through too
    auto *reached = new BoundProbe(plain);
    auto *bound = new BoundProbe(&root);
    auto *inside = new BoundProbe(bound); // its bound parent connects it, not the walk
    QPointer<BoundProbe> doomed = new BoundProbe(&root);
    BoundProbe *added = nullptr;
    bound->onConnect = [&] {
        delete doomed.data();
        added = new BoundProbe(&root);
    };
    const Bnd_ConnectionEnvironmentPtr env(
        new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr));
    Kiv_ConnectionUtils::recursiveConnect(&root, env);
    QVERIFY(doomed.isNull() && added);
    QCOMPARE((QList<int> { reached->calls, bound->calls, inside->calls, added->calls }),
             (QList<int> { 1, 1, 0, 0 }));
    QCOMPARE(reached->env, env); // the very environment, not a copy
    Kiv_ConnectionUtils::recursiveConnect(nullptr, env); // no crash
}

void tst_ConnectionUtils::connectionString_data()
{
    QTest::addColumn<QString>("string");
    QTest::addColumn<bool>("published");
    QTest::addColumn<bool>("listening");
    QTest::addColumn<QString>("name"); // "<token>": the window token of the owner

    QTest::newRow("blanks") << "   publish   VBGrammar.B" << true << false << "VBGrammar.B";
    QTest::newRow("Publish: name")
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
        if (listening)
            QCOMPARE(binding.listener()->GetConnectionName(), name);
        QCOMPARE(Bnd_ConnectionDict::Singleton().contains(name), published);
        if (published) // found under that name; without onPublishedSet nobody may set it
            QVERIFY(StringBinding::Listener(name).isReadOnly());
    }
    QVERIFY(!Bnd_ConnectionDict::Singleton().contains(name)); // the own model goes with it
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
    QVERIFY(own || binding.isConnected());
    const int changesBefore = changes;

    QVERIFY(!binding.setConnectionString(QByteArray(string)));
    QCOMPARE(binding.listener(), listener);
    QCOMPARE(binding.ownModel(), own);
    QCOMPARE(changes, changesBefore); // no detach and attach again
    QVERIFY(!own || own->isPublished());

    QVERIFY(binding.setConnectionString(string + "X"));
    QVERIFY(binding.listener() != listener || binding.ownModel() != own);
    QVERIFY(!own || !own->isPublished()); // dropped, not deleted
}

void tst_ConnectionUtils::sendStatus()
{
    Bnde_SimpleValue<QString> model(QStringLiteral("VBSend.Value"), QStringLiteral("a"));
    QVERIFY(model.Publish());
    int changes = 0;
    StringBinding binding;
    binding.onChanged([&] { ++changes; });
    QCOMPARE(binding.send(QStringLiteral("x")), int(Bnd_Status::NotConnected));
    binding.setConnectionString("VBSend.Value");
    changes = 0;
    QCOMPARE(binding.send(QStringLiteral("b")), int(Bnd_Status::Ok));
    QCOMPARE(changes, 0); // the echo of the widget's own send does not come back
    model.SetReadOnly(true);
    QCOMPARE(binding.send(QStringLiteral("c")), int(Bnd_Status::ReadOnly));
    QCOMPARE(model.getValue(), QString("b"));
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
