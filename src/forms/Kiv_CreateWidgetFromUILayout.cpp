#include "Kiv_CreateWidgetFromUILayout.h"

#include "Kib_Resource.h"
#include "Kiv_QtWidgetFactoryRegistry.h"

#include <QFile>
#include <QLayout>
#include <QWidget>

QWidget *Kiv_CreateWidgetFromUILayout(const QString &iFormName, QWidget *iParent, const char *,
                                      bool iAddToParentLayout)
{
    Kiv_QtWidgetFactoryRegistry loader;
    QFile file(Kib_Resource::getResourcePath() + QLatin1String("Forms/") + iFormName
               + QLatin1String(".ui"));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    QWidget *widget = loader.load(&file, iParent);
    file.close();
    if (widget && iAddToParentLayout && iParent && iParent->layout())
        iParent->layout()->addWidget(widget);
    return widget;
}
