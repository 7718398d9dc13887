#pragma once

#include "kivcore_export.h"

#include <QDialog>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class QComboBox;
class QLabel;
class QPushButton;

/// The small dialog that lists the installed translations and lets the user pick one.
///
/// The list starts with "English" (locale "en_US"); every ".qm" file of the directory that
/// translates the source text "English" in the context "Kiv_LanguageDialog" adds the language
/// under that translated name, which is the language's name in its own language. The entry whose
/// locale has the language and territory of the requested locale is preselected, else
/// "English". The combo box is named "read-only combobox".
class KIVCORE_EXPORT Kiv_LanguageDialog : public QDialog
{
    Q_OBJECT

public:
    /// One entry of the language list.
    struct Entry
    {
        QString mLanguage; ///< the name shown
        QString mLocale; ///< "de_DE"
        bool operator==(const Entry &iOther) const
        {
            return mLanguage == iOther.mLanguage && mLocale == iOther.mLocale;
        }
    };

    /// `iName` (may be null) becomes the object name.
    Kiv_LanguageDialog(const QString &iDirectory, const QString &iLocale,
                       QWidget *iParent = nullptr, const char *iName = nullptr,
                       Qt::WindowFlags iFlags = Qt::Dialog);
    ~Kiv_LanguageDialog() override;

    /// The chosen language, as shown ("Deutsch").
    QString language() const;
    /// The chosen locale ("de_DE").
    QString locale() const;
    /// True when the directory held no translation files: the dialog has nothing to offer.
    bool aborted() const;

    // The scanning behind the dialog, usable on its own.

    /// The ".qm" files of a directory, by name. An empty path or a missing directory has none.
    static QStringList translationFiles(const QString &iDirectory);
    /// The locale a translation file stands for: the part of the file name after the first "_",
    /// cut at the first "." ("korvex_pt_BR.qm" gives "pt_BR"); empty without a "_".
    static QString localeFromFileName(const QString &iFileName);
    /// The language list for a directory: "English" first, then one entry per file that names
    /// its language, in file name order. Answers false (with an empty list) when the directory
    /// holds no ".qm" files.
    static bool scanTranslations(const QString &iDirectory, QList<Entry> &oEntries);
    /// The index of the first entry whose locale has the same language and territory as
    /// `iLocale`, or 0 (English) when there is none.
    static int preselectedIndex(const QList<Entry> &iEntries, const QString &iLocale);

private slots:
    void selectionChanged(const QString &iLanguage);

private:
    QLabel *mLabelP = nullptr;
    QComboBox *mComboP = nullptr;
    QString mLanguage;
    QString mLocale;
    QPushButton *mOkButtonP = nullptr;
    QPushButton *mCancelButtonP = nullptr;
    QMap<QString, QString> mLocaleByLanguage;
    bool mValid = false;
};
