#!/usr/bin/env python3
"""Prints medians, and ratios between contestants beside their goals.

Usage: report.py RESULT.json...   (written by the benchmarks with --benchmark_out)
"""

import json
import os
import sys

# contestant, peer, the most that the ratio of their medians may be (None: shown for comparison)
RATIOS = [
    ("evaluate/library/1000", "evaluate/variant_map/1000", 1.10),
    ("evaluate/library/1000", "evaluate/sqlite/1000", 1.25),
    ("evaluate/library/1000", "evaluate/struct/1000", None),
    ("evaluate/library/100000", "evaluate/variant_map/100000", None),
    ("evaluate/library/100000", "evaluate/sqlite/100000", None),
    ("evaluate/library/100000", "evaluate/struct/100000", None),
    ("lookup/library/8", "lookup/map/8", 1.5),
    ("lookup/library/32", "lookup/map/32", None),
    ("lookup/library/128", "lookup/map/128", 1.4),
    ("print/library_given", "print/concatenation", 0.75),
    ("print/library_given", "print/text_stream", None),
    ("print/library_given", "print/reserved", None),
    ("print/library_built", "print/concatenation", 4.0),
    ("print/library_built", "print/text_stream", None),
    ("compute/library/1000", "compute/variant_map/1000", None),
    ("compute/library/1000", "compute/sqlite/1000", None),
    ("compute/library/1000", "compute/js_call/1000", None),
    ("compute/library/1000", "compute/js_loop/1000", None),
    ("compute/library/100000", "compute/struct/100000", None),
    ("compute/library/100000", "compute/variant_map/100000", None),
    ("compute/library/100000", "compute/sqlite/100000", 2.0),
    ("compute/library/100000", "compute/js_call/100000", 1.0),
    ("compute/library/100000", "compute/js_loop/100000", 1.0),
    ("like/library/100000", "like/qregexp/100000", 1.3),
    ("like/library/100000", "like/qregexp_text/100000", None),
    ("like_changed/library/100000", "like_changed/qregexp/100000", None),
    ("like_changed/library/100000", "like_changed/qregexp_text/100000", None),
    ("regexp/library/100000", "regexp/qregexp/100000", 1.3),
    ("regexp/library/100000", "regexp/qregexp_text/100000", None),
    ("write/library", "write/data_stream", 1.05),
    ("write/library", "write/cbor", 0.25),
    ("read/library", "read/data_stream", 1.1),
    ("read/library", "read/cbor", 0.43),
    ("log/library/tz", "log/xml_writer_dates/tz", 0.85),
    ("log/library/tz", "log/log4cxx_xml/tz", 1.3),
    ("log/library/tz", "log/xml_writer_finished/tz", None),
    ("log/library/tz", "log/spdlog/tz", None),
    ("log/library/tz", "log/write/tz", None),
    ("log/library_split/tz", "log/spdlog_split/tz", None),
    ("log/library/notz", "log/xml_writer_dates/notz", 2.0),
    ("log/library/notz", "log/log4cxx_xml/notz", None),
    ("log/library_split/notz", "log/spdlog_split/notz", None),
    ("readlog/library/tz", "readlog/xml_reader/tz", 1.75),
    ("readlog/library/tz", "readlog/pugixml/tz", None),
    ("readlog/library/notz", "readlog/xml_reader/notz", 3.3),
    ("readlog/library/notz", "readlog/pugixml/notz", None),
    ("readlog/vol_file/tz", "readlog/xml_reader/tz", 1.67),
    ("readlog/vol_rows/tz", "readlog/xml_reader/tz", 1.67),
    ("readlog/vol_file/notz", "readlog/xml_reader/notz", 1.67),
    ("readlog/vol_rows/notz", "readlog/xml_reader/notz", None),
    ("crypt/library_words", "crypt/openssl", 1.2),
    ("crypt/library_words", "crypt/libxcrypt", None),
    ("crypt/library_text", "crypt/openssl", 1.2),
    ("crypt/library_bits", "crypt/plain_bits", 0.8),
    ("crypt/library_bits", "crypt/library_words", None),
    ("label/library/TZ", "label/strftime/TZ", 0.7),
    ("label/library/TZ", "label/qt_two_texts/TZ", None),
    ("label/library/noTZ", "label/strftime/noTZ", None),
    ("label/library/noTZ", "label/qt_two_texts/noTZ", None),
    ("glyphs/library", "glyphs/inline", 1.1),
    ("glyphs/library", "glyphs/memcpy", None),
]

# the most bytes that an item may hold (None: shown for comparison)
BYTES = {"readlog/library/tz": 1500, "readlog/library/notz": 1500}


def read_medians(path):
    """The medians of a program's runs, by benchmark name."""
    # A filter that matches nothing in a program leaves an empty file.
    if os.path.getsize(path) == 0:
        return {}
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    return {run["run_name"].split("/iterations:")[0]: run
            for run in runs if run.get("aggregate_name") == "median"}


def verdict(value, goal):
    if goal is None:
        return ""
    return f"at most {goal:.2f}   {'met' if value <= goal else 'MISSED'}"


def main(paths):
    runs = {}
    for path in paths:
        runs.update(read_medians(path))
    # nanoseconds of CPU time
    medians = {name: run["per_item"] * 1e9 for name, run in runs.items()}

    print("\nMedian of the CPU time per row, look-up, statement, tree, entry, hash or label")
    for name in sorted(medians):
        print(f"  {name:<34}{medians[name]:>10.1f} ns")

    print("\nRatios of medians")
    for ours, peer, goal in RATIOS:
        if ours in medians and peer in medians:
            ratio = medians[ours] / medians[peer]
            print(f"  {ours:<29}{peer:<34}{ratio:>7.2f}   {verdict(ratio, goal)}".rstrip())

    for name, goal in BYTES.items():
        if name in runs:
            held = runs[name]["bytes_per_entry"]
            print(f"\nMemory per entry held: {name} {held:.0f} bytes   {verdict(held, goal)}")


if __name__ == "__main__":
    main(sys.argv[1:])
