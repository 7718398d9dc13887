#include "Mnu_RadioItemsSegment.h"

#include "Mnu_Log.h"
#include "Mnu_Manager.h"
#include "Mnu_Writer.h"

#include <QDomElement>
#include <QPointer>

Mnu_RadioItemsSegment::Mnu_RadioItemsSegment() = default;

Mnu_RadioItemsSegment::Mnu_RadioItemsSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_RadioItemsSegment::~Mnu_RadioItemsSegment() = default;

void Mnu_RadioItemsSegment::setSelectedItemConnectionName(const QString &iName)
{
    mCurrentConnectionName = iName;
    rebind(mCurrentP, iName);
}

void Mnu_RadioItemsSegment::addItemToMap(const QString &iText, int iID)
{
    mItems.emplace_back(iText, iID);
}

void Mnu_RadioItemsSegment::clearItemMap()
{
    mItems.clear();
}

QString Mnu_RadioItemsSegment::getItemTextAt(int iIndex) const
{
    return iIndex >= 0 && iIndex < int(mItems.size()) ? mItems[size_t(iIndex)].first : QString();
}

int Mnu_RadioItemsSegment::getItemIDAt(int iIndex) const
{
    return iIndex >= 0 && iIndex < int(mItems.size()) ? mItems[size_t(iIndex)].second : -1;
}

void Mnu_RadioItemsSegment::setItemTextIDAt(int iIndex, const QString &iText, int iID)
{
    if (iIndex >= 0 && iIndex < int(mItems.size()))
        mItems[size_t(iIndex)] = { iText, iID };
}

bool Mnu_RadioItemsSegment::parseSubElement(QDomElement *iElement)
{
    const QString tag = iElement->tagName();
    if (tag == QLatin1String("CurrentItemConnectionName"))
        mCurrentConnectionName = iElement->text();
    else if (tag == QLatin1String("RadioItem"))
        parseDerivedSubElement(iElement);
    else
        return Mnu_Segment::parseSubElement(iElement);
    return true;
}

// One <RadioItem>: a <Text> and an integer <ID>; a faulty one is reported and left out.
bool Mnu_RadioItemsSegment::parseDerivedSubElement(QDomElement *iElement)
{
    QString text;
    int id = 0;
    bool hasText = false;
    bool hasID = false;
    for (QDomElement child = iElement->firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString tag = child.tagName();
        if (tag == QLatin1String("Text")) {
            text = child.text();
            hasText = true;
        } else if (tag == QLatin1String("ID")) {
            id = child.text().trimmed().toInt(&hasID);
            if (!hasID) {
                qCWarning(lcMenu,
                          "Mnu_RadioItemsSegment::parseDerivedSubElement can't get int from "
                          "<%s> within <RadioItem>",
                          qPrintable(child.text()));
                return false;
            }
        } else {
            qCWarning(lcMenu,
                      "Mnu_RadioItemsSegment::parseDerivedSubElement unknown tag <%s> within "
                      "<RadioItem>",
                      qPrintable(tag));
            return false;
        }
    }
    if (!hasText || !hasID) {
        qCWarning(lcMenu,
                  "Mnu_RadioItemsSegment::parseDerivedSubElement incomplete <%s> within "
                  "<RadioItem>",
                  qPrintable(hasText ? QStringLiteral("ID") : QStringLiteral("Text")));
        return false;
    }
    addItemToMap(text, id);
    return true;
}

void Mnu_RadioItemsSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    bindListener(mCurrentP, mCurrentConnectionName, environment());
}

void Mnu_RadioItemsSegment::forgetItems()
{
    Mnu_Segment::forgetItems();
    mCheckedID = Mnu_MenuID();
}

int Mnu_RadioItemsSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !iManager)
        return 0;
    long current = 0;
    const bool hasCurrent = readModel(mCurrentP, &current);
    for (const auto &item : mItems) {
        QString text = item.first;
        const Mnu_MenuID id = iManager->insertItem(text, text);
        if (!id.IsValid())
            continue;
        recordItem(id);
        iManager->setItemEnabled(id, mEnabled);
        iManager->setItemCheckable(id, true);
        const bool checked = hasCurrent && current == item.second;
        iManager->setItemChecked(id, checked);
        if (checked)
            mCheckedID = id;
    }
    return getItemCount();
}

int Mnu_RadioItemsSegment::getVisibleItemCount()
{
    return mVisible ? int(mItems.size()) : 0;
}

void Mnu_RadioItemsSegment::itemActivated(Mnu_MenuID iID)
{
    const int index = indexOf(iID);
    Mnu_Manager *manager = getManager();
    if (index < 0 || size_t(index) >= mItems.size() || !mCurrentP
        || !mCurrentP->isConnectedToModel() || iID == mCheckedID) {
        // The toolkit toggled the item already: show the state as it stands.
        if (manager && index >= 0)
            manager->setItemChecked(iID, iID == mCheckedID);
        return;
    }
    const QPointer<Mnu_RadioItemsSegment> self(this);
    mCurrentP->setValue(mItems[size_t(index)].second); // the host may tear the menu down
    if (!self)
        return;
    if (manager) {
        if (mCheckedID.IsValid())
            manager->setItemChecked(mCheckedID, false);
        manager->setItemChecked(iID, true);
    }
    mCheckedID = iID;
}

void Mnu_RadioItemsSegment::emitOwnTags(std::ostream &oStream, const QString &iIndent,
                                        saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "CurrentItemConnectionName",
              "setSelectedItemConnectionName", mCurrentConnectionName);
    Mnu_Writer out(oStream);
    for (const auto &item : mItems) {
        if (iFormat == XMLFormat) {
            const QString inner = iIndent + QStringLiteral("  ");
            out.line(iIndent, "<RadioItem>");
            out.line(inner,
                     QStringLiteral("<Text>") + Mnu_Writer::xmlEscaped(item.first)
                         + QStringLiteral("</Text>"));
            out.line(inner, QStringLiteral("<ID>%1</ID>").arg(item.second));
            out.line(iIndent, "</RadioItem>");
        } else {
            out.line(iIndent,
                     QStringLiteral("segment->addItemToMap( \"") + Mnu_Writer::cEscaped(item.first)
                         + QStringLiteral("\", %1 );").arg(item.second));
        }
    }
}
