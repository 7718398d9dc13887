#pragma once

#include "Kiv_FactoryEntryInterface.h"
#include "Kiv_QtWidgetFactoryRegistry.h"

#include <QLayout>
#include <QWidget>

/// How the factory makes a T under a parent: with the class's defaults. Classes whose
/// constructors need more than a parent specialise this.
template<class T> struct Kiv_FactoryConstruct
{
    static T *make(QWidget *iParent) { return new T(iParent); }
};

/// The factory entry of a widget class T; it registers itself under the class name.
template<class T> class Kiv_SimpleFactoryEntry : public Kiv_FactoryEntryInterface
{
public:
    /// A null what's-this text stands for the class name, a null tool tip for the what's-this.
    Kiv_SimpleFactoryEntry(const QString &iClassName, const QString &iWhatsThis,
                           const QString &iToolTip)
        : mWhatsThis(iWhatsThis.isNull() ? iClassName : iWhatsThis)
        , mToolTip(iToolTip.isNull() ? mWhatsThis : iToolTip)
        , mIncludeFile(iClassName + QLatin1String(".h"))
    {
        Kiv_QtWidgetFactoryRegistry::registerEntry(iClassName, this);
    }

    bool runCustomEditor(QWidget *, QWidget *, QList<QString> *, QList<QVariant> *) const override
    {
        return false;
    }
    bool hasCustomEditor() override { return false; }
    bool isContainer() override { return false; }
    QString getWhatsThis() override { return mWhatsThis; }
    QString getToolTip() override { return mToolTip; }
    QString getIncludeFile() override { return mIncludeFile; }

    QWidget *create(QWidget *iParent, const QString &iName, bool) override
    {
        T *widget = Kiv_FactoryConstruct<T>::make(iParent);
        if (!iName.isEmpty()) {
            widget->setObjectName(iName);
            widget->setWindowTitle(iName);
        }
        if (iParent && iParent->layout())
            iParent->layout()->addWidget(widget);
        return widget;
    }

private:
    QString mWhatsThis;
    QString mToolTip;
    QString mIncludeFile;
};
