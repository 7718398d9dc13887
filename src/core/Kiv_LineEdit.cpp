#include "Kiv_LineEdit.h"

#include "Kiv_EditableText.h"
#include "Kiv_WhatsThis.h"

#include <QFocusEvent>
#include <QKeyEvent>

Kiv_LineEdit::Kiv_LineEdit(QWidget *iParent, const QString &iName, const QString &iTextConnection)
    : Kiv_AutoAlignLineEdit(iParent)
    , mTextP(std::make_unique<Kiv_EditableText>(
          this, [this] { return text(); }, [this](const QString &iText) { setText(iText); }))
{
    setObjectName(iName);
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_LineEdit"));
    connect(this, &QLineEdit::textChanged, this, &Kiv_LineEdit::slotTextChanged);
    if (!iTextConnection.isEmpty())
        SetTextConnection(iTextConnection.toUtf8());
}

Kiv_LineEdit::~Kiv_LineEdit()
{
    // The binding goes before the line edit's text; no late change may reach it.
    disconnect(this, &QLineEdit::textChanged, this, &Kiv_LineEdit::slotTextChanged);
}

void Kiv_LineEdit::SetTextConnection(const QByteArray &iConnection)
{
    mTextP->setConnectionString(iConnection);
}

QByteArray Kiv_LineEdit::GetTextConnection() const
{
    return mTextP->connectionString();
}

void Kiv_LineEdit::ClearConnection()
{
    mTextP->clear();
}

void Kiv_LineEdit::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mTextP->connect(iEnv);
    mKeymapContext = iEnv;
}

void Kiv_LineEdit::slotTextChanged()
{
    mTextP->editorTextChanged();
}

bool Kiv_LineEdit::findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText)
{
    Kiv_EditState state;
    state.undoAvailable = isUndoAvailable();
    state.redoAvailable = isRedoAvailable();
    state.readOnly = isReadOnly();
    state.hasSelection = hasSelectedText();
    state.isEmpty = text().isEmpty();
    bool known = false;
    oEnabled = Kiv_EditCommandEnabled(iCommand, state, &known);
    oText.clear();
    return known;
}

bool Kiv_LineEdit::obeyCommand(unsigned int iCommand)
{
    bool enabled = false;
    QString text;
    if (!findCommandStatus(iCommand, enabled, text) || !enabled)
        return false;
    return Kiv_RunEditCommand(*this, iCommand, [this] { del(); });
}

void Kiv_LineEdit::focusInEvent(QFocusEvent *iEvent)
{
    Kic_EditMenu::instance().focusInEvent(this);
    Kiv_AutoAlignLineEdit::focusInEvent(iEvent);
}

void Kiv_LineEdit::focusOutEvent(QFocusEvent *iEvent)
{
    Kic_EditMenu::instance().isFocusOutEvent(this,
                                             Kic_EditMenu::isPopupFocusReason(iEvent->reason()));
    Kiv_AutoAlignLineEdit::focusOutEvent(iEvent);
}

void Kiv_LineEdit::keyPressEvent(QKeyEvent *iEvent)
{
    if (offerKeyToKeymap(iEvent))
        return;
    Kiv_AutoAlignLineEdit::keyPressEvent(iEvent);
}

bool Kiv_LineEdit::offerKeyToKeymap(QKeyEvent *iEvent)
{
    // The key map's part of typing, answering whether the key was dealt with here. Until the
    // key map manager is there, every key goes to the line edit. With it, in this order:
    //  1. when hot keys are allowed (mAllowHotKeys), look the key up in the context "Hotkey";
    //     a non-empty entry types its second "|"-separated section at the cursor, and the key
    //     is accepted (answer true);
    //  2. offer the key to the key map's actions in the context "LineEdit", with
    //     mKeymapContext as the environment of the action; an action that takes it ends here
    //     (answer true);
    //  3. if the key map has an action for the key in the context "MainWindow", ignore the
    //     event so that it reaches the main window (answer true);
    //  4. otherwise answer false: the line edit handles the key itself.
    Q_UNUSED(iEvent);
    return false;
}
