#include "Kiv_ContextMenuListener.h"

#include "Mnu_Menu.h"
#include "Mnu_QtManager.h"

#include <QPoint>

Kiv_ContextMenuListener::Kiv_ContextMenuListener() = default;

Kiv_ContextMenuListener::~Kiv_ContextMenuListener() = default;

void Kiv_ContextMenuListener::setConnectionName(const QString &iName)
{
    if (iName.isEmpty())
        mListener.ClearConnection();
    else
        mListener.SetConnectionName(iName);
}

bool Kiv_ContextMenuListener::connect(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    mEnv = iEnv;
    return mListener.connect(iEnv);
}

bool Kiv_ContextMenuListener::isConnected() const
{
    return mListener.isConnectedToModel();
}

bool Kiv_ContextMenuListener::popup(const QPoint &iGlobalPos)
{
    const QString description = mListener.getValue();
    if (description.isEmpty())
        return false;
    if (!mManagerP || description != mDescription) {
        mDescription = description;
        mManagerP = std::make_unique<Mnu_QtManager>(nullptr, description.toLocal8Bit().constData());
    }
    if (!mManagerP->getMenu() || mManagerP->getMenu()->getSegmentCount() == 0)
        return false;
    return mManagerP->popup(iGlobalPos, mEnv);
}
