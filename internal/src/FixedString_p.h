#ifndef FIXEDSTRING_P_H
#define FIXEDSTRING_P_H

#include "Utf16_p.h"

#include <QByteArray>
#include <QDataStream>
#include <QDebug>
#include <QSharedData>
#include <QSharedDataPointer>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

template <class Array>
class CStringData : public QSharedData
{
public:
    Array mUnits = {};
};

/*!
    \internal
    The one design of CString32, CString64 and CString128; the extent of the array tells the size.

    A null pointer stands for an array of zeros, so that default construction and moves allocate
    nothing. Units are read through units() and written through detached() alone.
*/
struct FixedString
{
    template <std::size_t N>
    using Array = unsigned short[N];
    template <std::size_t N>
    using Data = QSharedDataPointer<CStringData<Array<N>>>;

    template <std::size_t N>
    static const Array<N> &units(const Data<N> &data)
    {
        static constexpr Array<N> kZeros = {};
        return data ? data->mUnits : kZeros;
    }

    //! Returns the array for writing: no other value shares it.
    template <std::size_t N>
    static Array<N> &detached(Data<N> &data)
    {
        if (!data)
            data = new CStringData<Array<N>>;
        return data->mUnits;
    }

    template <std::size_t N>
    static void assign(Data<N> &data, const Array<N> &from)
    {
        std::copy(std::begin(from), std::end(from), detached(data));
    }

    /*!
        Contract: a shorter text keeps the tail of the longer one before it behind its terminator,
        so that AB over ABCDEF is A B 0 D E F and differs from a fresh AB.
    */
    template <std::size_t N>
    static void assign(Data<N> &data, const QString &text)
    {
        Array<N> &to = detached(data);
        const auto length = std::min(static_cast<std::size_t>(text.size()), N);
        // Not utf16(), which copies a text over foreign memory to end it with a zero.
        std::memcpy(to, text.constData(), length * sizeof(QChar));
        if (length < N)
            to[length] = 0;
    }

    template <std::size_t N>
    static void assign(Data<N> &data, const QByteArray &bytes)
    {
        const auto size = std::min(static_cast<std::size_t>(bytes.size()), sizeof(Array<N>));
        std::memcpy(detached(data), bytes.constData(), size);
    }

    template <std::size_t N>
    static bool equal(const Data<N> &left, const Data<N> &right)
    {
        return left == right || std::memcmp(units(left), units(right), sizeof(Array<N>)) == 0;
    }

    template <std::size_t N>
    static bool copy(const Data<N> &data, unsigned short *out)
    {
        if (!out)
            return false;
        const Array<N> &from = units(data);
        std::copy(std::begin(from), std::end(from), out);
        return true;
    }

    template <std::size_t N>
    static QByteArray byteArray(const Data<N> &data)
    {
        return QByteArray(reinterpret_cast<const char *>(units(data)), sizeof(Array<N>));
    }

    template <std::size_t N>
    static QString text(const Data<N> &data)
    {
        return Utf16::text(units(data), static_cast<int>(N));
    }

    //! Compares the texts of two strings by unit: less than, equal to or greater than zero.
    template <class String>
    static int compareTexts(const String &left, const String &right)
    {
        const auto &leftUnits = units(left.mData);
        return Utf16::compareTexts(leftUnits, units(right.mData),
                                   static_cast<int>(std::size(leftUnits)));
    }

    template <class String>
    static QDataStream &write(QDataStream &out, const String &string)
    {
        for (const unsigned short unit : units(string.mData))
            out << static_cast<qint16>(unit);
        return out;
    }

    // Contract: a stream that runs dry is read to the end all the same; QDataStream gives zeros.
    template <class String>
    static QDataStream &read(QDataStream &in, String &string)
    {
        for (unsigned short &unit : detached(string.mData)) {
            qint16 value = 0;
            in >> value;
            unit = static_cast<unsigned short>(value);
        }
        return in;
    }

    template <class String>
    static QDebug print(QDebug debug, const char *className, const String &string)
    {
        const QDebugStateSaver saver(debug);
        debug.nospace() << className << '(' << string.str() << ')';
        return debug;
    }
};

#endif // FIXEDSTRING_P_H
