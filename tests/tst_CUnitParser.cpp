#include "CUnitParser.h"

#include "InThreads.h"
#include "MessageRecorder.h"
#include "k7eGlobal.h"

#include <QStringList>
#include <QVariant>
#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>
#include <type_traits>

using namespace NTypes;
using namespace NUnits;

namespace {

// Any 32-bit code that was read from a stream is a value of the enumerations.
static_assert(std::is_same_v<std::underlying_type_t<ETypes>, int>);
static_assert(std::is_same_v<std::underlying_type_t<EObjectUnit>, int>);
// Plain enumerations: programs use the codes as integers.
static_assert(std::is_convertible_v<ETypes, int>);
static_assert(std::is_convertible_v<EObjectUnit, int>);

static_assert(!std::is_default_constructible_v<CUnitParser>);
static_assert(std::is_const_v<decltype(CUnitParser::mcTYPE_MAP)>);
static_assert(std::is_const_v<decltype(CUnitParser::mcUNIT_TO_STR_MAP)>);
static_assert(std::is_const_v<decltype(CUnitParser::mcSTR_TO_UNIT_MAP)>);

// The record is the image of 8 bytes on the device.
static_assert(sizeof(tsTime) == 4 && sizeof(tsDate) == 4 && sizeof(tsDateTime) == 8);
static_assert(offsetof(tsDateTime, time) == 0 && offsetof(tsDateTime, date) == 4);
static_assert(offsetof(tsTime, hundredths) == 0 && offsetof(tsTime, seconds) == 1);
static_assert(offsetof(tsTime, minutes) == 2 && offsetof(tsTime, hours) == 3);
static_assert(offsetof(tsDate, day) == 0 && offsetof(tsDate, month) == 1);
static_assert(offsetof(tsDate, year) == 2);
static_assert(std::is_standard_layout_v<tsTime> && std::is_trivially_copyable_v<tsTime>);
static_assert(std::is_standard_layout_v<tsDate> && std::is_trivially_copyable_v<tsDate>);
static_assert(std::is_standard_layout_v<tsDateTime> && std::is_trivially_copyable_v<tsDateTime>);
static_assert(std::is_same_v<decltype(tsDateTime::time), tsTime>);
static_assert(std::is_same_v<decltype(tsDateTime::date), tsDate>);
static_assert(std::is_same_v<decltype(tsTime::hundredths), signed char>);
static_assert(std::is_same_v<decltype(tsTime::seconds), signed char>);
static_assert(std::is_same_v<decltype(tsTime::minutes), signed char>);
static_assert(std::is_same_v<decltype(tsTime::hours), signed char>);
static_assert(std::is_same_v<decltype(tsDate::day), signed char>);
static_assert(std::is_same_v<decltype(tsDate::month), signed char>);
static_assert(std::is_same_v<decltype(tsDate::year), short>);

struct Type
{
    int code;
    ETypes type;
    const char *name;
    bool inMap;
};

constexpr Type kTypes[] = {
    {0, TYPE_UNKNOWN, "UNKNOWN", false},
    {1, TYPE_U8, "U8", true},
    {2, TYPE_I8, "I8", true},
    {3, TYPE_U16, "U16", true},
    {4, TYPE_I16, "I16", true},
    {5, TYPE_U32, "U32", true},
    {6, TYPE_I32, "I32", true},
    {7, TYPE_F32, "F32", true},
    {8, TYPE_U64, "U64", true},
    {9, TYPE_I64, "I64", true},
    {10, TYPE_F64, "F64", true},
    {11, TYPE_F80, "F80", false},
    {12, TYPE_STRING32, "STRING32", true},
    {13, TYPE_CHARSTR64, "CHARSTR64", true},
    {14, TYPE_STRING128, "STRING128", true},
    {15, TYPE_CHARSTR256, "CHARSTR256", true},
    {16, TYPE_DATETIME, "DATETIME", true},
    {17, TYPE_STRING64, "STRING64", true},
    {18, TYPE_CHARSTR128, "CHARSTR128", true},
    {19, TYPE_UTF16CHAR, "UTF16CHAR", true},
    {20, TYPE_CHAR, "CHAR", true},
};
static_assert(std::size(kTypes) == 21);

struct Unit
{
    int code;
    EObjectUnit unit;
    const char *name;
    unsigned int size;
    ETypes type;
};

constexpr Unit kUnits[] = {
    {0, UNIT_UNKNOWN, "UNIT_UNKNOWN", 0, TYPE_UNKNOWN},
    {1, UNIT_U8, "UNIT_U8", 1, TYPE_U8},
    {2, UNIT_I8, "UNIT_I8", 1, TYPE_I8},
    {3, UNIT_U16, "UNIT_U16", 2, TYPE_U16},
    {4, UNIT_I16, "UNIT_I16", 2, TYPE_I16},
    {5, UNIT_U32, "UNIT_U32", 4, TYPE_U32},
    {6, UNIT_I32, "UNIT_I32", 4, TYPE_I32},
    {7, UNIT_F32, "UNIT_F32", 4, TYPE_F32},
    {8, UNIT_U64, "UNIT_U64", 8, TYPE_U64},
    {9, UNIT_I64, "UNIT_I64", 8, TYPE_I64},
    {10, UNIT_F64, "UNIT_F64", 8, TYPE_F64},
    {11, UNIT_F80, "UNIT_F80", 10, TYPE_UNKNOWN},
    {12, UNIT_STRING32, "UNIT_STRING32", 64, TYPE_STRING32},
    {13, UNIT_CHARSTR64, "UNIT_CHARSTR64", 64, TYPE_CHARSTR64},
    {14, UNIT_STRING128, "UNIT_STRING128", 256, TYPE_STRING128},
    {15, UNIT_CHARSTR256, "UNIT_CHARSTR256", 256, TYPE_CHARSTR256},
    {16, UNIT_I_FRAC, "UNIT_I_FRAC", 2, TYPE_I16},
    {17, UNIT_U_FRAC, "UNIT_U_FRAC", 2, TYPE_I16},
    {18, UNIT_R_FRAC, "UNIT_R_FRAC", 2, TYPE_I16},
    {19, UNIT_P_FRAC, "UNIT_P_FRAC", 2, TYPE_I16},
    {20, UNIT_S_FRAC, "UNIT_S_FRAC", 2, TYPE_I16},
    {21, UNIT_V_FRAC, "UNIT_V_FRAC", 2, TYPE_I16},
    {22, UNIT_A_FRAC, "UNIT_A_FRAC", 2, TYPE_I16},
    {23, UNIT_JERK_FRAC, "UNIT_JERK_FRAC", 2, TYPE_I16},
    {24, UNIT_TIME_FRAC, "UNIT_TIME_FRAC", 2, TYPE_I16},
    {25, UNIT_TEMPERATURE_FRAC, "UNIT_TEMPERATURE_FRAC", 2, TYPE_I16},
    {26, UNIT_PHI_FRAC, "UNIT_PHI_FRAC", 2, TYPE_I16},
    {27, UNIT_OMEGA_FRAC, "UNIT_OMEGA_FRAC", 2, TYPE_I16},
    {28, UNIT_ALPHA_FRAC, "UNIT_ALPHA_FRAC", 2, TYPE_I16},
    {29, UNIT_V_PER_A_FRAC, "UNIT_V_PER_A_FRAC", 2, TYPE_I16},
    {30, UNIT_FREQ_FRAC, "UNIT_FREQ_FRAC", 2, TYPE_I16},
    {31, UNIT_F_FRAC, "UNIT_F_FRAC", 2, TYPE_I16},
    {32, UNIT_M_FRAC, "UNIT_M_FRAC", 2, TYPE_I16},
    {33, UNIT_N_PER_A_FRAC, "UNIT_N_PER_A_FRAC", 2, TYPE_I16},
    {34, UNIT_NM_PER_A_FRAC, "UNIT_NM_PER_A_FRAC", 2, TYPE_I16},
    {35, UNIT_res35, "UNIT_res35", 2, TYPE_I16},
    {36, UNIT_PERCENT_FRAC, "UNIT_PERCENT_FRAC", 2, TYPE_I16},
    {37, UNIT_J_FRAC, "UNIT_J_FRAC", 2, TYPE_I16},
    {38, UNIT_MASS_FRAC, "UNIT_MASS_FRAC", 2, TYPE_I16},
    {39, UNIT_FAULT, "UNIT_FAULT", 4, TYPE_U32},
    {40, UNIT_U_PC_P, "UNIT_U_PC_P", 8, TYPE_F64},
    {41, UNIT_U_POS, "UNIT_U_POS", 8, TYPE_F64},
    {42, UNIT_U_VEL, "UNIT_U_VEL", 8, TYPE_F64},
    {43, UNIT_U_ACC, "UNIT_U_ACC", 8, TYPE_F64},
    {44, UNIT_U_JERK, "UNIT_U_JERK", 8, TYPE_F64},
    {45, UNIT_U_MF, "UNIT_U_MF", 8, TYPE_F64},
    {46, UNIT_U_VC_P, "UNIT_U_VC_P", 8, TYPE_F64},
    {47, UNIT_U_TC_P, "UNIT_U_TC_P", 8, TYPE_F64},
    {48, UNIT_U_100mV, "UNIT_U_100mV", 2, TYPE_I16},
    {49, UNIT_I_1mA, "UNIT_I_1mA", 4, TYPE_I32},
    {50, UNIT_T_100mDegree, "UNIT_T_100mDegree", 2, TYPE_I16},
    {51, UNIT_R_1mOhm, "UNIT_R_1mOhm", 4, TYPE_I32},
    {52, UNIT_L_1uHenry, "UNIT_L_1uHenry", 4, TYPE_I32},
    {53, UNIT_C_1uFarad, "UNIT_C_1uFarad", 4, TYPE_I32},
    {54, UNIT_P_1mWatt, "UNIT_P_1mWatt", 4, TYPE_I32},
    {55, UNIT_T_Degree, "UNIT_T_Degree", 2, TYPE_I16},
    {56, UNIT_56, "UNIT_56", 4, TYPE_I32},
    {57, UNIT_57, "UNIT_57", 4, TYPE_I32},
    {58, UNIT_58, "UNIT_58", 4, TYPE_I32},
    {59, UNIT_59, "UNIT_59", 4, TYPE_I32},
    {60, UNIT_60, "UNIT_60", 4, TYPE_I32},
    {61, UNIT_61, "UNIT_61", 4, TYPE_I32},
    {62, UNIT_62, "UNIT_62", 4, TYPE_I32},
    {63, UNIT_63, "UNIT_63", 4, TYPE_I32},
    {64, UNIT_S_INC_32x32, "UNIT_S_INC_32x32", 8, TYPE_I64},
    {65, UNIT_V_INC_PER_SAMPLE_32x32, "UNIT_V_INC_PER_SAMPLE_32x32", 8, TYPE_I64},
    {66, UNIT_A_INC_PER_SAMPLE2_32x32, "UNIT_A_INC_PER_SAMPLE2_32x32", 8, TYPE_I64},
    {67, UNIT_JERK_INC_PER_SAMPLE3_32x32, "UNIT_JERK_INC_PER_SAMPLE3_32x32", 8, TYPE_I64},
    {68, UNIT_T_SAMPLE, "UNIT_T_SAMPLE", 4, TYPE_I32},
    {69, UNIT_69, "UNIT_69", 4, TYPE_I32},
    {70, UNIT_70, "UNIT_70", 4, TYPE_I32},
    {71, UNIT_71, "UNIT_71", 4, TYPE_I32},
    {72, UNIT_72, "UNIT_72", 4, TYPE_I32},
    {73, UNIT_73, "UNIT_73", 4, TYPE_I32},
    {74, UNIT_74, "UNIT_74", 4, TYPE_I32},
    {75, UNIT_75, "UNIT_75", 4, TYPE_I32},
    {76, UNIT_76, "UNIT_76", 4, TYPE_I32},
    {77, UNIT_77, "UNIT_77", 4, TYPE_I32},
    {78, UNIT_78, "UNIT_78", 4, TYPE_I32},
    {79, UNIT_79, "UNIT_79", 4, TYPE_I32},
    {80, UNIT_DATE_TIME, "UNIT_DATE_TIME", 8, TYPE_DATETIME},
    {81, UNIT_STRING64, "UNIT_STRING64", 128, TYPE_STRING64},
    {82, UNIT_CHARSTR128, "UNIT_CHARSTR128", 128, TYPE_CHARSTR128},
    {83, UNIT_UTF16CHAR, "UNIT_UTF16CHAR", 2, TYPE_UTF16CHAR},
    {84, UNIT_CHAR, "UNIT_CHAR", 1, TYPE_CHAR},
    {85, UNIT_85, "UNIT_85", 4, TYPE_I32},
    {86, UNIT_86, "UNIT_86", 4, TYPE_I32},
    {87, UNIT_87, "UNIT_87", 4, TYPE_I32},
    {88, UNIT_88, "UNIT_88", 4, TYPE_I32},
    {89, UNIT_Volt_per_Ampere, "UNIT_Volt_per_Ampere", 8, TYPE_F64},
    {90, UNIT_Ampere, "UNIT_Ampere", 8, TYPE_F64},
    {91, UNIT_Volt, "UNIT_Volt", 8, TYPE_F64},
    {92, UNIT_Ohm, "UNIT_Ohm", 8, TYPE_F64},
    {93, UNIT_Watt, "UNIT_Watt", 8, TYPE_F64},
    {94, UNIT_uFarad, "UNIT_uFarad", 8, TYPE_F64},
    {95, UNIT_uHenry, "UNIT_uHenry", 8, TYPE_F64},
    {96, UNIT_mHenry, "UNIT_mHenry", 8, TYPE_F64},
    {97, UNIT_Hours, "UNIT_Hours", 8, TYPE_F64},
    {98, UNIT_mSeconds, "UNIT_mSeconds", 8, TYPE_F64},
    {99, UNIT_Newton, "UNIT_Newton", 8, TYPE_F64},
    {100, UNIT_NewtonMeter, "UNIT_NewtonMeter", 8, TYPE_F64},
    {101, UNIT_mMeter, "UNIT_mMeter", 8, TYPE_F64},
    {102, UNIT_RPM, "UNIT_RPM", 8, TYPE_F64},
    {103, UNIT_Meter_per_Second, "UNIT_Meter_per_Second", 8, TYPE_F64},
    {104, UNIT_DegreeCelsius, "UNIT_DegreeCelsius", 8, TYPE_F64},
    {105, UNIT_Degree, "UNIT_Degree", 8, TYPE_F64},
    {106, UNIT_Rad, "UNIT_Rad", 8, TYPE_F64},
    {107, UNIT_kg, "UNIT_kg", 8, TYPE_F64},
    {108, UNIT_NewtonMeter_cMeter2, "UNIT_NewtonMeter_cMeter2", 8, TYPE_F64},
    {109, UNIT_Meter, "UNIT_Meter", 8, TYPE_F64},
    {110, UNIT_Nm_per_Ampere, "UNIT_Nm_per_Ampere", 8, TYPE_F64},
    {111, UNIT_N_per_Ampere, "UNIT_N_per_Ampere", 8, TYPE_F64},
    {112, UNIT_Volt_per_krpm, "UNIT_Volt_per_krpm", 8, TYPE_F64},
    {113, UNIT_VoltSeconds_per_Meter, "UNIT_VoltSeconds_per_Meter", 8, TYPE_F64},
    {114, UNIT_NewtonSeconds_per_rad, "UNIT_NewtonSeconds_per_rad", 8, TYPE_F64},
    {115, UNIT_Meter_per_Seconds, "UNIT_Meter_per_Seconds", 8, TYPE_F64},
    {116, UNIT_Meter_per_Seconds2, "UNIT_Meter_per_Seconds2", 8, TYPE_F64},
    {117, UNIT_Meter_per_Seconds3, "UNIT_Meter_per_Seconds3", 8, TYPE_F64},
    {118, UNIT_Revolutions_per_Seconds2, "UNIT_Revolutions_per_Seconds2", 8, TYPE_F64},
    {119, UNIT_Revolutions_per_Seconds3, "UNIT_Revolutions_per_Seconds3", 8, TYPE_F64},
    {120, UNIT_Hertz, "UNIT_Hertz", 8, TYPE_F64},
    {121, UNIT_A, "UNIT_A", 8, TYPE_F64},
    {122, UNIT_V, "UNIT_V", 8, TYPE_F64},
    {123, UNIT_W, "UNIT_W", 8, TYPE_F64},
    {124, UNIT_P, "UNIT_P", 8, TYPE_F64},
    {125, UNIT_J, "UNIT_J", 8, TYPE_F64},
};
static_assert(std::size(kUnits) == 126);

// Programs may read the maps in their own static initialisers.
const QMap<QString, ETypes> kTypeMapBeforeMain = CUnitParser::mcTYPE_MAP;
const QMap<EObjectUnit, QString> kUnitToStrBeforeMain = CUnitParser::mcUNIT_TO_STR_MAP;
const QMap<QString, EObjectUnit> kStrToUnitBeforeMain = CUnitParser::mcSTR_TO_UNIT_MAP;

QMap<QString, ETypes> expectedTypeMap()
{
    QMap<QString, ETypes> map;
    for (const Type &type : kTypes) {
        if (type.inMap)
            map.insert(QLatin1String(type.name), type.type);
    }
    return map;
}

QMap<EObjectUnit, QString> expectedUnitToStr()
{
    QMap<EObjectUnit, QString> map;
    for (const Unit &unit : kUnits)
        map.insert(unit.unit, QLatin1String(unit.name));
    return map;
}

QMap<QString, EObjectUnit> expectedStrToUnit()
{
    QMap<QString, EObjectUnit> map;
    for (const Unit &unit : kUnits)
        map.insert(QLatin1String(unit.name), unit.unit);
    return map;
}

enum Flag { Set, Cleared, Kept };

QString shown(const QString &text)
{
    return text.isNull() ? QStringLiteral("null") : QLatin1Char('"') + text + QLatin1Char('"');
}

template <class Number>
QString shown(Number number)
{
    return QString::number(static_cast<qlonglong>(number));
}

QString shown(const QString &withoutFlag, const QString &withFalse, bool wasFalse,
              const QString &withTrue, bool wasTrue)
{
    return QStringLiteral("%1 without a flag; %2, false -> %3; %4, true -> %5")
        .arg(withoutFlag, withFalse, QString::number(wasFalse), withTrue, QString::number(wasTrue));
}

//! Shows what \a lookUp returns without a flag and with one of either value, and what becomes of
//! it.
template <class LookUp>
QString outcome(LookUp lookUp)
{
    bool wasFalse = false;
    bool wasTrue = true;
    const QString withoutFlag = shown(lookUp(nullptr));
    const QString withFalse = shown(lookUp(&wasFalse));
    const QString withTrue = shown(lookUp(&wasTrue));
    return shown(withoutFlag, withFalse, wasFalse, withTrue, wasTrue);
}

//! Shows the outcome of a look-up that always returns \a result.
template <class Result>
QString expected(const Result &result, int flag)
{
    return shown(shown(result), shown(result), flag == Set, shown(result), flag != Cleared);
}

void unitRows()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<unsigned int>("size");
    QTest::addColumn<int>("type");
    for (const Unit &unit : kUnits)
        QTest::addRow("%d %s", unit.code, unit.name) << unit.code << QString::fromLatin1(unit.name)
                                                     << unit.size << static_cast<int>(unit.type);
}

void unknownCodeRows()
{
    QTest::addColumn<int>("code");
    QTest::newRow("-1") << -1;
    QTest::newRow("-2") << -2;
    QTest::newRow("-80, the date-time negated") << -80;
    QTest::newRow("-126") << -126;
    QTest::newRow("126, one past the last") << 126;
    QTest::newRow("127") << 127;
    QTest::newRow("128, negative in 8 bits") << 128;
    QTest::newRow("255") << 255;
    QTest::newRow("256, 0 in 8 bits") << 256;
    QTest::newRow("257, 1 in 8 bits") << 257;
    QTest::newRow("336, 80 in 8 bits") << 336;
    QTest::newRow("32768, negative in 16 bits") << 32768;
    QTest::newRow("65535, -1 in 16 bits") << 65535;
    QTest::newRow("65536, 0 in 16 bits") << 65536;
    QTest::newRow("65616, 80 in 16 bits") << 65616;
    QTest::newRow("0x7FFFFFFF") << std::numeric_limits<int>::max();
    QTest::newRow("0x80000000") << std::numeric_limits<int>::min();
    QTest::newRow("0x80000001, 1 without the sign") << std::numeric_limits<int>::min() + 1;
    QTest::newRow("0x80000050, 80 without the sign") << std::numeric_limits<int>::min() + 80;
}

//! Names that no unit has; "typeFlag" is what becomes of the flag of the look-up of the type.
void unknownNameRows()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("typeFlag");
    const QString u8 = QStringLiteral("UNIT_U8");
    QTest::newRow("null") << QString() << int(Kept);
    QTest::newRow("empty") << QStringLiteral("") << int(Kept);
    QTest::newRow("lower case unit_u8") << QStringLiteral("unit_u8") << int(Kept);
    QTest::newRow("lower case unit_volt") << QStringLiteral("unit_volt") << int(Kept);
    QTest::newRow("mixed case Unit_U8") << QStringLiteral("Unit_U8") << int(Kept);
    QTest::newRow("XUNIT_U8, prefix not in front") << QStringLiteral("XUNIT_U8") << int(Kept);
    QTest::newRow("blank in front") << QString(QLatin1Char(' ') + u8) << int(Kept);
    QTest::newRow("zero unit in front") << QString(QChar(0) + u8) << int(Kept);
    QTest::newRow("U8, without the prefix") << QStringLiteral("U8") << int(Kept);
    QTest::newRow("UNI") << QStringLiteral("UNI") << int(Kept);
    QTest::newRow("Volt") << QStringLiteral("Volt") << int(Kept);
    QTest::newRow("UNIT alone") << QStringLiteral("UNIT") << int(Cleared);
    QTest::newRow("UNIT_ alone") << QStringLiteral("UNIT_") << int(Cleared);
    QTest::newRow("UNIT_FOO") << QStringLiteral("UNIT_FOO") << int(Cleared);
    QTest::newRow("UNIT_u8, lower case behind the prefix")
        << QStringLiteral("UNIT_u8") << int(Cleared);
    QTest::newRow("UNIT_VOLT, upper case") << QStringLiteral("UNIT_VOLT") << int(Cleared);
    QTest::newRow("UNIT_RES35, upper case") << QStringLiteral("UNIT_RES35") << int(Cleared);
    QTest::newRow("UNIT_U, a name cut short") << QStringLiteral("UNIT_U") << int(Cleared);
    QTest::newRow("UNIT_U88, a name continued") << QStringLiteral("UNIT_U88") << int(Cleared);
    QTest::newRow("UNIT_55, a number whose unit has a name")
        << QStringLiteral("UNIT_55") << int(Cleared);
    QTest::newRow("UNIT_126") << QStringLiteral("UNIT_126") << int(Cleared);
    QTest::newRow("UNIT_L_1\\u00b5Henry") << QStringLiteral("UNIT_L_1\u00b5Henry") << int(Cleared);
    QTest::newRow("trailing blank") << QString(u8 + QLatin1Char(' ')) << int(Cleared);
    QTest::newRow("trailing newline") << QString(u8 + QLatin1Char('\n')) << int(Cleared);
    QTest::newRow("trailing zero unit") << QString(u8 + QChar(0)) << int(Cleared);
    QTest::newRow("zero unit inside") << QString(u8 + QChar(0) + u8) << int(Cleared);
}

} // namespace

class tst_CUnitParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codesOfTypes_data();
    void codesOfTypes();
    void codesOfUnits_data() { unitRows(); }
    void codesOfUnits();

    void typeMap();
    void typeMapValue_data();
    void typeMapValue();

    void typeOfCode_data() { unitRows(); }
    void typeOfCode();
    void sizeOfCode_data() { unitRows(); }
    void sizeOfCode();
    void nameOfCode_data() { unitRows(); }
    void nameOfCode();
    void unknownCode_data() { unknownCodeRows(); }
    void unknownCode();

    void checkUnitStr_data();
    void checkUnitStr();
    void typeOfName_data() { unitRows(); }
    void typeOfName();
    void sizeOfName_data() { unitRows(); }
    void sizeOfName();
    void codeOfName_data() { unitRows(); }
    void codeOfName();
    void typeOfUnknownName_data() { unknownNameRows(); }
    void typeOfUnknownName();
    void sizeOfUnknownName_data() { unknownNameRows(); }
    void sizeOfUnknownName();
    void codeOfUnknownName_data() { unknownNameRows(); }
    void codeOfUnknownName();
    void flagMayBeOmitted();

    void unitMaps();
    void mapsAreCompleteBeforeMain();
    void builtMapsAreCopies();

    void dateTimeIsZeroByDefault();
    void dateTimeBytes();
    void dateTimeMetaType();
    void dateTimeInVariant();

    void noMessages();
    void threads();
};

void tst_CUnitParser::codesOfTypes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("code");
    for (const Type &type : kTypes)
        QTest::newRow(type.name) << static_cast<int>(type.type) << type.code;
}

void tst_CUnitParser::codesOfTypes()
{
    QFETCH(int, type);
    QTEST(type, "code");
}

void tst_CUnitParser::codesOfUnits()
{
    QFETCH(int, code);
    QCOMPARE(static_cast<int>(kUnits[code].unit), code);
}

void tst_CUnitParser::typeMap()
{
    QCOMPARE(CUnitParser::mcTYPE_MAP.size(), 19);
    QCOMPARE(CUnitParser::mcTYPE_MAP, expectedTypeMap());
    QCOMPARE(CUnitParser::initTypeMap(), expectedTypeMap());
}

void tst_CUnitParser::typeMapValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("contained");
    QTest::addColumn<int>("code");
    for (const Type &type : kTypes)
        QTest::newRow(type.name) << QString::fromLatin1(type.name) << type.inMap
                                 << (type.inMap ? type.code : 0);
    QTest::newRow("u8, lower case") << QStringLiteral("u8") << false << 0;
    QTest::newRow("trailing blank") << QStringLiteral("U8 ") << false << 0;
    QTest::newRow("TYPE_U8, the enumerator") << QStringLiteral("TYPE_U8") << false << 0;
    QTest::newRow("empty") << QStringLiteral("") << false << 0;
}

void tst_CUnitParser::typeMapValue()
{
    QFETCH(QString, name);
    QTEST(CUnitParser::mcTYPE_MAP.contains(name), "contained");
    QTEST(static_cast<int>(CUnitParser::mcTYPE_MAP.value(name)), "code");
}

void tst_CUnitParser::typeOfCode()
{
    QFETCH(int, code);
    QFETCH(int, type);
    const auto unit = static_cast<EObjectUnit>(code);
    const auto raw = static_cast<unsigned int>(code);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(unit, ok); }), expected(type, Set));
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(raw, ok); }), expected(type, Set));
}

void tst_CUnitParser::sizeOfCode()
{
    QFETCH(int, code);
    QFETCH(unsigned int, size);
    const auto unit = static_cast<EObjectUnit>(code);
    const auto raw = static_cast<unsigned int>(code);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(unit, ok); }), expected(size, Set));
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(raw, ok); }), expected(size, Set));
}

void tst_CUnitParser::nameOfCode()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    const auto unit = static_cast<EObjectUnit>(code);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::unitToStr(unit, ok); }),
             expected(name, Set));
}

void tst_CUnitParser::unknownCode()
{
    QFETCH(int, code);
    const auto unit = static_cast<EObjectUnit>(code);
    const auto raw = static_cast<unsigned int>(code);
    const QString unknownType = expected(0, Cleared);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(unit, ok); }), unknownType);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(raw, ok); }), unknownType);
    const QString noSize = expected(0, Cleared);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(unit, ok); }), noSize);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(raw, ok); }), noSize);
    const QString nullName = expected(QString(), Cleared);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::unitToStr(unit, ok); }), nullName);
}

void tst_CUnitParser::checkUnitStr_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isUnit");
    QTest::newRow("UNIT alone") << QStringLiteral("UNIT") << true;
    QTest::newRow("UNIT_U8") << QStringLiteral("UNIT_U8") << true;
    QTest::newRow("UNIT_FOO, no unit") << QStringLiteral("UNIT_FOO") << true;
    QTest::newRow("UNITS") << QStringLiteral("UNITS") << true;
    QTest::newRow("UNIT and a blank") << QStringLiteral("UNIT ") << true;
    QTest::newRow("XUNIT_U8, inside") << QStringLiteral("XUNIT_U8") << false;
    QTest::newRow("blank in front") << QStringLiteral(" UNIT_U8") << false;
    QTest::newRow("unit_u8, lower case") << QStringLiteral("unit_u8") << false;
    QTest::newRow("Unit") << QStringLiteral("Unit") << false;
    QTest::newRow("UNIt, last letter") << QStringLiteral("UNIt") << false;
    QTest::newRow("UNI, too short") << QStringLiteral("UNI") << false;
    QTest::newRow("full-width letters") << QStringLiteral("\uff35\uff2e\uff29\uff34_U8") << false;
    QTest::newRow("empty") << QStringLiteral("") << false;
    QTest::newRow("null") << QString() << false;
}

void tst_CUnitParser::checkUnitStr()
{
    QFETCH(QString, text);
    QTEST(CUnitParser::checkUnitStr(text), "isUnit");
}

void tst_CUnitParser::typeOfName()
{
    QFETCH(QString, name);
    QFETCH(int, type);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(name, ok); }), expected(type, Set));
}

void tst_CUnitParser::sizeOfName()
{
    QFETCH(QString, name);
    QFETCH(unsigned int, size);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(name, ok); }), expected(size, Set));
}

void tst_CUnitParser::codeOfName()
{
    QFETCH(int, code);
    QFETCH(QString, name);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::strToUnit(name, ok); }),
             expected(code, Set));
}

void tst_CUnitParser::typeOfUnknownName()
{
    QFETCH(QString, name);
    QFETCH(int, typeFlag);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::type(name, ok); }), expected(0, typeFlag));
}

// An unknown name counts as the known unit 0, whose size is 0.
void tst_CUnitParser::sizeOfUnknownName()
{
    QFETCH(QString, name);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::size(name, ok); }), expected(0, Set));
}

void tst_CUnitParser::codeOfUnknownName()
{
    QFETCH(QString, name);
    QCOMPARE(outcome([&](bool *ok) { return CUnitParser::strToUnit(name, ok); }),
             expected(0, Cleared));
}

void tst_CUnitParser::flagMayBeOmitted()
{
    const QString name = QStringLiteral("UNIT_DATE_TIME");
    QCOMPARE(CUnitParser::type(UNIT_DATE_TIME), TYPE_DATETIME);
    QCOMPARE(CUnitParser::type(80U), TYPE_DATETIME);
    QCOMPARE(CUnitParser::type(80), TYPE_DATETIME); // a plain literal is a raw code
    QCOMPARE(CUnitParser::type(name), TYPE_DATETIME);
    QCOMPARE(CUnitParser::size(UNIT_DATE_TIME), 8U);
    QCOMPARE(CUnitParser::size(80U), 8U);
    QCOMPARE(CUnitParser::size(80), 8U);
    QCOMPARE(CUnitParser::size(name), 8U);
    QCOMPARE(CUnitParser::unitToStr(UNIT_DATE_TIME), name);
    QCOMPARE(CUnitParser::strToUnit(name), UNIT_DATE_TIME);
}

void tst_CUnitParser::unitMaps()
{
    QCOMPARE(CUnitParser::mcUNIT_TO_STR_MAP.size(), 126);
    QCOMPARE(CUnitParser::mcUNIT_TO_STR_MAP, expectedUnitToStr());
    QCOMPARE(CUnitParser::initUnitToStr(), expectedUnitToStr());
    QCOMPARE(CUnitParser::mcSTR_TO_UNIT_MAP.size(), 126);
    QCOMPARE(CUnitParser::mcSTR_TO_UNIT_MAP, expectedStrToUnit());
    QCOMPARE(CUnitParser::initStrToUnit(), expectedStrToUnit());
}

void tst_CUnitParser::mapsAreCompleteBeforeMain()
{
    QCOMPARE(kTypeMapBeforeMain, expectedTypeMap());
    QCOMPARE(kUnitToStrBeforeMain, expectedUnitToStr());
    QCOMPARE(kStrToUnitBeforeMain, expectedStrToUnit());
}

void tst_CUnitParser::builtMapsAreCopies()
{
    auto types = CUnitParser::initTypeMap();
    types.clear();
    auto names = CUnitParser::initUnitToStr();
    names[UNIT_U8].clear();
    auto units = CUnitParser::initStrToUnit();
    units.remove(QStringLiteral("UNIT_U8"));
    QCOMPARE(CUnitParser::mcTYPE_MAP, expectedTypeMap());
    QCOMPARE(CUnitParser::mcUNIT_TO_STR_MAP, expectedUnitToStr());
    QCOMPARE(CUnitParser::mcSTR_TO_UNIT_MAP, expectedStrToUnit());
}

void tst_CUnitParser::dateTimeIsZeroByDefault()
{
    alignas(tsDateTime) unsigned char memory[sizeof(tsDateTime)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xff));
    new (memory) tsDateTime; // without parentheses: garbage unless its members have initialisers
    QVERIFY(std::all_of(std::begin(memory), std::end(memory), [](int byte) { return byte == 0; }));
}

void tst_CUnitParser::dateTimeBytes()
{
    tsDateTime value;
    value.time = {-1, 2, 3, 4};
    value.date = {5, 6, qToLittleEndian<qint16>(2014)}; // 0x07de
    const QByteArray bytes(reinterpret_cast<const char *>(&value), sizeof(value));
    QCOMPARE(bytes.toHex(' '), QByteArrayLiteral("ff 02 03 04 05 06 de 07"));
}

void tst_CUnitParser::dateTimeMetaType()
{
    const int id = qMetaTypeId<tsDateTime>();
    QVERIFY(id >= static_cast<int>(QMetaType::User));
    QCOMPARE(QMetaType::typeName(id), "NTypes::tsDateTime");
    QCOMPARE(QMetaType::type("NTypes::tsDateTime"), id);
    QCOMPARE(QMetaType::sizeOf(id), 8);
    const QMetaType::TypeFlags flags = QMetaType::typeFlags(id);
    QVERIFY(flags & QMetaType::NeedsConstruction);
    QVERIFY(flags & QMetaType::NeedsDestruction);

    alignas(tsDateTime) unsigned char memory[sizeof(tsDateTime)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xff));
    QCOMPARE(QMetaType::construct(id, memory, nullptr), static_cast<void *>(memory));
    QVERIFY(std::all_of(std::begin(memory), std::end(memory), [](int byte) { return byte == 0; }));
    QMetaType::destruct(id, memory);
}

void tst_CUnitParser::dateTimeInVariant()
{
    tsDateTime value;
    value.time = {99, 59, 58, 23};
    value.date = {31, 12, -2014};
    const QVariant variant = QVariant::fromValue(value);
    QCOMPARE(variant.typeName(), "NTypes::tsDateTime");
    QVERIFY(variant.canConvert<tsDateTime>());
    const auto back = variant.value<tsDateTime>();
    QCOMPARE(std::memcmp(&back, &value, sizeof(value)), 0);
    const auto none = QVariant().value<tsDateTime>();
    const tsDateTime zero;
    QCOMPARE(std::memcmp(&none, &zero, sizeof(zero)), 0);
}

void tst_CUnitParser::noMessages()
{
    const MessageRecorder recorder;
    const auto unit = static_cast<EObjectUnit>(-1);
    const QString name = QStringLiteral("UNIT_FOO");
    bool ok = true;
    CUnitParser::type(unit, &ok);
    CUnitParser::type(126U, &ok);
    CUnitParser::type(name, &ok);
    CUnitParser::type(QString(), &ok);
    CUnitParser::size(unit, &ok);
    CUnitParser::size(126U, &ok);
    CUnitParser::size(name, &ok);
    CUnitParser::unitToStr(unit, &ok);
    CUnitParser::strToUnit(name, &ok);
    QCOMPARE(recorder.messages(), QStringList());
}

void tst_CUnitParser::threads()
{
    QVERIFY(trueInThreads([] {
        return std::all_of(std::begin(kUnits), std::end(kUnits), [](const Unit &unit) {
            const QString name = CUnitParser::unitToStr(unit.unit);
            return name == QLatin1String(unit.name) && CUnitParser::strToUnit(name) == unit.unit
                && CUnitParser::type(name) == unit.type && CUnitParser::size(name) == unit.size
                && qMetaTypeId<tsDateTime>() >= static_cast<int>(QMetaType::User);
        });
    }));
}

QTEST_APPLESS_MAIN(tst_CUnitParser)

#include "tst_CUnitParser.moc"
