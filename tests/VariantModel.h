#ifndef VARIANTMODEL_H
#define VARIANTMODEL_H

#include "VariantSamples.h"

#include "MessageRecorder.h"

#include <QLocale>

#include <cmath>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <type_traits>

__extension__ typedef __int128 Int128; // -Wpedantic objects to the bare name

namespace VariantTest {

/*!
    What is required of a CVariant, as plain rules over its tag and its content. It knows nothing of
    how the library does it: a rule that names QVariant asks QVariant, all others are typed here.
*/
struct VariantModel
{
    int tag = 0;
    QVariant content;

    static bool isOneOf(int code, std::initializer_list<int> codes)
    {
        for (const int one : codes) {
            if (one == code)
                return true;
        }
        return false;
    }

    bool isNull() const { return content.isNull() || tag == 0; }
    bool isValid() const { return content.isValid() && tag != 0; }

    bool isFixedString() const { return isOneOf(tag, {12, 14, 17}); }
    bool isBytes() const { return isOneOf(tag, {13, 15, 18, 20}); }
    bool isText() const { return isFixedString() || isBytes() || tag == 19; }

    bool canConvertTo(int target) const
    {
        static constexpr int kQtTypes[] = {0,
                                           QMetaType::UChar,
                                           QMetaType::SChar,
                                           QMetaType::UShort,
                                           QMetaType::Short,
                                           QMetaType::UInt,
                                           QMetaType::Int,
                                           QMetaType::Float,
                                           QMetaType::ULongLong,
                                           QMetaType::LongLong};
        if (target >= 1 && target <= 9)
            return content.canConvert(kQtTypes[target]);
        switch (target) {
        case 10:
            return isOneOf(content.userType(),
                           {QMetaType::Short, QMetaType::Char, QMetaType::UShort, QMetaType::UChar,
                            QMetaType::Float})
                || content.canConvert(QMetaType::Double);
        case 12:
        case 14:
        case 17:
        case 19:
            return isOneOf(tag, {12, 13, 14, 15, 17, 18, 19, 20});
        case 13:
        case 15:
        case 18:
        case 20:
            return isOneOf(tag, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 13, 15, 16, 18, 20});
        case 16:
            return isOneOf(tag, {8, 9, 16});
        default:
            return false;
        }
    }

    //! The content in the form of the tag, converted by QVariant; 0 or the null record if it fails.
    template <class T>
    T contentAs() const
    {
        QVariant converted = content;
        return converted.convert(qMetaTypeId<T>()) ? converted.value<T>() : T();
    }

    // Numbers

    static int codeOf(unsigned char) { return 1; }
    static int codeOf(signed char) { return 2; }
    static int codeOf(unsigned short) { return 3; }
    static int codeOf(short) { return 4; }
    static int codeOf(unsigned int) { return 5; }
    static int codeOf(int) { return 6; }
    static int codeOf(float) { return 7; }
    static int codeOf(unsigned long long) { return 8; }
    static int codeOf(long long) { return 9; }
    static int codeOf(double) { return 10; }

    //! Cut towards zero, modulo 2^64, the low bits; beyond that and NaN the low bits of -2^63.
    template <class To>
    static To cut(double from)
    {
        if constexpr (std::is_floating_point_v<To>)
            return static_cast<To>(from);
        else {
            constexpr double kTwo64 = 18446744073709551616.0;
            quint64 low = Q_UINT64_C(0x8000000000000000);
            if (from > -kTwo64 && from < kTwo64)
                low = static_cast<quint64>(static_cast<Int128>(from));
            return static_cast<To>(low);
        }
    }

    qint64 recordNumber() const
    {
        const QByteArray bytes = recordBytes(contentAs<NTypes::tsDateTime>());
        quint64 number = 0;
        for (int i = 8; --i >= 0;)
            number = number * 256 + static_cast<unsigned char>(bytes.at(i));
        return static_cast<qint64>(number);
    }

    template <class To>
    To number(bool *ok) const
    {
        *ok = false;
        if (!canConvertTo(codeOf(To())) || tag >= 17)
            return 0;
        switch (tag) {
        case 1:
        case 3:
        case 5:
            return static_cast<To>(content.toUInt(ok));
        case 2:
        case 4:
        case 6:
            return static_cast<To>(content.toInt(ok));
        case 7:
            return cut<To>(content.toReal(ok));
        case 10:
            return cut<To>(content.toDouble(ok));
        case 8:
            return static_cast<To>(content.toULongLong(ok));
        case 9:
            return static_cast<To>(content.toLongLong(ok));
        case 16:
            *ok = true;
            return static_cast<To>(recordNumber());
        default:
            return 0;
        }
    }

    template <class To>
    To number() const
    {
        bool ok = false;
        return number<To>(&ok);
    }

    // Text, hexadecimal, bits

    QString fixedText() const
    {
        if (tag == 12)
            return contentAs<CString32>().str();
        return tag == 17 ? contentAs<CString64>().str() : contentAs<CString128>().str();
    }

    QString text() const
    {
        switch (tag) {
        case 1:
            return QString::number(int(contentAs<unsigned char>()));
        case 2:
            return QString::number(int(contentAs<signed char>()));
        case 3:
            return QString::number(int(contentAs<unsigned short>()));
        case 4:
            return QString::number(int(contentAs<short>()));
        case 5:
            return QString::number(contentAs<unsigned int>());
        case 6:
            return QString::number(contentAs<int>());
        case 7:
            return QString::number(static_cast<double>(contentAs<float>()), 'g', 6);
        case 8:
            return QString::number(contentAs<unsigned long long>());
        case 9:
            return QString::number(contentAs<long long>());
        case 10:
            return QString::number(contentAs<double>(), 'g', 15);
        case 12:
        case 14:
        case 17:
            return fixedText();
        case 13:
        case 15:
        case 18:
        case 20: // the bytes up to the first NUL
            return QString::fromUtf8(contentAs<QByteArray>().constData());
        case 16: {
            const auto from = contentAs<NTypes::tsDateTime>();
            const QDate date(from.date.year, from.date.month, from.date.day);
            const QTime time(from.time.hours, from.time.minutes, from.time.seconds,
                             from.time.hundredths * 10);
            return QDateTime(date, time, Qt::LocalTime).toString(Qt::ISODate);
        }
        case 19:
            return content.isValid() ? QString(contentAs<QChar>()) : QString();
        default:
            return content.toString();
        }
    }

    QString localeText() const
    {
        if (tag == 7)
            return QLocale().toString(static_cast<double>(contentAs<float>()), 'g', 6);
        return tag == 10 ? QLocale().toString(contentAs<double>(), 'g', 6) : text();
    }

    static QString digits(quint64 number, int count)
    {
        return QString::number(number, 16).rightJustified(count, QLatin1Char('0'));
    }

    static QString signedDigits(qint64 number, int count, bool cutting)
    {
        if (number >= 0)
            return digits(static_cast<quint64>(number), count);
        const auto magnitude = static_cast<quint64>(-static_cast<Int128>(number));
        const QString padded = QLatin1Char('-') + digits(magnitude, count - 1);
        return cutting ? padded.right(count) : padded;
    }

    QString hexDigits() const
    {
        switch (tag) {
        case 1:
            return digits(contentAs<unsigned char>(), 2);
        case 2:
            return signedDigits(contentAs<signed char>(), 2, true);
        case 3:
            return digits(contentAs<unsigned short>(), 4);
        case 4:
            return signedDigits(contentAs<short>(), 4, true);
        case 5:
            return digits(contentAs<unsigned int>(), 8);
        case 6:
            return signedDigits(contentAs<int>(), 8, false);
        case 8:
            return digits(contentAs<unsigned long long>(), 16);
        case 9:
            return signedDigits(contentAs<long long>(), 16, false);
        case 12:
            return hex(contentAs<CString32>().byteArray());
        case 14:
            return hex(contentAs<CString128>().byteArray());
        case 17:
            return hex(contentAs<CString64>().byteArray());
        case 13:
        case 15:
        case 18:
        case 20:
            return hex(contentAs<QByteArray>());
        case 16: // two's complement, not padded
            return QString::number(static_cast<quint64>(recordNumber()), 16);
        case 19:
            return digits(contentAs<QChar>().unicode(), 4);
        default:
            return QString();
        }
    }

    bool hasBits() const { return isOneOf(tag, {1, 2, 3, 4, 5, 6, 8, 9}); }

    static QString bitText(quint64 number, int count)
    {
        QString to;
        for (int i = 0; i < count; ++i, number /= 2)
            to += QLatin1Char(number % 2 ? '1' : '0');
        return to;
    }

    QString bitText() const
    {
        switch (tag) {
        case 1:
            return bitText(contentAs<unsigned char>(), 8);
        case 2:
            return bitText(static_cast<quint64>(contentAs<signed char>()), 8);
        case 3:
            return bitText(contentAs<unsigned short>(), 16);
        case 4:
            return bitText(static_cast<quint64>(contentAs<short>()), 16);
        case 5:
            return bitText(contentAs<unsigned int>(), 32);
        case 6:
            return bitText(static_cast<quint64>(contentAs<int>()), 32);
        case 8:
            return bitText(contentAs<unsigned long long>(), 64);
        case 9:
            return bitText(static_cast<quint64>(contentAs<long long>()), 64);
        default:
            return QString();
        }
    }

    // Characters and fixed strings

    static QChar first(const QString &text) { return text.isEmpty() ? QChar() : text.at(0); }

    QChar character(int target, bool *ok) const
    {
        *ok = canConvertTo(target);
        if (!*ok)
            return QChar();
        return tag == 19 ? content.toChar() : first(text());
    }

    //! The array of value<CStringN>(), where \a capacityTag is the tag of CStringN.
    template <class String>
    QByteArray fixedString(int capacityTag) const
    {
        if (!isText())
            return String().byteArray();
        if (tag == capacityTag)
            return contentAs<String>().byteArray();
        if (isFixedString())
            return String(fixedText()).byteArray();
        return String(tag == 19 ? content.toString() : text()).byteArray();
    }

    /*!
        The six results of a comparison with \a other, in the order == != < > <= >=. Tags that are
        no types compare as UNKNOWN and F80 do.
    */
    QString compared(const VariantModel &other) const
    {
        if (isOneOf(tag, {1, 3, 5, 8}))
            return results(tag == other.tag, number<quint64>(), other.number<quint64>());
        if (isOneOf(tag, {2, 4, 6, 9, 16}))
            return results(tag == other.tag, number<qint64>(), other.number<qint64>());
        if (tag == 7)
            return results(tag == other.tag, number<float>(), other.number<float>());
        if (tag == 10)
            return results(tag == other.tag, number<double>(), other.number<double>());
        if (isText())
            return results(tag == other.tag, text(), other.text());
        return results(tag == other.tag, 0, 0);
    }

private:
    template <class T>
    static QString results(bool sameTag, const T &left, const T &right)
    {
        const bool equal = sameTag && isEqual(left, right);
        const bool less = left < right;
        const bool greater = left > right;
        QString text;
        for (const bool result : {equal, !equal, less, greater, !greater, !less})
            text += QLatin1Char(result ? '1' : '0');
        return text;
    }

    template <class T>
    static bool isEqual(const T &left, const T &right)
    {
        if constexpr (std::is_floating_point_v<T>)
            return left <= right && left >= right;
        else
            return left == right;
    }
};

// The results of all operations of a value as lines of text: those that the library gives, and
// those that the model expects.

inline QString line(const char *name, const QStringList &results)
{
    return QLatin1String(name) + QLatin1Char(' ') + results.join(QLatin1Char(' '));
}

inline QString flag(bool value)
{
    return QLatin1String(value ? "true" : "false");
}

template <class T>
struct Result
{
    T number;
    bool ok;
};

template <class T>
QString numberLine(const char *name, Result<T> result)
{
    const QString text = numberText(result.number);
    return line(name, {text, text, text, text, flag(result.ok), flag(result.ok)});
}

//! Returns the lines of all ten numbers; \a numberOf(T()) is the Result for the type T.
template <class NumberOf>
QStringList numberLines(NumberOf numberOf)
{
    return {numberLine("U8", numberOf(uchar())),   numberLine("I8", numberOf(qint8())),
            numberLine("U16", numberOf(ushort())), numberLine("I16", numberOf(short())),
            numberLine("U32", numberOf(uint())),   numberLine("I32", numberOf(int())),
            numberLine("F32", numberOf(float())),  numberLine("U64", numberOf(quint64())),
            numberLine("I64", numberOf(qint64())), numberLine("F64", numberOf(double()))};
}

template <class T>
QString number(const char *name, const CVariant &value, T (CVariant::*convert)(bool *) const)
{
    bool first = true;
    bool second = false; // whatever ok held before does not count
    const T number = (value.*convert)(&first);
    const T again = (value.*convert)(&second);
    const T implicit = value;
    return line(name,
                {numberText(number), numberText(again), numberText((value.*convert)(nullptr)),
                 numberText(implicit), flag(first), flag(second)});
}

//! Returns the lines of all ten numbers that the library gives.
inline QStringList numberLines(const CVariant &value)
{
    return {number("U8", value, &CVariant::toU8),   number("I8", value, &CVariant::toI8),
            number("U16", value, &CVariant::toU16), number("I16", value, &CVariant::toI16),
            number("U32", value, &CVariant::toU32), number("I32", value, &CVariant::toI32),
            number("F32", value, &CVariant::toF32), number("U64", value, &CVariant::toU64),
            number("I64", value, &CVariant::toI64), number("F64", value, &CVariant::toF64)};
}

constexpr char kUntouched = 0x5A;

template <std::size_t N>
QString buffer(const char *name, const CVariant &value,
               bool (CVariant::*convert)(char (&)[N]) const)
{
    char bytes[N];
    std::memset(bytes, kUntouched, N);
    const bool ok = (value.*convert)(bytes);
    return line(name, {flag(ok), hex(QByteArray(bytes, N))});
}

template <int N>
QString buffer(const char *name, const VariantModel &model)
{
    QByteArray bytes(N, kUntouched);
    if (model.isBytes())
        bytes = model.content.toByteArray().left(N - 1).leftJustified(N, '\0');
    return line(name, {flag(model.isBytes()), hex(bytes)});
}

template <class String, std::size_t N>
QString fixedString(const char *name, const CVariant &value,
                    String (CVariant::*convert)(bool *) const,
                    bool (CVariant::*copy)(unsigned short (&)[N]) const)
{
    bool first = true;
    bool second = false;
    bool third = true;
    const String string = (value.*convert)(&first);
    const String again = value.value<String>(NTypes::TYPE_UNKNOWN, &second);
    const String other = value.value<String>(NTypes::TYPE_STRING32, &third);
    const String implicit = value;
    unsigned short units[N];
    std::memset(units, kUntouched, sizeof(units));
    const bool copied = (value.*copy)(units);
    return line(name,
                {hex(string.byteArray()), hex(again.byteArray()), hex(other.byteArray()),
                 hex((value.*convert)(nullptr).byteArray()), hex(implicit.byteArray()),
                 hex(QByteArray(reinterpret_cast<const char *>(units), sizeof(units))), flag(first),
                 flag(second), flag(third), flag(copied)});
}

template <class String>
QString fixedString(const char *name, const VariantModel &model, int capacityTag)
{
    const QString array = hex(model.fixedString<String>(capacityTag));
    const QString ok = flag(model.isText());
    return line(name, {array, array, array, array, array, array, ok, ok, ok, flag(true)});
}

//! Returns what the library gives.
inline QStringList resultsOf(const CVariant &value)
{
    const MessageRecorder recorder;
    QStringList to;
    to << line("type", {QString::number(static_cast<int>(value.type()))});
    to << line("null, valid", {flag(value.isNull()), flag(value.isValid())});
    for (const int code : tags()) {
        bool first = true;
        bool second = false;
        const QChar character = value.value<QChar>(tag(code), &first);
        const QChar again = value.value<QChar>(tag(code), &second);
        to << line("converts to",
                   {QString::number(code), flag(value.canConvertTo(tag(code))),
                    numberText(character.unicode()), numberText(again.unicode()), flag(first),
                    flag(second), numberText(value.value<QChar>(tag(code)).unicode())});
    }
    to << numberLines(value);
    to << buffer("64 chars", value, &CVariant::toCharStr64);
    to << buffer("128 chars", value, &CVariant::toCharStr128);
    to << buffer("256 chars", value, &CVariant::toCharStr256);
    char character = kUntouched;
    const bool hasCharacter = value.toChar(character);
    const char implicitCharacter = value;
    to << line("char", {flag(hasCharacter), numberText(character), numberText(implicitCharacter)});
    unsigned short unit = kUntouched;
    QChar unitCharacter(ushort{kUntouched});
    const bool hasUnit = value.toUtf16Char(unit);
    const bool hasUnitCharacter = value.toUtf16Char(unitCharacter);
    const QChar implicitUnit = value;
    to << line("unit",
               {flag(hasUnit), flag(hasUnitCharacter), numberText(unit),
                numberText(unitCharacter.unicode()), numberText(implicitUnit.unicode())});
    to << fixedString<CString32, 32>("32 units", value, &CVariant::toString32,
                                     &CVariant::toString32);
    to << fixedString<CString64, 64>("64 units", value, &CVariant::toString64,
                                     &CVariant::toString64);
    to << fixedString<CString128, 128>("128 units", value, &CVariant::toString128,
                                       &CVariant::toString128);
    const QString implicitText = value;
    to << line("text", {value.toStr(), implicitText, value.toLocaleStr()});
    to << line("hex", {value.toHex(), value.toHex(QStringLiteral("%1x"))});
    to << recorder.messages(); // none up to here
    to << line("bits", {bits(value.toBitArray())});
    to << recorder.messages();
    return to;
}

//! Returns what the model expects.
inline QStringList resultsOf(const VariantModel &model)
{
    QStringList to;
    to << line("type", {QString::number(model.tag)});
    to << line("null, valid", {flag(model.isNull()), flag(model.isValid())});
    for (const int code : tags()) {
        bool ok = false;
        const QString character = numberText(model.character(code, &ok).unicode());
        to << line("converts to",
                   {QString::number(code), flag(model.canConvertTo(code)), character, character,
                    flag(ok), flag(ok), character});
    }
    to << numberLines([&model](auto type) {
        bool ok = false;
        const auto number = model.number<decltype(type)>(&ok);
        return Result<decltype(type)>{number, ok};
    });
    to << buffer<64>("64 chars", model);
    to << buffer<128>("128 chars", model);
    to << buffer<256>("256 chars", model);
    const QByteArray bytes = model.content.toByteArray();
    const char character = bytes.isEmpty() ? '\0' : bytes.at(0);
    to << line("char",
               {flag(model.isBytes()), numberText(model.isBytes() ? character : kUntouched),
                numberText(model.isBytes() ? character : '\0')});
    bool hasUnit = false;
    const QString unit = numberText(model.character(19, &hasUnit).unicode());
    to << line("unit", {flag(hasUnit), flag(hasUnit), unit, unit, unit});
    to << fixedString<CString32>("32 units", model, 12);
    to << fixedString<CString64>("64 units", model, 17);
    to << fixedString<CString128>("128 units", model, 14);
    to << line("text", {model.text(), model.text(), model.localeText()});
    to << line("hex", {model.hexDigits(), QLatin1String("%1x") + model.hexDigits()});
    to << line("bits", {model.bitText()});
    if (!model.hasBits())
        to << QLatin1String("warning default: \"CVariant::toBitArray() : Data type ")
                + QString::number(model.tag) + QLatin1String(" is not supported in this method.\"");
    return to;
}

//! Returns the six results of a comparison in the order == != < > <= >=.
inline QString compared(const CVariant &left, const CVariant &right)
{
    QString text;
    for (const bool result :
         {left == right, left != right, left<right, left> right, left <= right, left >= right})
        text += QLatin1Char(result ? '1' : '0');
    return text;
}

inline VariantModel modelOf(const CVariant &value)
{
    return {static_cast<int>(value.type()), contentOf(value)};
}

} // namespace VariantTest

#endif // VARIANTMODEL_H
