#include "Kiv_Application.h"
#include "Kiv_LanguageDialog.h"

#include "Kib_UIDialog.h"

#include <QComboBox>
#include <QDir>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <algorithm>
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
    return std::all_of(iFileNames.begin(), iFileNames.end(), [&](const QString &iName) {
        return QFile::copy(builtTranslation(iName), QDir(iDirectory).filePath(iName));
    });
}

QString translated()
{
    return QCoreApplication::translate("Kiv_Application", "Exception: %1", "error report") + '|'
        + QCoreApplication::translate("QPlatformTheme", "Cancel");
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
        const QStringList files = Kiv_LanguageDialog::translationFiles(iDirectory);
        for (const QString &file : mChoice == "<gone>" ? files : QStringList()) // went away
            QFile::remove(QDir(iDirectory).filePath(file));
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
struct Thrower : QObject
{
    std::function<void()> mThrow;
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
    void findMainWidget_data();
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
    app.mOffered.clear();
    app.mDialogParent = nullptr;
    QCOMPARE(translated(), QStringLiteral("Exception: %1|Cancel"));
    gRequests.clear();
}

void tst_Application::initTranslations_data()
{
    QTest::addColumn<QStringList>("primary");
    QTest::addColumn<QStringList>("fallback");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("choice"); // in the language dialog; empty: Cancel
    QTest::addColumn<QString>("offered"); // by the dialog, "|"-separated, then "(preselected)"
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("localeAfter");
    QTest::addColumn<QString>("translated"); // "Exception: %1" and "Cancel" afterwards

    using L = QStringList;
    const L none;
    const L both { "korvex_de_DE.qm", "korvex_fr_FR.qm", "korvex_nl_NL.qm", "qt_de_DE.qm" };
    const QString offered = QString::fromUtf8("English|Deutsch|Français|(English)");
    const QString portuguese = QString::fromUtf8("Português (Brasil)");
    const QString english = "Exception: %1|Cancel", german = "Ausnahme: %1|Abbrechen", empty;
    const QString de = "de_DE", it = "it_IT";

    QTest::newRow("no files anywhere: no dialog")
        << none << none << de << empty << empty << false << de << english;
    QTest::newRow("the locale's file")
        << both << none << de << empty << empty << true << de << german;
    QTest::newRow("fallback when the primary has no files")
        << none << L { "korvex_fr_FR.qm" } << "fr_FR" << empty << empty << true << "fr_FR"
        << "Exception : %1|Cancel";
    QTest::newRow("primary with files wins over the fallback")
        << L { "korvex_de_DE.qm" } << L { "korvex_fr_FR.qm" } << "fr_FR" << empty
        << "English|Deutsch|(English)" << false << "fr_FR" << english;
    QTest::newRow("German chosen; Dutch file not naming its language skipped")
        << both << none << it << QString("Deutsch") << offered << true << de << german;
    QTest::newRow("pt_BR from the file name")
        << L { "korvex_de_DE.qm", "korvex_pt_BR.qm" } << none << it << portuguese
        << "English|Deutsch|" + portuguese + "|(English)" << true << "pt_BR"
        << QString::fromUtf8("Exceção: %1|Cancel");
    QTest::newRow("only the toolkit's file for the locale")
        << L { "qt_de_DE.qm" } << none << de << empty << QString("English|(English)") << false << de
        << QString("Exception: %1|Abbrechen");
    QTest::newRow("the dialog lists nothing: en_US")
        << both << none << it << QString("<gone>") << empty << true << "en_US" << english;
}

void tst_Application::initTranslations()
{
    QFETCH(QStringList, primary);
    QFETCH(QStringList, fallback);
    QFETCH(QString, locale);
    QFETCH(QString, choice);
    QFETCH(QString, offered);
    QFETCH(bool, result);
    QFETCH(QString, localeAfter);
    QFETCH(QString, translated);

    QTemporaryDir primaryDir, fallbackDir;
    QVERIFY(addTranslations(primaryDir.path(), primary));
    QVERIFY(addTranslations(fallbackDir.path(), fallback));
    TestApplication &app = TestApplication::instance();
    app.mChoice = choice;
    QWidget mainWidget;
    app.setMainWidget(&mainWidget);
    QCOMPARE(app.initTranslations(primaryDir.path(), fallbackDir.path(), locale), result);
    app.setMainWidget(nullptr);

    QCOMPARE(app.mOffered.join('|'), offered);
    QCOMPARE(app.mDialogParent, offered.isEmpty() ? nullptr : &mainWidget);
    QCOMPARE(locale, localeAfter);
    QCOMPARE(::translated(), translated);
}

void tst_Application::notify_data()
{
    QTest::addColumn<int>("kind"); // nothing, a QString, a C string, a std::exception, an int
    QTest::addColumn<QString>("translation"); // installed while the event is delivered
    QTest::addColumn<QString>("report"); // empty: no dialog, and the event was delivered

    QTest::newRow("nothing thrown") << 0 << QString() << QString();
    QTest::newRow("QString") << 1 << QString() << "Exception: disk full";
    QTest::newRow("C string") << 2 << QString() << "Exception: no clip";
    QTest::newRow("std::exception") << 3 << QString() << "Exception: bad timecode";
    QTest::newRow("unknown") << 4 << QString() << "Exception: Unknown exception in Kiv_Application";
    QTest::newRow("unknown, German") << 4 << "korvex_de_DE.qm"
                                     << "Ausnahme: Unbekannte Ausnahme in Kiv_Application";
}

void tst_Application::notify()
{
    QFETCH(int, kind);
    QFETCH(QString, translation);
    QFETCH(QString, report);

    const std::function<void()> throwers[]
        = { [] {}, [] { throw QStringLiteral("disk full"); }, [] { throw "no clip"; },
            [] { throw std::runtime_error("bad timecode"); },
            [] {
                throw 42;
            } };
    QTranslator translator;
    QVERIFY(translation.isEmpty() || translator.load(builtTranslation(translation)));
    QCoreApplication::installTranslator(&translator);
    Thrower thrower;
    thrower.mThrow = throwers[kind];
    QEvent event(QEvent::User);
    const bool delivered = QCoreApplication::sendEvent(&thrower, &event);
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(delivered, report.isEmpty());
    QCOMPARE(gRequests.isEmpty() ? QString() : gRequests.takeLast().text, report);
}

void tst_Application::findMainWidget_data()
{
    // "the argument's object name ("none": null) | the main widget destroyed | the answer's".
    QTest::addColumn<QString>("row");

    QTest::newRow("grandchild") << "grandchild | no | top";
    QTest::newRow("inside a window of its own") << "inWindow | no | window";
    QTest::newRow("null: the main widget") << "none | no | main";
    QTest::newRow("null, the main widget destroyed") << "none | yes | ";
}

void tst_Application::findMainWidget()
{
    QFETCH(QString, row);
    const QString widget = row.section(" | ", 0, 0), found = row.section(" | ", 2);

    const auto make = [](const char *iName, QWidget *iParent, Qt::WindowFlags iFlags = {}) {
        auto *widget = new QWidget(iParent, iFlags);
        widget->setObjectName(iName);
        return widget;
    };
    const std::unique_ptr<QWidget> top(make("top", nullptr));
    make("inWindow", make("window", make("grandchild", new QWidget(top.get())), Qt::Window));
    std::unique_ptr<QWidget> main(make("main", nullptr));
    TestApplication::instance().setMainWidget(main.get());
    if (row.contains("yes"))
        main.reset();
    QWidget *answer = Kiv_Application::findMainWidget(top->findChild<QWidget *>(widget));
    TestApplication::instance().setMainWidget(nullptr);
    QCOMPARE(answer ? answer->objectName() : QString(), found);
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
