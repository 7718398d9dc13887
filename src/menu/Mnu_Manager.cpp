#include "Mnu_Manager.h"

#include "Kib_Resource.h"
#include "Mnu_Log.h"
#include "Mnu_Menu.h"
#include "Mnu_SubmenuSegment.h"
#include "core/Kiv_DescriptionFile.h"

#include <QDomDocument>
#include <QFile>

namespace {
// How deep elements of a description may nest: menus nest at most cMaxMenuDepth deep, each level
// a <Menu> and a <SubMenuSegment> with their children, and the root around it.
constexpr int cMaxElementDepth = 2 * Mnu_Manager::cMaxMenuDepth + 8;

} // namespace

Mnu_Manager::Mnu_Manager() = default;

Mnu_Manager::~Mnu_Manager() = default;

Mnu_Manager *Mnu_Manager::managerFactory(QDomElement *)
{
    return nullptr;
}

Mnu_Manager *Mnu_Manager::managerFactory(const char *)
{
    return nullptr;
}

Mnu_Manager *Mnu_Manager::managerFactory()
{
    return nullptr;
}

bool Mnu_Manager::setMenus(QDomElement *iElement)
{
    if (!iElement)
        return false;
    replaceMenu(std::make_unique<Mnu_Menu>(this, iElement));
    return true;
}

bool Mnu_Manager::setMenus(const char *iDescriptionName)
{
    clearMenus();
    return xmlParser(iDescriptionName);
}

bool Mnu_Manager::addMenus(const char *iDescriptionName)
{
    return xmlParser(iDescriptionName);
}

bool Mnu_Manager::addMenu(Mnu_Menu *iMenu)
{
    if (iMenu)
        iMenu->setManager(this);
    replaceMenu(std::unique_ptr<Mnu_Menu>(iMenu));
    return iMenu != nullptr;
}

void Mnu_Manager::requestRebuild()
{
    instantiateMenus();
}

bool Mnu_Manager::instantiateMenus()
{
    return false;
}

void Mnu_Manager::clearMenus()
{
    replaceMenu(nullptr);
    mInstantiated = false;
}

bool Mnu_Manager::doSystemMessageConnect()
{
    return false;
}

Mnu_Menu *Mnu_Manager::getMenu() const
{
    return mMenuP.get();
}

bool Mnu_Manager::isInstantiated() const
{
    return mInstantiated;
}

Mnu_MenuID Mnu_Manager::insertSeparator()
{
    return Mnu_MenuID();
}

Mnu_MenuID Mnu_Manager::insertItem(const QString &, QString &, Mnu_Manager *)
{
    return Mnu_MenuID();
}

Mnu_MenuID Mnu_Manager::insertItem(const QString &, QString &)
{
    return Mnu_MenuID();
}

bool Mnu_Manager::setItemAccelerator(Mnu_MenuID, const QString &)
{
    return false;
}

bool Mnu_Manager::setItemEnabled(Mnu_MenuID, bool)
{
    return false;
}

bool Mnu_Manager::setItemCheckable(Mnu_MenuID, bool)
{
    return false;
}

bool Mnu_Manager::setItemChecked(Mnu_MenuID, bool)
{
    return false;
}

bool Mnu_Manager::getItemChecked(Mnu_MenuID)
{
    return false;
}

bool Mnu_Manager::removeItem(Mnu_MenuID)
{
    return false;
}

bool Mnu_Manager::setItemIcon(Mnu_MenuID, void *)
{
    return false;
}

bool Mnu_Manager::setItemIcon(Mnu_MenuID, const QString &)
{
    return false;
}

bool Mnu_Manager::setItemIcon(Mnu_MenuID, const unsigned char *, int)
{
    return false;
}

void Mnu_Manager::setParentSegment(Mnu_SubmenuSegment *iSegment)
{
    mParentSegmentP = iSegment;
}

void Mnu_Manager::setWhatsThis(Mnu_MenuID, const QString &) { }

void Mnu_Manager::setWhatsThis(Mnu_MenuID iID, const std::string &iText)
{
    setWhatsThis(iID, QString::fromStdString(iText));
}

int Mnu_Manager::menuDepth() const
{
    int depth = 0;
    for (const Mnu_SubmenuSegment *s = mParentSegmentP; s && s->getMenu();) {
        ++depth;
        const Mnu_Manager *outer = s->getMenu()->getManager();
        s = outer ? outer->getParentSegment() : nullptr;
    }
    return depth;
}

void Mnu_Manager::replaceMenu(std::unique_ptr<Mnu_Menu> iMenu)
{
    mMenuP = std::move(iMenu);
}

// --- Queries by path

Mnu_MenuID Mnu_Manager::tstItem(const QString &iPath, Mnu_Manager **oManager,
                                Mnu_Segment **oSegment)
{
    Mnu_Manager *manager = nullptr;
    Mnu_Segment *segment = nullptr;
    int index = -1;
    if (!tstFindItemByPath(iPath, &manager, &segment, &index) || !segment)
        return Mnu_MenuID();
    if (oManager)
        *oManager = manager;
    if (oSegment)
        *oSegment = segment;
    return segment->getIndexedID(index);
}

bool Mnu_Manager::tstGetItemEnabled(const QString &iPath)
{
    Mnu_Segment *segment = nullptr;
    return tstItem(iPath, nullptr, &segment).IsValid() && segment->isEnabled(false);
}

bool Mnu_Manager::tstGetItemChecked(const QString &iPath)
{
    Mnu_Manager *manager = nullptr;
    const Mnu_MenuID id = tstItem(iPath, &manager);
    return id.IsValid() && manager->getItemChecked(id);
}

bool Mnu_Manager::tstGetItemVisible(const QString &iPath)
{
    return tstItem(iPath).IsValid(); // hidden segments make no items
}

QString Mnu_Manager::tstGetItemText(const QString &iPath)
{
    Mnu_Segment *segment = nullptr;
    return tstItem(iPath, nullptr, &segment).IsValid() ? segment->getDisplayedText() : QString();
}

bool Mnu_Manager::tstActivateItem(const QString &iPath)
{
    Mnu_Segment *segment = nullptr;
    const Mnu_MenuID id = tstItem(iPath, nullptr, &segment);
    if (!id.IsValid() || !segment->isEnabled(false))
        return false;
    segment->activate(id);
    return true;
}

bool Mnu_Manager::tstFindItemByPath(const QString &iPath, Mnu_Manager **oManager,
                                    Mnu_Segment **oSegment, int *oIndex)
{
    if (!mMenuP)
        return false;
    instantiateMenus(); // the items as an opening would show them
    Mnu_Segment *segment = nullptr;
    Mnu_MenuID id;
    QString rest;
    if (!mMenuP->tstFindItemByPath(iPath, 0, &segment, &id, QStringLiteral("."), &rest))
        return false;
    Mnu_Manager *manager = segment->getManager() ? segment->getManager() : this;
    if (oManager)
        *oManager = manager;
    if (oSegment)
        *oSegment = segment;
    if (oIndex) {
        *oIndex = 0;
        for (int i = 0; i < segment->getItemCount(); ++i)
            if (segment->getIndexedID(i) == id)
                *oIndex = i;
    }
    return true;
}

void Mnu_Manager::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (mMenuP)
        mMenuP->makeConnections(iEnv);
}

// --- Descriptions

bool Mnu_Manager::xmlParser(const char *iDescriptionName)
{
    const QString name = QString::fromLocal8Bit(iDescriptionName);
    QFile file;
    if (!Kiv_OpenDescriptionFile(
            file, { Kib_Resource::getResourcePath() + name + QStringLiteral(".xml"), name }))
        return false;
    const QByteArray xml = file.read(cKivMaxDescriptionSize);
    file.close();
    return parseDescription(xml, file.fileName());
}

bool Mnu_Manager::parseDescription(const QByteArray &iXml, const QString &iSource)
{
    if (!Kiv_XmlTagsAreSane(iXml, QStringLiteral("Mnu_Manager xmlParser")))
        return false;
    const int depth = Kiv_XmlElementDepth(iXml, cMaxElementDepth);
    if (depth > cMaxElementDepth) {
        qCWarning(lcMenu, "Mnu_Manager xmlParser %s nests elements deeper than %d levels",
                  qPrintable(iSource), cMaxElementDepth);
        return false;
    }
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(iXml, &message, &line, &column)) {
        qCWarning(lcMenu, "Mnu_Manager xmlParser parse error %s at line %d column %d",
                  qPrintable(message), line, column);
        return false;
    }
    QDomElement root = document.documentElement();
    return xmlDerivedParser(root);
}

bool Mnu_Manager::xmlDerivedParser(QDomElement &)
{
    return false;
}

void Mnu_Manager::menuStateChanged() { }

void Mnu_Manager::dump(const QString &iPrefix)
{
    const QByteArray prefix = iPrefix.toLocal8Bit();
    qCInfo(lcMenu, "%sMnu_Manager: this  [%p]", prefix.constData(), static_cast<void *>(this));
    qCInfo(lcMenu, "%s   parent segment: [%p] (Mnu_SubmenuSegment *)", prefix.constData(),
           static_cast<void *>(mParentSegmentP));
    qCInfo(lcMenu, "%s   menu:           [%p] (Mnu_Menu *)", prefix.constData(),
           static_cast<void *>(mMenuP.get()));
    if (mMenuP)
        mMenuP->dump(iPrefix + QStringLiteral("   "));
}
