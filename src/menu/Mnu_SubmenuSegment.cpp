#include "Mnu_SubmenuSegment.h"

#include "Mnu_Log.h"
#include "Mnu_Manager.h"
#include "Mnu_Menu.h"
#include "Mnu_Writer.h"

#include <QDomElement>

Mnu_SubmenuSegment::Mnu_SubmenuSegment() = default;

Mnu_SubmenuSegment::Mnu_SubmenuSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_SubmenuSegment::Mnu_SubmenuSegment(Mnu_Menu *iMenu)
    : Mnu_Segment(iMenu, nullptr)
{
    if (iMenu && iMenu->getManager())
        adopt(iMenu->getManager()->managerFactory());
}

Mnu_SubmenuSegment::~Mnu_SubmenuSegment() = default;

void Mnu_SubmenuSegment::adopt(Mnu_Manager *iChild)
{
    mChildP.reset(iChild);
    if (mChildP)
        mChildP->setParentSegment(this);
}

bool Mnu_SubmenuSegment::parseSubElement(QDomElement *iElement)
{
    if (iElement->tagName() != QLatin1String("Menu"))
        return Mnu_Segment::parseSubElement(iElement);
    Mnu_Manager *outer = getMenu() ? getMenu()->getManager() : nullptr;
    if (!outer)
        return true;
    if (outer->menuDepth() + 1 >= Mnu_Manager::cMaxMenuDepth) {
        qCWarning(lcMenu,
                  "Mnu_SubmenuSegment::xmlParser, submenu [%s] nests deeper than %d menus; "
                  "left out",
                  qPrintable(getName()), Mnu_Manager::cMaxMenuDepth);
        return true;
    }
    // Adopted before it reads its menu, so that the menus inside know how deep they are.
    adopt(outer->managerFactory());
    if (mChildP)
        mChildP->setMenus(iElement);
    return true;
}

void Mnu_SubmenuSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    if (mChildP)
        mChildP->makeConnections(environment());
}

int Mnu_SubmenuSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !mChildP || !iManager)
        return 0;
    mChildP->instantiateMenus();
    QString title = mChildP->getMenu() ? mChildP->getMenu()->getText() : getDisplayedText();
    const Mnu_MenuID id = iManager->insertItem(title, title, mChildP.get());
    if (!id.IsValid())
        return 0;
    iManager->setItemEnabled(id, mEnabled);
    recordItem(id);
    return 1;
}

void Mnu_SubmenuSegment::saveSegment(std::ostream &oStream, const QString &iIndent,
                                     saveFormat iFormat)
{
    Mnu_Writer out(oStream);
    Mnu_Menu *menu = mChildP ? mChildP->getMenu() : nullptr;
    if (iFormat == XMLFormat) {
        const QString inner = iIndent + QStringLiteral("  ");
        out.line(iIndent, "<SubMenuSegment>");
        emitCommonTags(oStream, inner, iFormat);
        if (menu)
            menu->saveMenu(oStream, inner, iFormat, Mnu_Menu::Submenu);
        out.line(iIndent, "</SubMenuSegment>");
        return;
    }
    out.line(iIndent, "/* Generate a new SubMenuSegment */");
    out.line(iIndent, "{");
    out.line(iIndent, "Mnu_SubmenuSegment* segment = new Mnu_SubmenuSegment(menu);");
    emitCommonTags(oStream, iIndent, iFormat);
    if (menu)
        menu->saveMenu(oStream, iIndent, iFormat, Mnu_Menu::Submenu);
    out.line(iIndent, "menu->addSegment(segment);");
    out.line(iIndent, "}");
}

void Mnu_SubmenuSegment::dump(const QString &iPrefix)
{
    Mnu_Segment::dump(iPrefix);
    qCInfo(lcMenu, "%s   child manager: [%p] (Mnu_Manager *)", qPrintable(iPrefix),
           static_cast<void *>(mChildP.get()));
}
