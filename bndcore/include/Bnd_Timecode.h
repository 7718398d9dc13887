#pragma once

#include "bndcore_export.h"

#include <QString>
#include <QtGlobal>

/// A SMPTE-style timecode: hours, minutes, seconds and frames, with a drop-frame flag.
class BNDCORE_EXPORT Bnd_Timecode
{
public:
    Bnd_Timecode() = default;
    Bnd_Timecode(qint16 iHours, qint16 iMinutes, qint16 iSeconds, qint16 iFrames,
                 bool iDropFrame = false);
    Bnd_Timecode(const Bnd_Timecode &) = default;
    Bnd_Timecode &operator=(const Bnd_Timecode &) = default;
    ~Bnd_Timecode() = default;

    /// Builds a timecode from a frame count at a whole-number frame rate. With drop frame
    /// (only meaningful at 30 and 60 fps) the frame numbers 0 and 1 (0-3 at 60) of every
    /// minute but each tenth are skipped.
    static Bnd_Timecode fromFrameCount(long iFrames, int iFramesPerSecond, bool iDropFrame = false);
    /// The frame count of this timecode at the given rate; the inverse of fromFrameCount.
    long toFrameCount(int iFramesPerSecond) const;

    bool isDropFrame() const { return dropFrame > 0; }
    /// "hh:mm:ss:ff", with ";" as every separator for drop-frame timecodes.
    QString toString(bool iShowFrames = true) const;

    bool operator==(const Bnd_Timecode &o) const;
    bool operator!=(const Bnd_Timecode &o) const { return !(*this == o); }

    qint16 frames = 0;
    qint16 seconds = 0;
    qint16 minutes = 0;
    qint16 hours = 0;
    quint8 dropFrame = 0;
};
