#include "Mnu_SeparatorSegment.h"

#include "Mnu_Manager.h"

Mnu_SeparatorSegment::Mnu_SeparatorSegment() = default;

Mnu_SeparatorSegment::Mnu_SeparatorSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_SeparatorSegment::~Mnu_SeparatorSegment() = default;

int Mnu_SeparatorSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    const Mnu_MenuID id = iManager ? iManager->insertSeparator() : Mnu_MenuID();
    if (!id.IsValid())
        return 0;
    recordItem(id);
    return 1;
}

void Mnu_SeparatorSegment::makeConnections(Bnd_ConnectionEnvironmentPtr) { }
