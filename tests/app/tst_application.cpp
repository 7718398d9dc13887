#include "Kiv_Application.h"
#include "Kiv_LanguageDialog.h"

#include "Kib_UIDialog.h"

#include <QComboBox>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <functional>
#include <stdexcept>

QList<Kib_UIDialog::Request> gRequests; // the dialogs the application showed

// A translation file as the build made it: the library's own, else one made for this test.
QString builtTranslation(const QString &iFileName)
{
    const QString product = QDir(KIV_TRANSLATIONS_DIR).filePath(iFileName);
    return QFile::exists(product) ? product : QDir(KIV_TEST_TRANSLATIONS_DIR).filePath(iFileName);
}

bool addTranslations(const QString &iDirectory, const QStringList &iFileNames)
{
    bool copied = true;
    for (const QString &name : iFileNames)
        copied = QFile::copy(builtTranslation(name), QDir(iDirectory).filePath(name)) && copied;
    return copied;
}

// Answers the language question by picking mChoice and pressing OK, or Cancel when empty.
class TestApplication : public Kiv_Application
{
public:
    using Kiv_Application::Kiv_Application;
    static TestApplication &instance() { return *static_cast<TestApplication *>(qApp); }

    QString mChoice; // empty: Cancel
    QStringList mOffered; // empty: not asked
    QWidget *mDialogParent = nullptr;

protected:
    std::unique_ptr<Kiv_LanguageDialog> createLanguageDialog(const QString &iDirectory,
                                                             const QString &iLocale) override
    {
        if (mChoice == "<gone>") // the files went away meanwhile
            QDir(iDirectory).removeRecursively();
        return Kiv_Application::createLanguageDialog(iDirectory, iLocale);
    }

    int runLanguageDialog(Kiv_LanguageDialog &ioDialog) override
    {
        mDialogParent = ioDialog.parentWidget();
        auto *combo = ioDialog.findChild<QComboBox *>(QStringLiteral("read-only combobox"));
        for (int index = 0; index < combo->count(); ++index)
            mOffered << combo->itemText(index);
        mOffered << "(" + combo->currentText() + ")"; // the preselected one
        combo->setCurrentText(mChoice);
        for (QPushButton *button : ioDialog.findChildren<QPushButton *>())
            if (button->text() == (mChoice.isEmpty() ? "Cancel" : "OK"))
                button->click();
        return ioDialog.result();
    }
};

// Runs its function on any event.
typedef std::function<void()> Action;
Q_DECLARE_METATYPE(Action)
struct Thrower : QObject
{
    Action mThrow;
    bool event(QEvent *) override { return mThrow(), true; }
};

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void initTranslations_data();
    void initTranslations();
    void notify_data();
    void notify();
    void findMainWidget();
};

void tst_Application::cleanup()
{
    // Empties both translators: a locale no file has, and the question cancelled.
    QTemporaryDir directory;
    QVERIFY(addTranslations(directory.path(), { "korvex_nl_NL.qm" }));
    TestApplication &app = TestApplication::instance();
    app.mChoice.clear();
    QString locale = QStringLiteral("zz_ZZ");
    app.initTranslations(directory.path(), QString(), locale);
    app.mOffered.clear(); // (the dialog had no parent: there is no main widget)
}

void tst_Application::initTranslations_data()
{
    QTest::addColumn<QStringList>("primary");
    QTest::addColumn<QStringList>("fallback");
    QTest::addColumn<QString>("locale"); // "before > after" when it changes
    QTest::addColumn<QString>("choice"); // in the language dialog; empty: Cancel
    QTest::addColumn<QString>("offered"); // by the dialog, "|"-separated, then "(preselected)"
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("texts"); // "Exception: %1" and "Cancel" afterwards

    using L = QStringList;
    const L none, fr { "korvex_fr_FR.qm" };
    const L all { "korvex_de_DE.qm", "korvex_fr_FR.qm", "korvex_nl_NL.qm", "qt_de_DE.qm" };
    const QString english = "Exception: %1|Cancel", german = "Ausnahme: %1|Abbrechen", no;

    QTest::newRow("no files: no dialog") << none << none << "de_DE" << no << no << false << english;
    QTest::newRow("the locale's file") << all << none << "de_DE" << no << no << true << german;
    QTest::newRow("fallback") << none << fr << "fr_FR" << no << no << true
                              << "Exception : %1|Cancel";
    QTest::newRow("primary with files wins; a locale with its own territory")
        << L { "korvex_de_DE.qm", "korvex_pt_BR.qm" } << fr << "fr_FR > pt_BR"
        << "Português (Brasil)"
        << "English|Deutsch|Português (Brasil)|(English)" << true << "Exceção: %1|Cancel";
    QTest::newRow("chosen with the toolkit's file; Dutch does not name its language")
        << all << none << "it_IT > de_DE" << QString("Deutsch")
        << "English|Deutsch|Français|(English)" << true << german;
    QTest::newRow("only the toolkit's file for the locale")
        << L { "qt_de_DE.qm" } << none << "de_DE" << no << "English|(English)" << false
        << "Exception: %1|Abbrechen";
    QTest::newRow("the dialog lists nothing: en_US") << all << none << "it_IT > en_US"
                                                     << "<gone>" << no << true << english;
}

void tst_Application::initTranslations()
{
    QFETCH(QStringList, primary);
    QFETCH(QStringList, fallback);
    QFETCH(QString, locale);
    QFETCH(QString, choice);
    QFETCH(QString, offered);
    QFETCH(bool, result);
    QFETCH(QString, texts);

    QTemporaryDir one, two; // the primary and the fallback directory
    QVERIFY(addTranslations(one.path(), primary) && addTranslations(two.path(), fallback));
    TestApplication &app = TestApplication::instance();
    app.mChoice = choice;
    QWidget mainWidget; // forgotten by the application when destroyed
    app.setMainWidget(&mainWidget);
    QString ioLocale = locale.section(" > ", 0, 0);
    QCOMPARE(app.initTranslations(one.path(), two.path(), ioLocale), result);

    QCOMPARE(app.mOffered.join('|'), offered);
    QCOMPARE(app.mDialogParent, offered.isEmpty() ? nullptr : &mainWidget);
    QCOMPARE(ioLocale, locale.section(" > ", -1));
    QCOMPARE(QCoreApplication::translate("Kiv_Application", "Exception: %1", "error report") + '|'
                 + QCoreApplication::translate("QPlatformTheme", "Cancel"),
             texts);
}

void tst_Application::notify_data()
{
    QTest::addColumn<Action>("handler");
    QTest::addColumn<QString>("report"); // empty: no dialog, and the event was delivered

    QTest::newRow("nothing thrown") << Action([] {}) << QString();
    QTest::newRow("QString") << Action([] { throw QString("disk full"); }) << "Ausnahme: disk full";
    QTest::newRow("C string") << Action([] { throw "no clip"; }) << "Ausnahme: no clip";
    QTest::newRow("std::exception")
        << Action([] { throw std::runtime_error("bad timecode"); }) << "Ausnahme: bad timecode";
    QTest::newRow("unknown") << Action([] { throw 42; })
                             << "Ausnahme: Unbekannte Ausnahme in Kiv_Application";
}

void tst_Application::notify()
{
    QFETCH(Action, handler);
    QFETCH(QString, report);

    QTranslator translator; // the reports are made in German
    QVERIFY(translator.load(builtTranslation("korvex_de_DE.qm")));
    QCoreApplication::installTranslator(&translator);
    Thrower thrower;
    thrower.mThrow = handler;
    QEvent event(QEvent::User);
    const bool delivered = QCoreApplication::sendEvent(&thrower, &event);
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(delivered, report.isEmpty());
    QCOMPARE(gRequests.isEmpty() ? QString() : gRequests.takeLast().text, report);
}

void tst_Application::findMainWidget()
{
    QWidget top;
    auto *window = new QWidget(new QWidget(&top), Qt::Window);
    auto main = std::make_unique<QWidget>();
    TestApplication::instance().setMainWidget(main.get());
    // A widget's own window, even inside another one; for null, the main widget while it lives.
    QCOMPARE(Kiv_Application::findMainWidget(new QWidget(window)), window);
    QCOMPARE(Kiv_Application::findMainWidget(nullptr), main.get());
    main.reset();
    QCOMPARE(Kiv_Application::findMainWidget(nullptr), nullptr);
}

int main(int argc, char **argv)
{
    TestApplication app(argc, argv);
    Kib_UIDialog::setResponder([](const Kib_UIDialog::Request &iRequest) {
        gRequests << iRequest;
        return QVariant(1);
    });
    tst_Application test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
