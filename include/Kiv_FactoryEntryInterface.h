#pragma once

#include "kivcore_export.h"

#include <QList>
#include <QString>
#include <QVariant>

class QWidget;

/// One class (or one form) that the widget factory can make by name.
class KIVCORE_EXPORT Kiv_FactoryEntryInterface
{
public:
    /// Takes the entry out of the registry.
    virtual ~Kiv_FactoryEntryInterface();

    /// Opens a custom property editor for a widget made by this entry (form designers);
    /// answers whether one ran.
    virtual bool runCustomEditor(QWidget *iWidget, QWidget *iParent, QList<QString> *oNames,
                                 QList<QVariant> *oValues) const = 0;
    virtual bool hasCustomEditor() = 0;
    virtual bool isContainer() = 0;
    virtual QString getWhatsThis() = 0;
    virtual QString getToolTip() = 0;
    virtual QString getIncludeFile() = 0;
    /// Makes the widget under `iParent`, named `iName` (when not empty).
    virtual QWidget *create(QWidget *iParent, const QString &iName, bool iFlag) = 0;
};
