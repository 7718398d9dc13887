#pragma once

#include "kivcore_export.h"

#include <QPixmap>
#include <QWidget>

/// A small frameless window that floats a picture above everything else, see-through by its
/// alpha: the image of a header column while it is dragged, the play-rate badge a monitor fades
/// out.
///
/// The window never takes the focus or the pointer: it is shown without activating, clicks go
/// through it to what lies below, and its background is transparent where the picture is. It is
/// a top-level window, so place it with move() in global coordinates.
class KIVCORE_EXPORT Kiv_TransparentOverlay : public QWidget
{
    Q_OBJECT

public:
    /// An alpha of 255 is opaque, 0 invisible; larger values count as 255.
    explicit Kiv_TransparentOverlay(const QPixmap &iPixmap = QPixmap(),
                                    unsigned short iAlpha = 255);
    ~Kiv_TransparentOverlay() override;

    /// Shows the picture; the window takes its size (in device-independent pixels).
    void setPixmap(const QPixmap &iPixmap);
    const QPixmap &pixmap() const { return mPixmap; }

    /// Sets the window's opacity to alpha / 255.
    void setAlpha(unsigned short iAlpha);
    unsigned short alpha() const { return mAlpha; }
    /// The opacity, 0 (invisible) to 1 (opaque), for callers that fade the window out and stop
    /// below some level.
    double level() const { return mAlpha / 255.0; }

protected:
    void paintEvent(QPaintEvent *iEvent) override;

private:
    QPixmap mPixmap;
    unsigned short mAlpha = 255;
};
