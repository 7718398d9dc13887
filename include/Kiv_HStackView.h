#pragma once

#include "Kiv_ContainerViewBase.h"
#include "kivcore_export.h"

#include <QColor>
#include <QString>

#include <vector>

/// A container view that lays its sub-views out left to right, in their order, all at the top;
/// its size is the sum of their widths by the largest height, and follows them when one of them
/// changes size.
///
/// Each sub-view can get variables of its own: they are bound in an environment below the one
/// the stack is connected in ("Field=Clips.name", the form of Bnd_ConnectionEnvironment::set),
/// so one prototype cell bound to "$Field[$Row]" shows a different column in each slot. A
/// sub-view inserted after the stack was connected is connected at once.
///
/// A sub-view can be covered by a proxy: it is then drawn as a flat colour (a column being
/// dragged elsewhere). The proxy follows the view when it moves.
class KIVCORE_EXPORT Kiv_HStackView : public Kiv_ContainerViewBase
{
public:
    Kiv_HStackView();
    ~Kiv_HStackView() override;

    /// Inserts the view before position `iIndex` (clamped to the ends) and owns it. A view the
    /// container refuses (see AddSubView) stays with the caller: answers false.
    bool insertSubView(int iIndex, Kiv_ViewInterface *iView, const QString &iVariables = QString());
    bool appendSubView(Kiv_ViewInterface *iView, const QString &iVariables = QString());
    /// Removes and deletes the sub-view at the position (nothing for a position outside).
    void removeSubViewAt(int iIndex);
    /// Moves the sub-view at `iFrom` so that it ends up at `iTo`; the ones between shift.
    void moveSubView(int iFrom, int iTo);
    int subViewCount() const { return int(mOrder.size()); }
    /// The sub-view at the position, null outside.
    Kiv_ViewInterface *subViewAt(int iIndex) const;
    int indexOf(const Kiv_ViewInterface *iView) const;
    /// The position of the sub-view that spans x (stack coordinates), -1 when none does.
    int indexAt(int iX) const;
    /// Gives every sub-view the height.
    void setSubViewHeights(int iHeight);
    /// Places the sub-views from the left and takes the size they make up; tells the container
    /// when the size changed, else asks for a redraw.
    void layoutSubViews();

    /// Draws the sub-view as a flat colour until clearProxies().
    void setProxy(const Kiv_ViewInterface *iView, const QColor &iColor);
    void clearProxies();

    // The view.
    void removeView(Kiv_ViewInterface *iView) override;
    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;
    /// Each sub-view in an environment with its variables.
    void makeConnections(Bnd_ConnectionEnvironmentPtr iEnv) override;
    QSize getMinSize() const override;
    /// A drag may start where the sub-view under the point allows it, or anywhere when the
    /// stack itself allows it.
    bool canDrag(const QPoint &iPos) override;
    /// An "Item" element holding the sub-views' elements, and a picture of the stack.
    QDomElement getDragData(QPoint iPos, QDomDocument &ioDocument, QPixmap &oPixmap) override;
    QDomElement getDragElement(QPoint iPos, QDomDocument &ioDocument) override;
    void childSizeChanged(Kiv_ViewInterface *iChild, QSize iNewSize, QSize iOldSize) override;

protected:
    /// A copy has clones of the sub-views in the same order, with their variables; no proxies.
    Kiv_HStackView(const Kiv_HStackView &iOther);

private:
    struct Entry
    {
        Kiv_ViewInterface *view;
        QString variables;
        QColor proxy; // invalid: drawn as itself
    };
    Bnd_ConnectionEnvironmentPtr environmentFor(const Entry &iEntry) const;

    std::vector<Entry> mOrder;
    Bnd_ConnectionEnvironmentPtr mEnv;
    bool mLayingOut = false;
};
