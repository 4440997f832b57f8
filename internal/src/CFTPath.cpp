#include "CFTPath.h"

#include "CPath.h"

#include <algorithm>
#include <iterator>

namespace {

struct EntryPointRow
{
    CFTPath::EEntryPoint code;
    const char *name;
    const char *directory;
};

constexpr char kInvalid[] = "<invalid>";

// In ascending order of the codes.
constexpr EntryPointRow kEntryPoints[] = {
    {CFTPath::EP_INVALID, kInvalid, kInvalid},
    {CFTPath::EP_CONSTCONFIG, "CONSTCONFIG", "/opt/KORVALENT/etc/conf/"},
    {CFTPath::EP_COMPANY, "KORVALENT", "/KORVALENT/"},
    {CFTPath::EP_OPT_COMPANY, "OPT/KORVALENT", "/opt/KORVALENT/"},
    {CFTPath::EP_TMP, "TMP", "/tmp/"},
    {CFTPath::EP_ROOT, "ROOT", "/"},
    {CFTPath::EP_OPT, "OPT", "/opt/"},
    {CFTPath::EP_APPDATA, "APPDATA", "/appdata/"},
};

// The first row that has what is asked for, or the row of EP_INVALID, which is the first.
template <class Predicate>
const EntryPointRow &findRow(Predicate predicate)
{
    const auto row = std::find_if(std::begin(kEntryPoints), std::end(kEntryPoints), predicate);
    return row != std::end(kEntryPoints) ? *row : kEntryPoints[0];
}

const EntryPointRow &rowOf(CFTPath::EEntryPoint code)
{
    return findRow([code](const EntryPointRow &row) { return row.code == code; });
}

bool standsAtStart(QLatin1String name, const QString &path)
{
    return path.startsWith(name) || path.midRef(1).startsWith(name);
}

} // namespace

const QString CFTPath::INVALID_STR = QLatin1String(kInvalid);
const QString CFTPath::PATH_AUTOSTART = QStringLiteral("autostart/");
const QString CFTPath::PATH_BIN = QStringLiteral("bin/");
const QString CFTPath::PATH_CONFIGURATIONS = QStringLiteral("configurations/");
const QString CFTPath::PATH_CONF = QStringLiteral("conf/");
const QString CFTPath::PATH_PARAM = QStringLiteral("param/");
const QString CFTPath::PATH_FIRMWARE = QStringLiteral("firmware/");
const QString CFTPath::PATH_LOGIC = QStringLiteral("logic/");
const QString CFTPath::PATH_SUBDEVICES = QStringLiteral("subdevices/");

QMap<CFTPath::EEntryPoint, QString> CFTPath::entryStrMap()
{
    QMap<EEntryPoint, QString> map;
    for (const EntryPointRow &row : kEntryPoints)
        map.insert(map.cend(), row.code, QLatin1String(row.name));
    return map;
}

QString CFTPath::toString(EEntryPoint entryPoint)
{
    return QLatin1String(rowOf(entryPoint).name);
}

CFTPath::EEntryPoint CFTPath::toEntryPoint(const QString &name)
{
    return findRow([&](const EntryPointRow &row) { return name == QLatin1String(row.name); }).code;
}

QList<CFTPath::EEntryPoint> CFTPath::entryPoints()
{
    QList<EEntryPoint> codes;
    for (const EntryPointRow &row : kEntryPoints)
        codes += row.code;
    return codes;
}

QString CFTPath::toPath(EEntryPoint entryPoint)
{
    return QLatin1String(rowOf(entryPoint).directory);
}

QString CFTPath::toRelativePath(const QString &path, EEntryPoint entryPoint)
{
    const QString absolute = CPath::ensurePathSeparatorAtStart(path);
    const QLatin1String root(rowOf(entryPoint).directory);
    return absolute.startsWith(root) ? absolute.mid(root.size()) : absolute;
}

CFTPath::EEntryPoint CFTPath::fromPath(const QString &path)
{
    return findRow([&](const EntryPointRow &row) {
               return standsAtStart(QLatin1String(row.name), path)
                   || path.startsWith(QLatin1String(row.directory));
           })
        .code;
}
