#pragma once

#include "Kiv_IPointOfInterestFinder.h"
#include "Kiv_ViewInterface.h"
#include "kivcore_export.h"

#include <QColor>
#include <QPixmap>

#include <memory>

class QPainter;
class QWidget;

/// What the two bridges (the widgets that host a top view) share: the hosted view, which the
/// bridge owns, the background (a colour, then a pixmap, drawn under the view), and the lookup
/// of user-interface names and points of interest through the view tree.
class KIVCORE_EXPORT Kiv_BridgeBase : public Kiv_IPointOfInterestFinder
{
public:
    /// `iOwner` is the bridge widget itself.
    explicit Kiv_BridgeBase(QWidget *iOwner);
    ~Kiv_BridgeBase() override;
    Kiv_BridgeBase(const Kiv_BridgeBase &) = delete;
    Kiv_BridgeBase &operator=(const Kiv_BridgeBase &) = delete;

    /// The point, in the owner widget, of the item the child view finds by that dotted name
    /// (which starts with the child's own name); empty when there is no child or no such item.
    Kiv_PointOfInterest findPoi(const QString &iName) override;
    /// The owner's object name, then "." (only after a non-empty name) and the name the child
    /// gives for the point, when the point is on the child.
    QString findUiName(const QPoint &iPoint) override;
    /// Takes ownership of the view (the previous child is deleted); null only deletes the
    /// present child. The bridges also hook the view up and fit themselves to it. A view that
    /// has a container (a sub-view, or another bridge's child) is refused with a warning and
    /// stays where it is.
    virtual void setChild(Kiv_ViewInterface *iView);
    virtual Kiv_ViewInterface *getChild() const;
    /// Gives up the child without deleting it.
    std::unique_ptr<Kiv_ViewInterface> takeChild();

    void setBridgeBackgroundColor(const QColor &iColor);
    /// A pixmap drawn over the background colour: tiled from the top-left corner, or stretched
    /// over the whole widget.
    void setBridgeBackgroundPixmap(const QPixmap &iPixmap, bool iTiled);

protected:
    /// setChild() without the hooking up: answers whether the view is the child now (false for
    /// null and for a refused view). `iOperation` names the caller in the warning.
    bool acceptChild(Kiv_ViewInterface *iView, const char *iOperation);
    /// Deletes the child. A bridge calls it from its own destructor, while the whole widget
    /// still exists for a view that talks to its container as it goes.
    void deleteChild();
    /// Paints the background over `iArea` (widget coordinates); answers false, painting
    /// nothing, when there is no child.
    bool paintBackground(QPainter &iPainter, const QRect &iArea) const;
    /// The child's tool tip at the point (child coordinates).
    bool childToolTip(const QPoint &iPos, QRect *oRect, QString *oText) const;
    QWidget *owner() const { return mOwnerP; }

private:
    std::unique_ptr<Kiv_ViewInterface> mChildP;
    bool mPixmapTiled = false;
    QPixmap mBackgroundPixmap;
    bool mBackgroundColorSet = false;
    QColor mBackgroundColor;
    QWidget *mOwnerP;
};
