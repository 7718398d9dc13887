#pragma once

#include "kivcore_export.h"

#include <QString>

class QWidget;

/// Builds the form `iFormName` (resource directory + "Forms/" + name + ".ui") with the widget
/// factory, so it may hold KivCore widgets and other registered forms. With a parent, the
/// form's top widget becomes its child, and is put into the parent's layout when
/// `iAddToParentLayout` is set and the parent has one. Answers the top widget, or null when the
/// form cannot be read or built. `iName` is accepted for the callers' convenience; the form's
/// own object names stand. Binding the widgets to models is a separate step
/// (Kiv_ConnectionUtils::recursiveConnect).
KIVCORE_EXPORT QWidget *Kiv_CreateWidgetFromUILayout(const QString &iFormName, QWidget *iParent,
                                                     const char *iName, bool iAddToParentLayout);
