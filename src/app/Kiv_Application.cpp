#include "Kiv_Application.h"

#include "Kiv_Initialize.h"
#include "Kiv_LanguageDialog.h"

#include "Kib_DirPaths.h"
#include "Kib_UIDialog.h"

#include <QDebug>
#include <QLocale>
#include <QTranslator>
#include <QWidget>

#include <exception>

namespace {
const char *const cToolkitPrefix = "qt_";
const char *const cProductPrefix = "korvex_";
} // namespace

Kiv_Application::Kiv_Application(int &argc, char **argv)
    : QApplication(argc, argv)
    , mExeName(Kib_DirPaths::GetApplicationExeName())
{
    Kiv_Initialize(Kib_DirPaths::GetProductName().toLatin1().constData());
    mProductTranslatorP = std::make_unique<QTranslator>();
    mToolkitTranslatorP = std::make_unique<QTranslator>();
}

// A translator takes itself out of the application's list when it is destroyed.
Kiv_Application::~Kiv_Application() = default;

bool Kiv_Application::loadAndInstall(QTranslator &ioTranslator, const QString &iPrefix,
                                     const QString &iLocale, const QString &iDirectory)
{
    const bool loaded = ioTranslator.load(iPrefix + iLocale, iDirectory);
    // Installing twice would list the translator twice; a failed load left it empty.
    removeTranslator(&ioTranslator);
    installTranslator(&ioTranslator);
    return loaded;
}

bool Kiv_Application::initTranslations(const QString &iPrimaryDir, const QString &iFallbackDir,
                                       QString &ioLocale)
{
    QString directory = iPrimaryDir;
    if (Kiv_LanguageDialog::translationFiles(directory).isEmpty()) {
        directory = iFallbackDir;
        if (Kiv_LanguageDialog::translationFiles(directory).isEmpty())
            return false;
    }

    const QString toolkitPrefix = QLatin1String(cToolkitPrefix);
    const QString productPrefix = QLatin1String(cProductPrefix);
    loadAndInstall(*mToolkitTranslatorP, toolkitPrefix, ioLocale, directory);
    if (loadAndInstall(*mProductTranslatorP, productPrefix, ioLocale, directory))
        return true;

    // No translation for the locale: let the user pick one of those there are.
    const std::unique_ptr<Kiv_LanguageDialog> dialog = createLanguageDialog(directory, ioLocale);
    if (!dialog) {
        qWarning().noquote() << "Kiv_Application::initTranslations, no language dialog for"
                             << directory;
        return false;
    }
    if (dialog->aborted()) {
        ioLocale = QStringLiteral("en_US");
        return true;
    }
    if (runLanguageDialog(*dialog) != QDialog::Accepted)
        return false;

    const QString chosen = dialog->locale();
    const bool loaded = loadAndInstall(*mProductTranslatorP, productPrefix, chosen, directory);
    if (loaded)
        ioLocale = QLocale(chosen).name();
    loadAndInstall(*mToolkitTranslatorP, toolkitPrefix, chosen, directory);
    return loaded;
}

std::unique_ptr<Kiv_LanguageDialog> Kiv_Application::createLanguageDialog(const QString &iDirectory,
                                                                          const QString &iLocale)
{
    return std::make_unique<Kiv_LanguageDialog>(iDirectory, iLocale, mainWidget(), nullptr,
                                                Qt::Dialog);
}

int Kiv_Application::runLanguageDialog(Kiv_LanguageDialog &ioDialog)
{
    return ioDialog.exec();
}

QString Kiv_Application::exeName() const
{
    return mExeName;
}

QWidget *Kiv_Application::findMainWidget(QWidget *iWidget)
{
    if (iWidget)
        return iWidget->window();
    const auto *application = qobject_cast<Kiv_Application *>(QCoreApplication::instance());
    return application ? application->mainWidget() : nullptr;
}

bool Kiv_Application::notify(QObject *iReceiver, QEvent *iEvent)
{
    try {
        return QApplication::notify(iReceiver, iEvent);
    } catch (const QString &iMessage) {
        reportException(iMessage);
    } catch (const char *iMessage) {
        reportException(QString::fromUtf8(iMessage));
    } catch (const std::exception &iException) {
        reportException(QString::fromUtf8(iException.what()));
    } catch (...) {
        reportException(tr("Unknown exception in Kiv_Application", "default error message"));
    }
    return false;
}

void Kiv_Application::reportException(const QString &iMessage)
{
    Kib_UIDialog::UIdialog(tr("Exception: %1", "error report").arg(iMessage), tr("OK"), 1,
                           Kib_UIDialog::UIicon_Critical, QString(), false, QString());
}

void Kiv_Application::setMainWidget(QWidget *iWidget)
{
    mMainWidgetP = iWidget;
}

QWidget *Kiv_Application::mainWidget() const
{
    return mMainWidgetP;
}
