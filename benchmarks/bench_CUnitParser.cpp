#include "Pairs.h"

#include "CUnitParser.h"

#include <QHash>

#include <array>
#include <string>
#include <vector>

namespace {

// Every code in turn, so that no branch and no load is foreseen.
class Codes
{
public:
    unsigned int next()
    {
        mCode = mCode == 125 ? 0 : mCode + 1;
        return mCode;
    }

private:
    unsigned int mCode = 0;
};

std::array<unsigned int, 126> allSizes()
{
    std::array<unsigned int, 126> sizes = {};
    for (unsigned int code = 0; code < sizes.size(); ++code)
        sizes[code] = CUnitParser::size(code);
    return sizes;
}

void addUnitParserPairs()
{
    // An array read is inlined, a function of a shared library is not: 3 ns more than the peer.
    const Pairs::Limit limit = {1, 3, 0};
    const auto read
        = [codes = Codes(), sizes = allSizes()]() mutable { return sizes[codes.next()]; };
    Pairs::add(
        "CUnitParser::size(code)", limit,
        [codes = Codes()]() mutable { return CUnitParser::size(codes.next()); }, read);
    Pairs::add(
        "CUnitParser::type(code)", limit,
        [codes = Codes()]() mutable { return CUnitParser::type(codes.next()); }, read);

    // A name from the end of the table, and that of the longest.
    QHash<QString, NUnits::EObjectUnit> units;
    for (auto it = CUnitParser::mcSTR_TO_UNIT_MAP.cbegin();
         it != CUnitParser::mcSTR_TO_UNIT_MAP.cend(); ++it)
        units.insert(it.key(), it.value());
    for (const char *text : {"UNIT_J", "UNIT_NewtonMeter", "UNIT_JERK_INC_PER_SAMPLE3_32x32"}) {
        const QString name = QString::fromLatin1(text);
        const auto peer = [name, units] { return units.value(name); };
        Pairs::add(
            std::string("CUnitParser::type(name) ") + text, {2, 0, 0},
            [name] { return CUnitParser::type(name); }, peer);
        Pairs::add(
            std::string("CUnitParser::strToUnit ") + text, {2, 0, 0},
            [name] { return CUnitParser::strToUnit(name); }, peer);
    }
}

const Pairs::Group kGroup(&addUnitParserPairs);

} // namespace
