#include "Kiv_MenuBar.h"

#include "Kib_Assert.h"
#include "Kiv_PopupMenu.h"
#include "Kiv_WhatsThis.h"
#include "Mnu_QtManager.h"
#include "Mnu_QtMenuBarManager.h"

#include <QAction>

Kiv_MenuBar::Kiv_MenuBar(QWidget *iParent, const char *iName)
    : QMenuBar(iParent)
{
    setObjectName(QString::fromLatin1(iName));
    Kiv_WhatsThis::setBestWhatsThisName(this, QStringLiteral("Kiv_MenuBar"));
    if (iName && *iName) {
        mFileName = QString::fromLocal8Bit(iName);
        mManagerP = std::make_shared<Mnu_QtMenuBarManager>(this, iName);
    }
}

Kiv_MenuBar::~Kiv_MenuBar()
{
    // The managers' popups leave the bar before it goes.
    if (mManagerP)
        mManagerP->setMenuBar(nullptr);
    clear();
}

void Kiv_MenuBar::setMenuBarFileName(const QByteArray &iName)
{
    const QString name = QString::fromUtf8(iName);
    if (name == mFileName)
        return;
    mFileName = name;
    clear();
    if (mManagerP)
        mManagerP->setMenuBar(nullptr);
    mManagerP = std::make_shared<Mnu_QtMenuBarManager>(this, name.toLocal8Bit().constData());
}

void Kiv_MenuBar::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!mManagerP) {
        Kib_Assert::handleFailedAssert("mMenuBarManagerP", "coresw/UIF/Kiv/Kiv_MenuBar", __LINE__);
        return;
    }
    mManagerP->instantiateMenus(iEnv);
}

QAction *Kiv_MenuBar::addMenu(QMenu *iMenu)
{
    if (!iMenu)
        return nullptr;
    QAction *action = QMenuBar::addMenu(iMenu);
    action->setData(iMenu->objectName());
    return action;
}

QAction *Kiv_MenuBar::insertItem(const char *iText, const char *iName, QMenu *iMenu)
{
    return insertItem(QString::fromUtf8(iText), QString::fromUtf8(iName), iMenu);
}

QAction *Kiv_MenuBar::insertItem(const QString &iText, const QString &iName, QMenu *iMenu)
{
    return insertItem(iText, iMenu, QVariant(iName));
}

QAction *Kiv_MenuBar::insertItem(const QString &iText, QMenu *iMenu, const QVariant &iData)
{
    QAction *action = iMenu ? QMenuBar::addMenu(iMenu) : QMenuBar::addAction(iText);
    action->setText(iText);
    action->setData(iData);
    return action;
}

QAction *Kiv_MenuBar::findAction(const QVariant &iData) const
{
    if (iData.isNull())
        return nullptr;
    for (QAction *action : actions())
        if (action->data() == iData)
            return action;
    return nullptr;
}

QAction *Kiv_MenuBar::getItemByPath(const QString &iPath) const
{
    const QStringList parts = iPath.split(QLatin1Char('.'));
    QAction *action = findAction(QVariant(parts.first()));
    for (int i = 1; action && i < parts.size(); ++i) {
        const QMenu *menu = action->menu();
        if (!menu)
            return nullptr;
        QAction *next = nullptr;
        for (QAction *candidate : menu->actions())
            if (candidate->data() == QVariant(parts[i])) {
                next = candidate;
                break;
            }
        action = next;
    }
    return action;
}

bool Kiv_MenuBar::isDefinedAccelerator(const QKeySequence &iSequence) const
{
    if (!mManagerP)
        return Kib_Assert::handleFailedAssert("mMenuBarManagerP", "coresw/UIF/Kiv/Kiv_MenuBar",
                                              __LINE__);
    return mManagerP->findAccelerator(iSequence, false);
}

bool Kiv_MenuBar::deleteAccelerator(const QKeySequence &iSequence)
{
    if (!mManagerP)
        return Kib_Assert::handleFailedAssert("mMenuBarManagerP", "coresw/UIF/Kiv/Kiv_MenuBar",
                                              __LINE__);
    return mManagerP->findAccelerator(iSequence, true);
}

Mnu_Segment *Kiv_MenuBar::getSegmentByAccelerator(const QKeySequence &iSequence)
{
    return mManagerP ? mManagerP->getSegmentByAccelerator(iSequence) : nullptr;
}

bool Kiv_MenuBar::tstFindItemByPath(const QString &iPath, Mnu_QtManager **oManager,
                                    Mnu_Segment **oSegment, QAction **oAction)
{
    if (!mManagerP)
        return false;
    Mnu_Manager *manager = nullptr;
    Mnu_Segment *segment = nullptr;
    int index = 0;
    if (!mManagerP->tstFindItemByPath(iPath, &manager, &segment, &index))
        return false;
    if (oManager)
        *oManager = dynamic_cast<Mnu_QtManager *>(manager);
    if (oSegment)
        *oSegment = segment;
    if (oAction)
        *oAction = static_cast<QAction *>(segment->getIndexedID(index).value());
    return true;
}

Kiv_PointOfInterest Kiv_MenuBar::findPoi(const QString &iName)
{
    QAction *action = findAction(QVariant(iName));
    if (!action)
        return Kiv_PointOfInterest();
    return Kiv_PointOfInterest(this, actionGeometry(action).center());
}

QString Kiv_MenuBar::findUiName(const QPoint &iPoint)
{
    const QAction *action = actionAt(iPoint);
    return action ? action->data().toString() : QString();
}
