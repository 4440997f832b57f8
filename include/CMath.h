#ifndef CMATH_H
#define CMATH_H

#include "k7eCoreExport.h"

/*!
    Powers of ten, rounding to decimal places, a test of raw doubles and CRC-32. Static members
    only, without a state: all may be called from any thread.
*/
class K7ECORE_EXPORT CMath
{
public:
    CMath() = delete;

    //! 1, 10, 100, 1000 and 10000, by exponent.
    static const double mPowTab[5];

    //! Returns 10 to the power of \a exponent: from #mPowTab where it is there, else by pow().
    static double exp10(int exponent);

    /*!
        Returns \a value rounded to \a decimals places, halves away from zero: 2.5 gives 3 and -2.5
        gives -3 with 0. The product with 10^decimals is in extended precision. A number that has
        these decimals and fewer than 2^53 units of the last one stays itself, up to 15 of them:
        0.002877 with 6.

        Where the product does not fit into a signed 64-bit integer, and for NaN and the infinities,
        returns \a value as it is: it has no digits behind those decimals.
    */
    static double round(double value, unsigned int decimals);
    //! Returns \a value rounded down to \a decimals places: -1.25 gives -1.3 with 1.
    static double roundOff(double value, unsigned int decimals);
    //! Returns \a value rounded up to \a decimals places: -1.25 gives -1.2 with 1.
    static double roundUp(double value, unsigned int decimals);

    /*!
        Returns whether the 8 bytes at \a raw, at any address, are a plausible little-endian double.
        Infinities and NaN are not. Neither are numbers with the greatest exponent and a low
        mantissa word above 0xD7B9609A, nor those with the smallest and one up to 0x1111E1E4. Zero
        and subnormal numbers are.
    */
    static bool checkDouble(const void *raw);

    /*!
        Returns the CRC-32 (of zlib and ISO-HDLC) of the \a length bytes at \a data: 0xCBF43926 for
        "123456789". With \a length below 1 it is 0, and \a data may be null.
    */
    static unsigned int crc32(const void *data, int length);
};

#endif // CMATH_H
