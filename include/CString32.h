#ifndef CSTRING32_H
#define CSTRING32_H

#include "k7eCoreExport.h"

#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>

class QByteArray;
class QDataStream;
class QDebug;
template <class Array>
class CStringData;

/*!
    The text of a device object of type NTypes::TYPE_STRING32: an array of 32 UTF-16 code units.

    The text runs up to the first zero unit, or over all 32 units if none is zero. The units behind
    the terminator are part of the value: they are copied, compared, streamed and given out with it.
    The array is implicitly shared; values may be used in different threads, each in one at a time.

    Stream layout: 32 qint16, one for each unit in index order, in the byte order of the stream:
    64 bytes without length or tag.

    Registered with Qt's meta-type system as "CString32".
*/
class K7ECORE_EXPORT CString32
{
public:
    //! Makes an array of zeros.
    CString32() noexcept;
    //! Shares the array of \a other.
    CString32(const CString32 &other);
    //! Takes the array of \a other and leaves zeros there.
    CString32(CString32 &&other) noexcept;
    //! Makes an array of zeros, then assigns \a text. Implicit: a QString is passed for a string.
    CString32(const QString &text);
    //! Copies all 32 \a units.
    CString32(const unsigned short (&units)[32]);
    /*!
        Copies the first 64 \a bytes, or as many as there are, as the memory of the units in host
        byte order; the rest is zero.
    */
    CString32(const QByteArray &bytes);
    virtual ~CString32();

    CString32 &operator=(const CString32 &other);
    CString32 &operator=(CString32 &&other) noexcept;
    /*!
        Writes \a text and one zero unit behind it. Text of 32 units and more is cut at 32 units,
        without a zero. The units behind the zero keep what they were.
    */
    CString32 &operator=(const QString &text);
    //! Copies all 32 \a units.
    CString32 &operator=(const unsigned short (&units)[32]);

    //! Exchanges the values.
    void swap(CString32 &other) noexcept { mData.swap(other.mData); }

    //! Returns whether all 32 units are equal, those behind the terminator included.
    bool operator==(const CString32 &other) const;
    bool operator!=(const CString32 &other) const;

    //! Returns whether the text is not empty.
    Q_REQUIRED_RESULT bool isValid() const;
    //! Copies all 32 units to \a out and returns true; returns false if \a out is null.
    bool string32(unsigned short *out) const;
    //! Returns the 64 bytes of the array in host byte order.
    Q_REQUIRED_RESULT QByteArray byteArray() const;
    //! Returns the text, its units verbatim.
    Q_REQUIRED_RESULT QString str() const;

private:
    friend struct FixedString;
    QSharedDataPointer<CStringData<unsigned short[32]>> mData; // null: all zeros
};

inline void swap(CString32 &left, CString32 &right) noexcept
{
    left.swap(right);
}

/*!
    \relates CString32
    Writes \a string to \a out in the stream layout of the class.
*/
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CString32 &string);
/*!
    \relates CString32
    Reads 32 units from \a in into \a string. No error is detected here: on a stream that runs dry
    the remaining units are zero, and the stream's status tells.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CString32 &string);

//! \relates CString32 Writes the text in the form CString32("text").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CString32 &string);

/*!
    \relates CString32
    The meta-type "CString32", with the stream functions above unless a program registers its own.
    It is made in the library, whoever asks for it first: what Qt keeps of it outlives a plug-in.
*/
template <>
struct QMetaTypeId<CString32>
{
    enum { Defined = 1 };
    K7ECORE_EXPORT static int qt_metatype_id();
};

#endif // CSTRING32_H
