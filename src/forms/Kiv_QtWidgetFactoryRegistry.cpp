#include "Kiv_QtWidgetFactoryRegistry.h"

#include "Kiv_FactoryEntryInterface.h"

#include <QMap>

#include <memory>
#include <vector>

namespace {
struct Registry
{
    QMap<QString, Kiv_FactoryEntryInterface *> entries; // sorted by name
    std::vector<Kiv_FactoryEntryInterface *> replaced; // kept: someone may still hold them
};

// Made with the first registration and kept until the process ends.
Registry *&registry()
{
    static Registry *r = nullptr;
    return r;
}
} // namespace

Kiv_FactoryEntryInterface::~Kiv_FactoryEntryInterface() = default;

Kiv_QtWidgetFactoryRegistry::Kiv_QtWidgetFactoryRegistry(QObject *iParent)
    : QUiLoader(iParent)
{ }

Kiv_QtWidgetFactoryRegistry::~Kiv_QtWidgetFactoryRegistry() = default;

void Kiv_QtWidgetFactoryRegistry::registerEntry(const QString &iName,
                                                Kiv_FactoryEntryInterface *iEntry)
{
    Registry *&r = registry();
    if (!r)
        r = new Registry;
    Kiv_FactoryEntryInterface *&slot = r->entries[iName];
    if (slot && slot != iEntry)
        r->replaced.push_back(slot);
    slot = iEntry;
}

Kiv_FactoryEntryInterface *Kiv_QtWidgetFactoryRegistry::getEntry(const QString &iName)
{
    const Registry *r = registry();
    return r ? r->entries.value(iName, nullptr) : nullptr;
}

QList<QString> Kiv_QtWidgetFactoryRegistry::getAllKeys()
{
    const Registry *r = registry();
    return r ? r->entries.keys() : QList<QString>();
}

QWidget *Kiv_QtWidgetFactoryRegistry::createWidget(const QString &iClassName, QWidget *iParent,
                                                   const QString &iName)
{
    if (Kiv_FactoryEntryInterface *entry = getEntry(iClassName))
        return entry->create(iParent, iName, false);
    return QUiLoader::createWidget(iClassName, iParent, iName);
}
