#ifndef CSTRING128_H
#define CSTRING128_H

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
    The text of a device object of type NTypes::TYPE_STRING128: an array of 128 UTF-16 code units.

    The text runs up to the first zero unit, or over all 128 units if none is zero. The units behind
    the terminator are part of the value: they are copied, compared, streamed and given out with it.
    The array is implicitly shared; values may be used in different threads, each in one at a time.

    Stream layout: 128 qint16, one for each unit in index order, in the byte order of the stream:
    256 bytes without length or tag.

    Registered with Qt's meta-type system as "CString128".
*/
class K7ECORE_EXPORT CString128
{
public:
    //! Makes an array of zeros.
    CString128() noexcept;
    //! Shares the array of \a other.
    CString128(const CString128 &other);
    //! Takes the array of \a other and leaves zeros there.
    CString128(CString128 &&other) noexcept;
    //! Makes an array of zeros, then assigns \a text. Implicit: a QString is passed for a string.
    CString128(const QString &text);
    //! Copies all 128 \a units.
    CString128(const unsigned short (&units)[128]);
    /*!
        Copies the first 256 \a bytes, or as many as there are, as the memory of the units in host
        byte order; the rest is zero.
    */
    CString128(const QByteArray &bytes);
    virtual ~CString128();

    CString128 &operator=(const CString128 &other);
    CString128 &operator=(CString128 &&other) noexcept;
    /*!
        Writes \a text and one zero unit behind it. Text of 128 units and more is cut at 128 units,
        without a zero. The units behind the zero keep what they were.
    */
    CString128 &operator=(const QString &text);
    //! Copies all 128 \a units.
    CString128 &operator=(const unsigned short (&units)[128]);

    //! Exchanges the values.
    void swap(CString128 &other) noexcept { mData.swap(other.mData); }

    //! Returns whether all 128 units are equal, those behind the terminator included.
    bool operator==(const CString128 &other) const;
    bool operator!=(const CString128 &other) const;

    //! Returns whether the text is not empty.
    Q_REQUIRED_RESULT bool isValid() const;
    //! Copies all 128 units to \a out and returns true; returns false if \a out is null.
    bool string128(unsigned short *out) const;
    //! Returns the 256 bytes of the array in host byte order.
    Q_REQUIRED_RESULT QByteArray byteArray() const;
    //! Returns the text, its units verbatim.
    Q_REQUIRED_RESULT QString str() const;

private:
    friend struct FixedString;
    QSharedDataPointer<CStringData<unsigned short[128]>> mData; // null: all zeros
};

inline void swap(CString128 &left, CString128 &right) noexcept
{
    left.swap(right);
}

/*!
    \relates CString128
    Writes \a string to \a out in the stream layout of the class.
*/
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CString128 &string);
/*!
    \relates CString128
    Reads 128 units from \a in into \a string. No error is detected here: on a stream that runs dry
    the remaining units are zero, and the stream's status tells.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CString128 &string);

//! \relates CString128 Writes the text in the form CString128("text").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CString128 &string);

/*!
    \relates CString128
    The meta-type "CString128", with the stream functions above unless a program registers its own.
    It is made in the library, whoever asks for it first: what Qt keeps of it outlives a plug-in.
*/
template <>
struct QMetaTypeId<CString128>
{
    enum { Defined = 1 };
    K7ECORE_EXPORT static int qt_metatype_id();
};

#endif // CSTRING128_H
