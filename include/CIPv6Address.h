#ifndef CIPV6ADDRESS_H
#define CIPV6ADDRESS_H

#include "k7eCoreExport.h"

#include <QString>
#include <QVariant>

class QByteArray;
class QDataStream;
class QDebug;

/*!
    An IPv6 address as 16 bytes in the order of a device, which is not that of QHostAddress: group i
    of the eight groups of the text is made of byte 2i, its low byte, and byte 2i + 1. The group
    1234 (hexadecimal) is stored as the bytes 0x34 and 0x12.

    A text can be given in several forms that convert to an address; pass a QString, not a literal.
    Of pointers only those to unsigned char are taken: any other would be true or false in a
    QVariant.

    Stream layout: the 16 bytes in order, each as qint8, without length or tag.
*/
class K7ECORE_EXPORT CIPv6Address
{
public:
    //! Makes an address of zeros.
    CIPv6Address();
    //! Makes an address of zeros and calls the setAddress() of the same argument. Implicit, like
    //! those below: what a device or a text holds is passed for an address.
    CIPv6Address(const QByteArray &bytes);
    //! \copydoc CIPv6Address(const QByteArray &)
    CIPv6Address(unsigned char *bytes);
    //! \copydoc CIPv6Address(const QByteArray &)
    CIPv6Address(const unsigned char *bytes);
    //! \copydoc CIPv6Address(const QByteArray &)
    CIPv6Address(const QVariant &value);
    //! \copydoc CIPv6Address(const QByteArray &)
    CIPv6Address(const QString &text);
    template <class T>
    CIPv6Address(T *) = delete;
    template <class T, class C>
    CIPv6Address(T C::*) = delete;
    CIPv6Address(const CIPv6Address &other);
    CIPv6Address(CIPv6Address &&other) noexcept;
    virtual ~CIPv6Address();

    CIPv6Address &operator=(const CIPv6Address &other);
    CIPv6Address &operator=(CIPv6Address &&other) noexcept;
    //! Calls setAddress(): what is not 16 bytes changes nothing.
    CIPv6Address &operator=(const QByteArray &bytes);
    //! Calls setAddress().
    CIPv6Address &operator=(const QVariant &value);
    //! Calls setAddress().
    CIPv6Address &operator=(const QString &text);
    //! Exchanges the values.
    void swap(CIPv6Address &other) noexcept;

    /*!
        Copies \a bytes if they are exactly 16, and changes nothing otherwise.

        Contract: returns false in both cases. Callers rely on it.
    */
    bool setAddress(const QByteArray &bytes);
    //! Copies 16 bytes from \a bytes, which must point to as many.
    void setAddress(unsigned char *bytes);
    //! \copydoc setAddress(unsigned char *)
    void setAddress(const unsigned char *bytes);
    template <class T>
    void setAddress(T *) = delete;
    template <class T, class C>
    void setAddress(T C::*) = delete;
    /*!
        Calls setAddress() with the byte array that \a value holds. A value of any other type, a
        text too, clears the address. Returns false in all cases.
    */
    bool setAddress(const QVariant &value);
    /*!
        Sets the address that \a text holds as eight groups of up to four hexadecimal digits with
        ":" between them; an empty group leaves its two bytes as they are. Returns whether the text
        matches Nk7eGlobal::IPV6_PATTERN; if not, clears the address and logs a warning.

        Contract: texts that match with fewer or more groups, such as "::1", give true and change
        nothing. Callers rely on it.
    */
    bool setAddress(const QString &text);
    //! Sets all bytes to 0.
    void clear();

    //! Returns byte \a index, 0..15; the range is not checked.
    unsigned char &operator[](int index) { return mAddress[index]; }
    //! Returns byte \a index, 0..15; the range is not checked.
    unsigned char operator[](int index) const { return mAddress[index]; }

    //! Returns the 16 bytes.
    Q_REQUIRED_RESULT QByteArray byteArray() const;
    //! Returns a value that holds byteArray().
    operator QVariant() const;
    //! Returns the eight groups in lower-case hexadecimal digits without leading zeros, with ":"
    //! between them; zeros are not left out: "fe80:0:0:0:0:0:0:1".
    Q_REQUIRED_RESULT QString str() const;
    //! Returns str().
    operator QString() const { return str(); }

    bool operator==(const CIPv6Address &other) const;
    bool operator!=(const CIPv6Address &other) const { return !(*this == other); }

private:
    unsigned char mAddress[16] = {};
};

inline void swap(CIPv6Address &left, CIPv6Address &right) noexcept
{
    left.swap(right);
}

//! \relates CIPv6Address Writes \a address to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CIPv6Address &address);
//! \relates CIPv6Address Reads the 16 bytes; what a short stream lacks is 0.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CIPv6Address &address);

//! \relates CIPv6Address Writes the form CIPv6Address("fe80:0:0:0:0:0:0:1").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CIPv6Address &address);

#endif // CIPV6ADDRESS_H
