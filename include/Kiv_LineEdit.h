#pragma once

#include "Kic_EditMenu.h"
#include "Kiv_AutoAlignLineEdit.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>

#include <memory>

class Kiv_EditableText;

/// A one-line text bound to a QString model.
///
/// The text connection follows the library's connection-string grammar: a model name, a
/// "publish" string (the line edit then offers its text as a model of that name) or "" for
/// none. Typing sends every change of the text to the model once; the model's echo of it is
/// not taken back, so the cursor and the undo history stay. A change made by the model shows at
/// once. Without a model the line edit keeps its text and sends nothing.
///
/// The line edit is the Edit menu's commander while it has the focus (commands 0 to 6: undo,
/// redo, cut, copy, paste, delete, select all).
class KIVCORE_EXPORT Kiv_LineEdit : public Kiv_AutoAlignLineEdit,
                                    public Kic_EditMenuCommander,
                                    public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray textConnection READ GetTextConnection WRITE SetTextConnection)
    Q_PROPERTY(bool allowHotKeys READ allowHotKeys WRITE setAllowHotKeys)

public:
    /// `iName` becomes the object name and `iTextConnection`, when not empty, the text
    /// connection.
    explicit Kiv_LineEdit(QWidget *iParent = nullptr, const QString &iName = QString(),
                          const QString &iTextConnection = QString());
    ~Kiv_LineEdit() override;

    void SetTextConnection(const QByteArray &iConnection);
    QByteArray GetTextConnection() const;
    /// Drops the binding (un-publishes the own model, disconnects the listener) and keeps the
    /// connection string (so setting the same string again changes nothing).
    void ClearConnection();
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    /// Whether keys that the key map lists as hot keys type their text (off by default).
    void setAllowHotKeys(bool iAllow) { mAllowHotKeys = iAllow; }
    bool allowHotKeys() const { return mAllowHotKeys; }

    bool findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText) override;
    bool obeyCommand(unsigned int iCommand) override;

protected:
    void focusInEvent(QFocusEvent *iEvent) override;
    void focusOutEvent(QFocusEvent *iEvent) override;
    void keyPressEvent(QKeyEvent *iEvent) override;

private:
    void slotTextChanged();
    bool offerKeyToKeymap(QKeyEvent *iEvent);

    std::unique_ptr<Kiv_EditableText> mTextP;
    /// The environment of the last makeConnections: the context of key-map actions.
    Bnd_ConnectionEnvironmentPtr mKeymapContext;
    bool mAllowHotKeys = false;
};
