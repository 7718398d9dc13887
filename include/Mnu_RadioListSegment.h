#pragma once

#include "Mnu_Segment.h"

#include <map>

/// One checkable item per element of a list model (<ItemsConnectionName>: labels from its
/// ".name" array, accelerators from ".accel"), of which the one whose index the current-item
/// model (<CurrentItemConnectionName>, a long) holds is checked. Triggering another item
/// writes its index to that model; the check follows the model when it changes.
class KIVCORE_EXPORT Mnu_RadioListSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_RadioListSegment();
    Mnu_RadioListSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_RadioListSegment() override;

    const QString &getItemsConnectionName() const { return mItemsConnectionName; }
    void setItemsConnectionName(const QString &iName);
    const QString &getSelectedItemConnectionName() const { return mCurrentConnectionName; }
    void setSelectedItemConnectionName(const QString &iName);

    int instantiate(Mnu_Manager *iManager) override;
    int getVisibleItemCount() override;
    void itemActivated(Mnu_MenuID iID) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    void forgetItems() override;
    const char *tagName() const override { return "RadioListSegment"; }

    /// The current-item model changed: the check moves to its item.
    void handleMsgSelectionChanged(const Bnd_MessageInterface &iMsg);

private:
    void bindItems(const Bnd_ConnectionEnvironmentPtr &iEnv);
    void bindCurrent(const Bnd_ConnectionEnvironmentPtr &iEnv);

    QString mItemsConnectionName;
    QString mCurrentConnectionName;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_Array<QString>>> mNamesP;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_Array<QString>>> mAcceleratorsP;
    std::unique_ptr<Bnd_ConnectionToModel<Bndt_SimpleValue<long>>> mCurrentP;
    std::map<Mnu_MenuID, long> mIndexOf;
    Mnu_MenuID mCheckedID;
};
