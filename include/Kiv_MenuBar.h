#pragma once

#include "Kiv_IPointOfInterestFinder.h"
#include "Kiv_WidgetConnectInterface.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QKeySequence>
#include <QMenuBar>
#include <QVariant>

#include <memory>

class Mnu_QtManager;
class Mnu_QtMenuBarManager;
class Mnu_Segment;

/// A menu bar built from a menu description: the description of the bar's name (or of
/// setMenuBarFileName()) is read into a Mnu_QtMenuBarManager, and connecting the bar
/// (makeConnections) binds every menu to its models and fills the bar.
///
///     auto *bar = new Kiv_MenuBar(window, "Menus/MainMenuBar");
///     Kiv_ConnectionUtils::recursiveConnect(window, env);
///
/// Top-level actions carry their menu's name as data, so items are found by dotted paths.
class KIVCORE_EXPORT Kiv_MenuBar : public QMenuBar,
                                   public Kiv_IPointOfInterestFinder,
                                   public Kiv_WidgetConnectInterface
{
    Q_OBJECT
    Q_PROPERTY(QByteArray menuBarFileName READ getMenuBarFileName WRITE setMenuBarFileName)

public:
    /// With a non-empty name, reads the description of that name.
    explicit Kiv_MenuBar(QWidget *iParent = nullptr, const char *iName = nullptr);
    ~Kiv_MenuBar() override;

    QByteArray getMenuBarFileName() const { return mFileName.toUtf8(); }
    /// Builds a new manager from the description of that name (the same name does nothing).
    void setMenuBarFileName(const QByteArray &iName);
    std::shared_ptr<Mnu_QtMenuBarManager> getMenuBarManager() const { return mManagerP; }

    /// Connects every menu in the environment and fills the bar.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;

    /// Adds a menu; its action carries the menu's object name as data.
    QAction *addMenu(QMenu *iMenu);
    using QMenuBar::addMenu;
    QAction *insertItem(const char *iText, const char *iName, QMenu *iMenu);
    QAction *insertItem(const QString &iText, const QString &iName, QMenu *iMenu);
    QAction *insertItem(const QString &iText, QMenu *iMenu, const QVariant &iData);

    /// The first top-level action whose data equals the value; null for a null value.
    QAction *findAction(const QVariant &iData) const;
    /// The action of a dotted path: a top-level action by its data, then down its menus.
    QAction *getItemByPath(const QString &iPath) const;

    bool isDefinedAccelerator(const QKeySequence &iSequence) const;
    /// Frees the accelerator for another use.
    bool deleteAccelerator(const QKeySequence &iSequence);
    Mnu_Segment *getSegmentByAccelerator(const QKeySequence &iSequence);
    bool tstFindItemByPath(const QString &iPath, Mnu_QtManager **oManager, Mnu_Segment **oSegment,
                           QAction **oAction);

    Kiv_PointOfInterest findPoi(const QString &iName) override;
    QString findUiName(const QPoint &iPoint) override;

private:
    std::shared_ptr<Mnu_QtMenuBarManager> mManagerP;
    QString mFileName;
};
