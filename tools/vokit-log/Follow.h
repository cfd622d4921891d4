#pragma once

#include "Verb.h"

class EntryReader;
class Output;

/**
 * Reads a file, and then what is written to it, until the program is interrupted or nobody reads
 * the output any more.
 *
 * Goes by the name: when that leads to another file, as after a split of the log, the one before is
 * read to its end, and then the other one from its start. A name that leads nowhere may come back.
 * Files that come and go between two looks, of which there are five a second, are not seen. One
 * that has become shorter than what was read is read anew.
 *
 * @throws Failure if the file can't be opened at first
 */
ExitCode follow(const QString &name, EntryReader &reader, Output &output);
