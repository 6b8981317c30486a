#!/usr/bin/python3
"""Prints the channel descriptions of a made-up accelerator, the same each time.

  accelerator.py CHANNELS [YEARS]

After YEARS, every 97th channel has other units, every 101st another description, every 211th is gone
and as many are new, so that two such documents have something to differ in.
"""

import sys

NORMAL, ENV, IMAGE, LLRF_ML = 1, 4, 6, 20
LONGEST_STEP = 10_000  # channels joined before they are written

STATUS = [
    ("RF_ON", "klystron delivers power"),
    ("FEEDBACK", "feedback loop closed"),
    ("FEEDFORWARD", "adaptive feed-forward active"),
    ("QUENCH", "quench detected in a cavity of the module"),
    ("VACUUM", "vacuum interlock of the wave guide"),
    ("MODULATOR", "modulator ready"),
]
SWITCH = [("ON", "power supply is on"), ("REMOTE", "steered from the control room"),
          ("INTERLOCK", "stopped by the interlock"), ("RAMPING", "on its way to the set point")]
VALVE = [("OPEN", "valve is open"), ("CLOSED", "valve is closed"), ("FAULT", "neither within 3 s")]

# Subsystem, device, server, what it measures: name, description, units, event type, stream,
# data type, values, set point, bits.
DEVICES = [
    ("DIAG", "BPM", "BPM.SERVER", [
        ("X.TRAIN", "horizontal beam position", "mm", NORMAL, 1, 38, 2048, 0, None),
        ("Y.TRAIN", "vertical beam position", "mm", NORMAL, 1, 38, 2048, 0, None),
        ("CHARGE.TRAIN", "bunch charge seen by the monitor", "nC", NORMAL, 1, 42, 2048, 0, None),
        ("TEMP", "temperature of the electronics", "C", ENV, 4, 41, 1, 0, None)]),
    ("RF", "LLRF.CONTROLLER", "RF.SERVER", [
        ("SP.AMPL", "set point of the amplitude", "MV", ENV, 4, 41, 1, 1, None),
        ("SP.PHASE", "set point of the phase", "deg", ENV, 4, 41, 1, 1, None),
        ("PROBE.AMPL", "amplitude of the probe of the cavity", "MV", LLRF_ML, 2, 43, 1024, 0, None),
        ("PROBE.PHASE", "phase of the probe of the cavity", "deg", LLRF_ML, 2, 43, 1024, 0, None),
        ("STATUS", "state of the RF station", "", NORMAL, 2, 41, 1, 0, STATUS)]),
    ("MAGNETS", "MAGNET.ML", "SLOW.SERVER", [
        ("CURRENT.SP", "current set point", "A", ENV, 4, 41, 1, 1, None),
        ("CURRENT.RBV", "current read back", "A", ENV, 4, 41, 1, 0, None),
        ("STATUS", "state of the power supply", "", ENV, 4, 41, 1, 0, SWITCH)]),
    ("VACUUM", "ION.PUMP", "SLOW.SERVER", [
        ("PRESSURE", "pressure at the pump", "mbar", ENV, 4, 41, 1, 0, None),
        ("CURRENT", "current of the pump", "uA", ENV, 4, 41, 1, 0, None),
        ("VALVE", "state of the valve beside the pump", "", ENV, 4, 41, 1, 0, VALVE)]),
    ("COOLING", "BODY", "SLOW.SERVER", [
        ("TEMP.SUPPLY", "temperature of the water supplied", "C", ENV, 4, 41, 1, 0, None),
        ("TEMP.RETURN", "temperature of the water returned", "C", ENV, 4, 41, 1, 0, None),
        ("FLOW", "flow of the cooling water", "l/min", ENV, 4, 41, 1, 0, None)]),
    ("DIAG", "CAMERA", "IMAGE.SERVER", [
        ("IMAGE", "image of the transition radiation screen", "counts", IMAGE, 8, 13, 1447680, 0, None)]),
]
OTHER_UNITS = {"mm": "um", "MV": "MV/m", "A": "mA", "mbar": "Pa", "C": "K", "deg": "rad",
               "uA": "A", "nC": "pC", "l/min": "m3/h", "counts": "photons", "": "1"}


def quantities():
    """Device after device along the machine: all that each of them measures."""
    number = 0
    while True:
        section, device_in_section = f"L{number // 400 + 1}", number % 400 + 1
        subsystem, device, server, measured = DEVICES[number % len(DEVICES)]
        for quantity in measured:
            yield subsystem, device, server, section, device_in_section, quantity
        number += 1


def channel(number, made, years):
    subsystem, device, server, section, place, quantity = made
    what, description, units, event, stream, data_type, size, set_point, bits = quantity
    if years and number % 97 == 0:
        units = OTHER_UNITS[units]
    if years and number % 101 == 0:
        description += ", calibrated"
    if years and number % 211 == 0:
        what += ".2"
    lines = [f"\t<CHANNEL>\n\t\t<EVTYPE>{event}</EVTYPE>\n\t\t<STREAM>{stream}</STREAM>\n"
             f"\t\t<DTYPE>{data_type}</DTYPE>\n"
             f"\t\t<PROP>LINAC.{subsystem}/{device}/{place}.{section}/{what}</PROP>\n"
             f"\t\t<NAME>{device}.{place}.{section}.{what}</NAME>\n\t\t<DESC>{description}</DESC>\n"]
    if units:
        lines.append(f"\t\t<UNITS>{units}</UNITS>\n")
    if size != 1:
        lines.append(f"\t\t<SIZE>{size}</SIZE>\n")
    lines.append(f"\t\t<SB_NAME>LINAC.DAQ/{server}.{section}</SB_NAME>\n"
                 f"\t\t<DB_KEY>{4100 + number}</DB_KEY>\n")
    if set_point:
        lines.append("\t\t<SETPOINT>1</SETPOINT>\n")
    lines.append(f"\t\t<SUBSYSTEM>{subsystem}</SUBSYSTEM>\n")
    for bit, (name, text) in enumerate(bits or []):
        lines.append(f"\t\t<BIT>{bit}<BIT_NAME>{name}</BIT_NAME><BIT_DESCR>{text}</BIT_DESCR></BIT>\n")
    if size == 2048:
        lines.append("\t\t<DIM>0<DIM_NAME>bunch</DIM_NAME><DIM_DESCR>time within the bunch train</DIM_DESCR>"
                     "<DIM_UNITS>us</DIM_UNITS>\n"
                     "\t\t\t<STAT>0<STAT_NAME>mean</STAT_NAME><STAT_DESCR>mean of the bunch train</STAT_DESCR>"
                     f"<STAT_UNITS>{units}</STAT_UNITS></STAT>\n\t\t</DIM>\n")
    lines.append("\t</CHANNEL>\n")
    return "".join(lines)


def main():
    channels = int(sys.argv[1])
    years = int(sys.argv[2]) if len(sys.argv) > 2 else 0
    sys.stdout.write('<?xml version="1.0" encoding="ISO-8859-1" ?>\n<CHANDESCRIPTIONS>\n')
    waiting = []
    for number, made in zip(range(channels), quantities()):
        waiting.append(channel(number, made, years))
        if len(waiting) == LONGEST_STEP:
            sys.stdout.write("".join(waiting))
            waiting.clear()
    sys.stdout.write("".join(waiting) + "</CHANDESCRIPTIONS>\n")


main()
