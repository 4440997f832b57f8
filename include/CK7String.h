#ifndef CK7STRING_H
#define CK7STRING_H

#include "k7eCoreExport.h"

#include <QString>
#include <QtGlobal>

/*!
    Number text in four notations: reading and writing scaled, shifted and grouped numbers by one
    packed format per displayed quantity. All operations are static and may run on any thread.

    Readers and writers take the format as an unsigned int that holds the four signed bytes of an
    SFormatValue, #SFormatValue::decimals lowest. They use it in opposite senses: hexadecimal and
    dual text of an unsigned number, and decimal text without decimals, read back with the format
    they were written with, if its width and shift lose no digits. Decimal text with decimals, and
    negative dual text, do not.

    Hexadecimal and dual text is an upper part of width - decimals digits, and where decimals is
    positive ":" and a lower part of that many digits. Within each part "." separates groups of four
    digits, counted from the right; it carries no value: "12.3456:789A".
*/
class K7ECORE_EXPORT CK7String
{
public:
    //! The notation of a number. Any other code is unknown.
    enum EFormat : int {
        Float = 0, //!< floating: precision "decimals", field width "width"
        Dec = 1,   //!< fixed point: "decimals" places, field width "width"
        Hex = 2,   //!< hexadecimal: "width" digits in all, "decimals" of them in the lower part
        Dual = 3   //!< binary: the same
    };

    //! A format, unpacked.
    struct SFormatValue
    {
        qint8 decimals = 0; //!< digits right of the separator
        qint8 width = 0;    //!< digits in all (hexadecimal, dual) or field width
        qint8 shift = 0;    //!< bits: left after reading, right before writing; negative reversed
        qint8 format = 0;   //!< an EFormat
    };

    CK7String();
    ~CK7String();

    /*!
        \name Integer readers
        Each returns the number in \a text, multiplied by \a factor, cut towards zero, cut to the
        low bits of its type and then shifted, and writes to \a ok (null allowed) whether \a text
        was a number. It is 0 and \a ok false for an empty text, one that Qt does not convert, and
        an unknown notation. A number out of range is no failure: "300" as I8 is 44.

        The product is in extended precision. Beyond the conversion width (I8, U8, I16: 16 bits;
        U16, I32: 32; U32, I64, U64: 64) it is the most negative integer of that width: "40000" as
        I16 is -32768, "4294967295" as I32 is -2147483648.

        - Float: QString::toDouble(). Dec: without "." and ":", with the prefixes "0x" and "0":
          "1.000" is 1000, "010" is 8.
        - Hex: as validateHexStr() normalises it, with two digits per byte of the type where neither
          decimals nor width is positive. With a factor of 1 all bits are kept; otherwise the number
          is cut to the type before it is scaled.
        - Dual: as validateDualStr() normalises it; with width and decimals 0 there are no digits to
          read.

        A shift of as many bits as the type has, or more, leaves 0, or the sign where it shifts a
        signed number right.
    */
    //!@{
    static qint8 toI8(const QString &text, unsigned int format, double factor, bool *ok = nullptr);
    static quint8 toU8(const QString &text, unsigned int format, double factor, bool *ok = nullptr);
    static qint16 toI16(const QString &text, unsigned int format, double factor,
                        bool *ok = nullptr);
    static quint16 toU16(const QString &text, unsigned int format, double factor,
                         bool *ok = nullptr);
    static qint32 toI32(const QString &text, unsigned int format, double factor,
                        bool *ok = nullptr);
    static quint32 toU32(const QString &text, unsigned int format, double factor,
                         bool *ok = nullptr);
    static qint64 toI64(const QString &text, unsigned int format, double factor,
                        bool *ok = nullptr);
    static quint64 toU64(const QString &text, unsigned int format, double factor,
                         bool *ok = nullptr);
    //!@}

    /*!
        Returns QString::toFloat() of \a text times \a factor, or 0 and false in \a ok (null
        allowed) if that fails. \a format is not looked at.
    */
    static float toF32(const QString &text, unsigned int format, double factor, bool *ok = nullptr);
    //! The same by QString::toDouble().
    static double toF64(const QString &text, unsigned int format, double factor,
                        bool *ok = nullptr);

    /*!
        Brings \a text into the form of hexadecimal or dual text that \a format describes, and
        returns true: the last part behind ":" by validateLowerString(), the one before it, or the
        only one, by validateUpperString(). A leading "-" stays in front; every other "-" is
        dropped. An empty text counts as "0". That the digits are digits is not tested.

        "-12" with width 4 becomes "-0012", "ab:1" with width 6 and decimals 2 "00ab:01".
    */
    static bool validateHexStr(QString &text, SFormatValue format);
    //! \copydoc validateHexStr
    static bool validateDualStr(QString &text, SFormatValue format);
    /*!
        Returns the rightmost width - decimals digits of \a part, filled with zeros on the left and
        grouped. Groups in \a part, separated by ".", count for four digits each; without a "." the
        last eight digits count. If width - decimals is negative nothing is cut.
    */
    Q_REQUIRED_RESULT static QString validateUpperString(const QString &part, SFormatValue format);
    //! The same with \a format's decimals for the digits; four digits count without a ".", too.
    Q_REQUIRED_RESULT static QString validateLowerString(const QString &part, SFormatValue format);
    //! Returns \a digits with "." between groups of four, from the right: "1.2345".
    Q_REQUIRED_RESULT static QString insertPointSeparator(const QString &digits);

    /*!
        \name Writers
        Each returns \a value, shifted, in the notation of \a format; a notation that is unknown is
        taken for Hex.

        - Dec: with decimals, the last digits behind a ".", in a field of width characters (negative:
          left-aligned). The digits behind the point keep the sign of a negative number: -1234 with
          2 decimals is "-12.-34".
        - Hex, Dual: width digits, in lower case. Width 0 means all digits of the type; with a lower
          part it means no width for the upper one, which is then filled with zeros on the right to
          as many digits as the lower part has. Negative numbers are a minus sign and the magnitude
          filled with zeros, of which the rightmost width characters remain: signed char -1 is "-1",
          -128 is "80".
        - Float: as a double, not shifted, in a field of width + 2 characters: "f" with decimals
          places, or "g" if decimals is negative.

        Shifts are in 32 bits, or 64 for the 64-bit types, and the result is not cut to a narrower
        type. A shift of that many bits or more leaves 0, or the sign. Where 10 to the power of
        decimals is 0 in that arithmetic, the number is all remainder.
    */
    //!@{
    Q_REQUIRED_RESULT static QString toStr(const signed char &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const unsigned char &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const short &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const unsigned short &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const int &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const unsigned int &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const long long &value, unsigned int format);
    Q_REQUIRED_RESULT static QString toStr(const unsigned long long &value, unsigned int format);
    //!@}

    /*!
        Returns \a value in the notation Float, or cut towards zero to a 64-bit integer in Dec (the
        most negative one for NaN and what does not fit); empty in any other notation.
    */
    Q_REQUIRED_RESULT static QString toStr(const float &value, unsigned int format);
    //! \overload
    Q_REQUIRED_RESULT static QString toStr(const double &value, unsigned int format);

    /*!
        \name The notations by name
        The writers above, each empty if \a format is not its own notation (Float serves Dec too, as
        a signed 64-bit integer). They exist for exactly the eight integer types of toStr().
    */
    //!@{
    template <class T>
    Q_REQUIRED_RESULT static QString toDecString(const T &value, unsigned int format);
    template <class T>
    Q_REQUIRED_RESULT static QString toHexString(const T &value, unsigned int format);
    template <class T>
    Q_REQUIRED_RESULT static QString toDualString(const T &value, unsigned int format);
    template <class T>
    Q_REQUIRED_RESULT static QString toFloatString(const T &value, unsigned int format);
    //!@}
};

#endif // CK7STRING_H
