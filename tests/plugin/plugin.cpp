#include <CVariant.h>

#include <QByteArray>
#include <QDataStream>

// A plug-in whose host knows the library only through it. It can be unloaded.

namespace {

template <class T>
bool comesBack(const T &content)
{
    const CVariant value = content;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << value;
    QDataStream in(bytes);
    CVariant read;
    in >> read;
    return in.status() == QDataStream::Ok && read.type() == value.type()
        && read.toHex() == value.toHex();
}

const CString32 &name()
{
    static const CString32 name(QStringLiteral("axis"));
    return name;
}

constexpr NTypes::tsDateTime kRecord{{99, 30, 20, 10}, {5, 3, 2014}};

} // namespace

//! Returns whether a variant of each type of the library's own comes back from a stream.
extern "C" Q_DECL_EXPORT bool use()
{
    return comesBack(name()) && comesBack(CString64(name().str()))
        && comesBack(CString128(name().str())) && comesBack(kRecord);
}

//! Make what outlives the plug-in: the content of variants, and values that it wrapped itself.
extern "C" Q_DECL_EXPORT void variantOfString(QVariant &value)
{
    value = CVariant(name());
}

extern "C" Q_DECL_EXPORT void variantOfRecord(QVariant &value)
{
    value = CVariant(kRecord);
}

extern "C" Q_DECL_EXPORT void wrappedString(QVariant &value)
{
    value = QVariant::fromValue(name());
}

extern "C" Q_DECL_EXPORT void wrappedRecord(QVariant &value)
{
    value = QVariant::fromValue(kRecord);
}
