#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Mnu_MenuID.h"
#include "kivcore_export.h"

#include <QString>

#include <memory>
#include <string>

class Mnu_Menu;
class Mnu_Segment;
class Mnu_SubmenuSegment;
class QByteArray;
class QDomElement;

/// Owns one menu (Mnu_Menu) and makes its items: the only thing a segment talks to when it
/// creates, changes or removes items. Segments decide what items exist and what state they
/// have; a concrete manager (Mnu_QtManager) decides how they appear. The item operations of
/// this base class do nothing and answer false or a null ID.
///
/// A manager is built, given its menu (from a description file, a DOM element or code),
/// connected to its models (makeConnections), then instantiated; a change to the menu's
/// segments after that rebuilds the items at once.
class KIVCORE_EXPORT Mnu_Manager
{
public:
    /// How deep menus may nest in a description; deeper submenus are reported and left out,
    /// so a hostile file cannot exhaust the stack.
    static constexpr int cMaxMenuDepth = 32;

    Mnu_Manager();
    virtual ~Mnu_Manager();
    Mnu_Manager(const Mnu_Manager &) = delete;
    Mnu_Manager &operator=(const Mnu_Manager &) = delete;

    /// A new manager of the same concrete kind (for submenus): from a <Menu> element, from a
    /// description name, or empty. The caller owns it. The base makes none.
    virtual Mnu_Manager *managerFactory(QDomElement *iElement);
    virtual Mnu_Manager *managerFactory(const char *iDescriptionName);
    virtual Mnu_Manager *managerFactory();

    /// Replaces the menu by one built from a <Menu> element, or read from a description.
    virtual bool setMenus(QDomElement *iElement);
    virtual bool setMenus(const char *iDescriptionName);
    /// Reads a description into this manager (xmlParser()).
    virtual bool addMenus(const char *iDescriptionName);
    /// Takes the menu (owned from now on), replacing the present one.
    virtual bool addMenu(Mnu_Menu *iMenu);
    /// Builds (or rebuilds) the toolkit items from the menu.
    virtual bool instantiateMenus();
    /// Empties the menu.
    virtual void clearMenus();
    /// The menu's content changed while it is built: build it again (a toolkit manager may
    /// gather several requests into one rebuild).
    virtual void requestRebuild();
    /// Connects the toolkit's signals to the manager.
    virtual bool doSystemMessageConnect();

    virtual Mnu_Menu *getMenu() const;
    virtual bool isInstantiated() const;

    // Item operations, called by the segments while the menu is instantiated.
    virtual Mnu_MenuID insertSeparator();
    virtual Mnu_MenuID insertItem(const QString &iName, QString &iText,
                                  Mnu_Manager *iSubmenuManager);
    virtual Mnu_MenuID insertItem(const QString &iName, QString &iText);
    virtual bool setItemAccelerator(Mnu_MenuID iID, const QString &iAccelerator);
    virtual bool setItemEnabled(Mnu_MenuID iID, bool iEnabled);
    virtual bool setItemCheckable(Mnu_MenuID iID, bool iCheckable);
    virtual bool setItemChecked(Mnu_MenuID iID, bool iChecked);
    virtual bool getItemChecked(Mnu_MenuID iID);
    virtual bool removeItem(Mnu_MenuID iID);
    /// The icon from a QPixmap (passed as its address), from an image file in the resource
    /// directory, or from the bytes of an image file.
    virtual bool setItemIcon(Mnu_MenuID iID, void *iPixmap);
    virtual bool setItemIcon(Mnu_MenuID iID, const QString &iIconName);
    virtual bool setItemIcon(Mnu_MenuID iID, const unsigned char *iData, int iSize);
    virtual void setParentSegment(Mnu_SubmenuSegment *iSegment);
    virtual void setWhatsThis(Mnu_MenuID iID, const QString &iText);
    void setWhatsThis(Mnu_MenuID iID, const std::string &iText);

    // Queries by item path, for automated checks of the user interface: the menu's name, then
    // the names of the segments down to the item, separated by "." (a submenu segment's name
    // leads into its menu); a last part made of digits is the index of an item within its
    // segment. The menu is rebuilt from its models first, as when it is opened.
    virtual bool tstGetItemEnabled(const QString &iPath);
    virtual bool tstGetItemChecked(const QString &iPath);
    virtual bool tstGetItemVisible(const QString &iPath);
    virtual QString tstGetItemText(const QString &iPath);
    /// Triggers the item as a click would; answers whether an enabled item was found.
    virtual bool tstActivateItem(const QString &iPath);
    /// Finds the item: its manager, segment and index within the segment.
    virtual bool tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager,
                                   Mnu_Segment **oSegment, int *oIndex);

    /// Connects the menu's models in the environment.
    virtual void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv);

    /// Reads a description: the resource directory, the name and ".xml", or else the name as it
    /// is. A missing file answers false silently; malformed XML is logged.
    virtual bool xmlParser(const char *iDescriptionName);
    /// Interprets the root element of a description (the concrete manager knows its roots).
    virtual bool xmlDerivedParser(QDomElement &iRoot);
    /// Reads a description from its text (what xmlParser() does once the file is read).
    bool parseDescription(const QByteArray &iXml, const QString &iSource);

    virtual void dump(const QString &iPrefix);
    /// The menu's title or visibility model changed (the shown menu may follow at once).
    virtual void menuStateChanged();

    Mnu_SubmenuSegment *getParentSegment() const { return mParentSegmentP; }
    /// How many menus enclose this manager's menu (0 for a top-level menu).
    int menuDepth() const;

protected:
    /// Replaces the menu (null deletes it).
    void replaceMenu(std::unique_ptr<Mnu_Menu> iMenu);
    /// The item of a path, after the menu was rebuilt; null ID when there is none.
    Mnu_MenuID tstItem(const QString &iPath, Mnu_Manager **oManager = nullptr,
                       Mnu_Segment **oSegment = nullptr);

    bool mInstantiated = false;

private:
    Mnu_SubmenuSegment *mParentSegmentP = nullptr;
    std::unique_ptr<Mnu_Menu> mMenuP;
};
