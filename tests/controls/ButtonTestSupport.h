#pragma once

// Shared by the button suites: a published command that records when it ran (on the
// scheduler's manual clock), and rendering that compares with image files.

#include "Bnde_ActionModel.h"
#include "Kib_Resource.h"
#include "TaskScheduler.h"

#include <QImage>
#include <QTest>
#include <QWidget>

namespace ButtonTest {

using Times = QList<int>;

/// The command "Test.act": each run appends the scheduler time since construction, which
/// switches the scheduler to its manual clock.
struct RecordingAction
{
    RecordingAction()
    {
        TaskScheduler::instance().setManualClock(true);
        start = TaskScheduler::instance().now();
        model.setFunction([this] { times << int(TaskScheduler::instance().now() - start); });
        model.Publish();
    }
    int count() const { return int(times.size()); }
    /// Tasks scheduled since construction and still running (a repeat that outlived its button).
    int tasksAdded() const { return TaskScheduler::instance().scheduledTaskCount() - tasksBefore; }

    const int tasksBefore = TaskScheduler::instance().scheduledTaskCount();
    qint64 start = 0;
    Times times;
    Bnde_ActionModelWithType<Bndt_Action<void()>> model { QStringLiteral("Test.act") };
};

/// Moves the manual clock; what falls due fires inside the call.
inline void advance(int iMs)
{
    TaskScheduler::instance().advance(iMs);
}

/// What the widget paints at its sizeHint and device pixel ratio, on a transparent image and
/// with a transparent background brush (so only the button's image shows).
inline QImage render(QWidget *iWidget)
{
    QPalette palette = iWidget->palette();
    palette.setBrush(QPalette::Window, Qt::transparent);
    iWidget->setPalette(palette);
    iWidget->resize(iWidget->sizeHint());
    const qreal ratio = iWidget->devicePixelRatioF();
    QImage image(iWidget->size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    iWidget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    image.setDevicePixelRatio(1.0);
    return image;
}

/// An image file of the resource directory in render()'s format.
inline QImage resourceImage(const QString &iName)
{
    QImage image = QImage(Kib_Resource::resourceFile(iName))
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1.0);
    return image;
}

} // namespace ButtonTest
