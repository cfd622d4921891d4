#pragma once

class Database;
struct MatchList;

/**
 * Writes the matches into a CSV file (RFC 4180, UTF-8): the names of the columns, then a line for
 * each match. The audit log gets to know of it.
 *
 * The file is written whole, or stays as it was: also where Ctrl-C ends the program meanwhile.
 *
 * @throws Failure
 */
void exportMatches(const MatchList &matches, Database &database);
