#include "Mnu_BooleanSegment.h"

#include "Mnu_Manager.h"

#include <QDomElement>

Mnu_BooleanSegment::Mnu_BooleanSegment() = default;

Mnu_BooleanSegment::Mnu_BooleanSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_BooleanSegment::~Mnu_BooleanSegment() = default;

void Mnu_BooleanSegment::setBooleanConnectionName(const QString &iName)
{
    mBooleanConnectionName = iName;
    rebind(mBooleanListenerP, iName);
}

bool Mnu_BooleanSegment::parseSubElement(QDomElement *iElement)
{
    if (iElement->tagName() == QLatin1String("BooleanConnectionName")) {
        mBooleanConnectionName = iElement->text();
        return true;
    }
    return Mnu_Segment::parseSubElement(iElement);
}

void Mnu_BooleanSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    bindListener(mBooleanListenerP, mBooleanConnectionName, environment());
}

void Mnu_BooleanSegment::refreshState()
{
    Mnu_Segment::refreshState();
    if (!readModel(mBooleanListenerP, &mValue)) {
        mValue = false; // nothing to show, nothing to toggle
        mEnabled = false;
    }
}

int Mnu_BooleanSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !iManager)
        return 0;
    // The description's accelerator only: a model never moves a toggle's key.
    const Mnu_MenuID id = makeStandardItem(iManager, staticAccelerator());
    if (!id.IsValid())
        return 0;
    iManager->setItemCheckable(id, true);
    iManager->setItemChecked(id, mValue);
    return 1;
}

void Mnu_BooleanSegment::itemActivated(Mnu_MenuID iID)
{
    if (!mBooleanListenerP || !mBooleanListenerP->isConnectedToModel())
        return;
    mValue = !mValue;
    if (getManager())
        getManager()->setItemChecked(iID, mValue);
    mBooleanListenerP->setValue(mValue);
}

void Mnu_BooleanSegment::emitOwnTags(std::ostream &oStream, const QString &iIndent,
                                     saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "BooleanConnectionName", "setBooleanConnectionName",
              mBooleanConnectionName);
}
