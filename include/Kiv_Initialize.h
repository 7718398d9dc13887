#pragma once

#include "kivcore_export.h"

/// One-time start-up of the library: records the application's directory seed and sets the
/// resource directory that every image, form and description file is read from. Call it once,
/// after the application object exists; later calls do nothing, whatever their argument.
KIVCORE_EXPORT void Kiv_Initialize(const char *iArg);

/// Whether Kiv_Initialize has run.
KIVCORE_EXPORT bool Kiv_IsInitialized();
