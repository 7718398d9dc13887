#include "Mnu_QtMenuBarManager.h"

#include "Kiv_MenuBar.h"
#include "Mnu_Log.h"
#include "Mnu_Menu.h"
#include "Mnu_QtManager.h"
#include "Mnu_Writer.h"

#include <QAction>
#include <QDomElement>

#include <algorithm>
#include <map>

namespace {
typedef std::map<QString, Mnu_QtMenuBarManager::MenuBarFactory> Factories;

Factories *&factories()
{
    static Factories *f = nullptr;
    return f;
}
} // namespace

void Mnu_QtMenuBarManager::registerMenuBarFactory(const QString &iName, MenuBarFactory iFactory)
{
    if (!factories())
        factories() = new Factories;
    factories()->emplace(iName, iFactory); // the first registered under a name is kept
}

void Mnu_QtMenuBarManager::unregisterMenuBarFactory(const QString &iName)
{
    if (factories())
        factories()->erase(iName);
}

Mnu_QtMenuBarManager::MenuBarFactory Mnu_QtMenuBarManager::getMenuBarFactory(const QString &iName)
{
    if (!factories())
        return nullptr;
    const auto entry = factories()->find(iName);
    return entry == factories()->end() ? nullptr : entry->second;
}

Mnu_QtMenuBarManager::Mnu_QtMenuBarManager() = default;

Mnu_QtMenuBarManager::Mnu_QtMenuBarManager(Kiv_MenuBar *iMenuBar)
    : mMenuBarP(iMenuBar)
{ }

Mnu_QtMenuBarManager::Mnu_QtMenuBarManager(Kiv_MenuBar *iMenuBar, const char *iName)
    : mMenuBarP(iMenuBar)
{
    construct(iName);
}

Mnu_QtMenuBarManager::Mnu_QtMenuBarManager(const char *iName)
{
    construct(iName);
}

Mnu_QtMenuBarManager::~Mnu_QtMenuBarManager()
{
    if (mMenuBarP)
        mMenuBarP->clear();
}

void Mnu_QtMenuBarManager::construct(const char *iName)
{
    QString base = QString::fromLocal8Bit(iName);
    base.replace(QLatin1Char('\\'), QLatin1Char('/'));
    base = base.section(QLatin1Char('/'), -1);
    if (MenuBarFactory factory = getMenuBarFactory(base))
        factory(this); // generated code adds the menus
    else if (iName && *iName)
        xmlParser(iName);
}

Mnu_QtManager *Mnu_QtMenuBarManager::getMenuAt(int iIndex) const
{
    return iIndex >= 0 && iIndex < int(mManagers.size()) ? mManagers[size_t(iIndex)].get()
                                                         : nullptr;
}

Mnu_QtManager *Mnu_QtMenuBarManager::createManager()
{
    return new Mnu_QtManager(this, nullptr);
}

Mnu_QtManager *Mnu_QtMenuBarManager::createManager(QDomElement *iElement)
{
    return new Mnu_QtManager(this, nullptr, iElement);
}

Mnu_QtManager *Mnu_QtMenuBarManager::addManager(QDomElement *iElement)
{
    Mnu_QtManager *manager = createManager(iElement);
    addManager(manager);
    return manager;
}

void Mnu_QtMenuBarManager::addManager(Mnu_QtManager *iManager)
{
    if (!iManager)
        return;
    iManager->setParentMenuBar(this);
    mManagers.emplace_back(iManager);
    mMenuBarActions.push_back(nullptr);
}

void Mnu_QtMenuBarManager::insertManager(Mnu_QtManager *iManager)
{
    if (!iManager)
        return;
    iManager->setParentMenuBar(this);
    mManagers.emplace(mManagers.begin(), iManager);
    mMenuBarActions.insert(mMenuBarActions.begin(), nullptr);
}

void Mnu_QtMenuBarManager::insertManager(Mnu_QtManager *iManager, Mnu_QtManager *iReference,
                                         bool iAfter)
{
    if (!iManager)
        return;
    if (!iReference) {
        insertManager(iManager);
        return;
    }
    auto position = std::find_if(mManagers.begin(), mManagers.end(),
                                 [iReference](const auto &m) { return m.get() == iReference; });
    if (position != mManagers.end() && iAfter)
        ++position;
    const auto index = position - mManagers.begin();
    iManager->setParentMenuBar(this);
    mManagers.emplace(position, iManager);
    // A placeholder until the menu bar is rebuilt.
    mMenuBarActions.insert(mMenuBarActions.begin() + index, nullptr);
}

Mnu_QtManager *Mnu_QtMenuBarManager::insertManager(QDomElement *iElement, Mnu_QtManager *iReference)
{
    Mnu_QtManager *manager = createManager(iElement);
    insertManager(manager, iReference, false);
    return manager;
}

bool Mnu_QtMenuBarManager::removeMenu(Mnu_QtManager *iManager)
{
    const auto position = std::find_if(mManagers.begin(), mManagers.end(),
                                       [iManager](const auto &m) { return m.get() == iManager; });
    if (position == mManagers.end())
        return false;
    const auto index = size_t(position - mManagers.begin());
    if (mMenuBarP && mMenuBarActions[index])
        mMenuBarP->removeAction(mMenuBarActions[index]);
    mMenuBarActions.erase(mMenuBarActions.begin() + long(index));
    mManagers.erase(position);
    return true;
}

bool Mnu_QtMenuBarManager::instantiateMenus(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!mMenuBarP)
        return false;
    if (mInstantiated)
        mMenuBarP->clear();
    mEnv = iEnv;
    makeConnections(iEnv);
    mInstantiated = true;
    for (size_t i = 0; i < mManagers.size(); ++i) {
        Mnu_QtManager *manager = mManagers[i].get();
        manager->instantiateMenus();
        QAction *action = mMenuBarP->addMenu(manager->getPopupMenu());
        mMenuBarActions[i] = action;
        if (action && !manager->isVisible())
            action->setVisible(false);
    }
    return true;
}

bool Mnu_QtMenuBarManager::instantiateMenus()
{
    return instantiateMenus(mEnv);
}

void Mnu_QtMenuBarManager::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    for (const auto &manager : mManagers)
        manager->makeConnections(iEnv);
}

bool Mnu_QtMenuBarManager::setMenus(QDomElement *iElement)
{
    clearMenus();
    return iElement && xmlDerivedParser(*iElement);
}

bool Mnu_QtMenuBarManager::setMenus(const char *iDescriptionName)
{
    clearMenus();
    return xmlParser(iDescriptionName);
}

void Mnu_QtMenuBarManager::clearMenus()
{
    if (mMenuBarP)
        mMenuBarP->clear();
    mManagers.clear();
    mMenuBarActions.clear();
    mInstantiated = false;
}

bool Mnu_QtMenuBarManager::xmlDerivedParser(QDomElement &iRoot)
{
    if (iRoot.tagName() != QLatin1String("MenuBar")) {
        qCWarning(lcMenu, "Mnu_QtMenuBarManager::xmlDerivedParser unexpected root tag <%s>",
                  qPrintable(iRoot.tagName()));
        return false;
    }
    for (QDomElement child = iRoot.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("Menu"))
            addManager(&child);
        else
            qCWarning(lcMenu,
                      "Mnu_Manager::xmlParser - unexpected tag <%s> parsing <MenuBar>, continuing",
                      qPrintable(child.tagName()));
    }
    return true;
}

// --- Accelerators

bool Mnu_QtMenuBarManager::findAccelerator(const QKeySequence &iSequence, bool iRemove)
{
    for (const auto &manager : mManagers)
        if (manager->findAccel(iSequence, iRemove))
            return true;
    return false;
}

Mnu_Segment *Mnu_QtMenuBarManager::getSegmentByAccelerator(const QKeySequence &iSequence)
{
    for (const auto &manager : mManagers)
        if (Mnu_Segment *segment = manager->getSegmentByAccelerator(iSequence))
            return segment;
    return nullptr;
}

// --- Queries by path: the first menu that has the item answers.

Mnu_QtManager *Mnu_QtMenuBarManager::managerFor(const QString &iPath)
{
    for (const auto &manager : mManagers)
        if (manager->tstFindItemByPath(iPath, nullptr, nullptr, nullptr))
            return manager.get();
    return nullptr;
}

bool Mnu_QtMenuBarManager::tstGetItemEnabled(const QString &iPath)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager && manager->tstGetItemEnabled(iPath);
}

bool Mnu_QtMenuBarManager::tstGetItemChecked(const QString &iPath)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager && manager->tstGetItemChecked(iPath);
}

bool Mnu_QtMenuBarManager::tstGetItemVisible(const QString &iPath)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager && manager->tstGetItemVisible(iPath);
}

QString Mnu_QtMenuBarManager::tstGetItemText(const QString &iPath)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager ? manager->tstGetItemText(iPath) : QString();
}

bool Mnu_QtMenuBarManager::tstActivateItem(const QString &iPath)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager && manager->tstActivateItem(iPath);
}

bool Mnu_QtMenuBarManager::tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager,
                                             Mnu_Segment **oSegment, int *oIndex)
{
    Mnu_QtManager *manager = managerFor(iPath);
    return manager && manager->tstFindItemByPath(iPath, oManager, oSegment, oIndex);
}

// --- Writing

void Mnu_QtMenuBarManager::saveMenuBar(std::ostream &oStream, const QString &iName,
                                       Mnu_Segment::saveFormat iFormat)
{
    if (iFormat == Mnu_Segment::XMLFormat) {
        Mnu_Writer out(oStream);
        out.line(iName, "<MenuBar>");
        for (const auto &manager : mManagers)
            if (Mnu_Menu *menu = manager->getMenu())
                menu->saveMenu(oStream, iName + QStringLiteral("  "), iFormat,
                               Mnu_Menu::MenuBarMenu);
        out.line(iName, "</MenuBar>");
        return;
    }
    Mnu_Writer::generatedFile(oStream, iName, true, [&](const QString &iIndent) {
        for (const auto &manager : mManagers)
            if (Mnu_Menu *menu = manager->getMenu())
                menu->saveMenu(oStream, iIndent, iFormat, Mnu_Menu::MenuBarMenu);
    });
}

void Mnu_QtMenuBarManager::dump(const QString &iPrefix)
{
    const QByteArray p = iPrefix.toLocal8Bit();
    qCInfo(lcMenu, "%sMnu_QtMenuBarManager: this[%p]", p.constData(), static_cast<void *>(this));
    qCInfo(lcMenu, "%s   menu bar:       [%p] (Kiv_MenuBar *)", p.constData(),
           static_cast<void *>(mMenuBarP));
    qCInfo(lcMenu, "%s   popup menus: total #(%ld)", p.constData(), long(mManagers.size()));
    for (size_t i = 0; i < mManagers.size(); ++i)
        qCInfo(lcMenu, "%s      popup menu[%ld]: [%p] (Mnu_QtManager *)", p.constData(), long(i),
               static_cast<void *>(mManagers[i].get()));
    qCInfo(lcMenu, "%s   item IDs:    total #(%ld)", p.constData(), long(mMenuBarActions.size()));
    for (size_t i = 0; i < mMenuBarActions.size(); ++i)
        qCInfo(lcMenu, "%s      item ID[%ld]: [%p] (QAction *)", p.constData(), long(i),
               static_cast<void *>(mMenuBarActions[i]));
    qCInfo(lcMenu, "%s   popup menus: details of (%ld) (Mnu_QtManager *)", p.constData(),
           long(mManagers.size()));
    for (const auto &manager : mManagers) {
        if (manager)
            manager->dump(iPrefix + QStringLiteral("   "));
        else
            qCInfo(lcMenu, "%s      NULL pointer!", p.constData());
    }
}
