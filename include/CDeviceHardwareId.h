#ifndef CDEVICEHARDWAREID_H
#define CDEVICEHARDWAREID_H

#include "k7eCoreExport.h"

#include <QRegExp>
#include <QString>

class QDataStream;
class QDebug;

/*!
    The hardware identifier of a drive controller or of one of its sub-devices: a prefix of one
    character, the numbers of platform, version and revision, and a name, such as
    P001_002_003_Drive.

    The minimum form of an identifier has the platform, the short form the version too, the full
    form all three numbers; each may begin with a prefix and end with "_" and a name. A number of
    0xFFFF is not set. Characters are UTF-16 units, and a digit is any Unicode decimal digit; but
    only ASCII digits have a value, others read as the number 0.

    Compare with a text through hardwareId(): "id == text" converts either side and is ambiguous.

    Stream layout: prefix as QString, platform, version and revision as qint16 (their bit patterns),
    name as QString.
*/
class K7ECORE_EXPORT CDeviceHardwareId
{
public:
    //! The parts of an identifier.
    struct SHardwareId
    {
        QString prefix;                   //!< nothing, or one character that is no digit
        unsigned short platform = 0xFFFF; //!< 0..999, 0xFFFF: not set
        unsigned short version = 0xFFFF;  //!< 0..999, 0xFFFF: not set
        unsigned short revision = 0xFFFF; //!< 0..999, 0xFFFF: not set
        QString name;                     //!< may hold "_"
    };

    //! Makes an empty identifier: no number is set, prefix and name are null.
    CDeviceHardwareId();
    //! Makes what setHardwareId() makes of \a text. Implicit: a QString is passed for an
    //! identifier.
    CDeviceHardwareId(const QString &text);
    CDeviceHardwareId(const CDeviceHardwareId &other);
    CDeviceHardwareId(CDeviceHardwareId &&other) noexcept;
    virtual ~CDeviceHardwareId();

    CDeviceHardwareId &operator=(const CDeviceHardwareId &other);
    CDeviceHardwareId &operator=(CDeviceHardwareId &&other) noexcept;
    //! Calls setHardwareId().
    CDeviceHardwareId &operator=(const QString &text);
    //! Exchanges the values.
    void swap(CDeviceHardwareId &other) noexcept;

    //! Returns the expression for texts in the minimum form; longer forms match it too. Like the
    //! two below it is case-sensitive and for QRegExp::exactMatch().
    Q_REQUIRED_RESULT static QRegExp minimumRegExp();
    //! Returns the expression for texts in the short form; the full form matches it too.
    Q_REQUIRED_RESULT static QRegExp shortRegExp();
    //! Returns the expression for texts in the full form.
    Q_REQUIRED_RESULT static QRegExp fullRegExp();
    //! Returns whether \a text matches minimumRegExp().
    Q_REQUIRED_RESULT static bool isMinimumHardwareId(const QString &text);
    //! Returns whether \a text matches shortRegExp().
    Q_REQUIRED_RESULT static bool isShortHardwareId(const QString &text);
    //! Returns whether \a text matches fullRegExp().
    Q_REQUIRED_RESULT static bool isFullHardwareId(const QString &text);
    //! Returns whether \a text is one to three digits, as the numbers' setters take it.
    Q_REQUIRED_RESULT bool checkIVR(const QString &text) const;

    Q_REQUIRED_RESULT QString prefix() const { return mHardwareId.prefix; }
    //! Returns the number, 0xFFFF if it is not set.
    Q_REQUIRED_RESULT unsigned short platform() const { return mHardwareId.platform; }
    //! \copydoc platform()
    Q_REQUIRED_RESULT unsigned short version() const { return mHardwareId.version; }
    //! \copydoc platform()
    Q_REQUIRED_RESULT unsigned short revision() const { return mHardwareId.revision; }
    Q_REQUIRED_RESULT QString name() const { return mHardwareId.name; }
    //! Returns the number with three digits at least ("007"), or a null string if it is not set.
    Q_REQUIRED_RESULT QString platformStr() const;
    //! \copydoc platformStr()
    Q_REQUIRED_RESULT QString versionStr() const;
    //! \copydoc platformStr()
    Q_REQUIRED_RESULT QString revisionStr() const;

    //! Sets the prefix, which is not checked.
    void setPrefix(const QString &prefix);
    //! Sets the number, which is not checked.
    void setPlatform(unsigned short platform);
    //! \copydoc setPlatform(unsigned short)
    void setVersion(unsigned short version);
    //! \copydoc setPlatform(unsigned short)
    void setRevision(unsigned short revision);
    //! Sets the number to the one to three digits of \a text and returns true; returns false and
    //! changes nothing for any other text.
    bool setPlatform(const QString &text);
    //! \copydoc setPlatform(const QString &)
    bool setVersion(const QString &text);
    //! \copydoc setPlatform(const QString &)
    bool setRevision(const QString &text);
    //! Sets the name, which is not checked.
    void setName(const QString &name);

    /*!
        Returns whether the prefix is empty or one character that is no digit, and the platform is
        below 1000.
    */
    Q_REQUIRED_RESULT bool isMinimumHardwareId() const;
    //! Returns whether this is so and the version is below 1000 too.
    Q_REQUIRED_RESULT bool isShortHardwareId() const;
    //! Returns whether this is so and the revision is below 1000 too.
    Q_REQUIRED_RESULT bool isFullHardwareId() const;
    //! Returns isMinimumHardwareId(), which the longer ones imply.
    Q_REQUIRED_RESULT bool isValid() const;

    //! Returns the minimum form, "K005" or "K005_Name"; a null string if isMinimumHardwareId() is
    //! not met.
    Q_REQUIRED_RESULT QString minimumHardwareId() const;
    //! Returns the short form, "K005_001"; a null string if isShortHardwareId() is not met.
    Q_REQUIRED_RESULT QString shortHardwareId() const;
    //! Returns the full form, "K005_001_002"; a null string if isFullHardwareId() is not met.
    Q_REQUIRED_RESULT QString fullHardwareId() const;
    //! Returns the longest form whose test is met, or the name alone if none is.
    Q_REQUIRED_RESULT QString hardwareId() const;
    //! Returns hardwareId().
    operator QString() const { return hardwareId(); }

    /*!
        Clears the identifier and sets what \a text holds: a first character that is neither a
        digit nor "_" is the prefix; of the rest the first three pieces between "_" are the numbers,
        and what comes behind them, or from a version or revision on that is not one to three
        digits, is the name.

        Returns false, with only the prefix set, if the platform is not one to three digits;
        otherwise true, for the empty text too. 7_12_Servo gives 7, 12, no revision and the name
        Servo; P001_ gives an empty name, P001__ the name "_".
    */
    bool setHardwareId(const QString &text);
    //! Makes the identifier empty, as it is by default.
    void clear();
    //! Returns whether the identifier equals a default one.
    Q_REQUIRED_RESULT bool isEmpty() const;
    //! Returns isEmpty().
    Q_REQUIRED_RESULT bool isNull() const { return isEmpty(); }

    //! Returns whether all parts are equal; a null and an empty text are.
    bool operator==(const CDeviceHardwareId &other) const;
    bool operator!=(const CDeviceHardwareId &other) const { return !(*this == other); }

private:
    friend K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDeviceHardwareId &id);
    friend K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceHardwareId &id);

    SHardwareId mHardwareId;
};

inline void swap(CDeviceHardwareId &left, CDeviceHardwareId &right) noexcept
{
    left.swap(right);
}

//! \relates CDeviceHardwareId Writes \a id to \a out in the stream layout of the class.
K7ECORE_EXPORT QDataStream &operator<<(QDataStream &out, const CDeviceHardwareId &id);
//! \relates CDeviceHardwareId Reads all parts without checks; what a short stream lacks is 0 or
//! empty.
K7ECORE_EXPORT QDataStream &operator>>(QDataStream &in, CDeviceHardwareId &id);

//! \relates CDeviceHardwareId Writes the form CDeviceHardwareId("P001_002").
K7ECORE_EXPORT QDebug operator<<(QDebug debug, const CDeviceHardwareId &id);

#endif // CDEVICEHARDWAREID_H
