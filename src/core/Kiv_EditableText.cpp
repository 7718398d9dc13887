#include "Kiv_EditableText.h"

#include "Kic_EditMenu.h"

#include <QScopedValueRollback>

Kiv_EditableText::Kiv_EditableText(QWidget *iOwner, std::function<QString()> iGetText,
                                   std::function<void(const QString &)> iSetText)
    : mBinding(iOwner)
    , mGetText(std::move(iGetText))
    , mSetText(std::move(iSetText))
{
    mBinding.onChanged([this] { receiveListenerMessage(); });
    mBinding.onPublishedGet([this] { return mGetText(); });
    mBinding.onPublishedSet([this](const QString &iText) { return handleModelTextSet(iText); });
}

void Kiv_EditableText::editorTextChanged()
{
    if (mShowingModelText)
        return;
    mBinding.notifyPublishedChanged();
    mBinding.send(mGetText());
}

void Kiv_EditableText::receiveListenerMessage()
{
    // An editor that loses its model keeps its text.
    if (!mBinding.isConnected())
        return;
    mLastReceivedText = mBinding.value();
    if (mLastReceivedText != mGetText())
        showText(mLastReceivedText);
}

bool Kiv_EditableText::handleModelTextSet(const QString &iText)
{
    if (iText == mGetText())
        return false;
    showText(iText);
    return true; // the binding tells the model's listeners
}

void Kiv_EditableText::showText(const QString &iText)
{
    const QScopedValueRollback<bool> guard(mShowingModelText, true);
    mSetText(iText);
}

bool Kiv_EditCommandEnabled(unsigned int iCommand, const Kiv_EditState &iState, bool *oKnown)
{
    bool known = true;
    bool enabled = false;
    switch (iCommand) {
    case Kic_Undo:
        enabled = iState.undoAvailable;
        break;
    case Kic_Redo:
        enabled = iState.redoAvailable;
        break;
    case Kic_Cut:
    case Kic_Delete:
        enabled = !iState.readOnly && iState.hasSelection;
        break;
    case Kic_Copy:
        enabled = iState.hasSelection;
        break;
    case Kic_Paste:
        enabled = !iState.readOnly;
        break;
    case Kic_SelectAll:
        enabled = !iState.isEmpty;
        break;
    default:
        known = false;
        break;
    }
    if (oKnown)
        *oKnown = known;
    return enabled;
}
