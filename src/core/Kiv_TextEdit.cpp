#include "Kiv_TextEdit.h"

#include "Kiv_EditableText.h"
#include "Kiv_WhatsThis.h"

#include <QFocusEvent>
#include <QTextDocument>

Kiv_TextEdit::Kiv_TextEdit(QWidget *iParent, const QString &iName, const QString &iTextConnection)
    : QPlainTextEdit(iParent)
    , mTextP(std::make_unique<Kiv_EditableText>(
          this, [this] { return toPlainText(); },
          [this](const QString &iText) { setPlainText(iText); }))
{
    setObjectName(iName);
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_TextEdit"));
    connect(this, &QPlainTextEdit::textChanged, this, [this] { mTextP->editorTextChanged(); });
    if (!iTextConnection.isEmpty())
        SetTextConnection(iTextConnection.toUtf8());
}

Kiv_TextEdit::~Kiv_TextEdit()
{
    // The binding goes before the editor's document; no late change may reach it.
    disconnect(this, &QPlainTextEdit::textChanged, this, nullptr);
}

void Kiv_TextEdit::SetTextConnection(const QByteArray &iConnection)
{
    mTextP->setConnectionString(iConnection);
}

QByteArray Kiv_TextEdit::GetTextConnection() const
{
    return mTextP->connectionString();
}

void Kiv_TextEdit::ClearConnection()
{
    mTextP->clear();
}

void Kiv_TextEdit::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mTextP->connect(iEnv);
}

bool Kiv_TextEdit::findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText)
{
    Kiv_EditState state;
    state.undoAvailable = document()->isUndoAvailable();
    state.redoAvailable = document()->isRedoAvailable();
    state.readOnly = isReadOnly();
    state.hasSelection = textCursor().hasSelection();
    state.isEmpty = document()->isEmpty();
    bool known = false;
    oEnabled = Kiv_EditCommandEnabled(iCommand, state, &known);
    oText.clear();
    return known;
}

bool Kiv_TextEdit::obeyCommand(unsigned int iCommand)
{
    bool enabled = false;
    QString text;
    if (!findCommandStatus(iCommand, enabled, text) || !enabled)
        return false;
    return Kiv_RunEditCommand(*this, iCommand, [this] { textCursor().removeSelectedText(); });
}

void Kiv_TextEdit::focusInEvent(QFocusEvent *iEvent)
{
    Kic_EditMenu::instance().focusInEvent(this);
    QPlainTextEdit::focusInEvent(iEvent);
}

void Kiv_TextEdit::focusOutEvent(QFocusEvent *iEvent)
{
    Kic_EditMenu::instance().isFocusOutEvent(this,
                                             Kic_EditMenu::isPopupFocusReason(iEvent->reason()));
    QPlainTextEdit::focusOutEvent(iEvent);
}
