#pragma once

#include "kivcore_export.h"

/// Makes KivCore the interpreter of BndCore's delayed-action queue
/// (Bnd_Utils::Bnd_AddDelayedAction). Each queued script is parsed, connected in the queued
/// environment with no widget (so "$Window" names stay as written) and evaluated; the runner
/// answers whether all three succeeded, and the queue logs a script that failed.
///
/// Kiv_Initialize calls it; calling it again is harmless and restores the runner after someone
/// replaced it.
KIVCORE_EXPORT void Kiv_InstallScriptRunner();
