#include "Kiv_ConnectionUtils.h"

#include "Kiv_WidgetConnectInterface.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <vector>

Kiv_WidgetConnectInterface::~Kiv_WidgetConnectInterface() = default;

const std::type_info &Kiv_WidgetConnectInterface::getTypeInfo() const
{
    return typeid(Kiv_WidgetConnectInterface);
}

QString Kiv_SubscriptionIdentifierSubstitution(QString iName, QWidget *iWidget)
{
    QString name = iName.trimmed();
    if (!iWidget || !name.startsWith(QLatin1String("$Window")))
        return name;
    QWidget *top = iWidget;
    while (QWidget *p = top->parentWidget())
        top = p;
    return QString::number(quintptr(top), 16) + name;
}

void Kiv_ConnectionUtils::recursiveConnect(QObject *iObject, Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!iObject)
        return;
    if (auto *bound = dynamic_cast<Kiv_WidgetConnectInterface *>(iObject)) {
        bound->makeConnections(iEnv);
        return;
    }
    recursiveConnectChildren(iObject, iEnv);
}

void Kiv_ConnectionUtils::recursiveConnectChildren(QObject *iObject,
                                                   Bnd_ConnectionEnvironmentPtr iEnv)
{
    if (!iObject)
        return;
    // A snapshot: children added meanwhile are not visited, and one destroyed by an earlier
    // sibling's connection is skipped.
    const QObjectList children = iObject->children();
    std::vector<QPointer<QObject>> snapshot(children.cbegin(), children.cend());
    for (const QPointer<QObject> &child : snapshot)
        if (child)
            recursiveConnect(child, iEnv);
}
