#ifndef CVARIANT_H
#define CVARIANT_H

#include "CString128.h"
#include "CString32.h"
#include "CString64.h"
#include "NTypes.h"
#include "k7eCoreExport.h"

#include <QChar>
#include <QString>
#include <QVariant>

class QBitArray;
class QDataStream;
class QDebug;

/*!
    The value of a device object together with its data type.

    A CVariant holds a QVariant, the content, and an NTypes::ETypes, the tag. The tag decides how
    the value is converted, shown, compared and streamed. Each constructor and assignment from a
    native type stores the content in one form per tag:

    | tag                          | content                                             |
    |------------------------------|-----------------------------------------------------|
    | U8, I8, U16, I16, U32, I32   | UChar, SChar, UShort, Short, UInt, Int              |
    | U64, I64, F32, F64           | ULongLong, LongLong, Float, Double                  |
    | STRING32, STRING64, STRING128| CString32, CString64, CString128                    |
    | CHARSTR64, 128, 256, CHAR    | QByteArray of all 64, 128, 256 bytes; of 1 byte     |
    | DATETIME                     | NTypes::tsDateTime                                  |
    | UTF16CHAR                    | QChar                                               |

    Content of another form arises from defaultValue(), from setDefaultValue() with a type that has
    no default, from a QVariant that is not supported, and from a stream. Every operation is defined
    on it. Text, hexadecimal and bits take it converted with QVariant::convert() to the form of the
    tag, and as 0, empty or the null record if that fails. Numbers and comparisons take it with
    QVariant's own conversion to int, unsigned int, a 64-bit integer or double, as the tag has it,
    and narrow it only then: U8 over the Int 300 is "44", but toU64() gives 300.

    A tag outside 0..20 can only come from a stream, a text constructor or setDefaultValue(). Such a
    value is no number, character buffer or fixed string, and its text is that of the content.

    A QString is assigned as QVariant(text), or parsed with fromStr(): on its own it would convert
    to each of the fixed strings as well. So would a long to each of the integers.

    Stream layout: the content as a QVariant, then the tag as a qint32, in the byte order and
    version of the stream; both are read as they stand, except content that no program should read
    from a foreign stream: see operator>>(). The fixed strings (their own layout) and the date-time
    record (its 8 bytes in the order of the members, the year as qint16) have stream functions as
    soon as Qt knows their meta-types. Those that a program registers are used instead, whether it
    does so before its first CVariant or later.

    Nothing here throws. Values may be used in different threads, each in one at a time.
*/
class K7ECORE_EXPORT CVariant
{
public:
    /*!
        \name Construction
        One constructor and one assignment for each native type; the tag follows from the type.
        They are implicit, and so are the conversion operators: programs assign native values to
        variants and back.
    */
    //!@{
    //! Makes a null value: no content, TYPE_UNKNOWN.
    CVariant() noexcept;
    CVariant(const CVariant &other);
    //! Takes the value of \a other, which becomes null.
    CVariant(CVariant &&other) noexcept;
    CVariant(unsigned char value);
    CVariant(signed char value);
    CVariant(unsigned short value);
    CVariant(short value);
    CVariant(unsigned int value);
    CVariant(int value);
    CVariant(float value);
    CVariant(unsigned long long value);
    CVariant(long long value);
    CVariant(double value);
    CVariant(const CString32 &value);
    CVariant(const unsigned short (&units)[32]);
    CVariant(const char (&bytes)[64]);
    CVariant(const CString128 &value);
    CVariant(const unsigned short (&units)[128]);
    CVariant(const char (&bytes)[256]);
    CVariant(const NTypes::tsDateTime &value);
    CVariant(const CString64 &value);
    CVariant(const unsigned short (&units)[64]);
    CVariant(const char (&bytes)[128]);
    CVariant(QChar value);
    CVariant(char value);
    //! Makes the default value of \a type, see setDefaultValue(); null for a code outside 0..20.
    CVariant(NTypes::ETypes type);
    //! Parses \a text as fromStr() does. The tag is \a type in every case.
    CVariant(const QString &text, NTypes::ETypes type);
    //! Makes the value of \a bits, as the static fromBitArray() does.
    CVariant(const QBitArray &bits, NTypes::ETypes type);
    //! Assigns \a value. One that is not supported is kept as content, with TYPE_UNKNOWN.
    CVariant(const QVariant &value);
    virtual ~CVariant();

    CVariant &operator=(const CVariant &other);
    //! Takes the value of \a other, which takes this one's.
    CVariant &operator=(CVariant &&other) noexcept;
    CVariant &operator=(const unsigned char &value);
    CVariant &operator=(const signed char &value);
    CVariant &operator=(const unsigned short &value);
    CVariant &operator=(const short &value);
    CVariant &operator=(const unsigned int &value);
    CVariant &operator=(const int &value);
    CVariant &operator=(const float &value);
    CVariant &operator=(const unsigned long long &value);
    CVariant &operator=(const long long &value);
    CVariant &operator=(const double &value);
    CVariant &operator=(const CString32 &value);
    CVariant &operator=(const unsigned short (&units)[32]);
    CVariant &operator=(const char (&bytes)[64]);
    CVariant &operator=(const CString128 &value);
    CVariant &operator=(const unsigned short (&units)[128]);
    CVariant &operator=(const char (&bytes)[256]);
    CVariant &operator=(const NTypes::tsDateTime &value);
    CVariant &operator=(const CString64 &value);
    CVariant &operator=(const unsigned short (&units)[64]);
    CVariant &operator=(const char (&bytes)[128]);
    CVariant &operator=(const QChar &value);
    CVariant &operator=(const char &value);
    //! The same as fromBitArray(\a bits).
    CVariant &operator=(const QBitArray &bits);
    /*!
        Takes a number, character, text or byte array from Qt, stored in the form of its new tag.

        The tag is the one of the native type; Long and ULong become I32 and U32 (the low 32 bits),
        Char becomes CHAR. A QString becomes STRING32 below 64 bytes of UTF-8, STRING64 below 128,
        else STRING128, and is cut there. A QByteArray is taken as the memory of UTF-16 units, not
        as an 8-bit string; its size decides in the same way.

        Any other type, NTypes::tsDateTime among them, leaves the variant as it is, with the warning
        "CVariant::operator=() : userType() %1 is not supported in this method.".
    */
    CVariant &operator=(const QVariant &value);

    //! Exchanges the values.
    void swap(CVariant &other) noexcept
    {
        mValue.swap(other.mValue);
        qSwap(mType, other.mType);
    }
    //!@}

    //! Returns the tag.
    Q_REQUIRED_RESULT NTypes::ETypes type() const { return mType; }
    //! Returns whether the content is null or the tag is TYPE_UNKNOWN.
    Q_REQUIRED_RESULT bool isNull() const;
    //! Returns whether there is content and the tag is not TYPE_UNKNOWN.
    Q_REQUIRED_RESULT bool isValid() const;

    /*!
        Returns whether the value converts to \a target: to a number as QVariant::canConvert() says
        (to F64 from every narrow number too), from any string or character to UTF-16, from any
        number, 8-bit string or character and the date-time to 8 bits, from U64, I64 and DATETIME to
        DATETIME, and never to UNKNOWN, F80 or a code that is no type.

        The number and character conversions may still fail where this is true.
    */
    Q_REQUIRED_RESULT bool canConvertTo(NTypes::ETypes target) const;

    /*!
        \name Numbers
        Each returns the value as a number, and in \a ok (null allowed) whether there was one; 0 if
        not. Strings and characters are none.

        A wider integer keeps its low bits, as a register image must: U32 300 is U8 44, I32 -1 is
        U32 4294967295. Floating values are cut towards zero; beyond the range of the type the low
        bits of the integer are kept below a magnitude of 2^64, and the low bits of -2^63 stand for
        all others, NaN and the infinities.

        U8 content converts neither to U16 nor to F32: QVariant says so, and callers rely on it.
    */
    //!@{
    signed char toI8(bool *ok = nullptr) const;
    unsigned char toU8(bool *ok = nullptr) const;
    short toI16(bool *ok = nullptr) const;
    unsigned short toU16(bool *ok = nullptr) const;
    int toI32(bool *ok = nullptr) const;
    unsigned int toU32(bool *ok = nullptr) const;
    long long toI64(bool *ok = nullptr) const;
    unsigned long long toU64(bool *ok = nullptr) const;
    float toF32(bool *ok = nullptr) const;
    double toF64(bool *ok = nullptr) const;

    operator signed char() const;
    operator unsigned char() const;
    operator short() const;
    operator unsigned short() const;
    operator int() const;
    operator unsigned int() const;
    operator long long() const;
    operator unsigned long long() const;
    operator float() const;
    operator double() const;
    //!@}

    /*!
        \name 8-bit characters
        Each writes the bytes of an 8-bit string or character to \a buffer, at most one less than it
        has, with zeros behind them, and returns true. For any other tag it returns false and leaves
        \a buffer alone, also where canConvertTo() is true.
    */
    //!@{
    bool toCharStr64(char (&buffer)[64]) const;
    bool toCharStr128(char (&buffer)[128]) const;
    bool toCharStr256(char (&buffer)[256]) const;
    //! The first byte instead, 0 if there is none.
    bool toChar(char &character) const;
    operator char() const;
    //!@}

    /*!
        Returns the value as \a T: QChar, CString32, CString64 or CString128.

        QChar is the first UTF-16 unit of the text, and null for an empty text or if canConvertTo(\a
        target) is false. A fixed string is a copy of one of the same capacity, its tail included,
        or else is made from the text; it is empty, and \a ok false, if the value does not convert
        to a fixed string, whatever \a target says.
    */
    template <class T>
    T value(NTypes::ETypes target, bool *ok = nullptr) const = delete;

    //! Writes the first UTF-16 unit of the text, or 0, and returns whether the value is a text.
    bool toUtf16Char(unsigned short &unit) const;
    //! \overload
    bool toUtf16Char(QChar &character) const;
    operator QChar() const;

    //! Returns the value as a fixed string, see value(); \a ok tells whether it converts to one.
    CString32 toString32(bool *ok = nullptr) const;
    //! Copies that string's units. Returns true always; the units are zeros if it does not convert.
    bool toString32(unsigned short (&units)[32]) const;
    operator CString32() const;
    //! \copydoc toString32(bool *) const
    CString64 toString64(bool *ok = nullptr) const;
    //! \copydoc toString32(unsigned short (&)[32]) const
    bool toString64(unsigned short (&units)[64]) const;
    operator CString64() const;
    //! \copydoc toString32(bool *) const
    CString128 toString128(bool *ok = nullptr) const;
    //! \copydoc toString32(unsigned short (&)[32]) const
    bool toString128(unsigned short (&units)[128]) const;
    operator CString128() const;

    /*!
        Returns the value as text: integers in decimal, F32 with 6 and F64 with 15 digits at most, a
        date-time as "2014-03-05T10:20:30" in local time (empty for an impossible date), 8-bit
        strings as UTF-8 up to the first NUL.
    */
    Q_REQUIRED_RESULT QString toStr() const;
    operator QString() const;
    //! Returns toStr(), but F32 and F64 with 6 digits in the default QLocale, grouped.
    Q_REQUIRED_RESULT QString toLocaleStr() const;
    /*!
        Returns \a text parsed as \a type. Integers have the prefixes "0x" and "0"; what is no
        number of 32 (64) bits is 0, and the low bits of one that is are kept: "300" is U8 44.
        Strings are cut at their capacity; 8-bit strings are Latin-1, not padded. A date-time is
        "2014-03-05T10:20:30", or the low 32 bits of the record as a number, or else all zeros.
        UTF16CHAR is the first unit, the null character if there is none.

        UNKNOWN, F80 and codes that are no type give a null value and the warning
        "CVariant::fromStr : Data type %1 is not supported in this method.".
    */
    Q_REQUIRED_RESULT static CVariant fromStr(const QString &text, NTypes::ETypes type);
    //! Assigns \a text parsed as the own tag. For a tag that is no type, and for an 8-bit one if \a
    //! text is null, calls setDefaultValue() of the tag instead.
    CVariant &fromStr(const QString &text);

    /*!
        Returns \a prefix with the lower-case hexadecimal digits of the value, two per byte:
        unsigned integers and UTF16CHAR zero-padded; strings all bytes in memory order; a date-time
        its 8 bytes as an integer, not padded; nothing for all others.

        Signed integers are sign and magnitude, padded between them to the same number of
        characters: I16 -1 is "-001". I8 and I16 keep only the rightmost 2 and 4: -128 is "80".
    */
    Q_REQUIRED_RESULT QString toHex(const QString &prefix = QString()) const;

    /*!
        Returns the 8 to 64 bits of an integer, the least significant first. Any other tag gives no
        bits and the warning
        "CVariant::toBitArray() : Data type %1 is not supported in this method.".
    */
    Q_REQUIRED_RESULT QBitArray toBitArray() const;
    /*!
        Returns the integer of \a type with these \a bits, the least significant first; missing bits
        are 0, those beyond the width are ignored. Any other type gives a null value and the warning
        "CVariant::fromBitArray : Data type %1 is not supported in this method.".
    */
    Q_REQUIRED_RESULT static CVariant fromBitArray(const QBitArray &bits, NTypes::ETypes type);
    //! Assigns the integer of the own tag, or of U64 if that is UNKNOWN, with these \a bits.
    CVariant &fromBitArray(const QBitArray &bits);

    /*!
        Returns the content a value of \a type starts with: zero, zero bytes or the null record.
        U8, I8, U16 and I16 start with a Qt Int. UNKNOWN, F80 and codes that are no type have none:
        a null QVariant.
    */
    Q_REQUIRED_RESULT QVariant defaultValue(NTypes::ETypes type) const;
    /*!
        Sets the tag to \a type, and the content to its default unless that is null: for UNKNOWN,
        F80, UTF16CHAR and codes that are no type the old content stays.
    */
    CVariant &setDefaultValue(NTypes::ETypes type);

    /*!
        Returns whether tags and values are equal: integers and date-times as 64-bit integers,
        F32 and F64 as such (NaN equals nothing), all strings and characters by their text. Two
        values without a type, or of F80, are always equal.
    */
    bool operator==(const CVariant &other) const;
    bool operator!=(const CVariant &other) const;
    /*!
        Returns whether the value is less than \a other, which is converted to the kind of this
        value's tag: unsigned or signed 64-bit integer, F32, F64 or text, ordered by UTF-16 unit.
        Without a type, or of F80, none is less or greater.
    */
    bool operator<(const CVariant &other) const;
    bool operator>(const CVariant &other) const;
    //! Returns not operator>(), true for NaN too.
    bool operator<=(const CVariant &other) const;
    //! Returns not operator<(), true for NaN too.
    bool operator>=(const CVariant &other) const;

    //! Returns the content; the tag is lost.
    operator QVariant() const;

private:
    friend K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CVariant &variant);
    friend K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CVariant &variant);

    QVariant mValue;
    NTypes::ETypes mType = NTypes::TYPE_UNKNOWN;
};

template <>
K7ECORE_EXPORT QChar CVariant::value<QChar>(NTypes::ETypes target, bool *ok) const;
template <>
K7ECORE_EXPORT CString32 CVariant::value<CString32>(NTypes::ETypes target, bool *ok) const;
template <>
K7ECORE_EXPORT CString64 CVariant::value<CString64>(NTypes::ETypes target, bool *ok) const;
template <>
K7ECORE_EXPORT CString128 CVariant::value<CString128>(NTypes::ETypes target, bool *ok) const;

inline void swap(CVariant &left, CVariant &right) noexcept
{
    left.swap(right);
}

/*!
    \relates CVariant
    Writes \a variant to \a out in the stream layout of the class.
*/
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CVariant &variant);
/*!
    \relates CVariant
    Reads content and tag from \a in into \a variant as they stand: it is not checked that they
    agree, and any tag is kept. A stream that runs dry leaves tag 0, an empty text, list, map or the
    like, and what is there of a plain record; the stream's status tells.

    A hostile stream ends promptly, in every version and byte order: in time linear in the bytes
    that are read (but for the sorting of keys), and in at most 4 MiB and 64 times those bytes of
    memory. Some contents are not taken. They are invalid, with QDataStream::ReadCorruptData:
    - QRegExp, QEasingCurve, QCborValue, QCborArray and QCborMap; a QUrl whose host, with user and
      port, has more than 255 bytes, of which some are "%", "xn--" or not ASCII; a QVariantHash
      whose entries collide with more than 16 others on the average; more than 2^31 - 1 bits; a
      QDateTime of an unknown time spec or zone. Tag and next value are read from the right place
      behind them.
    - Contents of Qt Gui and Qt Widgets; types that are unknown, named in more than 1024 characters
      or without stream functions; lists, maps, hashes and variants nested deeper than 100 levels.
      The tag is read from where they were left.
    - All for which there is no memory; the tag is 0.

    A list, map or hash that is cut, or holds what is not taken, is valid and empty; a QVariant in a
    QVariant is valid and holds an invalid one. Bits with more set behind the last are none, with
    QDataStream::ReadCorruptData. A text of an odd number of bytes is null, with that status, and the
    tag is read from where it begins. JSON that is none is empty, with that status; it nests as deep
    as Qt takes it, 1024 levels. A program's own types are read by its own stream functions, in the
    time and memory that these take; what they throw does not leave this operator either.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CVariant &variant);

//! \relates CVariant Writes tag and text in the form CVariant(U8 "5").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CVariant &variant);

#endif // CVARIANT_H
