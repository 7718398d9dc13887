#include "Mnu_RadioListSegment.h"

#include "Mnu_Manager.h"

#include <QDomElement>

Mnu_RadioListSegment::Mnu_RadioListSegment() = default;

Mnu_RadioListSegment::Mnu_RadioListSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_RadioListSegment::~Mnu_RadioListSegment() = default;

void Mnu_RadioListSegment::setItemsConnectionName(const QString &iName)
{
    mItemsConnectionName = iName;
    if (mNamesP)
        bindItems(Bnd_ConnectionEnvironment::blankEnvironment());
}

void Mnu_RadioListSegment::setSelectedItemConnectionName(const QString &iName)
{
    mCurrentConnectionName = iName;
    if (mCurrentP)
        bindCurrent(Bnd_ConnectionEnvironment::blankEnvironment());
}

bool Mnu_RadioListSegment::parseSubElement(QDomElement *iElement)
{
    const QString tag = iElement->tagName();
    if (tag == QLatin1String("ItemsConnectionName"))
        mItemsConnectionName = iElement->text();
    else if (tag == QLatin1String("CurrentItemConnectionName"))
        mCurrentConnectionName = iElement->text();
    else
        return Mnu_Segment::parseSubElement(iElement);
    return true;
}

void Mnu_RadioListSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    bindItems(environment());
    bindCurrent(environment());
}

void Mnu_RadioListSegment::bindItems(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    const bool hasItems = !mItemsConnectionName.isEmpty();
    bindListener(mNamesP, hasItems ? mItemsConnectionName + QLatin1String(".name") : QString(),
                 iEnv);
    bindListener(mAcceleratorsP,
                 hasItems ? mItemsConnectionName + QLatin1String(".accel") : QString(), iEnv);
}

void Mnu_RadioListSegment::bindCurrent(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    bindListener(mCurrentP, mCurrentConnectionName, iEnv);
    mCurrentP->setReceiveMessageCB(
        [this](const Bnd_MessageInterface &m) { handleMsgSelectionChanged(m); });
}

void Mnu_RadioListSegment::forgetItems()
{
    Mnu_Segment::forgetItems();
    mIndexOf.clear();
    mCheckedID = Mnu_MenuID();
}

int Mnu_RadioListSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !iManager || !mNamesP)
        return 0;
    const long current = mCurrentP->getValue(-1);
    const long count = mNamesP->size();
    for (long i = 0; i < count; ++i) {
        QString text = mNamesP->at(i);
        const Mnu_MenuID id = iManager->insertItem(text, text);
        if (!id.IsValid())
            continue;
        recordItem(id);
        mIndexOf[id] = i;
        const QString accelerator = mAcceleratorsP->at(i);
        if (!accelerator.isEmpty())
            iManager->setItemAccelerator(id, accelerator);
        iManager->setItemEnabled(id, mEnabled);
        iManager->setItemCheckable(id, true);
        iManager->setItemChecked(id, i == current);
        if (i == current)
            mCheckedID = id;
    }
    return getItemCount();
}

int Mnu_RadioListSegment::getVisibleItemCount()
{
    return mVisible && mNamesP ? int(mNamesP->size()) : 0;
}

void Mnu_RadioListSegment::itemActivated(Mnu_MenuID iID)
{
    const auto index = mIndexOf.find(iID);
    Mnu_Manager *manager = getManager();
    if (!mCurrentP || !mCurrentP->isConnectedToModel() || index == mIndexOf.end()
        || iID == mCheckedID) {
        // The toolkit toggled the item already: show the state as it stands.
        if (manager && index != mIndexOf.end())
            manager->setItemChecked(iID, iID == mCheckedID);
        return;
    }
    if (manager) {
        if (mCheckedID.IsValid())
            manager->setItemChecked(mCheckedID, false);
        manager->setItemChecked(iID, true);
    }
    mCheckedID = iID;
    mCurrentP->setValue(index->second); // last: the host may tear the menu down
}

void Mnu_RadioListSegment::handleMsgSelectionChanged(const Bnd_MessageInterface &iMsg)
{
    Mnu_Manager *manager = getManager();
    if (!iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>() || !manager)
        return;
    const long current = mCurrentP->getValue(-1);
    for (const auto &entry : mIndexOf) {
        manager->setItemChecked(entry.first, entry.second == current);
        if (entry.second == current)
            mCheckedID = entry.first;
    }
}

void Mnu_RadioListSegment::emitOwnTags(std::ostream &oStream, const QString &iIndent,
                                       saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "ItemsConnectionName", "setItemsConnectionName",
              mItemsConnectionName);
    emitValue(oStream, iIndent, iFormat, "CurrentItemConnectionName",
              "setSelectedItemConnectionName", mCurrentConnectionName);
}
