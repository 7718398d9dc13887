#pragma once

#include "bndcore_export.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include <array>

class QAction;
class QMenu;

/// The commands of the application's Edit menu.
enum Kic_EditCommand {
    Kic_Undo = 0,
    Kic_Redo = 1,
    Kic_Cut = 2,
    Kic_Copy = 3,
    Kic_Paste = 4,
    Kic_Delete = 5,
    Kic_SelectAll = 6,
    Kic_CommandCount = 7
};

/// Something that obeys edit commands, typically a text widget.
class BNDCORE_EXPORT Kic_Commander
{
public:
    virtual ~Kic_Commander();

    /// Whether the commander knows the command; when it does, whether it can be obeyed now and
    /// the text to show for it (empty for the standard text, e.g. "&Undo").
    virtual bool findCommandStatus(unsigned int iCommand, bool &oEnabled, QString &oText) = 0;
    /// Carries the command out; answers whether it did.
    virtual bool obeyCommand(unsigned int iCommand) = 0;
};

/// The application-wide Edit menu, which acts on the focused commander.
///
/// A commander widget reports its focus changes:
///
///     void focusInEvent(QFocusEvent *e) override
///     {
///         Kic_EditMenu::instance().focusInEvent(this);
///         ...
///     }
///     void focusOutEvent(QFocusEvent *e) override
///     {
///         Kic_EditMenu::instance().isFocusOutEvent(
///             this, Kic_EditMenu::isPopupFocusReason(e->reason()));
///         ...
///     }
///
/// Focus going to a popup (the Edit menu itself, a context menu) keeps the commander current,
/// so the menu acts on the widget the user was typing in. Hosts show the menu's actions in
/// their menu bar with attachToMenu(); the actions follow the current commander whenever the
/// menu is about to show or the current commander changes.
///
/// The menu lives for the whole process, so commanders destroyed late can still report. GUI
/// thread only.
class BNDCORE_EXPORT Kic_EditMenu : public QObject
{
    Q_OBJECT

public:
    static Kic_EditMenu &instance();

    /// Whether a focus change of this reason goes to a popup or the menu bar, i.e. whether a
    /// commander losing focus for it should stay current.
    static bool isPopupFocusReason(Qt::FocusReason iReason);

    /// Makes the commander current (null makes none current).
    void focusInEvent(Kic_Commander *iCommander);
    /// The commander lost focus. For a popup it stays current and this answers false;
    /// otherwise it stops being current (if it was) and this answers true.
    bool isFocusOutEvent(Kic_Commander *iCommander, bool iIsPopupReason);
    /// A commander is going away; it stops being current if it was.
    void commanderDestroyed(Kic_Commander *iCommander);

    Kic_Commander *currentCommander() const { return mCurrent; }

    /// The current commander's findCommandStatus; false (and disabled) without one.
    bool commandStatus(unsigned int iCommand, bool &oEnabled, QString &oText);
    /// The current commander's obeyCommand; false without one.
    bool obey(unsigned int iCommand);

    /// The standard menu text of a command ("&Undo", ...); empty for other numbers.
    static QString defaultText(unsigned int iCommand);

    /// The menu's actions in command order, made on first use (which needs a
    /// QGuiApplication; without one the list is empty). Owned by the menu. A triggered action
    /// obeys its command when the current commander has it enabled.
    QList<QAction *> actions();
    /// The action of one command, null for other numbers.
    QAction *action(unsigned int iCommand);
    /// Adds the actions to a host's menu, separated in the usual groups, and keeps them up to
    /// date whenever the menu is about to show.
    void attachToMenu(QMenu *iMenu);
    /// Enables the actions and sets their texts from the current commander.
    void updateActions();

signals:
    void currentCommanderChanged(Kic_Commander *iCommander);

private:
    Kic_EditMenu();
    void setCurrent(Kic_Commander *iCommander);
    void createActions();
    static void deleteActions();

    Kic_Commander *mCurrent = nullptr;
    std::array<QPointer<QAction>, Kic_CommandCount> mActions;
};

/// A commander that leaves the Edit menu when it is destroyed, so a destroyed widget is never
/// current. Widgets derive from this rather than from Kic_Commander.
class BNDCORE_EXPORT Kic_EditMenuCommander : public Kic_Commander
{
public:
    Kic_EditMenuCommander() = default;
    Kic_EditMenuCommander(const Kic_EditMenuCommander &) = delete;
    Kic_EditMenuCommander &operator=(const Kic_EditMenuCommander &) = delete;
    ~Kic_EditMenuCommander() override;
};
