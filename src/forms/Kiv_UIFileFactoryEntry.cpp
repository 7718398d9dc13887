#include "Kiv_UIFileFactoryEntry.h"

#include "Kiv_CreateWidgetFromUILayout.h"
#include "Kiv_QtWidgetFactoryRegistry.h"

Kiv_UIFileFactoryEntry::Kiv_UIFileFactoryEntry(const QString &iFormName)
    : mFormName(iFormName)
{
    Kiv_QtWidgetFactoryRegistry::registerEntry(mFormName, this);
}

Kiv_UIFileFactoryEntry::Kiv_UIFileFactoryEntry(const Kiv_UIFileFactoryEntry &iOther)
    : Kiv_UIFileFactoryEntry(iOther.mFormName)
{ }

Kiv_UIFileFactoryEntry::Kiv_UIFileFactoryEntry(Kiv_UIFileFactoryEntry &&iOther) noexcept
    : Kiv_UIFileFactoryEntry(iOther.mFormName)
{ }

Kiv_UIFileFactoryEntry &Kiv_UIFileFactoryEntry::operator=(const Kiv_UIFileFactoryEntry &iOther)
{
    if (this != &iOther) {
        Kiv_QtWidgetFactoryRegistry::unregisterEntry(this);
        mFormName = iOther.mFormName;
        Kiv_QtWidgetFactoryRegistry::registerEntry(mFormName, this);
    }
    return *this;
}

Kiv_UIFileFactoryEntry &Kiv_UIFileFactoryEntry::operator=(Kiv_UIFileFactoryEntry &&iOther) noexcept
{
    return *this = static_cast<const Kiv_UIFileFactoryEntry &>(iOther);
}

bool Kiv_UIFileFactoryEntry::runCustomEditor(QWidget *, QWidget *, QList<QString> *,
                                             QList<QVariant> *) const
{
    return false;
}

bool Kiv_UIFileFactoryEntry::hasCustomEditor()
{
    return false;
}

bool Kiv_UIFileFactoryEntry::isContainer()
{
    return false;
}

QString Kiv_UIFileFactoryEntry::getWhatsThis()
{
    return mFormName + QLatin1String(".ui file include");
}

QString Kiv_UIFileFactoryEntry::getToolTip()
{
    return getWhatsThis();
}

QString Kiv_UIFileFactoryEntry::getIncludeFile()
{
    return QString();
}

QWidget *Kiv_UIFileFactoryEntry::create(QWidget *iParent, const QString &iName, bool)
{
    return Kiv_CreateWidgetFromUILayout(mFormName, iParent, iName.toLocal8Bit().constData(), true);
}
