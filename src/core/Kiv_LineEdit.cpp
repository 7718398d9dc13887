#include "Kiv_LineEdit.h"

#include "Kiv_EditableText.h"
#include "Kiv_KeymapMgr.h"
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
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    // A hot key types its text ("name|text") at the cursor.
    if (mAllowHotKeys) {
        const QString hotKey = keymap.lookup(iEvent, QStringLiteral("Hotkey"));
        if (!hotKey.isEmpty()) {
            insert(hotKey.section(QLatin1Char('|'), 1, 1));
            iEvent->accept();
            return true;
        }
    }
    if (keymap.handleAction(iEvent, QStringLiteral("LineEdit"), mKeymapContext)) {
        iEvent->accept();
        return true;
    }
    // The main window's key: it goes on to the window, untouched by the field.
    if (keymap.hasAction(iEvent, QStringLiteral("MainWindow"))) {
        iEvent->ignore();
        return true;
    }
    return false;
}
