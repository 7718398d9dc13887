#include "Mnu_ListSegment.h"

#include "Bndt_Root_Notifications.h"

#include "Kib_Assert.h"
#include "Mnu_Log.h"
#include "Mnu_Manager.h"

#include <QDomElement>
#include <QPointer>

Mnu_ListSegment::Mnu_ListSegment() = default;

Mnu_ListSegment::Mnu_ListSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_ListSegment::~Mnu_ListSegment() = default;

void Mnu_ListSegment::setItemsConnectionName(const QString &iName)
{
    mItemsConnectionName = iName;
    if (mNamesP) // connected before: again, with a blank environment
        connectFields(Bnd_ConnectionEnvironment::blankEnvironment());
}

bool Mnu_ListSegment::parseSubElement(QDomElement *iElement)
{
    if (iElement->tagName() == QLatin1String("ItemsConnectionName")) {
        mItemsConnectionName = iElement->text();
        return true;
    }
    return Mnu_Segment::parseSubElement(iElement);
}

void Mnu_ListSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    connectFields(environment());
}

void Mnu_ListSegment::connectFields(const Bnd_ConnectionEnvironmentPtr &iEnv)
{
    const auto field = [this](const char *iSuffix) {
        return mItemsConnectionName.isEmpty() ? QString()
                                              : mItemsConnectionName + QLatin1String(iSuffix);
    };
    bindListener(mNamesP, field(".name"), iEnv);
    mNamesP->setReceiveMessageCB([this](const Bnd_MessageInterface &m) { listChanged(m); });
    bindListener(mIdsP, field(".id"), iEnv);
    bindListener(mAcceleratorsP, field(".accelerator"), iEnv);
    bindListener(mIconNamesP, field(".iconName"), iEnv);
    bindListener(mIconsP, field(".icon"), iEnv);
    bindListener(mSelectedP, field(".selected"), iEnv);
}

void Mnu_ListSegment::listChanged(const Bnd_MessageInterface &iMsg)
{
    if (!iMsg.is<Bndt_Array_Notifications::MsgElementsReplaced>()
        && !iMsg.is<Bndt_Array_Notifications::MsgElementsMoved>()
        && !iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        return;
    if (getManager() && getManager()->isInstantiated())
        getManager()->requestRebuild();
}

int Mnu_ListSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !iManager || !mNamesP)
        return 0;
    const long count = mNamesP->size();
    for (long i = 0; i < count; ++i) {
        QString text = mNamesP->at(i);
        const QString identifier = mIdsP->at(i);
        const Mnu_MenuID id = iManager->insertItem(identifier.isEmpty() ? text : identifier, text);
        if (!id.IsValid())
            continue;
        recordItem(id);
        mItemIdentifiers[id] = identifier;
        const QString accelerator = mAcceleratorsP->at(i);
        if (!accelerator.isEmpty())
            iManager->setItemAccelerator(id, accelerator);
        iManager->setItemEnabled(id, mEnabled);
        const QString iconName = mIconNamesP->at(i);
        if (!iconName.isEmpty())
            iManager->setItemIcon(id, iconName);
        QPixmap icon = mIconsP->at(i);
        if (!icon.isNull())
            iManager->setItemIcon(id, &icon);
        if (mSelectedP->at(i, false)) {
            iManager->setItemCheckable(id, true);
            iManager->setItemChecked(id, true);
        }
        if (!shownWhatsThisText().isEmpty())
            iManager->setWhatsThis(id, shownWhatsThisText());
    }
    return getItemCount();
}

void Mnu_ListSegment::forgetItems()
{
    Mnu_Segment::forgetItems();
    mItemIdentifiers.clear();
}

int Mnu_ListSegment::getVisibleItemCount()
{
    return mVisible && mNamesP ? int(mNamesP->size()) : 0;
}

void Mnu_ListSegment::itemActivated(Mnu_MenuID iID)
{
    const int i = indexOf(iID);
    if (i == -1) {
        Kib_Assert::handleFailedAssert("i!=-1", "coresw/UIF/Mnu/Mnu_ListSegment", __LINE__);
        return;
    }
    const bool selected = !mSelectedP->at(i, false);
    const QPointer<Mnu_ListSegment> self(this);
    mSelectedP->setAt(i, selected); // the host may react by tearing the menu down
    if (!self)
        return;
    if (Mnu_Manager *manager = getManager()) {
        manager->setItemCheckable(iID, true);
        manager->setItemChecked(iID, selected);
    }
}

void Mnu_ListSegment::emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "ItemsConnectionName", "setItemsConnectionName",
              mItemsConnectionName);
}

void Mnu_ListSegment::dump(const QString &iPrefix)
{
    Mnu_Segment::dump(iPrefix);
    const QByteArray p = iPrefix.toLocal8Bit();
    qCInfo(lcMenu, "%s   itemConnectionName: [%s]", p.constData(),
           qPrintable(mItemsConnectionName));
    qCInfo(lcMenu, "%s   itemIDs total #(%ld)", p.constData(), long(mItemIdentifiers.size()));
    qCInfo(lcMenu, "%s   MenuID to ItemID map", p.constData());
    long i = 0;
    for (const auto &entry : mItemIdentifiers)
        qCInfo(lcMenu, "%s      map[%ld]: ItemID[%s]", p.constData(), i++,
               qPrintable(entry.second));
}
