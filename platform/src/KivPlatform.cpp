#include "KivPlatform.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QLocale>
#include <QLoggingCategory>

#include <algorithm>
#include <iterator>
#include <utility>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#endif

namespace {
Q_LOGGING_CATEGORY(lcOs, "kiv.platform.os")

struct Language
{
    int id;
    const char *name;
    QLocale::Language locale;
};

// Primary language identifiers of the languages the system knows, ascending, with the
// QLocale language each stands for.
constexpr Language kLanguages[] = {
    { 1, "Arabic", QLocale::Arabic },
    { 2, "Bulgarian", QLocale::Bulgarian },
    { 3, "Catalan", QLocale::Catalan },
    { 4, "Chinese", QLocale::Chinese },
    { 5, "Czech", QLocale::Czech },
    { 6, "Danish", QLocale::Danish },
    { 7, "German", QLocale::German },
    { 8, "Greek", QLocale::Greek },
    { 9, "English", QLocale::English },
    { 10, "Spanish", QLocale::Spanish },
    { 11, "Finnish", QLocale::Finnish },
    { 12, "French", QLocale::French },
    { 13, "Hebrew", QLocale::Hebrew },
    { 14, "Hungarian", QLocale::Hungarian },
    { 15, "Icelandic", QLocale::Icelandic },
    { 16, "Italian", QLocale::Italian },
    { 17, "Japanese", QLocale::Japanese },
    { 18, "Korean", QLocale::Korean },
    { 19, "Dutch", QLocale::Dutch },
    { 20, "Norwegian", QLocale::NorwegianBokmal },
    { 21, "Polish", QLocale::Polish },
    { 22, "Portuguese", QLocale::Portuguese },
    { 23, "Romansh", QLocale::Romansh },
    { 24, "Romanian", QLocale::Romanian },
    { 25, "Russian", QLocale::Russian },
    { 26, "Croatian", QLocale::Croatian },
    { 27, "Slovak", QLocale::Slovak },
    { 28, "Albanian", QLocale::Albanian },
    { 29, "Swedish", QLocale::Swedish },
    { 30, "Thai", QLocale::Thai },
    { 31, "Turkish", QLocale::Turkish },
    { 32, "Urdu", QLocale::Urdu },
    { 33, "Indonesian", QLocale::Indonesian },
    { 34, "Ukrainian", QLocale::Ukrainian },
    { 35, "Belarusian", QLocale::Belarusian },
    { 36, "Slovenian", QLocale::Slovenian },
    { 37, "Estonian", QLocale::Estonian },
    { 38, "Latvian", QLocale::Latvian },
    { 39, "Lithuanian", QLocale::Lithuanian },
    { 40, "Tajik", QLocale::Tajik },
    { 41, "Persian", QLocale::Persian },
    { 42, "Vietnamese", QLocale::Vietnamese },
    { 43, "Armenian", QLocale::Armenian },
    { 44, "Azerbaijani", QLocale::Azerbaijani },
    { 45, "Basque", QLocale::Basque },
    { 46, "Sorbian", QLocale::UpperSorbian },
    { 47, "Macedonian", QLocale::Macedonian },
    { 50, "Tswana", QLocale::Tswana },
    { 52, "Xhosa", QLocale::Xhosa },
    { 53, "Zulu", QLocale::Zulu },
    { 54, "Afrikaans", QLocale::Afrikaans },
    { 55, "Georgian", QLocale::Georgian },
    { 56, "Faroese", QLocale::Faroese },
    { 57, "Hindi", QLocale::Hindi },
    { 58, "Maltese", QLocale::Maltese },
    { 59, "Sami", QLocale::NorthernSami },
    { 60, "Irish", QLocale::Irish },
    { 62, "Malay", QLocale::Malay },
    { 63, "Kazakh", QLocale::Kazakh },
    { 64, "Kyrgyz", QLocale::Kyrgyz },
    { 65, "Swahili", QLocale::Swahili },
    { 66, "Turkmen", QLocale::Turkmen },
    { 67, "Uzbek", QLocale::Uzbek },
    { 68, "Tatar", QLocale::Tatar },
    { 69, "Bengali", QLocale::Bangla },
    { 70, "Punjabi", QLocale::Punjabi },
    { 71, "Gujarati", QLocale::Gujarati },
    { 72, "Odia", QLocale::Odia },
    { 73, "Tamil", QLocale::Tamil },
    { 74, "Telugu", QLocale::Telugu },
    { 75, "Kannada", QLocale::Kannada },
    { 76, "Malayalam", QLocale::Malayalam },
    { 77, "Assamese", QLocale::Assamese },
    { 78, "Marathi", QLocale::Marathi },
    { 79, "Sanskrit", QLocale::Sanskrit },
    { 80, "Mongolian", QLocale::Mongolian },
    { 81, "Tibetan", QLocale::Tibetan },
    { 82, "Welsh", QLocale::Welsh },
    { 83, "Khmer", QLocale::Khmer },
    { 84, "Lao", QLocale::Lao },
    { 86, "Galician", QLocale::Galician },
    { 87, "Konkani", QLocale::Konkani },
    { 88, "Manipuri", QLocale::Manipuri },
    { 89, "Sindhi", QLocale::Sindhi },
    { 90, "Syriac", QLocale::Syriac },
    { 91, "Sinhala", QLocale::Sinhala },
    { 92, "Cherokee", QLocale::Cherokee },
    { 93, "Inuktitut", QLocale::Inuktitut },
    { 94, "Amharic", QLocale::Amharic },
    { 95, "Tamazight", QLocale::CentralAtlasTamazight },
    { 96, "Kashmiri", QLocale::Kashmiri },
    { 97, "Nepali", QLocale::Nepali },
    { 98, "Frisian", QLocale::WesternFrisian },
    { 99, "Pashto", QLocale::Pashto },
    { 100, "Filipino", QLocale::Filipino },
    { 101, "Divehi", QLocale::Divehi },
    { 103, "Fulah", QLocale::Fulah },
    { 104, "Hausa", QLocale::Hausa },
    { 106, "Yoruba", QLocale::Yoruba },
    { 107, "Quechua", QLocale::Quechua },
    { 108, "Northern Sotho", QLocale::NorthernSotho },
    { 109, "Bashkir", QLocale::Bashkir },
    { 110, "Luxembourgish", QLocale::Luxembourgish },
    { 111, "Greenlandic", QLocale::Kalaallisut },
    { 112, "Igbo", QLocale::Igbo },
    { 115, "Tigrinya", QLocale::Tigrinya },
    { 117, "Hawaiian", QLocale::Hawaiian },
    { 120, "Yi", QLocale::SichuanYi },
    { 122, "Mapudungun", QLocale::Mapuche },
    { 124, "Mohawk", QLocale::Mohawk },
    { 126, "Breton", QLocale::Breton },
};

constexpr bool isAscending()
{
    for (std::size_t i = 1; i < std::size(kLanguages); ++i) {
        if (kLanguages[i - 1].id >= kLanguages[i].id)
            return false;
    }
    return true;
}
static_assert(isAscending(), "the language table must stay sorted by identifier");

// QLocale languages that share an identifier with a language of the table.
constexpr std::pair<QLocale::Language, int> kLocaleAliases[] = {
    { QLocale::C, 9 },          { QLocale::NorwegianNynorsk, 20 }, { QLocale::Serbian, 26 },
    { QLocale::Bosnian, 26 },   { QLocale::LowerSorbian, 46 },     { QLocale::LuleSami, 59 },
    { QLocale::InariSami, 59 }, { QLocale::SkoltSami, 59 },        { QLocale::SouthernSami, 59 },
};

const Language *findLanguage(int id)
{
    const auto end = std::end(kLanguages);
    const auto it = std::lower_bound(std::begin(kLanguages), end, id,
                                     [](const Language &l, int value) { return l.id < value; });
    return it != end && it->id == id ? it : nullptr;
}

} // namespace

namespace KivPlatform {

int keyboardLanguage()
{
    const QByteArray forced = qgetenv("KIV_KEYBOARD_LANGUAGE");
    if (!forced.isEmpty()) {
        bool ok = false;
        const int id = forced.trimmed().toInt(&ok);
        if (ok)
            return id;
        qCWarning(lcOs, "KIV_KEYBOARD_LANGUAGE='%s' is not a number, ignored", forced.constData());
    }
#ifdef Q_OS_WIN
    const auto layout = reinterpret_cast<quintptr>(GetKeyboardLayout(0));
    return PRIMARYLANGID(LANGID(layout & 0xffff));
#else
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return languageIdForLocale(QGuiApplication::inputMethod()->locale());
    return languageIdForLocale(QLocale::system());
#endif
}

QString languageName(int primaryLanguageId)
{
    const Language *language = findLanguage(primaryLanguageId);
    return language ? QString::fromLatin1(language->name) : QString();
}

int languageIdForName(const QString &name)
{
    const QString wanted = name.trimmed();
    for (const Language &language : kLanguages) {
        if (wanted.compare(QLatin1String(language.name), Qt::CaseInsensitive) == 0)
            return language.id;
    }
    return 0;
}

QList<int> supportedLanguageIds()
{
    QList<int> ids;
    ids.reserve(qsizetype(std::size(kLanguages)));
    for (const Language &language : kLanguages)
        ids.append(language.id);
    return ids;
}

int languageIdForLocale(const QLocale &locale)
{
    const QLocale::Language wanted = locale.language();
    for (const Language &language : kLanguages) {
        if (language.locale == wanted)
            return language.id;
    }
    for (const auto &[alias, id] : kLocaleAliases) {
        if (alias == wanted)
            return id;
    }
    return 0;
}

void discardTypedAheadKeys()
{
#ifdef Q_OS_WIN
    // Keys typed while the thread was busy wait in its message queue (the key messages 256 to
    // 265); Qt has not read them.
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0x100, 0x109, PM_REMOVE)) { }
#endif
    if (!QCoreApplication::instance())
        return;
    // Key events that reached Qt already wait among the thread's posted events.
    for (const QEvent::Type type :
         { QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease })
        QCoreApplication::removePostedEvents(nullptr, type);
}

} // namespace KivPlatform
