#pragma once

#include "Kiv_IPointOfInterestFinder.h"
#include "kivcore_export.h"

#include <QList>
#include <QMenu>
#include <QVariant>

/// The popup menu of every menu and submenu the menu managers make, and of context menus
/// built by hand. Its actions are identified by their data (normally the item's name), so an
/// item can be found by a dotted path of names and located on screen.
class KIVCORE_EXPORT Kiv_PopupMenu : public QMenu, public Kiv_IPointOfInterestFinder
{
    Q_OBJECT

public:
    explicit Kiv_PopupMenu(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_PopupMenu() override;

    /// Adds an action with the text, carrying `iData`.
    QAction *insertItem(const QString &iText, const QVariant &iData);
    /// Adds a submenu entry with the text, carrying `iData`.
    QAction *insertItem(const QString &iText, QMenu *iSubmenu, const QVariant &iData);
    // Older forms: the name is the data.
    QAction *insertItem(const char *iText, const char *iName);
    QAction *insertItem(const char *iText, const char *iName, QMenu *iSubmenu);

    /// The first action whose data equals the value; with `iRecursive` a submenu is searched
    /// (depth first) before the actions after its entry. Null for a null value or no match.
    QAction *findAction(const QVariant &iData, bool iRecursive = false) const;
    /// Follows the values one level each, from this menu down through submenus.
    QAction *findAction(const QList<QVariant> &iPath) const;
    /// The action of a dotted path of data ("Markers.Add").
    QAction *getItemByPath(const QString &iPath) const;

    /// The centre of the action whose data is the name; empty when there is none or it lies
    /// off the menu.
    Kiv_PointOfInterest findPoi(const QString &iName) override;
    /// The data of the action at the point, as text.
    QString findUiName(const QPoint &iPoint) override;

    /// The action at the point, but only an enabled one: a disabled item counts as no item.
    QAction *actionAt(const QPoint &iPoint) const;
};
