#pragma once

#include "Bnd_ConnectionServiceInterface.h"
#include "bndcore_export.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

class Bnd_ModelBase;

/// The dictionary of published models.
///
/// Lookup by name is one hash lookup. A name that is not published itself is resolved by
/// descending from the longest published container prefix ("Clips.Actions.open" through the
/// container "Clips"). A trailing subscript addresses one element of an array: "Clips.name[3]"
/// element 3, "Clips.name[Cursor]" the element whose index is the current value of the long
/// model "Cursor", read at each message. "Clips.name.arrayMetaData" names the change
/// notifications of the array "Clips.name" (for listeners that only follow its changes: they
/// get the array itself). Listeners whose name finds nothing wait, keyed by the
/// root of the missing name, and are retried when a model under that root is published.
class BNDCORE_EXPORT Bnd_ConnectionDict : public Bnd_ConnectionServiceInterface
{
public:
    Bnd_ConnectionDict();
    ~Bnd_ConnectionDict() override;
    Bnd_ConnectionDict(const Bnd_ConnectionDict &) = delete;
    Bnd_ConnectionDict &operator=(const Bnd_ConnectionDict &) = delete;

    /// The process-wide dictionary. It lives until the process ends.
    static Bnd_ConnectionDict &Singleton();

    bool publishModel(const QString &iName, Bnd_ModelInterface *iModel) override;
    void unpublishModel(const QString &iName, Bnd_ModelInterface *iModel) override;
    Bnd_ModelInterface *findModel(const QString &iName) const override;
    Resolution resolve(const QString &iName) override;
    void addWaitingListener(Bnd_ListenerBase *iListener, const QString &iKey) override;
    void removeWaitingListener(Bnd_ListenerBase *iListener, const QString &iKey) override;

    /// Retries the listeners waiting on a root name (a container calls this when it gains a
    /// child).
    void retryWaiting(const QString &iRootName);

    int size() const { return int(mModels.size()); }
    bool contains(const QString &iName) const { return mModels.contains(iName); }
    /// The published names, sorted.
    QStringList names() const;
    /// How many listeners wait for a model.
    int waitingCount() const;

    /// The root of a connection name: the text before the first "." or "[".
    static QString rootOf(const QString &iName);

private:
    QHash<QString, Bnd_ModelInterface *> mModels;
    QHash<QString, std::vector<Bnd_ListenerBase *>> mWaiting;
    std::vector<std::vector<Bnd_ListenerBase *> *> mRetrying; // batches being retried
};
