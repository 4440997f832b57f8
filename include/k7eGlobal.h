#ifndef K7EGLOBAL_H
#define K7EGLOBAL_H

/*!
    \file k7eGlobal.h
    What every program of the suite shares: the data types and object units of a device, the names
    of its configurations, and the constants of the programs themselves.
*/

#include "NDeviceConf.h"
#include "NTypes.h"
#include "NUnits.h"
#include "Nk7eGlobal.h"
#include "k7eCoreExport.h"

#endif // K7EGLOBAL_H
