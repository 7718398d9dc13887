#include "Kiv_KeymapMgr.h"

#include "Bnd_ConnectionToModel.h"
#include "Kib_Resource.h"
#include "KivPlatform.h"
#include "Kiv_MenuBar.h"
#include "Mnu_CommandSegment.h"
#include "TaskScheduler.h"
#include "TaskSchedulerTask.h"
#include "Uip_ParseScript.h"
#include "core/Kiv_DescriptionFile.h"

#include <vector>

#include <QDebug>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QKeyEvent>
#include <QXmlStreamReader>

namespace {
constexpr int cEnglish = 9;

Kiv_KeymapMgr *sKeymapManager = nullptr;

// "Context::Identifier::Rest": the second and third sections of an action identifier.
QString section(const QString &iActionID, int iIndex)
{
    return iActionID.section(QLatin1String("::"), iIndex, iIndex);
}
} // namespace

struct Kiv_KeymapMgrMaker
{
    static Kiv_KeymapMgr *make() { return new Kiv_KeymapMgr; }
};

Kiv_KeymapMgr *Kiv_KeymapMgr::getInstance()
{
    if (!sKeymapManager)
        sKeymapManager = Kiv_KeymapMgrMaker::make(); // lives until the process ends
    return sKeymapManager;
}

namespace {
// Made while the library is loaded (this file is linked whenever the manager is used).
const bool sMadeAtLoad = (Kiv_KeymapMgr::getInstance(), true);
} // namespace

Kiv_KeymapMgr::Kiv_KeymapMgr()
    : mChangedListenerP(std::make_unique<Bnd_ListenerBase>(
        QString(), Bnd_ConnectionEnvironment::blankEnvironment()))
{
    mTables[0]; // the default table always exists
    mChangedListenerP->SetConnectionName(QStringLiteral("KeymapsChanged.Action"));
}

Kiv_KeymapMgr::~Kiv_KeymapMgr() = default;

void Kiv_KeymapMgr::setKeyMapsDirPath(const QString &iPath)
{
    mDirPath = iPath;
}

void Kiv_KeymapMgr::clearMgr()
{
    currentTable().clear();
    notifyKeymapsChanged();
}

// --- Tables and languages

int Kiv_KeymapMgr::setupCurrentLang(int iLang)
{
    const int lang = iLang < 0 ? KivPlatform::keyboardLanguage() & 0xff : iLang;
    mCurrentLang = lang == cEnglish ? 0 : lang;
    return mCurrentLang;
}

Kiv_KeymapMgr::KeyMapping &Kiv_KeymapMgr::KeyMap(int iLang)
{
    const int lang = iLang < 0 ? setupCurrentLang(-1) : iLang;
    if (lang != cEnglish) {
        const auto table = mTables.find(lang);
        if (table != mTables.end())
            return table->second;
    }
    return mTables[0];
}

Kiv_KeymapMgr::KeyMapping &Kiv_KeymapMgr::KeyMap()
{
    return KeyMap(-1);
}

// The table the current language reads: its own when one was loaded, else the default one.
// Changes go there too, so a change never makes an empty table that hides the default one.
Kiv_KeymapMgr::KeyMapping &Kiv_KeymapMgr::currentTable()
{
    return KeyMap(mCurrentLang);
}

bool Kiv_KeymapMgr::loaded(int iLang)
{
    const int lang = iLang < 0 ? setupCurrentLang(-1) : iLang;
    return mTables.count(lang == cEnglish ? 0 : lang) > 0;
}

// --- Reading

bool Kiv_KeymapMgr::loadAll(const QString &iDir, const QString &iBaseName)
{
    setKeyMapsDirPath(iDir);
    bool ok = load(iBaseName, 0);
    const QDir dir(iDir);
    if (!dir.exists())
        return ok;
    for (const QString &file : dir.entryList({ QStringLiteral("*.xml") }, QDir::Files)) {
        const QString name = file.chopped(4);
        if (!name.startsWith(iBaseName) || name.indexOf(QLatin1Char('-')) < 0)
            continue;
        // Languages the system knows by their English names (exactly), English excepted.
        const QString language = name.section(QLatin1Char('-'), 1);
        const int lang = KivPlatform::languageIdForName(language);
        if (lang > 0 && lang != cEnglish && KivPlatform::languageName(lang) == language)
            ok = load(name, lang) && ok;
    }
    return ok;
}

bool Kiv_KeymapMgr::load(const QString &iName, int iLang)
{
    const QString directory = mDirPath.isEmpty() ? Kib_Resource::getResourcePath() : mDirPath;
    QFile file;
    if (!Kiv_OpenDescriptionFile(file, { directory + iName + QStringLiteral(".xml"), iName })) {
        qWarning("Kiv_KeymapMgr::load cannot open resource %s", qPrintable(iName));
        return false;
    }
    // The file itself, whatever name or link reached it: an include of a file being read is a
    // cycle. And however files include one another, one reading opens a bounded number.
    const QString path = QFileInfo(file).canonicalFilePath();
    if (mLoading.isEmpty())
        mFilesThisReading = 0;
    if (mLoading.contains(path) || mLoading.size() >= cMaxIncludeDepth
        || ++mFilesThisReading > cMaxFilesPerReading) {
        qWarning("Kiv_KeymapMgr::parseIncludes, %s includes itself or includes too many files",
                 qPrintable(iName));
        return false;
    }
    const QByteArray xml = file.read(cKivMaxDescriptionSize);
    mLoading.append(path);
    const bool ok = parseDocument(xml, iLang);
    mLoading.removeLast();
    return ok;
}

bool Kiv_KeymapMgr::loadFromXMLString(const QString &iXml, int iLang)
{
    return parseDocument(iXml, iLang);
}

// What a keymap file asks for, in its order: mappings, includes and the fault that ends it. A
// file is read to its end before any of it is carried out, so that text which is no XML (or
// too deep) adds nothing.
struct Kiv_KeymapMgr::Reading
{
    enum Kind { Entry, Include, Fault };
    struct Step
    {
        Kind kind;
        QString text; // the include's name, or the fault's message
        QString key, action, identifier, script, context, description;
        bool custom = false;
    };
    std::vector<Step> steps;
    bool stopped = false; // a fault was met: the rest is only checked as XML

    void fault(const QString &iMessage)
    {
        steps.push_back({ Fault, iMessage, {}, {}, {}, {}, {}, {} });
        stopped = true;
    }
};

template<class Text> bool Kiv_KeymapMgr::parseDocument(const Text &iXml, int iLang)
{
    if (!Kiv_XmlTagsAreSane(iXml, QStringLiteral("Kiv_KeymapMgr load")))
        return false;
    QXmlStreamReader reader(iXml); // reads without recursion, however deep the text nests
    reader.setNamespaceProcessing(false); // tags are compared as written, prefixes included
    Reading reading;
    if (reader.readNextStartElement())
        xmlDocParser(reader, reading);
    while (!reader.atEnd()) // after a fault the rest is only checked as XML
        reader.readNext();
    if (reader.hasError()) {
        qWarning("Kiv_KeymapMgr load parse error %s at line %d column %d",
                 qPrintable(reader.errorString()), int(reader.lineNumber()),
                 int(reader.columnNumber()));
        return false;
    }

    const int remembered = mCurrentLang;
    setupCurrentLang(iLang);
    mTables[mCurrentLang]; // a file gives its language a table of its own
    bool ok = true;
    for (const Reading::Step &step : reading.steps) {
        if (step.kind == Reading::Fault) {
            qWarning("%s", qPrintable(step.text));
            ok = false;
            break;
        }
        if (step.kind == Reading::Include) {
            if (!load(step.text, mCurrentLang)) {
                ok = false;
                break;
            }
            continue;
        }
        // Files repeat their keys across contexts: each text is turned into a sequence once.
        auto sequence = mKeyCache.constFind(step.key);
        if (sequence == mKeyCache.constEnd())
            sequence = mKeyCache.insert(step.key, QKeySequence(step.key, QKeySequence::NativeText));
        if (!add(*sequence, step.action, step.context + QLatin1String("::") + step.identifier,
                 step.script, step.context, step.description, step.custom))
            qWarning("Kiv_KeymapMgr::load, '%s' is not a key sequence; its entry is skipped",
                     qPrintable(step.key));
    }
    mCurrentLang = remembered;
    if (mLoading.isEmpty())
        mKeyCache.clear();
    return ok;
}

void Kiv_KeymapMgr::xmlDocParser(QXmlStreamReader &ioReader, Reading &ioReading)
{
    if (ioReader.qualifiedName() != QLatin1String("KeyMappings")) {
        ioReading.fault(QStringLiteral("Kiv_KeymapMgr::xmlDocParser, unexpected top-level tag <%1>")
                            .arg(ioReader.qualifiedName()));
        return;
    }
    while (!ioReading.stopped && ioReader.readNextStartElement()) {
        if (ioReader.qualifiedName() == QLatin1String("Entries"))
            parseEntries(ioReader, ioReading);
        else if (ioReader.qualifiedName() == QLatin1String("Includes"))
            parseIncludes(ioReader, ioReading);
        else
            ioReading.fault(QStringLiteral("Kiv_KeymapMgr::xmlParser, unexpected tag <%1>")
                                .arg(ioReader.qualifiedName()));
    }
}

void Kiv_KeymapMgr::parseIncludes(QXmlStreamReader &ioReader, Reading &ioReading)
{
    while (!ioReading.stopped && ioReader.readNextStartElement()) {
        if (ioReader.qualifiedName() != QLatin1String("File")) {
            ioReading.fault(QStringLiteral("Kiv_KeymapMgr::parseIncludes, unexpected tag <%1>")
                                .arg(ioReader.qualifiedName()));
            return;
        }
        ioReading.steps.push_back(
            { Reading::Include,
              ioReader.readElementText(QXmlStreamReader::IncludeChildElements),
              {},
              {},
              {},
              {},
              {},
              {} });
    }
}

void Kiv_KeymapMgr::parseEntries(QXmlStreamReader &ioReader, Reading &ioReading)
{
    const QString context = ioReader.attributes().value(QLatin1String("Context")).toString();
    while (!ioReading.stopped && ioReader.readNextStartElement()) {
        if (ioReader.qualifiedName() != QLatin1String("Entry")) {
            ioReading.fault(QStringLiteral("Kiv_KeymapMgr::xmlParser, unexpected tag <%1>")
                                .arg(ioReader.qualifiedName()));
            return;
        }
        parseEntry(ioReader, context, ioReading);
    }
}

void Kiv_KeymapMgr::parseEntry(QXmlStreamReader &ioReader, const QString &iContext,
                               Reading &ioReading)
{
    Reading::Step step { Reading::Entry, {}, {}, {}, {}, {}, iContext, {} };
    const QXmlStreamAttributes attributes = ioReader.attributes();
    step.identifier = attributes.value(QLatin1String("id")).toString();
    step.key = attributes.value(QLatin1String("key")).toString();
    while (ioReader.readNextStartElement()) {
        const QStringView tag = ioReader.qualifiedName();
        if (tag == QLatin1String("CustomKeyMapping")) {
            step.custom = true;
            ioReader.skipCurrentElement();
            continue;
        }
        QString *field = tag == QLatin1String("Action") ? &step.action
            : tag == QLatin1String("ActionID")          ? &step.identifier
            : tag == QLatin1String("ActionScript")      ? &step.script
            : tag == QLatin1String("KeySequence")       ? &step.key
            : tag == QLatin1String("Context")           ? &step.context
            : tag == QLatin1String("Description")       ? &step.description
                                                        : nullptr;
        if (field)
            *field = ioReader.readElementText(QXmlStreamReader::IncludeChildElements);
        else
            ioReader.skipCurrentElement(); // other fields are someone else's
    }
    if (step.key.isEmpty())
        ioReading.fault(QStringLiteral("Kiv_KeymapMgr::parseEntry, missing tag KeySequence"));
    else if (step.context.isEmpty())
        ioReading.fault(QStringLiteral("Kiv_KeymapMgr::parseEntry, missing tag Context"));
    else
        ioReading.steps.push_back(std::move(step));
}

// --- Changing

bool Kiv_KeymapMgr::add(const QKeySequence &iKey, const QString &iAction, const QString &iActionID,
                        const QString &iActionScript, const QString &iContext,
                        const QString &iDescription, bool iCustom)
{
    // A sequence of keys Qt cannot name ("CtrJl+") has no text to be stored or written under.
    const QString keyText = iKey.toString(QKeySequence::PortableText);
    if (keyText.isEmpty() || iContext.isEmpty())
        return false;
    KeyMappingInfo &info = currentTable()[iContext + QLatin1String("::") + keyText];
    info = { iAction, iActionID, iDescription, iCustom, iActionScript };
    notifyKeymapsChanged();
    return true;
}

bool Kiv_KeymapMgr::addOrReplace(const QKeySequence &iKey, const QString &iAction,
                                 const QString &iActionID, const QString &iActionScript,
                                 const QString &iContext, const QString &iDescription, bool iCustom)
{
    // The same table key is the same context and key: add() replaces in place.
    return add(iKey, iAction, iActionID, iActionScript, iContext, iDescription, iCustom);
}

bool Kiv_KeymapMgr::actionSetup(const QString &iActionID, const QString &iText,
                                const QString &iDescription, bool iIsScript)
{
    bool changed = false;
    for (KeyMappingInfo &info : currentTable()) {
        if (info.actionID != iActionID)
            continue;
        (iIsScript ? info.actionScript : info.action) = iText;
        info.description = iDescription;
        changed = true;
    }
    if (changed)
        notifyKeymapsChanged();
    return changed;
}

void Kiv_KeymapMgr::removeKeysOfContext(const QString &iContext)
{
    KeyMapping &table = currentTable();
    const QString prefix = iContext + QLatin1String("::");
    bool removed = false;
    // Keys of one context sort together, from the prefix on.
    for (auto it = table.lowerBound(prefix); it != table.end() && it.key().startsWith(prefix);) {
        it = table.erase(it);
        removed = true;
    }
    if (removed)
        notifyKeymapsChanged();
}

void Kiv_KeymapMgr::notifyKeymapsChanged()
{
    if (mNotifyPending)
        return;
    mNotifyPending = true;
    mNotifyTaskP = std::make_unique<TaskSchedulerTask>(
        QStringLiteral("KeymapsChangedNotifyTask"), 10, [this] { notifyKeymapsChangedTask(); },
        true, 0, false);
    TaskScheduler::instance().addTask(mNotifyTaskP.get(), false);
}

void Kiv_KeymapMgr::notifyKeymapsChangedTask()
{
    mNotifyPending = false;
    // The task object goes after its callback (deleting it here would stop nothing more).
    std::unique_ptr<TaskSchedulerTask> done = std::move(mNotifyTaskP);
    if (mChangedListenerP->isConnectedToModel()) {
        Bnd_Variant result;
        mChangedListenerP->SendMessageToModel(Bndt_Action_API::MsgAction(&result, Bnd_ArgList()));
    }
}

// --- Looking up and acting

QKeySequence Kiv_KeymapMgr::keySequence(const QKeyEvent *iEvent)
{
    if (!iEvent)
        return QKeySequence();
    int key = iEvent->key();
    if (key == 0 && iEvent->text().size() == 1)
        key = iEvent->text().at(0).unicode();
    const Qt::KeyboardModifiers modifiers = iEvent->modifiers()
        & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::ShiftModifier);
    return QKeySequence(QKeyCombination(modifiers, Qt::Key(key)));
}

const Kiv_KeymapMgr::KeyMappingInfo *Kiv_KeymapMgr::lookupInfo(const QKeySequence &iKey,
                                                               const QString &iContext, int iLang)
{
    const QString keyText = iKey.toString(QKeySequence::PortableText);
    if (keyText.isEmpty() || iContext.isEmpty())
        return nullptr;
    const KeyMapping &table = KeyMap(iLang);
    const auto it = table.constFind(iContext + QLatin1String("::") + keyText);
    return it == table.constEnd() ? nullptr : &it.value();
}

QString Kiv_KeymapMgr::lookup(const QKeySequence &iKey, const QString &iContext, int iLang)
{
    const KeyMappingInfo *info = lookupInfo(iKey, iContext, iLang);
    return info ? info->action : QString();
}

QString Kiv_KeymapMgr::lookup(QKeyEvent *iEvent, const QString &iContext, int iLang)
{
    return lookup(keySequence(iEvent), iContext, iLang);
}

QString Kiv_KeymapMgr::lookup(const QString &iKeyText, const QString &iContext, int iLang)
{
    return lookup(QKeySequence(iKeyText, QKeySequence::PortableText), iContext, iLang);
}

bool Kiv_KeymapMgr::hasAction(QKeyEvent *iEvent, const QString &iContext, int iLang)
{
    return lookupInfo(keySequence(iEvent), iContext, iLang) != nullptr;
}

bool Kiv_KeymapMgr::isMenuAction(const KeyMappingInfo &iInfo) const
{
    return section(iInfo.actionID, 1) == QLatin1String("MenuAction");
}

Mnu_Segment *Kiv_KeymapMgr::menuSegmentFor(const QKeySequence &iKey, const KeyMappingInfo &iInfo)
{
    if (!mMenuBarP)
        return nullptr;
    const QString accelerator = section(iInfo.actionID, 2);
    return mMenuBarP->getSegmentByAccelerator(
        accelerator.isEmpty() ? iKey : QKeySequence(accelerator, QKeySequence::PortableText));
}

QString Kiv_KeymapMgr::getMenuActionLabel(const QKeySequence &iKey, const KeyMappingInfo &iInfo)
{
    Mnu_Segment *segment = isMenuAction(iInfo) ? menuSegmentFor(iKey, iInfo) : nullptr;
    if (!segment)
        return QString();
    const QString text = segment->getDisplayedText().isEmpty() ? segment->getItemText()
                                                               : segment->getDisplayedText();
    // Without mnemonic markers: "&&" is a plain "&", a single one marks the next letter.
    QString label;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        label += text.at(i);
    }
    return label;
}

bool Kiv_KeymapMgr::handleAction(QKeyEvent *iEvent, const QString &iContext,
                                 const Bnd_ConnectionEnvironmentPtr &iEnv, int iLang)
{
    // Held here: what runs may destroy the widget whose environment this is.
    const Bnd_ConnectionEnvironmentPtr env = iEnv;
    const QKeySequence key = keySequence(iEvent);
    const KeyMappingInfo *found = lookupInfo(key, iContext, iLang);
    if (!found)
        return false;
    const KeyMappingInfo info = *found; // what runs may change the tables

    if (isMenuAction(info)) {
        if (auto *command = qobject_cast<Mnu_CommandSegment *>(menuSegmentFor(key, info)))
            if (command->isEnabled(true))
                command->runCommand();
        return true;
    }
    if (!info.actionScript.isEmpty()) {
        const std::unique_ptr<Uip_ParseNode> script = Uip_ParseScript(info.actionScript, nullptr);
        if (!script || !script->ConnectAndTypeCheck(env, nullptr))
            return false;
        Bnd_Variant result;
        script->Evaluate(&result);
        return true;
    }
    if (!info.action.isEmpty()) {
        Bnd_ListenerBase action(QString(), env);
        action.SetConnectionName(info.action);
        action.connect(env);
        bool enabled = false;
        if (action.SendMessageToModel(Bndt_Action_API::MsgIsEnabled(&enabled)) && enabled) {
            Bnd_Variant result;
            action.SendMessageToModel(Bndt_Action_API::MsgAction(&result, Bnd_ArgList()));
            return true;
        }
    }
    return false;
}

// --- Writing and checking

QString Kiv_KeymapMgr::customKeyMappingsToXml()
{
    QDomDocument document;
    QDomElement root = document.createElement(QStringLiteral("KeyMappings"));
    document.appendChild(root);
    QDomElement entries = document.createElement(QStringLiteral("Entries"));
    root.appendChild(entries);
    const auto text = [&document](const char *iTag, const QString &iValue) {
        QDomElement element = document.createElement(QString::fromLatin1(iTag));
        element.appendChild(document.createTextNode(iValue));
        return element;
    };
    const KeyMapping &table = KeyMap();
    for (auto it = table.constBegin(); it != table.constEnd(); ++it) {
        if (!it->custom)
            continue;
        const int split = it.key().indexOf(QLatin1String("::"));
        QDomElement entry = document.createElement(QStringLiteral("Entry"));
        entry.appendChild(text("KeySequence", it.key().mid(split + 2)));
        entry.appendChild(text("Context", it.key().left(split)));
        entry.appendChild(text("Action", it->action));
        entry.appendChild(document.createElement(QStringLiteral("CustomKeyMapping")));
        entries.appendChild(entry);
    }
    return document.toString(1);
}

bool Kiv_KeymapMgr::dump(const QString &iFilter, int iLang)
{
    const int lang = iLang < 0 ? setupCurrentLang(-1) : iLang;
    const KeyMapping &table = KeyMap(lang);
    const char *const rule = "================================================";
    qDebug("%s", rule);
    qDebug("Dump Key Mappings: (lang = %d)", lang);
    qDebug(" - - - - - - - - - - - - - - - - - - - - - - - -");
    for (auto it = table.constBegin(); it != table.constEnd(); ++it)
        if (iFilter.isEmpty() || it.key().contains(iFilter))
            qDebug("%-20s%.30s%.50s", qPrintable(it.key()), qPrintable(it->actionID),
                   qPrintable(it->action));
    qDebug("Total Key Mappings found: %d", int(table.size()));
    qDebug("%s", rule);
    return true;
}

QStringList Kiv_KeymapMgr::conflicts(const QString &iContext,
                                     const Bnd_ConnectionEnvironmentPtr &iEnv, int iLang)
{
    QStringList problems;
    const KeyMapping &table = KeyMap(iLang);
    const QString prefix = iContext + QLatin1String("::");
    for (auto it = table.lowerBound(prefix); it != table.constEnd() && it.key().startsWith(prefix);
         ++it) {
        const QKeySequence key(it.key().mid(prefix.size()), QKeySequence::PortableText);
        const KeyMappingInfo &info = *it;
        if (isMenuAction(info)) {
            Mnu_Segment *item = mMenuBarP ? menuSegmentFor(key, info) : nullptr;
            if (mMenuBarP && !item)
                problems << QStringLiteral("%1: the menu action finds no menu item").arg(it.key());
            else if (item && !qobject_cast<Mnu_CommandSegment *>(item))
                problems << QStringLiteral("%1: the menu item \"%2\" is no command")
                                .arg(it.key(), item->getItemText());
            continue;
        }
        if (mMenuBarP && mMenuBarP->isDefinedAccelerator(key)) {
            Mnu_Segment *item = mMenuBarP->getSegmentByAccelerator(key);
            problems << QStringLiteral("%1: also the accelerator of the menu item \"%2\"")
                            .arg(it.key(), item ? item->getItemText() : QString());
        }
        if (!info.actionScript.isEmpty()) {
            const std::unique_ptr<Uip_ParseNode> script
                = Uip_ParseScript(info.actionScript, nullptr);
            if (!script || !script->ConnectAndTypeCheck(iEnv, nullptr))
                problems << QStringLiteral("%1: the script \"%2\" does not connect")
                                .arg(it.key(), info.actionScript);
        } else if (!info.action.isEmpty() && iContext != QLatin1String("Hotkey")) {
            // (A hot key's "action" is the text it types.)
            Bnd_ListenerBase action(QString(), iEnv);
            action.SetConnectionName(info.action);
            action.connect(iEnv);
            if (!action.isConnectedToModel())
                problems << QStringLiteral("%1: the action \"%2\" resolves to nothing")
                                .arg(it.key(), info.action);
        }
    }
    return problems;
}
