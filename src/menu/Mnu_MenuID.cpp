#include "Mnu_MenuID.h"

#include "Mnu_Log.h"

Q_LOGGING_CATEGORY(lcMenu, "kiv.menu", QtInfoMsg)

void Mnu_MenuID::dump(const QString &iPrefix) const
{
    qCInfo(lcMenu, "%sMnu_MenuID: [%p]", qPrintable(iPrefix), mValue);
}
