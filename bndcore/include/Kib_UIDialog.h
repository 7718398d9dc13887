#pragma once

#include "bndcore_export.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

class QDialog;
class QMessageBox;
class QValidator;
class QWidget;

/// The application's message boxes and one-line input dialogs.
///
/// Both are modal and parented to the given widget or to QApplication::activeWindow(). A
/// responder (setResponder) answers them instead of a user: then nothing is shown, which is what
/// tests and scripted runs use. GUI thread only; without a responder they need a QApplication.
class BNDCORE_EXPORT Kib_UIDialog
{
public:
    enum UIicon_t {
        UIicon_None = 0,
        UIicon_Critical = 1,
        UIicon_Warning = 2,
        UIicon_Caution = 3,
        UIicon_Information = 4,
        UIicon_Question = 5
    };

    /// What a dialog asks; handed to the responder, and recorded as the last request.
    struct Request
    {
        enum Kind { Message, Input } kind = Message;

        // Message
        QString text;
        QString buttons; ///< as given, "|"-separated
        QStringList buttonList; ///< the buttons the box shows, in order
        QString caption; ///< the product name when none was given
        short defaultButton = 0; ///< 1-based, always one of the buttons
        int icon = UIicon_None; ///< a UIicon_t
        bool richText = false;
        QString dontAskAgainKey; ///< non-empty when the box offers "Don't ask again"

        // Input
        QString prompt;
        QString title; ///< the product name when none was given
        QString initialText;
        const QValidator *validator = nullptr; ///< may be null
    };

    /// Answers a request instead of a user.
    /// - Message: the 1-based number of the pressed button (any integer type; 0 for a box
    ///   closed without a button), or a QVariantMap {"button": n, "dontAskAgain": bool} to
    ///   also tick the "Don't ask again" box.
    /// - Input: the accepted text as a QString, or an invalid QVariant() for Cancel. A text the
    ///   validator does not accept counts as Cancel, as OK could not have been pressed.
    typedef std::function<QVariant(const Request &)> Responder;

    /// Installs the responder; an empty function goes back to real dialogs.
    static void setResponder(Responder iResponder);
    static bool hasResponder();

    /// Shows a message box and answers the 1-based number of the pressed button, 0 when it was
    /// closed without one.
    /// - `iButtons`: button texts separated by "|", e.g. "Yes|No|Cancel"; blanks around them
    ///   and empty entries are dropped; no button at all means one "OK".
    /// - `iDefaultButton`: 1-based; outside the buttons the first one is the default.
    /// - `iIcon`: Critical shows the critical icon, Warning and Caution the warning icon, any
    ///   other value the information icon.
    /// - `iRichText` selects Qt::RichText, else the text is shown as plain text.
    /// - `iDontAskAgainKey`: when not empty the box has a "Don't ask again" check box. Ticked,
    ///   the answer is remembered for the key until the process ends (or forgetDontAskAgain),
    ///   and later calls with that key answer it at once, showing nothing.
    static short UIdialog(QString iText, QString iButtons, short iDefaultButton, UIicon_t iIcon,
                          QString iCaption, bool iRichText, QString iDontAskAgainKey);

    /// Asks for one line of text, starting with `ioText`. On OK stores the text in `ioText`
    /// and answers true; on Cancel leaves it and answers false. With a validator (may be null)
    /// OK is enabled only while the validator finds the text acceptable.
    static bool GetUserInput(QString iPrompt, QString &ioText, QString iTitle, QWidget *iParent,
                             QValidator *iValidator);

    /// Forgets the remembered "Don't ask again" answer of a key, or of all keys when empty.
    static void forgetDontAskAgain(const QString &iKey = QString());

    /// The number of dialogs shown or answered by the responder since start-up; answers
    /// remembered through "Don't ask again" do not count.
    static int shownCount();
    /// The last of those requests.
    static Request lastRequest();

    /// The message box UIdialog shows for a request, built but not shown; the caller owns it.
    /// Each button carries its 1-based number in the property "kibButtonNumber".
    static QMessageBox *createMessageBox(const Request &iRequest, QWidget *iParent);
    /// The input dialog GetUserInput shows, built but not shown; the caller owns it. It has
    /// one QLineEdit, using the request's validator, and one QDialogButtonBox with OK and
    /// Cancel.
    static QDialog *createInputDialog(const Request &iRequest, QWidget *iParent);
};
