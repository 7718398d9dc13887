#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "kivcore_export.h"

#include <QString>

#include <memory>

class Mnu_QtManager;
class QPoint;

/// The listener behind a widget's context-menu connection: it is bound to a string model that
/// names a popup menu description, and pops that menu up, built by a Mnu_QtManager (from
/// registered generated code or the description file) and connected in the widget's
/// environment:
///
///     Bnde_SimpleValue<QString> menuModel(QStringLiteral("Transport.ContextMenu"),
///                                         QStringLiteral("Menus/TransportContext"));
///     menuModel.Publish();
///     button->setContextMenuConnectionSpec("Transport.ContextMenu");
///
/// The menu is made when it is first needed and kept while the model names the same
/// description. A listener of another kind of menu model derives from it and overrides the
/// virtual operations; a widget takes it through its setContextMenuListener().
class KIVCORE_EXPORT Kiv_ContextMenuListener
{
public:
    Kiv_ContextMenuListener();
    virtual ~Kiv_ContextMenuListener();
    Kiv_ContextMenuListener(const Kiv_ContextMenuListener &) = delete;
    Kiv_ContextMenuListener &operator=(const Kiv_ContextMenuListener &) = delete;

    /// Names the model. An empty name detaches the listener.
    virtual void setConnectionName(const QString &iName);
    /// Attaches to the model of the name in `iEnv`; answers whether it is attached. The menu's
    /// own names are connected in the same environment.
    virtual bool connect(const Bnd_ConnectionEnvironmentPtr &iEnv);
    virtual bool isConnected() const;
    /// Pops the menu up at `iGlobalPos` (without waiting for it to close). Answers whether a
    /// menu was shown: an unconnected listener, a model naming no description that can be
    /// read, or a menu without items shows none.
    virtual bool popup(const QPoint &iGlobalPos);
    /// The manager of the menu last shown (null before).
    Mnu_QtManager *manager() const { return mManagerP.get(); }

private:
    Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> mListener;
    Bnd_ConnectionEnvironmentPtr mEnv;
    QString mDescription;
    std::unique_ptr<Mnu_QtManager> mManagerP;
};
