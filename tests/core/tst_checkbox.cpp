// Kiv_CheckBox: visible/enabled/checked bindings, clicks, rebinding and its point of interest.
#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_CheckBox.h"

#include <QtTest>

namespace {

typedef Bnde_SimpleValue<bool> BoolModel;

// The three states, in the order of the tables below.
const char *const cStates[] = { "Visible", "Enabled", "Checked" };

QString uniqueName(const char *iLeaf)
{
    static int count = 0;
    return QStringLiteral("TstCheckBox%1.%2").arg(++count).arg(QLatin1String(iLeaf));
}

// A check box in a window shown after binding, as hosts do; optionally checked-bound. Clicks go
// to its point of interest, as a script's would.
struct Form
{
    explicit Form(BoolModel *iChecked = nullptr)
    {
        box->setText(QStringLiteral("Loop playback"));
        if (iChecked) {
            QVERIFY(iChecked->Publish());
            bind(2, iChecked->GetConnectionName().toUtf8());
        }
    }
    void bind(int iState, const QByteArray &iConnection)
    {
        box->setProperty(QByteArray(cStates[iState]).toLower() + "StateConnectionSpec",
                         iConnection);
    }
    void show()
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    void click() { QTest::mouseClick(box, Qt::LeftButton, {}, box->findPoi("Box").point()); }
    QList<bool> states() const { return { box->isVisible(), box->isEnabled(), box->isChecked() }; }
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
    void modelChangesAndClicks();
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
    QTest::newRow("only enabled, true") << QList<int> { -1, 1, -1 } << QList<bool> { 1, 0, 0 };
    QTest::newRow("only checked, false") << QList<int> { -1, -1, 0 } << QList<bool> { 1, 1, 0 };
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
    std::vector<std::unique_ptr<BoolModel>> models;
    for (int i = 0; i < 3; ++i) {
        if (bindings[i] >= 0)
            form.bind(i, QByteArray("$Row.") + cStates[i]);
        if (bindings[i] == 0 || bindings[i] == 1) {
            models.push_back(std::make_unique<BoolModel>(row + '.' + cStates[i], bindings[i] == 1));
            QVERIFY(models.back()->Publish());
        }
    }
    auto *env
        = new Bnd_ConnectionEnvironment(Bnd_ConnectionEnvironment::blankEnvironment(), nullptr);
    env->set(QStringLiteral("Row"), row);
    form.box->makeConnections(Bnd_ConnectionEnvironmentPtr(env));
    form.show();
    QCOMPARE(form.states(), expected);
}

// Model changes are shown and not sent back; a click sends the new state once, and a model that
// refuses it gets the box put back without another message.
void tst_CheckBox::modelChangesAndClicks()
{
    BoolModel visible(uniqueName("Visible"), true);
    BoolModel enabled(uniqueName("Enabled"), true);
    BoolModel checked(uniqueName("Checked"), false);
    QVERIFY(visible.Publish() && enabled.Publish());
    Form form(&checked);
    form.bind(0, visible.GetConnectionName().toUtf8());
    form.bind(1, enabled.GetConnectionName().toUtf8());
    form.show();
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> observer(checked.GetConnectionName());
    QList<bool> told; // what another party bound to the model hears
    observer.setReceiveMessageCB([&](const Bnd_MessageInterface &iMsg) {
        if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            told << observer.getValue();
    });
    checked.setValue(true);
    QCOMPARE(form.states(), QList<bool>({ true, true, true }));
    form.click();
    QVERIFY(!checked.getValue());
    checked.SetReadOnly(true);
    form.click();
    QVERIFY(!form.box->isChecked() && !checked.getValue());
    QCOMPARE(told, QList<bool>({ true, false }));
    enabled.setValue(false);
    visible.setValue(false);
    QCOMPARE(form.states(), QList<bool>({ false, false, false }));
    visible.setValue(true);
    QVERIFY(form.box->isVisible());
    checked.UnPublish(); // the model going away leaves it unchecked and disabled
    QCOMPARE(form.states(), QList<bool>({ true, false, false }));
}

void tst_CheckBox::publishingIsRefused()
{
    for (int state = 0; state < 3; ++state) {
        Form form;
        const QString name = uniqueName("Own");
        const QByteArray connection = "publish " + name.toUtf8();
        // Refused before anything is published: a listener waiting for the name never sees it.
        Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> waiting(name);
        int notifications = 0;
        waiting.setReceiveMessageCB([&](const Bnd_MessageInterface &) { ++notifications; });
        const QByteArray message = "Kiv_CheckBox::set" + QByteArray(cStates[state])
            + "StateConnectionSpec, this value is only read from a model; '" + connection
            + "' left unbound";
        QTest::ignoreMessage(QtWarningMsg, message.constData());
        form.bind(state, connection);
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
    form.bind(2, b.GetConnectionName().toUtf8());
    QVERIFY(!form.box->isChecked());
    a.setValue(false);
    a.setValue(true);
    QVERIFY(!form.box->isChecked());
    form.click();
    QVERIFY(b.getValue() && a.getValue());
    form.bind(2, QByteArray());
    QVERIFY(!form.box->isEnabled() && !form.box->isChecked());
}

// The check mark, for the box's own name or none; Form::click() relies on it.
void tst_CheckBox::pointOfInterest()
{
    Form form;
    QVERIFY(!form.box->findPoi(QStringLiteral("Box.Other")).isValid());
    QVERIFY(form.box->findPoi(QString()).isValid());
    QCOMPARE(form.box->findPoi(QStringLiteral("Box")).widget(), form.box);
}

QTEST_MAIN(tst_CheckBox)
#include "tst_checkbox.moc"
