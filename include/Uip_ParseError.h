#pragma once

#include "kivcore_export.h"

#include <QString>

/// The outcome of parsing an action script: no error, or a message and two positions.
///
/// The tokenizer keeps no positions, so both positions are always 0; they are kept for callers
/// that show them.
class KIVCORE_EXPORT Uip_ParseError
{
public:
    /// No error: empty message, positions 0.
    Uip_ParseError() = default;
    /// An error with the message and the first and second position of the fault.
    Uip_ParseError(QString iMessage, long iFirstPosition, long iSecondPosition);

    const QString &GetMessage() const { return mMessage; }
    long GetFirstPosition() const { return mFirstPosition; }
    long GetSecondPosition() const { return mSecondPosition; }
    bool IsError() const { return mIsError; }

private:
    QString mMessage;
    long mFirstPosition = 0;
    long mSecondPosition = 0;
    bool mIsError = false;
};
