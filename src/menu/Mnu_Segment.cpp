#include "Mnu_Segment.h"

#include "Kib_Resource.h"
#include "Mnu_BooleanSegment.h"
#include "Mnu_CommandSegment.h"
#include "Mnu_ListSegment.h"
#include "Mnu_Log.h"
#include "Mnu_Manager.h"
#include "Mnu_Menu.h"
#include "Mnu_RadioItemsSegment.h"
#include "Mnu_RadioListSegment.h"
#include "Mnu_SeparatorSegment.h"
#include "Mnu_SubmenuSegment.h"
#include "Mnu_Writer.h"

#include <QDomElement>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

Mnu_Segment::Mnu_Segment()
    : mEnv(Bnd_ConnectionEnvironment::blankEnvironment())
{ }

Mnu_Segment::Mnu_Segment(Mnu_Menu *iMenu, QDomElement *)
    : mMenuP(iMenu)
    , mEnv(Bnd_ConnectionEnvironment::blankEnvironment())
{
    // The kinds read the element once their own members exist (xmlParser()).
}

Mnu_Segment::~Mnu_Segment() = default;

Mnu_Segment *Mnu_Segment::SegmentFactory(Mnu_Menu *iMenu, QDomElement *iElement)
{
    if (!iElement)
        return nullptr;
    const QString tag = iElement->tagName();
    if (tag == QLatin1String("CommandSegment"))
        return new Mnu_CommandSegment(iMenu, iElement);
    if (tag == QLatin1String("BooleanSegment"))
        return new Mnu_BooleanSegment(iMenu, iElement);
    if (tag == QLatin1String("ListSegment"))
        return new Mnu_ListSegment(iMenu, iElement);
    if (tag == QLatin1String("RadioListSegment"))
        return new Mnu_RadioListSegment(iMenu, iElement);
    if (tag == QLatin1String("RadioItemsSegment"))
        return new Mnu_RadioItemsSegment(iMenu, iElement);
    if (tag == QLatin1String("Separator"))
        return new Mnu_SeparatorSegment(iMenu, iElement);
    if (tag == QLatin1String("SubMenuSegment"))
        return new Mnu_SubmenuSegment(iMenu, iElement);
    qCWarning(lcMenu, "Mnu_Segment::SegmentFactory - unknown segment tag <%s>", qPrintable(tag));
    return nullptr;
}

void Mnu_Segment::xmlParser(QDomElement *iElement)
{
    if (!iElement)
        return;
    for (QDomElement child = iElement->firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (!parseSubElement(&child))
            qCWarning(lcMenu, "%s::xmlParser unknown tag <%s> in <%s>, skipped", className(),
                      qPrintable(child.tagName()), tagName());
    }
}

bool Mnu_Segment::parseSubElement(QDomElement *iElement)
{
    const QString tag = iElement->tagName();
    const QString value = iElement->text();
    if (tag == QLatin1String("Name"))
        mName = value;
    else if (tag == QLatin1String("Text"))
        mText = value;
    else if (tag == QLatin1String("TextConnectionName"))
        mTextConnectionName = value;
    else if (tag == QLatin1String("Accelerator"))
        setAccelerator(value);
    else if (tag == QLatin1String("AcceleratorConnectionName"))
        mAcceleratorConnectionName = value;
    else if (tag == QLatin1String("VisibleConnectionName"))
        mVisibleConnectionName = value;
    else if (tag == QLatin1String("Icon"))
        setIconName(value);
    else if (tag == QLatin1String("EnableConnectionName"))
        mEnableConnectionName = value;
    else if (tag == QLatin1String("WhatsThisText"))
        mWhatsThisText = value;
    else if (tag == QLatin1String("WhatsThisConnectionName"))
        mWhatsThisConnectionName = value;
    else if (tag == QLatin1String("WhyDisabledConnectionName"))
        mWhyDisabledConnectionName = value;
    else
        return false;
    return true;
}

bool Mnu_Segment::readIconFile()
{
    // An icon is a small image file; anything else (a folder, a device, a huge file) is not
    // read.
    constexpr qint64 cMaxIconSize = 4 * 1024 * 1024;
    mIconData.clear();
    if (mIconName.isEmpty())
        return false;
    QFile file(Kib_Resource::getResourcePath() + mIconName);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        qCWarning(lcMenu, "Unable to open icon file name %s\n", qPrintable(file.fileName()));
        return false;
    }
    if (file.size() > cMaxIconSize) {
        qCWarning(lcMenu, "Mnu_Segment::readIconFile, icon file %s is larger than %lld bytes",
                  qPrintable(file.fileName()), cMaxIconSize);
        return false;
    }
    mIconData = file.read(cMaxIconSize);
    return true;
}

// --- Connection names

void Mnu_Segment::setTextConnectionName(const QString &iName)
{
    mTextConnectionName = iName;
    rebind(mTextListenerP, iName);
}

void Mnu_Segment::setAccelerator(const QString &iAccelerator)
{
    mAccelerator = iAccelerator;
    if (mAcceleratorConnectionName.isEmpty())
        mCurrentAccelerator = iAccelerator;
}

void Mnu_Segment::setAcceleratorConnectionName(const QString &iName)
{
    mAcceleratorConnectionName = iName;
    rebind(mAcceleratorListenerP, iName);
}

void Mnu_Segment::setIconName(const QString &iName)
{
    mIconName = iName;
    mIconData.clear(); // read when the item is first made
    mIconRead = false;
}

void Mnu_Segment::setEnableConnectionName(const QString &iName)
{
    mEnableConnectionName = iName;
    rebind(mEnableListenerP, iName);
}

void Mnu_Segment::setVisibleConnectionName(const QString &iName)
{
    mVisibleConnectionName = iName;
    rebind(mVisibleListenerP, iName);
}

void Mnu_Segment::setWhatsThisConnectionName(const QString &iName)
{
    mWhatsThisConnectionName = iName;
    rebind(mWhatsThisListenerP, iName);
}

void Mnu_Segment::setWhyDisabledConnectionName(const QString &iName)
{
    mWhyDisabledConnectionName = iName;
    rebind(mWhyDisabledListenerP, iName);
}

void Mnu_Segment::makeConnections(Bnd_ConnectionEnvironmentPtr iEnv)
{
    mEnv = iEnv ? iEnv : Bnd_ConnectionEnvironment::blankEnvironment();
    bindListener(mTextListenerP, mTextConnectionName, mEnv);
    bindListener(mAcceleratorListenerP, mAcceleratorConnectionName, mEnv);
    bindListener(mEnableListenerP, mEnableConnectionName, mEnv);
    bindListener(mVisibleListenerP, mVisibleConnectionName, mEnv);
    doWhatsThisConnections();
}

void Mnu_Segment::doWhatsThisConnections()
{
    bindListener(mWhatsThisListenerP, mWhatsThisConnectionName, mEnv);
    bindListener(mWhyDisabledListenerP, mWhyDisabledConnectionName, mEnv);
}

QString Mnu_Segment::whyDisabledText() const
{
    QString text;
    readModel(mWhyDisabledListenerP, &text);
    return text;
}

// --- State and items

void Mnu_Segment::refreshState()
{
    const auto flag = [](const QString &iName, const std::unique_ptr<BoolListener> &iListener) {
        if (iName.isEmpty())
            return true;
        bool value = false;
        return readModel(iListener, &value) && value;
    };
    mVisible = flag(mVisibleConnectionName, mVisibleListenerP);
    mEnabled = flag(mEnableConnectionName, mEnableListenerP);

    mDisplayedText = mText;
    if (!mTextConnectionName.isEmpty() && readModel(mTextListenerP, &mTextModelValue)
        && !mTextModelValue.isEmpty())
        mDisplayedText = mTextModelValue;

    mCurrentAccelerator = mAccelerator;
    if (!mAcceleratorConnectionName.isEmpty()) {
        QString value;
        if (readModel(mAcceleratorListenerP, &value) && !value.isNull())
            mAcceleratorModelValue = value;
        if (!mAcceleratorModelValue.isEmpty())
            mCurrentAccelerator = mAcceleratorModelValue;
    }

    mShownWhatsThisText = mWhatsThisText;
    QString whatsThis;
    if (readModel(mWhatsThisListenerP, &whatsThis) && !whatsThis.isEmpty())
        mShownWhatsThisText = whatsThis;
}

int Mnu_Segment::instantiate(Mnu_Manager *iManager)
{
    mManagerP = iManager;
    refreshState();
    return 0;
}

Mnu_MenuID Mnu_Segment::makeStandardItem(Mnu_Manager *iManager, const QString &iAccelerator)
{
    QString text = mDisplayedText;
    const Mnu_MenuID id = iManager->insertItem(mName, text);
    if (!id.IsValid())
        return id;
    recordItem(id);
    if (!iAccelerator.isEmpty())
        iManager->setItemAccelerator(id, iAccelerator);
    iManager->setItemEnabled(id, mEnabled);
    if (!mIconName.isEmpty() && !mIconRead) {
        mIconRead = true;
        readIconFile();
    }
    if (!mIconName.isEmpty() && !mIconData.isEmpty())
        iManager->setItemIcon(id, reinterpret_cast<const unsigned char *>(mIconData.constData()),
                              int(mIconData.size()));
    if (!mShownWhatsThisText.isEmpty())
        iManager->setWhatsThis(id, mShownWhatsThisText);
    return id;
}

void Mnu_Segment::recordItem(Mnu_MenuID iID)
{
    mItemIDs.push_back(iID);
    if (mMenuP)
        mMenuP->setIDAssignedToSegment(this, iID);
}

int Mnu_Segment::indexOf(Mnu_MenuID iID) const
{
    const auto it = std::find(mItemIDs.begin(), mItemIDs.end(), iID);
    return it == mItemIDs.end() ? -1 : int(it - mItemIDs.begin());
}

int Mnu_Segment::getVisibleItemCount()
{
    return mVisible ? 1 : 0;
}

int Mnu_Segment::getItemCount()
{
    return int(mItemIDs.size());
}

void Mnu_Segment::itemActivated(Mnu_MenuID) { }

Mnu_MenuID Mnu_Segment::getIndexedID(int iIndex)
{
    return iIndex >= 0 && iIndex < int(mItemIDs.size()) ? mItemIDs[size_t(iIndex)] : Mnu_MenuID();
}

void Mnu_Segment::activate(Mnu_MenuID iID)
{
    if (indexOf(iID) >= 0)
        itemActivated(iID);
}

bool Mnu_Segment::isEnabled(bool iReread)
{
    if (iReread)
        refreshState(); // the enable model and whatever else the kind's state depends on
    return mEnabled;
}

// --- Writing

void Mnu_Segment::emitValue(std::ostream &oStream, const QString &iIndent, saveFormat iFormat,
                            const char *iTag, const char *iSetter, const QString &iValue)
{
    Mnu_Writer out(oStream);
    if (iFormat == XMLFormat)
        out.element(iIndent, iTag, iValue);
    else
        out.call(iIndent, (QByteArray("segment->") + iSetter + "( \"").constData(), iValue,
                 "\" );");
}

void Mnu_Segment::emitCommonTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat)
{
    emitValue(oStream, iIndent, iFormat, "Name", "setName", mName);
    if (iFormat == XMLFormat) {
        Mnu_Writer(oStream).element(iIndent, "Text", mText);
    } else {
        const QString menuName = mMenuP ? mMenuP->getName() : QString();
        Mnu_Writer(oStream).call(iIndent, "segment->setItemText( Mnu_QtManager::tr(\"", mText,
                                 QStringLiteral("\",\"This is an item in the %1 menu.\") );")
                                     .arg(Mnu_Writer::cEscaped(menuName))
                                     .toUtf8()
                                     .constData());
    }
    emitValue(oStream, iIndent, iFormat, "TextConnectionName", "setTextConnectionName",
              mTextConnectionName);
    emitValue(oStream, iIndent, iFormat, "Accelerator", "setAccelerator", mAccelerator);
    emitValue(oStream, iIndent, iFormat, "AcceleratorConnectionName",
              "setAcceleratorConnectionName", mAcceleratorConnectionName);
    emitValue(oStream, iIndent, iFormat, "Icon", "setIconName", mIconName);
    emitValue(oStream, iIndent, iFormat, "VisibleConnectionName", "setVisibleConnectionName",
              mVisibleConnectionName);
    emitValue(oStream, iIndent, iFormat, "EnableConnectionName", "setEnableConnectionName",
              mEnableConnectionName);
    emitValue(oStream, iIndent, iFormat, "WhatsThisText", "setWhatsThisText", mWhatsThisText);
    emitValue(oStream, iIndent, iFormat, "WhatsThisConnectionName", "setWhatsThisConnectionName",
              mWhatsThisConnectionName);
    emitValue(oStream, iIndent, iFormat, "WhyDisabledConnectionName",
              "setWhyDisabledConnectionName", mWhyDisabledConnectionName);
}

void Mnu_Segment::emitOwnTags(std::ostream &, const QString &, saveFormat) { }

void Mnu_Segment::saveSegment(std::ostream &oStream, const QString &iIndent, saveFormat iFormat)
{
    Mnu_Writer out(oStream);
    const QString tag = QString::fromLatin1(tagName());
    if (iFormat == XMLFormat) {
        const QString inner = iIndent + QStringLiteral("  ");
        out.line(iIndent, QLatin1Char('<') + tag + QLatin1Char('>'));
        emitCommonTags(oStream, inner, iFormat);
        emitOwnTags(oStream, inner, iFormat);
        out.line(iIndent, QStringLiteral("</") + tag + QLatin1Char('>'));
        return;
    }
    out.line(iIndent, QStringLiteral("/* Generate a new ") + tag + QStringLiteral(" */"));
    out.line(iIndent, "{");
    out.line(iIndent, QStringLiteral("%1* segment = new %1(menu, NULL);").arg(className()));
    emitCommonTags(oStream, iIndent, iFormat);
    emitOwnTags(oStream, iIndent, iFormat);
    out.line(iIndent, "menu->addSegment(segment);");
    out.line(iIndent, "}");
}

void Mnu_Segment::dump(const QString &iPrefix)
{
    qCInfo(lcMenu, "%s%s: this[%lx], name[%s], use[%s], enabled[%d], visible[%d]",
           qPrintable(iPrefix), className(), static_cast<unsigned long>(quintptr(this)),
           qPrintable(mName), qPrintable(mDisplayedText), int(mEnabled), int(mVisible));
}
