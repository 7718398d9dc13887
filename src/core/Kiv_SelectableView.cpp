#include "Kiv_SelectableView.h"

#include "Bndt_Root_Notifications.h"

Kiv_SelectableView::Kiv_SelectableView()
{
    Kiv_SelectableView::Init();
}

Kiv_SelectableView::Kiv_SelectableView(const Kiv_SelectableView &iOther)
    : Kiv_ViewBase(iOther)
    , mIsSelectedName(iOther.mIsSelectedName)
    , mSelected(iOther.mSelected)
{
    Kiv_SelectableView::Init();
}

Kiv_SelectableView::~Kiv_SelectableView() = default;

void Kiv_SelectableView::Init()
{
    mIsSelectedListenerP
        = std::make_unique<BoolListener>(QString(), Bnd_ConnectionEnvironment::blankEnvironment());
    mIsSelectedListenerP->setReceiveMessageCB(
        [this](const Bnd_MessageInterface &iMsg) { receive(iMsg); });
}

void Kiv_SelectableView::receive(const Bnd_MessageInterface &iMsg)
{
    if (iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
        || iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        sendAllBitsChanged();
}

void Kiv_SelectableView::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!mIsSelectedName.isEmpty()) {
        mIsSelectedListenerP->SetConnectionName(mIsSelectedName);
        mIsSelectedListenerP->connect(iEnv);
    } else {
        mIsSelectedListenerP->ClearConnection();
    }
    Kiv_ViewBase::makeConnections(iEnv);
}

void Kiv_SelectableView::setIsSelectedConnectionSpec(const QString &iName)
{
    mIsSelectedName = iName;
}

bool Kiv_SelectableView::isSelected() const
{
    if (mIsSelectedName.isEmpty())
        return mSelected;
    return mIsSelectedListenerP->getValue(false);
}

void Kiv_SelectableView::setSelected(bool iSelected)
{
    if (mIsSelectedName.isEmpty()) {
        if (mSelected == iSelected)
            return;
        mSelected = iSelected;
        sendAllBitsChanged();
        return;
    }
    // The model tells the view of the change; unconnected, nothing happens.
    mIsSelectedListenerP->setValue(iSelected);
}
