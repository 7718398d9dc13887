#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
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

// How many pixels of the view's area are dark (drawn text) when the bridge paints.
int darkPixels(QWidget &iBridge)
{
    QImage image(iBridge.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    iBridge.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    int dark = 0;
    for (int i = 0; i < image.width() * image.height(); ++i)
        dark += qGray(image.pixel(i % image.width(), i / image.width())) < 128 ? 1 : 0;
    return dark;
}

// A plain container, to host a view away from the bridge's corner.
struct Panel : Kiv_ContainerViewBase
{
    std::unique_ptr<Kiv_ViewInterface> clone() const override { return nullptr; }
};

// A value view of iKind bound to iConnection; oText reads its text.
Kiv_ViewBase *makeView(const QString &iKind, const QString &iConnection,
                       std::function<QString()> &oText)
{
    const auto withText = [&oText](auto *iView) -> Kiv_ViewBase * {
        oText = [iView] {
            return iView->text();
        };
        return iView;
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
    void clonesBindPerRow();
    void editorEditsTheShownModel_data();
    void editorEditsTheShownModel();
    void editingRefused();
};

void tst_StringView::viewsShowTheirValue_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<ModelFactory>("model"); // null: no model
    QTest::addColumn<QString>("expected");
    auto modelOf = [](auto value) -> ModelFactory {
        return [value](const QString &name) -> std::unique_ptr<Bnd_ModelBase> {
            return publish(name, value);
        };
    };
    QTest::newRow("long") << "long" << modelOf(42L) << "Frame 0042";
    QTest::newRow("long, no model") << "long" << ModelFactory() << "";
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
    const std::unique_ptr<Bnd_ModelBase> published = model ? model(name) : nullptr;
    Kiv_BridgeQWidget bridge;
    std::function<QString()> text;
    Kiv_ViewBase *view = makeView(kind, QStringLiteral("$Clip.Value"), text);
    view->setSize(QSize(240, 40));
    bridge.setChild(view);
    QCOMPARE(text(), QString()); // waits for the environment
    bridge.makeConnections(environment(QStringLiteral("Clip"), name.section('.', 0, 0)));
    QCOMPARE(text(), expected);
    QCOMPARE(darkPixels(bridge) > 0, !expected.isEmpty());
}

void tst_StringView::clonesBindPerRow()
{
    const QString root = uniqueName("Rows");
    const auto row1 = publish(root + QStringLiteral(".Row1.Name"), QStringLiteral("first"));
    const auto row2 = publish(root + QStringLiteral(".Row2.Name"), QStringLiteral("second"));
    Kiv_StringView prototype;
    prototype.setName(QStringLiteral("Name"));
    prototype.SetConnectionID(root + QStringLiteral(".$Row.Name"));
    const std::unique_ptr<Kiv_ViewInterface> first = prototype.clone();
    const std::unique_ptr<Kiv_ViewInterface> second = prototype.clone();
    first->makeConnections(environment(QStringLiteral("Row"), QStringLiteral("Row1")));
    second->makeConnections(environment(QStringLiteral("Row"), QStringLiteral("Row2")));
    QCOMPARE(static_cast<Kiv_StringView &>(*first).text(), QStringLiteral("first"));
    QCOMPARE(static_cast<Kiv_StringView &>(*second).text(), QStringLiteral("second"));
    QCOMPARE(first->getName(), QStringLiteral("Name"));
    QCOMPARE(prototype.text(), QString());
}

void tst_StringView::editorEditsTheShownModel_data()
{
    QTest::addColumn<bool>("published");
    QTest::addColumn<QPoint>("origin"); // in a panel; (0, 0): the bridge's top view
    QTest::newRow("top view, bound through a variable") << false << QPoint(0, 0);
    QTest::newRow("inside a panel") << false << QPoint(30, 12);
    QTest::newRow("published") << true << QPoint(0, 0);
}

void tst_StringView::editorEditsTheShownModel()
{
    QFETCH(bool, published);
    QFETCH(QPoint, origin);
    const QString name = uniqueName("Name");
    const auto model = published ? nullptr : publish(name, QStringLiteral("Interview"));
    auto *view = new Kiv_StringView;
    view->setSize(QSize(160, 24));
    view->SetConnectionID(published ? "publish " + name : QStringLiteral("$Clip.Name"));
    Kiv_BridgeQWidget bridge;
    auto *panel = origin.isNull() ? nullptr : new Panel;
    if (panel) {
        panel->setSize(QSize(300, 60));
        view->setOrigin(origin);
        panel->AddSubView(view);
    }
    bridge.setChild(panel ? static_cast<Kiv_ViewInterface *>(panel) : view);
    bridge.makeConnections(environment(QStringLiteral("Clip"), name.section('.', 0, 0)));
    bridge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bridge));

    const QPoint inside = origin + QPoint(20, 10);
    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, inside);
    QVERIFY(!view->startEditing()); // read-only; answers true if the click opened an editor
    view->setReadOnly(false);
    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, inside);
    Kiv_LineEdit *editor = view->editor();
    QVERIFY(editor);
    QCOMPARE(editor->geometry(), QRect(origin, view->getSize()));
    QCOMPARE(editor->GetTextConnection(), Bnd_Utils::Bnd_MakeStaticConnectionSpec(name).toLatin1());
    QCOMPARE(editor->text(), view->text());
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Outro"));
    QCOMPARE(view->text(), QStringLiteral("Outro"));
    QCOMPARE(Bnd_ConnectionToModel<Bndt_SimpleValue<QString>>(name).getValue(), "Outro");
    QPointer<Kiv_LineEdit> watch(editor);
    QTest::keyClick(editor, Qt::Key_Return);
    QVERIFY(!view->editor());
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
