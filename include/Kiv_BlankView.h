#pragma once

#include "Kiv_ViewBase.h"
#include "kivcore_export.h"

/// A view that draws nothing: a placeholder that keeps its place and size in a container.
class KIVCORE_EXPORT Kiv_BlankView : public Kiv_ViewBase
{
public:
    Kiv_BlankView() = default;
    /// A blank view of that size.
    explicit Kiv_BlankView(const QSize &iSize);

    void drawContents(QPainter *iPainter, const QRect &iRect) override;
    std::unique_ptr<Kiv_ViewInterface> clone() const override;

protected:
    Kiv_BlankView(const Kiv_BlankView &iOther) = default;
};
