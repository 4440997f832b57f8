#include "CUnitParser.h"

#include "CodeTable_p.h"
#include "TypeTable_p.h"

#include <QLatin1String>

#include <iterator>

// Two sources of truth only: kUnits here and the types in TypeTable_p.h. The public maps are filled
// from them. kUnits is constant-initialised and may be read before any static object exists:
// kUnits[55] is {UNIT_T_Degree, TYPE_I16, "UNIT_T_Degree"}, which takes the 2 bytes of that type,
// and row 80 names the date-time.

namespace {

struct UnitRow
{
    NUnits::EObjectUnit unit;
    NTypes::ETypes type;
    QLatin1String name;
};

constexpr UnitRow kUnits[] = {
    {NUnits::UNIT_UNKNOWN, NTypes::TYPE_UNKNOWN, CodeTable::name("UNIT_UNKNOWN")},
    {NUnits::UNIT_U8, NTypes::TYPE_U8, CodeTable::name("UNIT_U8")},
    {NUnits::UNIT_I8, NTypes::TYPE_I8, CodeTable::name("UNIT_I8")},
    {NUnits::UNIT_U16, NTypes::TYPE_U16, CodeTable::name("UNIT_U16")},
    {NUnits::UNIT_I16, NTypes::TYPE_I16, CodeTable::name("UNIT_I16")},
    {NUnits::UNIT_U32, NTypes::TYPE_U32, CodeTable::name("UNIT_U32")},
    {NUnits::UNIT_I32, NTypes::TYPE_I32, CodeTable::name("UNIT_I32")},
    {NUnits::UNIT_F32, NTypes::TYPE_F32, CodeTable::name("UNIT_F32")},
    {NUnits::UNIT_U64, NTypes::TYPE_U64, CodeTable::name("UNIT_U64")},
    {NUnits::UNIT_I64, NTypes::TYPE_I64, CodeTable::name("UNIT_I64")},
    {NUnits::UNIT_F64, NTypes::TYPE_F64, CodeTable::name("UNIT_F64")},
    {NUnits::UNIT_F80, NTypes::TYPE_F80, CodeTable::name("UNIT_F80")},
    {NUnits::UNIT_STRING32, NTypes::TYPE_STRING32, CodeTable::name("UNIT_STRING32")},
    {NUnits::UNIT_CHARSTR64, NTypes::TYPE_CHARSTR64, CodeTable::name("UNIT_CHARSTR64")},
    {NUnits::UNIT_STRING128, NTypes::TYPE_STRING128, CodeTable::name("UNIT_STRING128")},
    {NUnits::UNIT_CHARSTR256, NTypes::TYPE_CHARSTR256, CodeTable::name("UNIT_CHARSTR256")},
    {NUnits::UNIT_I_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_I_FRAC")},
    {NUnits::UNIT_U_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_U_FRAC")},
    {NUnits::UNIT_R_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_R_FRAC")},
    {NUnits::UNIT_P_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_P_FRAC")},
    {NUnits::UNIT_S_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_S_FRAC")},
    {NUnits::UNIT_V_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_V_FRAC")},
    {NUnits::UNIT_A_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_A_FRAC")},
    {NUnits::UNIT_JERK_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_JERK_FRAC")},
    {NUnits::UNIT_TIME_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_TIME_FRAC")},
    {NUnits::UNIT_TEMPERATURE_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_TEMPERATURE_FRAC")},
    {NUnits::UNIT_PHI_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_PHI_FRAC")},
    {NUnits::UNIT_OMEGA_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_OMEGA_FRAC")},
    {NUnits::UNIT_ALPHA_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_ALPHA_FRAC")},
    {NUnits::UNIT_V_PER_A_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_V_PER_A_FRAC")},
    {NUnits::UNIT_FREQ_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_FREQ_FRAC")},
    {NUnits::UNIT_F_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_F_FRAC")},
    {NUnits::UNIT_M_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_M_FRAC")},
    {NUnits::UNIT_N_PER_A_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_N_PER_A_FRAC")},
    {NUnits::UNIT_NM_PER_A_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_NM_PER_A_FRAC")},
    {NUnits::UNIT_res35, NTypes::TYPE_I16, CodeTable::name("UNIT_res35")},
    {NUnits::UNIT_PERCENT_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_PERCENT_FRAC")},
    {NUnits::UNIT_J_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_J_FRAC")},
    {NUnits::UNIT_MASS_FRAC, NTypes::TYPE_I16, CodeTable::name("UNIT_MASS_FRAC")},
    {NUnits::UNIT_FAULT, NTypes::TYPE_U32, CodeTable::name("UNIT_FAULT")},
    {NUnits::UNIT_U_PC_P, NTypes::TYPE_F64, CodeTable::name("UNIT_U_PC_P")},
    {NUnits::UNIT_U_POS, NTypes::TYPE_F64, CodeTable::name("UNIT_U_POS")},
    {NUnits::UNIT_U_VEL, NTypes::TYPE_F64, CodeTable::name("UNIT_U_VEL")},
    {NUnits::UNIT_U_ACC, NTypes::TYPE_F64, CodeTable::name("UNIT_U_ACC")},
    {NUnits::UNIT_U_JERK, NTypes::TYPE_F64, CodeTable::name("UNIT_U_JERK")},
    {NUnits::UNIT_U_MF, NTypes::TYPE_F64, CodeTable::name("UNIT_U_MF")},
    {NUnits::UNIT_U_VC_P, NTypes::TYPE_F64, CodeTable::name("UNIT_U_VC_P")},
    {NUnits::UNIT_U_TC_P, NTypes::TYPE_F64, CodeTable::name("UNIT_U_TC_P")},
    {NUnits::UNIT_U_100mV, NTypes::TYPE_I16, CodeTable::name("UNIT_U_100mV")},
    {NUnits::UNIT_I_1mA, NTypes::TYPE_I32, CodeTable::name("UNIT_I_1mA")},
    {NUnits::UNIT_T_100mDegree, NTypes::TYPE_I16, CodeTable::name("UNIT_T_100mDegree")},
    {NUnits::UNIT_R_1mOhm, NTypes::TYPE_I32, CodeTable::name("UNIT_R_1mOhm")},
    {NUnits::UNIT_L_1uHenry, NTypes::TYPE_I32, CodeTable::name("UNIT_L_1uHenry")},
    {NUnits::UNIT_C_1uFarad, NTypes::TYPE_I32, CodeTable::name("UNIT_C_1uFarad")},
    {NUnits::UNIT_P_1mWatt, NTypes::TYPE_I32, CodeTable::name("UNIT_P_1mWatt")},
    {NUnits::UNIT_T_Degree, NTypes::TYPE_I16, CodeTable::name("UNIT_T_Degree")},
    {NUnits::UNIT_56, NTypes::TYPE_I32, CodeTable::name("UNIT_56")},
    {NUnits::UNIT_57, NTypes::TYPE_I32, CodeTable::name("UNIT_57")},
    {NUnits::UNIT_58, NTypes::TYPE_I32, CodeTable::name("UNIT_58")},
    {NUnits::UNIT_59, NTypes::TYPE_I32, CodeTable::name("UNIT_59")},
    {NUnits::UNIT_60, NTypes::TYPE_I32, CodeTable::name("UNIT_60")},
    {NUnits::UNIT_61, NTypes::TYPE_I32, CodeTable::name("UNIT_61")},
    {NUnits::UNIT_62, NTypes::TYPE_I32, CodeTable::name("UNIT_62")},
    {NUnits::UNIT_63, NTypes::TYPE_I32, CodeTable::name("UNIT_63")},
    {NUnits::UNIT_S_INC_32x32, NTypes::TYPE_I64, CodeTable::name("UNIT_S_INC_32x32")},
    {NUnits::UNIT_V_INC_PER_SAMPLE_32x32, NTypes::TYPE_I64,
     CodeTable::name("UNIT_V_INC_PER_SAMPLE_32x32")},
    {NUnits::UNIT_A_INC_PER_SAMPLE2_32x32, NTypes::TYPE_I64,
     CodeTable::name("UNIT_A_INC_PER_SAMPLE2_32x32")},
    {NUnits::UNIT_JERK_INC_PER_SAMPLE3_32x32, NTypes::TYPE_I64,
     CodeTable::name("UNIT_JERK_INC_PER_SAMPLE3_32x32")},
    {NUnits::UNIT_T_SAMPLE, NTypes::TYPE_I32, CodeTable::name("UNIT_T_SAMPLE")},
    {NUnits::UNIT_69, NTypes::TYPE_I32, CodeTable::name("UNIT_69")},
    {NUnits::UNIT_70, NTypes::TYPE_I32, CodeTable::name("UNIT_70")},
    {NUnits::UNIT_71, NTypes::TYPE_I32, CodeTable::name("UNIT_71")},
    {NUnits::UNIT_72, NTypes::TYPE_I32, CodeTable::name("UNIT_72")},
    {NUnits::UNIT_73, NTypes::TYPE_I32, CodeTable::name("UNIT_73")},
    {NUnits::UNIT_74, NTypes::TYPE_I32, CodeTable::name("UNIT_74")},
    {NUnits::UNIT_75, NTypes::TYPE_I32, CodeTable::name("UNIT_75")},
    {NUnits::UNIT_76, NTypes::TYPE_I32, CodeTable::name("UNIT_76")},
    {NUnits::UNIT_77, NTypes::TYPE_I32, CodeTable::name("UNIT_77")},
    {NUnits::UNIT_78, NTypes::TYPE_I32, CodeTable::name("UNIT_78")},
    {NUnits::UNIT_79, NTypes::TYPE_I32, CodeTable::name("UNIT_79")},
    {NUnits::UNIT_DATE_TIME, NTypes::TYPE_DATETIME, CodeTable::name("UNIT_DATE_TIME")},
    {NUnits::UNIT_STRING64, NTypes::TYPE_STRING64, CodeTable::name("UNIT_STRING64")},
    {NUnits::UNIT_CHARSTR128, NTypes::TYPE_CHARSTR128, CodeTable::name("UNIT_CHARSTR128")},
    {NUnits::UNIT_UTF16CHAR, NTypes::TYPE_UTF16CHAR, CodeTable::name("UNIT_UTF16CHAR")},
    {NUnits::UNIT_CHAR, NTypes::TYPE_CHAR, CodeTable::name("UNIT_CHAR")},
    {NUnits::UNIT_85, NTypes::TYPE_I32, CodeTable::name("UNIT_85")},
    {NUnits::UNIT_86, NTypes::TYPE_I32, CodeTable::name("UNIT_86")},
    {NUnits::UNIT_87, NTypes::TYPE_I32, CodeTable::name("UNIT_87")},
    {NUnits::UNIT_88, NTypes::TYPE_I32, CodeTable::name("UNIT_88")},
    {NUnits::UNIT_Volt_per_Ampere, NTypes::TYPE_F64, CodeTable::name("UNIT_Volt_per_Ampere")},
    {NUnits::UNIT_Ampere, NTypes::TYPE_F64, CodeTable::name("UNIT_Ampere")},
    {NUnits::UNIT_Volt, NTypes::TYPE_F64, CodeTable::name("UNIT_Volt")},
    {NUnits::UNIT_Ohm, NTypes::TYPE_F64, CodeTable::name("UNIT_Ohm")},
    {NUnits::UNIT_Watt, NTypes::TYPE_F64, CodeTable::name("UNIT_Watt")},
    {NUnits::UNIT_uFarad, NTypes::TYPE_F64, CodeTable::name("UNIT_uFarad")},
    {NUnits::UNIT_uHenry, NTypes::TYPE_F64, CodeTable::name("UNIT_uHenry")},
    {NUnits::UNIT_mHenry, NTypes::TYPE_F64, CodeTable::name("UNIT_mHenry")},
    {NUnits::UNIT_Hours, NTypes::TYPE_F64, CodeTable::name("UNIT_Hours")},
    {NUnits::UNIT_mSeconds, NTypes::TYPE_F64, CodeTable::name("UNIT_mSeconds")},
    {NUnits::UNIT_Newton, NTypes::TYPE_F64, CodeTable::name("UNIT_Newton")},
    {NUnits::UNIT_NewtonMeter, NTypes::TYPE_F64, CodeTable::name("UNIT_NewtonMeter")},
    {NUnits::UNIT_mMeter, NTypes::TYPE_F64, CodeTable::name("UNIT_mMeter")},
    {NUnits::UNIT_RPM, NTypes::TYPE_F64, CodeTable::name("UNIT_RPM")},
    {NUnits::UNIT_Meter_per_Second, NTypes::TYPE_F64, CodeTable::name("UNIT_Meter_per_Second")},
    {NUnits::UNIT_DegreeCelsius, NTypes::TYPE_F64, CodeTable::name("UNIT_DegreeCelsius")},
    {NUnits::UNIT_Degree, NTypes::TYPE_F64, CodeTable::name("UNIT_Degree")},
    {NUnits::UNIT_Rad, NTypes::TYPE_F64, CodeTable::name("UNIT_Rad")},
    {NUnits::UNIT_kg, NTypes::TYPE_F64, CodeTable::name("UNIT_kg")},
    {NUnits::UNIT_NewtonMeter_cMeter2, NTypes::TYPE_F64,
     CodeTable::name("UNIT_NewtonMeter_cMeter2")},
    {NUnits::UNIT_Meter, NTypes::TYPE_F64, CodeTable::name("UNIT_Meter")},
    {NUnits::UNIT_Nm_per_Ampere, NTypes::TYPE_F64, CodeTable::name("UNIT_Nm_per_Ampere")},
    {NUnits::UNIT_N_per_Ampere, NTypes::TYPE_F64, CodeTable::name("UNIT_N_per_Ampere")},
    {NUnits::UNIT_Volt_per_krpm, NTypes::TYPE_F64, CodeTable::name("UNIT_Volt_per_krpm")},
    {NUnits::UNIT_VoltSeconds_per_Meter, NTypes::TYPE_F64,
     CodeTable::name("UNIT_VoltSeconds_per_Meter")},
    {NUnits::UNIT_NewtonSeconds_per_rad, NTypes::TYPE_F64,
     CodeTable::name("UNIT_NewtonSeconds_per_rad")},
    {NUnits::UNIT_Meter_per_Seconds, NTypes::TYPE_F64, CodeTable::name("UNIT_Meter_per_Seconds")},
    {NUnits::UNIT_Meter_per_Seconds2, NTypes::TYPE_F64, CodeTable::name("UNIT_Meter_per_Seconds2")},
    {NUnits::UNIT_Meter_per_Seconds3, NTypes::TYPE_F64, CodeTable::name("UNIT_Meter_per_Seconds3")},
    {NUnits::UNIT_Revolutions_per_Seconds2, NTypes::TYPE_F64,
     CodeTable::name("UNIT_Revolutions_per_Seconds2")},
    {NUnits::UNIT_Revolutions_per_Seconds3, NTypes::TYPE_F64,
     CodeTable::name("UNIT_Revolutions_per_Seconds3")},
    {NUnits::UNIT_Hertz, NTypes::TYPE_F64, CodeTable::name("UNIT_Hertz")},
    {NUnits::UNIT_A, NTypes::TYPE_F64, CodeTable::name("UNIT_A")},
    {NUnits::UNIT_V, NTypes::TYPE_F64, CodeTable::name("UNIT_V")},
    {NUnits::UNIT_W, NTypes::TYPE_F64, CodeTable::name("UNIT_W")},
    {NUnits::UNIT_P, NTypes::TYPE_F64, CodeTable::name("UNIT_P")},
    {NUnits::UNIT_J, NTypes::TYPE_F64, CodeTable::name("UNIT_J")},
};
static_assert(std::size(kUnits) == 126);
static_assert(CodeTable::indexIsCode(kUnits, &UnitRow::unit));

constexpr CodeTable::NameIndex<UnitRow, std::size(kUnits)> kUnitNames(kUnits, &UnitRow::name);

const UnitRow *findUnit(unsigned int unit)
{
    return CodeTable::find(kUnits, unit);
}

// Returns the result of 'read' for the row, or a neutral one if there is none.
template <class Read>
auto readRow(const UnitRow *row, bool *ok, Read read)
{
    if (ok)
        *ok = row;
    return row ? read(*row) : decltype(read(*row))();
}

// Contract: the 80-bit float is a known unit of 10 bytes without a type: no value can hold it.
NTypes::ETypes typeOf(const UnitRow &row)
{
    return TypeTable::kRows[row.type].holdsValues ? row.type : NTypes::TYPE_UNKNOWN;
}

unsigned int bytesOf(const UnitRow &row)
{
    return TypeTable::kRows[row.type].bytes;
}

} // namespace

// The third map is built from the second: their order here is the order of initialisation.
const QMap<QString, NTypes::ETypes> CUnitParser::mcTYPE_MAP = CUnitParser::initTypeMap();
const QMap<NUnits::EObjectUnit, QString> CUnitParser::mcUNIT_TO_STR_MAP
    = CUnitParser::initUnitToStr();
const QMap<QString, NUnits::EObjectUnit> CUnitParser::mcSTR_TO_UNIT_MAP
    = CUnitParser::initStrToUnit();

bool CUnitParser::checkUnitStr(const QString &str)
{
    return str.startsWith(QLatin1String("UNIT"));
}

NTypes::ETypes CUnitParser::type(NUnits::EObjectUnit unit, bool *ok)
{
    return type(static_cast<unsigned int>(unit), ok);
}

NTypes::ETypes CUnitParser::type(unsigned int unit, bool *ok)
{
    return readRow(findUnit(unit), ok, typeOf);
}

NTypes::ETypes CUnitParser::type(const QString &unitName, bool *ok)
{
    // Contract: callers rely on 'ok' keeping its value for a name of another kind.
    if (!checkUnitStr(unitName))
        return NTypes::TYPE_UNKNOWN;
    return readRow(kUnitNames.find(unitName), ok, typeOf);
}

unsigned int CUnitParser::size(NUnits::EObjectUnit unit, bool *ok)
{
    return size(static_cast<unsigned int>(unit), ok);
}

unsigned int CUnitParser::size(unsigned int unit, bool *ok)
{
    return readRow(findUnit(unit), ok, bytesOf);
}

unsigned int CUnitParser::size(const QString &unitName, bool *ok)
{
    // Contract: an unknown name is UNIT_UNKNOWN, a known unit of size 0, so that 'ok' ends true.
    return size(strToUnit(unitName, ok), ok);
}

QString CUnitParser::unitToStr(NUnits::EObjectUnit unit, bool *ok)
{
    const auto found = mcUNIT_TO_STR_MAP.constFind(unit); // to share its text
    const bool isFound = found != mcUNIT_TO_STR_MAP.constEnd();
    if (ok)
        *ok = isFound;
    return isFound ? *found : QString();
}

NUnits::EObjectUnit CUnitParser::strToUnit(const QString &name, bool *ok)
{
    return readRow(kUnitNames.find(name), ok, [](const UnitRow &row) { return row.unit; });
}

QMap<QString, NTypes::ETypes> CUnitParser::initTypeMap()
{
    QMap<QString, NTypes::ETypes> map;
    for (const TypeTable::Row &row : TypeTable::kRows) {
        if (row.holdsValues)
            map.insert(row.name, row.type);
    }
    return map;
}

QMap<NUnits::EObjectUnit, QString> CUnitParser::initUnitToStr()
{
    QMap<NUnits::EObjectUnit, QString> map;
    for (const UnitRow &row : kUnits)
        map.insert(map.cend(), row.unit, row.name);
    return map;
}

QMap<QString, NUnits::EObjectUnit> CUnitParser::initStrToUnit()
{
    QMap<QString, NUnits::EObjectUnit> map;
    for (auto it = mcUNIT_TO_STR_MAP.cbegin(); it != mcUNIT_TO_STR_MAP.cend(); ++it)
        map.insert(it.value(), it.key());
    return map;
}
