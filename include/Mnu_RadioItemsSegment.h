#pragma once

#include "Mnu_Segment.h"

#include <utility>
#include <vector>

/// Fixed radio items (<RadioItem> elements, each a <Text> and an integer <ID>), of which the
/// one whose ID the current-item model (<CurrentItemConnectionName>, a long) holds is checked.
/// Triggering another item writes its ID to that model.
class KIVCORE_EXPORT Mnu_RadioItemsSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_RadioItemsSegment();
    Mnu_RadioItemsSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_RadioItemsSegment() override;

    const QString &getSelectedItemConnectionName() const { return mCurrentConnectionName; }
    void setSelectedItemConnectionName(const QString &iName);

    /// The radio items, in order.
    void addItemToMap(const QString &iText, int iID);
    void clearItemMap();
    int getItemMapCount() const { return int(mItems.size()); }
    QString getItemTextAt(int iIndex) const;
    int getItemIDAt(int iIndex) const;
    void setItemTextIDAt(int iIndex, const QString &iText, int iID);

    int instantiate(Mnu_Manager *iManager) override;
    int getVisibleItemCount() override;
    void itemActivated(Mnu_MenuID iID) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    void forgetItems() override;
    const char *tagName() const override { return "RadioItemsSegment"; }

private:
    bool parseDerivedSubElement(QDomElement *iElement);

    QString mCurrentConnectionName;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<long>>> mCurrentP;
    std::vector<std::pair<QString, int>> mItems;
    Mnu_MenuID mCheckedID;
};
