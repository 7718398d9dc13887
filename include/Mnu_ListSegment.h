#pragma once

#include "Bndt_Array_API.h"
#include "Mnu_Segment.h"

#include <QPixmap>

#include <map>

/// One item per element of a list model (<ItemsConnectionName>): a container whose arrays
/// hold the elements' fields, addressed by the list's name and a suffix:
///
/// | array | element field |
/// |---|---|
/// | ".name" (QString) | the item's label; its length is the number of items |
/// | ".id" (QString) | the element's own identifier |
/// | ".accelerator" (QString) | the item's accelerator |
/// | ".iconName" (QString) | an icon file in the resource directory |
/// | ".icon" (QPixmap) | an icon image |
/// | ".selected" (bool) | true makes the item checkable and checked |
///
/// Only ".name" is required. The items share the segment's enabled state and what's-this text.
/// Triggering an item toggles its element's ".selected" value. When the list changes while the
/// menu is instantiated, the menu is rebuilt.
class KIVCORE_EXPORT Mnu_ListSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_ListSegment();
    Mnu_ListSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_ListSegment() override;

    const QString &getItemsConnectionName() const { return mItemsConnectionName; }
    void setItemsConnectionName(const QString &iName);

    int instantiate(Mnu_Manager *iManager) override;
    int getVisibleItemCount() override;
    void itemActivated(Mnu_MenuID iID) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    void dump(const QString &iPrefix) override;
    void forgetItems() override;
    const char *tagName() const override { return "ListSegment"; }

private:
    void connectFields(const Bnd_ConnectionEnvironmentPtr &iEnv);
    void listChanged(const Bnd_MessageInterface &iMsg);

    template<class T> using Field = std::unique_ptr<Bnd_ConnectionToModel<Bndt_Array<T>>>;

    QString mItemsConnectionName;
    Field<QString> mNamesP;
    Field<QString> mIdsP;
    Field<QString> mAcceleratorsP;
    Field<QString> mIconNamesP;
    Field<QPixmap> mIconsP;
    Field<bool> mSelectedP;
    /// The element identifier of each item made, for the dump.
    std::map<Mnu_MenuID, QString> mItemIdentifiers;
};
