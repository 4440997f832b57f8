#ifndef NDEVICECONF_H
#define NDEVICECONF_H

#include <QLatin1String>
#include <QRegExp>

/*!
    The names of device configurations and the patterns that tell them apart.

    Every source file that includes this header has its own constants, which are there before its
    own static objects. Matching changes a QRegExp: threads that share one of these match on copies.
*/
namespace NDeviceConf {

//! The name of the factory configuration.
const QLatin1String FACTORY_CONFIGURATION_NAME("setup");

//! Any text that holds "setup".
const QLatin1String FACTORY_CONFIGURATION_PATTERN(".*(setup){1,}.*");
//! FACTORY_CONFIGURATION_PATTERN, in any case.
const QRegExp FACTORY_CONFIGURATION_REGEXP(FACTORY_CONFIGURATION_PATTERN, Qt::CaseInsensitive);

//! Any text that holds "failsafe", which marks the fail-safe configuration.
const QLatin1String FAILSAFE_CONFIGURATION_PATTERN(".*(failsafe){1,}.*");
//! FAILSAFE_CONFIGURATION_PATTERN, in any case.
const QRegExp FAILSAFE_CONFIGURATION_REGEXP(FAILSAFE_CONFIGURATION_PATTERN, Qt::CaseInsensitive);

//! Any text that holds "mount error", which marks the configuration after a mount error.
const QLatin1String MOUNTERROR_CONFIGURATION_PATTERN(".*(mount error){1,}.*");
//! MOUNTERROR_CONFIGURATION_PATTERN, in any case.
const QRegExp MOUNTERROR_CONFIGURATION_REGEXP(MOUNTERROR_CONFIGURATION_PATTERN,
                                              Qt::CaseInsensitive);

//! A configuration name as a user may enter it: letters, digits, "_", "-" and "+", then perhaps a
//! number in parentheses, then perhaps TAB and CR.
const QLatin1String NAME_INPUT_PATTERN(R"(([0-9a-zA-Z_\-\+]+)([\(][0-9]+[\)])?(\t\r|$))");

//! Any text that holds one of the three reserved names.
const QLatin1String NAME_CHECK_PATTERN(".*(setup|failsafe|mount error){1,}.*");
//! NAME_CHECK_PATTERN, in any case.
const QRegExp NAME_CHECK_REGEXP(NAME_CHECK_PATTERN, Qt::CaseInsensitive);

//! The name of the plug-in that is the EtherCAT master.
const QLatin1String PLUGIN_NAME_ETHERCAT_MASTER("CECatMaster");

} // namespace NDeviceConf

#endif // NDEVICECONF_H
