#pragma once

#include "kivcore_export.h"

/// The library's version, "major.minor.patch".
KIVCORE_EXPORT const char *Kiv_Version();
