#pragma once

/// Registers the library's own widget classes with the widget factory. The registry calls it
/// before its first use, which is also what keeps the table in a static link: nothing else
/// refers to it.
void Kiv_RegisterLibraryWidgets();
