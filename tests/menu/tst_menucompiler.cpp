// Menus compiled into the program by kiv_add_menus(): built with no description file present,
// and the same as the menus read from the descriptions they were compiled from.

#include "Kib_Resource.h"
#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"

#include <QTemporaryDir>
#include <QtTest>

#include <sstream>

class tst_MenuCompiler : public QObject
{
    Q_OBJECT

private slots:
    void builtFromCodeAsFromTheFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("menu bar") << "TestMenuBar";
        QTest::newRow("popup") << "TestPopup";
    }

    void builtFromCodeAsFromTheFile()
    {
        QFETCH(QString, name);
        QTemporaryDir empty; // no description can be found there
        Kib_Resource::setResourcePath(empty.path());
        const QByteArray byName = name.toLatin1();
        const QByteArray file = QByteArray(KIV_TEST_MENUS) + "/" + byName + ".xml";
        QVERIFY(!QFile::exists(Kib_Resource::getResourcePath() + name + ".xml"));

        std::ostringstream compiled, read;
        if (name == "TestMenuBar") {
            QVERIFY(Mnu_QtMenuBarManager::getMenuBarFactory(name));
            Mnu_QtMenuBarManager fromCode(nullptr, byName.constData());
            QCOMPARE(fromCode.getMenuCount(), 2);
            fromCode.saveMenuBar(compiled, QString(), Mnu_Segment::XMLFormat);
            Mnu_QtMenuBarManager fromFile;
            QVERIFY(fromFile.xmlParser(file.constData()));
            fromFile.saveMenuBar(read, QString(), Mnu_Segment::XMLFormat);
        } else {
            QVERIFY(Mnu_QtManager::getMenuFactory(name));
            Mnu_QtManager fromCode(nullptr, byName.constData());
            QCOMPARE(fromCode.getMenu()->getSegmentCount(), 3);
            fromCode.savePopupMenu(compiled, QString(), Mnu_Segment::XMLFormat);
            Mnu_QtManager fromFile;
            QVERIFY(fromFile.xmlParser(file.constData()));
            fromFile.savePopupMenu(read, QString(), Mnu_Segment::XMLFormat);
        }
        QCOMPARE(QString::fromStdString(compiled.str()), QString::fromStdString(read.str()));
    }
};

QTEST_MAIN(tst_MenuCompiler)
#include "tst_menucompiler.moc"
