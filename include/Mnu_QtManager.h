#pragma once

#include "Kiv_PopupMenu.h"
#include "Mnu_Manager.h"
#include "Mnu_Menu.h"
#include "Mnu_RadioItemsSegment.h" // generated popup sources use it without including it
#include "Mnu_Segment.h"
#include "kivcore_export.h"

#include <QKeySequence>
#include <QObject>
#include <QPoint>
#include <QPointer>

#include <map>
#include <ostream>
#include <unordered_set>
#include <vector>

class Mnu_QtMenuBarManager;
class QAction;
class QDomElement;

/// Realises one menu (Mnu_Menu) as a popup menu (Kiv_PopupMenu): every item is a QAction,
/// which is also the item's Mnu_MenuID. The popup is rebuilt from the models every time it is
/// about to be shown, and a triggered action goes back to the segment that made it.
///
/// A manager made from a description name first asks the menu factory registry: generated
/// source registers a factory under the description's base name and fills the menu in code;
/// otherwise the description is read (Mnu_Manager::xmlParser()).
///
///     Mnu_QtManager menu(nullptr, "Menus/ClipContext");   // registered code, or the file
///     menu.popup(QCursor::pos(), env);                      // connect, build and show
class KIVCORE_EXPORT Mnu_QtManager : public QObject, public Mnu_Manager
{
    Q_OBJECT

public:
    typedef Mnu_QtManager *(*MenuFactory)(Mnu_QtManager *);
    typedef void (*AboutToShowFunc)(Mnu_QtManager *, void *);

    Mnu_QtManager();
    /// A manager of the description `iName` (registered code or a file); the popup is made on
    /// first instantiation when `iPopup` is null.
    Mnu_QtManager(Kiv_PopupMenu *iPopup, const char *iName);
    /// A menu of a menu bar, built from its <Menu> element.
    Mnu_QtManager(Mnu_QtMenuBarManager *iMenuBar, Kiv_PopupMenu *iPopup, QDomElement *iElement);
    Mnu_QtManager(Mnu_QtMenuBarManager *iMenuBar, Kiv_PopupMenu *iPopup);
    ~Mnu_QtManager() override;

    /// Registers generated code that fills the menu of the description `iName` (its base
    /// name); several may register under one name, the first registered is used.
    static void registerMenuFactory(const QString &iName, void *iKey, MenuFactory iFactory);
    static void unregisterMenuFactory(const QString &iName, void *iKey);
    static MenuFactory getMenuFactory(const QString &iName);

    /// The popup (null before the first instantiation unless one was given).
    Kiv_PopupMenu *getPopupMenu() const { return mPopupP.data(); }
    /// The title the menu shows.
    QString getText() const;
    bool isEmpty() const;
    bool isVisible() const;
    Mnu_QtMenuBarManager *getParentMenuBar() const { return mMenuBarP; }

    /// Connects the menu in the environment, builds it, and pops it up at the point (global
    /// coordinates) unless it has no items. Answers whether it was shown.
    bool popup(const QPoint &iGlobalPos, Bnd_ConnectionEnvironmentPtr iEnv);
    /// Called after every rebuild before showing, with the user data.
    void setAboutToShowFunc(AboutToShowFunc iFunc, void *iUserData);

    /// Whether the key sequence is an accelerator of this menu or its submenus; with `iRemove`
    /// it is also freed.
    bool findAccel(const QKeySequence &iSequence, bool iRemove);
    /// The same for a key code and modifiers (Qt::Key and Qt::KeyboardModifiers values).
    bool findAccel(int iKey, int iModifierState, bool iRemove);
    /// The segment whose accelerator is the text: the menu's own segments first, then the
    /// submenus in order; null when none.
    Mnu_Segment *getSegmentByAccelerator(const QString &iAccelerator);
    /// The same for a key sequence, however the description wrote the accelerator
    /// ("Shift+Ctrl+S" is Ctrl+Shift+S).
    Mnu_Segment *getSegmentByAccelerator(const QKeySequence &iSequence);

    /// Writes the popup's description (format 0, `iName` is the indent) or its generated
    /// source (format 1, `iName` is the class name).
    void savePopupMenu(std::ostream &oStream, const QString &iName,
                       Mnu_Segment::saveFormat iFormat);

    // Mnu_Manager
    Mnu_Manager *managerFactory(QDomElement *iElement) override;
    Mnu_Manager *managerFactory(const char *iDescriptionName) override;
    Mnu_Manager *managerFactory() override;
    bool setMenus(QDomElement *iElement) override;
    bool setMenus(const char *iDescriptionName) override;
    bool addMenu(Mnu_Menu *iMenu) override;
    bool instantiateMenus() override;
    void clearMenus() override;
    /// Rebuilds once, on the next turn of the event loop, however often it is asked meanwhile.
    void requestRebuild() override;
    bool doSystemMessageConnect() override;
    bool isInstantiated() const override { return mInstantiated; }
    Mnu_MenuID insertSeparator() override;
    Mnu_MenuID insertItem(const QString &iName, QString &iText,
                          Mnu_Manager *iSubmenuManager) override;
    Mnu_MenuID insertItem(const QString &iName, QString &iText) override;
    bool setItemAccelerator(Mnu_MenuID iID, const QString &iAccelerator) override;
    bool setItemEnabled(Mnu_MenuID iID, bool iEnabled) override;
    bool setItemCheckable(Mnu_MenuID iID, bool iCheckable) override;
    bool setItemChecked(Mnu_MenuID iID, bool iChecked) override;
    bool getItemChecked(Mnu_MenuID iID) override;
    bool removeItem(Mnu_MenuID iID) override;
    bool setItemIcon(Mnu_MenuID iID, void *iPixmap) override;
    bool setItemIcon(Mnu_MenuID iID, const QString &iIconName) override;
    bool setItemIcon(Mnu_MenuID iID, const unsigned char *iData, int iSize) override;
    void setWhatsThis(Mnu_MenuID iID, const QString &iText) override;
    using Mnu_Manager::setWhatsThis;
    bool tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager, Mnu_Segment **oSegment,
                           int *oIndex) override;
    /// The text of the item as the menu shows it.
    QString tstGetItemText(const QString &iPath) override;
    bool xmlDerivedParser(QDomElement &iRoot) override;
    void dump(const QString &iPrefix) override;

    /// The menu's title or visibility changed: the popup's entry follows at once.
    void menuStateChanged() override;

public slots:
    void aboutToShow();
    void triggered(QAction *iAction);

protected:
    void setParentMenuBar(Mnu_QtMenuBarManager *iMenuBar) { mMenuBarP = iMenuBar; }

private:
    void construct(const char *iName);
    void clearPopup();
    /// The item's action; null for an ID that is not a live item of this popup.
    QAction *action(Mnu_MenuID iID) const;
    QAction *track(QAction *iAction);

    bool mConnected = false;
    bool mOwnsPopup = false;
    QPointer<Kiv_PopupMenu> mPopupP;
    std::vector<QAction *> mItemIDs;
    std::unordered_set<const void *> mLiveItems; // mItemIDs, for checking an ID at once
    std::map<QString, bool> mUsedAccelerators;
    Mnu_QtMenuBarManager *mMenuBarP = nullptr;
    AboutToShowFunc mAboutToShowFunc = nullptr;
    void *mAboutToShowData = nullptr;
    bool mFreshlyBuilt = false; // popup() built the items for the showing under way
    bool mRebuildPending = false;
    int mSignalDepth = 0; // inside a slot the popup's signal called

    friend class Mnu_QtMenuBarManager;
};
