#pragma once

#include "Kiv_ValueBinding.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QLineEdit>
#include <QString>

/// A one-line field in which the user defines a shortcut by pressing it: every key press other
/// than a bare modifier replaces the text with the key sequence in portable text form
/// ("Ctrl+Shift+F5"), the form the key map keys its tables by. The text is bound to a string
/// model, listened to or published ("publish Name") as for every bound text.
class KIVCORE_EXPORT Kiv_KeyEdit : public QLineEdit, public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray textConnection READ getTextConnection WRITE SetTextConnection)

public:
    explicit Kiv_KeyEdit(QWidget *iParent = nullptr, const QString &iName = QString(),
                         const QString &iTextConnection = QString());
    ~Kiv_KeyEdit() override;

    /// An empty string changes nothing; otherwise as for every bound text.
    void SetTextConnection(const QByteArray &iConnection);
    QByteArray getTextConnection() const { return mText.connectionString(); }
    /// Drops the binding.
    void ClearConnection();
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    /// The first non-empty text received from the listened model.
    QString getInitialValue() const { return mInitialValue; }

    /// The key sequence a key event gives in the field (empty for a bare modifier).
    static QString keyText(const QKeyEvent *iEvent);

protected:
    void keyPressEvent(QKeyEvent *iEvent) override;
    bool event(QEvent *iEvent) override;

private:
    void slotTextChanged();
    void receiveListenerMessage();

    Kiv_ValueBinding<QString> mText { this };
    QString mInitialValue;
    bool mShowingModelText = false;
};
