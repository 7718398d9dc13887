#pragma once

#include "kivcore_export.h"

#include <memory>

class Bnd_ListenerBase;
class Bnd_ModelBase;
class Kiv_ViewInterface;

/// Letting go of the listeners and models a binding no longer uses.
///
/// A binding drops its listener or its own model when its connection string changes, often
/// from inside a notification that is still being delivered through that very object. So the
/// object is detached at once (the listener's connection cleared, the model un-published, the
/// receive callback removed: no message reaches the widget through it any more) and deleted
/// when control returns to the event loop, like QObject::deleteLater(), or at the latest with
/// the application object. So the delivery that dropped it has finished by then, and a widget
/// rebound in a loop does not keep what it dropped. (A callback that opened a nested event loop,
/// a modal dialog, may still be on the stack; listeners and models are built to be deleted
/// inside their own callbacks.) Without an application object there is no event loop, and the
/// object is deleted at once.
///
/// GUI thread only.
namespace Kiv_RetireLater {
KIVCORE_EXPORT void listener(std::unique_ptr<Bnd_ListenerBase> iListener);
KIVCORE_EXPORT void model(std::unique_ptr<Bnd_ModelBase> iModel);
/// A view whose handler may still be running (its container went away from inside it): it
/// loses its container at once and is deleted later.
KIVCORE_EXPORT void view(std::unique_ptr<Kiv_ViewInterface> iView);
/// The objects waiting to be deleted.
KIVCORE_EXPORT int pendingCount();
} // namespace Kiv_RetireLater
