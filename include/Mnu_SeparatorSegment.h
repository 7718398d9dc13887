#pragma once

#include "Mnu_Segment.h"

/// A separator line between the items of the segments around it. The menu leaves out a
/// separator at its start or end and one that would follow another.
class KIVCORE_EXPORT Mnu_SeparatorSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_SeparatorSegment();
    Mnu_SeparatorSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_SeparatorSegment() override;

    int instantiate(Mnu_Manager *iManager) override;
    bool isSeparator() override { return true; }
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    const char *tagName() const override { return "Separator"; }
};
