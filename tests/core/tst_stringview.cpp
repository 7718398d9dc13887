#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_Utils.h"
#include "Bnde_SimpleValue.h"
#include "Kiv_BoolTextView.h"
#include "Kiv_BridgeQWidget.h"
#include "Kiv_ContainerViewBase.h"
#include "Kiv_DateTimeView.h"
#include "Kiv_LineEdit.h"
#include "Kiv_LongIntView.h"
#include "Kiv_StringView.h"
#include "Kiv_TextView.h"

#include <QImage>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

QString uniqueName(const char *iLeaf)
{
    static int count = 0;
    return QStringLiteral("TstStringView%1.%2").arg(++count).arg(QLatin1String(iLeaf));
}

template<class T>
std::unique_ptr<Bnde_SimpleValue<T>> publish(const QString &iName, const T &iValue)
{
    auto model = std::make_unique<Bnde_SimpleValue<T>>(iName, iValue);
    model->Publish();
    return model;
}

Bnd_ConnectionEnvironmentPtr environment(const QString &iVariable, const QString &iValue)
{
    auto env = boost::shared_ptr<Bnd_ConnectionEnvironment>(new Bnd_ConnectionEnvironment(
        Bnd_ConnectionEnvironment::blankEnvironment(), &Bnd_ConnectionDict::Singleton()));
    env->set(iVariable, iValue);
    return env;
}

// A copy of a value view of iKind bound to iConnection (copies keep the connection and the
// format); oText reads the copy's text.
Kiv_ViewBase *makeView(const QString &iKind, const QString &iConnection,
                       std::function<QString()> &oText)
{
    const auto withText = [&oText](auto *iView) -> Kiv_ViewBase * {
        const std::unique_ptr<Kiv_ViewInterface> original(iView);
        auto *copy = static_cast<decltype(iView)>(original->clone().release());
        copy->setSize(QSize(240, 40));
        oText = std::function<QString()>([copy] { return copy->text(); });
        return copy;
    };
    if (iKind == QLatin1String("long")) {
        auto *v = new Kiv_LongIntView;
        v->setPrintfFormat("Frame %04ld");
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Kiv_LongIntView::setPrintfFormat, '%s %ld'"));
        v->setPrintfFormat("%s %ld"); // refused: the format before stays
        v->setConnectionName(iConnection);
        return withText(v);
    }
    if (iKind == QLatin1String("date")) {
        auto *v = new Kiv_DateTimeView;
        v->setDateTimeFormat(QStringLiteral("dd.MM.yyyy hh:mm"));
        v->setConnectionSpec(iConnection);
        return withText(v);
    }
    if (iKind == QLatin1String("bool")) {
        auto *v = new Kiv_BoolTextView;
        v->setTexts(QStringLiteral("online"), QStringLiteral("offline"));
        v->setConnectionName(iConnection);
        return withText(v);
    }
    if (iKind == QLatin1String("string")) {
        auto *v = new Kiv_StringView;
        v->SetConnectionID(iConnection);
        return withText(v);
    }
    auto *v = new Kiv_TextView;
    v->SetNameConnection(iConnection);
    return withText(v);
}

typedef std::function<std::unique_ptr<Bnd_ModelBase>(const QString &)> ModelFactory;

} // namespace

Q_DECLARE_METATYPE(ModelFactory)

class tst_StringView : public QObject
{
    Q_OBJECT

private slots:
    void viewsShowTheirValue_data();
    void viewsShowTheirValue();
    void editorEditsTheShownModel_data();
    void editorEditsTheShownModel();
    void editingRefused();
};

void tst_StringView::viewsShowTheirValue_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<ModelFactory>("model");
    QTest::addColumn<QString>("expected");
    auto modelOf = [](auto value) -> ModelFactory {
        return [value](const QString &name) -> std::unique_ptr<Bnd_ModelBase> {
            return publish(name, value);
        };
    };
    QTest::newRow("long") << "long" << modelOf(42L) << "Frame 0042";
    QTest::newRow("date-time") << "date" << modelOf(QDateTime(QDate(2024, 3, 9), QTime(14, 5)))
                               << "09.03.2024 14:05";
    QTest::newRow("invalid date-time") << "date" << modelOf(QDateTime()) << "";
    QTest::newRow("bool true") << "bool" << modelOf(true) << "online";
    QTest::newRow("bool false") << "bool" << modelOf(false) << "offline";
    QTest::newRow("text") << "text" << modelOf(QStringLiteral("One\nTwo")) << "One\nTwo";
    QTest::newRow("string") << "string" << modelOf(QStringLiteral("Interview")) << "Interview";
}

void tst_StringView::viewsShowTheirValue()
{
    QFETCH(QString, kind);
    QFETCH(ModelFactory, model);
    QFETCH(QString, expected);
    const QString name = uniqueName("Value");
    const std::unique_ptr<Bnd_ModelBase> published = model(name);
    Kiv_BridgeQWidget bridge;
    std::function<QString()> text;
    bridge.setChild(makeView(kind, QStringLiteral("$Clip.Value"), text));
    QCOMPARE(text(), QString()); // no model yet: it waits for the environment
    const QImage empty = bridge.grab().toImage();
    bridge.makeConnections(environment(QStringLiteral("Clip"), name.section('.', 0, 0)));
    QCOMPARE(text(), expected);
    QCOMPARE(bridge.grab().toImage() != empty, !expected.isEmpty()); // the text is drawn
}

void tst_StringView::editorEditsTheShownModel_data()
{
    QTest::addColumn<bool>("published");
    QTest::newRow("bound through a variable") << false;
    QTest::newRow("published") << true;
}

void tst_StringView::editorEditsTheShownModel()
{
    QFETCH(bool, published);
    const QString name = uniqueName("Name");
    const auto model = published ? nullptr : publish(name, QStringLiteral("Interview"));
    auto *view = new Kiv_StringView;
    view->setRectInParent(QRect(30, 12, 160, 24)); // in a panel
    view->SetConnectionID(published ? "publish " + name : QStringLiteral("$Clip.Name"));
    auto *panel = new Kiv_ContainerViewBase;
    panel->setSize(QSize(300, 60));
    panel->AddSubView(view);
    Kiv_BridgeQWidget bridge;
    bridge.setChild(panel);
    bridge.makeConnections(environment(QStringLiteral("Clip"), name.section('.', 0, 0)));
    bridge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bridge));

    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, QPoint(50, 22));
    QVERIFY(!view->startEditing()); // read-only; answers true if the click opened an editor
    view->setReadOnly(false);
    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, QPoint(50, 22));
    Kiv_LineEdit *editor = view->editor();
    QVERIFY(editor);
    QCOMPARE(editor->geometry(), view->getRectInParent()); // over the view
    QCOMPARE(editor->GetTextConnection(), Bnd_Utils::Bnd_MakeStaticConnectionSpec(name).toLatin1());
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Outro"));
    QCOMPARE(view->text(), QStringLiteral("Outro")); // reaches the model, and the view, at once
    QPointer<Kiv_LineEdit> watch(editor);
    QTest::keyClick(editor, Qt::Key_Return); // ends the edit
    QTRY_VERIFY(watch.isNull());

    QVERIFY(view->startEditing()); // removed with its view, later
    watch = view->editor();
    bridge.setChild(nullptr);
    QVERIFY(watch && watch->isHidden());
    QTRY_VERIFY(watch.isNull());
}

void tst_StringView::editingRefused()
{
    const QString name = uniqueName("Name");
    Kiv_BridgeQWidget bridge;
    Kiv_StringView unhosted;
    auto *hosted = new Kiv_StringView;
    bridge.setChild(hosted);
    for (Kiv_StringView *view : { hosted, &unhosted }) {
        view->setName(QStringLiteral("Title"));
        view->setReadOnly(false);
        view->SetConnectionID(name);
    }
    const QString warning = QStringLiteral("^Kiv_StringView::startEditing, view 'Title' %1$");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning.arg("has no model to edit")));
    QVERIFY(!hosted->startEditing());
    const auto model = publish(name, QStringLiteral("x"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning.arg("is not shown in a widget")));
    QVERIFY(!unhosted.startEditing());
    QVERIFY(bridge.findChildren<Kiv_LineEdit *>().isEmpty());
}

QTEST_MAIN(tst_StringView)
#include "tst_stringview.moc"
