#include "Pairs.h"

#include "CUnitParser.h"

#include <array>
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

} // namespace

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

    const QString name = QStringLiteral("UNIT_NewtonMeter");
    Pairs::add(
        "CUnitParser::type(name)", {100, 0, 0}, [name] { return CUnitParser::type(name); },
        [name] { return CUnitParser::mcSTR_TO_UNIT_MAP.value(name); });
}
