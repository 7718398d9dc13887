#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "kivcore_export.h"

#include <typeinfo>

/// The mix-in of every widget that can be bound to models. Bound widgets derive from their Qt
/// class first and from this interface last, so Kiv_ConnectionUtils::recursiveConnect finds it
/// by a run-time cast from QObject.
class KIVCORE_EXPORT Kiv_WidgetConnectInterface
{
public:
    Kiv_WidgetConnectInterface() = default;
    Kiv_WidgetConnectInterface(const Kiv_WidgetConnectInterface &) = default;
    virtual ~Kiv_WidgetConnectInterface();

    virtual const std::type_info &getTypeInfo() const;
    /// Binds every listener of this widget, and of what it hosts, in the environment. A widget
    /// that has bound children passes the environment on to them itself.
    virtual void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) = 0;
};
