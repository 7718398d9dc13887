#include "Bnd_ConnectionDict.h"
#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Bnde_SimpleValue.h"
#include "Kic_EditMenu.h"
#include "Kiv_LineEdit.h"
#include "Kiv_TextEdit.h"

#include <QFocusEvent>
#include <QTextCursor>
#include <QtTest>

#include <memory>

namespace {

typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;

/// A model name of its own for each test function and data row.
QString uniqueName(const char *iLeaf)
{
    QString name = QStringLiteral("TstLineEdit_%1_%2")
                       .arg(QLatin1String(QTest::currentTestFunction()),
                            QLatin1String(QTest::currentDataTag()));
    for (QChar &c : name) {
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    }
    return name + QLatin1Char('.') + QLatin1String(iLeaf);
}

/// Another party bound to a model: it records every change notification with the value it
/// reads then.
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
    StringListener &listener() { return mListener; }
    QStringList values;

private:
    StringListener mListener;
};

/// A Kiv_LineEdit or a Kiv_TextEdit, driven through one interface so that every binding and
/// command case runs on both.
class Editor
{
public:
    explicit Editor(const QString &iKind)
    {
        if (iKind == QLatin1String("line")) {
            mLine = new Kiv_LineEdit(nullptr, QStringLiteral("Line"));
            mWidget.reset(mLine);
        } else {
            mMulti = new Kiv_TextEdit(nullptr, QStringLiteral("Multi"));
            mWidget.reset(mMulti);
        }
        mWidget->resize(300, 80);
    }

    QWidget *widget() const { return mWidget.get(); }
    Kic_Commander *commander() const
    {
        return mLine ? static_cast<Kic_Commander *>(mLine) : static_cast<Kic_Commander *>(mMulti);
    }
    QString text() const { return mLine ? mLine->text() : mMulti->toPlainText(); }
    void setText(const QString &iText)
    {
        if (mLine)
            mLine->setText(iText);
        else
            mMulti->setPlainText(iText);
    }
    void setConnection(const QByteArray &iConnection)
    {
        if (mLine)
            mLine->SetTextConnection(iConnection);
        else
            mMulti->SetTextConnection(iConnection);
    }
    void clearConnection()
    {
        if (mLine)
            mLine->ClearConnection();
        else
            mMulti->ClearConnection();
    }
    void makeConnections(const Bnd_ConnectionEnvironmentPtr &iEnv)
    {
        if (mLine)
            mLine->makeConnections(iEnv);
        else
            mMulti->makeConnections(iEnv);
    }
    void setReadOnly(bool iReadOnly)
    {
        if (mLine)
            mLine->setReadOnly(iReadOnly);
        else
            mMulti->setReadOnly(iReadOnly);
    }
    /// Puts the cursor at `iPosition` (-1: the end) and selects `iLength` characters from there.
    void select(int iPosition, int iLength = 0)
    {
        const int start = iPosition < 0 ? int(text().size()) : iPosition;
        if (mLine) {
            mLine->setCursorPosition(start);
            if (iLength > 0)
                mLine->setSelection(start, iLength);
            return;
        }
        QTextCursor cursor = mMulti->textCursor();
        cursor.setPosition(start);
        cursor.setPosition(start + iLength, QTextCursor::KeepAnchor);
        mMulti->setTextCursor(cursor);
    }
    int cursorPosition() const
    {
        return mLine ? mLine->cursorPosition() : mMulti->textCursor().position();
    }
    QString selectedText() const
    {
        return mLine ? mLine->selectedText() : mMulti->textCursor().selectedText();
    }
    bool undoAvailable() const
    {
        return mLine ? mLine->isUndoAvailable() : mMulti->document()->isUndoAvailable();
    }
    void type(const QString &iKeys) { QTest::keyClicks(mWidget.get(), iKeys); }

    /// The availability of commands 0 to 6 as a string of "0" and "1".
    QString availability() const
    {
        QString bits;
        for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
            bool enabled = true;
            QString text;
            const bool known = commander()->findCommandStatus(command, enabled, text);
            bits += known && enabled ? QLatin1Char('1') : QLatin1Char('0');
        }
        return bits;
    }

private:
    std::unique_ptr<QWidget> mWidget;
    Kiv_LineEdit *mLine = nullptr;
    Kiv_TextEdit *mMulti = nullptr;
};

void addKindRows(const char *iTag, const std::function<void(QTestData &)> &iColumns)
{
    for (const char *kind : { "line", "text" }) {
        QTestData &row = QTest::addRow("%s, %s", kind, iTag) << QString::fromLatin1(kind);
        iColumns(row);
    }
}

} // namespace

class tst_LineEdit : public QObject
{
    Q_OBJECT

private slots:
    void typingSendsEachChangeOnce_data();
    void typingSendsEachChangeOnce();
    void echoOfOwnSendIsNotShown_data();
    void echoOfOwnSendIsNotShown();
    void modelChangeIsShownAndNotSentBack_data();
    void modelChangeIsShownAndNotSentBack();
    void publishedTextAnswersGetAndSet_data();
    void publishedTextAnswersGetAndSet();
    void withoutModelKeepsTextAndWaits_data();
    void withoutModelKeepsTextAndWaits();
    void rebinding_data();
    void rebinding();
    void commandAvailability_data();
    void commandAvailability();
    void obeyCommand_data();
    void obeyCommand();
    void focusFollowsEditMenu_data();
    void focusFollowsEditMenu();
    void autoAlignment_data();
    void autoAlignment();
};

void tst_LineEdit::typingSendsEachChangeOnce_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("initial");
    QTest::addColumn<int>("cursor");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QStringList>("sent");
    addKindRows("append", [](QTestData &row) {
        row << QString() << -1 << QStringLiteral("abc")
            << QStringList { QStringLiteral("a"), QStringLiteral("ab"), QStringLiteral("abc") };
    });
    addKindRows("insert in the middle", [](QTestData &row) {
        row << QStringLiteral("ad") << 1 << QStringLiteral("bc")
            << QStringList { QStringLiteral("abd"), QStringLiteral("abcd") };
    });
}

void tst_LineEdit::typingSendsEachChangeOnce()
{
    QFETCH(QString, kind);
    QFETCH(QString, initial);
    QFETCH(int, cursor);
    QFETCH(QString, keys);
    QFETCH(QStringList, sent);

    Bnde_SimpleValue<QString> model(uniqueName("Title"), initial);
    QVERIFY(model.Publish());
    Editor editor(kind);
    editor.setConnection(model.GetConnectionName().toUtf8());
    QCOMPARE(editor.text(), initial);
    Observer observer(model.GetConnectionName());

    editor.select(cursor);
    const int start = editor.cursorPosition();
    editor.type(keys);

    QCOMPARE(observer.values, sent);
    QCOMPARE(model.getValue(), sent.last());
    QCOMPARE(editor.text(), sent.last());
    // Taking the echo back would have reset the cursor and the undo history.
    QCOMPARE(editor.cursorPosition(), start + int(keys.size()));
    QVERIFY(editor.undoAvailable());
}

void tst_LineEdit::echoOfOwnSendIsNotShown_data()
{
    QTest::addColumn<QString>("kind");
    addKindRows("upper-casing model", [](QTestData &) {});
}

void tst_LineEdit::echoOfOwnSendIsNotShown()
{
    QFETCH(QString, kind);
    Bnde_SimpleValue<QString> model(uniqueName("Name"));
    QVERIFY(model.Publish());
    // Another party that rewrites every value it hears of, while the editor's send is running.
    StringListener normaliser(model.GetConnectionName());
    normaliser.setReceiveMessageCB([&](const Bnd_MessageInterface &iMsg) {
        if (!iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>())
            return;
        const QString value = normaliser.getValue();
        if (value != value.toUpper())
            normaliser.setValue(value.toUpper());
    });
    Editor editor(kind);
    editor.setConnection(model.GetConnectionName().toUtf8());

    editor.type(QStringLiteral("ab"));
    QCOMPARE(model.getValue(), QStringLiteral("AB"));
    QCOMPARE(editor.text(), QStringLiteral("ab"));

    model.setValue(QStringLiteral("XY")); // a change of the model's own is shown
    QCOMPARE(editor.text(), QStringLiteral("XY"));
}

void tst_LineEdit::modelChangeIsShownAndNotSentBack_data()
{
    QTest::addColumn<QString>("kind");
    addKindRows("model sets", [](QTestData &) {});
}

void tst_LineEdit::modelChangeIsShownAndNotSentBack()
{
    QFETCH(QString, kind);
    Bnde_SimpleValue<QString> model(uniqueName("Name"), QStringLiteral("first"));
    QVERIFY(model.Publish());
    Editor editor(kind);
    editor.setConnection(model.GetConnectionName().toUtf8());
    Observer observer(model.GetConnectionName());

    model.setValue(QStringLiteral("second"));
    QCOMPARE(editor.text(), QStringLiteral("second"));
    QCOMPARE(observer.values, QStringList { QStringLiteral("second") });
}

void tst_LineEdit::publishedTextAnswersGetAndSet_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("set");
    QTest::addColumn<QStringList>("notified");
    addKindRows("same text",
                [](QTestData &row) { row << QStringLiteral("hello") << QStringList(); });
    addKindRows("other text", [](QTestData &row) {
        row << QStringLiteral("other") << QStringList { QStringLiteral("other") };
    });
}

void tst_LineEdit::publishedTextAnswersGetAndSet()
{
    QFETCH(QString, kind);
    QFETCH(QString, set);
    QFETCH(QStringList, notified);

    const QString name = uniqueName("Own");
    Editor editor(kind);
    editor.setText(QStringLiteral("hello"));
    editor.setConnection("  publish   " + name.toUtf8());
    StringListener client(name);
    QVERIFY(client.isConnectedToModel());
    QCOMPARE(client.getValue(), QStringLiteral("hello"));

    Observer observer(name);
    QCOMPARE(client.setValue(set), int(Bnd_Status::Ok));
    QCOMPARE(editor.text(), set);
    QCOMPARE(observer.values, notified);

    editor.select(-1);
    editor.type(QStringLiteral("!"));
    QCOMPARE(observer.values, notified + QStringList { set + QLatin1Char('!') });
}

void tst_LineEdit::withoutModelKeepsTextAndWaits_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("bound");
    addKindRows("unbound", [](QTestData &row) { row << false; });
    addKindRows("model not there yet", [](QTestData &row) { row << true; });
}

void tst_LineEdit::withoutModelKeepsTextAndWaits()
{
    QFETCH(QString, kind);
    QFETCH(bool, bound);

    const QString name = uniqueName("Late");
    Editor editor(kind);
    editor.setConnection(bound ? name.toUtf8() : QByteArray());
    editor.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
    editor.type(QStringLiteral("typed"));
    QCOMPARE(editor.text(), QStringLiteral("typed"));

    Bnde_SimpleValue<QString> model(name, QStringLiteral("late"));
    QVERIFY(model.Publish());
    QCOMPARE(editor.text(), bound ? QStringLiteral("late") : QStringLiteral("typed"));
    QCOMPARE(model.getValue(), QStringLiteral("late")); // nothing typed before was sent
}

void tst_LineEdit::rebinding_data()
{
    QTest::addColumn<QString>("kind");
    addKindRows("A then B", [](QTestData &) {});
}

void tst_LineEdit::rebinding()
{
    QFETCH(QString, kind);
    Bnde_SimpleValue<QString> a(uniqueName("A"), QStringLiteral("a"));
    Bnde_SimpleValue<QString> b(uniqueName("B"), QStringLiteral("b"));
    QVERIFY(a.Publish());
    QVERIFY(b.Publish());
    Editor editor(kind);

    editor.setConnection(a.GetConnectionName().toUtf8());
    QCOMPARE(editor.text(), QStringLiteral("a"));
    editor.setConnection(b.GetConnectionName().toUtf8());
    QCOMPARE(editor.text(), QStringLiteral("b"));

    a.setValue(QStringLiteral("a2"));
    QCOMPARE(editor.text(), QStringLiteral("b"));
    editor.select(-1);
    editor.type(QStringLiteral("+"));
    QCOMPARE(b.getValue(), QStringLiteral("b+"));
    QCOMPARE(a.getValue(), QStringLiteral("a2"));

    // Cleared, the editor no longer follows; the same name again binds anew.
    editor.clearConnection();
    b.setValue(QStringLiteral("b3"));
    QCOMPARE(editor.text(), QStringLiteral("b+"));
    editor.setConnection(b.GetConnectionName().toUtf8());
    QCOMPARE(editor.text(), QStringLiteral("b3"));
}

void tst_LineEdit::commandAvailability_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("selectFrom");
    QTest::addColumn<int>("selectLength");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("undoTyping");
    // Commands: undo, redo, cut, copy, paste, delete, select all.
    QTest::addColumn<QString>("available");
    auto row = [](const char *tag, QString text, int from, int length, bool readOnly, QString typed,
                  bool undo, QString available) {
        addKindRows(tag, [&](QTestData &r) {
            r << text << from << length << readOnly << typed << undo << available;
        });
    };
    row("empty", QString(), -1, 0, false, QString(), false, QStringLiteral("0000100"));
    row("empty, read-only", QString(), -1, 0, true, QString(), false, QStringLiteral("0000000"));
    row("text, nothing selected", QStringLiteral("abc"), -1, 0, false, QString(), false,
        QStringLiteral("0000101"));
    row("text selected", QStringLiteral("abc"), 0, 2, false, QString(), false,
        QStringLiteral("0011111"));
    row("selected, read-only", QStringLiteral("abc"), 0, 2, true, QString(), false,
        QStringLiteral("0001001"));
    row("after typing", QStringLiteral("abc"), -1, 0, false, QStringLiteral("d"), false,
        QStringLiteral("1000101"));
    row("after undo", QStringLiteral("abc"), -1, 0, false, QStringLiteral("d"), true,
        QStringLiteral("0100101"));
}

void tst_LineEdit::commandAvailability()
{
    QFETCH(QString, kind);
    QFETCH(QString, text);
    QFETCH(int, selectFrom);
    QFETCH(int, selectLength);
    QFETCH(bool, readOnly);
    QFETCH(QString, typed);
    QFETCH(bool, undoTyping);
    QFETCH(QString, available);

    Editor editor(kind);
    editor.setText(text);
    editor.type(typed);
    if (undoTyping)
        QVERIFY(editor.commander()->obeyCommand(Kic_Undo));
    editor.select(selectFrom, selectLength);
    editor.setReadOnly(readOnly);
    QCOMPARE(editor.availability(), available);

    bool enabled = true;
    QString label = QStringLiteral("untouched");
    QVERIFY(!editor.commander()->findCommandStatus(Kic_CommandCount, enabled, label));
    QVERIFY(!enabled);
}

void tst_LineEdit::obeyCommand_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("command");
    QTest::addColumn<int>("selectFrom");
    QTest::addColumn<int>("selectLength");
    QTest::addColumn<bool>("obeyed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("selected");
    auto row = [](const char *tag, int command, int from, int length, bool obeyed, QString text,
                  QString selected) {
        addKindRows(tag, [&](QTestData &r) {
            r << command << from << length << obeyed << text << selected;
        });
    };
    row("cut", Kic_Cut, 0, 1, true, QStringLiteral("bcd"), QString());
    row("delete", Kic_Delete, 1, 2, true, QStringLiteral("ad"), QString());
    row("select all", Kic_SelectAll, 0, 0, true, QStringLiteral("abcd"), QStringLiteral("abcd"));
    row("cut without selection", Kic_Cut, 2, 0, false, QStringLiteral("abcd"), QString());
    row("undo without history", Kic_Undo, 0, 0, false, QStringLiteral("abcd"), QString());
    row("unknown command", Kic_CommandCount, 0, 2, false, QStringLiteral("abcd"),
        QStringLiteral("ab"));
}

void tst_LineEdit::obeyCommand()
{
    QFETCH(QString, kind);
    QFETCH(int, command);
    QFETCH(int, selectFrom);
    QFETCH(int, selectLength);
    QFETCH(bool, obeyed);
    QFETCH(QString, text);
    QFETCH(QString, selected);

    Bnde_SimpleValue<QString> model(uniqueName("Text"), QStringLiteral("abcd"));
    QVERIFY(model.Publish());
    Editor editor(kind);
    editor.setConnection(model.GetConnectionName().toUtf8());
    editor.select(selectFrom, selectLength);

    QCOMPARE(editor.commander()->obeyCommand(unsigned(command)), obeyed);
    QCOMPARE(editor.text(), text);
    QCOMPARE(model.getValue(), text);
    QCOMPARE(editor.selectedText(), selected);
}

void tst_LineEdit::focusFollowsEditMenu_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<Qt::FocusReason>("outReason");
    QTest::addColumn<bool>("staysCurrent");
    addKindRows("tab away", [](QTestData &row) { row << Qt::TabFocusReason << false; });
    addKindRows("context menu", [](QTestData &row) { row << Qt::PopupFocusReason << true; });
    addKindRows("menu bar", [](QTestData &row) { row << Qt::MenuBarFocusReason << true; });
}

void tst_LineEdit::focusFollowsEditMenu()
{
    QFETCH(QString, kind);
    QFETCH(Qt::FocusReason, outReason);
    QFETCH(bool, staysCurrent);

    Editor editor(kind);
    Kic_EditMenu::instance().focusInEvent(nullptr);
    QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
    QCoreApplication::sendEvent(editor.widget(), &in);
    QCOMPARE(Kic_EditMenu::instance().currentCommander(), editor.commander());

    QFocusEvent out(QEvent::FocusOut, outReason);
    QCoreApplication::sendEvent(editor.widget(), &out);
    QCOMPARE(Kic_EditMenu::instance().currentCommander(),
             staysCurrent ? editor.commander() : nullptr);
    Kic_EditMenu::instance().focusInEvent(nullptr);
}

void tst_LineEdit::autoAlignment_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("laterWidth");
    QTest::addColumn<bool>("rightFirst");
    QTest::addColumn<bool>("rightLater");
    const QString path
        = QStringLiteral("/media/projects/2024/interviews/raw/camera-b/clip-0042.mov");
    QTest::newRow("short text, wide field")
        << 300 << QStringLiteral("clip") << 300 << false << false;
    QTest::newRow("long text, narrow field") << 80 << path << 80 << true << true;
    QTest::newRow("field grows to fit") << 80 << path << 2000 << true << false;
    QTest::newRow("field shrinks below the text") << 2000 << path << 80 << false << true;
}

void tst_LineEdit::autoAlignment()
{
    QFETCH(int, width);
    QFETCH(QString, text);
    QFETCH(int, laterWidth);
    QFETCH(bool, rightFirst);
    QFETCH(bool, rightLater);

    auto alignedRight = [](const QLineEdit &iEdit) {
        return (iEdit.alignment() & Qt::AlignHorizontal_Mask) == Qt::AlignRight;
    };
    Kiv_LineEdit edit;
    edit.setFocusPolicy(Qt::NoFocus); // the cursor moves only while the user is not editing
    edit.resize(width, 30);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    edit.setText(text);
    edit.setCursorPosition(0);
    edit.resize(width + 1, 30); // a resize looks again, and puts the cursor at the end if needed
    QCOMPARE(alignedRight(edit), rightFirst);
    if (rightFirst)
        QCOMPARE(edit.cursorPosition(), int(text.size()));

    edit.resize(laterWidth, 30);
    QCOMPARE(alignedRight(edit), rightLater);

    edit.setText(QStringLiteral("x")); // a short text always fits
    QVERIFY(!alignedRight(edit));
}

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
