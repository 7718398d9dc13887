#include "Kiv_QtWidgetFactoryRegistry.h"

#include "Kiv_FactoryEntryInterface.h"
#include "Kiv_FactoryTable.h"

#include <QHash>
#include <QMap>

#include <algorithm>
#include <vector>

namespace {
struct Registry
{
    // Per name, the live entries registered under it, the newest (the one in use) last.
    QMap<QString, std::vector<Kiv_FactoryEntryInterface *>> entries;
    QHash<const Kiv_FactoryEntryInterface *, QStringList> namesOf;
};

// Made on first use and kept until the process ends, so entries that outlive static
// destruction can still take themselves out.
Registry &registry()
{
    static auto *r = new Registry;
    return *r;
}

// The library's own classes go in first, before anything else can be registered or looked up.
void ensureLibraryTable()
{
    static bool started = false;
    if (started)
        return;
    started = true;
    Kiv_RegisterLibraryWidgets();
}
} // namespace

Kiv_FactoryEntryInterface::~Kiv_FactoryEntryInterface()
{
    Kiv_QtWidgetFactoryRegistry::unregisterEntry(this);
}

Kiv_QtWidgetFactoryRegistry::Kiv_QtWidgetFactoryRegistry(QObject *iParent)
    : QUiLoader(iParent)
{ }

Kiv_QtWidgetFactoryRegistry::~Kiv_QtWidgetFactoryRegistry() = default;

void Kiv_QtWidgetFactoryRegistry::registerEntry(const QString &iName,
                                                Kiv_FactoryEntryInterface *iEntry)
{
    ensureLibraryTable();
    Registry &r = registry();
    std::vector<Kiv_FactoryEntryInterface *> &stack = r.entries[iName];
    const auto present = std::find(stack.begin(), stack.end(), iEntry);
    if (present != stack.end())
        stack.erase(present);
    else
        r.namesOf[iEntry].append(iName);
    stack.push_back(iEntry);
}

void Kiv_QtWidgetFactoryRegistry::unregisterEntry(const Kiv_FactoryEntryInterface *iEntry)
{
    Registry &r = registry();
    const auto names = r.namesOf.constFind(iEntry);
    if (names == r.namesOf.constEnd())
        return;
    for (const QString &name : *names) {
        const auto stack = r.entries.find(name);
        stack->erase(std::find(stack->begin(), stack->end(), iEntry));
        if (stack->empty())
            r.entries.erase(stack);
    }
    r.namesOf.erase(names);
}

Kiv_FactoryEntryInterface *Kiv_QtWidgetFactoryRegistry::getEntry(const QString &iName)
{
    ensureLibraryTable();
    const Registry &r = registry();
    const auto stack = r.entries.constFind(iName);
    return stack == r.entries.constEnd() ? nullptr : stack->back();
}

QList<QString> Kiv_QtWidgetFactoryRegistry::getAllKeys()
{
    ensureLibraryTable();
    return registry().entries.keys();
}

QWidget *Kiv_QtWidgetFactoryRegistry::createWidget(const QString &iClassName, QWidget *iParent,
                                                   const QString &iName)
{
    if (Kiv_FactoryEntryInterface *entry = getEntry(iClassName))
        return entry->create(iParent, iName, false);
    return QUiLoader::createWidget(iClassName, iParent, iName);
}
