#include "Kiv_Application.h"
#include "Kiv_Initialize.h"
#include "Kiv_LanguageDialog.h"

#include "Kib_UIDialog.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <stdexcept>

namespace {

// A translation file as the build made it: the library's own, else one made for this test.
QString builtTranslation(const QString &iFileName)
{
    const QString product = QDir(QStringLiteral(KIV_TRANSLATIONS_DIR)).filePath(iFileName);
    return QFile::exists(product)
        ? product
        : QDir(QStringLiteral(KIV_TEST_TRANSLATIONS_DIR)).filePath(iFileName);
}

bool addTranslations(const QString &iDirectory, const QStringList &iFileNames)
{
    for (const QString &name : iFileNames) {
        if (!QFile::copy(builtTranslation(name), QDir(iDirectory).filePath(name)))
            return false;
    }
    return true;
}

QString translatedReport()
{
    return QCoreApplication::translate("Kiv_Application", "Exception: %1", "error report");
}

QComboBox *languageCombo(const QDialog &iDialog)
{
    return iDialog.findChild<QComboBox *>(QStringLiteral("read-only combobox"));
}

QStringList itemsOf(const QComboBox *iCombo)
{
    QStringList items;
    for (int index = 0; iCombo && index < iCombo->count(); ++index)
        items << iCombo->itemText(index);
    return items;
}

// An application whose language question the test answers as a user would: by picking a
// language and pressing OK, or by pressing Cancel.
class TestApplication : public Kiv_Application
{
public:
    using Kiv_Application::Kiv_Application;

    QString mChoice; // empty: Cancel
    bool mRemoveFilesFirst = false; // the files go away before the dialog is made
    int mAsked = 0;
    QStringList mOffered;
    QString mPreselected;
    QWidget *mDialogParent = nullptr;
    QPointer<Kiv_LanguageDialog> mDialog;

protected:
    std::unique_ptr<Kiv_LanguageDialog> createLanguageDialog(const QString &iDirectory,
                                                             const QString &iLocale) override
    {
        const QStringList files = Kiv_LanguageDialog::translationFiles(iDirectory);
        for (const QString &file : mRemoveFilesFirst ? files : QStringList())
            QFile::remove(QDir(iDirectory).filePath(file));
        return Kiv_Application::createLanguageDialog(iDirectory, iLocale);
    }

    int runLanguageDialog(Kiv_LanguageDialog &ioDialog) override
    {
        ++mAsked;
        mDialog = &ioDialog;
        mDialogParent = ioDialog.windowType() == Qt::Dialog ? ioDialog.parentWidget() : nullptr;
        QComboBox *combo = languageCombo(ioDialog);
        mOffered = itemsOf(combo);
        mPreselected = combo->currentText();
        combo->setCurrentText(mChoice);
        for (QPushButton *button : ioDialog.findChildren<QPushButton *>()) {
            if (button->text() == (mChoice.isEmpty() ? "Cancel" : "OK"))
                button->click();
        }
        return ioDialog.result();
    }
};

TestApplication &testApp()
{
    return *static_cast<TestApplication *>(qApp);
}

// Throws what it is told when it receives a QEvent::User.
class Thrower : public QObject
{
public:
    enum Kind { Nothing, String, CString, StdException, Int, Struct };
    Kind mKind = Nothing;

    bool event(QEvent *iEvent) override
    {
        struct Unknown
        {
        };
        if (iEvent->type() == QEvent::User) {
            switch (mKind) {
            case Nothing:
                break;
            case String:
                throw QStringLiteral("disk full");
            case CString:
                throw "no such clip";
            case StdException:
                throw std::runtime_error("bad timecode");
            case Int:
                throw 42;
            case Struct:
                throw Unknown();
            }
        }
        return QObject::event(iEvent);
    }
};

} // namespace

Q_DECLARE_METATYPE(Thrower::Kind)

class tst_Application : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase() { Kib_UIDialog::setResponder({}); }

    void construction();
    void initTranslations_data();
    void initTranslations();
    void initTranslationsWhenTheFilesWentAway();
    void languageList_data();
    void languageList();
    void languageDialogLayout_data();
    void languageDialogLayout();
    void localeFromFileName_data();
    void localeFromFileName();
    void notify_data();
    void notify();
    void findMainWidget_data();
    void findMainWidget();

private:
    QList<Kib_UIDialog::Request> mRequests;
};

void tst_Application::initTestCase()
{
    QVERIFY(QFile::exists(builtTranslation("korvex_de_DE.qm")));
    QVERIFY(QFile::exists(builtTranslation("korvex_pt_BR.qm")));
    Kib_UIDialog::setResponder([this](const Kib_UIDialog::Request &iRequest) {
        mRequests << iRequest;
        return QVariant(1);
    });
}

void tst_Application::cleanup()
{
    // Empties both translators: a locale no file has, and the question cancelled.
    QTemporaryDir directory;
    QVERIFY(addTranslations(directory.path(), { "korvex_nl_NL.qm" }));
    TestApplication &app = testApp();
    app.mChoice.clear();
    app.mRemoveFilesFirst = false;
    QString locale = QStringLiteral("zz_ZZ");
    app.initTranslations(directory.path(), QString(), locale);
    app.mAsked = 0;
    app.mOffered.clear();
    app.mDialogParent = nullptr;
    QCOMPARE(translatedReport(), QStringLiteral("Exception: %1"));
    mRequests.clear();
}

void tst_Application::construction()
{
    QVERIFY(Kiv_IsInitialized());
    QCOMPARE(testApp().exeName(), QStringLiteral("tst_application"));
}

void tst_Application::initTranslations_data()
{
    QTest::addColumn<QStringList>("primary");
    QTest::addColumn<QStringList>("fallback");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("choice"); // in the language dialog; empty: Cancel
    QTest::addColumn<QStringList>("offered"); // by the dialog; empty: not asked
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("localeAfter");
    QTest::addColumn<QString>("report"); // "Exception: %1" translated afterwards
    QTest::addColumn<QString>("toolkitCancel"); // a toolkit string translated afterwards

    const QStringList none;
    const QStringList german { "korvex_de_DE.qm", "qt_de_DE.qm" };
    const QStringList both { "korvex_de_DE.qm", "korvex_fr_FR.qm", "qt_de_DE.qm" };
    const QStringList offered { "English", "Deutsch", QString::fromUtf8("Français") };
    const QString portuguese = QString::fromUtf8("Português (Brasil)");
    const QString english = "Exception: %1";

    QTest::newRow("no files anywhere") << none << none << "de_DE"
                                       << "" << none << false << "de_DE" << english << "Cancel";
    QTest::newRow("the locale's file") << both << none << "de_DE"
                                       << "" << none << true << "de_DE"
                                       << "Ausnahme: %1"
                                       << "Abbrechen";
    QTest::newRow("fallback when the primary has no files")
        << none << QStringList { "korvex_fr_FR.qm" } << "fr_FR"
        << "" << none << true << "fr_FR"
        << "Exception : %1"
        << "Cancel";
    QTest::newRow("primary with files wins over the fallback")
        << german << QStringList { "korvex_fr_FR.qm" } << "fr_FR"
        << "" << QStringList { "English", "Deutsch" } << false << "fr_FR" << english << "Cancel";
    QTest::newRow("none for the locale, German chosen") << both << none << "it_IT"
                                                        << "Deutsch" << offered << true << "de_DE"
                                                        << "Ausnahme: %1"
                                                        << "Abbrechen";
    QTest::newRow("none for the locale, pt_BR chosen")
        << QStringList { "korvex_de_DE.qm", "korvex_pt_BR.qm" } << none << "it_IT" << portuguese
        << QStringList { "English", "Deutsch", portuguese } << true << "pt_BR"
        << QString::fromUtf8("Exceção: %1") << "Cancel";
    QTest::newRow("none for the locale, cancelled")
        << both << none << "it_IT"
        << "" << offered << false << "it_IT" << english << "Cancel";
    QTest::newRow("none for the locale, English chosen, which has no file")
        << both << none << "it_IT"
        << "English" << offered << false << "it_IT" << english << "Cancel";
    QTest::newRow("only the toolkit's file for the locale")
        << QStringList { "qt_de_DE.qm" } << none << "de_DE"
        << "" << QStringList { "English" } << false << "de_DE" << english << "Abbrechen";
}

void tst_Application::initTranslations()
{
    QFETCH(QStringList, primary);
    QFETCH(QStringList, fallback);
    QFETCH(QString, locale);
    QFETCH(QString, choice);
    QFETCH(QStringList, offered);
    QFETCH(bool, result);
    QFETCH(QString, localeAfter);
    QFETCH(QString, report);
    QFETCH(QString, toolkitCancel);

    QTemporaryDir primaryDir;
    QTemporaryDir fallbackDir;
    QVERIFY(addTranslations(primaryDir.path(), primary));
    QVERIFY(addTranslations(fallbackDir.path(), fallback));
    TestApplication &app = testApp();
    app.mChoice = choice;
    QWidget mainWidget;
    app.setMainWidget(&mainWidget);

    QCOMPARE(app.initTranslations(primaryDir.path(), fallbackDir.path(), locale), result);
    app.setMainWidget(nullptr);

    QCOMPARE(app.mAsked, offered.isEmpty() ? 0 : 1);
    QCOMPARE(app.mOffered, offered);
    if (!offered.isEmpty()) {
        QCOMPARE(app.mPreselected, QStringLiteral("English"));
        QCOMPARE(app.mDialogParent, &mainWidget);
        QVERIFY(!app.mDialog); // destroyed when done
    }
    QCOMPARE(locale, localeAfter);
    QCOMPARE(translatedReport(), report);
    QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), toolkitCancel);
    QVERIFY(mRequests.isEmpty());
}

void tst_Application::initTranslationsWhenTheFilesWentAway()
{
    // The dialog finds nothing to offer: nobody is asked and English is used.
    QTemporaryDir directory;
    QVERIFY(addTranslations(directory.path(), { "korvex_de_DE.qm", "korvex_fr_FR.qm" }));
    TestApplication &app = testApp();
    app.mRemoveFilesFirst = true;
    app.mChoice = QStringLiteral("Deutsch");
    QString locale = QStringLiteral("it_IT");

    QVERIFY(app.initTranslations(directory.path(), QString(), locale));
    QCOMPARE(app.mAsked, 0);
    QCOMPARE(locale, QStringLiteral("en_US"));
}

void tst_Application::languageList_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QStringList>("offered"); // empty: aborted
    QTest::addColumn<QString>("preselected");
    QTest::addColumn<QString>("preselectedLocale");

    const QStringList files { "korvex_de_DE.qm", "korvex_fr_FR.qm", "korvex_nl_NL.qm",
                              "korvex_pt_BR.qm", "qt_de_DE.qm" };
    const QString portuguese = QString::fromUtf8("Português (Brasil)");
    const QString french = QString::fromUtf8("Français");
    const QStringList all { "English", "Deutsch", french, portuguese };

    QTest::newRow("exact match") << files << "fr_FR" << all << french << "fr_FR";
    QTest::newRow("territory from the file name")
        << files << "pt_BR" << all << portuguese << "pt_BR";
    QTest::newRow("other territory") << files << "de_AT" << all << "English"
                                     << "en_US";
    QTest::newRow("not naming its language") << files << "nl_NL" << all << "English"
                                             << "en_US";
    QTest::newRow("unreadable locale") << files << "klingon" << all << "English"
                                       << "en_US";
    QTest::newRow("nothing names its language") << QStringList { "korvex_nl_NL.qm", "qt_de_DE.qm" }
                                                << "nl_NL" << QStringList { "English" } << "English"
                                                << "en_US";
    QTest::newRow("no files") << QStringList() << "de_DE" << QStringList() << ""
                              << "";
}

void tst_Application::languageList()
{
    QFETCH(QStringList, files);
    QFETCH(QString, locale);
    QFETCH(QStringList, offered);
    QFETCH(QString, preselected);
    QFETCH(QString, preselectedLocale);

    QTemporaryDir directory;
    QVERIFY(addTranslations(directory.path(), files));
    Kiv_LanguageDialog dialog(directory.path(), locale);

    QCOMPARE(dialog.aborted(), offered.isEmpty());
    QCOMPARE(itemsOf(languageCombo(dialog)), offered);
    QCOMPARE(dialog.language(), preselected);
    QCOMPARE(dialog.locale(), preselectedLocale);
}

void tst_Application::languageDialogLayout_data()
{
    QTest::addColumn<QString>("translation"); // installed while the dialog is made
    QTest::addColumn<QStringList>("texts"); // title, label, left button, right button

    QTest::newRow("untranslated") << ""
                                  << QStringList { "Select Language", "&Language:", "Cancel",
                                                   "OK" };
    QTest::newRow("German") << "korvex_de_DE.qm"
                            << QStringList { QString::fromUtf8("Sprache auswählen"),
                                             "&Sprache:", "Abbrechen", "OK" };
}

void tst_Application::languageDialogLayout()
{
    QFETCH(QString, translation);
    QFETCH(QStringList, texts);

    QTranslator translator;
    if (!translation.isEmpty()) {
        QVERIFY(translator.load(builtTranslation(translation)));
        QCoreApplication::installTranslator(&translator);
    }
    Kiv_LanguageDialog dialog(QString(), QStringLiteral("de_DE"), nullptr, "languages");
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(dialog.objectName(), QStringLiteral("languages"));
    QCOMPARE(dialog.windowTitle(), texts.at(0));
    // Two rows, the label with its combo box, then the buttons.
    auto *outer = qobject_cast<QBoxLayout *>(dialog.layout());
    QVERIFY(outer && outer->direction() == QBoxLayout::TopToBottom && outer->count() == 2);
    QCOMPARE(outer->contentsMargins(), QMargins(11, 11, 11, 11));
    QCOMPARE(outer->spacing(), 6);
    QList<QWidget *> rows[2];
    for (int row = 0; row < 2; ++row) {
        QLayout *layout = outer->itemAt(row)->layout();
        for (int index = 0; layout && index < layout->count(); ++index) {
            if (QWidget *widget = layout->itemAt(index)->widget())
                rows[row] << widget;
        }
    }
    QCOMPARE(rows[0].size(), 2);
    auto *label = qobject_cast<QLabel *>(rows[0].at(0));
    QVERIFY(label && label->buddy() == rows[0].at(1) && rows[0].at(1) == languageCombo(dialog));
    QCOMPARE(label->text(), texts.at(1));
    QVERIFY(!languageCombo(dialog)->isEditable());
    QCOMPARE(rows[1].size(), 2);
    auto *cancel = qobject_cast<QPushButton *>(rows[1].at(0));
    auto *ok = qobject_cast<QPushButton *>(rows[1].at(1));
    QVERIFY(cancel && ok);
    QCOMPARE(QStringList({ cancel->text(), ok->text() }), texts.mid(2));
    QVERIFY(ok->isDefault() && !cancel->isDefault());
}

void tst_Application::localeFromFileName_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("locale");

    QTest::newRow("language and territory") << "korvex_pt_BR.qm"
                                            << "pt_BR";
    QTest::newRow("language only") << "qt_de.qm"
                                   << "de";
    QTest::newRow("cut at the first dot") << "korvex_de_DE.old.qm"
                                          << "de_DE";
    QTest::newRow("no dot") << "korvex_de_DE"
                            << "de_DE";
    QTest::newRow("no underscore") << "korvex.qm"
                                   << "";
}

void tst_Application::localeFromFileName()
{
    QFETCH(QString, fileName);
    QFETCH(QString, locale);
    QCOMPARE(Kiv_LanguageDialog::localeFromFileName(fileName), locale);
}

void tst_Application::notify_data()
{
    QTest::addColumn<Thrower::Kind>("kind");
    QTest::addColumn<QString>("translation"); // installed while the event is delivered
    QTest::addColumn<QString>("report"); // empty: no dialog, and the event was delivered

    const QString unknown = "Exception: Unknown exception in Kiv_Application";
    QTest::newRow("nothing thrown") << Thrower::Nothing << ""
                                    << "";
    QTest::newRow("QString") << Thrower::String << ""
                             << "Exception: disk full";
    QTest::newRow("C string") << Thrower::CString << ""
                              << "Exception: no such clip";
    QTest::newRow("std::exception") << Thrower::StdException << ""
                                    << "Exception: bad timecode";
    QTest::newRow("int") << Thrower::Int << "" << unknown;
    QTest::newRow("unknown class") << Thrower::Struct << "" << unknown;
    QTest::newRow("unknown class, German") << Thrower::Struct << "korvex_de_DE.qm"
                                           << "Ausnahme: Unbekannte Ausnahme in Kiv_Application";
}

void tst_Application::notify()
{
    QFETCH(Thrower::Kind, kind);
    QFETCH(QString, translation);
    QFETCH(QString, report);

    QTranslator translator;
    if (!translation.isEmpty()) {
        QVERIFY(translator.load(builtTranslation(translation)));
        QCoreApplication::installTranslator(&translator);
    }
    Thrower thrower;
    thrower.mKind = kind;
    QEvent event(QEvent::User);
    const bool delivered = QCoreApplication::sendEvent(&thrower, &event);
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(delivered, report.isEmpty());
    QCOMPARE(mRequests.size(), report.isEmpty() ? 0 : 1);
    if (!report.isEmpty()) {
        QCOMPARE(mRequests.first().text, report);
        QCOMPARE(mRequests.first().buttonList, QStringList { "OK" });
    }
}

void tst_Application::findMainWidget_data()
{
    QTest::addColumn<QString>("widget"); // the argument's object name; empty: null
    QTest::addColumn<int>("mainWidget"); // 0: none, 1: set, 2: set and destroyed
    QTest::addColumn<QString>("found"); // the answer's object name; empty: null

    QTest::newRow("grandchild") << "grandchild" << 1 << "top";
    QTest::newRow("top-level widget itself") << "top" << 0 << "top";
    QTest::newRow("inside a window of its own") << "inWindow" << 1 << "window";
    QTest::newRow("null: the main widget") << "" << 1 << "main";
    QTest::newRow("null without a main widget") << "" << 0 << "";
    QTest::newRow("null, the main widget destroyed") << "" << 2 << "";
}

void tst_Application::findMainWidget()
{
    QFETCH(QString, widget);
    QFETCH(int, mainWidget);
    QFETCH(QString, found);

    QWidget top;
    top.setObjectName("top");
    auto *grandchild = new QWidget(new QWidget(&top));
    grandchild->setObjectName("grandchild");
    auto *window = new QWidget(grandchild, Qt::Window);
    window->setObjectName("window");
    (new QWidget(window))->setObjectName("inWindow");
    auto main = std::make_unique<QWidget>();
    main->setObjectName("main");
    testApp().setMainWidget(mainWidget ? main.get() : nullptr);
    if (mainWidget == 2)
        main.reset();

    QWidget *argument = widget == "top" ? &top : top.findChild<QWidget *>(widget);
    QWidget *answer = Kiv_Application::findMainWidget(widget.isEmpty() ? nullptr : argument);
    testApp().setMainWidget(nullptr);
    QCOMPARE(answer ? answer->objectName() : QString(), found);
}

int main(int argc, char **argv)
{
    TestApplication app(argc, argv);
    tst_Application test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_application.moc"
