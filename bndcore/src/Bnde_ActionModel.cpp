#include "Bnde_ActionModel.h"

#include "Bnd_Private.h"
#include "Kib_Assert.h"

Bnde_ActionModel::Bnde_ActionModel(const QString &iName, bool iEnabled)
    : Bnd_ModelBase(Bndt_Action<void()>::type())
    , mEnabledDefault(iEnabled)
{
    SetConnectionName(iName);
}

Bnde_ActionModel::~Bnde_ActionModel() = default;

bool Bnde_ActionModel::isEnabled() const
{
    return mEnabledCB ? mEnabledCB() : mEnabledDefault;
}

void Bnde_ActionModel::setIsEnabledDefault(bool iEnabled)
{
    if (mEnabledDefault == iEnabled)
        return;
    mEnabledDefault = iEnabled;
    notifyEnabledChanged();
}

void Bnde_ActionModel::setIsEnabledCB(const boost::function<bool()> &iCallback)
{
    mEnabledCB = iCallback;
    notifyEnabledChanged();
}

void Bnde_ActionModel::notifyEnabledChanged()
{
    SendToListeners(Bndt_Action_Notifications::MsgEnabledChanged());
}

void Bnde_ActionModel::handleMessage(const Bnd_MessageInterface &iMsg)
{
    if (const auto *enabled = iMsg.as<Bndt_Action_API::MsgIsEnabled>()) {
        if (enabled->enabled)
            *enabled->enabled = isEnabled();
        return;
    }
    if (iMsg.getApi() == Bnd_Api::Action && iMsg.getId() == Bndt_Action_API::MsgAction::StaticID())
        ++mPerformed;
    convertMessageAndDoAction(iMsg);
}

void Bnde_ActionModel::convertMessageAndDoAction(const Bnd_MessageInterface &iMsg)
{
    if (!iMsg.is<Bndt_Action_API::MsgAction>()) {
        Kib_Assert::handleFailedAssert(
            "iMsg.getId() == Bndt_Action_API::MsgAction::StaticID() && "
            "\"Bnde_ActionModel::convertMessageAndDoAction - Message type is not the action "
            "message type!\"",
            "coresw/UIF/Bnd/Bnde_ActionModel", 111);
        iMsg.setStatus(Bnd_Status::NotHandled);
        return;
    }
    iMsg.setStatus(Bnd_Status::NotHandled); // a plain action model has nothing to perform
}

void Bnd_ActionDetail::reportArgumentMismatch(const QString &iModelName, int iExpected, int iGiven)
{
    qCWarning(lcBnd).noquote().nospace()
        << "Bnde_ActionModel::convertMessageAndDoAction, '" << iModelName << "' takes " << iExpected
        << " argument(s) of its type, the message carries " << iGiven << " that do not fit";
}
