#include "CCompanyStrings.h"
#include "CStr.h"
#include "CommandLine.h"
#include "Commands.h"
#include "Console.h"
#include "TextTable.h"
#include "ValueText.h"

namespace {

struct CompanyRow
{
    const char *title;
    QString (*text)();
};

constexpr CompanyRow kCompany[] = {
    {"long name", &CCompanyStrings::getCompanyLongName},
    {"medium name", &CCompanyStrings::getCompanyMediumName},
    {"short name", &CCompanyStrings::getCompanyShortName},
    {"addressee", &CCompanyStrings::getAddressName},
    {"street", &CCompanyStrings::getAddressStreet},
    {"city", &CCompanyStrings::getAddressCity},
    {"address in HTML", &CCompanyStrings::getAddressHtml},
    {"web", &CCompanyStrings::getWebUrl},
    {"e-mail", &CCompanyStrings::getEMail},
    {"open source", &CCompanyStrings::getOpenSourceUrl},
    {"version file", &CCompanyStrings::getUpdateVersionFile},
    {"change log", &CCompanyStrings::getUpdateChangelogFile},
    {"downloads", &CCompanyStrings::getUpdatePath},
    {"logo 145x52", &CCompanyStrings::getLogoAndNameBitmapFile_145x52},
    {"logo 105x30", &CCompanyStrings::getLogoAndNameBitmapFile_105x30},
    {"logo 105x30, inverted", &CCompanyStrings::getLogoAndNameBitmapFile_105x30_inverted},
    {"logo 32x32", &CCompanyStrings::getLogoBitmapFile_32x32},
    {"logo 16x16", &CCompanyStrings::getLogoBitmapFile_16x16},
};

struct ProductRow
{
    const char *title;
    QString (*text)(int id);
};

constexpr ProductRow kProduct[] = {
    {"name", &CCompanyStrings::getProductName},
    {"executable", &CCompanyStrings::getProductExeFile},
    {"splash screen", &CCompanyStrings::getProductSplashScreenBitmapFile},
    {"e-mail", &CCompanyStrings::getProductEMailAddress},
    {"version file", &CCompanyStrings::getProductUpdateVersionFile},
    {"change log", &CCompanyStrings::getProductUpdateChangelogFile},
    {"downloads", &CCompanyStrings::getProductUpdatePath},
};

} // namespace

void runCompany(const QStringList &arguments, Console &console)
{
    CommandLine line(arguments.first(),
                     QStringLiteral("Shows what this installation's Setup.Ini, or the one that is "
                                    "built in, says of the\nmaker or of a program. Makes the "
                                    "directories that it looks in if they are missing."));
    line.addArgument(QStringLiteral("ID"),
                     QStringLiteral("The product id of a program, such as 101; the maker without "
                                    "this."),
                     CommandLine::Need::Optional);
    if (!line.parse(arguments, console))
        return;
    TextTable table({{QStringLiteral("WHAT")}, {QStringLiteral("TEXT")}});
    if (line.arguments().isEmpty()) {
        for (const CompanyRow &row : kCompany)
            table.addRow({QLatin1String(row.title), visible(row.text())});
    } else {
        int id = 0;
        if (!CStr::strToI32(line.arguments().first(), id)) {
            console.usageError(
                arguments.first(),
                QStringLiteral("\"%1\" is no product id").arg(visible(line.arguments().first())));
            return;
        }
        for (const ProductRow &row : kProduct)
            table.addRow({QLatin1String(row.title), visible(row.text(id))});
    }
    table.print(console.out());
}
