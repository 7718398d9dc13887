#pragma once

#include "Kiv_FactoryEntryInterface.h"

/// A factory entry that stands for a whole form: a form that names it as a class loads this
/// form in its place. It registers itself under the form name, and so does every copy (the
/// newest one alive is the one in use); each takes itself out when it is destroyed.
class KIVCORE_EXPORT Kiv_UIFileFactoryEntry : public Kiv_FactoryEntryInterface
{
public:
    explicit Kiv_UIFileFactoryEntry(const QString &iFormName);
    Kiv_UIFileFactoryEntry(const Kiv_UIFileFactoryEntry &iOther);
    Kiv_UIFileFactoryEntry(Kiv_UIFileFactoryEntry &&iOther) noexcept;
    /// Re-registers this entry under the other's form name.
    Kiv_UIFileFactoryEntry &operator=(const Kiv_UIFileFactoryEntry &iOther);
    Kiv_UIFileFactoryEntry &operator=(Kiv_UIFileFactoryEntry &&iOther) noexcept;

    bool runCustomEditor(QWidget *, QWidget *, QList<QString> *, QList<QVariant> *) const override;
    bool hasCustomEditor() override;
    bool isContainer() override;
    /// The form name followed by ".ui file include".
    QString getWhatsThis() override;
    QString getToolTip() override;
    QString getIncludeFile() override;
    QWidget *create(QWidget *iParent, const QString &iName, bool iFlag) override;

private:
    QString mFormName;
};
