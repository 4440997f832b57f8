#ifndef CSTRING64_H
#define CSTRING64_H

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
    The text of a device object of type NTypes::TYPE_STRING64: an array of 64 UTF-16 code units.

    The text runs up to the first zero unit, or over all 64 units if none is zero. The units behind
    the terminator are part of the value: they are copied, compared, streamed and given out with it.
    The array is implicitly shared; values may be used in different threads, each in one at a time.

    Stream layout: 64 qint16, one for each unit in index order, in the byte order of the stream:
    128 bytes without length or tag.

    Registered with Qt's meta-type system as "CString64".
*/
class K7ECORE_EXPORT CString64
{
public:
    //! Makes an array of zeros.
    CString64() noexcept;
    //! Shares the array of \a other.
    CString64(const CString64 &other);
    //! Takes the array of \a other and leaves zeros there.
    CString64(CString64 &&other) noexcept;
    //! Makes an array of zeros, then assigns \a text. Implicit: a QString is passed for a string.
    CString64(const QString &text);
    //! Copies all 64 \a units.
    CString64(const unsigned short (&units)[64]);
    /*!
        Copies the first 128 \a bytes, or as many as there are, as the memory of the units in host
        byte order; the rest is zero.
    */
    CString64(const QByteArray &bytes);
    virtual ~CString64();

    CString64 &operator=(const CString64 &other);
    CString64 &operator=(CString64 &&other) noexcept;
    /*!
        Writes \a text and one zero unit behind it. Text of 64 units and more is cut at 64 units,
        without a zero. The units behind the zero keep what they were.
    */
    CString64 &operator=(const QString &text);
    //! Copies all 64 \a units.
    CString64 &operator=(const unsigned short (&units)[64]);

    //! Exchanges the values.
    void swap(CString64 &other) noexcept { mData.swap(other.mData); }

    //! Returns whether all 64 units are equal, those behind the terminator included.
    bool operator==(const CString64 &other) const;
    bool operator!=(const CString64 &other) const;

    //! Returns whether the text is not empty.
    Q_REQUIRED_RESULT bool isValid() const;
    //! Copies all 64 units to \a out and returns true; returns false if \a out is null.
    bool string64(unsigned short *out) const;
    //! Returns the 128 bytes of the array in host byte order.
    Q_REQUIRED_RESULT QByteArray byteArray() const;
    //! Returns the text, its units verbatim.
    Q_REQUIRED_RESULT QString str() const;

private:
    friend struct FixedString;
    QSharedDataPointer<CStringData<unsigned short[64]>> mData; // null: all zeros
};

inline void swap(CString64 &left, CString64 &right) noexcept
{
    left.swap(right);
}

/*!
    \relates CString64
    Writes \a string to \a out in the stream layout of the class.
*/
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CString64 &string);
/*!
    \relates CString64
    Reads 64 units from \a in into \a string. No error is detected here: on a stream that runs dry
    the remaining units are zero, and the stream's status tells.
*/
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CString64 &string);

//! \relates CString64 Writes the text in the form CString64("text").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CString64 &string);

/*!
    \relates CString64
    The meta-type "CString64", with the stream functions above unless a program registers its own.
    It is made in the library, whoever asks for it first: what Qt keeps of it outlives a plug-in.
*/
template <>
struct QMetaTypeId<CString64>
{
    enum { Defined = 1 };
    K7ECORE_EXPORT static int qt_metatype_id();
};

#endif // CSTRING64_H
