#ifndef CMOTORBASENAME_H
#define CMOTORBASENAME_H

#include "k7eCoreExport.h"

#include <QRegExp>
#include <QString>

class QDataStream;
class QDebug;

/*!
    The base name of a motor parameter file, such as MFR_M-100_1: manufacturer, motor name and
    number, with "_" between them.

    A part consists of the letters a-z and A-Z, digits, "-", "&" and "+". Each name is in one of two
    modes: in numeric-number mode the number consists of digits only.

    Stream layout: manufacturer, name and number as QString, as they are stored. The mode does not
    travel.
*/
class K7ECORE_EXPORT CMotorBaseName
{
public:
    //! The parts of a name.
    struct SMOFileName
    {
        QString manufacturer;
        QString name;
        QString number;
    };

    //! Makes an empty name, not in numeric-number mode.
    CMotorBaseName();
    //! Makes an empty name in the given mode.
    explicit CMotorBaseName(bool numericNumber);
    /*!
        Makes a name of these parts, which are not checked. In numeric-number mode a warning is
        logged if \a number does not pass checkNumber(); it is kept all the same.
    */
    CMotorBaseName(const QString &manufacturer, const QString &name, const QString &number,
                   bool numericNumber);
    //! Makes what setFileBaseName() makes of \a fileBaseName in the given mode.
    CMotorBaseName(const QString &fileBaseName, bool numericNumber);
    //! The same with a text in UTF-8, or null, not in numeric-number mode. Without this constructor
    //! a literal would choose the one that takes a mode.
    explicit CMotorBaseName(const char *fileBaseName);
    //! \name No other pointer is taken for a mode
    //! @{
    template <class T>
    explicit CMotorBaseName(const T *) = delete;
    template <class R, class... A>
    explicit CMotorBaseName(R (*)(A...)) = delete;
    template <class T, class C>
    explicit CMotorBaseName(T C::*) = delete;
    template <class T>
    CMotorBaseName(const QString &, T *) = delete;
    template <class T, class C>
    CMotorBaseName(const QString &, T C::*) = delete;
    template <class T>
    CMotorBaseName(const QString &, const QString &, const QString &, T *) = delete;
    template <class T, class C>
    CMotorBaseName(const QString &, const QString &, const QString &, T C::*) = delete;
    //! @}
    //! Copies parts and mode.
    CMotorBaseName(const CMotorBaseName &other);
    //! Moves parts and mode.
    CMotorBaseName(CMotorBaseName &&other) noexcept;
    virtual ~CMotorBaseName();

    //! Copies the parts; the mode stays.
    CMotorBaseName &operator=(const CMotorBaseName &other);
    //! Moves the parts; the mode stays.
    CMotorBaseName &operator=(CMotorBaseName &&other) noexcept;
    //! Calls setFileBaseName().
    CMotorBaseName &operator=(const QString &fileBaseName);
    //! Exchanges parts and modes.
    void swap(CMotorBaseName &other) noexcept;

    Q_REQUIRED_RESULT QString manufacturer() const { return mFileName.manufacturer; }
    Q_REQUIRED_RESULT QString name() const { return mFileName.name; }
    //! Returns the number, "0" if it is empty.
    Q_REQUIRED_RESULT QString number() const;
    //! Returns the number as an integer; -1 if it is empty, no decimal number or out of range.
    Q_REQUIRED_RESULT int numberAsI32() const;
    /*!
        Stores \a manufacturer and returns true if it consists of the characters of a part, one at
        least, with or without TAB and CR behind them, which are stored too. For any other text
        returns false and changes nothing.
    */
    bool setManufacturer(const QString &manufacturer);
    //! Stores \a name in the same way.
    bool setName(const QString &name);
    /*!
        Stores \a number in the same way; in numeric-number mode if it is one digit or nothing, with
        or without TAB and CR.

        Contract: the mode refuses two digits here, although checkNumber(), isValid() and
        fullRegExp() take them. Callers rely on it.
    */
    bool setNumber(const QString &number);
    //! Returns whether \a number consists of the digits 0 to 9, one at least.
    Q_REQUIRED_RESULT bool checkNumber(const QString &number) const;

    //! Returns "UNKNOWN_UNKNOWN_1".
    Q_REQUIRED_RESULT static QString defaultMotorBaseName();
    //! Returns the three parts joined with "_", an empty number as 0; a null string if the name is
    //! empty.
    Q_REQUIRED_RESULT QString fileBaseName() const;
    //! Returns fileBaseName().
    operator QString() const { return fileBaseName(); }
    //! Returns the expression for whole names of the given mode, case-insensitive and for
    //! QRegExp::exactMatch().
    Q_REQUIRED_RESULT static QRegExp fullRegExp(bool numericNumber);
    //! Returns whether \a fileName, without directory and all its suffixes, matches fullRegExp().
    Q_REQUIRED_RESULT static bool isValid(const QString &fileName, bool numericNumber);
    //! Returns whether fileBaseName() matches fullRegExp() of the own mode.
    Q_REQUIRED_RESULT bool isValid() const;

    /*!
        Clears the name and sets the parts of \a fileBaseName, which may have a directory in front.
        Returns false if a part is refused by its setter; the parts before it are set.

        Contract: a text that does not match fullRegExp(), such as one with a suffix, leaves the
        name empty and gives true. Callers rely on it.
    */
    bool setFileBaseName(const QString &fileBaseName);
    //! Makes all parts null; the mode stays.
    void clear();
    //! Returns whether all parts are empty.
    Q_REQUIRED_RESULT bool isEmpty() const;
    //! Returns isEmpty().
    Q_REQUIRED_RESULT bool isNull() const { return isEmpty(); }

    //! Returns whether the parts are equal, whatever the modes are.
    bool operator==(const CMotorBaseName &other) const;
    bool operator!=(const CMotorBaseName &other) const { return !(*this == other); }

private:
    friend K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CMotorBaseName &name);
    friend K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CMotorBaseName &name);

    SMOFileName mFileName;
    bool mNumericNumber = false;
};

inline void swap(CMotorBaseName &left, CMotorBaseName &right) noexcept
{
    left.swap(right);
}

//! \relates CMotorBaseName Writes \a name to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CMotorBaseName &name);
//! \relates CMotorBaseName Reads the three parts without checks; what a short stream lacks is
//! empty.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CMotorBaseName &name);

//! \relates CMotorBaseName Writes the form CMotorBaseName("MFR_M-100_1").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CMotorBaseName &name);

#endif // CMOTORBASENAME_H
