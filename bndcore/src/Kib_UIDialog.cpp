#include "Kib_UIDialog.h"

#include "Kib_DirPaths.h"

#include <QApplication>
#include <QCheckBox>
#include <QDebug>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>
#include <QValidator>

namespace {

struct DialogState
{
    Kib_UIDialog::Responder mResponder;
    QHash<QString, short> mRemembered; // "Don't ask again" answers by key
    int mShownCount = 0;
    Kib_UIDialog::Request mLastRequest;
};

DialogState &state()
{
    static DialogState s;
    return s;
}

const char *const kButtonProperty = "kibButtonNumber";

QString translated(const char *iText)
{
    return QCoreApplication::translate("Kib_UIDialog", iText);
}

QStringList parseButtons(const QString &iButtons)
{
    QStringList list;
    for (const QString &button : iButtons.split(QLatin1Char('|'))) {
        const QString text = button.trimmed();
        if (!text.isEmpty())
            list << text;
    }
    if (list.isEmpty())
        list << translated("OK");
    return list;
}

bool isCancelButton(QString iText)
{
    iText.remove(QLatin1Char('&'));
    return iText.compare(QLatin1String("Cancel"), Qt::CaseInsensitive) == 0
        || iText.compare(translated("Cancel"), Qt::CaseInsensitive) == 0;
}

QMessageBox::Icon messageIcon(int iIcon)
{
    switch (iIcon) {
    case Kib_UIDialog::UIicon_Critical:
        return QMessageBox::Critical;
    case Kib_UIDialog::UIicon_Warning:
    case Kib_UIDialog::UIicon_Caution:
        return QMessageBox::Warning;
    default:
        return QMessageBox::Information;
    }
}

QString orProductName(const QString &iTitle)
{
    return iTitle.isEmpty() ? Kib_DirPaths::GetProductName() : iTitle;
}

// Real dialogs need a QApplication and the GUI thread; says why not when they cannot be shown.
bool canShowDialogs(const char *iOperation)
{
    const QCoreApplication *app = QCoreApplication::instance();
    if (!qobject_cast<const QApplication *>(app)) {
        qWarning().noquote() << iOperation << "cannot show a dialog without a QApplication";
        return false;
    }
    if (QThread::currentThread() != app->thread()) {
        qWarning().noquote() << iOperation << "cannot show a dialog outside the GUI thread";
        return false;
    }
    return true;
}

bool isAcceptable(const QValidator *iValidator, QString iText)
{
    int position = 0;
    return !iValidator || iValidator->validate(iText, position) == QValidator::Acceptable;
}

void record(const Kib_UIDialog::Request &iRequest)
{
    DialogState &s = state();
    ++s.mShownCount;
    s.mLastRequest = iRequest;
}

} // namespace

void Kib_UIDialog::setResponder(Responder iResponder)
{
    state().mResponder = std::move(iResponder);
}

bool Kib_UIDialog::hasResponder()
{
    return bool(state().mResponder);
}

short Kib_UIDialog::UIdialog(QString iText, QString iButtons, short iDefaultButton, UIicon_t iIcon,
                             QString iCaption, bool iRichText, QString iDontAskAgainKey)
{
    DialogState &s = state();
    if (!iDontAskAgainKey.isEmpty()) {
        const auto remembered = s.mRemembered.constFind(iDontAskAgainKey);
        if (remembered != s.mRemembered.constEnd())
            return remembered.value();
    }

    Request request;
    request.kind = Request::Message;
    request.text = iText;
    request.buttons = iButtons;
    request.buttonList = parseButtons(iButtons);
    request.caption = orProductName(iCaption);
    request.defaultButton
        = iDefaultButton >= 1 && iDefaultButton <= request.buttonList.size() ? iDefaultButton : 1;
    request.icon = iIcon;
    request.richText = iRichText;
    request.dontAskAgainKey = iDontAskAgainKey;

    int answer = 0;
    bool dontAskAgain = false;
    if (s.mResponder) {
        record(request);
        QVariant reply = s.mResponder(request);
        if (reply.typeId() == QMetaType::QVariantMap) {
            const QVariantMap map = reply.toMap();
            dontAskAgain = map.value(QStringLiteral("dontAskAgain")).toBool();
            reply = map.value(QStringLiteral("button"));
        }
        bool isNumber = false;
        answer = reply.isValid() ? reply.toInt(&isNumber) : 0;
        if (reply.isValid() && (!isNumber || answer < 0 || answer > request.buttonList.size())) {
            qWarning().noquote() << "Kib_UIDialog::UIdialog, the responder answered" << reply
                                 << "which is no button of" << request.buttonList;
            answer = 0;
        }
    } else {
        if (!canShowDialogs("Kib_UIDialog::UIdialog,"))
            return 0;
        record(request);
        // The parent may go away while the box runs; then it takes the box with it.
        QPointer<QMessageBox> box = createMessageBox(request, QApplication::activeWindow());
        box->exec();
        if (!box)
            return 0;
        if (const QAbstractButton *clicked = box->clickedButton())
            answer = clicked->property(kButtonProperty).toInt();
        dontAskAgain = box->checkBox() && box->checkBox()->isChecked();
        delete box;
    }

    if (dontAskAgain && answer > 0 && !iDontAskAgainKey.isEmpty())
        s.mRemembered.insert(iDontAskAgainKey, short(answer));
    return short(answer);
}

bool Kib_UIDialog::GetUserInput(QString iPrompt, QString &ioText, QString iTitle, QWidget *iParent,
                                QValidator *iValidator)
{
    Request request;
    request.kind = Request::Input;
    request.prompt = iPrompt;
    request.title = orProductName(iTitle);
    request.initialText = ioText;
    request.validator = iValidator;

    DialogState &s = state();
    if (s.mResponder) {
        record(request);
        const QVariant reply = s.mResponder(request);
        if (!reply.isValid())
            return false;
        if (reply.typeId() != QMetaType::QString) {
            qWarning().noquote() << "Kib_UIDialog::GetUserInput, the responder answered" << reply
                                 << "instead of a text; taken as Cancel";
            return false;
        }
        const QString text = reply.toString();
        if (!isAcceptable(iValidator, text)) {
            qWarning().noquote() << "Kib_UIDialog::GetUserInput, the responder's text" << text
                                 << "is not acceptable to the validator; taken as Cancel";
            return false;
        }
        ioText = text;
        return true;
    }

    if (!canShowDialogs("Kib_UIDialog::GetUserInput,"))
        return false;
    record(request);
    QPointer<QDialog> dialog
        = createInputDialog(request, iParent ? iParent : QApplication::activeWindow());
    const int result = dialog->exec();
    if (!dialog)
        return false;
    const QLineEdit *line = dialog->findChild<QLineEdit *>();
    const bool accepted = result == QDialog::Accepted && line;
    if (accepted)
        ioText = line->text();
    delete dialog;
    return accepted;
}

void Kib_UIDialog::forgetDontAskAgain(const QString &iKey)
{
    DialogState &s = state();
    if (iKey.isEmpty())
        s.mRemembered.clear();
    else
        s.mRemembered.remove(iKey);
}

int Kib_UIDialog::shownCount()
{
    return state().mShownCount;
}

Kib_UIDialog::Request Kib_UIDialog::lastRequest()
{
    return state().mLastRequest;
}

QMessageBox *Kib_UIDialog::createMessageBox(const Request &iRequest, QWidget *iParent)
{
    auto *box = new QMessageBox(iParent);
    box->setWindowTitle(orProductName(iRequest.caption));
    box->setIcon(messageIcon(iRequest.icon));
    box->setTextFormat(iRequest.richText ? Qt::RichText : Qt::PlainText);
    box->setText(iRequest.text);

    const QStringList buttons
        = iRequest.buttonList.isEmpty() ? parseButtons(iRequest.buttons) : iRequest.buttonList;
    const int defaultButton
        = iRequest.defaultButton >= 1 && iRequest.defaultButton <= buttons.size()
        ? iRequest.defaultButton
        : 1;
    for (int i = 0; i < buttons.size(); ++i) {
        // ActionRole for all keeps the buttons in the order given.
        QPushButton *button = box->addButton(buttons.at(i), QMessageBox::ActionRole);
        button->setProperty(kButtonProperty, i + 1);
        if (i + 1 == defaultButton)
            box->setDefaultButton(button);
        if (buttons.size() == 1 || isCancelButton(buttons.at(i)))
            box->setEscapeButton(button);
    }
    if (!iRequest.dontAskAgainKey.isEmpty())
        box->setCheckBox(new QCheckBox(translated("Don't ask again"), box));
    return box;
}

QDialog *Kib_UIDialog::createInputDialog(const Request &iRequest, QWidget *iParent)
{
    auto *dialog = new QDialog(iParent);
    dialog->setWindowTitle(orProductName(iRequest.title));
    auto *layout = new QVBoxLayout(dialog);

    auto *label = new QLabel(iRequest.prompt, dialog);
    label->setWordWrap(true);
    label->setVisible(!iRequest.prompt.isEmpty());
    layout->addWidget(label);

    auto *line = new QLineEdit(iRequest.initialText, dialog);
    line->setValidator(iRequest.validator);
    line->selectAll();
    label->setBuddy(line);
    layout->addWidget(line);

    auto *buttonBox = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    layout->addWidget(buttonBox);
    QObject::connect(buttonBox, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttonBox, &QDialogButtonBox::rejected, dialog, &QDialog::reject);

    QPushButton *ok = buttonBox->button(QDialogButtonBox::Ok);
    auto updateOk = [line, ok] {
        ok->setEnabled(line->hasAcceptableInput());
    };
    QObject::connect(line, &QLineEdit::textChanged, ok, updateOk);
    updateOk();
    dialog->setMinimumWidth(320);
    return dialog;
}
