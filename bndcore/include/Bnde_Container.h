#pragma once

#include "Bnd_ModelBase.h"
#include "bndcore_export.h"

#include <QHash>
#include <QStringList>

#include <memory>
#include <utility>

/// A model with named children, which are models themselves (values, arrays, actions or
/// containers). Only the container is published; "Clips.Actions.open" reaches the child
/// "open" of the child container "Actions" of the published container "Clips".
///
///     Bnde_Container clips(QStringLiteral("Clips"));
///     auto *names = clips.add<Bnde_Array<QString>>(QStringLiteral("name"));
///     clips.Publish();
///
/// The container owns its children. Its size (MsgGetSize) is the size set with setSize(), by
/// default the number of children. Un-publishing the container disconnects the listeners of
/// its children too.
class BNDCORE_EXPORT Bnde_Container : public Bnd_ModelBase
{
public:
    explicit Bnde_Container(const QString &iName = QString());
    ~Bnde_Container() override;

    /// Makes a child of type M from the arguments that follow the name, and answers it.
    template<class M, class... Args> M *add(const QString &iChildName, Args &&...iArgs)
    {
        auto child
            = std::make_unique<M>(childConnectionName(iChildName), std::forward<Args>(iArgs)...);
        M *raw = child.get();
        return addChild(iChildName, std::move(child)) ? raw : nullptr;
    }
    /// Adds a child under a name without "." or "["; answers false when the name is taken.
    bool addChild(const QString &iChildName, std::unique_ptr<Bnd_ModelBase> iChild);
    /// Removes and destroys a child (its listeners wait for a new one).
    bool removeChild(const QString &iChildName);
    Bnd_ModelBase *child(const QString &iChildName) const;
    /// The child names in the order they were added.
    QStringList childNames() const { return mOrder; }

    /// The size answered to MsgGetSize; -1 (the default) means the number of children.
    void setSize(long iSize);
    long size() const;

    Bnd_ModelInterface *modelInterface_findChild(const QString &iPath) const override;
    void detachAllListeners() override;

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override;

private:
    QString childConnectionName(const QString &iChildName) const;
    /// Tells the dictionary that listeners waiting below this container may connect now.
    void announceChildren();

    QHash<QString, Bnd_ModelBase *> mChildren;
    QStringList mOrder;
    std::vector<std::unique_ptr<Bnd_ModelBase>> mOwned;
    long mSize = -1;
};
