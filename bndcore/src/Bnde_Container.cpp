#include "Bnde_Container.h"

#include "Bnd_ConnectionDict.h"
#include "Bnd_Private.h"
#include "Bndt_Array_API.h"

Bnde_Container::Bnde_Container(const QString &iName)
    : Bnd_ModelBase(Bndt_ArrayContainer::type())
{
    SetConnectionName(iName);
}

Bnde_Container::~Bnde_Container()
{
    // Own listeners first (the base would do it later, after the children are gone).
    UnPublish();
    Bnd_ModelBase::detachAllListeners();
    mChildren.clear();
    while (!mOwned.empty()) // newest first; each child detaches its listeners as it goes
        mOwned.pop_back();
}

QString Bnde_Container::childConnectionName(const QString &iChildName) const
{
    return GetConnectionName().isEmpty() ? iChildName
                                         : GetConnectionName() + QLatin1Char('.') + iChildName;
}

bool Bnde_Container::addChild(const QString &iChildName, std::unique_ptr<Bnd_ModelBase> iChild)
{
    if (!iChild || iChildName.isEmpty() || iChildName.contains(QLatin1Char('.'))
        || iChildName.contains(QLatin1Char('[')) || mChildren.contains(iChildName)) {
        qCWarning(lcBnd).noquote().nospace()
            << "Bnde_Container::addChild, cannot add '" << iChildName << "' to '"
            << GetConnectionName() << "'";
        return false;
    }
    mChildren.insert(iChildName, iChild.get());
    mOrder << iChildName;
    mOwned.push_back(std::move(iChild));
    announceChildren();
    return true;
}

bool Bnde_Container::removeChild(const QString &iChildName)
{
    Bnd_ModelBase *c = mChildren.take(iChildName);
    if (!c)
        return false;
    mOrder.removeOne(iChildName);
    for (auto it = mOwned.begin(); it != mOwned.end(); ++it) {
        if (it->get() == c) {
            std::unique_ptr<Bnd_ModelBase> doomed = std::move(*it);
            mOwned.erase(it);
            doomed.reset(); // its listeners start waiting for a new child of that name
            break;
        }
    }
    return true;
}

Bnd_ModelBase *Bnde_Container::child(const QString &iChildName) const
{
    return mChildren.value(iChildName, nullptr);
}

void Bnde_Container::setSize(long iSize)
{
    mSize = iSize;
}

long Bnde_Container::size() const
{
    return mSize >= 0 ? mSize : long(mChildren.size());
}

Bnd_ModelInterface *Bnde_Container::modelInterface_findChild(const QString &iPath) const
{
    const int dot = iPath.indexOf(QLatin1Char('.'));
    Bnd_ModelBase *c = mChildren.value(dot < 0 ? iPath : iPath.left(dot), nullptr);
    if (!c || dot < 0)
        return c;
    return c->modelInterface_findChild(iPath.mid(dot + 1));
}

void Bnde_Container::detachAllListeners()
{
    Bnd_ModelBase::detachAllListeners();
    for (const auto &c : mOwned)
        c->detachAllListeners();
}

void Bnde_Container::handleMessage(const Bnd_MessageInterface &iMsg)
{
    if (const auto *getSize = iMsg.as<Bndt_Array_API::MsgGetSize>()) {
        if (getSize->size)
            *getSize->size = size();
        return;
    }
    Bnd_ModelBase::handleMessage(iMsg);
}

void Bnde_Container::announceChildren()
{
    // Listeners wait keyed by the root of the published name they look for.
    if (isPublished()) {
        Bnd_ConnectionDict::Singleton().retryWaiting(Bnd_ConnectionDict::rootOf(publishedName()));
        return;
    }
    // A nested container: its connection name starts with the root of the published ancestor.
    const QString root = Bnd_ConnectionDict::rootOf(GetConnectionName());
    if (!root.isEmpty())
        Bnd_ConnectionDict::Singleton().retryWaiting(root);
}
