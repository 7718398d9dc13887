#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Kiv_MenuBar.h"
#include "kivcore_export.h"

#include <QHash>
#include <QKeySequence>
#include <QMap>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <map>
#include <memory>
#include <set>

class Bnd_ListenerBase;
class Mnu_Segment;
class QXmlStreamReader;
class QKeyEvent;
class TaskSchedulerTask;

/// The process-wide key map: what a key sequence pressed in a named context (a screen or a tool
/// window, "MainWindow", "LineEdit", "Timeline") does: invoke an action model, run an action
/// script, or trigger a menu item.
///
/// The mappings come from keymap files, one default file and one per keyboard language, and can
/// be changed at run time (custom mappings, which customKeyMappingsToXml() writes back). A table
/// is kept per language number (the primary language of a keyboard layout: English 9, German 7,
/// French 12...); English is always the default table, number 0, and a language without a file
/// of its own uses the default table. Every change is announced, once per turn of the event
/// loop, by invoking the action model "KeymapsChanged.Action".
///
/// Widgets offer their key presses:
///
///     if (Kiv_KeymapMgr::getInstance()->handleAction(event, "Timeline", env))
///         return; // the key did something
///
/// A language argument below 0 means the current language (that of the keyboard layout).
/// GUI thread only.
class KIVCORE_EXPORT Kiv_KeymapMgr
{
public:
    /// One mapping.
    struct KeyMappingInfo
    {
        /// Connection name of an action model to invoke (may be empty).
        QString action;
        /// The context, "::" and the identifier of the file ("Timeline::Save"). A menu action's
        /// identifier is "MenuAction", optionally followed by "::" and the accelerator of the
        /// menu item to trigger when it differs from the mapped key.
        QString actionID;
        /// The text users see.
        QString description;
        /// A user's own mapping (written by customKeyMappingsToXml()).
        bool custom = false;
        /// An action script (may be empty).
        QString actionScript;
    };
    /// The mappings of one language by context + "::" + key sequence in portable text
    /// ("Timeline::Ctrl+S"), in key order.
    typedef QMap<QString, KeyMappingInfo> KeyMapping;

    /// How deep keymap files may include one another, and how many files one reading (a file
    /// and what it includes) may open.
    static constexpr int cMaxIncludeDepth = 16;
    static constexpr int cMaxFilesPerReading = 256;

    /// The one manager, made when the library is loaded.
    static Kiv_KeymapMgr *getInstance();

    /// The folder of the keymap files (with its trailing separator).
    void setKeyMapsDirPath(const QString &iPath);
    const QString &keyMapsDirPath() const { return mDirPath; }
    /// The menu bar whose items menu actions trigger (may be null).
    void setMenuBar(Kiv_MenuBar *iMenuBar) { mMenuBarP = iMenuBar; }
    Kiv_MenuBar *menuBar() const { return mMenuBarP.data(); }
    /// Empties the table of the current language.
    void clearMgr();

    /// Loads `iBaseName` from the folder as the default table, then every "<base>-<Language>"
    /// file whose language name the system knows ("Keymap-French" into French's table).
    /// Answers whether every file read whole.
    bool loadAll(const QString &iDir, const QString &iBaseName);
    /// Loads the file `iName` + ".xml" from the keymap folder (or the resource folder), or
    /// else `iName` as it is, into the table of the language. Answers whether the whole file
    /// (and what it includes) read; the mappings before a fault stay.
    bool load(const QString &iName, int iLang);
    /// The same from the text of a keymap file.
    bool loadFromXMLString(const QString &iXml, int iLang);
    /// Whether the language has a table of its own.
    bool loaded(int iLang);
    /// Makes the language current (below 0: the keyboard layout's); answers it, 0 for English.
    int setupCurrentLang(int iLang);
    int currentLang() const { return mCurrentLang; }

    /// Adds a mapping to the current language's table, replacing one of the same context and
    /// key; false for an empty key sequence or context.
    bool add(const QKeySequence &iKey, const QString &iAction, const QString &iActionID,
             const QString &iActionScript, const QString &iContext, const QString &iDescription,
             bool iCustom);
    /// Changes the mapping of the same context and key in place, or adds one.
    bool addOrReplace(const QKeySequence &iKey, const QString &iAction, const QString &iActionID,
                      const QString &iActionScript, const QString &iContext,
                      const QString &iDescription, bool iCustom);
    /// Gives every mapping of the identifier a new action (or script) and description; answers
    /// whether any changed.
    bool actionSetup(const QString &iActionID, const QString &iText, const QString &iDescription,
                     bool iIsScript);
    /// Removes every mapping of the context from the current table.
    void removeKeysOfContext(const QString &iContext);

    /// The action model name of the mapping (empty when none).
    QString lookup(const QKeySequence &iKey, const QString &iContext, int iLang = -1);
    QString lookup(QKeyEvent *iEvent, const QString &iContext, int iLang = -1);
    QString lookup(const QString &iKeyText, const QString &iContext, int iLang = -1);
    /// Whether the key is mapped in the context.
    bool hasAction(QKeyEvent *iEvent, const QString &iContext, int iLang = -1);
    /// Does what the key is mapped to in the context: triggers the menu item, runs the script
    /// (connected in `iEnv`) or invokes the action when it is enabled. Answers whether the key
    /// was used.
    bool handleAction(QKeyEvent *iEvent, const QString &iContext,
                      const Bnd_ConnectionEnvironmentPtr &iEnv, int iLang = -1);
    bool isMenuAction(const KeyMappingInfo &iInfo) const;
    /// The label of the menu item a menu-action mapping triggers (without mnemonic markers).
    QString getMenuActionLabel(const QKeySequence &iKey, const KeyMappingInfo &iInfo);

    /// The table of the language: its own, or the default one.
    KeyMapping &KeyMap(int iLang);
    KeyMapping &KeyMap();

    /// The current language's custom mappings as a keymap file (key, context and action only).
    QString customKeyMappingsToXml();
    /// Writes the table to the debug log; `iFilter` (when not empty) keeps the mappings whose
    /// key contains it.
    bool dump(const QString &iFilter, int iLang = -1);

    /// What is wrong with the mappings of a context: keys that are also menu accelerators (and
    /// are not menu actions), menu actions that find no menu item, and actions or scripts whose
    /// names connect to nothing in `iEnv`. One line per problem; empty when the context is
    /// clean.
    QStringList conflicts(const QString &iContext,
                          const Bnd_ConnectionEnvironmentPtr &iEnv = Bnd_ConnectionEnvironmentPtr(),
                          int iLang = -1);

    /// The key sequence of a key event: its key (or its one character) with the Ctrl, Alt,
    /// Meta and Shift modifiers.
    static QKeySequence keySequence(const QKeyEvent *iEvent);
    /// The mapping of the key in the context; null when none.
    const KeyMappingInfo *lookupInfo(const QKeySequence &iKey, const QString &iContext,
                                     int iLang = -1);

    ~Kiv_KeymapMgr();
    Kiv_KeymapMgr(const Kiv_KeymapMgr &) = delete;
    Kiv_KeymapMgr &operator=(const Kiv_KeymapMgr &) = delete;

private:
    Kiv_KeymapMgr();
    friend struct Kiv_KeymapMgrMaker;

    template<class Text> bool parseDocument(const Text &iXml, int iLang);
    struct Reading;
    void xmlDocParser(QXmlStreamReader &ioReader, Reading &ioReading);
    void parseIncludes(QXmlStreamReader &ioReader, Reading &ioReading);
    void parseEntries(QXmlStreamReader &ioReader, Reading &ioReading);
    void parseEntry(QXmlStreamReader &ioReader, const QString &iContext, Reading &ioReading);
    void notifyKeymapsChanged();
    void notifyKeymapsChangedTask();
    KeyMapping &currentTable();
    Mnu_Segment *menuSegmentFor(const QKeySequence &iKey, const KeyMappingInfo &iInfo);

    QString mDirPath;
    int mCurrentLang = 0;
    std::map<int, KeyMapping> mTables;
    QPointer<Kiv_MenuBar> mMenuBarP; // a menu bar may go before the key map
    std::unique_ptr<Bnd_ListenerBase> mChangedListenerP;
    std::unique_ptr<TaskSchedulerTask> mNotifyTaskP;
    bool mNotifyPending = false;
    /// The files being read, outermost first: an include of one of them is a cycle.
    QStringList mLoading;
    int mFilesThisReading = 0;
    /// Key texts read while loading, with their sequences.
    QHash<QString, QKeySequence> mKeyCache;
};
