#pragma once

#include "Bnd_MessageInterface.h"

/// Notifications that every listener can receive whatever its model.
struct Bndt_Root_Notifications
{
    /// The listener was attached to a model (`connected` true) or lost it.
    class MsgConnectedChanged : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Root, 0)
        explicit MsgConnectedChanged(bool iConnected)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , connected(iConnected)
        { }
        bool connected;
    };
};
