#include "Mnu_CommandSegment.h"

#include "Bnd_Utils.h"
#include "Mnu_Log.h"
#include "Mnu_Manager.h"

#include <QDomElement>
#include <QTimer>

Mnu_CommandSegment::Mnu_CommandSegment() = default;

Mnu_CommandSegment::Mnu_CommandSegment(Mnu_Menu *iMenu, QDomElement *iElement)
    : Mnu_Segment(iMenu, iElement)
{
    xmlParser(iElement);
}

Mnu_CommandSegment::~Mnu_CommandSegment() = default;

void Mnu_CommandSegment::setActionScript(const QString &iScript)
{
    mScript.setText(iScript);
}

bool Mnu_CommandSegment::parseSubElement(QDomElement *iElement)
{
    if (iElement->tagName() == QLatin1String("ActionScript")) {
        setActionScript(iElement->text());
        return true;
    }
    return Mnu_Segment::parseSubElement(iElement);
}

void Mnu_CommandSegment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    Mnu_Segment::makeConnections(iEnv);
    // A script dropped by an earlier failed connect gets another chance in this environment.
    if (mScript.reparse())
        mScript.connect(environment(), nullptr);
}

void Mnu_CommandSegment::refreshState()
{
    Mnu_Segment::refreshState();
    mEnabled = mEnabled && mVisible && mScript.isConnected();
}

int Mnu_CommandSegment::instantiate(Mnu_Manager *iManager)
{
    Mnu_Segment::instantiate(iManager);
    if (!mVisible || !iManager)
        return 0;
    return makeStandardItem(iManager, getAccelerator()).IsValid() ? 1 : 0;
}

void Mnu_CommandSegment::itemActivated(Mnu_MenuID)
{
    runCommand();
}

void Mnu_CommandSegment::runCommand()
{
    if (!mScript.hasScript())
        return;
    // After the menu has closed: the queue runs it on a later turn of the event loop.
    if (!Bnd_Utils::Bnd_AddDelayedAction(environment(), mScript.text()))
        QTimer::singleShot(0, this, &Mnu_CommandSegment::itemActivatedTimer);
}

void Mnu_CommandSegment::itemActivatedTimer()
{
    mScript.run();
}

void Mnu_CommandSegment::emitOwnTags(std::ostream &oStream, const QString &iIndent,
                                     saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "ActionScript", "setActionScript", mScript.text());
}

void Mnu_CommandSegment::dump(const QString &iPrefix)
{
    Mnu_Segment::dump(iPrefix);
    qCInfo(lcMenu, "%s   action script: [%s]", qPrintable(iPrefix), qPrintable(mScript.text()));
}
