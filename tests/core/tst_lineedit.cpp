// Kiv_LineEdit and Kiv_TextEdit: model binding, Edit menu commands and auto-alignment.
#include "Bnd_ConnectionDict.h"
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
    StringListener listener;
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
    {
        w->resize(300, 80);
    }
    ~Editor() { delete w; }
    QString text() const { return l ? l->text() : t->toPlainText(); }
    void setText(const QString &s) { l ? l->setText(s) : t->setPlainText(s); }
    void bind(const QString &s) { w->setProperty("textConnection", s.toUtf8()); }
    void type(const QString &iKeys) { QTest::keyClicks(w, iKeys); }
    int cursorPosition() const { return l ? l->cursorPosition() : t->textCursor().position(); }
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
        QString bits;
        for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
            bool enabled = true;
            QString text;
            bits += c->findCommandStatus(command, enabled, text) && enabled ? '1' : '0';
        }
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
    void typingSendsEachChangeOnce_data();
    void typingSendsEachChangeOnce();
    void modelChangesAndEchoes();
    void publishedTextAnswersGetAndSet();
    void rebinding();
    void rebindingInALoopKeepsNothing();
    void commandAvailability_data();
    void commandAvailability();
    void focusFollowsEditMenu();
    void autoAlignment_data();
    void autoAlignment();
};

void tst_LineEdit::initTestCase_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("line") << "line";
    QTest::newRow("text") << "text";
}

void tst_LineEdit::typingSendsEachChangeOnce_data()
{
    QTest::addColumn<QString>("initial");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QStringList>("sent");
    QTest::newRow("append") << "" << -1 << "abc" << QStringList { "a", "ab", "abc" };
    QTest::newRow("insert in the middle") << "ad" << 1 << "bc" << QStringList { "abd", "abcd" };
}

void tst_LineEdit::typingSendsEachChangeOnce()
{
    QFETCH(QString, initial);
    QFETCH(int, cursor);
    QFETCH(QString, keys);
    QFETCH(QStringList, sent);

    Bnde_SimpleValue<QString> model(uniqueName("Title"), initial);
    QVERIFY(model.Publish());
    Editor editor;
    editor.bind(model.GetConnectionName());
    QCOMPARE(editor.text(), initial);
    Observer observer(model.GetConnectionName());
    editor.select(cursor);
    editor.type(keys);
    QCOMPARE(observer.values, sent);
    // Taking the echo back would reset the cursor and the undo history.
    QCOMPARE(editor.cursorPosition(), (cursor < 0 ? 0 : cursor) + int(keys.size()));
    QCOMPARE(editor.availability()[0], QLatin1Char('1')); // undo history kept
}

void tst_LineEdit::modelChangesAndEchoes()
{
    Bnde_SimpleValue<QString> model(uniqueName("Name"), QStringLiteral("first"));
    QVERIFY(model.Publish());
    Editor editor;
    editor.bind(model.GetConnectionName());
    {
        Observer observer(model.GetConnectionName());
        model.setValue(QStringLiteral("second")); // shown, not sent back
        QCOMPARE(editor.text(), QStringLiteral("second"));
        QCOMPARE(observer.values, QStringList { QStringLiteral("second") });
    }
    // A party that upper-cases every value while the editor's send is running.
    StringListener normaliser(model.GetConnectionName());
    normaliser.setReceiveMessageCB([&](const Bnd_MessageInterface &) {
        if (normaliser.getValue() != normaliser.getValue().toUpper())
            normaliser.setValue(normaliser.getValue().toUpper());
    });
    editor.setText(QString());
    editor.type(QStringLiteral("ab"));
    QCOMPARE(model.getValue(), QStringLiteral("AB"));
    QCOMPARE(editor.text(), QStringLiteral("ab")); // the echo is not shown
}

void tst_LineEdit::publishedTextAnswersGetAndSet()
{
    const QString name = uniqueName("Own");
    Editor editor;
    editor.setText(QStringLiteral("hello"));
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
    QCOMPARE(b.getValue(), QStringLiteral("b+"));
    QCOMPARE(a.getValue(), QStringLiteral("a2"));
    editor.l ? editor.l->ClearConnection() : editor.t->ClearConnection();
    QCOMPARE(editor.w->property("textConnection").toByteArray(), b.GetConnectionName().toUtf8());
    b.setValue(QStringLiteral("b3"));
    QCOMPARE(editor.text(), QStringLiteral("b+"));
    editor.bind(b.GetConnectionName()); // the same name again binds anew
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
    QTest::newRow("empty") << "" << false << 0 << "0000100" << 6 << "";
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
    QCOMPARE(editor.text(), after);
    QCOMPARE(model.getValue(), after);
}

void tst_LineEdit::focusFollowsEditMenu()
{
    for (const auto reason : { Qt::TabFocusReason, Qt::PopupFocusReason }) {
        Editor editor;
        Kic_EditMenu::instance().focusInEvent(nullptr);
        QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
        QCoreApplication::sendEvent(editor.w, &in);
        QCOMPARE(Kic_EditMenu::instance().currentCommander(), editor.c);
        QFocusEvent out(QEvent::FocusOut, reason); // a context menu keeps it current
        QCoreApplication::sendEvent(editor.w, &out);
        QCOMPARE(Kic_EditMenu::instance().currentCommander(),
                 reason == Qt::PopupFocusReason ? editor.c : nullptr);
    }
    Kic_EditMenu::instance().focusInEvent(nullptr);
}

void tst_LineEdit::autoAlignment_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("laterWidth");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("rightFirst");
    QTest::addColumn<bool>("rightLater");
    const QString path("/media/projects/2024/interviews/raw/camera-b/clip-0042.mov");
    QTest::newRow("short text, wide field") << 300 << 300 << "clip" << false << false;
    QTest::newRow("long text, narrow field") << 80 << 80 << path << true << true;
    QTest::newRow("field grows to fit") << 80 << 2000 << path << true << false;
    QTest::newRow("field shrinks below the text") << 2000 << 80 << path << false << true;
}

void tst_LineEdit::autoAlignment()
{
    if (kind() != QLatin1String("line"))
        QSKIP("line edits only");
    QFETCH(int, width);
    QFETCH(int, laterWidth);
    QFETCH(QString, text);
    QFETCH(bool, rightFirst);
    QFETCH(bool, rightLater);

    Kiv_LineEdit edit;
    const auto alignedRight = [&] {
        return edit.alignment() & Qt::AlignRight;
    };
    edit.setFocusPolicy(Qt::NoFocus); // the cursor moves only while the user is not editing
    edit.resize(width, 30);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    edit.setText(text);
    edit.setCursorPosition(0);
    edit.resize(width + 1, 30); // a resize looks again and puts the cursor at the end if needed
    QCOMPARE(bool(alignedRight()), rightFirst);
    if (rightFirst)
        QCOMPARE(edit.cursorPosition(), int(text.size()));
    edit.resize(laterWidth, 30);
    QCOMPARE(bool(alignedRight()), rightLater);
    edit.setText(QStringLiteral("x")); // a short text always fits
    QVERIFY(!alignedRight());
}

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
