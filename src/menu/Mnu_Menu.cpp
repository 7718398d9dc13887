#include "Mnu_Menu.h"

#include "Bndt_Root_Notifications.h"

#include "Mnu_Log.h"
#include "Mnu_Manager.h"
#include "Mnu_SubmenuSegment.h"
#include "Mnu_Writer.h"

#include <QDomElement>

#include <algorithm>

Mnu_Menu::Mnu_Menu() = default;

Mnu_Menu::Mnu_Menu(Mnu_Manager *iManager)
    : mManagerP(iManager)
{ }

Mnu_Menu::Mnu_Menu(Mnu_Manager *iManager, QDomElement *iElement)
    : mManagerP(iManager)
{
    if (!iElement)
        return;
    for (QDomElement child = iElement->firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString tag = child.tagName();
        if (tag == QLatin1String("Name"))
            mName = child.text();
        else if (tag == QLatin1String("Text"))
            mMenuText = child.text();
        else if (tag == QLatin1String("VisibleConnectionName"))
            mVisibleConnectionName = child.text();
        else if (tag == QLatin1String("TextConnectionName"))
            mItemTextConnectionName = child.text();
        else if (Mnu_Segment *segment = Mnu_Segment::SegmentFactory(this, &child))
            mSegments.emplace_back(segment);
    }
}

Mnu_Menu::~Mnu_Menu()
{
    mTitleListenerP.reset();
    mVisibleListenerP.reset();
    mSegments.clear();
}

Mnu_Segment *Mnu_Menu::getSegmentAt(int iIndex) const
{
    return iIndex >= 0 && iIndex < int(mSegments.size()) ? mSegments[size_t(iIndex)].get()
                                                         : nullptr;
}

bool Mnu_Menu::contains(const Mnu_Segment *iSegment) const
{
    return std::any_of(mSegments.begin(), mSegments.end(),
                       [iSegment](const auto &s) { return s.get() == iSegment; });
}

void Mnu_Menu::addSegment(Mnu_Segment *iSegment)
{
    if (!iSegment || contains(iSegment))
        return;
    qCDebug(lcMenu, "> -- Mnu_Menu::addSegment: add segment [%s]", qPrintable(iSegment->getName()));
    iSegment->setMenu(this);
    mSegments.emplace_back(iSegment);
}

void Mnu_Menu::insertSegment(Mnu_Segment *iSegment, Mnu_Segment *iReference, bool iAfter)
{
    if (!iSegment || contains(iSegment))
        return;
    iSegment->setMenu(this);
    const char *where = "at an unknown position";
    auto position = mSegments.begin();
    if (iReference) {
        position = std::find_if(mSegments.begin(), mSegments.end(),
                                [iReference](const auto &s) { return s.get() == iReference; });
        if (position != mSegments.end() && iAfter)
            ++position;
        where = position == mSegments.end() ? "at the end" : "somewhere in the middle";
    } else {
        where = "in the beginning";
    }
    mSegments.emplace(position, iSegment);
    qCDebug(lcMenu, "> -- Mnu_Menu::insertSegment: insert segment [%s] %s",
            qPrintable(iSegment->getName()), where);
    if (mManagerP && mManagerP->isInstantiated())
        mManagerP->instantiateMenus();
}

bool Mnu_Menu::removeSegment(Mnu_Segment *iSegment)
{
    const auto it = std::find_if(mSegments.begin(), mSegments.end(),
                                 [iSegment](const auto &s) { return s.get() == iSegment; });
    if (it == mSegments.end())
        return false;
    qCDebug(lcMenu, "> -- Mnu_Menu::removeSegment: remove segment [%s]",
            qPrintable(iSegment->getName()));
    // The items it made go from the routing table with it, and from a menu that is built.
    for (auto entry = mSegmentMap.begin(); entry != mSegmentMap.end();)
        entry = entry->second == iSegment ? mSegmentMap.erase(entry) : std::next(entry);
    mSegments.erase(it);
    if (mManagerP && mManagerP->isInstantiated())
        mManagerP->instantiateMenus();
    return true;
}

void Mnu_Menu::clearSegments()
{
    for (const auto &segment : mSegments)
        qCDebug(lcMenu, "> -- Mnu_Menu::clearSegments: clear segment [%s]",
                qPrintable(segment->getName()));
    mSegmentMap.clear();
    mIDs.clear();
    mSegments.clear();
}

bool Mnu_Menu::instantiate()
{
    // The manager removed the old items: nothing may refer to them any more.
    mSegmentMap.clear();
    mIDs.clear();
    for (const auto &segment : mSegments)
        segment->forgetItems();

    // Visibility: the model's when it can be read; a model that cannot hides the menu.
    if (mVisibleListenerP && mVisibleListenerP->isConnectedToModel()) {
        mVisible = mVisibleListenerP->getValue(false);
        if (!mVisible)
            return false;
    } else if (!mVisibleConnectionName.isEmpty()) {
        mVisible = false;
        return false;
    } else {
        mVisible = true;
    }
    refreshTitle();

    // Separators only between items: none first, none doubled, none last.
    bool lastWasSeparator = false;
    const size_t count = mSegments.size();
    for (size_t i = 0; i < count; ++i) {
        Mnu_Segment *segment = mSegments[i].get();
        if (segment->isSeparator() && (mIDs.empty() || lastWasSeparator || i + 1 == count))
            continue;
        if (segment->instantiate(mManagerP) > 0)
            lastWasSeparator = segment->isSeparator();
    }
    if (lastWasSeparator && !mIDs.empty() && mManagerP) {
        // The segments after the last separator made nothing.
        const Mnu_MenuID last = mIDs.back();
        if (Mnu_Segment *separator = segmentOf(last))
            separator->forgetItems();
        mManagerP->removeItem(last);
        mIDs.pop_back();
        mSegmentMap.erase(last);
    }
    return true;
}

void Mnu_Menu::refreshTitle()
{
    if (!mItemTextConnectionName.isEmpty()) {
        if (mTitleListenerP && mTitleListenerP->isConnectedToModel())
            mTitleModelValue = mTitleListenerP->getValue();
        mShownTitle = mTitleModelValue.isEmpty() ? mMenuText : mTitleModelValue;
    } else {
        mShownTitle = mMenuText.isEmpty() ? mName : mMenuText;
    }
}

void Mnu_Menu::setIDAssignedToSegment(Mnu_Segment *iSegment, Mnu_MenuID iID)
{
    mSegmentMap[iID] = iSegment;
    mIDs.push_back(iID);
}

void Mnu_Menu::itemActivated(Mnu_MenuID iID)
{
    if (Mnu_Segment *segment = segmentOf(iID))
        segment->itemActivated(iID);
}

Mnu_Segment *Mnu_Menu::segmentOf(Mnu_MenuID iID) const
{
    const auto it = mSegmentMap.find(iID);
    return it == mSegmentMap.end() ? nullptr : it->second;
}

void Mnu_Menu::setItemEnabled(Mnu_Segment *iSegment, bool iEnabled)
{
    if (!mManagerP)
        return;
    for (const auto &entry : mSegmentMap)
        if (entry.second == iSegment)
            mManagerP->setItemEnabled(entry.first, iEnabled);
}

void Mnu_Menu::menuTextNotifyCallback(const Bnd_MessageInterface &iMsg)
{
    if (!iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
        && !iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        return;
    mTitleModelValue = mTitleListenerP && mTitleListenerP->isConnectedToModel()
        ? mTitleListenerP->getValue()
        : QString();
    refreshTitle();
    if (mManagerP)
        mManagerP->menuStateChanged();
}

void Mnu_Menu::menuVisibleNotifyCallback(const Bnd_MessageInterface &iMsg)
{
    if (!iMsg.is<Bndt_SimpleValue_Notifications::MsgValueChanged>()
        && !iMsg.is<Bndt_Root_Notifications::MsgConnectedChanged>())
        return;
    mVisible = mVisibleListenerP && mVisibleListenerP->isConnectedToModel()
        ? mVisibleListenerP->getValue(false)
        : mVisibleConnectionName.isEmpty();
    if (mManagerP)
        mManagerP->menuStateChanged();
}

void Mnu_Menu::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    const auto make = [](auto &ioListener, const QString &iName, auto iCallback) {
        using Listener = typename std::decay_t<decltype(ioListener)>::element_type;
        if (!ioListener) {
            ioListener = std::make_unique<Listener>(QString(),
                                                    Bnd_ConnectionEnvironment::blankEnvironment());
            ioListener->setReceiveMessageCB(iCallback);
        }
        if (iName.isEmpty())
            ioListener->ClearConnection();
        else
            ioListener->SetConnectionName(iName);
    };
    make(mTitleListenerP, mItemTextConnectionName,
         [this](const Bnd_MessageInterface &m) { menuTextNotifyCallback(m); });
    make(mVisibleListenerP, mVisibleConnectionName,
         [this](const Bnd_MessageInterface &m) { menuVisibleNotifyCallback(m); });
    if (!mItemTextConnectionName.isEmpty())
        mTitleListenerP->connect(iEnv);
    if (!mVisibleConnectionName.isEmpty())
        mVisibleListenerP->connect(iEnv);
    for (const auto &segment : mSegments)
        segment->makeConnections(iEnv);
}

bool Mnu_Menu::tstFindItemByPath(const QString &iPath, int iDepth, Mnu_Segment **oSegment,
                                 Mnu_MenuID *oID, const QString &iSeparator,
                                 QString *oRemainingPath)
{
    const QStringList parts = iPath.split(iSeparator);
    if (iDepth + 1 >= parts.size() || parts[iDepth] != mName)
        return false;
    const QString &segmentName = parts[iDepth + 1];
    for (const auto &segment : mSegments) {
        if (segment->getName() != segmentName)
            continue;
        const QStringList rest = parts.mid(iDepth + 2);
        if (oRemainingPath)
            *oRemainingPath = rest.join(iSeparator);
        // A submenu's path goes on inside it; its menu's own name is not repeated.
        if (auto *submenu = qobject_cast<Mnu_SubmenuSegment *>(segment.get());
            submenu && !rest.isEmpty() && submenu->getSubmenuManager()) {
            Mnu_Menu *inner = submenu->getSubmenuManager()->getMenu();
            return inner
                && inner->tstFindItemByPath(inner->getName() + iSeparator + rest.join(iSeparator),
                                            0, oSegment, oID, iSeparator, oRemainingPath);
        }
        bool isNumber = false;
        const int index = rest.size() == 1 ? rest[0].toInt(&isNumber) : 0;
        if (!rest.isEmpty() && (rest.size() > 1 || !isNumber))
            return false;
        const Mnu_MenuID id = segment->getIndexedID(index);
        if (!id.IsValid())
            return false;
        *oSegment = segment.get();
        *oID = id;
        return true;
    }
    return false;
}

void Mnu_Menu::saveMenu(std::ostream &oStream, const QString &iIndent,
                        Mnu_Segment::saveFormat iFormat, Role iRole)
{
    if (iFormat == Mnu_Segment::CodeFormat) {
        emitCode(oStream, iIndent, iRole);
        return;
    }
    Mnu_Writer out(oStream);
    const QString inner = iIndent + QStringLiteral("  ");
    out.line(iIndent, "<Menu>");
    out.element(inner, "Name", mName);
    out.element(inner, "VisibleConnectionName", mVisibleConnectionName);
    out.element(inner, "Text", mMenuText);
    out.element(inner, "TextConnectionName", mItemTextConnectionName);
    for (const auto &segment : mSegments)
        segment->saveSegment(oStream, inner, Mnu_Segment::XMLFormat);
    out.line(iIndent, "</Menu>");
}

void Mnu_Menu::emitCode(std::ostream &oStream, const QString &iIndent, Role iRole)
{
    Mnu_Writer out(oStream);
    out.line(iIndent, "/* Generate a new Menu */");
    out.line(iIndent, "{");
    switch (iRole) {
    case PopupMenu:
        out.line(iIndent, "/* Manager creates a Menu for us, use it here */");
        out.line(iIndent, "Mnu_Menu* menu = menuMgr->getMenu();");
        break;
    case Submenu:
        out.line(iIndent, "/* Use existing Segment's Manager */");
        out.line(iIndent,
                 "Mnu_QtManager* manager = dynamic_cast<Mnu_QtManager*>( "
                 "segment->getSubmenuManager() );");
        break;
    case MenuBarMenu:
        out.line(iIndent, "/* Create a new Manager for each Menu */");
        out.line(iIndent, "Mnu_QtManager* manager = menubarMgr->createManager();");
        break;
    }
    if (iRole != PopupMenu) {
        out.line(iIndent, "/* Manager creates a Menu for us, use it here */");
        out.line(iIndent, "Mnu_Menu* menu = manager->getMenu();");
    }
    out.call(iIndent, "menu->setName( \"", mName, "\" );");
    out.call(iIndent, "menu->setVisibleConnectionName( \"", mVisibleConnectionName, "\" );");
    out.call(iIndent, "menu->setMenuText( Mnu_QtManager::tr( \"", mMenuText,
             "\", \"this is a menu\" ) );");
    out.call(iIndent, "menu->setItemTextConnectionName( \"", mItemTextConnectionName, "\" );");
    for (const auto &segment : mSegments)
        segment->saveSegment(oStream, iIndent, Mnu_Segment::CodeFormat);
    if (iRole == MenuBarMenu)
        out.line(iIndent, "menubarMgr->addManager( manager );");
    out.line(iIndent, "}");
}

void Mnu_Menu::dump(const QString &iPrefix)
{
    const QByteArray p = iPrefix.toLocal8Bit();
    const QString deeper = iPrefix + QStringLiteral("   ");
    qCInfo(lcMenu, "%sMnu_Menu: this[%p]", p.constData(), static_cast<void *>(this));
    qCInfo(lcMenu, "%s   manager:    [%p] (Mnu_Manager *)", p.constData(),
           static_cast<void *>(mManagerP));
    qCInfo(lcMenu, "%s   segments:  (%ld) (Mnu_Segment *)", p.constData(), long(mSegments.size()));
    for (const auto &segment : mSegments)
        segment->dump(deeper);
    qCInfo(lcMenu, "%s   id vector: (%ld) (Mnu_MenuID)", p.constData(), long(mIDs.size()));
    for (const Mnu_MenuID &id : mIDs)
        id.dump(deeper);
    qCInfo(lcMenu, "%s   segment map: (%ld)", p.constData(), long(mSegmentMap.size()));
    long i = 0;
    for (const auto &entry : mSegmentMap) {
        qCInfo(lcMenu, "%s      iteration (%ld)", p.constData(), i++);
        entry.first.dump(deeper + QStringLiteral("   "));
        entry.second->dump(deeper + QStringLiteral("   "));
    }
}
