#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Mnu_MenuID.h"
#include "Mnu_Segment.h"
#include "kivcore_export.h"

#include <QString>

#include <map>
#include <memory>
#include <ostream>
#include <vector>

class Mnu_Manager;
class QDomElement;

/// One menu: an ordered list of segments (Mnu_Segment), each making a stretch of items, owned
/// by exactly one manager. The menu's title and visibility may come from models.
///
/// instantiate() asks every segment to make its items through the manager, collapsing
/// separators: none at the start, none doubled, none at the end (also when the segments after
/// a separator made nothing). A menu without <Text> and without a title model shows its
/// <Name>; one whose title model yields an empty text shows <Text>. A menu with a visible
/// connection whose model cannot be reached is hidden.
class KIVCORE_EXPORT Mnu_Menu
{
public:
    /// Where the menu stands, for the generated source.
    enum Role {
        PopupMenu, ///< the menu of a popup manager
        Submenu, ///< the menu of a submenu segment
        MenuBarMenu ///< one menu of a menu bar
    };

    Mnu_Menu();
    explicit Mnu_Menu(Mnu_Manager *iManager);
    /// Builds the menu from a <Menu> element: <Name>, <Text>, <VisibleConnectionName> and
    /// <TextConnectionName> set the menu's own fields; every other child is a segment.
    Mnu_Menu(Mnu_Manager *iManager, QDomElement *iElement);
    virtual ~Mnu_Menu();
    Mnu_Menu(const Mnu_Menu &) = delete;
    Mnu_Menu &operator=(const Mnu_Menu &) = delete;

    virtual bool isVisible() const { return mVisible; }
    /// Finds the item named by the parts of `iPath` (split at `iSeparator`) from part `iDepth`
    /// on: the part at `iDepth` must be this menu's name. Answers the segment and the ID of the
    /// item, and what is left of the path after the part naming the segment.
    virtual bool tstFindItemByPath(const QString &iPath, int iDepth, Mnu_Segment **oSegment,
                                   Mnu_MenuID *oID, const QString &iSeparator,
                                   QString *oRemainingPath);
    virtual QString getName() const { return mName; }
    virtual void setName(const QString &iName) { mName = iName; }
    virtual int getSegmentCount() const { return int(mSegments.size()); }
    /// Connects the title and visibility models, then every segment.
    virtual void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv);

    Mnu_Manager *getManager() const { return mManagerP; }
    /// The title the toolkit menu shows (set by instantiate()).
    const QString &getText() const { return mShownTitle; }
    const QString &getMenuText() const { return mMenuText; }
    void setMenuText(const QString &iText) { mMenuText = iText; }
    const QString &getVisibleConnectionName() const { return mVisibleConnectionName; }
    void setVisibleConnectionName(const QString &iName) { mVisibleConnectionName = iName; }
    const QString &getItemTextConnectionName() const { return mItemTextConnectionName; }
    void setItemTextConnectionName(const QString &iName) { mItemTextConnectionName = iName; }
    /// The segment at the index; null when out of range.
    Mnu_Segment *getSegmentAt(int iIndex) const;

    /// Appends a segment (owned from now on); one already in the menu is left where it is.
    void addSegment(Mnu_Segment *iSegment);
    /// Inserts a segment before (or, with `iAfter`, behind) the reference; without a
    /// reference at the front, with one that is not in the menu at the end. An instantiated
    /// menu is rebuilt at once.
    void insertSegment(Mnu_Segment *iSegment, Mnu_Segment *iReference, bool iAfter);
    /// Removes and deletes the segment (a built menu is rebuilt); answers whether it was in the
    /// menu.
    bool removeSegment(Mnu_Segment *iSegment);
    bool contains(const Mnu_Segment *iSegment) const;
    /// Gives the menu to a manager (Mnu_Manager::addMenu()).
    void setManager(Mnu_Manager *iManager) { mManagerP = iManager; }
    void clearSegments();

    /// Makes the items through the manager (which removed the old ones); answers false,
    /// making nothing, when the menu is hidden.
    bool instantiate();
    /// Records that the segment made the item.
    void setIDAssignedToSegment(Mnu_Segment *iSegment, Mnu_MenuID iID);
    /// Forwards a triggered item to the segment that made it; an unknown ID is ignored.
    void itemActivated(Mnu_MenuID iID);
    /// Enables or disables every item the segment made.
    void setItemEnabled(Mnu_Segment *iSegment, bool iEnabled);
    /// The items made since the last instantiation, in creation order.
    const std::vector<Mnu_MenuID> &itemIDs() const { return mIDs; }
    /// The segment that made the item; null when none.
    Mnu_Segment *segmentOf(Mnu_MenuID iID) const;

    void menuTextNotifyCallback(const Bnd_MessageInterface &iMsg);
    void menuVisibleNotifyCallback(const Bnd_MessageInterface &iMsg);

    /// Writes the menu as a <Menu> element (format 0, `iIndent` before each line) or as the
    /// source that builds it (format 1, in the given role).
    void saveMenu(std::ostream &oStream, const QString &iIndent, Mnu_Segment::saveFormat iFormat,
                  Role iRole = PopupMenu);

    void dump(const QString &iPrefix);

private:
    void emitCode(std::ostream &oStream, const QString &iIndent, Role iRole);
    void refreshTitle();

    Mnu_Manager *mManagerP = nullptr;
    std::vector<std::unique_ptr<Mnu_Segment>> mSegments;
    std::vector<Mnu_MenuID> mIDs;
    std::map<Mnu_MenuID, Mnu_Segment *> mSegmentMap;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<QString>>> mTitleListenerP;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<bool>>> mVisibleListenerP;
    QString mMenuText;
    QString mName;
    QString mTitleModelValue;
    QString mShownTitle;
    bool mVisible = true;
    QString mVisibleConnectionName;
    QString mItemTextConnectionName;
};
