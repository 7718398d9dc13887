#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "kivcore_export.h"

#include <QString>

class QObject;
class QWidget;

/// The window-unique form of a name: a name that begins with "$Window" gets the lower-case
/// hexadecimal address of the widget's top-level window in front ("$Window.Selection" becomes
/// "1f3a2c0$Window.Selection"), so two copies of one form in two windows address distinct
/// models. Any other name, or a null widget, gives the trimmed name.
KIVCORE_EXPORT QString Kiv_SubscriptionIdentifierSubstitution(QString iName, QWidget *iWidget);

/// The walk that hands an environment to every bound widget of a tree.
namespace Kiv_ConnectionUtils {
/// A bound widget (Kiv_WidgetConnectInterface) gets makeConnections() and connects its own
/// children; any other object passes the walk on to its children.
KIVCORE_EXPORT void recursiveConnect(QObject *iObject, Bnd_ConnectionEnvironmentPtr iEnv);
/// recursiveConnect for each child, in creation order; children added meanwhile are skipped.
KIVCORE_EXPORT void recursiveConnectChildren(QObject *iObject, Bnd_ConnectionEnvironmentPtr iEnv);
} // namespace Kiv_ConnectionUtils
