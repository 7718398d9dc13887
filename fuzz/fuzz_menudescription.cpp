// libFuzzer target: the bytes are a menu description, read both as a menu bar and as a popup.
// What reads is connected, built into Qt menus and written out; the XML written must read
// back and write out again to the same text.

#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"

#include <QApplication>

#include <cstddef>
#include <cstdint>
#include <sstream>

namespace {
void quiet(QtMsgType, const QMessageLogContext &, const QString &) { }

template<class Manager> std::string writeXml(Manager &iManager)
{
    std::ostringstream out;
    if constexpr (std::is_same_v<Manager, Mnu_QtMenuBarManager>)
        iManager.saveMenuBar(out, QString(), Mnu_Segment::XMLFormat);
    else
        iManager.savePopupMenu(out, QString(), Mnu_Segment::XMLFormat);
    return out.str();
}

template<class Manager> void exercise(const QByteArray &iXml)
{
    Manager manager;
    if (!manager.parseDescription(iXml, QStringLiteral("fuzz")))
        return;
    std::ostringstream code;
    if constexpr (std::is_same_v<Manager, Mnu_QtMenuBarManager>) {
        manager.saveMenuBar(code, QStringLiteral("Fuzzed"), Mnu_Segment::CodeFormat);
        manager.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
        for (int i = 0; i < manager.getMenuCount(); ++i)
            manager.getMenuAt(i)->instantiateMenus();
    } else {
        manager.savePopupMenu(code, QStringLiteral("Fuzzed"), Mnu_Segment::CodeFormat);
        manager.makeConnections(Bnd_ConnectionEnvironment::blankEnvironment());
        manager.instantiateMenus();
        manager.aboutToShow();
    }
    const std::string once = writeXml(manager);
    Manager again;
    if (!again.parseDescription(QByteArray::fromStdString(once), QStringLiteral("written"))
        || writeXml(again) != once)
        __builtin_trap(); // what was written does not read back the same
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quiet);
    static int argc = 1;
    static char name[] = "fuzz_menudescription";
    static char *argv[] = { name, nullptr };
    new QApplication(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *iData, size_t iSize)
{
    const QByteArray xml(reinterpret_cast<const char *>(iData), qsizetype(iSize));
    exercise<Mnu_QtMenuBarManager>(xml);
    exercise<Mnu_QtManager>(xml);
    return 0;
}
