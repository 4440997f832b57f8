#ifndef NK7EGLOBAL_H
#define NK7EGLOBAL_H

#include <QDataStream>
#include <QFile>
#include <QLatin1String>
#include <QString>

/*!
    The constants that the programs of the suite share.

    Every source file that includes this header has its own, which are there before its own static
    objects. The patterns are for QRegExp in its default syntax, where {,n} is zero to n.
*/
namespace Nk7eGlobal {

//! Which entries a listing of a directory gives. No choice gives "." and "..".
enum EDirFilter : int {
    DIRFILTER_ALL = 0,   //!< directories and files, hidden ones too
    DIRFILTER_FILES = 1, //!< files, hidden ones too
    DIRFILTER_DIRS = 2   //!< directories, hidden ones too
};

//! \name QDataStream in the files of the suite. Additions to what the programs shared before.
//! @{
constexpr QDataStream::Version STREAM_VERSION = QDataStream::Qt_5_15;
constexpr QDataStream::ByteOrder STREAM_BYTE_ORDER = QDataStream::BigEndian;
//! @}

//! \name MIME types of what is dragged and copied between the views of the programs
//! @{
const QString CAPPOBJECT_MIME_TYPE = QStringLiteral("application/x-k7appobject");
const QString CAPPONLINEOBJECT_MIME_TYPE = QStringLiteral("application/x-k7apponlineobject");
const QString COBJECTBROWSEROBJECT_MIME_TYPE
    = QStringLiteral("application/x-k7objectbrowserobject");
const QString CSCOPEOBJECT_MIME_TYPE = QStringLiteral("application/x-k7scopeobject");
const QString CPROJECTOBJECT_MIME_TYPE = QStringLiteral("application/x-k7projectobject");
const QString CPROJECTGUI_TREEITEM_MIME_TYPE = QStringLiteral("application/x-k7projectguitreeitem");
const QString CDEVICEDATABASEGUI_DEVICE_MIME_TYPE
    = QStringLiteral("application/x-k7edevicedatabasedevice");
const QString CDEVICEDATABASEGUI_FIRMWARE_MIME_TYPE
    = QStringLiteral("application/x-k7edevicedatabasefirmware");
const QString CDEVICEDATABASEGUI_FPGA_MIME_TYPE
    = QStringLiteral("application/x-k7edevicedatabasefpga");
//! Contract: no "x-" and mixed case, unlike the others. Programs in use exchange it.
const QString CFILETRANSFER_TARGETFILE_MIME_TYPE
    = QStringLiteral("application/k7FileTransferTargetFile");
//! @}

//! \name Names of the log levels, in the order of the syslog severities 0 to 7
//! Contract: "error" and "warn" are not the words of syslog. Log files hold them.
//! @{
const QString SYSLOG_EMERG_STR = QStringLiteral("emerg");
const QString SYSLOG_ALERT_STR = QStringLiteral("alert");
const QString SYSLOG_CRIT_STR = QStringLiteral("crit");
const QString SYSLOG_ERR_STR = QStringLiteral("error");
const QString SYSLOG_WARNING_STR = QStringLiteral("warn");
const QString SYSLOG_NOTICE_STR = QStringLiteral("notice");
const QString SYSLOG_INFO_STR = QStringLiteral("info");
const QString SYSLOG_DEBUG_STR = QStringLiteral("debug");
//! @}

//! \name Result tags behind the steps of a check
//! @{
const QLatin1String RESULT_ENTRY_OK("[ OK ]");
const QLatin1String RESULT_ENTRY_FAILED("[ FAILED ]");
//! @}

//! \name Prefixes that mark the kind of device data
//! @{
const QLatin1String PREFIX_PARAMETER("I");
const QLatin1String PREFIX_CONFIG_PARAMS("C");
const QLatin1String PREFIX_DEVICE_DATABASE("U");
const QLatin1String PREFIX_FIRMWARE_DATABASE("F");
const QLatin1String PREFIX_LOGIC_DATABASE("L");
const QLatin1String PREFIX_DEVICE_CONFIGURATION("D");
const QLatin1String PREFIX_EXTENSION_CONTROLLER("S");
const QLatin1String PREFIX_OPTIONMODUL_DATABASE("O");
//! @}

//! \name Permissions of created directories (octal 775) and files (664)
//! The library gives PATH_PERMISSIONS to every directory it makes; FILE_PERMISSIONS is for the
//! programs. Qt's flags of the present user are not among them.
//! @{
const QFile::Permissions PATH_PERMISSIONS = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
    | QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
const QFile::Permissions FILE_PERMISSIONS = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup
    | QFile::WriteGroup | QFile::ReadOther;
//! @}

//! \name Patterns of network addresses
//! @{

//! Six groups of two hexadecimal digits with ":" or "-" between them, anywhere in a text.
const QLatin1String MAC_PATTERN(R"(([0-9a-fA-F]{2,2}(:|\-){1,1}){5,5}[0-9a-fA-F]{2,2})");
//! What may stand there while a MAC address is typed; ":" only.
const QLatin1String MAC_INPUT_PATTERN("^([0-9a-fA-F]{,2}:{,1}){,5}[0-9a-fA-F]{,2}$");
//! Four octets of 0 to 255.
const QLatin1String IPV4_PATTERN(
    R"(^((1?[0-9][0-9]?|2[0-4][0-9]|25[0-5])\.){3}((25[0-5])|(2[0-4][0-9])|(1?[0-9][0-9]?))$)");
//! What may stand there while an IPv4 address is typed.
const QLatin1String IPV4_INPUT_PATTERN(R"(^([0-9]{,3}\.{,1}){,3}[0-9]{,3}$)");
//! Contract: a subnet mask of the digits 0 to 5 only, of three the first 0 to 2, so that 128, 192
//! and 248 do not match. Programs rely on it.
const QLatin1String IPV4_SUBNET_PATTERN(
    R"(^((([0-5]{1,2})|([0-2]{1}[0-5]{2,2}))\.){3,3}(([0-5]{1,2})|([0-2]{1}[0-5]{2,2}))$)");
//! Groups of up to four hexadecimal digits with ":" between them; groups may be empty or missing.
const QLatin1String IPV6_PATTERN("^([0-9a-fA-F]{1,4}|:|0)(:([0-9a-fA-F]{0,4})|){7}$");
//! @}

} // namespace Nk7eGlobal

#endif // NK7EGLOBAL_H
