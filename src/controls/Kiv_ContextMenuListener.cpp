#include "Kiv_ContextMenuListener.h"

#include <QMenu>

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
    return mListener.connect(iEnv);
}

bool Kiv_ContextMenuListener::isConnected() const
{
    return mListener.isConnectedToModel();
}

bool Kiv_ContextMenuListener::popup(const QPoint &iGlobalPos)
{
    QMenu *menu = mListener.getValue(nullptr);
    if (!menu)
        return false;
    menu->popup(iGlobalPos);
    return true;
}
