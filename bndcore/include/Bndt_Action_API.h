#pragma once

#include "Bnd_MessageInterface.h"
#include "Bnd_Variant.h"

/// The messages of a command.
struct Bndt_Action_API
{
    /// Performs the action with the arguments; the action may put its return value in `*result`.
    class MsgAction : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Action, 0)
        MsgAction(Bnd_Variant *oResult, const Bnd_ArgList &iArguments)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , result(oResult)
            , arguments(iArguments)
        { }
        Bnd_Variant *result;
        const Bnd_ArgList &arguments;
    };

    class MsgIsEnabled : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::Action, 1)
        explicit MsgIsEnabled(bool *oEnabled)
            : Bnd_MessageInterface(StaticApi, StaticID())
            , enabled(oEnabled)
        { }
        bool *enabled;
    };
};

/// What a command tells its listeners.
struct Bndt_Action_Notifications
{
    class MsgEnabledChanged : public Bnd_MessageInterface
    {
    public:
        BND_MESSAGE_IDENTITY(Bnd_Api::ActionNotify, 0)
        MsgEnabledChanged()
            : Bnd_MessageInterface(StaticApi, StaticID())
        { }
    };
};
