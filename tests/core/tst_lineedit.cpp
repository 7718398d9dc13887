// Kiv_LineEdit and Kiv_TextEdit: model binding, Edit menu commands and auto-alignment.
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kic_EditMenu.h"
#include "Kiv_LineEdit.h"
#include "Kiv_RetireLater.h"
#include "Kiv_TextEdit.h"

#include <QtTest>

namespace {

typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;

QString uniqueName(const char *iLeaf)
{
    static int count = 0;
    return QStringLiteral("TstLineEdit%1.%2").arg(++count).arg(QLatin1String(iLeaf));
}

// Another party bound to the model: records the value at every change notification.
struct Observer : StringListener
{
    explicit Observer(const QString &iName)
        : StringListener(iName)
    {
        setReceiveMessageCB([this](const Bnd_MessageInterface &iMsg) {
            if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
                values << getValue();
        });
    }
    QStringList values;
};

QString kind()
{
    QFETCH_GLOBAL(QString, kind);
    return kind;
}

// A line edit or a text edit, driven alike.
struct Editor
{
    Editor()
        : l(kind() == QLatin1String("line") ? new Kiv_LineEdit : nullptr)
        , t(l ? nullptr : new Kiv_TextEdit)
        , w(l ? static_cast<QWidget *>(l) : t)
        , c(l ? static_cast<Kic_Commander *>(l) : t)
    { }
    ~Editor() { delete w; }
    QString text() const { return l ? l->text() : t->toPlainText(); }
    void bind(const QString &s) { w->setProperty("textConnection", s.toUtf8()); }
    void type(const QString &iKeys) { QTest::keyClicks(w, iKeys); }
    // Cursor at iFrom (-1: the end), selecting iLength characters.
    void select(int iFrom, int iLength = 0)
    {
        const int start = iFrom < 0 ? int(text().size()) : iFrom;
        if (l)
            return l->setSelection(start, iLength);
        QTextCursor cursor = t->textCursor();
        cursor.setPosition(start);
        cursor.setPosition(start + iLength, QTextCursor::KeepAnchor);
        t->setTextCursor(cursor);
    }
    // Commands 0 to 6 as "0"/"1".
    QString availability() const
    {
        QString bits, label;
        bool enabled = true;
        for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command)
            bits += c->findCommandStatus(command, enabled, label) && enabled ? '1' : '0';
        return bits;
    }
    Kiv_LineEdit *l;
    Kiv_TextEdit *t;
    QWidget *w;
    Kic_Commander *c;
};

} // namespace

class tst_LineEdit : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void typingAndModelChanges();
    void publishedTextAnswersGetAndSet();
    void rebinding();
    void rebindingInALoopKeepsNothing();
    void commandAvailability_data();
    void commandAvailability();
    void focusFollowsEditMenu();
    void autoAlignment();
};

void tst_LineEdit::initTestCase_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("line") << "line";
    QTest::newRow("text") << "text";
}

// Typing sends every change once and does not take the model's echo back, so the cursor and the
// undo history stay; a change made by the model shows at once and is not sent back.
void tst_LineEdit::typingAndModelChanges()
{
    Bnde_SimpleValue<QString> model(uniqueName("Title"), QStringLiteral("ad"));
    QVERIFY(model.Publish());
    Editor editor;
    editor.bind(model.GetConnectionName());
    Observer observer(model.GetConnectionName());
    editor.select(1);
    editor.type(QStringLiteral("bc"));
    QCOMPARE(editor.availability()[0], QLatin1Char('1')); // undo history kept
    model.setValue(QStringLiteral("second"));
    QCOMPARE(editor.text(), QStringLiteral("second"));
    QCOMPARE(observer.values, QStringList({ "abd", "abcd", "second" }));

    // A party that upper-cases every value while the editor's send is running.
    StringListener normaliser(model.GetConnectionName());
    normaliser.setReceiveMessageCB([&](const Bnd_MessageInterface &) {
        if (normaliser.getValue() != normaliser.getValue().toUpper())
            normaliser.setValue(normaliser.getValue().toUpper());
    });
    editor.select(0, 6);
    editor.type(QStringLiteral("ab"));
    QCOMPARE(model.getValue(), QStringLiteral("AB"));
    QCOMPARE(editor.text(), QStringLiteral("ab")); // the echo is not shown
}

void tst_LineEdit::publishedTextAnswersGetAndSet()
{
    const QString name = uniqueName("Own");
    Editor editor;
    editor.type(QStringLiteral("hello"));
    editor.bind("  publish   " + name);
    StringListener client(name);
    QCOMPARE(client.getValue(), QStringLiteral("hello"));
    Observer observer(name);
    QCOMPARE(client.setValue(QStringLiteral("hello")), int(Bnd_Status::Ok));
    QCOMPARE(observer.values, QStringList()); // same text: no notification
    QCOMPARE(client.setValue(QStringLiteral("other")), int(Bnd_Status::Ok));
    QCOMPARE(editor.text(), QStringLiteral("other"));
    editor.select(-1);
    editor.type(QStringLiteral("!"));
    QCOMPARE(observer.values, QStringList({ "other", "other!" }));
}

void tst_LineEdit::rebinding()
{
    Editor editor;
    const QString late = uniqueName("Late");
    editor.bind(late);
    dynamic_cast<Kiv_WidgetConnectInterface *>(editor.w)->makeConnections(
        Bnd_ConnectionEnvironment::blankEnvironment());
    editor.type(QStringLiteral("typed")); // no model yet: kept, not sent
    QCOMPARE(editor.text(), QStringLiteral("typed"));
    Bnde_SimpleValue<QString> a(late, QStringLiteral("a"));
    Bnde_SimpleValue<QString> b(uniqueName("B"), QStringLiteral("b"));
    QVERIFY(a.Publish() && b.Publish());
    QCOMPARE(editor.text(), QStringLiteral("a"));
    editor.bind(b.GetConnectionName());
    a.setValue(QStringLiteral("a2"));
    editor.select(-1);
    editor.type(QStringLiteral("+"));
    QCOMPARE(QStringList({ a.getValue(), b.getValue() }), QStringList({ "a2", "b+" }));
    editor.l ? editor.l->ClearConnection() : editor.t->ClearConnection();
    QCOMPARE(editor.w->property("textConnection").toByteArray(), b.GetConnectionName().toUtf8());
    b.setValue(QStringLiteral("b3"));
    QCOMPARE(editor.text(), QStringLiteral("b+"));
    editor.bind(b.GetConnectionName()); // the same string again changes nothing
    QCOMPARE(editor.text(), QStringLiteral("b+"));
    editor.bind("");
    editor.bind(b.GetConnectionName());
    QCOMPARE(editor.text(), QStringLiteral("b3"));
}

// What a rebinding drops is freed when the event loop runs, however often it happens.
void tst_LineEdit::rebindingInALoopKeepsNothing()
{
    Editor editor;
    Bnde_SimpleValue<QString> model(uniqueName("M"), QStringLiteral("m"));
    QVERIFY(model.Publish());
    const QString own = "publish " + uniqueName("Own");
    const int before = Kiv_RetireLater::pendingCount();
    for (int i = 0; i < 100000; ++i)
        editor.bind(i % 2 ? model.GetConnectionName() : own);
    QCOMPARE(Kiv_RetireLater::pendingCount(), before + 99999);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(Kiv_RetireLater::pendingCount(), 0);
    model.setValue(QStringLiteral("still bound"));
    QCOMPARE(editor.text(), QStringLiteral("still bound"));
}

void tst_LineEdit::commandAvailability_data()
{
    QTest::addColumn<QString>("text"); // [selected]
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<int>("typed"); // 1: "d" typed, 2: and undone
    QTest::addColumn<QString>("available"); // undo redo cut copy paste delete select-all
    QTest::addColumn<int>("command"); // then obeyed if available
    QTest::addColumn<QString>("after");
    QTest::newRow("empty, read-only") << "" << true << 0 << "0000000" << 4 << "";
    QTest::newRow("no selection") << "abc" << false << 0 << "0000101" << 2 << "abc";
    QTest::newRow("selected") << "[ab]c" << false << 0 << "0011111" << 2 << "c";
    QTest::newRow("delete") << "[ab]c" << false << 0 << "0011111" << 5 << "c";
    QTest::newRow("selected, read-only") << "[ab]c" << true << 0 << "0001001" << 5 << "abc";
    QTest::newRow("typed") << "abc" << false << 1 << "1000101" << 0 << "abc";
    QTest::newRow("undone") << "abc" << false << 2 << "0100101" << 1 << "abcd";
    QTest::newRow("unknown command") << "[ab]c" << false << 0 << "0011111" << 7 << "abc";
}

void tst_LineEdit::commandAvailability()
{
    QFETCH(QString, text);
    QFETCH(bool, readOnly);
    QFETCH(int, typed);
    QFETCH(QString, available);
    QFETCH(int, command);
    QFETCH(QString, after);

    const int from = text.indexOf(QLatin1Char('['));
    const int length = std::max(0, int(text.indexOf(QLatin1Char(']'))) - from - 1);
    Bnde_SimpleValue<QString> model(uniqueName("Text"), text.remove('[').remove(']'));
    QVERIFY(model.Publish());
    Editor editor;
    editor.bind(model.GetConnectionName());
    editor.select(-1);
    editor.type(typed ? QStringLiteral("d") : QString());
    if (typed == 2)
        QVERIFY(editor.c->obeyCommand(Kic_Undo));
    editor.select(from, length);
    editor.l ? editor.l->setReadOnly(readOnly) : editor.t->setReadOnly(readOnly);
    QCOMPARE(editor.availability(), available);
    const bool obeyable = command < available.size() && available[command] == QLatin1Char('1');
    QCOMPARE(editor.c->obeyCommand(unsigned(command)), obeyable);
    QCOMPARE(model.getValue(), after);
}

// The editor is the Edit menu's commander while it has the focus, also while a popup (a context
// menu) has it, and never once it is destroyed.
void tst_LineEdit::focusFollowsEditMenu()
{
    auto editor = std::make_unique<Editor>();
    const auto focus = [&](QEvent::Type iType, Qt::FocusReason iReason) {
        QFocusEvent event(iType, iReason);
        QCoreApplication::sendEvent(editor->w, &event);
        return Kic_EditMenu::instance().currentCommander();
    };
    QCOMPARE(focus(QEvent::FocusIn, Qt::MouseFocusReason), editor->c);
    QVERIFY(!focus(QEvent::FocusOut, Qt::TabFocusReason));
    QCOMPARE(focus(QEvent::FocusIn, Qt::TabFocusReason), editor->c);
    QCOMPARE(focus(QEvent::FocusOut, Qt::PopupFocusReason), editor->c);
    editor.reset();
    QVERIFY(!Kic_EditMenu::instance().currentCommander());
}

// Left-aligned while the whole text fits; else right-aligned with the cursor at the end while the
// user is not editing. Every change of the text and the size looks again.
void tst_LineEdit::autoAlignment()
{
    if (kind() != QLatin1String("line"))
        QSKIP("line edits only");
    Kiv_LineEdit edit;
    const auto alignedRight = [&](int iWidth) {
        edit.resize(iWidth, 30);
        return bool(edit.alignment() & Qt::AlignRight);
    };
    edit.setFocusPolicy(Qt::NoFocus);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    const QString path("/media/projects/2024/interviews/raw/camera-b/clip-0042.mov");
    edit.setText(path);
    edit.setCursorPosition(0);
    QVERIFY(alignedRight(81));
    QCOMPARE(edit.cursorPosition(), int(path.size()));
    QVERIFY(!alignedRight(2000)); // grown to fit
    QVERIFY(alignedRight(80)); // shrunk below the text
    edit.setText(QStringLiteral("x"));
    QVERIFY(!alignedRight(80));
}

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
