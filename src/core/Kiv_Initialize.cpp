#include "Kiv_Initialize.h"

#include "Kib_Assert.h"
#include "Kib_DirPaths.h"
#include "Kib_Resource.h"
#include "Kiv_ScriptRunner.h"

#include <QCoreApplication>

namespace {
bool gInitialized = false;
}

void Kiv_Initialize(const char *iArg)
{
    if (gInitialized)
        return;
    if (!QCoreApplication::instance())
        Kib_Assert::handleFailedAssert("qApp", "coresw/UIF/Kiv/Kiv_Initialize", 38);
    gInitialized = true; // before the steps below, which may call back into the library
    Kib_DirPaths::Initialize(iArg);
    Kib_Resource::setResourcePath(
        Kib_DirPaths::GetPath(Kib_DirPaths::DirPath_t(Kib_DirPaths::ResourceDir), true));
    Kiv_InstallScriptRunner(); // delayed scripts of the runtime run through the script parser
}

bool Kiv_IsInitialized()
{
    return gInitialized;
}
