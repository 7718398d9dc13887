#include "Uip_ParseError.h"

#include <utility>

Uip_ParseError::Uip_ParseError(QString iMessage, long iFirstPosition, long iSecondPosition)
    : mMessage(std::move(iMessage))
    , mFirstPosition(iFirstPosition)
    , mSecondPosition(iSecondPosition)
    , mIsError(true)
{ }
