// libFuzzer target: the bytes are a keymap file, read into a language's table; what reads is
// looked up, dispatched, written out as custom mappings and read back.

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
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *iData, size_t iSize)
{
    Kiv_KeymapMgr &keymap = *Kiv_KeymapMgr::getInstance();
    keymap.setupCurrentLang(12);
    keymap.clearMgr();
    const QString xml = QString::fromUtf8(reinterpret_cast<const char *>(iData), qsizetype(iSize));
    keymap.loadFromXMLString(xml, 12);
    const Kiv_KeymapMgr::KeyMapping table = keymap.KeyMap(12);
    for (auto it = table.constBegin(); it != table.constEnd(); ++it) {
        const QString context = it.key().section(QLatin1String("::"), 0, 0);
        const QKeySequence key(it.key().section(QLatin1String("::"), 1),
                               QKeySequence::PortableText);
        if (key.isEmpty())
            continue;
        QKeyEvent press(QEvent::KeyPress, key[0].key(), key[0].keyboardModifiers());
        keymap.handleAction(&press, context, Bnd_ConnectionEnvironmentPtr(), 12);
    }
    keymap.conflicts(QStringLiteral("MainWindow"));
    keymap.loadFromXMLString(keymap.customKeyMappingsToXml(), 12);
    return 0;
}
