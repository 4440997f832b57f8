#include "AllocationCounter.h"
#include "CDateTime.h"
#include "CVariant.h"

#include <QBitArray>
#include <QByteArray>
#include <QDataStream>
#include <QIODevice>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void discardMessage(QtMsgType, const QMessageLogContext &, const QString &)
{
}

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// Every operation of a value, whatever it holds.
void useAll(const CVariant &value)
{
    bool ok = false;
    value.toI8(&ok);
    value.toU8(&ok);
    value.toI16(&ok);
    value.toU16(&ok);
    value.toI32(&ok);
    value.toU32(&ok);
    value.toI64(&ok);
    value.toU64(&ok);
    value.toF32(&ok);
    value.toF64(&ok);
    for (int target = -1; target <= 21; ++target)
        require(!value.canConvertTo(static_cast<NTypes::ETypes>(target)) || target > 0);
    char bytes[256];
    require(!value.toCharStr256(bytes) || bytes[255] == 0);
    char character = 0;
    value.toChar(character);
    QChar unit;
    value.toUtf16Char(unit);
    require(value.toString32().str().size() <= 32);
    require(value.toString64().str().size() <= 64);
    require(value.toString128().str().size() <= 128);
    const QString text = value.toStr();
    require(value.toLocaleStr().isEmpty() == text.isEmpty());
    require(value.toHex(QStringLiteral("0x")).startsWith(QLatin1String("0x")));
    require(value.toBitArray().size() <= 64);

    CVariant parsed = value;
    parsed.fromStr(text);
    require(parsed.type() == value.type());
    require(value.isNull() || value.type() != NTypes::TYPE_UNKNOWN);
    require((value < parsed) == !(value >= parsed));
    require((value > parsed) == !(value <= parsed));
    require((value == parsed) == (parsed == value));
}

// Reads a value, in the memory that is promised.
template <class T>
T readWithinBounds(QDataStream &in)
{
    T value;
    AllocationCounter::start();
    in >> value;
    const AllocationCounter::Counts counts = AllocationCounter::stop();
    constexpr std::int64_t kAlways = 4 << 20;
    constexpr std::int64_t kPerByte = 64;
    require(counts.peak <= kAlways + kPerByte * in.device()->pos());
    return value;
}

} // namespace

// The first byte selects byte order (1), version (2 is Qt_4_6, or that in bits 3 to 7 if these are not
// zero) and type (4 is a date-time) of the stream; the rest is read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto previous = qInstallMessageHandler(discardMessage);
    Q_UNUSED(previous)
    if (size == 0)
        return 0;
    QDataStream in(QByteArray::fromRawData(reinterpret_cast<const char *>(data + 1),
                                           static_cast<int>(size - 1)));
    in.setByteOrder((data[0] & 1) != 0 ? QDataStream::LittleEndian : QDataStream::BigEndian);
    const int version = data[0] >> 3;
    if (version != 0)
        in.setVersion(std::min<int>(version, QDataStream::Qt_5_15));
    else
        in.setVersion((data[0] & 2) != 0 ? QDataStream::Qt_4_6 : QDataStream::Qt_5_15);
    QByteArray copy;
    QDataStream out(&copy, QIODevice::WriteOnly);
    if ((data[0] & 4) != 0) {
        out << readWithinBounds<CDateTime>(in);
        return 0;
    }
    const auto value = readWithinBounds<CVariant>(in);
    useAll(value);

    // Content that Qt can save comes back as it was, and so does any tag.
    out << value;
    QDataStream again(copy);
    CVariant read;
    again >> read;
    require(again.status() != QDataStream::Ok || read.type() == value.type());
    useAll(read);
    return 0;
}
