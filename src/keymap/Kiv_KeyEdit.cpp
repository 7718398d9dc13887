#include "Kiv_KeyEdit.h"

#include "Kiv_KeymapMgr.h"
#include "Kiv_WhatsThis.h"

#include <QKeyEvent>
#include <QScopedValueRollback>

Kiv_KeyEdit::Kiv_KeyEdit(QWidget *iParent, const QString &iName, const QString &iTextConnection)
    : QLineEdit(iParent)
{
    setObjectName(iName);
    mText.onChanged([this] { receiveListenerMessage(); });
    mText.onPublishedGet([this] { return text(); });
    mText.onPublishedSet([this](const QString &iText) {
        if (iText == text())
            return false;
        setText(iText); // tells the listeners through slotTextChanged()
        return false;
    });
    SetTextConnection(iTextConnection.toUtf8());
    connect(this, &QLineEdit::textChanged, this, &Kiv_KeyEdit::slotTextChanged);
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_KeyEdit"));
}

Kiv_KeyEdit::~Kiv_KeyEdit()
{
    disconnect(this, &QLineEdit::textChanged, this, &Kiv_KeyEdit::slotTextChanged);
}

void Kiv_KeyEdit::SetTextConnection(const QByteArray &iConnection)
{
    if (!iConnection.isEmpty())
        mText.setConnectionString(iConnection);
}

void Kiv_KeyEdit::ClearConnection()
{
    mText.clear();
}

void Kiv_KeyEdit::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mText.connect(iEnv);
}

QString Kiv_KeyEdit::keyText(const QKeyEvent *iEvent)
{
    const int key = iEvent ? iEvent->key() : 0;
    if (!iEvent || (key >= Qt::Key_Shift && key <= Qt::Key_Alt))
        return QString();
    return Kiv_KeymapMgr::keySequence(iEvent).toString(QKeySequence::PortableText);
}

void Kiv_KeyEdit::keyPressEvent(QKeyEvent *iEvent)
{
    const QString sequence = keyText(iEvent);
    if (sequence.isEmpty()) {
        QLineEdit::keyPressEvent(iEvent); // a modifier on its own
        return;
    }
    setText(sequence);
    iEvent->accept();
}

bool Kiv_KeyEdit::event(QEvent *iEvent)
{
    // Tab and Backtab still move the focus: the field records keys, it does not trap them.
    return QLineEdit::event(iEvent);
}

void Kiv_KeyEdit::slotTextChanged()
{
    mText.notifyPublishedChanged();
    if (!mShowingModelText) // what came from the model does not go back to it
        mText.send(text());
}

void Kiv_KeyEdit::receiveListenerMessage()
{
    if (!mText.isConnected())
        return;
    const QString value = mText.value();
    const QScopedValueRollback<bool> guard(mShowingModelText, true);
    setText(value);
    if (mInitialValue.isEmpty())
        mInitialValue = value;
}
