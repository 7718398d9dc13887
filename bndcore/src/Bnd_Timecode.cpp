#include "Bnd_Timecode.h"

Bnd_Timecode::Bnd_Timecode(qint16 iHours, qint16 iMinutes, qint16 iSeconds, qint16 iFrames,
                           bool iDropFrame)
    : frames(iFrames)
    , seconds(iSeconds)
    , minutes(iMinutes)
    , hours(iHours)
    , dropFrame(iDropFrame)
{ }

namespace {
// Frames dropped at the start of each minute that is not a multiple of ten.
int droppedPerMinute(int iFps)
{
    return iFps >= 60 ? 4 : 2;
}
} // namespace

Bnd_Timecode Bnd_Timecode::fromFrameCount(long iFrames, int iFps, bool iDropFrame)
{
    if (iFps <= 0)
        return Bnd_Timecode();
    long n = iFrames < 0 ? 0 : iFrames;
    if (iDropFrame) {
        const long drop = droppedPerMinute(iFps);
        const long perTenMinutes = long(iFps) * 600 - drop * 9;
        const long perMinute = long(iFps) * 60 - drop;
        const long tens = n / perTenMinutes;
        const long rest = n % perTenMinutes;
        n += drop * 9 * tens;
        if (rest > drop)
            n += drop * ((rest - drop) / perMinute);
    }
    Bnd_Timecode tc;
    tc.frames = qint16(n % iFps);
    tc.seconds = qint16((n / iFps) % 60);
    tc.minutes = qint16((n / (long(iFps) * 60)) % 60);
    tc.hours = qint16(n / (long(iFps) * 3600));
    tc.dropFrame = iDropFrame ? 1 : 0;
    return tc;
}

long Bnd_Timecode::toFrameCount(int iFps) const
{
    if (iFps <= 0)
        return 0;
    const long totalMinutes = long(hours) * 60 + minutes;
    long n = ((totalMinutes * 60) + seconds) * long(iFps) + frames;
    if (isDropFrame())
        n -= droppedPerMinute(iFps) * (totalMinutes - totalMinutes / 10);
    return n;
}

QString Bnd_Timecode::toString(bool iShowFrames) const
{
    const QChar sep = isDropFrame() ? QLatin1Char(';') : QLatin1Char(':');
    auto two = [](int v) {
        return QStringLiteral("%1").arg(v, 2, 10, QLatin1Char('0'));
    };
    QString s = two(hours) + sep + two(minutes) + sep + two(seconds);
    if (iShowFrames)
        s += sep + two(frames);
    return s;
}

bool Bnd_Timecode::operator==(const Bnd_Timecode &o) const
{
    return frames == o.frames && seconds == o.seconds && minutes == o.minutes && hours == o.hours
        && isDropFrame() == o.isDropFrame();
}
