// Kiv_CheckBox: visible/enabled/checked bindings, clicks, rebinding and its point of interest.
#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_CheckBox.h"

#include <QtTest>

namespace {

typedef Bnde_SimpleValue<bool> BoolModel;

QString uniqueName(const char *iLeaf)
{
    static int count = 0;
    return QStringLiteral("TstCheckBox%1.%2").arg(++count).arg(QLatin1String(iLeaf));
}

// Another party bound to the model: records the value at each change notification.
struct Observer
{
    explicit Observer(const QString &iName)
        : listener(iName)
    {
        listener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
            if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
                values << listener.getValue();
        });
    }
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> listener;
    QList<bool> values;
};

// A check box in a window shown after binding, as hosts do; optionally checked-bound.
struct Form
{
    explicit Form(BoolModel *iChecked = nullptr)
    {
        if (iChecked) {
            QVERIFY(iChecked->Publish());
            box->setCheckedStateConnectionSpec(iChecked->GetConnectionName().toUtf8());
        }
    }
    void show()
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    void click(const QPoint &iAt = QPoint())
    {
        QTest::mouseClick(box, Qt::LeftButton, {}, iAt.isNull() ? box->rect().center() : iAt);
    }
    QWidget window;
    Kiv_CheckBox *box = new Kiv_CheckBox(&window, "Box");
};

} // namespace

class tst_CheckBox : public QObject
{
    Q_OBJECT

private slots:
    void appearance_data();
    void appearance();
    void modelChangesAreShownAndNotSentBack();
    void clickSendsState_data();
    void clickSendsState();
    void publishingIsRefused();
    void visibilityIsTheHostsWithoutAModel();
    void rebindingChecked();
    void pointOfInterest();
};

void tst_CheckBox::appearance_data()
{
    // Per state, -1: unbound; 0 or 1: bound through $Row to a model of that value; 2: no model.
    QTest::addColumn<QList<int>>("bindings"); // visible, enabled, checked
    QTest::addColumn<QList<bool>>("expected"); // visible, enabled, checked
    QTest::newRow("unbound") << QList<int> { -1, -1, -1 } << QList<bool> { 1, 0, 0 };
    QTest::newRow("only visible, true") << QList<int> { 1, -1, -1 } << QList<bool> { 1, 0, 0 };
    QTest::newRow("only visible, false") << QList<int> { 0, -1, -1 } << QList<bool> { 0, 0, 0 };
    QTest::newRow("only enabled, true") << QList<int> { -1, 1, -1 } << QList<bool> { 1, 0, 0 };
    QTest::newRow("checked true") << QList<int> { -1, -1, 1 } << QList<bool> { 1, 1, 1 };
    QTest::newRow("checked false") << QList<int> { -1, -1, 0 } << QList<bool> { 1, 1, 0 };
    QTest::newRow("enabled false") << QList<int> { -1, 0, 1 } << QList<bool> { 1, 0, 1 };
    QTest::newRow("all bound, hidden") << QList<int> { 0, 1, 1 } << QList<bool> { 0, 1, 1 };
    QTest::newRow("checked, no model") << QList<int> { -1, 1, 2 } << QList<bool> { 1, 0, 0 };
}

void tst_CheckBox::appearance()
{
    QFETCH(QList<int>, bindings);
    QFETCH(QList<bool>, expected);
    Form form;
    const QString row = uniqueName("Row").section('.', 0, 0);
    const char *leaves[] = { "Visible", "Enabled", "Checked" };
    std::vector<std::unique_ptr<BoolModel>> models;
    for (int i = 0; i < 3; ++i) {
        if (bindings[i] < 0)
            continue;
        const QByteArray connection = QByteArray("$Row.") + leaves[i];
        i == 0       ? form.box->setVisibleStateConnectionSpec(connection)
            : i == 1 ? form.box->setEnabledStateConnectionSpec(connection)
                     : form.box->setCheckedStateConnectionSpec(connection);
        if (bindings[i] < 2) {
            models.push_back(std::make_unique<BoolModel>(row + '.' + leaves[i], bindings[i] == 1));
            QVERIFY(models.back()->Publish());
        }
    }
    auto env = boost::shared_ptr<Bnd_ConnectionEnvironment>(new Bnd_ConnectionEnvironment(
        Bnd_ConnectionEnvironment::blankEnvironment(), &Bnd_ConnectionDict::Singleton()));
    env->set(QStringLiteral("Row"), row);
    form.box->makeConnections(env);
    form.show();
    QCOMPARE(QList<bool>({ form.box->isVisible(), form.box->isEnabled(), form.box->isChecked() }),
             expected);
}

void tst_CheckBox::modelChangesAreShownAndNotSentBack()
{
    BoolModel visible(uniqueName("Visible"), true);
    BoolModel enabled(uniqueName("Enabled"), true);
    BoolModel checked(uniqueName("Checked"), false);
    QVERIFY(visible.Publish() && enabled.Publish());
    Form form(&checked);
    form.box->setVisibleStateConnectionSpec(visible.GetConnectionName().toUtf8());
    form.box->setEnabledStateConnectionSpec(enabled.GetConnectionName().toUtf8());
    form.show();
    Observer observer(checked.GetConnectionName());
    checked.setValue(true);
    QVERIFY(form.box->isChecked());
    QCOMPARE(observer.values, QList<bool> { true });
    enabled.setValue(false);
    QVERIFY(!form.box->isEnabled());
    visible.setValue(false);
    QVERIFY(!form.box->isVisible());
    visible.setValue(true);
    QVERIFY(form.box->isVisible() && form.box->isChecked());
    checked.UnPublish(); // the model going away leaves it unchecked and disabled
    QVERIFY(!form.box->isChecked() && !form.box->isEnabled());
}

void tst_CheckBox::clickSendsState_data()
{
    QTest::addColumn<bool>("initial");
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("writable, check") << false << false;
    QTest::newRow("writable, uncheck") << true << false;
    QTest::newRow("read-only, check refused") << false << true;
    QTest::newRow("read-only, uncheck refused") << true << true;
}

void tst_CheckBox::clickSendsState()
{
    QFETCH(bool, initial);
    QFETCH(bool, readOnly);
    BoolModel model(uniqueName("Checked"), initial);
    Form form(&model);
    model.SetReadOnly(readOnly);
    form.show();
    QVERIFY(form.box->isEnabled());
    Observer observer(model.GetConnectionName());
    form.click();
    const bool after = readOnly ? initial : !initial;
    QCOMPARE(form.box->isChecked(), after);
    QCOMPARE(model.getValue(), after);
    QCOMPARE(observer.values, readOnly ? QList<bool>() : QList<bool> { after });
}

void tst_CheckBox::publishingIsRefused()
{
    for (const char *setter : { "setVisibleStateConnectionSpec", "setEnabledStateConnectionSpec",
                                "setCheckedStateConnectionSpec" }) {
        Form form;
        const QString name = uniqueName("Own");
        const QByteArray connection = "publish " + name.toUtf8();
        // Refused before anything is published: a listener waiting for the name never sees it.
        Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> waiting(name);
        int notifications = 0;
        waiting.setReceiveMessageCB([&](const Bnd_MessageInterface &) { ++notifications; });
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(
                QStringLiteral("^Kiv_CheckBox::%1, .*left unbound$").arg(QLatin1String(setter))));
        setter[3] == 'V'       ? form.box->setVisibleStateConnectionSpec(connection)
            : setter[3] == 'E' ? form.box->setEnabledStateConnectionSpec(connection)
                               : form.box->setCheckedStateConnectionSpec(connection);
        QVERIFY(!Bnd_ConnectionDict::Singleton().contains(name));
        QCOMPARE(notifications, 0);
        QVERIFY(!form.box->isEnabled());
    }
}

// Without a visible model the host decides: binding the other states neither shows a box the
// host hid nor opens a parentless one as a window.
void tst_CheckBox::visibilityIsTheHostsWithoutAModel()
{
    BoolModel checked(uniqueName("Checked"), true);
    QVERIFY(checked.Publish());
    Kiv_CheckBox parentless;
    Form form;
    form.show();
    form.box->hide();
    for (Kiv_CheckBox *box : { &parentless, form.box }) {
        box->setCheckedStateConnectionSpec(checked.GetConnectionName().toUtf8());
        box->setEnabledStateConnectionSpec(uniqueName("Enabled").toUtf8());
        checked.setValue(!checked.getValue());
        QVERIFY(!box->isVisible());
        QVERIFY(box->isEnabled());
    }
}

void tst_CheckBox::rebindingChecked()
{
    BoolModel a(uniqueName("A"), true);
    BoolModel b(uniqueName("B"), false);
    QVERIFY(b.Publish());
    Form form(&a);
    form.show();
    QVERIFY(form.box->isChecked());
    form.box->setCheckedStateConnectionSpec(b.GetConnectionName().toUtf8());
    QVERIFY(!form.box->isChecked());
    a.setValue(false);
    a.setValue(true);
    QVERIFY(!form.box->isChecked());
    form.click();
    QVERIFY(b.getValue() && a.getValue());
    form.box->setCheckedStateConnectionSpec(QByteArray());
    QVERIFY(!form.box->isEnabled() && !form.box->isChecked());
}

void tst_CheckBox::pointOfInterest()
{
    BoolModel model(uniqueName("Loop"), false);
    Form form(&model);
    form.box->setText(QStringLiteral("Loop playback"));
    form.show();
    QVERIFY(!form.box->findPoi(QStringLiteral("Box.Other")).isValid());
    QVERIFY(form.box->findPoi(QString()).isValid()); // no name: the box itself
    const Kiv_PointOfInterest poi = form.box->findPoi(QStringLiteral("Box"));
    QCOMPARE(poi.widget(), form.box);
    form.click(poi.point()); // on the check mark: the click toggles the box
    QVERIFY(model.getValue());
}

QTEST_MAIN(tst_CheckBox)
#include "tst_checkbox.moc"
