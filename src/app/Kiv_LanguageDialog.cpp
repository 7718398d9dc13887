#include "Kiv_LanguageDialog.h"

#include <QComboBox>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTranslator>
#include <QVBoxLayout>

namespace {

// Every translation names its own language by translating this text in this context.
const char *const cLanguageContext = "Kiv_LanguageDialog";
const char *const cEnglish = QT_TRANSLATE_NOOP("Kiv_LanguageDialog", "English");
const char *const cEnglishLocale = "en_US";

const int cMargin = 11;
const int cSpacing = 6;

// The name a translation file gives its language, empty when it gives none.
QString languageNameIn(const QString &iPath)
{
    QFile file(iPath);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "Kiv_LanguageDialog::scanTranslations, cannot read" << iPath;
        return QString();
    }
    // Loaded from memory, so that exactly this file is read (loading by name would also try
    // shorter names when this one is broken).
    const QByteArray data = file.readAll();
    QTranslator translator;
    if (!translator.load(reinterpret_cast<const uchar *>(data.constData()), int(data.size()))) {
        qWarning().noquote() << "Kiv_LanguageDialog::scanTranslations, not a translation file:"
                             << iPath;
        return QString();
    }
    return translator.translate(cLanguageContext, cEnglish);
}

} // namespace

Kiv_LanguageDialog::Kiv_LanguageDialog(const QString &iDirectory, const QString &iLocale,
                                       QWidget *iParent, const char *iName, Qt::WindowFlags iFlags)
    : QDialog(iParent, iFlags)
{
    if (iName)
        setObjectName(QString::fromLatin1(iName));
    setWindowTitle(tr("Select Language"));

    mLabelP = new QLabel(tr("&Language:"), this);
    mComboP = new QComboBox(this);
    mComboP->setObjectName(QStringLiteral("read-only combobox"));
    mComboP->setEditable(false);
    mLabelP->setBuddy(mComboP);
    mOkButtonP = new QPushButton(tr("OK"), this);
    mOkButtonP->setDefault(true);
    mCancelButtonP = new QPushButton(tr("Cancel"), this);
    connect(mOkButtonP, &QPushButton::clicked, this, &QDialog::accept);
    connect(mCancelButtonP, &QPushButton::clicked, this, &QDialog::reject);

    auto *outerLayout = new QVBoxLayout(this);
    outerLayout->setContentsMargins(cMargin, cMargin, cMargin, cMargin);
    outerLayout->setSpacing(cSpacing);
    auto *languageRow = new QHBoxLayout;
    languageRow->setContentsMargins(0, 0, 0, 0);
    languageRow->setSpacing(cSpacing);
    languageRow->addWidget(mLabelP);
    languageRow->addWidget(mComboP, 1);
    outerLayout->addLayout(languageRow);
    auto *buttonRow = new QHBoxLayout;
    buttonRow->setContentsMargins(0, 0, 0, 0);
    buttonRow->setSpacing(cSpacing);
    buttonRow->addStretch(1);
    buttonRow->addWidget(mCancelButtonP);
    buttonRow->addWidget(mOkButtonP);
    outerLayout->addLayout(buttonRow);

    QList<Entry> entries;
    mValid = scanTranslations(iDirectory, entries);
    if (!mValid)
        return;
    for (const Entry &entry : entries) {
        mComboP->addItem(entry.mLanguage);
        mLocaleByLanguage.insert(entry.mLanguage, entry.mLocale);
    }
    mComboP->setCurrentIndex(preselectedIndex(entries, iLocale));
    selectionChanged(mComboP->currentText());
    connect(mComboP, &QComboBox::currentTextChanged, this, &Kiv_LanguageDialog::selectionChanged);
}

Kiv_LanguageDialog::~Kiv_LanguageDialog() = default;

QString Kiv_LanguageDialog::language() const
{
    return mLanguage;
}

QString Kiv_LanguageDialog::locale() const
{
    return mLocale;
}

bool Kiv_LanguageDialog::aborted() const
{
    return !mValid;
}

void Kiv_LanguageDialog::selectionChanged(const QString &iLanguage)
{
    mLanguage = iLanguage;
    mLocale = mLocaleByLanguage.value(iLanguage);
}

QStringList Kiv_LanguageDialog::translationFiles(const QString &iDirectory)
{
    // QDir("") is the current directory, which is not what an empty setting means.
    if (iDirectory.isEmpty())
        return QStringList();
    return QDir(iDirectory)
        .entryList({ QStringLiteral("*.qm") }, QDir::Files | QDir::Readable, QDir::Name);
}

QString Kiv_LanguageDialog::localeFromFileName(const QString &iFileName)
{
    const qsizetype underscore = iFileName.indexOf(QLatin1Char('_'));
    if (underscore < 0)
        return QString();
    const QString rest = iFileName.mid(underscore + 1);
    return rest.left(rest.indexOf(QLatin1Char('.'))); // left(-1) is all of it
}

bool Kiv_LanguageDialog::scanTranslations(const QString &iDirectory, QList<Entry> &oEntries)
{
    oEntries.clear();
    const QStringList files = translationFiles(iDirectory);
    if (files.isEmpty())
        return false;

    oEntries.append({ QString::fromLatin1(cEnglish), QString::fromLatin1(cEnglishLocale) });
    const QDir directory(iDirectory);
    for (const QString &file : files) {
        const QString language = languageNameIn(directory.filePath(file));
        if (!language.isEmpty())
            oEntries.append({ language, localeFromFileName(file) });
    }
    return true;
}

int Kiv_LanguageDialog::preselectedIndex(const QList<Entry> &iEntries, const QString &iLocale)
{
    // A locale Qt cannot read is the C locale; it matches nothing, not even another one.
    const QLocale wanted(iLocale);
    if (wanted.language() == QLocale::C)
        return 0;
    for (int index = 0; index < iEntries.size(); ++index) {
        const QLocale candidate(iEntries.at(index).mLocale);
        if (candidate.language() == wanted.language()
            && candidate.territory() == wanted.territory())
            return index;
    }
    return 0;
}
