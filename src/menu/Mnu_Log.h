#pragma once

#include <QLoggingCategory>

// The menu classes' log: problems with descriptions are warnings (shown by default), dumps are
// info lines (shown by default, asked for by the caller), and the trace of what a menu builds
// is debug output (off unless "kiv.menu.debug=true" is set in QT_LOGGING_RULES).
Q_DECLARE_LOGGING_CATEGORY(lcMenu)
