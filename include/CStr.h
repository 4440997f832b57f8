#ifndef CSTR_H
#define CSTR_H

#include "NTypes.h"
#include "k7eCoreExport.h"

#include <QDate>
#include <QString>

class QByteArray;
class QChar;
class QDataStream;
class QLocale;

/*!
    Text utilities: range-tested numbers, fixed point, revisions, serial numbers, memory sizes,
    shortening, UTF-16 buffers, and the texts that name types, devices and programs. Static members
    only.

    No member keeps a state: all may be called from any thread. Unless a member says otherwise,
    neither the locale nor the environment plays a part. The titles take the company's names from
    CCompanyStrings, which is to be asked once before other threads run.
*/
class K7ECORE_EXPORT CStr
{
public:
    CStr() = delete;

    /*!
        \name Range-tested number reading
        Each type has three forms. The first writes \a value only on success and returns success;
        the second returns the number, or \a defaultValue on failure; the third returns the number,
        or 0 on failure, and writes success to \a ok unless that is null.

        A number outside the range of the type is a failure, and so is a text that is not wholly a
        number; blanks around it are allowed. "-0" is no unsigned number. \a base is 2 to 36, or 0
        for the prefixes "0x" and "0".

        The second form of the signed integers has no base: it always reads base 10.
    */
    //!@{
    static bool strToU8(const QString &text, unsigned char &value, int base = 10);
    static unsigned char strToU8(unsigned char defaultValue, const QString &text, int base = 10);
    static unsigned char strToU8(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToI8(const QString &text, signed char &value, int base = 10);
    static signed char strToI8(signed char defaultValue, const QString &text);
    static signed char strToI8(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToU16(const QString &text, unsigned short &value, int base = 10);
    static unsigned short strToU16(unsigned short defaultValue, const QString &text, int base = 10);
    static unsigned short strToU16(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToI16(const QString &text, short &value, int base = 10);
    static short strToI16(short defaultValue, const QString &text);
    static short strToI16(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToU32(const QString &text, unsigned int &value, int base = 10);
    static unsigned int strToU32(unsigned int defaultValue, const QString &text, int base = 10);
    static unsigned int strToU32(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToI32(const QString &text, int &value, int base = 10);
    static int strToI32(int defaultValue, const QString &text);
    static int strToI32(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToF32(const QString &text, float &value);
    static float strToF32(float defaultValue, const QString &text);
    static float strToF32(const QString &text, bool *ok = nullptr);

    static bool strToU64(const QString &text, unsigned long long &value, int base = 10);
    static unsigned long long strToU64(unsigned long long defaultValue, const QString &text,
                                       int base = 10);
    static unsigned long long strToU64(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToI64(const QString &text, long long &value, int base = 10);
    static long long strToI64(long long defaultValue, const QString &text);
    static long long strToI64(const QString &text, bool *ok = nullptr, int base = 10);

    static bool strToF64(const QString &text, double &value);
    static double strToF64(double defaultValue, const QString &text);
    static double strToF64(const QString &text, bool *ok = nullptr);
    //!@}

    /*!
        Returns \a value as integer part, \a separator and the low \a fracBits bits, both as plain
        decimal integers: the bits are a count, not a decimal fraction. 0x305 with 8 bits and '.'
        gives "3.5". With 32 bits and more nothing is above the separator: "0.<value>".
    */
    Q_REQUIRED_RESULT static QString fixPointToStr(unsigned int value, unsigned int fracBits,
                                                   const QChar &separator);
    /*!
        Reads what fixPointToStr() wrote: "3.5" with 8 bits and '.' gives 0x305. Bits beyond 32, or
        beyond \a fracBits in the second piece, are dropped.

        Errors: 0 and false in \a ok (null allowed) unless \a text has exactly two pieces and the
        first is a number of 32 bits. If only the second is none, the first is still returned, with
        \a ok false.
    */
    static unsigned int strToFixPoint(const QString &text, bool *ok, unsigned int fracBits,
                                      const QChar &separator);

    /*!
        Returns the revision as "major.minor": the high 16 bits, and the low 16 bits in at least
        three digits. 0x00010005 gives "1.005". The zeros are for display only: stringToRevision()
        reads "1.005" as "1.5".
    */
    Q_REQUIRED_RESULT static QString revisionToString(unsigned int revision);
    //! The same for the 16-bit form: bytes, the minor in at least two digits. 0x0105 gives "1.05".
    Q_REQUIRED_RESULT static QString revisionToString(unsigned short revision);
    /*!
        Reads "major.minor", or "major" alone, into \a revision and returns success. Each number is
        0..65535, base 10. On failure \a revision is not written.
    */
    static bool stringToRevision(QString text, unsigned int &revision);
    //! The same for the 16-bit form, each number 0..255.
    static bool stringToRevision(QString text, unsigned short &revision);
    /*!
        Reads the one or two numbers that a "." separates in \a text and returns success; a missing
        second number is 0. With more than two pieces both numbers stay as they are; otherwise a
        piece that is no 32-bit number is 0, and the second is 0 too if the first is none.
    */
    static bool _splitStringAtDot(QString text, int &major, int &minor);

    //! Returns \a serial in decimal, grouped 1-3-3-3 from the left: "1 234 567 890", "1 234 567 8".
    Q_REQUIRED_RESULT static QString serialToString(unsigned int serial);

    /*!
        Returns a size of \a bytes in the largest of KiB, MiB, GiB, TiB and PiB of which there are
        at least ten, else in bytes: "10239 Byte", "10.0 KiB", "1500.0 KiB". Bytes (all negative
        numbers among them) and PiB are integers.
    */
    Q_REQUIRED_RESULT static QString memSizeToString(long long bytes);

    /*!
        Returns \a text in at most \a maxLength UTF-16 units, and tells in \a cut whether it was
        shortened. A shortened text ends with " ..." (even if \a maxLength is less than that takes);
        with \a atWord it ends before the last blank that stands left of the cut, if there is one
        behind the first character.
    */
    static QString cutString(const QString &text, unsigned int maxLength, bool &cut, bool atWord);

    /*!
        Returns \a value in the default QLocale, in fixed notation with \a decimals places, without
        group separators.
    */
    Q_REQUIRED_RESULT static QString doubleToString(double value, int decimals);

    /*!
        Returns where in \a text the "&" of a mnemonic is found, or -1: a single "&" with a word
        character behind it. For an "&" that is not the first character this is the index of the
        character before it: "&File" gives 0, "Fi&le" gives 1.
    */
    Q_REQUIRED_RESULT static int indexOfAmpersand(const QString &text);

    /*!
        Fills \a buffer, which has \a bufferBytes bytes, with the units of \a text and zeros behind
        them. The last two bytes are always zero; a longer text is cut, and if \a bufferBytes is odd
        it may be cut within a unit. With \a bufferBytes below 1 nothing is written, and \a buffer
        may be null.
    */
    static void toUtf16(const QString &text, unsigned short *buffer, int bufferBytes);
    /*!
        Returns the text in the \a bufferBytes / 2 units of \a buffer, up to the first zero unit.
        Units are taken verbatim, a byte order mark too. With \a bufferBytes below 2 the text is
        empty, and \a buffer may be null.
    */
    Q_REQUIRED_RESULT static QString fromUtf16(const unsigned short *buffer, int bufferBytes);
    //! \overload \a data holds units in host byte order; an odd last byte is ignored.
    Q_REQUIRED_RESULT static QString fromUtf16(const QByteArray &data);

    //! Returns the text name of \a type ("U8"), or a null string for a code outside 0..20.
    Q_REQUIRED_RESULT static QString nTypeToStr(NTypes::ETypes type);

    //! Returns "name [s/n: serial]".
    Q_REQUIRED_RESULT static QString createDeviceSelectionValue(const QString &name,
                                                                unsigned int serial);
    //! Returns "deviceName - subDeviceName [s/n: serial]".
    Q_REQUIRED_RESULT static QString createSubDeviceSelectionValue(const QString &deviceName,
                                                                   const QString &subDeviceName,
                                                                   unsigned int serial);

    //! Returns "[ V1.60 ]" for the \a version "1.60", and " - " and \a extra behind it if there is
    //! one.
    Q_REQUIRED_RESULT static QString getVersionString(const QString &version, const QString &extra);
    //! Returns "[ V1.60 - 11/5/26 ]" with createDate(), and " - " and \a extra behind it if there
    //! is one.
    Q_REQUIRED_RESULT static QString getVersionString(const QString &version,
                                                      const QString &buildDate,
                                                      const QLocale &locale, const QString &extra);
    //! Returns the date of createQDateFrom__DATE__() in the short format of \a locale; empty if it
    //! is invalid.
    Q_REQUIRED_RESULT static QString createDate(const QLocale &locale, const QString &buildDate);
    /*!
        Returns the date in a text of the form of the compiler's __DATE__, such as "Nov  5 2026":
        the English short name of the month, day and year with blanks between them. An invalid date
        for any other text.
    */
    Q_REQUIRED_RESULT static QDate createQDateFrom__DATE__(const QString &buildDate);
    //! Returns "application - company - [ V1.60 - 11/5/26 ]" with the long name of the company and
    //! getVersionString().
    Q_REQUIRED_RESULT static QString createApplicationTitle(const QLocale &locale,
                                                            const QString &buildDate,
                                                            const QString &applicationName,
                                                            const QString &version,
                                                            const QString &extra);
    /*!
        Returns "company application - V1.60 - [ Build 42 - 2026-11-05 ]" with the short name of the
        company; without the number if it is 0, without the date if \a buildDate is empty, and
        without the brackets if both is so. \a locale plays no part.

        Contract: a \a buildDate that is no date leaves its place empty: "[ Build 42 -  ]".
    */
    Q_REQUIRED_RESULT static QString createShortApplicationTitle(const QLocale &locale,
                                                                 const QString &applicationName,
                                                                 const QString &version,
                                                                 const QString &buildDate,
                                                                 unsigned int buildNumber);
    /*!
        Returns the path of a log file in the directory CPath::logPath(), which is not made: \a
        baseName, or the name of the running program if it is empty, without directory and last
        suffix; then "_PID" and the id of the process if \a withPid is set, and ".log".
    */
    Q_REQUIRED_RESULT static QString createLogFileName(QString baseName, bool withPid);

    //! Returns whether the status of \a stream is QDataStream::Ok; if not, sets \a error to a
    //! translated text that says what was wrong when the value named \a valueName was read.
    static bool inStreamStatus(const QDataStream &stream, const QString &valueName, QString &error);
};

#endif // CSTR_H
