#pragma once

#include "Bnd_ConnectionEnvironment.h"
#include "Bnd_ConnectionToModel.h"
#include "Mnu_MenuID.h"
#include "kivcore_export.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <ostream>
#include <vector>

class Mnu_Manager;
class Mnu_Menu;
class QDomElement;

/// One stretch of a menu's items with one source of truth: a command, a boolean toggle, a
/// list from a model, radio items, a separator or a submenu. A segment reads its models through
/// listeners, makes its items through the manager (Mnu_Manager) when the menu is instantiated,
/// and turns a triggered item back into a model write or an action script.
///
/// Every kind shares a name, a static text or a text model, an accelerator (static or from a
/// model), an icon, and visible, enabled, what's-this and why-disabled models. Without a
/// visible (or enable) connection name the segment is visible (enabled); with one, only while
/// its model says so, and not at all while the model cannot be reached.
class KIVCORE_EXPORT Mnu_Segment : public QObject
{
    Q_OBJECT

public:
    /// What saveSegment() and the other writers produce.
    enum saveFormat {
        XMLFormat = 0, ///< the description's XML
        CodeFormat = 1 ///< source that builds the menu and registers it
    };

    Mnu_Segment();
    Mnu_Segment(Mnu_Menu *iMenu, QDomElement *iElement);
    ~Mnu_Segment() override;

    /// A new segment of the kind the element's tag names, built from the element; null (and a
    /// log line) for an unknown tag.
    static Mnu_Segment *SegmentFactory(Mnu_Menu *iMenu, QDomElement *iElement);

    /// Writes the segment as XML or as source (`iIndent` before each line).
    virtual void saveSegment(std::ostream &oStream, const QString &iIndent, saveFormat iFormat);
    /// Writes the children (setters) that every kind has.
    virtual void emitCommonTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat);
    /// Makes the segment's items through the manager; answers how many it made.
    virtual int instantiate(Mnu_Manager *iManager);
    virtual int getVisibleItemCount();
    /// The items made by the last instantiation.
    virtual int getItemCount();
    /// One of the segment's items was triggered.
    virtual void itemActivated(Mnu_MenuID iID);
    virtual bool isSeparator() { return false; }
    /// Reads the models: visible, enabled, the shown text and the accelerator.
    virtual void refreshState();
    /// The ID of the segment's item at the index; null when out of range.
    virtual Mnu_MenuID getIndexedID(int iIndex);
    /// Triggers the item as a click would, if it is one of the segment's.
    virtual void activate(Mnu_MenuID iID);
    /// The enabled state; with `iReread` read from the enable model first.
    virtual bool isEnabled(bool iReread);
    virtual QString getName() const { return mName; }
    virtual void setName(const QString &iName) { mName = iName; }
    virtual QString getItemText() const { return mText; }
    virtual void setItemText(const QString &iText) { mText = iText; }
    virtual QString getDisplayedText() const { return mDisplayedText; }
    virtual QString getTextConnectionName() const { return mTextConnectionName; }
    virtual void setTextConnectionName(const QString &iName);
    /// The accelerator the items get now (from the model, else the static one).
    virtual QString getAccelerator() const { return mCurrentAccelerator; }
    virtual void setAccelerator(const QString &iAccelerator);
    virtual QString getAcceleratorConnectionName() const { return mAcceleratorConnectionName; }
    virtual void setAcceleratorConnectionName(const QString &iName);
    virtual QString getIconName() const { return mIconName; }
    /// Sets the icon file (relative to the resource directory); it is read when the item is
    /// first made.
    virtual void setIconName(const QString &iName);
    virtual QString getEnableConnectionName() const { return mEnableConnectionName; }
    virtual void setEnableConnectionName(const QString &iName);
    virtual QString getVisibleConnectionName() const { return mVisibleConnectionName; }
    virtual void setVisibleConnectionName(const QString &iName);
    virtual QString getWhatsThisConnectionName() const { return mWhatsThisConnectionName; }
    virtual void setWhatsThisConnectionName(const QString &iName);
    virtual QString getWhyDisabledConnectionName() const { return mWhyDisabledConnectionName; }
    virtual void setWhyDisabledConnectionName(const QString &iName);
    /// The what's-this text of the description.
    virtual QString getWhatsThisText() const { return mWhatsThisText; }
    /// The what's-this text the items show: the model's when it has one, else the static one.
    const QString &shownWhatsThisText() const { return mShownWhatsThisText; }
    virtual void setWhatsThisText(const QString &iText) { mWhatsThisText = iText; }
    /// Connects the segment's models in the environment.
    virtual void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv);
    virtual void dump(const QString &iPrefix);
    /// Reads the segment's children from its element.
    virtual void xmlParser(QDomElement *iElement);
    /// Takes one child element; answers whether it was known. Kinds handle their own tags and
    /// pass the rest on.
    virtual bool parseSubElement(QDomElement *iElement);
    /// Reads the icon file into the icon data; answers whether it could.
    virtual bool readIconFile();
    /// Connects the what's-this and why-disabled models.
    virtual void doWhatsThisConnections();

    Mnu_Menu *getMenu() const { return mMenuP; }
    void setMenu(Mnu_Menu *iMenu) { mMenuP = iMenu; }
    Mnu_Manager *getManager() const { return mManagerP; }
    /// The accelerator written in the description.
    const QString &staticAccelerator() const { return mAccelerator; }
    const QByteArray &iconData() const { return mIconData; }
    /// The text of the why-disabled model (empty when there is none).
    QString whyDisabledText() const;
    /// The element tag of the kind ("CommandSegment").
    virtual const char *tagName() const = 0;
    /// The class name of the kind ("Mnu_CommandSegment").
    const char *className() const { return metaObject()->className(); }

protected:
    typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;
    typedef Bnd_ConnectionToModel<Bndt_SimpleValue<bool>> BoolListener;

    /// Makes (on first use), names and connects a listener; an empty name leaves it
    /// unconnected.
    template<class L>
    static void bindListener(std::unique_ptr<L> &ioListener, const QString &iName,
                             const Bnd_ConnectionEnvironmentPtr &iEnv)
    {
        if (!ioListener)
            ioListener
                = std::make_unique<L>(QString(), Bnd_ConnectionEnvironment::blankEnvironment());
        if (iName.isEmpty()) {
            ioListener->ClearConnection();
            return;
        }
        ioListener->SetConnectionName(iName);
        ioListener->connect(iEnv);
    }
    /// A connection name set after the listener exists: connected again, with a blank
    /// environment.
    template<class L> static void rebind(std::unique_ptr<L> &ioListener, const QString &iName)
    {
        if (ioListener) {
            ioListener->ClearConnection();
            bindListener(ioListener, iName, Bnd_ConnectionEnvironment::blankEnvironment());
        }
    }
    /// The model's value when the listener is connected.
    template<class L, class T> static bool readModel(const std::unique_ptr<L> &iListener, T *oValue)
    {
        return iListener && iListener->isConnectedToModel() && iListener->readValue(*oValue);
    }

    /// Makes one item the usual way (the manager's insertItem with the name and the shown
    /// text, then the accelerator, enabled state, icon and what's-this text); records it and
    /// answers its ID (null when the manager made none).
    Mnu_MenuID makeStandardItem(Mnu_Manager *iManager, const QString &iAccelerator);
    /// Records an item the segment made.
    void recordItem(Mnu_MenuID iID);
    /// Forgets the items of the last instantiation (the manager removed them); kinds that keep
    /// more about their items forget it too.
    virtual void forgetItems() { mItemIDs.clear(); }
    /// The index of the item among the segment's; -1 when it is not one of them.
    int indexOf(Mnu_MenuID iID) const;
    const std::vector<Mnu_MenuID> &itemIDs() const { return mItemIDs; }
    /// Writes the kind's own children or setters, after the common ones.
    virtual void emitOwnTags(std::ostream &oStream, const QString &iIndent, saveFormat iFormat);
    /// Writes one child element or setter for a value (nothing for an empty value).
    static void emitValue(std::ostream &oStream, const QString &iIndent, saveFormat iFormat,
                          const char *iTag, const char *iSetter, const QString &iValue);
    /// The environment the segment was connected in (blank before).
    const Bnd_ConnectionEnvironmentPtr &environment() const { return mEnv; }

    bool mEnabled = true;
    bool mVisible = true;

private:
    Mnu_Menu *mMenuP = nullptr;
    Mnu_Manager *mManagerP = nullptr;
    QString mName;
    QString mTextConnectionName;
    QString mText;
    QString mDisplayedText;
    QString mWhatsThisText;
    QString mShownWhatsThisText;
    QString mTextModelValue;
    QString mAccelerator;
    QString mAcceleratorConnectionName;
    QString mCurrentAccelerator;
    QString mAcceleratorModelValue;
    QString mIconName;
    QString mEnableConnectionName;
    QString mVisibleConnectionName;
    QString mWhatsThisConnectionName;
    QString mWhyDisabledConnectionName;
    QByteArray mIconData;
    bool mIconRead = false;
    std::unique_ptr<StringListener> mTextListenerP;
    std::unique_ptr<StringListener> mAcceleratorListenerP;
    std::unique_ptr<BoolListener> mEnableListenerP;
    std::unique_ptr<BoolListener> mVisibleListenerP;
    std::unique_ptr<StringListener> mWhatsThisListenerP;
    std::unique_ptr<StringListener> mWhyDisabledListenerP;
    std::vector<Mnu_MenuID> mItemIDs;
    Bnd_ConnectionEnvironmentPtr mEnv;

    friend class Mnu_Menu;
};
