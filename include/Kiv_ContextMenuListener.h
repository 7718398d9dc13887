#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "kivcore_export.h"

#include <QString>

class QMenu;
class QPoint;

/// The listener behind a widget's context-menu connection: it is bound to a model by name and
/// pops up the menu that model supplies.
///
/// This implementation binds to a value model holding a `QMenu *` that the host owns:
///
///     QMenu menu;
///     Bnde_SimpleValue<QMenu *> menuModel(QStringLiteral("Transport.ContextMenu"), &menu);
///     menuModel.Publish();
///     button->setContextMenuConnectionSpec("Transport.ContextMenu");
///
/// A listener of menu models derives from it and overrides the virtual operations; a widget
/// takes it through its setContextMenuListener().
class KIVCORE_EXPORT Kiv_ContextMenuListener
{
public:
    Kiv_ContextMenuListener();
    virtual ~Kiv_ContextMenuListener();
    Kiv_ContextMenuListener(const Kiv_ContextMenuListener &) = delete;
    Kiv_ContextMenuListener &operator=(const Kiv_ContextMenuListener &) = delete;

    /// Names the model. An empty name detaches the listener.
    virtual void setConnectionName(const QString &iName);
    /// Attaches to the model of the name in `iEnv`; answers whether it is attached.
    virtual bool connect(const Bnd_ConnectionEnvironmentPtr &iEnv);
    virtual bool isConnected() const;
    /// Pops the model's menu up at `iGlobalPos` (without waiting for it to close). Answers
    /// whether a menu was shown; an unconnected listener or a model without a menu shows none.
    virtual bool popup(const QPoint &iGlobalPos);

private:
    Bnd_ConnectionToModel<Bndt_SimpleValue<QMenu *>> mListener;
};
