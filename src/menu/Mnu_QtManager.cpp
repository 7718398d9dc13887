#include "Mnu_QtManager.h"

#include "Bnd_ConnectionToModel.h"
#include "Bnd_Utils.h"
#include "Kib_Resource.h"
#include "Kiv_PopupMenu.h"
#include "Mnu_Log.h"
#include "Mnu_Menu.h"
#include "Mnu_QtMenuBarManager.h"
#include "Mnu_SubmenuSegment.h"
#include "Mnu_Writer.h"

#include <QAction>
#include <QDomElement>
#include <QProxyStyle>
#include <QTimer>

#include <algorithm>
#include <map>
#include <utility>

namespace {
typedef std::map<QString, std::vector<std::pair<void *, Mnu_QtManager::MenuFactory>>> Factories;

// Made with the first registration; registrations live as long as the code that made them.
Factories *&factories()
{
    static Factories *f = nullptr;
    return f;
}

// "Menus\\Clip/Context" and "Context" are the same description to a registry.
QString baseName(const char *iName)
{
    QString name = QString::fromLocal8Bit(iName);
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return name.section(QLatin1Char('/'), -1);
}
} // namespace

// --- Registry of generated menus

void Mnu_QtManager::registerMenuFactory(const QString &iName, void *iKey, MenuFactory iFactory)
{
    if (!factories())
        factories() = new Factories;
    (*factories())[iName].emplace_back(iKey, iFactory);
}

void Mnu_QtManager::unregisterMenuFactory(const QString &iName, void *iKey)
{
    if (!factories())
        return;
    const auto entry = factories()->find(iName);
    if (entry == factories()->end())
        return;
    auto &list = entry->second;
    list.erase(
        std::remove_if(list.begin(), list.end(), [iKey](const auto &p) { return p.first == iKey; }),
        list.end());
    if (list.empty())
        factories()->erase(entry);
}

Mnu_QtManager::MenuFactory Mnu_QtManager::getMenuFactory(const QString &iName)
{
    if (!factories())
        return nullptr;
    const auto entry = factories()->find(iName);
    return entry == factories()->end() || entry->second.empty() ? nullptr
                                                                : entry->second.front().second;
}

// --- Construction

Mnu_QtManager::Mnu_QtManager()
{
    replaceMenu(std::make_unique<Mnu_Menu>(this));
}

Mnu_QtManager::Mnu_QtManager(Kiv_PopupMenu *iPopup, const char *iName)
    : mPopupP(iPopup)
{
    construct(iName);
}

Mnu_QtManager::Mnu_QtManager(Mnu_QtMenuBarManager *iMenuBar, Kiv_PopupMenu *iPopup,
                             QDomElement *iElement)
    : mPopupP(iPopup)
    , mMenuBarP(iMenuBar)
{
    if (iElement)
        Mnu_Manager::setMenus(iElement);
    else
        replaceMenu(std::make_unique<Mnu_Menu>(this));
}

Mnu_QtManager::Mnu_QtManager(Mnu_QtMenuBarManager *iMenuBar, Kiv_PopupMenu *iPopup)
    : Mnu_QtManager(iMenuBar, iPopup, nullptr)
{ }

Mnu_QtManager::~Mnu_QtManager()
{
    // The segments (and the submenus' managers with their popups) go first, then the popup;
    // when a slot of ours runs for one of its signals, the popup is still busy: later.
    replaceMenu(nullptr);
    if (!mOwnsPopup || !mPopupP)
        return;
    QObject::disconnect(mPopupP, nullptr, this, nullptr);
    if (mSignalDepth > 0) {
        mPopupP->hide();
        mPopupP->deleteLater();
    } else {
        delete mPopupP.data();
    }
}

void Mnu_QtManager::construct(const char *iName)
{
    replaceMenu(std::make_unique<Mnu_Menu>(this));
    if (MenuFactory factory = getMenuFactory(baseName(iName)))
        factory(this); // generated code fills the menu
    else if (iName && *iName)
        xmlParser(iName);
}

Mnu_Manager *Mnu_QtManager::managerFactory(QDomElement *iElement)
{
    auto *manager = new Mnu_QtManager;
    if (iElement)
        manager->setMenus(iElement);
    return manager;
}

Mnu_Manager *Mnu_QtManager::managerFactory(const char *iDescriptionName)
{
    return new Mnu_QtManager(nullptr, iDescriptionName);
}

Mnu_Manager *Mnu_QtManager::managerFactory()
{
    return new Mnu_QtManager;
}

bool Mnu_QtManager::setMenus(QDomElement *iElement)
{
    clearPopup();
    return Mnu_Manager::setMenus(iElement);
}

bool Mnu_QtManager::setMenus(const char *iDescriptionName)
{
    clearMenus();
    return xmlParser(iDescriptionName);
}

bool Mnu_QtManager::addMenu(Mnu_Menu *iMenu)
{
    clearPopup();
    return Mnu_Manager::addMenu(iMenu);
}

bool Mnu_QtManager::xmlDerivedParser(QDomElement &iRoot)
{
    if (iRoot.tagName() != QLatin1String("Menu")) {
        qCWarning(lcMenu, "Mnu_QtManager::xmlDerivedParser unexpected root tag <%s>",
                  qPrintable(iRoot.tagName()));
        return false;
    }
    return setMenus(&iRoot);
}

// --- Building and showing

QString Mnu_QtManager::getText() const
{
    return getMenu() ? getMenu()->getText() : QString();
}

bool Mnu_QtManager::isEmpty() const
{
    return !mPopupP || mPopupP->actions().isEmpty();
}

bool Mnu_QtManager::isVisible() const
{
    return getMenu() && getMenu()->isVisible();
}

bool Mnu_QtManager::instantiateMenus()
{
    Mnu_Menu *menu = getMenu();
    const QString name = menu ? menu->getName() : QString();
    qCDebug(lcMenu, "]]] Mnu_QtManager::instantiateMenus: menu [%s]", qPrintable(name));
    if (mPopupP && mPopupP->objectName() == QLatin1String("unnamed")) {
        mPopupP->setObjectName(name);
        mPopupP->setWindowTitle(name);
    }
    if (!mPopupP) {
        mPopupP = new Kiv_PopupMenu(nullptr, name.toLatin1().constData());
        mOwnsPopup = true;
        mConnected = false; // a new popup (the one we were given may have gone)
        Bnd_ConnectionToModel<Bndt_SimpleValue<QProxyStyle *>> style(
            Bnd_Utils::Bnd_MakeStaticConnectionSpec(
                QStringLiteral("RemoteAssetsTool.StyleOverride")),
            Bnd_ConnectionEnvironment::blankEnvironment());
        if (QProxyStyle * override = style.getValue(nullptr))
            mPopupP->setStyle(override);
    }
    clearPopup();
    mPopupP->setObjectName(name);
    mInstantiated = menu && menu->instantiate();
    mPopupP->setTitle(getText());
    doSystemMessageConnect();
    return mInstantiated;
}

bool Mnu_QtManager::doSystemMessageConnect()
{
    if (mConnected || !mPopupP)
        return mConnected;
    const bool shown
        = bool(connect(mPopupP, &QMenu::aboutToShow, this, &Mnu_QtManager::aboutToShow));
    const bool triggers
        = bool(connect(mPopupP, &QMenu::triggered, this, &Mnu_QtManager::triggered));
    mConnected = shown && triggers;
    return mConnected;
}

void Mnu_QtManager::aboutToShow()
{
    qCDebug(lcMenu, "]]] Mnu_QtManager::aboutToShow:");
    const QPointer<Mnu_QtManager> self(this);
    ++mSignalDepth;
    Mnu_Menu *menu = getMenu();
    // Built just now for this showing (popup()): the items are fresh already.
    if (!mFreshlyBuilt && menu) {
        clearPopup();
        mInstantiated = menu->instantiate();
        mPopupP->setTitle(getText());
    }
    mFreshlyBuilt = false;
    if (mAboutToShowFunc)
        mAboutToShowFunc(this, mAboutToShowData);
    if (self)
        --mSignalDepth;
}

void Mnu_QtManager::triggered(QAction *iAction)
{
    // A model write of the item may make the host destroy this manager.
    const QPointer<Mnu_QtManager> self(this);
    ++mSignalDepth;
    if (Mnu_Menu *menu = getMenu())
        menu->itemActivated(Mnu_MenuID(iAction));
    if (self)
        --mSignalDepth;
}

void Mnu_QtManager::requestRebuild()
{
    if (mRebuildPending)
        return;
    mRebuildPending = true;
    QTimer::singleShot(0, this, [this] {
        mRebuildPending = false;
        if (mInstantiated)
            instantiateMenus();
    });
}

bool Mnu_QtManager::popup(const QPoint &iGlobalPos, Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!getMenu())
        return false;
    getMenu()->makeConnections(iEnv);
    instantiateMenus();
    if (isEmpty())
        return false;
    mFreshlyBuilt = true; // the opening that follows at once needs no second build
    mPopupP->popup(iGlobalPos);
    mFreshlyBuilt = false;
    return true;
}

void Mnu_QtManager::setAboutToShowFunc(AboutToShowFunc iFunc, void *iUserData)
{
    mAboutToShowFunc = iFunc;
    mAboutToShowData = iUserData;
}

void Mnu_QtManager::menuStateChanged()
{
    if (!mPopupP || !getMenu())
        return;
    mPopupP->setTitle(getMenu()->getText());
    mPopupP->menuAction()->setVisible(getMenu()->isVisible());
}

void Mnu_QtManager::clearPopup()
{
    if (mPopupP)
        mPopupP->clear();
    mItemIDs.clear();
    mLiveItems.clear();
    mUsedAccelerators.clear();
}

QAction *Mnu_QtManager::action(Mnu_MenuID iID) const
{
    return mLiveItems.count(iID.value()) ? static_cast<QAction *>(iID.value()) : nullptr;
}

QAction *Mnu_QtManager::track(QAction *iAction)
{
    mItemIDs.push_back(iAction);
    mLiveItems.insert(iAction);
    return iAction;
}

void Mnu_QtManager::clearMenus()
{
    qCDebug(lcMenu, "]]] Mnu_QtManager::clearMenus:");
    clearPopup();
    Mnu_Manager::clearMenus();
    replaceMenu(std::make_unique<Mnu_Menu>(this)); // an empty menu, ready for new segments
    mInstantiated = false;
}

// --- Items

Mnu_MenuID Mnu_QtManager::insertSeparator()
{
    if (!mPopupP)
        return Mnu_MenuID();
    return Mnu_MenuID(track(mPopupP->addSeparator()));
}

Mnu_MenuID Mnu_QtManager::insertItem(const QString &iName, QString &iText)
{
    if (!mPopupP)
        return Mnu_MenuID();
    return Mnu_MenuID(track(mPopupP->insertItem(iText, QVariant(iName))));
}

Mnu_MenuID Mnu_QtManager::insertItem(const QString &iName, QString &iText,
                                     Mnu_Manager *iSubmenuManager)
{
    auto *submenu = dynamic_cast<Mnu_QtManager *>(iSubmenuManager);
    if (!mPopupP || !submenu || !submenu->mPopupP)
        return Mnu_MenuID();
    return Mnu_MenuID(track(mPopupP->insertItem(iText, submenu->mPopupP.data(), QVariant(iName))));
}

bool Mnu_QtManager::setItemAccelerator(Mnu_MenuID iID, const QString &iAccelerator)
{
    QAction *item = action(iID);
    if (!item)
        return false;
    qCDebug(lcMenu, "Mnu_QtManager::setItemAccelerator: set [%s], item [%p]",
            qPrintable(iAccelerator), static_cast<void *>(item));
    const QKeySequence sequence(iAccelerator);
    if (sequence.isEmpty())
        return false;
    // Shown in the menu, and kept to the menu: keys reach menu items through the key map,
    // which knows the context they were pressed in.
    item->setShortcut(sequence);
    item->setShortcutContext(Qt::WidgetShortcut);
    item->setShortcutVisibleInContextMenu(true);
    mUsedAccelerators[sequence.toString(QKeySequence::PortableText)] = true;
    return true;
}

bool Mnu_QtManager::setItemEnabled(Mnu_MenuID iID, bool iEnabled)
{
    QAction *item = action(iID);
    if (!item)
        return false;
    qCDebug(lcMenu, "Mnu_QtManager::setItemEnabled: (%p) shortcut[%s] to (%d)",
            static_cast<void *>(item), qPrintable(item->shortcut().toString()), int(iEnabled));
    item->setEnabled(iEnabled);
    return true;
}

bool Mnu_QtManager::setItemCheckable(Mnu_MenuID iID, bool iCheckable)
{
    if (QAction *item = action(iID)) {
        item->setCheckable(iCheckable);
        return true;
    }
    return false;
}

bool Mnu_QtManager::setItemChecked(Mnu_MenuID iID, bool iChecked)
{
    if (QAction *item = action(iID)) {
        item->setChecked(iChecked);
        return true;
    }
    return false;
}

bool Mnu_QtManager::getItemChecked(Mnu_MenuID iID)
{
    QAction *item = action(iID);
    return item && item->isChecked();
}

bool Mnu_QtManager::removeItem(Mnu_MenuID iID)
{
    QAction *item = action(iID);
    if (!mPopupP || !item)
        return false;
    qCDebug(lcMenu, "Mnu_QtManager::removeItem: remove item [%p]", static_cast<void *>(item));
    mItemIDs.erase(std::remove(mItemIDs.begin(), mItemIDs.end(), item), mItemIDs.end());
    mLiveItems.erase(item);
    mPopupP->removeAction(item);
    if (item->parent() == mPopupP) // made by the popup: nobody else would delete it
        delete item;
    return true;
}

bool Mnu_QtManager::setItemIcon(Mnu_MenuID iID, void *iPixmap)
{
    QAction *item = action(iID);
    if (!item || !iPixmap)
        return false;
    item->setIcon(QIcon(*static_cast<const QPixmap *>(iPixmap)));
    return true;
}

bool Mnu_QtManager::setItemIcon(Mnu_MenuID iID, const QString &iIconName)
{
    QAction *item = action(iID);
    const QPixmap pixmap = item ? Kib_Resource::loadPixmap(iIconName) : QPixmap();
    if (pixmap.isNull())
        return false;
    item->setIcon(QIcon(pixmap));
    return true;
}

bool Mnu_QtManager::setItemIcon(Mnu_MenuID iID, const unsigned char *iData, int iSize)
{
    QAction *item = action(iID);
    QPixmap pixmap;
    if (!item || !iData || iSize <= 0 || !pixmap.loadFromData(iData, uint(iSize)))
        return false;
    item->setIcon(QIcon(pixmap));
    return true;
}

void Mnu_QtManager::setWhatsThis(Mnu_MenuID iID, const QString &iText)
{
    if (QAction *item = action(iID))
        item->setWhatsThis(iText);
}

// --- Accelerators

bool Mnu_QtManager::findAccel(const QKeySequence &iSequence, bool iRemove)
{
    const QString key = iSequence.toString(QKeySequence::PortableText);
    qCDebug(lcMenu, "Mnu_QtManager::findAccel: keySequence(%s)", qPrintable(key));
    const auto used = mUsedAccelerators.find(key);
    if (used != mUsedAccelerators.end()) {
        if (iRemove)
            mUsedAccelerators.erase(used);
        return true;
    }
    Mnu_Menu *menu = getMenu();
    for (int i = 0; menu && i < menu->getSegmentCount(); ++i)
        if (auto *submenu = qobject_cast<Mnu_SubmenuSegment *>(menu->getSegmentAt(i)))
            if (auto *child = dynamic_cast<Mnu_QtManager *>(submenu->getSubmenuManager()))
                if (child->findAccel(iSequence, iRemove))
                    return true;
    return false;
}

bool Mnu_QtManager::findAccel(int iKey, int iModifierState, bool iRemove)
{
    qCDebug(lcMenu, "Mnu_QtManager::findAccel: key(%d), state(%d)", iKey, iModifierState);
    return findAccel(
        QKeySequence(QKeyCombination(Qt::KeyboardModifiers(iModifierState), Qt::Key(iKey))),
        iRemove);
}

Mnu_Segment *Mnu_QtManager::getSegmentByAccelerator(const QString &iAccelerator)
{
    Mnu_Menu *menu = getMenu();
    if (!menu || iAccelerator.isEmpty())
        return nullptr;
    for (int i = 0; i < menu->getSegmentCount(); ++i)
        if (menu->getSegmentAt(i)->getAccelerator() == iAccelerator)
            return menu->getSegmentAt(i);
    for (int i = 0; i < menu->getSegmentCount(); ++i)
        if (auto *submenu = qobject_cast<Mnu_SubmenuSegment *>(menu->getSegmentAt(i)))
            if (auto *child = dynamic_cast<Mnu_QtManager *>(submenu->getSubmenuManager()))
                if (Mnu_Segment *found = child->getSegmentByAccelerator(iAccelerator))
                    return found;
    return nullptr;
}

Mnu_Segment *Mnu_QtManager::getSegmentByAccelerator(const QKeySequence &iSequence)
{
    Mnu_Menu *menu = getMenu();
    if (!menu || iSequence.isEmpty())
        return nullptr;
    for (int i = 0; i < menu->getSegmentCount(); ++i)
        if (QKeySequence(menu->getSegmentAt(i)->getAccelerator()) == iSequence)
            return menu->getSegmentAt(i);
    for (int i = 0; i < menu->getSegmentCount(); ++i)
        if (auto *submenu = qobject_cast<Mnu_SubmenuSegment *>(menu->getSegmentAt(i)))
            if (auto *child = dynamic_cast<Mnu_QtManager *>(submenu->getSubmenuManager()))
                if (Mnu_Segment *found = child->getSegmentByAccelerator(iSequence))
                    return found;
    return nullptr;
}

bool Mnu_QtManager::tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager,
                                      Mnu_Segment **oSegment, int *oIndex)
{
    return Mnu_Manager::tstFindItemByPath(iPath, oManager, oSegment, oIndex);
}

QString Mnu_QtManager::tstGetItemText(const QString &iPath)
{
    Mnu_Manager *manager = nullptr;
    const Mnu_MenuID id = tstItem(iPath, &manager);
    auto *owner = dynamic_cast<Mnu_QtManager *>(manager);
    const QAction *item = owner ? owner->action(id) : nullptr;
    return item ? item->text() : QString();
}

// --- Writing

void Mnu_QtManager::savePopupMenu(std::ostream &oStream, const QString &iName,
                                  Mnu_Segment::saveFormat iFormat)
{
    Mnu_Menu *menu = getMenu();
    if (iFormat == Mnu_Segment::XMLFormat) {
        if (menu)
            menu->saveMenu(oStream, iName, iFormat, Mnu_Menu::PopupMenu);
        return;
    }
    Mnu_Writer::generatedFile(oStream, iName, false, [&](const QString &iIndent) {
        if (menu)
            menu->saveMenu(oStream, iIndent, iFormat, Mnu_Menu::PopupMenu);
    });
}

void Mnu_QtManager::dump(const QString &iPrefix)
{
    const QByteArray p = iPrefix.toLocal8Bit();
    qCInfo(lcMenu, "%sMnu_QtManager: this   [%p]", p.constData(), static_cast<void *>(this));
    Mnu_Manager::dump(iPrefix);
    qCInfo(lcMenu, "%s   parent menu bar: [%p] (Mnu_QtMenuBarManager *)", p.constData(),
           static_cast<void *>(mMenuBarP));
    qCInfo(lcMenu, "%s   popup menu:      [%p] (Kiv_PopupMenu *)", p.constData(),
           static_cast<void *>(mPopupP.data()));
    qCInfo(lcMenu, "%s   item IDs: total #(%ld) (QAction *)", p.constData(), long(mItemIDs.size()));
    for (size_t i = 0; i < mItemIDs.size(); ++i)
        qCInfo(lcMenu, "%s      itemID[%ld]: [%p] (QAction *)", p.constData(), long(i),
               static_cast<void *>(mItemIDs[i]));
}
