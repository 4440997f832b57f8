#include "Pairs.h"

#include "CVariant.h"

#include <QBuffer>
#include <QDataStream>
#include <QVariant>

namespace {

std::string named(const char *operation, const char *type)
{
    return std::string(operation) + ' ' + type;
}

template <class T>
void addNumber(const char *type, T value)
{
    Pairs::add(
        named("CVariant from", type), {1.1, 0, 0}, [value] { return CVariant(value); },
        [value] { return QVariant::fromValue(value); });
    Pairs::add(
        named("copy", type), {1.1, 0, 0}, [v = CVariant(value)] { return CVariant(v); },
        [v = QVariant::fromValue(value)] { return QVariant(v); });
    Pairs::add(
        named("make and copy", type), {1.1, 0, 0},
        [value] {
            const CVariant v(value);
            return CVariant(v);
        },
        [value] {
            const QVariant v = QVariant::fromValue(value);
            return QVariant(v);
        });
    Pairs::add(
        named("==", type), {0.5, 0, 0},
        [l = CVariant(value), r = CVariant(value)] { return l == r; },
        [l = QVariant::fromValue(value), r = QVariant::fromValue(value)] { return l == r; });
    Pairs::add(
        named("<", type), {0.5, 0, 0}, [l = CVariant(value), r = CVariant(value)] { return l < r; },
        [l = QVariant::fromValue(value), r = QVariant::fromValue(value)] { return l == r; });
}

// Ours and the peer's conversion of the same content, which is of the form that the tag asks for.
template <class T, class Ours, class Peer>
void addConversion(const char *name, T value, Ours ours, Peer peer)
{
    Pairs::add(
        name, {1.0, 0, 0},
        [v = CVariant(value), ours] {
            bool ok = false;
            return (v.*ours)(&ok) + static_cast<decltype((v.*ours)(&ok))>(ok);
        },
        [v = QVariant::fromValue(value), peer] {
            bool ok = false;
            return (v.*peer)(&ok) + static_cast<decltype((v.*peer)(&ok))>(ok);
        });
}

void addConversions()
{
    addConversion("toI8 of I8", static_cast<signed char>(-5), &CVariant::toI8, &QVariant::toInt);
    addConversion("toU8 of U8", static_cast<unsigned char>(5), &CVariant::toU8, &QVariant::toUInt);
    addConversion("toI16 of I16", static_cast<short>(-5), &CVariant::toI16, &QVariant::toInt);
    addConversion("toU16 of U16", static_cast<unsigned short>(5), &CVariant::toU16,
                  &QVariant::toUInt);
    addConversion("toI32 of I32", -5, &CVariant::toI32, &QVariant::toInt);
    addConversion("toU32 of U32", 5U, &CVariant::toU32, &QVariant::toUInt);
    addConversion("toI64 of I64", -5LL, &CVariant::toI64, &QVariant::toLongLong);
    addConversion("toU64 of U64", 5ULL, &CVariant::toU64, &QVariant::toULongLong);
    addConversion("toF32 of F32", 2.5F, &CVariant::toF32, &QVariant::toFloat);
    addConversion("toF64 of F64", 2.5, &CVariant::toF64, &QVariant::toDouble);
    // From one type to another: the peer's conversion to the same type, and to the stored one.
    addConversion("toI64 of I32", -5, &CVariant::toI64, &QVariant::toLongLong);
    addConversion("toI64 of I32, peer toInt", -5, &CVariant::toI64, &QVariant::toInt);
    addConversion("toF64 of I32", -5, &CVariant::toF64, &QVariant::toDouble);
    addConversion("toF64 of I32, peer toInt", -5, &CVariant::toF64, &QVariant::toInt);
    addConversion("toU8 of U32", 300U, &CVariant::toU8, &QVariant::toUInt);
    addConversion("toI32 of F64", -2.9, &CVariant::toI32, &QVariant::toInt);
    addConversion("toI32 of F64, peer toDouble", -2.9, &CVariant::toI32, &QVariant::toDouble);
    addConversion("toF64 of U16", static_cast<unsigned short>(5), &CVariant::toF64,
                  &QVariant::toDouble);
    addConversion("toI32 of U8", static_cast<unsigned char>(5), &CVariant::toI32, &QVariant::toInt);
}

template <class String>
void addStrings(const char *type, const QString &text)
{
    const String string(text);
    // 20 ns more than the peer, whose texts are made beforehand.
    Pairs::add(
        named("==", type), {1, 20, 0},
        [l = CVariant(string), r = CVariant(String(text))] { return l == r; },
        [l = string.str(), r = String(text).str()] { return l == r; });
    // The same text with another tail takes the longer way.
    String tailed(text + QStringLiteral("zz"));
    tailed = text;
    Pairs::add(
        named("==, other tail,", type), {1, 20, 0},
        [l = CVariant(string), r = CVariant(tailed)] { return l == r; },
        [l = string.str(), r = tailed.str()] { return l == r; });
}

template <class T>
void addText(const char *type, T value)
{
    Pairs::add(
        named("toStr", type), {1.1, 0, 1}, [v = CVariant(value)] { return v.toStr(); },
        [value] { return QString::number(value); });
}

void addParsing(const char *type, NTypes::ETypes code, const QString &text)
{
    Pairs::add(
        named("fromStr", type), {1.3, 0, 0}, [text, code] { return CVariant::fromStr(text, code); },
        [text] { return text.toInt(nullptr, 0); });
}

// Writes again and again to the start of the same memory.
class Writer
{
public:
    Writer() : mStream(&mBuffer) { mBuffer.open(QIODevice::WriteOnly); }
    template <class F>
    qint64 write(F f)
    {
        mBuffer.seek(0);
        f(mStream);
        return mBuffer.pos();
    }

private:
    QBuffer mBuffer;
    QDataStream mStream;
};

template <class T>
void addStream(const char *type, T value)
{
    static Writer ours;
    static Writer peer;
    Pairs::add(
        named("operator<<", type), {1.1, 0, -1},
        [v = CVariant(value)] { return ours.write([&](QDataStream &out) { out << v; }); },
        [v = static_cast<QVariant>(CVariant(value)), t = CVariant(value).type()] {
            return peer.write([&](QDataStream &out) { out << v << static_cast<qint32>(t); });
        });
}

void addVariantPairs()
{
    addNumber("U8", static_cast<unsigned char>(200));
    addNumber("I8", static_cast<signed char>(-5));
    addNumber("U16", static_cast<unsigned short>(60000));
    addNumber("I16", static_cast<short>(-5));
    addNumber("U32", 4000000000U);
    addNumber("I32", -5);
    addNumber("F32", 2.5F);
    addNumber("U64", 10000000000000000000ULL);
    addNumber("I64", -5LL);
    addNumber("F64", 2.5);

    addConversions();

    addStrings<CString32>("STRING32", QStringLiteral("Servo drive, axis 1"));
    addStrings<CString64>("STRING64",
                          QStringLiteral("Servo drive, axis 1, following error window"));
    addStrings<CString128>("STRING128", QString(120, QLatin1Char('x')));

    addText("I32", -123456789);
    addText("U32", 4000000000U);
    addText("U64", 10000000000000000000ULL);
    addText("I64", -1000000000000000000LL);
    Pairs::add(
        "toStr I8", {1.1, 0, 1}, [v = CVariant(static_cast<signed char>(-5))] { return v.toStr(); },
        [] { return QString::number(-5); });
    Pairs::add(
        "toStr F64", {1.1, 0, 1}, [v = CVariant(3.14159265358979)] { return v.toStr(); },
        [] { return QString::number(3.14159265358979, 'g', 15); });

    addParsing("U8", NTypes::TYPE_U8, QStringLiteral("200"));
    addParsing("I16", NTypes::TYPE_I16, QStringLiteral("-12345"));
    addParsing("U32, hex", NTypes::TYPE_U32, QStringLiteral("0x12345678"));
    addParsing("I32", NTypes::TYPE_I32, QStringLiteral("-123456789"));
    addParsing("I64", NTypes::TYPE_I64, QStringLiteral("-123456789"));

    addStream("I32", -5);
    addStream("F64", 2.5);
    addStream("STRING32", CString32(QStringLiteral("Servo drive")));
    addStream("CHAR", 'x');
}

const Pairs::Group kGroup(&addVariantPairs);

} // namespace
