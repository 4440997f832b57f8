#ifndef CUNITPARSER_H
#define CUNITPARSER_H

#include "NTypes.h"
#include "NUnits.h"
#include "k7eCoreExport.h"

#include <QMap>
#include <QString>

/*!
    The table of object units: for each unit its name, the bytes its value occupies on the device
    and the data type it is held in. Static members only.

    Every name is compared exactly and case-sensitively. Wherever \a ok is set, it is written true
    for a known unit and false otherwise; it may be null. The maps are complete once the library is
    loaded and never change: every member may be called from any thread.
*/
class K7ECORE_EXPORT CUnitParser
{
public:
    CUnitParser() = delete;

    /*!
        The type of each text name: 19 entries, without "UNKNOWN" and "F80", which value() therefore
        reports as TYPE_UNKNOWN.
    */
    static const QMap<QString, NTypes::ETypes> mcTYPE_MAP;
    //! The name of each of the 126 units.
    static const QMap<NUnits::EObjectUnit, QString> mcUNIT_TO_STR_MAP;
    //! The unit of each of the 126 names.
    static const QMap<QString, NUnits::EObjectUnit> mcSTR_TO_UNIT_MAP;

    //! Returns true if \a str begins with "UNIT"; nothing else about the name is looked at.
    Q_REQUIRED_RESULT static bool checkUnitStr(const QString &str);

    /*!
        Returns the data type of \a unit, or TYPE_UNKNOWN for a code outside 0..125. UNIT_UNKNOWN
        and UNIT_F80 are known units (\a ok is true) whose type is TYPE_UNKNOWN.
    */
    static NTypes::ETypes type(NUnits::EObjectUnit unit, bool *ok = nullptr);
    //! \overload
    static NTypes::ETypes type(unsigned int unit, bool *ok = nullptr);
    /*!
        Returns the data type of the unit named \a unitName, or TYPE_UNKNOWN for any other name.
        For a name that does not begin with "UNIT", \a ok keeps the value the caller gave it.
    */
    static NTypes::ETypes type(const QString &unitName, bool *ok = nullptr);

    //! Returns the bytes a value of \a unit occupies on the device, or 0 for a code outside 0..125.
    static unsigned int size(NUnits::EObjectUnit unit, bool *ok = nullptr);
    //! \overload
    static unsigned int size(unsigned int unit, bool *ok = nullptr);
    /*!
        Returns the bytes a value of the unit named \a unitName occupies, or 0 for any other name.
        \a ok is always set to true: an unknown name counts as UNIT_UNKNOWN.
    */
    static unsigned int size(const QString &unitName, bool *ok = nullptr);

    //! Returns the name of \a unit, or a null string for a code outside 0..125.
    static QString unitToStr(NUnits::EObjectUnit unit, bool *ok = nullptr);
    /*!
        Returns the unit named \a name, or UNIT_UNKNOWN for any other name; only \a ok tells that
        from the name "UNIT_UNKNOWN".
    */
    static NUnits::EObjectUnit strToUnit(const QString &name, bool *ok = nullptr);

    //! Builds the content of #mcTYPE_MAP anew.
    Q_REQUIRED_RESULT static QMap<QString, NTypes::ETypes> initTypeMap();
    //! Builds the content of #mcUNIT_TO_STR_MAP anew.
    Q_REQUIRED_RESULT static QMap<NUnits::EObjectUnit, QString> initUnitToStr();
    //! Builds the content of #mcSTR_TO_UNIT_MAP anew, from #mcUNIT_TO_STR_MAP.
    Q_REQUIRED_RESULT static QMap<QString, NUnits::EObjectUnit> initStrToUnit();
};

#endif // CUNITPARSER_H
