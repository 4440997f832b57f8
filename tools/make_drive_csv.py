#!/usr/bin/env python3
"""Writes examples/drive.csv, the object list of an invented servo drive, to standard output.

    tools/make_drive_csv.py > examples/drive.csv

With --check FILE it writes nothing and fails unless FILE is that list.

The values stand here in readable form; the list holds their bytes as they lie on the device, low
byte first. Between them the objects have every data type and more than 40 units; where a value looks
strange it is meant to: the ends of the ranges, infinities, texts that fill their array, texts with
something behind their terminator, dates that no calendar knows.
"""

import argparse
import struct
import sys


def number(code):
    return lambda value: struct.pack("<" + code, value)


U8, I8, U16, I16 = number("B"), number("b"), number("H"), number("h")
U32, I32, U64, I64 = number("I"), number("i"), number("Q"), number("q")
F32, F64 = number("f"), number("d")


def text16(units):
    """A text of UTF-16 units in an array of that many; tail is what lies behind the terminator."""

    def encode(text, tail=""):
        image = (text + ("\0" + tail if tail else "")).encode("utf-16-le")
        assert len(image) <= 2 * units, text
        return image.ljust(2 * units, b"\0")

    return encode


def text8(size):
    """A text of 8-bit characters, UTF-8, in an array of that many bytes."""

    def encode(text, tail=b""):
        image = text.encode() + (b"\0" + tail if tail else b"")
        assert len(image) <= size, text
        return image.ljust(size, b"\0")

    return encode


STRING32, STRING64, STRING128 = text16(32), text16(64), text16(128)
CHARSTR64, CHARSTR128, CHARSTR256 = text8(64), text8(128), text8(256)


def date_time(year, month, day, hours, minutes, seconds, hundredths=0):
    return struct.pack("<bbbbbbh", hundredths, seconds, minutes, hours, day, month, year)


INFINITY = float("inf")
F32_NAN = bytes.fromhex("0000c07f")
F64_NAN = bytes.fromhex("000000000000f87f")

SECTIONS = {
    "Identity": [
        ("0x1000", "Device type", "UNIT_U32", U32(0x00020192)),
        ("0x1008", "Device name", "UNIT_STRING32", STRING32("Servo axis 3", tail="Servo axis 2")),
        ("0x1009", "Hardware version", "UNIT_CHARSTR64", CHARSTR64("HW 2.4-C", tail=b"B\xff")),
        ("0x100A", "Firmware version", "UNIT_STRING64", STRING64("1.60.3 \u2013 release")),
        ("0x1018:01", "Vendor identity", "UNIT_U32", U32(0x4B4F5256)),
        ("0x1018:02", "Product code", "UNIT_U32", U32(4000000000)),
        ("0x1018:04", "Serial number", "UNIT_U64", U64(2014030500012345)),
        ("0x2000", "Maker", "UNIT_STRING128", STRING128("KORVALENT Z\u00fcrich", tail="draft")),
        ("0x2001", "Order code", "UNIT_STRING32", STRING32("KV-300-08-A2-M1-B0-F4-S1-R0-0001")),
        ("0x2002", "Place", "UNIT_CHARSTR128", CHARSTR128("Halle 4, Stra\u00dfe 2")),
        ("0x2003", "Note", "UNIT_CHARSTR256",
         CHARSTR256("Oil changed\nBearing noisy\tcheck again", tail=b"old note")),
        ("0x2004", "Axis letter", "UNIT_CHAR", b"X"),
        ("0x2005", "Axis symbol", "UNIT_UTF16CHAR", U16(0x03A9)),
    ],
    "Times": [
        ("0x2010", "Commissioned", "UNIT_DATE_TIME", date_time(2014, 3, 5, 10, 20, 30, 25)),
        ("0x2011", "Last service", "UNIT_DATE_TIME", date_time(2024, 2, 29, 23, 59, 59, 99)),
        ("0x2012", "Next service", "UNIT_DATE_TIME", date_time(2025, 2, 29, 8, 0, 0)),
        ("0x2013", "Clock before reset", "UNIT_DATE_TIME", bytes(8)),
        ("0x2014", "Operating hours", "UNIT_Hours", F64(12345.678)),
        ("0x2015", "Cycle time", "UNIT_TIME_FRAC", I16(250)),
        ("0x2016", "Watchdog time", "UNIT_mSeconds", F64(100)),
        ("0x2017", "Samples per cycle", "UNIT_T_SAMPLE", I32(32)),
    ],
    "State": [
        ("0x1001", "Error register", "UNIT_U8", U8(0b00100001)),
        ("0x603F", "Fault", "UNIT_FAULT", U32(0x80002310)),
        ("0x6040", "Controlword", "UNIT_U16", U16(0x000F)),
        ("0x6041", "Statusword", "UNIT_U16", U16(0x0237)),
        ("0x6060", "Mode of operation", "UNIT_I8", I8(8)),
        ("0x6061", "Mode display", "UNIT_I8", I8(-1)),
        ("0x2020", "Mode before fault", "UNIT_I8", I8(-128)),
        ("0x2021", "Channels in use", "UNIT_U8", U8(255)),
        ("0x2022", "Trace mask", "UNIT_U64", U64(2**64 - 1)),
        ("0x2023", "Slot 56", "UNIT_56", I32(-1)),
        ("0x2024", "Slot 69", "UNIT_69", I32(0)),
        ("0x2025", "Slot 85", "UNIT_85", I32(85)),
        ("0x2026", "Reserved", "UNIT_UNKNOWN", b""),
    ],
    "Position and velocity": [
        ("0x6064", "Position, actual", "UNIT_I32", I32(-(2**31))),
        ("0x2030", "Position limit", "UNIT_I32", I32(2**31 - 1)),
        ("0x2031", "Encoder position", "UNIT_S_INC_32x32", I64(-(3 << 32))),
        ("0x2032", "Travel, negative", "UNIT_I64", I64(-(2**63))),
        ("0x2033", "Travel, positive", "UNIT_I64", I64(2**63 - 1)),
        ("0x607A", "Target position", "UNIT_U_POS", F64(1250.5)),
        ("0x607C", "Home offset", "UNIT_mMeter", F64(-0.0)),
        ("0x6081", "Profile velocity", "UNIT_U_VEL", F64(2500)),
        ("0x6083", "Acceleration", "UNIT_U_ACC", F64(1e20)),
        ("0x606C", "Velocity, actual", "UNIT_RPM", F64(-1499.75)),
        ("0x2034", "Velocity fraction", "UNIT_V_FRAC", I16(-16384)),
        ("0x2035", "Phase", "UNIT_PHI_FRAC", I16(-1)),
        ("0x2036", "Load angle", "UNIT_Degree", F64(1 / 3)),
        ("0x2037", "Feed constant", "UNIT_Meter", F64(0.01)),
    ],
    "Current and torque": [
        ("0x6078", "Current, actual", "UNIT_I_FRAC", I16(32767)),
        ("0x6077", "Torque, actual", "UNIT_M_FRAC", I16(-32768)),
        ("0x6075", "Rated current", "UNIT_I_1mA", I32(12500)),
        ("0x6076", "Rated torque", "UNIT_NewtonMeter", F64(7.25)),
        ("0x2040", "Torque constant", "UNIT_Nm_per_Ampere", F64(0.58)),
        ("0x2041", "Current offset", "UNIT_Ampere", F64(-0.0015)),
        ("0x2042", "Phase resistance", "UNIT_R_1mOhm", I32(1830)),
        ("0x2043", "Phase inductance", "UNIT_L_1uHenry", I32(9400)),
        ("0x2044", "Bus capacity", "UNIT_C_1uFarad", I32(680)),
        ("0x2045", "Rotor inertia", "UNIT_J_FRAC", I16(1234)),
        ("0x2046", "Load mass", "UNIT_kg", F64(42.5)),
        ("0x2047", "Load share", "UNIT_PERCENT_FRAC", I16(8192)),
    ],
    "Supply and temperature": [
        ("0x6079", "Bus voltage", "UNIT_U_100mV", I16(5653)),
        ("0x2050", "Supply voltage", "UNIT_Volt", F64(399.9)),
        ("0x2051", "Brake power", "UNIT_P_1mWatt", I32(-75000)),
        ("0x2052", "Mains frequency", "UNIT_Hertz", F64(50.02)),
        ("0x2053", "Motor temperature", "UNIT_T_100mDegree", I16(-405)),
        ("0x2054", "Sink temperature", "UNIT_T_Degree", I16(71)),
        ("0x2055", "Air temperature", "UNIT_DegreeCelsius", F64(21.5)),
        ("0x2056", "Derating start", "UNIT_U16", U16(65535)),
    ],
    "Controllers": [
        ("0x2060:01", "Velocity gain", "UNIT_F32", F32(0.1)),
        ("0x2060:02", "Velocity reset", "UNIT_F32", F32(INFINITY)),
        ("0x2060:03", "Velocity filter", "UNIT_F32", bytes.fromhex("01000000")),
        ("0x2060:04", "Velocity estimate", "UNIT_F32", F32_NAN),
        ("0x2061:01", "Position gain", "UNIT_F64", F64(1.7976931348623157e308)),
        ("0x2061:02", "Position filter", "UNIT_F64", F64(5e-324)),
        ("0x2061:03", "Position estimate", "UNIT_F64", F64_NAN),
        ("0x2061:04", "Position bound", "UNIT_F64", F64(-INFINITY)),
        ("0x2062", "Limit switch delay", "UNIT_I16", I16(-32768)),
        ("0x2063", "Observer state", "UNIT_F80", bytes.fromhex("00000000000000c0ff3f")),
        ("0x2064", "Product \u00b5-code", "UNIT_STRING64", STRING64("\u52a8\u529b \u2126 \u20ac 1")),
    ],
}


def field(text):
    return '"' + text.replace('"', '""') + '"' if "," in text or '"' in text else text


def drive_csv():
    lines = ["# The objects of a servo drive; written by tools/make_drive_csv.py.",
             "index,name,unit,bytes"]
    for title, rows in SECTIONS.items():
        lines += ["", "# " + title]
        for index, name, unit, image in rows:
            lines.append(",".join([index, field(name), unit, image.hex()]))
    return ("\n".join(lines) + "\n").encode()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", metavar="FILE", help="compare with FILE instead of writing")
    arguments = parser.parse_args()
    if not arguments.check:
        sys.stdout.buffer.write(drive_csv())
        return 0
    with open(arguments.check, "rb") as file:
        if file.read() == drive_csv():
            return 0
    print(arguments.check + ": not what tools/make_drive_csv.py writes", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main())
