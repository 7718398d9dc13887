#pragma once

#include "Kiv_FactoryEntryInterface.h"

/// A factory entry that stands for a whole form: a form that names it as a class loads this
/// form in its place. It registers itself under the form name.
class KIVCORE_EXPORT Kiv_UIFileFactoryEntry : public Kiv_FactoryEntryInterface
{
public:
    explicit Kiv_UIFileFactoryEntry(const QString &iFormName);
    Kiv_UIFileFactoryEntry(const Kiv_UIFileFactoryEntry &) = default;
    Kiv_UIFileFactoryEntry(Kiv_UIFileFactoryEntry &&) = default;
    Kiv_UIFileFactoryEntry &operator=(const Kiv_UIFileFactoryEntry &) = default;
    Kiv_UIFileFactoryEntry &operator=(Kiv_UIFileFactoryEntry &&) = default;

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
