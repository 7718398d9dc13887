// libFuzzer target: the bytes are a keymap file, read into a language's table (its includes are
// looked for among the shipped keymaps); what reads is dispatched and checked for conflicts, and
// its custom mappings are written out and must read back with the same keys, contexts and
// actions.

#include "Kiv_KeymapMgr.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <cstddef>
#include <cstdint>

namespace {
void quiet(QtMsgType, const QMessageLogContext &, const QString &) { }
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(quiet);
    static int argc = 1;
    static char name[] = "fuzz_keymap";
    static char *argv[] = { name, nullptr };
    new QCoreApplication(argc, argv);
    Kiv_KeymapMgr::getInstance()->setKeyMapsDirPath(QStringLiteral(KIV_FUZZ_KEYMAPS "/"));
    return 0;
}

namespace {
// The custom mappings of a table as "context::key=action" lines.
QStringList customLines(const Kiv_KeymapMgr::KeyMapping &iTable)
{
    QStringList lines;
    for (auto it = iTable.constBegin(); it != iTable.constEnd(); ++it)
        if (it->custom)
            lines << it.key() + QLatin1Char('=') + it->action;
    return lines;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *iData, size_t iSize)
{
    // The bytes go to the table of the keyboard's language: the one the custom mappings are
    // written from.
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    const int lang = keymap.setupCurrentLang(-1);
    keymap.clearMgr();
    const QString xml = QString::fromUtf8(reinterpret_cast<const char *>(iData), qsizetype(iSize));
    keymap.loadFromXMLString(xml, lang);
    const Kiv_KeymapMgr::KeyMapping table = keymap.KeyMap(lang);
    for (auto it = table.constBegin(); it != table.constEnd(); ++it) {
        const QString context = it.key().section(QLatin1String("::"), 0, 0);
        const QKeySequence key(it.key().section(QLatin1String("::"), 1),
                               QKeySequence::PortableText);
        if (key.isEmpty())
            continue;
        QKeyEvent press(QEvent::KeyPress, key[0].key(), key[0].keyboardModifiers());
        keymap.handleAction(&press, context, Bnd_ConnectionEnvironmentPtr(), lang);
    }
    keymap.conflicts(QStringLiteral("MainWindow"));

    const QString custom = keymap.customKeyMappingsToXml();
    const QStringList written = customLines(keymap.KeyMap(lang));
    const int other = lang == 13 ? 14 : 13;
    keymap.setupCurrentLang(other);
    keymap.clearMgr();
    keymap.loadFromXMLString(custom, other);
    if (customLines(keymap.KeyMap(other)) != written)
        __builtin_trap(); // the custom mappings did not read back as they were
    return 0;
}
