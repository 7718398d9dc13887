#pragma once

#include "Kic_EditMenu.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QPlainTextEdit>

#include <memory>

class Kiv_EditableText;

/// A multi-line plain text bound to a QString model: the binding, the publishing and the Edit
/// menu commands are those of Kiv_LineEdit, on the whole text of the editor.
class KIVCORE_EXPORT Kiv_TextEdit : public QPlainTextEdit,
                                    public Kic_EditMenuCommander,
                                    public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray textConnection READ GetTextConnection WRITE SetTextConnection)

public:
    /// `iName` becomes the object name and `iTextConnection`, when not empty, the text
    /// connection.
    explicit Kiv_TextEdit(QWidget *iParent = nullptr, const QString &iName = QString(),
                          const QString &iTextConnection = QString());
    ~Kiv_TextEdit() override;

    void SetTextConnection(const QByteArray &iConnection);
    QByteArray GetTextConnection() const;
    /// Drops the binding (un-publishes the own model, disconnects the listener) and keeps the
    /// connection string (so setting the same string again changes nothing).
    void ClearConnection();
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    bool findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText) override;
    bool obeyCommand(unsigned int iCommand) override;

protected:
    void focusInEvent(QFocusEvent *iEvent) override;
    void focusOutEvent(QFocusEvent *iEvent) override;

private:
    std::unique_ptr<Kiv_EditableText> mTextP;
};
