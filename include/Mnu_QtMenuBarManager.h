#pragma once

#include "Mnu_Manager.h"
#include "Mnu_Segment.h"
#include "kivcore_export.h"

#include <QKeySequence>

#include <memory>
#include <ostream>
#include <vector>

class Kiv_MenuBar;
class Mnu_QtManager;
class QAction;
class QDomElement;

/// Realises a whole menu bar (Kiv_MenuBar) as an ordered list of popup managers
/// (Mnu_QtManager), which it owns. Filled from a description (root <MenuBar>) or by generated
/// source registered under the description's name.
class KIVCORE_EXPORT Mnu_QtMenuBarManager : public Mnu_Manager
{
public:
    typedef Mnu_QtMenuBarManager *(*MenuBarFactory)(Mnu_QtMenuBarManager *);

    Mnu_QtMenuBarManager();
    explicit Mnu_QtMenuBarManager(Kiv_MenuBar *iMenuBar);
    /// Fills the manager from registered code or the description of that name.
    Mnu_QtMenuBarManager(Kiv_MenuBar *iMenuBar, const char *iName);
    explicit Mnu_QtMenuBarManager(const char *iName);
    ~Mnu_QtMenuBarManager() override;

    static void registerMenuBarFactory(const QString &iName, MenuBarFactory iFactory);
    static void unregisterMenuBarFactory(const QString &iName);
    static MenuBarFactory getMenuBarFactory(const QString &iName);

    void setMenuBar(Kiv_MenuBar *iMenuBar) { mMenuBarP = iMenuBar; }
    Kiv_MenuBar *getMenuBar() const { return mMenuBarP; }
    int getMenuCount() const { return int(mManagers.size()); }
    /// The manager at the index; null when out of range.
    Mnu_QtManager *getMenuAt(int iIndex) const;

    /// A new, empty popup manager of this menu bar (not added yet).
    Mnu_QtManager *createManager();
    /// Appends a manager built from a <Menu> element and answers it.
    Mnu_QtManager *addManager(QDomElement *iElement);
    /// Appends a manager (owned from now on).
    void addManager(Mnu_QtManager *iManager);
    /// Inserts a manager in front of all.
    void insertManager(Mnu_QtManager *iManager);
    /// Inserts a manager before (or, with `iAfter`, behind) the reference; an unknown reference
    /// appends.
    void insertManager(Mnu_QtManager *iManager, Mnu_QtManager *iReference, bool iAfter);
    Mnu_QtManager *insertManager(QDomElement *iElement, Mnu_QtManager *iReference);
    /// Removes and deletes the manager.
    bool removeMenu(Mnu_QtManager *iManager);

    /// Connects every menu and fills the menu bar; false without a menu bar.
    bool instantiateMenus(Bnd_ConnectionEnvironmentPtr iEnv);
    /// Fills the menu bar again, in the environment it was last connected in.
    bool instantiateMenus() override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool setMenus(QDomElement *iElement) override;
    bool setMenus(const char *iDescriptionName) override;
    void clearMenus() override;
    bool isInstantiated() const override { return mInstantiated; }

    /// Whether a menu has the accelerator; with `iRemove` it is also freed.
    bool findAccelerator(const QKeySequence &iSequence, bool iRemove);
    /// The segment with the accelerator, asking the menus in order; null when none.
    Mnu_Segment *getSegmentByAccelerator(const QKeySequence &iSequence);

    /// Writes the menu bar's description (format 0, `iName` is the indent) or its generated
    /// source (format 1, `iName` is the class name).
    void saveMenuBar(std::ostream &oStream, const QString &iName, Mnu_Segment::saveFormat iFormat);

    bool tstGetItemEnabled(const QString &iPath) override;
    bool tstGetItemChecked(const QString &iPath) override;
    bool tstGetItemVisible(const QString &iPath) override;
    QString tstGetItemText(const QString &iPath) override;
    bool tstActivateItem(const QString &iPath) override;
    bool tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager, Mnu_Segment **oSegment,
                           int *oIndex) override;
    bool xmlDerivedParser(QDomElement &iRoot) override;
    void dump(const QString &iPrefix) override;

protected:
    Mnu_QtManager *createManager(QDomElement *iElement);

private:
    void construct(const char *iName);
    /// The first menu manager that finds the path.
    Mnu_QtManager *managerFor(const QString &iPath);

    Kiv_MenuBar *mMenuBarP = nullptr;
    Bnd_ConnectionEnvironmentPtr mEnv;
    std::vector<std::unique_ptr<Mnu_QtManager>> mManagers;
    std::vector<QAction *> mMenuBarActions;
};
