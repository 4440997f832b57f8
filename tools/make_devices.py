#!/usr/bin/env python3
"""Writes examples/devices.k7e, the device list of an invented plant, to standard output.

    tools/make_devices.py > examples/devices.k7e

With --check FILE it writes nothing and fails unless FILE is that list.

The list is a CDeviceList in the QDataStream format, version Qt_5_15, big-endian. It holds addresses of
all kinds, a key twice, keys above the signed ranges, a device with nothing set, and a sub-device whose
own key is not that of its place.
"""

import argparse
import ipaddress
import struct
import sys

NULL = None


def integer(code):
    return lambda value: struct.pack(">" + code, value)


U8, U16, I32, U32 = integer("B"), integer("H"), integer("i"), integer("I")


def string(text):
    if text is NULL:
        return U32(0xFFFFFFFF)
    units = text.encode("utf-16-be")
    return U32(len(units)) + units


def address(text, scope=""):
    """The protocol, then the address; for IPv6 the scope too."""
    if text is NULL:
        return U8(0xFF)
    value = ipaddress.ip_address(text)
    if value.version == 4:
        return U8(0) + value.packed
    return U8(1) + value.packed + string(scope)


def pairs(rows):
    """A map: its count, then the pairs from the largest key down, of one key the last one first."""
    rows = sorted(enumerate(rows), key=lambda row: (row[1][0], row[0]), reverse=True)
    return U32(len(rows)) + b"".join(b"".join(row[1][1]) for row in rows)


def sub_device(key, name="Series K7 Sub-Device", own_key=None):
    return key, [U8(key), U8(key if own_key is None else own_key), string(name)]


def device(key, name=NULL, kind=0, at=address(NULL), port=0, server=NULL, text=NULL, configuration=NULL,
           flag_a=False, flag_b=False, number_a=0, number_b=0, subs=()):
    return key, [U32(key), U32(key), string(name), I32(kind), at, U16(port), string(server), string(text),
                 string(configuration), U8(flag_a), U8(flag_b), I32(number_a), I32(number_b), pairs(subs)]


DEVICES = [
    device(1, "Unwinder", kind=1, at=address("192.0.2.11"), port=502, configuration="setup", number_b=7,
           subs=[sub_device(1), sub_device(2, "Encoder"), sub_device(200, "Brake \u00b5-module")]),
    device(7, "Press, upper axis", kind=1, at=address("192.0.2.17"), port=65535, server="Halle 4",
           text="bearing noisy\tcheck", configuration="production", flag_a=True, number_a=-3, number_b=1),
    device(7, "Press, lower axis", kind=1, at=address("192.0.2.18"), port=502, flag_b=True,
           number_a=2**31 - 1, number_b=-(2**31)),
    device(4000000000, "Winder", kind=2, at=address("fe80::1", "eth0"), port=8080,
           configuration="failsafe", number_b=1, subs=[sub_device(0, "", own_key=9)]),
    device(4294967295),
]


def devices():
    return string("Paper mill, Z\u00fcrich") + I32(2) + pairs(DEVICES)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", metavar="FILE", help="compare with FILE instead of writing")
    arguments = parser.parse_args()
    if not arguments.check:
        sys.stdout.buffer.write(devices())
        return 0
    with open(arguments.check, "rb") as file:
        if file.read() == devices():
            return 0
    print(arguments.check + ": not what tools/make_devices.py writes", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main())
