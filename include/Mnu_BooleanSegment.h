#pragma once

#include "Mnu_Segment.h"

/// One checkable item showing a bool model (<BooleanConnectionName>); triggering it writes the
/// negated value. Without a connected model the item is disabled. Its accelerator is always
/// the static one of the description, never a model's.
class KIVCORE_EXPORT Mnu_BooleanSegment : public Mnu_Segment
{
    Q_OBJECT

public:
    Mnu_BooleanSegment();
    Mnu_BooleanSegment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_BooleanSegment() override;

    const QString &getBooleanConnectionName() const { return mBooleanConnectionName; }
    void setBooleanConnectionName(const QString &iName);

    int instantiate(Mnu_Manager *iManager) override;
    void refreshState() override;
    void itemActivated(Mnu_MenuID iID) override;
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool parseSubElement(QDomElement *iElement) override;
    void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat) override;
    const char *tagName() const override { return "BooleanSegment"; }

private:
    QString mBooleanConnectionName;
    std::unique_ptr<BoolListener> mBooleanListenerP;
    bool mValue = false;
};
