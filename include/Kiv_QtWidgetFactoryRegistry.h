#pragma once

#include "kivcore_export.h"

#include <QList>
#include <QString>
#include <QUiLoader>

class Kiv_FactoryEntryInterface;

/// The widget factory: a process-wide map from class name to factory entry, and a form loader
/// that makes the widgets of a form through it, falling back to Qt's own classes.
///
/// The library registers its widget classes when it is loaded; forms can register themselves
/// (Kiv_UIFileFactoryEntry) so that other forms may contain them. Entries are never deleted.
class KIVCORE_EXPORT Kiv_QtWidgetFactoryRegistry : public QUiLoader
{
    Q_OBJECT
public:
    explicit Kiv_QtWidgetFactoryRegistry(QObject *iParent = nullptr);
    ~Kiv_QtWidgetFactoryRegistry() override;

    /// Puts the entry under the name; a later registration under the same name replaces it.
    static void registerEntry(const QString &iName, Kiv_FactoryEntryInterface *iEntry);
    /// The entry of that name, or null.
    static Kiv_FactoryEntryInterface *getEntry(const QString &iName);
    /// All registered names, sorted.
    static QList<QString> getAllKeys();

    QWidget *createWidget(const QString &iClassName, QWidget *iParent = nullptr,
                          const QString &iName = QString()) override;
};
