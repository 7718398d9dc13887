// Linked against a static archive of the library: the widget table must come along although
// nothing in this program names it.

#include "Kiv_LineEdit.h"
#include "Kiv_QtWidgetFactoryRegistry.h"

#include <QtTest>

class tst_StaticRegistry : public QObject
{
    Q_OBJECT

private slots:
    void createsALibraryWidget()
    {
        QWidget parent;
        Kiv_QtWidgetFactoryRegistry loader;
        QVERIFY(qobject_cast<Kiv_LineEdit *>(loader.createWidget("Kiv_LineEdit", &parent)));
    }
};

QTEST_MAIN(tst_StaticRegistry)
#include "tst_staticregistry.moc"
