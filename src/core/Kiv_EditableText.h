#pragma once

#include "Kic_EditMenu.h"
#include "Kiv_ValueBinding.h"

#include <QString>

#include <functional>

/// The text binding shared by the bound text editors (Kiv_LineEdit, Kiv_TextEdit): a
/// Kiv_ValueBinding<QString> wired to the editor's text.
///
/// - Model to editor: when the model's text changes (or a model is reached) and differs from
///   the editor's, the editor shows it. The echo of the editor's own sends is not taken back
///   (the binding's echo guard), so typing keeps the cursor and the undo history.
/// - Editor to model: every change of the editor's text is sent once, and, when the editor
///   publishes its text, its listeners hear of it. The text the editor takes from the model or
///   from a set of the published model is not sent back.
/// - Published: a get answers the editor's text; a set of the same text does nothing, a set of
///   another text is shown and the model's listeners hear of it once.
class Kiv_EditableText
{
public:
    /// `iGetText` and `iSetText` read and replace the editor's whole text.
    Kiv_EditableText(QWidget *iOwner, std::function<QString()> iGetText,
                     std::function<void(const QString &)> iSetText);
    Kiv_EditableText(const Kiv_EditableText &) = delete;
    Kiv_EditableText &operator=(const Kiv_EditableText &) = delete;

    bool setConnectionString(const QByteArray &iString)
    {
        return mBinding.setConnectionString(iString);
    }
    const QByteArray &connectionString() const { return mBinding.connectionString(); }
    /// Drops the binding but keeps the string (Kiv_ValueBinding::clear()).
    void clear() { mBinding.clear(); }
    void connect(const Bnd_ConnectionEnvironmentPtr &iEnv) { mBinding.connect(iEnv); }

    /// To be called on every change of the editor's text.
    void editorTextChanged();

    const Kiv_ValueBinding<QString> &binding() const { return mBinding; }

private:
    void receiveListenerMessage();
    bool handleModelTextSet(const QString &iText);
    void showText(const QString &iText);

    Kiv_ValueBinding<QString> mBinding;
    std::function<QString()> mGetText;
    std::function<void(const QString &)> mSetText;
    QString mLastReceivedText;
    /// Raised while the editor shows a text that came from a model.
    bool mShowingModelText = false;
};

/// What an editor's edit commands depend on.
struct Kiv_EditState
{
    bool undoAvailable = false;
    bool redoAvailable = false;
    bool readOnly = false;
    bool hasSelection = false;
    bool isEmpty = true;
};

/// Whether edit command `iCommand` (Kic_EditCommand, 0 to 6) can be obeyed now; answers false
/// for a command number the editors do not know and sets `*oKnown` accordingly.
bool Kiv_EditCommandEnabled(unsigned int iCommand, const Kiv_EditState &iState, bool *oKnown);

/// Runs an edit command on a Qt text editor (a QLineEdit or a QTextEdit): the calls of both
/// are alike but for deleting the selection, which `iDeleteSelection` does. Answers false for
/// a command number outside 0 to 6.
template<class TEditor, class TDelete>
bool Kiv_RunEditCommand(TEditor &iEditor, unsigned int iCommand, TDelete iDeleteSelection)
{
    switch (iCommand) {
    case Kic_Undo:
        iEditor.undo();
        return true;
    case Kic_Redo:
        iEditor.redo();
        return true;
    case Kic_Cut:
        iEditor.cut();
        return true;
    case Kic_Copy:
        iEditor.copy();
        return true;
    case Kic_Paste:
        iEditor.paste();
        return true;
    case Kic_Delete:
        iDeleteSelection();
        return true;
    case Kic_SelectAll:
        iEditor.selectAll();
        return true;
    default:
        return false;
    }
}
