#pragma once

#include "Mnu_Segment.h"

#include <memory>

class Mnu_Manager;

/// An item that opens a nested menu (<Menu>), realised by a child manager of the same kind as
/// the menu's own (Mnu_Manager::managerFactory()), which the segment owns.
class KIVCORE_EXPORT Mnu_SubmenuSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_SubmenuSegment();
    Mnu_SubmenuSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    /// An empty submenu: the child manager is made at once, for code to fill.
    explicit Mnu_SubmenuSegment(Mnu_Menu *iMenu);
    ~Mnu_SubmenuSegment() override;

    Mnu_Manager *getSubmenuManager() const { return mChildP.get(); }

    int instantiate(Mnu_Manager *iManager) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void saveSegment(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    void dump(const QString &iPrefix) override;
    const char *tagName() const override { return "SubMenuSegment"; }

private:
    void adopt(Mnu_Manager *iChild);

    std::unique_ptr<Mnu_Manager> mChildP;
};
