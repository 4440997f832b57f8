#include "NTypes.h"

#include "MetaType_p.h"

#include <tuple>

namespace {

// The fields in the order of the bytes.
template <class Record>
auto fields(Record &record)
{
    return std::tie(record.time.hundredths, record.time.seconds, record.time.minutes,
                    record.time.hours, record.date.day, record.date.month, record.date.year);
}

// No public operators: programs define their own, and these must not make theirs ambiguous.

void save(QDataStream &out, const void *data)
{
    std::apply([&out](auto... field) { (out << ... << field); },
               fields(*static_cast<const NTypes::tsDateTime *>(data)));
}

void load(QDataStream &in, void *data)
{
    std::apply([&in](auto &...field) { (in >> ... >> field); },
               fields(*static_cast<NTypes::tsDateTime *>(data)));
}

} // namespace

int QMetaTypeId<NTypes::tsDateTime>::qt_metatype_id()
{
    static const int id
        = MetaType::registered<NTypes::tsDateTime>("NTypes::tsDateTime", save, load);
    return id;
}
