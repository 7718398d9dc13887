#include "Kiv_WhatsThis.h"

#include <QDebug>
#include <QVariant>
#include <QWidget>

const char *const Kiv_WhatsThis::cPropertyName = "kivWhatsThisName";

void Kiv_WhatsThis::setBestWhatsThisName(QWidget *iWidget, const QString &iClassName)
{
    if (!iWidget || iClassName.isEmpty()) {
        qWarning("Kiv_WhatsThis::setBestWhatsThisName, %s; ignored",
                 iWidget ? "empty class name" : "null widget");
        return;
    }
    const QString previous = whatsThisName(iWidget);
    iWidget->setProperty(cPropertyName, iClassName);
    // Follow the most derived class, but never replace a text the host gave.
    const QString text = iWidget->whatsThis();
    if (text.isEmpty() || text == previous)
        iWidget->setWhatsThis(iClassName);
}

QString Kiv_WhatsThis::whatsThisName(const QWidget *iWidget)
{
    return iWidget ? iWidget->property(cPropertyName).toString() : QString();
}
