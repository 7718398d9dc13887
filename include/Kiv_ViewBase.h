#pragma once

#include "Bnd_ConnectionToModel.h"
#include "Kiv_ViewInterface.h"
#include "kivcore_export.h"

#include <Qt>

#include <memory>

/// What a drag started from a view hands to the place it is dropped on.
enum EDragType {
    /// The view starts no drag, whatever setCanDrag() says.
    eDragNone = 0,
    /// The target gets independent copies of the dragged items.
    eDragCopy = 1,
    /// The target gets references to the very items dragged (the default): a clip dragged out
    /// of a bin is placed in a sequence, it is neither duplicated nor taken out of the bin.
    eDragReference = 2,
    /// The items leave the source (reordering within one list).
    eDragMove = 3
};

/// The usual behaviour of a view: it stores its geometry, name, flags and container, draws
/// nothing by itself (drawContents() and clone() are left to the concrete view) and can show a
/// tool tip held in a string model.
///
/// A new view is read-only, of size 0 by 0, at (0, 0), with z-order 0 and drag type
/// eDragReference.
class KIVCORE_EXPORT Kiv_ViewBase : public Kiv_ViewInterface
{
public:
    typedef Bnd_ConnectionToModel<Bndt_SimpleValue<QString>> StringListener;

    Kiv_ViewBase();
    ~Kiv_ViewBase() override;
    Kiv_ViewBase &operator=(const Kiv_ViewBase &) = delete;

    void setParent(Kiv_ViewContainerInterface *iParent) override;
    Kiv_ViewContainerInterface *getParent() const override;
    void setName(const QString &iName) override;
    QString getName() const override;
    void setOrigin(const QPoint &iOrigin) override;
    QPoint getOrigin() const override;
    int getWidth() const override;
    int getHeight() const override;
    QRect getLocalDrawingRect() const override;
    QRect getRectInParent() const override;
    void setRectInParent(const QRect &iRect) override;
    QSize getSize() const override;
    /// A negative extent is reported and taken as 0.
    void setSize(const QSize &iSize) override;
    QSize getMinSize() const override;
    void setMinSize(const QSize &iSize) override;
    long getZOrder() const override;
    void setZOrder(long iZOrder) override;
    /// Binds the tool-tip listener when a tool-tip connection name is set.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    bool isFixedAspect() const override;
    void setIsFixedAspect(bool iFixed) override;
    /// An aspect that is not a positive number is reported and ignored.
    void setAspect(float iAspect) override;
    float getAspect() const override;
    void setReadOnly(bool iReadOnly) override;
    bool getReadOnly() const override;
    bool acceptsFocus() const override;
    void setAcceptsFocus(bool iAccepts) override;

    void mousePressEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseReleaseEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseMoveEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void mouseDoubleClickEvent(QMouseEvent *iEvent, const QPoint &iPos) override;
    void dragEnterEvent(QDragEnterEvent *iEvent, const QPoint &iPos) override;
    void dragMoveEvent(QDragMoveEvent *iEvent, const QPoint &iPos) override;
    void dragLeaveEvent(QDragLeaveEvent *iEvent, const QPoint &iPos) override;
    void dropEvent(QDropEvent *iEvent, const QPoint &iPos) override;
    /// Whether a drag may start at the point: setCanDrag(true) and a drag type other than
    /// eDragNone.
    bool canDrag(const QPoint &iPos) override;
    void startDrag(const QPoint &iPos) override;
    /// The text of the tool-tip model over the whole view; false when the model is not
    /// connected or holds an empty text.
    bool getToolTip(const QPoint &iPos, QRect *oTipRect, QString *oTipString) override;
    /// A null element: the base view offers nothing to drag.
    QDomElement getDragData(QPoint iPos, QDomDocument &ioDocument, QPixmap &oPixmap) override;
    /// getDragData() with the image thrown away; views whose image is costly override it.
    QDomElement getDragElement(QPoint iPos, QDomDocument &ioDocument) override;
    /// Leaves the event to others (marks it not accepted).
    void keyPressEvent(QKeyEvent *iEvent) override;
    bool event(QEvent *iEvent) override;
    /// Finds the view itself: the name must equal the view's name exactly.
    bool findItem(const QString &iName, QPoint *oWhere) override;
    QString findUiName(const QPoint &iPos) override;

    /// Asks the container to redraw the whole view on its next paint.
    void sendAllBitsChanged();
    /// Asks the container to redraw the whole view at once.
    void sendAllBitsChangedImmediate();
    /// Changes the size and tells the container (which may resize or repaint).
    void setSizeAndNotifyParent(const QSize &iSize);
    /// The name of a string model whose text is the view's tool tip; bound by makeConnections().
    void setToolTipConnectionID(const QString &iName);
    const QString &toolTipConnectionID() const { return mToolTipConnectionName; }
    /// Makes the bridge widget accept drops (whatever the argument: a view that stops
    /// accepting drops leaves the widget's setting to the other views) and records the flag.
    /// The view must have a container.
    void setAcceptsDrops(bool iAccepts);
    bool acceptsDrops() const { return mAcceptsDrops; }
    void setCanDrag(bool iCanDrag);
    EDragType getDragType() const;
    void setDragType(EDragType iType);
    /// The Qt drop actions a drag of that type offers.
    static Qt::DropActions dropActionsFor(EDragType iType);
    /// The widget the view is drawn in (its container's bridge), or null while it has none.
    /// Its window is the one "$Window" names of the view refer to.
    QWidget *bridgeWidget() const;

protected:
    /// A copy has the source's settings but no container, and a tool-tip listener of its own
    /// (bound again by makeConnections()).
    Kiv_ViewBase(const Kiv_ViewBase &iOther);

    /// The tool-tip listener (never null).
    StringListener &toolTipListener() const { return *mToolTipListenerP; }

private:
    bool mAcceptsFocus = false;
    bool mCanDrag = false;
    bool mAcceptsDrops = false;
    EDragType mDragType = eDragReference;
    Kiv_ViewContainerInterface *mParentP = nullptr;
    QPoint mOrigin;
    QString mName;
    bool mFixedAspect = false;
    float mAspect = 0.0f;
    bool mReadOnly = true; // a new view refuses edits until told otherwise
    QSize mSize { 0, 0 };
    QSize mMinSize { 0, 0 };
    long mZOrder = 0;
    QString mToolTipConnectionName;
    std::unique_ptr<StringListener> mToolTipListenerP;
};
