#!/usr/bin/env python3
"""Prints how fast `velmora-seal protect` enciphers one region of 100 MB, from a file to nowhere, beside what `openssl speed`
gives for the cipher alone in the same run, and the peak memory beside the region's size. As the cipher has a thread of its own
in `velmora-seal`, both are told by the wall clock; its processor time is shown too. Each run that counts follows another at once: a
host may have taken back what memory its virtual machine did not use for some seconds, and gives it again more slowly than any of this
takes."""

import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

LINE = b"    signal s : std_logic_vector(31 downto 0) := (others => '0'); -- a line of HDL\n"
MB = 1000000


def write_region(path, size):
    count = size // len(LINE)
    with open(path, "wb") as text:
        text.write(b"-- `protect begin\n")
        text.write(LINE * count)
        text.write(b"-- `protect end\n")
    return count * len(LINE)


def cipher_speed():
    """MB per second of AES-256-CBC in blocks of 16 KiB."""
    output = subprocess.run(["openssl", "speed", "-elapsed", "-evp", "aes-256-cbc", "-bytes", "16384", "-seconds", "1"], check=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, universal_newlines=True).stdout
    return float(re.search(r"^AES-256-CBC\s+([0-9.]+)k", output, re.MULTILINE | re.IGNORECASE).group(1)) / 1000


def protect(program, source, recipients):
    """Seconds of processor time and of the wall clock, and the peak memory in bytes."""
    started = time.monotonic()
    process = subprocess.Popen([program, "protect", source, "--recipients", recipients, "-o", "-"], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = status
    if status != 0:
        sys.exit("envelope: velmora-seal failed")
    return usage.ru_utime + usage.ru_stime, time.monotonic() - started, usage.ru_maxrss * 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, help="velmora-seal")
    parser.add_argument("--size", type=int, default=100, help="of the region, in MB")
    parser.add_argument("--runs", type=int, default=9)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="velmora-envelope-") as folder:
        recipient = os.path.join(folder, "recipients", "bench")
        subprocess.run([options.program, "keygen", "recipient", "-o", recipient, "--owner", "Velmora", "--name", "bench"],
                       check=True, stdout=subprocess.DEVNULL)
        os.rename(recipient + ".private.pem", os.path.join(folder, "bench.private.pem"))
        source = os.path.join(folder, "region.vhd")
        size = write_region(source, options.size * MB)
        speeds, ciphers, walls, peaks = [], [], [], []
        for _ in range(options.runs):
            ciphers.append(cipher_speed())
            protect(options.program, source, os.path.dirname(recipient))
            seconds, wall, peak = protect(options.program, source, os.path.dirname(recipient))
            speeds.append(size / MB / seconds)
            walls.append(size / MB / wall)
            peaks.append(peak)
    ratios = [wall / cipher for wall, cipher in zip(walls, ciphers)]
    print("protected region     %10s" % "median")
    print("openssl aes-256-cbc  %10.1f MB/s" % statistics.median(ciphers))
    print("velmora-seal protect %10.1f MB/s, %.1f MB per second of processor time" % (statistics.median(walls), statistics.median(speeds)))
    print("ratio                %10.1f %% (%.1f to %.1f; aim: at least 60 %%)"
          % (100 * statistics.median(ratios), 100 * min(ratios), 100 * max(ratios)))
    print("peak memory          %10.1f MB, %.2f times the region (aim: at most 2.5)" % (max(peaks) / MB, max(peaks) / size))


if __name__ == "__main__":
    main()
