#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_CheckBox.h"

#include <QtTest>

#include <memory>

namespace {

typedef Bnde_SimpleValue<bool> BoolModel;

QString uniqueName(const char *iLeaf)
{
    QString name = QStringLiteral("TstCheckBox_%1_%2")
                       .arg(QLatin1String(QTest::currentTestFunction()),
                            QLatin1String(QTest::currentDataTag()));
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    }
    return name + QLatin1Char('.') + QLatin1String(iLeaf);
}

/// Another party bound to a bool model: records the value at each change notification.
class Observer
{
public:
    explicit Observer(const QString &iName)
        : mListener(iName)
    {
        mListener.setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
            if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
                values << mListener.getValue();
        });
    }
    QList<bool> values;

private:
    Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> mListener;
};

/// A check box inside a form that is shown after it has been bound, as hosts do.
struct Form
{
    Form()
        : box(new Kiv_CheckBox(&window, "Box"))
    { }
    void show()
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    QWidget window;
    Kiv_CheckBox *box;
};

/// -1: no connection string; 0 or 1: bound to a model of that value; 2: a name no model has.
enum Binding { Unbound = -1, False = 0, True = 1, Missing = 2 };

std::unique_ptr<BoolModel> bind(int iBinding, const char *iLeaf,
                                const std::function<void(const QByteArray &)> &iSetter)
{
    if (iBinding == Unbound)
        return nullptr;
    const QString name = uniqueName(iLeaf);
    iSetter(name.toUtf8());
    if (iBinding == Missing)
        return nullptr;
    auto model = std::make_unique<BoolModel>(name, iBinding == True);
    model->Publish();
    return model;
}

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
    void publishingIsRefused_data();
    void publishingIsRefused();
    void rebindingChecked();
    void variablesResolveInEnvironment();
    void pointOfInterest_data();
    void pointOfInterest();
};

void tst_CheckBox::appearance_data()
{
    QTest::addColumn<int>("visible");
    QTest::addColumn<int>("enabled");
    QTest::addColumn<int>("checked");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("isChecked");
    QTest::newRow("unbound") << -1 << -1 << -1 << true << false << false;
    QTest::newRow("only visible string, model true") << 1 << -1 << -1 << true << false << false;
    QTest::newRow("only visible string, model false") << 0 << -1 << -1 << false << false << false;
    QTest::newRow("only enabled string, model true") << -1 << 1 << -1 << true << false << false;
    QTest::newRow("checked true") << -1 << -1 << 1 << true << true << true;
    QTest::newRow("checked false") << -1 << -1 << 0 << true << true << false;
    QTest::newRow("checked, enabled model false") << -1 << 0 << 1 << true << false << true;
    QTest::newRow("all bound, hidden") << 0 << 1 << 1 << false << true << true;
    QTest::newRow("checked name finds no model") << -1 << 1 << 2 << true << false << false;
}

void tst_CheckBox::appearance()
{
    QFETCH(int, visible);
    QFETCH(int, enabled);
    QFETCH(int, checked);
    QFETCH(bool, shown);
    QFETCH(bool, isEnabled);
    QFETCH(bool, isChecked);

    Form form;
    Kiv_CheckBox *box = form.box;
    const auto v = bind(visible, "Visible",
                        [box](const QByteArray &s) { box->setVisibleStateConnectionSpec(s); });
    const auto e = bind(enabled, "Enabled",
                        [box](const QByteArray &s) { box->setEnabledStateConnectionSpec(s); });
    const auto c = bind(checked, "Checked",
                        [box](const QByteArray &s) { box->setCheckedStateConnectionSpec(s); });
    box->makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    form.show();

    QCOMPARE(box->isVisible(), shown);
    QCOMPARE(box->isEnabled(), isEnabled);
    QCOMPARE(box->isChecked(), isChecked);
}

void tst_CheckBox::modelChangesAreShownAndNotSentBack()
{
    Form form;
    BoolModel visible(uniqueName("Visible"), true);
    BoolModel enabled(uniqueName("Enabled"), true);
    BoolModel checked(uniqueName("Checked"), false);
    QVERIFY(visible.Publish() && enabled.Publish() && checked.Publish());
    form.box->setVisibleStateConnectionSpec(visible.GetConnectionName().toUtf8());
    form.box->setEnabledStateConnectionSpec(enabled.GetConnectionName().toUtf8());
    form.box->setCheckedStateConnectionSpec(checked.GetConnectionName().toUtf8());
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
    QVERIFY(form.box->isVisible());
    QVERIFY(form.box->isChecked());

    // The model going away leaves the box unchecked and disabled.
    checked.UnPublish();
    QVERIFY(!form.box->isChecked());
    QVERIFY(!form.box->isEnabled());
}

void tst_CheckBox::clickSendsState_data()
{
    QTest::addColumn<bool>("initial");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("boxAfter");
    QTest::addColumn<bool>("modelAfter");
    QTest::addColumn<QList<bool>>("notified");
    QTest::newRow("writable, check") << false << false << true << true << QList<bool> { true };
    QTest::newRow("writable, uncheck") << true << false << false << false << QList<bool> { false };
    QTest::newRow("read-only, check refused") << false << true << false << false << QList<bool>();
    QTest::newRow("read-only, uncheck refused") << true << true << true << true << QList<bool>();
}

void tst_CheckBox::clickSendsState()
{
    QFETCH(bool, initial);
    QFETCH(bool, readOnly);
    QFETCH(bool, boxAfter);
    QFETCH(bool, modelAfter);
    QFETCH(QList<bool>, notified);

    Form form;
    BoolModel model(uniqueName("Checked"), initial);
    QVERIFY(model.Publish());
    model.SetReadOnly(readOnly);
    form.box->setCheckedStateConnectionSpec(model.GetConnectionName().toUtf8());
    form.show();
    QVERIFY(form.box->isEnabled());
    Observer observer(model.GetConnectionName());

    QTest::mouseClick(form.box, Qt::LeftButton, {}, form.box->rect().center());

    QCOMPARE(form.box->isChecked(), boxAfter);
    QCOMPARE(model.getValue(), modelAfter);
    QCOMPARE(observer.values, notified);
}

void tst_CheckBox::publishingIsRefused_data()
{
    QTest::addColumn<int>("state"); // 0 visible, 1 enabled, 2 checked
    QTest::addColumn<QString>("setter");
    QTest::newRow("visible") << 0 << QStringLiteral("setVisibleStateConnectionSpec");
    QTest::newRow("enabled") << 1 << QStringLiteral("setEnabledStateConnectionSpec");
    QTest::newRow("checked") << 2 << QStringLiteral("setCheckedStateConnectionSpec");
}

void tst_CheckBox::publishingIsRefused()
{
    QFETCH(int, state);
    QFETCH(QString, setter);

    Form form;
    const QString name = uniqueName("Own");
    const QByteArray connection = "publish " + name.toUtf8();
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression(QStringLiteral("^Kiv_CheckBox::%1, .*left unbound$").arg(setter)));
    if (state == 0)
        form.box->setVisibleStateConnectionSpec(connection);
    else if (state == 1)
        form.box->setEnabledStateConnectionSpec(connection);
    else
        form.box->setCheckedStateConnectionSpec(connection);

    QVERIFY(!Bnd_ConnectionDict::Singleton().contains(name));
    QVERIFY(!form.box->isEnabled());
}

void tst_CheckBox::rebindingChecked()
{
    Form form;
    BoolModel a(uniqueName("A"), true);
    BoolModel b(uniqueName("B"), false);
    QVERIFY(a.Publish() && b.Publish());
    form.show();

    form.box->setCheckedStateConnectionSpec(a.GetConnectionName().toUtf8());
    QVERIFY(form.box->isChecked());
    form.box->setCheckedStateConnectionSpec(b.GetConnectionName().toUtf8());
    QVERIFY(!form.box->isChecked());

    a.setValue(false);
    a.setValue(true);
    QVERIFY(!form.box->isChecked());
    QTest::mouseClick(form.box, Qt::LeftButton, {}, form.box->rect().center());
    QVERIFY(b.getValue());
    QVERIFY(a.getValue());

    form.box->setCheckedStateConnectionSpec(QByteArray());
    QVERIFY(!form.box->isEnabled());
    QVERIFY(!form.box->isChecked());
}

void tst_CheckBox::variablesResolveInEnvironment()
{
    Form form;
    const QString row = uniqueName("Row3");
    BoolModel model(row + QStringLiteral(".Selected"), true);
    QVERIFY(model.Publish());
    form.box->setCheckedStateConnectionSpec("$Row.Selected");
    QVERIFY(!form.box->isEnabled());

    auto env = boost::shared_ptr<Bnd_ConnectionEnvironment>(new Bnd_ConnectionEnvironment(
        Bnd_ConnectionEnvironment::blankEnvironment(), &Bnd_ConnectionDict::Singleton()));
    env->set(QStringLiteral("Row"), row);
    form.box->makeConnections(env);
    QVERIFY(form.box->isEnabled());
    QVERIFY(form.box->isChecked());
}

void tst_CheckBox::pointOfInterest_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("own name") << QStringLiteral("Box") << true;
    QTest::newRow("no name") << QString() << true;
    QTest::newRow("other name") << QStringLiteral("Box.Other") << false;
}

void tst_CheckBox::pointOfInterest()
{
    QFETCH(QString, name);
    QFETCH(bool, found);

    Form form;
    BoolModel model(uniqueName("Loop"), false);
    QVERIFY(model.Publish());
    form.box->setCheckedStateConnectionSpec(model.GetConnectionName().toUtf8());
    form.box->setText(QStringLiteral("Loop playback"));
    form.show();
    const Kiv_PointOfInterest poi = form.box->findPoi(name);
    QCOMPARE(poi.isValid(), found);
    if (!found)
        return;
    QCOMPARE(poi.widget(), form.box);
    // The point is on the check mark: clicking there toggles the box.
    QTest::mouseClick(form.box, Qt::LeftButton, {}, poi.point());
    QVERIFY(model.getValue());
}

QTEST_MAIN(tst_CheckBox)
#include "tst_checkbox.moc"
