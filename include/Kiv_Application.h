#pragma once

#include "kivcore_export.h"

#include <QApplication>
#include <QPointer>
#include <QString>

#include <memory>

class Kiv_LanguageDialog;
class QTranslator;

/// The application object of programs built on KivCore, used instead of a plain QApplication.
///
/// It starts the library (Kiv_Initialize), loads the user-interface translations, keeps the main
/// widget, and turns an exception that escapes an event handler into an error dialog instead of
/// a crash.
///
/// Translation files are ".qm" files in one directory, named by prefix and locale: "qt_" +
/// locale for the toolkit's own strings, "korvex_" + locale for the library's and product's
/// strings (korvex_de_DE.qm: German as spoken in Germany).
class KIVCORE_EXPORT Kiv_Application : public QApplication
{
    Q_OBJECT

public:
    /// Constructs the toolkit application, remembers the executable's name, starts the library
    /// with the product name and creates the two translators (neither loaded nor installed).
    Kiv_Application(int &argc, char **argv);
    ~Kiv_Application() override;

    /// Loads the translations for `ioLocale` ("de_DE").
    ///
    /// The ".qm" files are looked for in `iPrimaryDir`, or in `iFallbackDir` when the primary
    /// directory has none (an empty path counts as a directory without files). Without any
    /// file this answers false and installs nothing. Otherwise the toolkit translator is loaded
    /// from "qt_" + locale and the product translator from "korvex_" + locale, both installed;
    /// when the product file loaded this answers true.
    ///
    /// When there is no product file for the locale the user is asked with a
    /// Kiv_LanguageDialog (see createLanguageDialog() and runLanguageDialog()). A dialog that
    /// found no files at all is not shown: the locale becomes "en_US" and this answers true.
    /// An accepted dialog loads the chosen translation; when it loads, `ioLocale` becomes its
    /// locale and this answers true. A cancelled dialog, or a choice without a product file,
    /// leaves `ioLocale` as it was and answers false.
    bool initTranslations(const QString &iPrimaryDir, const QString &iFallbackDir,
                          QString &ioLocale);

    /// The file name of the executable, as it was when the application was made.
    QString exeName() const;

    /// For a widget, its top-level window; for null, the main widget of the running
    /// Kiv_Application (null when the application is of another class or has none).
    static QWidget *findMainWidget(QWidget *iWidget);

    /// Delivers the event; whatever the handler throws is caught and given to
    /// reportException(), and then this answers false.
    bool notify(QObject *iReceiver, QEvent *iEvent) override;

    /// Shows the message of an exception that an event handler threw, in the shared error
    /// dialog (Kib_UIDialog::UIdialog) with one "OK" button. Programs may override it.
    virtual void reportException(const QString &iMessage);

    /// The main widget, not owned. It is forgotten when it is destroyed.
    virtual void setMainWidget(QWidget *iWidget);
    virtual QWidget *mainWidget() const;

protected:
    /// Makes the dialog that asks for a language, parented to the main widget. Tests and
    /// programs that want another dialog override it.
    virtual std::unique_ptr<Kiv_LanguageDialog> createLanguageDialog(const QString &iDirectory,
                                                                     const QString &iLocale);
    /// Runs the language dialog modally and answers its result (QDialog::Accepted or
    /// QDialog::Rejected). This is the only place where initTranslations() waits for the user:
    /// tests override it to choose in the dialog (its combo box is named "read-only combobox")
    /// and answer without showing anything.
    virtual int runLanguageDialog(Kiv_LanguageDialog &ioDialog);

private:
    /// Loads `ioTranslator` from `iPrefix` + `iLocale` in `iDirectory` and (re)installs it.
    bool loadAndInstall(QTranslator &ioTranslator, const QString &iPrefix, const QString &iLocale,
                        const QString &iDirectory);

    std::unique_ptr<QTranslator> mProductTranslatorP;
    std::unique_ptr<QTranslator> mToolkitTranslatorP;
    QString mExeName;
    QPointer<QWidget> mMainWidgetP;
};
