#include "NTypes.h"

#include "MetaType_p.h"

namespace {

// No public operators: programs define their own, and these must not make theirs ambiguous.

void save(QDataStream &out, const void *data)
{
    const auto &value = *static_cast<const NTypes::tsDateTime *>(data);
    out << value.time.hundredths << value.time.seconds << value.time.minutes << value.time.hours
        << value.date.day << value.date.month << value.date.year;
}

void load(QDataStream &in, void *data)
{
    auto &value = *static_cast<NTypes::tsDateTime *>(data);
    in >> value.time.hundredths >> value.time.seconds >> value.time.minutes >> value.time.hours
        >> value.date.day >> value.date.month >> value.date.year;
}

} // namespace

int QMetaTypeId<NTypes::tsDateTime>::qt_metatype_id()
{
    static const int id
        = MetaType::registered<NTypes::tsDateTime>("NTypes::tsDateTime", save, load);
    return id;
}
