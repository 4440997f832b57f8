#ifndef K7EGLOBAL_H
#define K7EGLOBAL_H

/*!
    \file k7eGlobal.h
    What every program of the suite shares: the data types and the object units of a device.
*/

#include "NTypes.h"
#include "NUnits.h"
#include "k7eCoreExport.h"

#endif // K7EGLOBAL_H
