#pragma once

#include "Bnd_ConnectionToModel.h"
#include "bndcore_export.h"

#include <QString>

/// A participant in a shared busy state.
///
/// A busy state is a reference count (a long model) under a connection name: every piece of
/// work in progress holds one reference, and whoever shows "busy" (a busy indicator) watches the
/// count. A participant adds at most one reference of its own and gives it back when released
/// or destroyed. When no model of that name is published, the runtime publishes one that lives
/// until the process ends, so all participants of a name share one count.
class BNDCORE_EXPORT Bnd_AsynchStateListener
{
public:
    Bnd_AsynchStateListener(const QString &iStateName, const QString &iOwnerName);
    virtual ~Bnd_AsynchStateListener();
    Bnd_AsynchStateListener(const Bnd_AsynchStateListener &) = delete;
    Bnd_AsynchStateListener &operator=(const Bnd_AsynchStateListener &) = delete;

    /// Binds to another state (giving back a reference held on the old one). The description
    /// says what the owner is busy with, for log lines.
    void init(const QString &iStateName, const QString &iOwnerName, const QString &iDescription);

    /// Adds this participant's reference (once; further calls do nothing).
    void addAsynchStateRef();
    /// Gives the reference back (if one is held).
    void releaseAsynchStateRef();
    bool haveAddedRef() const { return mHaveRef; }

    /// The current count (0 when the state cannot be reached).
    long refCount() const;
    bool isBusy() const { return refCount() > 0; }
    const QString &stateName() const { return mStateName; }
    const QString &ownerName() const { return mOwnerName; }
    const QString &description() const { return mDescription; }

protected:
    /// Called whenever the count changes, by anyone.
    virtual void asynchStateRefCountChanged(long iNewCount);

private:
    void receive(const Bnd_MessageInterface &iMsg);
    void change(long iDelta);

    Bnd_ConnectionToModel<Bndt_SimpleValue<long>> mCount;
    QString mStateName;
    QString mOwnerName;
    QString mDescription;
    bool mHaveRef = false;
};
