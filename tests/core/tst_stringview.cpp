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
#include <QPainter>
#include <QtTest>

#include <functional>
#include <memory>

namespace {

QString uniqueName(const char *iLeaf)
{
    QString name = QStringLiteral("TstStringView_%1_%2")
                       .arg(QLatin1String(QTest::currentTestFunction()),
                            QLatin1String(QTest::currentDataTag()));
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    }
    return name + QLatin1Char('.') + QLatin1String(iLeaf);
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

/// How many pixels of the view's area are dark (drawn text) when the bridge paints.
int darkPixels(QWidget &iBridge)
{
    QImage image(iBridge.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    iBridge.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            dark += qGray(image.pixel(x, y)) < 128 ? 1 : 0;
    }
    return dark;
}

/// A plain container view, to host a view away from the bridge's corner.
class Panel : public Kiv_ContainerViewBase
{
public:
    Panel() = default;
    std::unique_ptr<Kiv_ViewInterface> clone() const override
    {
        return std::unique_ptr<Kiv_ViewInterface>(new Panel(*this));
    }

protected:
    Panel(const Panel &iOther) = default;
};

/// One kind of value view, made and bound through a common interface.
struct ViewKind
{
    std::function<Kiv_ViewBase *()> make;
    std::function<void(Kiv_ViewBase *, const QString &)> bind;
    std::function<QString(Kiv_ViewBase *)> text;
};

typedef std::function<std::unique_ptr<Bnd_ModelBase>(const QString &)> ModelFactory;

} // namespace

Q_DECLARE_METATYPE(ModelFactory)
Q_DECLARE_METATYPE(ViewKind)

class tst_StringView : public QObject
{
    Q_OBJECT

private slots:
    void viewsShowTheirValue_data();
    void viewsShowTheirValue();
    void viewRepaintsOnModelChange();
    void clonesBindPerRow();
    void longIntViewRefusesBadFormat();
    void editorEditsTheShownModel_data();
    void editorEditsTheShownModel();
    void editingRefused_data();
    void editingRefused();
    void doubleClickStartsEditing();
    void viewGoingAwayRemovesEditor();
};

void tst_StringView::viewsShowTheirValue_data()
{
    QTest::addColumn<ViewKind>("kind");
    QTest::addColumn<ModelFactory>("model"); // null: no model
    QTest::addColumn<QString>("expected");

    const ViewKind longView { [] {
                                 auto *v = new Kiv_LongIntView;
                                 v->setPrintfFormat("Frame %04ld");
                                 return v;
                             },
                              [](Kiv_ViewBase *v, const QString &c) {
                                  static_cast<Kiv_LongIntView *>(v)->setConnectionName(c);
                              },
                              [](Kiv_ViewBase *v) {
                                  return static_cast<Kiv_LongIntView *>(v)->text();
                              } };
    const ViewKind dateView { [] {
                                 auto *v = new Kiv_DateTimeView;
                                 v->setDateTimeFormat(QStringLiteral("dd.MM.yyyy hh:mm"));
                                 return v;
                             },
                              [](Kiv_ViewBase *v, const QString &c) {
                                  static_cast<Kiv_DateTimeView *>(v)->setConnectionSpec(c);
                              },
                              [](Kiv_ViewBase *v) {
                                  return static_cast<Kiv_DateTimeView *>(v)->text();
                              } };
    const ViewKind boolView { [] {
                                 auto *v = new Kiv_BoolTextView;
                                 v->setTexts(QStringLiteral("online"), QStringLiteral("offline"));
                                 return v;
                             },
                              [](Kiv_ViewBase *v, const QString &c) {
                                  static_cast<Kiv_BoolTextView *>(v)->setConnectionName(c);
                              },
                              [](Kiv_ViewBase *v) {
                                  return static_cast<Kiv_BoolTextView *>(v)->text();
                              } };
    const ViewKind textView { [] { return new Kiv_TextView; },
                              [](Kiv_ViewBase *v, const QString &c) {
                                  static_cast<Kiv_TextView *>(v)->SetNameConnection(c);
                              },
                              [](Kiv_ViewBase *v) {
                                  return static_cast<Kiv_TextView *>(v)->text();
                              } };
    const ViewKind stringView { [] { return new Kiv_StringView; },
                                [](Kiv_ViewBase *v, const QString &c) {
                                    static_cast<Kiv_StringView *>(v)->SetConnectionID(c);
                                },
                                [](Kiv_ViewBase *v) {
                                    return static_cast<Kiv_StringView *>(v)->text();
                                } };
    auto modelOf = [](auto value) -> ModelFactory {
        return [value](const QString &name) -> std::unique_ptr<Bnd_ModelBase> {
            return publish(name, value);
        };
    };

    QTest::newRow("long") << longView << modelOf(42L) << QStringLiteral("Frame 0042");
    QTest::newRow("long, no model") << longView << ModelFactory() << QString();
    QTest::newRow("date-time") << dateView << modelOf(QDateTime(QDate(2024, 3, 9), QTime(14, 5)))
                               << QStringLiteral("09.03.2024 14:05");
    QTest::newRow("invalid date-time") << dateView << modelOf(QDateTime()) << QString();
    QTest::newRow("bool true") << boolView << modelOf(true) << QStringLiteral("online");
    QTest::newRow("bool false") << boolView << modelOf(false) << QStringLiteral("offline");
    QTest::newRow("bool, no model") << boolView << ModelFactory() << QString();
    QTest::newRow("text") << textView << modelOf(QStringLiteral("Line one\nLine two"))
                          << QStringLiteral("Line one\nLine two");
    QTest::newRow("string") << stringView << modelOf(QStringLiteral("Interview"))
                            << QStringLiteral("Interview");
    QTest::newRow("string, no model") << stringView << ModelFactory() << QString();
}

void tst_StringView::viewsShowTheirValue()
{
    QFETCH(ViewKind, kind);
    QFETCH(ModelFactory, model);
    QFETCH(QString, expected);

    const QString name = uniqueName("Value");
    const std::unique_ptr<Bnd_ModelBase> published = model ? model(name) : nullptr;
    Kiv_BridgeQWidget bridge;
    Kiv_ViewBase *view = kind.make();
    view->setSize(QSize(240, 40));
    bridge.setChild(view);
    kind.bind(view, QStringLiteral("$Clip.Value"));
    QCOMPARE(kind.text(view), QString()); // waits for the environment

    bridge.makeConnections(
        environment(QStringLiteral("Clip"), name.section(QLatin1Char('.'), 0, 0)));
    QCOMPARE(kind.text(view), expected);
    QCOMPARE(darkPixels(bridge) > 0, !expected.isEmpty());
}

void tst_StringView::viewRepaintsOnModelChange()
{
    const auto model = publish(uniqueName("Title"), QString());
    Kiv_BridgeQWidget bridge;
    auto *view = new Kiv_StringView;
    view->setSize(QSize(200, 30));
    bridge.setChild(view);
    view->SetConnectionID(model->GetConnectionName());
    bridge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bridge));
    QCOMPARE(darkPixels(bridge), 0);

    int paints = 0;
    struct PaintCounter : QObject
    {
        int *count;
        bool eventFilter(QObject *, QEvent *iEvent) override
        {
            if (iEvent->type() == QEvent::Paint)
                ++*count;
            return false;
        }
    } counter;
    counter.count = &paints;
    bridge.installEventFilter(&counter);

    model->setValue(QStringLiteral("Interview"));
    QTRY_VERIFY(paints > 0);
    QVERIFY(darkPixels(bridge) > 0);
    bridge.removeEventFilter(&counter);
}

void tst_StringView::clonesBindPerRow()
{
    const QString base = uniqueName("Rows");
    const QString root = base.section(QLatin1Char('.'), 0, 0);
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

void tst_StringView::longIntViewRefusesBadFormat()
{
    const auto model = publish(uniqueName("Count"), 7L);
    Kiv_LongIntView view;
    view.setPrintfFormat("%03ld");
    view.setConnectionName(model->GetConnectionName());
    QTest::ignoreMessage(
        QtWarningMsg,
        QRegularExpression(QStringLiteral("^Kiv_LongIntView::setPrintfFormat, '%s %ld'")));
    view.setPrintfFormat("%s %ld");
    QCOMPARE(view.text(), QStringLiteral("007"));
}

void tst_StringView::editorEditsTheShownModel_data()
{
    QTest::addColumn<bool>("published");
    QTest::addColumn<QPoint>("origin"); // of the view inside a panel; (0, 0): the bridge's top view
    QTest::newRow("top view, bound through a variable") << false << QPoint(0, 0);
    QTest::newRow("inside a panel") << false << QPoint(30, 12);
    QTest::newRow("published") << true << QPoint(0, 0);
}

void tst_StringView::editorEditsTheShownModel()
{
    QFETCH(bool, published);
    QFETCH(QPoint, origin);

    const QString name = uniqueName("Name");
    std::unique_ptr<Bnde_SimpleValue<QString>> model;
    auto *view = new Kiv_StringView;
    view->setSize(QSize(160, 24));
    view->setReadOnly(false);
    if (published) {
        view->SetConnectionID(QStringLiteral("publish ") + name);
    } else {
        model = publish(name, QStringLiteral("Interview"));
        view->SetConnectionID(QStringLiteral("$Clip.Name"));
    }
    Kiv_BridgeQWidget bridge;
    if (origin.isNull()) {
        bridge.setChild(view);
    } else {
        auto *panel = new Panel;
        panel->setSize(QSize(300, 60));
        view->setOrigin(origin);
        QVERIFY(panel->AddSubView(view));
        bridge.setChild(panel);
    }
    bridge.makeConnections(
        environment(QStringLiteral("Clip"), name.section(QLatin1Char('.'), 0, 0)));
    bridge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bridge));

    QVERIFY(view->startEditing());
    Kiv_LineEdit *editor = view->editor();
    QVERIFY(editor);
    QCOMPARE(editor->parentWidget(), &bridge);
    QCOMPARE(editor->geometry(), QRect(origin, view->getSize()));
    QCOMPARE(editor->GetTextConnection(), Bnd_Utils::Bnd_MakeStaticConnectionSpec(name).toLatin1());
    QCOMPARE(editor->text(), view->text());

    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("Outro"));
    QCOMPARE(view->text(), QStringLiteral("Outro"));
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> client(name);
    QCOMPARE(client.getValue(), QStringLiteral("Outro"));

    const QPointer<Kiv_LineEdit> watch(editor);
    QTest::keyClick(editor, Qt::Key_Return);
    QVERIFY(!view->editor());
    QTRY_VERIFY(watch.isNull());
    QCOMPARE(view->text(), QStringLiteral("Outro"));
}

void tst_StringView::editingRefused_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("modelThere");
    QTest::addColumn<bool>("hosted");
    QTest::addColumn<QString>("warning"); // empty: refused silently
    QTest::newRow("read-only") << true << true << true << QString();
    QTest::newRow("no model") << false << false << true << QStringLiteral("has no model to edit");
    QTest::newRow("not hosted") << false << true << false
                                << QStringLiteral("is not shown in a widget");
}

void tst_StringView::editingRefused()
{
    QFETCH(bool, readOnly);
    QFETCH(bool, modelThere);
    QFETCH(bool, hosted);
    QFETCH(QString, warning);

    const QString name = uniqueName("Name");
    const auto model = modelThere ? publish(name, QStringLiteral("x")) : nullptr;
    Kiv_BridgeQWidget bridge;
    auto *view = new Kiv_StringView;
    const std::unique_ptr<Kiv_StringView> unhosted(hosted ? nullptr : view);
    if (hosted)
        bridge.setChild(view);
    view->setName(QStringLiteral("Title"));
    view->setReadOnly(readOnly);
    view->SetConnectionID(name);
    if (!warning.isEmpty()) {
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(
                QStringLiteral("^Kiv_StringView::startEditing, view 'Title' %1$").arg(warning)));
    }
    QVERIFY(!view->startEditing());
    QVERIFY(!view->editor());
    QVERIFY(bridge.findChildren<Kiv_LineEdit *>().isEmpty());
}

void tst_StringView::doubleClickStartsEditing()
{
    const auto model = publish(uniqueName("Name"), QStringLiteral("Interview"));
    Kiv_BridgeQWidget bridge;
    auto *view = new Kiv_StringView;
    view->setSize(QSize(160, 24));
    bridge.setChild(view);
    view->SetConnectionID(model->GetConnectionName());
    bridge.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bridge));

    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, QPoint(20, 10));
    QVERIFY(!view->editor()); // read-only
    view->setReadOnly(false);
    QTest::mouseDClick(&bridge, Qt::LeftButton, {}, QPoint(20, 10));
    QVERIFY(view->editor());
    QCOMPARE(view->editor()->text(), QStringLiteral("Interview"));
}

void tst_StringView::viewGoingAwayRemovesEditor()
{
    const auto model = publish(uniqueName("Name"), QStringLiteral("Interview"));
    Kiv_BridgeQWidget bridge;
    auto *view = new Kiv_StringView;
    view->setSize(QSize(160, 24));
    view->setReadOnly(false);
    bridge.setChild(view);
    view->SetConnectionID(model->GetConnectionName());
    QVERIFY(view->startEditing());
    const QPointer<Kiv_LineEdit> watch(view->editor());

    bridge.setChild(nullptr);
    QVERIFY(watch);
    QVERIFY(watch->isHidden());
    QTRY_VERIFY(watch.isNull());
    model->setValue(QStringLiteral("still fine"));
}

QTEST_MAIN(tst_StringView)
#include "tst_stringview.moc"
