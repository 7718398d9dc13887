#pragma once

// The model a listener gets for a subscripted name ("Clips.name[3]", "Clips.name[Cursor]"):
// it stands for one element of an array and forwards every message to the array with the
// element's index. The index is fixed, or read from an index model at each message.

#include "Bnd_ListenerInterface.h"
#include "Bnd_ModelBase.h"

class Bnd_ArrayElementModel : public Bnd_ModelBase
{
public:
    /// Element `iIndex` of `iArray`.
    Bnd_ArrayElementModel(Bnd_ModelInterface *iArray, long iIndex);
    /// The element of `iArray` whose index is the value of the long model `iIndexModel`.
    Bnd_ArrayElementModel(Bnd_ModelInterface *iArray, Bnd_ModelInterface *iIndexModel);
    ~Bnd_ArrayElementModel() override;

    long currentIndex() const;

    bool modelInterface_switchToStaticConnection() override;
    bool modelInterface_isRealModelOrisConnectedToOne() const override;
    QString describeValue() const override;

protected:
    void handleMessage(const Bnd_MessageInterface &iMsg) override;

private:
    // Watches one of the models this element depends on.
    class Watch : public Bnd_ListenerInterface
    {
    public:
        Watch(Bnd_ArrayElementModel *iOwner, bool iIsIndex)
            : mOwner(iOwner)
            , mIsIndex(iIsIndex)
        { }
        ~Watch() override;
        void attach(Bnd_ModelInterface *iModel);
        void detach();
        const Bndt_Type &getListenerType() const override;
        bool listenerInterface_isRealListenerOrIsConnectedToOne() const override { return true; }
        void listenerInterface_detachModel() override;
        bool listenerInterface_attachModel(Bnd_ModelInterface *) override { return false; }
        void listenerInterface_receiveMessage(const Bnd_MessageInterface &iMsg) override;
        Bnd_ModelInterface *model = nullptr;

    private:
        Bnd_ArrayElementModel *mOwner;
        bool mIsIndex;
    };

    void arrayChanged(const Bnd_MessageInterface &iMsg);
    void indexChanged(const Bnd_MessageInterface &iMsg);
    void notifyElementChanged();
    void sourceGone();

    Watch mArrayWatch { this, false };
    Watch mIndexWatch { this, true };
    long mIndex;
    bool mActions;
};
