#include "Kiv_PopupMenu.h"

Kiv_PopupMenu::Kiv_PopupMenu(QWidget *iParent, const char *iName)
    : QMenu(iParent)
{
    setObjectName(iName && *iName ? QString::fromLatin1(iName) : QStringLiteral("unnamed"));
}

Kiv_PopupMenu::~Kiv_PopupMenu() = default;

QAction *Kiv_PopupMenu::insertItem(const QString &iText, const QVariant &iData)
{
    QAction *action = addAction(iText);
    action->setData(iData);
    return action;
}

QAction *Kiv_PopupMenu::insertItem(const QString &iText, QMenu *iSubmenu, const QVariant &iData)
{
    if (!iSubmenu)
        return insertItem(iText, iData);
    QAction *action = addMenu(iSubmenu);
    action->setText(iText);
    action->setData(iData);
    return action;
}

QAction *Kiv_PopupMenu::insertItem(const char *iText, const char *iName)
{
    return insertItem(QString::fromUtf8(iText), QVariant(QString::fromUtf8(iName)));
}

QAction *Kiv_PopupMenu::insertItem(const char *iText, const char *iName, QMenu *iSubmenu)
{
    return insertItem(QString::fromUtf8(iText), iSubmenu, QVariant(QString::fromUtf8(iName)));
}

namespace {
// Depth first, in action order; a submenu shown in itself (a cycle) would be searched again,
// so the depth is bounded.
QAction *findIn(const QMenu *iMenu, const QVariant &iData, bool iRecursive, int iDepth)
{
    for (QAction *action : iMenu->actions()) {
        if (action->data() == iData)
            return action;
        if (iRecursive && action->menu() && iDepth < 64)
            if (QAction *found = findIn(action->menu(), iData, true, iDepth + 1))
                return found;
    }
    return nullptr;
}
} // namespace

QAction *Kiv_PopupMenu::findAction(const QVariant &iData, bool iRecursive) const
{
    return iData.isNull() ? nullptr : findIn(this, iData, iRecursive, 0);
}

QAction *Kiv_PopupMenu::findAction(const QList<QVariant> &iPath) const
{
    const QMenu *menu = this;
    QAction *found = nullptr;
    for (const QVariant &data : iPath) {
        if (!menu || data.isNull())
            return nullptr;
        found = nullptr;
        for (QAction *action : menu->actions())
            if (action->data() == data) {
                found = action;
                break;
            }
        if (!found)
            return nullptr;
        menu = found->menu();
    }
    return found;
}

QAction *Kiv_PopupMenu::getItemByPath(const QString &iPath) const
{
    QList<QVariant> path;
    for (const QString &part : iPath.split(QLatin1Char('.')))
        path << QVariant(part);
    return findAction(path);
}

Kiv_PointOfInterest Kiv_PopupMenu::findPoi(const QString &iName)
{
    QAction *action = findAction(QVariant(iName));
    if (!action)
        return Kiv_PointOfInterest();
    const QPoint centre = actionGeometry(action).center();
    if (centre.x() < 0 || centre.y() < 0)
        return Kiv_PointOfInterest();
    return Kiv_PointOfInterest(this, centre);
}

QString Kiv_PopupMenu::findUiName(const QPoint &iPoint)
{
    const QAction *action = QMenu::actionAt(iPoint);
    return action ? action->data().toString() : QString();
}

QAction *Kiv_PopupMenu::actionAt(const QPoint &iPoint) const
{
    QAction *action = QMenu::actionAt(iPoint);
    return action && action->isEnabled() ? action : nullptr;
}
