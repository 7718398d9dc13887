// The widget factory and form loading: classes by name, Qt fallback, form entries, nested forms.

#include "Kib_Resource.h"
#include "Kiv_CreateWidgetFromUILayout.h"
#include "Kiv_QtWidgetFactoryRegistry.h"
#include "Kiv_SimpleFactoryEntry.h"
#include "Kiv_UIFileFactoryEntry.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

#include <algorithm>

// A widget class registered by the test, standing for a library widget.
class TestBoundWidget : public QWidget
{
public:
    explicit TestBoundWidget(QWidget *iParent = nullptr)
        : QWidget(iParent)
    { }
};

class tst_Factory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void classEntryDescribesItself();
    void createWidgetByName();
    void formEntryReplacesClassEntry();
    void destroyedEntryTakesItselfOut();
    void libraryTable_data();
    void libraryTable();
    void loadsForms_data();
    void loadsForms();
    void nestedFormLoadsThroughItsEntry();
};

void tst_Factory::initTestCase()
{
    // The test forms live beside this file: point the resource directory there.
    Kib_Resource::setResourcePath(QFINDTESTDATA("Forms/TestPanel.ui").section('/', 0, -3));
    new Kiv_SimpleFactoryEntry<TestBoundWidget>("TestBoundWidget", QString(), QString());
}

// A null what's-this stands for the class name and a null tool tip for the what's-this.
void tst_Factory::classEntryDescribesItself()
{
    QVERIFY(!Kiv_QtWidgetFactoryRegistry::getEntry("Nothing"));
    auto *nameless
        = new Kiv_SimpleFactoryEntry<TestBoundWidget>("TestNameless", QString(), QString());
    QCOMPARE(nameless->getToolTip(), QString("TestNameless"));
    const QList<QString> keys = Kiv_QtWidgetFactoryRegistry::getAllKeys();
    QVERIFY(keys.contains("TestNameless") && std::is_sorted(keys.begin(), keys.end()));
}

// A parent without a layout only gets the widget as a child; a class the registry does not know
// is made by Qt's own loader.
void tst_Factory::createWidgetByName()
{
    QWidget parent;
    Kiv_QtWidgetFactoryRegistry loader;
    QWidget *bound = loader.createWidget("TestBoundWidget", &parent, "made");
    QVERIFY(dynamic_cast<TestBoundWidget *>(bound));
    QCOMPARE(bound->parentWidget(), &parent);
    QWidget *button = loader.createWidget("QPushButton", &parent, "made");
    QVERIFY(qobject_cast<QPushButton *>(button));
    QCOMPARE(button->parentWidget(), &parent);
    QCOMPARE(button->objectName(), QString("made"));
}

void tst_Factory::formEntryReplacesClassEntry()
{
    new Kiv_SimpleFactoryEntry<TestBoundWidget>("TestReplaced", QString(), QString());
    auto *form = new Kiv_UIFileFactoryEntry("TestReplaced");
    QCOMPARE(Kiv_QtWidgetFactoryRegistry::getEntry("TestReplaced"), form);
    QCOMPARE(form->getWhatsThis(), QString("TestReplaced.ui file include"));
    QCOMPARE(form->getIncludeFile(), QString());
}

void tst_Factory::destroyedEntryTakesItselfOut()
{
    auto *older = new Kiv_SimpleFactoryEntry<TestBoundWidget>("TestStack", QString(), QString());
    {
        Kiv_UIFileFactoryEntry form("TestStack");
        {
            const Kiv_UIFileFactoryEntry copy(form); // the newest alive is the one in use
            QCOMPARE(Kiv_QtWidgetFactoryRegistry::getEntry("TestStack"), &copy);
        }
        QCOMPARE(Kiv_QtWidgetFactoryRegistry::getEntry("TestStack"), &form);
        std::vector<Kiv_UIFileFactoryEntry> kept;
        kept.push_back(Kiv_UIFileFactoryEntry("TestMoved")); // the temporary goes, the copy stays
        QCOMPARE(Kiv_QtWidgetFactoryRegistry::getEntry("TestMoved"), &kept.front());
        form = kept.front(); // now a second entry for TestMoved
        QCOMPARE(Kiv_QtWidgetFactoryRegistry::getEntry("TestStack"), older);
    }
    QVERIFY(!Kiv_QtWidgetFactoryRegistry::getEntry("TestMoved"));
    QVERIFY(!Kiv_QtWidgetFactoryRegistry::getAllKeys().contains("TestMoved"));
    QWidget parent;
    Kiv_QtWidgetFactoryRegistry loader;
    QVERIFY(dynamic_cast<TestBoundWidget *>(loader.createWidget("TestStack", &parent)));
    delete older;
    QVERIFY(!Kiv_QtWidgetFactoryRegistry::getEntry("TestStack"));
}

void tst_Factory::libraryTable_data()
{
    QTest::addColumn<QString>("description");
    const char *const table[][2] = {
        { "Kiv_ActionButton", "Action model connected button" },
        { "Kiv_CheckBox", "Model/View connected check box control" },
        { "Kiv_Double", "A Widget to display a double value" },
        { "Kiv_ImmediateActionButton", "Immediate action button for transport control" },
        { "Kiv_Label", "QLabel with Model/View connection for label text" },
        { "Kiv_KeyEdit", "QLineEdit that handles key sequences" },
        { "Kiv_LineEdit", "QLineEdit connected to or published as string data model" },
        { "Kiv_LongLabel", "QLabel that displays a Model/View connection long value as text" },
        { "Kiv_PlayButton", "Immediate action play button for transport control" },
        { "Kiv_TextEdit", "QTextEdit connected to or published as string data model" },
    };
    for (const auto &row : table)
        QTest::newRow(row[0]) << QString(row[1]);
}

// Each class of the library's table is described and made by name, placed in its parent's
// layout, with the name as object name and window title.
void tst_Factory::libraryTable()
{
    QFETCH(QString, description);
    const QString className = QTest::currentDataTag();
    Kiv_FactoryEntryInterface *e = Kiv_QtWidgetFactoryRegistry::getEntry(className);
    QVERIFY(e);
    QCOMPARE(e->getWhatsThis(), description);
    QCOMPARE(e->getToolTip(), description);
    QCOMPARE(e->getIncludeFile(), className + ".h");
    QWidget parent;
    new QVBoxLayout(&parent);
    Kiv_QtWidgetFactoryRegistry loader;
    QWidget *w = loader.createWidget(className, &parent, "made");
    QVERIFY(w);
    QCOMPARE(w->metaObject()->className(), className);
    QCOMPARE(parent.layout()->indexOf(w), 0);
    QCOMPARE(w->windowTitle(), QString("made"));
    QCOMPARE(w->objectName(), QString("made"));
}

void tst_Factory::loadsForms_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<int>("parentKind"); // 0 none, 1 without layout, 2 with layout
    QTest::addColumn<bool>("loads");
    QTest::newRow("no parent") << "TestPanel" << 0 << true;
    QTest::newRow("parent without layout") << "TestPanel" << 1 << true;
    QTest::newRow("parent with layout") << "TestPanel" << 2 << true;
    QTest::newRow("missing form") << "NoSuchForm" << 2 << false;
}

void tst_Factory::loadsForms()
{
    QFETCH(QString, form);
    QFETCH(int, parentKind);
    QFETCH(bool, loads);
    std::unique_ptr<QWidget> parent(parentKind ? new QWidget : nullptr);
    if (parentKind == 2)
        new QVBoxLayout(parent.get());
    std::unique_ptr<QWidget> owned;
    QWidget *w = Kiv_CreateWidgetFromUILayout(form, parent.get(), "ignored", true);
    if (!parent)
        owned.reset(w);
    QCOMPARE(w != nullptr, loads);
    if (!w)
        return;
    QCOMPARE(w->objectName(), QString("TestPanel")); // the form's own name stands
    QCOMPARE(w->parentWidget(), parent.get());
    QCOMPARE(parent && parent->layout() && parent->layout()->indexOf(w) >= 0, parentKind == 2);
    QCOMPARE(w->layout()->indexOf(w->findChild<TestBoundWidget *>("bound")), 1);
    QCOMPARE(w->findChild<QLabel *>("title")->text(), QString("Panel"));
}

void tst_Factory::nestedFormLoadsThroughItsEntry()
{
    new Kiv_UIFileFactoryEntry("TestPanel");
    QWidget parent;
    QWidget *outer = Kiv_CreateWidgetFromUILayout("TestOuter", &parent, nullptr, false);
    QVERIFY(outer);
    QWidget *inner = outer->findChild<QWidget *>("inner"); // the outer form names its part
    QVERIFY(inner && inner->findChild<TestBoundWidget *>("bound"));
    QVERIFY(outer->layout()->indexOf(inner) >= 0);
}

QTEST_MAIN(tst_Factory)
#include "tst_factory.moc"
