#include "Kic_EditMenu.h"

#include <QAction>
#include <QCoreApplication>
#include <QDebug>
#include <QGuiApplication>
#include <QMenu>

Kic_Commander::~Kic_Commander() = default;

Kic_EditMenuCommander::~Kic_EditMenuCommander()
{
    Kic_EditMenu::instance().commanderDestroyed(this);
}

Kic_EditMenu::Kic_EditMenu() = default;

Kic_EditMenu &Kic_EditMenu::instance()
{
    // Never destroyed: commanders may still report from static destructors.
    static Kic_EditMenu *const sInstance = new Kic_EditMenu;
    return *sInstance;
}

bool Kic_EditMenu::isPopupFocusReason(Qt::FocusReason iReason)
{
    return iReason == Qt::PopupFocusReason || iReason == Qt::MenuBarFocusReason;
}

void Kic_EditMenu::setCurrent(Kic_Commander *iCommander)
{
    if (mCurrent == iCommander)
        return;
    mCurrent = iCommander;
    updateActions();
    emit currentCommanderChanged(mCurrent);
}

void Kic_EditMenu::focusInEvent(Kic_Commander *iCommander)
{
    setCurrent(iCommander);
}

bool Kic_EditMenu::isFocusOutEvent(Kic_Commander *iCommander, bool iIsPopupReason)
{
    if (iIsPopupReason)
        return false;
    if (iCommander && iCommander == mCurrent)
        setCurrent(nullptr);
    return true;
}

void Kic_EditMenu::commanderDestroyed(Kic_Commander *iCommander)
{
    if (iCommander && iCommander == mCurrent)
        setCurrent(nullptr);
}

bool Kic_EditMenu::commandStatus(unsigned int iCommand, bool &oEnabled, QString &oText)
{
    oEnabled = false;
    oText.clear();
    if (!mCurrent)
        return false;
    const bool known = mCurrent->findCommandStatus(iCommand, oEnabled, oText);
    if (!known)
        oEnabled = false;
    return known;
}

bool Kic_EditMenu::obey(unsigned int iCommand)
{
    return mCurrent ? mCurrent->obeyCommand(iCommand) : false;
}

QString Kic_EditMenu::defaultText(unsigned int iCommand)
{
    static const char *const texts[Kic_CommandCount] = {
        QT_TRANSLATE_NOOP("Kic_EditMenu", "&Undo"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "&Redo"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "Cu&t"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "&Copy"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "&Paste"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "&Delete"),
        QT_TRANSLATE_NOOP("Kic_EditMenu", "Select &All"),
    };
    if (iCommand >= unsigned(Kic_CommandCount))
        return QString();
    return QCoreApplication::translate("Kic_EditMenu", texts[iCommand]);
}

void Kic_EditMenu::createActions()
{
    if (mActions[0])
        return;
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        qWarning().noquote() << "Kic_EditMenu::actions, no actions without a QGuiApplication";
        return;
    }
    for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
        auto *action = new QAction(defaultText(command), this);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, [this, command] {
            bool enabled = false;
            QString text;
            if (commandStatus(command, enabled, text) && enabled)
                obey(command);
        });
        mActions[command] = action;
    }
    // The actions belong to the application object's lifetime, not to the menu's.
    qAddPostRoutine(&Kic_EditMenu::deleteActions);
    updateActions();
}

void Kic_EditMenu::deleteActions()
{
    for (QPointer<QAction> &action : instance().mActions) {
        delete action.data();
        action = nullptr;
    }
}

QList<QAction *> Kic_EditMenu::actions()
{
    createActions();
    QList<QAction *> list;
    for (const QPointer<QAction> &action : mActions) {
        if (action)
            list << action.data();
    }
    return list;
}

QAction *Kic_EditMenu::action(unsigned int iCommand)
{
    if (iCommand >= unsigned(Kic_CommandCount))
        return nullptr;
    createActions();
    return mActions[iCommand].data();
}

void Kic_EditMenu::attachToMenu(QMenu *iMenu)
{
    if (!iMenu)
        return;
    createActions();
    for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
        if (command == Kic_Cut || command == Kic_SelectAll)
            iMenu->addSeparator();
        if (QAction *a = mActions[command].data())
            iMenu->addAction(a);
    }
    connect(iMenu, &QMenu::aboutToShow, this, &Kic_EditMenu::updateActions, Qt::UniqueConnection);
}

void Kic_EditMenu::updateActions()
{
    for (unsigned int command = 0; command < unsigned(Kic_CommandCount); ++command) {
        QAction *a = mActions[command].data();
        if (!a)
            continue;
        bool enabled = false;
        QString text;
        const bool known = commandStatus(command, enabled, text);
        a->setEnabled(known && enabled);
        a->setText(known && !text.isEmpty() ? text : defaultText(command));
    }
}
