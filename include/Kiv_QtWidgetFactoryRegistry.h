#pragma once

#include "kivcore_export.h"

#include <QList>
#include <QString>
#include <QUiLoader>

class Kiv_FactoryEntryInterface;

/// The widget factory: a process-wide map from class name to factory entry, and a form loader
/// that makes the widgets of a form through it, falling back to Qt's own classes.
///
/// The library's own widget classes are registered before the first registration or lookup;
/// forms can register themselves (Kiv_UIFileFactoryEntry) so that other forms may contain them.
/// The registry never deletes an entry; an entry that is destroyed takes itself out.
class KIVCORE_EXPORT Kiv_QtWidgetFactoryRegistry : public QUiLoader
{
    Q_OBJECT
public:
    explicit Kiv_QtWidgetFactoryRegistry(QObject *iParent = nullptr);
    ~Kiv_QtWidgetFactoryRegistry() override;

    /// Puts the entry under the name; a later registration under the same name replaces it
    /// until that entry is destroyed or unregistered, when the earlier one is back. A null
    /// entry hides the name, leaving it to Qt's own loader.
    static void registerEntry(const QString &iName, Kiv_FactoryEntryInterface *iEntry);
    /// Takes the entry out under every name it was registered with (entries do this when they
    /// are destroyed).
    static void unregisterEntry(const Kiv_FactoryEntryInterface *iEntry);
    /// The entry of that name, or null.
    static Kiv_FactoryEntryInterface *getEntry(const QString &iName);
    /// All registered names, sorted.
    static QList<QString> getAllKeys();

    QWidget *createWidget(const QString &iClassName, QWidget *iParent = nullptr,
                          const QString &iName = QString()) override;
};
